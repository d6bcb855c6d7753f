#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "host/dxf/dialect.h"

namespace cad {

/// What the host knows of one group of a class part.
struct GroupRow {
  int code = 0;
  int rank = 0;           ///< place in the part; groups that repeat by turns share one
  bool required = false;  ///< cannot be left out
  bool repeated = false;
  bool flat = false;              ///< a point without z
  bool has_initial = false;       ///< written when it is left out
  std::string_view initial = {};  ///< "7", "txt", "0,0,1"; "@12" is the value of group 12, and
                                  ///< "$TEXTSIZE" that of the drawing's variable
};

struct PartRow {
  std::string_view marker;
  bool as_listed = false;  ///< the order of groups means something: they are written as they come
  std::vector<GroupRow> groups;

  const GroupRow* find(int code) const;
};

/// Where an object of a kind belongs.
enum class KindPlace : std::uint8_t { kEntity, kSubEntity, kRecord, kObject };

/// How objects of one kind are spelled.
struct KindRow {
  std::string_view kind;
  KindPlace place;
  dxf::Release since;
  std::vector<PartRow> parts;
};

/// The row of a kind; `flags` is its group 70, which tells the varieties of POLYLINE, VERTEX and
/// DIMENSION apart. Null for a kind without a row.
const KindRow* kind_row(std::string_view kind, std::int64_t flags = 0);

}  // namespace cad
