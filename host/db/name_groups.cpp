#include "host/db/name_groups.h"

#include <string>

namespace cad {
namespace {

struct NameGroup {
  std::string_view table;
  int code;
  std::string_view kinds;  ///< by commas, with one in front and behind; empty: every kind
};

constexpr NameGroup kNameGroups[] = {
    {"LAYER", 8, ""},
    {"LAYER", 1003, ""},
    {"STYLE", 7, ",TEXT,MTEXT,ATTRIB,ATTDEF,"},
    {"LTYPE", 6, ""},
    {"DIMSTYLE", 3, ",DIMENSION,LEADER,TOLERANCE,ARC_DIMENSION,LARGE_RADIAL_DIMENSION,"},
    {"APPID", 1001, ""},
    {"BLOCK_RECORD", 2, ",INSERT,DIMENSION,BLOCK,ACAD_TABLE,ARC_DIMENSION,LARGE_RADIAL_DIMENSION,"},
    {"BLOCK_RECORD", 3, ",BLOCK,"},
};

}  // namespace

std::string_view named_table(std::string_view kind, int code) {
  constexpr int kFirstExtendedCode = 1000;
  // Data of an xrecord are no names, nor are the texts of an old dimension style.
  const bool has_names = kind != "XRECORD" && kind != "DIMSTYLE";
  if (code < kFirstExtendedCode && !has_names) return {};
  for (const NameGroup& row : kNameGroups) {
    if (row.code != code) continue;
    if (row.kinds.empty()) return row.table;
    const std::size_t at = row.kinds.find(kind);
    const std::size_t end = at + kind.size();
    if (at != std::string_view::npos && !kind.empty() && row.kinds[at - 1] == ',' &&
        row.kinds[end] == ',')
      return row.table;
  }
  return {};
}

}  // namespace cad
