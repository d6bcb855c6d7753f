#include "host/db/explode.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>

#include "host/base/numbers.h"
#include "host/db/copy_entity.h"
#include "host/db/curve.h"
#include "host/db/drawing.h"
#include "host/db/explode_text.h"
#include "host/db/make_object.h"
#include "host/db/object_access.h"
#include "host/db/object_groups.h"
#include "host/db/record.h"
#include "host/db/tag_sheet.h"
#include "host/db/transform.h"
#include "host/geometry/angle.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

using Pieces = Result<std::vector<AcDbObjectId>>;

Error cannot(AcDbObjectId id, std::string why) {
  std::string name(record_kind(id));
  name += " ";
  append_handle(name, id.handle());
  return fail(std::move(name), std::move(why));
}

Drawing& drawing_of(AcDbObjectId id) { return StubStore::drawing_of(*id.stub()); }

TagSheet sheet_of(AcDbObjectId id) {
  const RecordTags record = record_tags(id);
  return TagSheet(record.bytes, *record.dialect);
}

/// Erases what was made for nothing.
void discard(const std::vector<AcDbObjectId>& made) {
  for (const AcDbObjectId id : made) ObjectAccess::turn(drawing_of(id), *id.stub(), true);
}

/// New entities beside `source`; all or none.
Pieces make_all(AcDbObjectId source, const std::vector<GroupList>& lists) {
  Drawing& drawing = drawing_of(source);
  const AcDbObjectId block(drawing.find(source.stub()->owner));
  std::vector<AcDbObjectId> made;
  for (const GroupList& groups : lists) {
    const Result<AcDbObjectId> piece = make_entity(drawing.database(), block, groups);
    if (!piece) {
      discard(made);
      return piece.error();
    }
    made.push_back(*piece);
  }
  return made;
}

GroupList line_or_arc(AcDbObjectId source, const Segment& s) {
  if (s.kind() == Segment::Kind::kLine) {
    return like(source, L"LINE").point(10, s.start()).point(11, s.end());
  }
  // Arcs run counter-clockwise about their normal.
  const bool clockwise = s.sweep() < 0.0;
  const AcGeVector3d normal = s.normal();
  const AcGeMatrix3d own = ocs_to_wcs(normal).transpose();
  const auto angle_of = [&](const AcGePoint3d& p) {
    const AcGeVector3d way = own * (p - s.center());
    return full_turn(std::atan2(way.y, way.x));
  };
  GroupList arc = like(source, L"ARC");
  arc.point(10, own * s.center()).real(40, s.radius());
  arc.point(210, AcGePoint3d::kOrigin + normal);
  arc.real(50, angle_of(clockwise ? s.end() : s.start()));
  return arc.real(51, angle_of(clockwise ? s.start() : s.end()));
}

Pieces explode_polyline(AcDbObjectId id) {
  const std::optional<Curve> curve = curve_of(id);
  if (!curve) return cannot(id, "meshes cannot be exploded");
  std::vector<GroupList> lists;
  for (const Segment& s : curve->segments()) {
    if (s.kind() != Segment::Kind::kLine && s.kind() != Segment::Kind::kArc) {
      return cannot(id, "a smoothed polyline cannot be exploded");
    }
    if (s.length() > 0.0) lists.push_back(line_or_arc(id, s));
  }
  const double thickness = sheet_of(id).real({}, 39, 0.0);
  if (thickness != 0.0) {
    for (GroupList& groups : lists) groups.real(39, thickness);
  }
  return make_all(id, lists);
}

/// The contents of a block, without parts of entities.
std::vector<AcDbObjectId> contents_of(Drawing& drawing, const Drawing::Block& block) {
  std::vector<AcDbObjectId> contents;
  for (Stub* stub = drawing.entity_behind(drawing.stub_at(block.begin)); stub;
       stub = drawing.entity_behind(*stub)) {
    if (!drawing.is_frame(*stub) && !drawing.is_sub_entity(*stub)) {
      contents.push_back(AcDbObjectId(stub));
    }
  }
  return contents;
}

Drawing::Block* block_of(AcDbObjectId id, const TagSheet& sheet) {
  const std::size_t name = sheet.find({}, 2);
  return name == TagSheet::kNone ? nullptr : drawing_of(id).block_named(sheet.text_value(name));
}

AcGeMatrix3d map_of_insert(const TagSheet& sheet, const AcGePoint3d& base) {
  constexpr double kDegree = std::numbers::pi / 180.0;
  const std::size_t at = sheet.find({}, 10);
  const AcGePoint3d place = at == TagSheet::kNone ? AcGePoint3d() : sheet.point(at);
  AcGeMatrix3d scale;
  for (unsigned axis = 0; axis < 3; ++axis) {
    scale(axis, axis) = sheet.real({}, 41 + static_cast<int>(axis), 1.0);
  }
  return ocs_to_wcs(sheet.normal()) * AcGeMatrix3d::translation(place.asVector()) *
         AcGeMatrix3d::rotation(sheet.real({}, 50, 0.0) * kDegree, AcGeVector3d::kZAxis) * scale *
         AcGeMatrix3d::translation(-base.asVector());
}

/// A circle, or an arc of one, as an ellipse, which any map leaves an ellipse.
Result<AcDbObjectId> as_ellipse(AcDbObjectId circle) {
  const std::optional<Curve> curve = curve_of(circle);
  if (!curve) return cannot(circle, "has no shape");
  const Segment& s = curve->segments()[0];
  GroupList ellipse = like(circle, L"ELLIPSE", Data::kTake);
  GroupList groups(L"ELLIPSE");
  for (const GroupValue& group : ellipse.groups()) {
    if (group.code != 0 && group.code < 1000) groups.add(group);
  }
  groups.point(10, s.center()).point(11, AcGePoint3d::kOrigin + s.x_axis());
  groups.point(210, AcGePoint3d::kOrigin + s.normal()).real(40, 1.0);
  groups.real(41, curve->start_param()).real(42, curve->end_param());
  for (const GroupValue& group : ellipse.groups()) {
    if (group.code >= 1000) groups.add(group);
  }
  const Pieces made = make_all(circle, {groups});
  if (!made) return made.error();
  discard({circle});
  return made->front();
}

/// Puts one copy of a block's contents into place; where its kind has no shape for that, what comes
/// nearest in its stead.
Pieces put_in_place(AcDbObjectId copy, const AcGeMatrix3d& map) {
  const Acad::ErrorStatus status = transform_copy(copy, map);
  if (status == Acad::eOk) return std::vector<AcDbObjectId>{copy};
  const std::string_view kind = record_kind(copy);
  if (status != Acad::eCannotScaleNonUniformly) {
    return cannot(copy, "has a shape that is not known, so its block cannot be exploded");
  }
  if (kind == "CIRCLE" || kind == "ARC") {
    const Result<AcDbObjectId> ellipse = as_ellipse(copy);
    if (!ellipse) return ellipse.error();
    return put_in_place(*ellipse, map);
  }
  if (kind == "LWPOLYLINE" || kind == "POLYLINE") {
    Pieces pieces = explode_polyline(copy);
    if (!pieces) return pieces;
    discard({copy});
    std::vector<AcDbObjectId> placed;
    for (const AcDbObjectId piece : *pieces) {
      const Pieces one = put_in_place(piece, map);
      if (!one) return one;
      placed.insert(placed.end(), one->begin(), one->end());
    }
    return placed;
  }
  return cannot(copy, "cannot be drawn with scales that differ, so its block cannot be exploded");
}

Pieces explode_insert(AcDbObjectId id) {
  const TagSheet sheet = sheet_of(id);
  Drawing::Block* const block = block_of(id, sheet);
  if (!block) return cannot(id, "its block is missing");
  if (sheet.integer({}, 70, 1) > 1 || sheet.integer({}, 71, 1) > 1) {
    return cannot(id, "an array of blocks cannot be exploded");
  }
  Drawing& drawing = drawing_of(id);
  const TagSheet head = sheet_of(AcDbObjectId(&drawing.stub_at(block->begin)));
  const std::size_t base_at = head.find({}, 10);
  const AcGePoint3d base = base_at == TagSheet::kNone ? AcGePoint3d() : head.point(base_at);
  const AcGeMatrix3d map = map_of_insert(sheet, base);
  const Pieces copies = copy_entities(contents_of(drawing, *block), id);
  if (!copies) return copies;
  std::vector<AcDbObjectId> placed;
  for (const AcDbObjectId copy : *copies) {
    const Pieces pieces = put_in_place(copy, map);
    if (!pieces) {
      discard(*copies);
      discard(placed);
      return pieces;
    }
    placed.insert(placed.end(), pieces->begin(), pieces->end());
  }
  return placed;
}

Pieces explode_dimension(AcDbObjectId id) {
  Drawing::Block* const block = block_of(id, sheet_of(id));
  if (!block) return cannot(id, "has no block it is drawn by");
  return copy_entities(contents_of(drawing_of(id), *block), id);
}

Pieces explode_mtext(AcDbObjectId id) { return make_all(id, lines_of_mtext(id)); }

struct ExplodeRow {
  std::string_view kind;
  Pieces (*explode)(AcDbObjectId);
};
constexpr ExplodeRow kRows[] = {
    {"LWPOLYLINE", explode_polyline}, {"POLYLINE", explode_polyline}, {"INSERT", explode_insert},
    {"DIMENSION", explode_dimension}, {"MTEXT", explode_mtext},
};

}  // namespace

Result<std::vector<AcDbObjectId>> explode_entity(AcDbObjectId entity) {
  if (entity.isNull()) return fail("", "there is no entity to explode");
  if (entity.isErased()) return cannot(entity, "is erased");
  for (const ExplodeRow& row : kRows) {
    if (row.kind == record_kind(entity)) return row.explode(entity);
  }
  return cannot(entity, "has no pieces");
}

}  // namespace cad
