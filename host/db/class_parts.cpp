#include "host/db/class_parts.h"

#include "host/db/kind_table.h"

namespace cad {
namespace {

PartRow part(std::string_view marker, std::initializer_list<int> codes) {
  PartRow row{marker, true, {}};
  for (const int code : codes) row.groups.push_back({.code = code});
  return row;
}

/// Kinds that nobody makes from groups.
const KindRow* further_kind(std::string_view kind) {
  using enum KindPlace;
  const PartRow entity = part("AcDbEntity", {67, 8, 6, 62});
  static const KindRow kKinds[] = {
      {"BLOCK", kEntity, {}, {entity, part("AcDbBlockBegin", {2, 70, 10, 3, 1})}},
      {"ENDBLK", kEntity, {}, {entity, part("AcDbBlockEnd", {})}},
      {"SHAPE", kEntity, {}, {entity, part("AcDbShape", {39, 10, 40, 2, 50, 41, 51, 210})}},
  };
  for (const KindRow& row : kKinds)
    if (row.kind == kind) return &row;
  return nullptr;
}

/// Of the parts that know the group the kind's own before the common one.
std::size_t part_of(const KindRow& row, int code) {
  for (std::size_t i = 1; i < row.parts.size(); ++i)
    if (row.parts[i].find(code)) return i;
  if (row.parts[0].find(code)) return 0;
  return row.parts.size() - 1;
}

}  // namespace

std::vector<dxf::Tag> with_class_parts(std::string_view kind, std::vector<dxf::Tag> tags,
                                       const dxf::Dialect& dialect) {
  std::int64_t flags = 0;
  for (const dxf::Tag& tag : tags)
    if (tag.code == 70) flags = dxf::int_value(tag, dialect);
  const KindRow* row = kind_row(kind, flags);
  if (!row) row = further_kind(kind);
  if (!row || row->parts.empty()) return tags;
  std::vector<std::vector<dxf::Tag>> parts(row->parts.size());
  std::size_t of_point = 0;
  int point = 0;  // the code of the point whose coordinates may follow
  for (const dxf::Tag& tag : tags) {
    const bool coordinate = point != 0 && (tag.code == point + 10 || tag.code == point + 20);
    const std::size_t index = coordinate ? of_point : part_of(*row, tag.code);
    if (!coordinate) point = dxf::is_point_code(tag.code) ? tag.code : 0;
    of_point = index;
    parts[index].push_back(tag);
  }
  std::vector<dxf::Tag> ordered;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    dxf::Tag marker;
    marker.code = 100;
    marker.value = row->parts[i].marker;
    ordered.push_back(marker);
    ordered.insert(ordered.end(), parts[i].begin(), parts[i].end());
  }
  return ordered;
}

}  // namespace cad
