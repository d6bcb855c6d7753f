#include "host/db/block_placement.h"

#include <algorithm>
#include <cmath>

#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

enum class Kind { kOther, kInsert, kDimension, kTable };

Kind kind_of(std::string_view kind) {
  constexpr std::pair<std::string_view, Kind> kKinds[] = {
      {"INSERT", Kind::kInsert},           {"DIMENSION", Kind::kDimension},
      {"ARC_DIMENSION", Kind::kDimension}, {"LARGE_RADIAL_DIMENSION", Kind::kDimension},
      {"ACAD_TABLE", Kind::kTable},
  };
  for (const auto& [name, found] : kKinds)
    if (name == kind) return found;
  return Kind::kOther;
}

void place_insert(const EntityFields& fields, BlockPlacement& placement) {
  const AcGeMatrix3d axes = ocs_to_wcs(fields.normal());
  AcGeMatrix3d scale;
  for (unsigned axis = 0; axis < 3; ++axis)
    scale(axis, axis) = fields.real(41 + static_cast<int>(axis), 1.0);
  const double angle = fields.angle(50);
  const AcGeMatrix3d turn =
      angle == 0.0 ? AcGeMatrix3d() : AcGeMatrix3d::rotation(angle, AcGeVector3d::kZAxis);
  const AcGeMatrix3d turned = axes * turn;
  placement.map = AcGeMatrix3d::translation((axes * fields.point(10)).asVector()) * turned * scale *
                  placement.map;
  placement.columns = std::max(fields.integer(70, 1), 1);
  placement.rows = std::max(fields.integer(71, 1), 1);
  placement.column_step = turned * AcGeVector3d(fields.real(44), 0.0, 0.0);
  placement.row_step = turned * AcGeVector3d(0.0, fields.real(45), 0.0);
}

void place_table(const EntityFields& fields, BlockPlacement& placement) {
  const AcGeVector3d along = fields.vector(11);
  const double angle = std::atan2(along.y, along.x);
  placement.map = AcGeMatrix3d::translation(fields.vector(10)) *
                  AcGeMatrix3d::rotation(angle, AcGeVector3d::kZAxis) * placement.map;
}

}  // namespace

bool shows_block(std::string_view kind) { return kind_of(kind) != Kind::kOther; }

std::optional<BlockPlacement> block_placement(std::string_view kind_name, std::string_view record,
                                              const dxf::Dialect& dialect, Drawing& drawing) {
  const Kind kind = kind_of(kind_name);
  if (kind == Kind::kOther) return std::nullopt;
  const EntityFields fields(record, dialect);
  const Drawing::Block* const block = drawing.block_named(fields.text(2));
  if (!block) return std::nullopt;
  Stub& begin = drawing.stub_at(block->begin);
  const AcGePoint3d base = EntityFields(drawing.bytes_of(begin), drawing.dialect()).point(10);
  BlockPlacement placement;
  placement.block = AcDbObjectId(&begin);
  placement.map = AcGeMatrix3d::translation(-base.asVector());
  if (kind == Kind::kInsert) place_insert(fields, placement);
  if (kind == Kind::kTable) place_table(fields, placement);
  return placement;
}

}  // namespace cad
