#include "host/db/transform.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "host/db/drawing.h"
#include "host/db/entity.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/text.h"
#include "host/db/text_start.h"
#include "host/db/transform_rules.h"

namespace cad {
namespace {

constexpr int kNormal = 210;

bool is_usable(const AcGeMatrix3d& map) {
  for (const auto& row : map.entry) {
    for (const double number : row) {
      if (!std::isfinite(number)) return false;
    }
  }
  return !map.isSingular();
}

/// To the last bit: maps that come from no turn at all.
bool is_identity(const AcGeMatrix3d& map) {
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column)
      if (map.entry[row][column] != (row == column ? 1.0 : 0.0)) return false;
  }
  return true;
}

void put_normal(TagSheet& sheet, std::string_view part, const AcGeVector3d& normal) {
  const std::size_t i = sheet.find({}, kNormal);
  if (i != TagSheet::kNone) return sheet.set_point(i, AcGePoint3d::kOrigin + normal);
  const std::size_t place = sheet.last_of(part);
  const bool along_z = normal.x == 0 && normal.y == 0 && normal.z > 0;
  if (along_z || part.empty() || place == TagSheet::kNone) return;
  for (unsigned axis = 0; axis < 3; ++axis) {
    sheet.add_real(place, kNormal + 10 * static_cast<int>(axis), normal[axis]);
  }
}

void apply(TagSheet& sheet, std::size_t i, Role role, const ObjectMap& map, double elevation) {
  const double value = sheet.real(i);
  switch (role) {
    case Role::kPoint:
      return sheet.set_point(i, map.point(sheet.point(i)));
    case Role::kOwnPoint:
      return sheet.set_point(i, map.own_point(sheet.point(i)));
    case Role::kFlatPoint:
      return sheet.set_point(i, map.own_point({value, sheet.real(i + 1), elevation}), true);
    case Role::kElevation:
      return;
    case Role::kVector:
      return sheet.set_point(i, AcGePoint3d::kOrigin + map.vector(sheet.point(i).asVector()));
    case Role::kDirection: {
      const AcGeVector3d before = sheet.point(i).asVector();
      const AcGeVector3d after = map.vector(before);
      const double length = after.length() / (before.length() > 0 ? before.length() : 1.0);
      if (length > 0) sheet.set_point(i, AcGePoint3d::kOrigin + after / length);
      return;
    }
    case Role::kLength:
      return sheet.set_real(i, value * map.scale());
    case Role::kThickness:
      return sheet.set_real(i, map.along_normal(value));
    case Role::kAngle:
      return sheet.set_real(i, map.angle(value));
    case Role::kBulge:
      return sheet.set_real(i, map.mirrored() ? -value : value);
  }
}

/// Points, distances and factors that extended data declares to go with the object.
void map_extended_data(TagSheet& sheet, const ObjectMap& map) {
  for (std::size_t i = 0; i < sheet.size(); ++i) {
    if (sheet.zone(i) != TagSheet::Zone::kExtended) continue;
    switch (sheet.code(i)) {
      case 1011:
        sheet.set_point(i, map.point(sheet.point(i)));
        break;
      case 1012:
        apply(sheet, i, Role::kVector, map, 0);
        break;
      case 1013:
        apply(sheet, i, Role::kDirection, map, 0);
        break;
      case 1041:
      case 1042:
        apply(sheet, i, Role::kLength, map, 0);
        break;
      default:
        break;
    }
  }
}

Acad::ErrorStatus map_sheet(TagSheet& sheet, const KindRules& kind, const AcGeVector3d& normal,
                            const AcGeMatrix3d& world, MirroredText text) {
  const ObjectMap map(world, normal);
  if (!map.uniform() && !kind.takes_any_map(sheet)) return Acad::eCannotScaleNonUniformly;
  put_normal(sheet, kind.normal_part, map.normal());
  if (kind.special) {
    const Acad::ErrorStatus status = kind.special(sheet, map, text);
    if (status != Acad::eOk) return status;
  }
  double elevation = 0;
  for (const Rule& rule : kind.rules) {
    if (rule.role != Role::kElevation) continue;
    elevation = sheet.real({}, rule.code, 0.0);
    const double raised = map.own_point({0, 0, elevation}).z;
    sheet.put_real(rule.code, raised, 0.0, {90, 70, 43});
  }
  for (std::size_t i = 0; i < sheet.size(); ++i) {
    if (sheet.zone(i) != TagSheet::Zone::kOwn) continue;
    const auto rule =
        std::find_if(kind.rules.begin(), kind.rules.end(),
                     [&](const Rule& candidate) { return candidate.code == sheet.code(i); });
    if (rule != kind.rules.end()) apply(sheet, i, rule->role, map, elevation);
  }
  map_extended_data(sheet, map);
  return sheet.finite() ? Acad::eOk : Acad::eInvalidInput;
}

/// Labels are turned before they are added: a TEXT whose tags are not spelled yet, flat, by a turn
/// about Z. False when it is something else; then nothing is changed.
bool turned_while_new(AcDbEntity& entity, const AcGeMatrix3d& map) {
  constexpr int kFirst = 10, kSecond = 11, kRotation = 50;
  NewTags* const values = ObjectAccess::fresh(entity);
  if (!values || ObjectAccess::stub(entity) || values->layout().kind != "TEXT" ||
      values->is_set(kNormal))
    return false;
  constexpr double kNoise = 1e-12;
  const AcGeVector3d x = map.column(0), y = map.column(1), z = map.column(2);
  const auto same = [](const AcGeVector3d& a, const AcGeVector3d& b) {
    return (a - b).length() <= kNoise;
  };
  const bool turn = std::fabs(x.length() - 1.0) <= kNoise && std::fabs(x.z) <= kNoise &&
                    same(y, {-x.y, x.x, 0.0}) && same(z, AcGeVector3d::kZAxis);
  if (!turn || !std::isfinite(map.translation().lengthSqrd())) return false;
  for (const int code : {kFirst, kSecond})
    if (values->is_set(code)) values->set_point(code, map * values->point(code));
  const double by = std::atan2(x.y, x.x) * (180.0 / std::numbers::pi);
  values->set_real(kRotation, normal_degrees(values->real(kRotation, 0.0) + by));
  return true;
}

/// New contents of objects, worked out before any of them is written.
class Plan {
 public:
  Acad::ErrorStatus add(AcDbObject& object, const AcGeMatrix3d& map, MirroredText text) {
    const Stub* stub = ObjectAccess::stub(object);
    TagSheet sheet(ObjectAccess::content(object), ObjectAccess::dialect(object));
    const std::string_view kind = kind_of(object);
    const KindRules* rules = rules_of_kind(kind);
    if (!rules) return Acad::eNotApplicable;
    const AcGeVector3d normal = sheet.normal();
    if (stub) {
      const Acad::ErrorStatus status = add_parts(*stub, kind, sheet, normal, map, text);
      if (status != Acad::eOk) return status;
    }
    return finish(object, sheet, *rules, normal, map, text);
  }

  void write() {
    for (auto& [object, content] : changes_) {
      ObjectAccess::replace_content(*object, std::move(content));
    }
  }

  static std::string_view kind_of(const AcDbObject& object) {
    dxf::TagReader tags(ObjectAccess::content(object), ObjectAccess::dialect(object));
    dxf::Tag tag;
    return tags.next(tag) ? tag.value : std::string_view();
  }

 private:
  Acad::ErrorStatus finish(AcDbObject& object, TagSheet& sheet, const KindRules& rules,
                           const AcGeVector3d& normal, const AcGeMatrix3d& map, MirroredText text) {
    const Acad::ErrorStatus status = map_sheet(sheet, rules, normal, map, text);
    if (status == Acad::eOk) keep(object, sheet);
    return status;
  }

  void keep(AcDbObject& object, TagSheet& sheet) {
    if (sheet.changed()) changes_.emplace_back(&object, sheet.text());
  }

  Acad::ErrorStatus add_parts(const Stub& stub, std::string_view kind, const TagSheet& main,
                              const AcGeVector3d& normal, const AcGeMatrix3d& map,
                              MirroredText text) {
    Drawing& drawing = StubStore::drawing_of(stub);
    for (Stub* part : drawing.sub_entities(stub)) {
      if (part->erased() || drawing.kind_name(*part) == "SEQEND") continue;
      AcDbObject& object = drawing.object(*part);
      Acad::ErrorStatus status = Acad::eOk;
      if (drawing.kind_name(*part) != "VERTEX") {
        status = add(object, map, text);
      } else {
        TagSheet sheet(ObjectAccess::content(object), ObjectAccess::dialect(object));
        if (is_face_record(sheet)) continue;
        status = finish(object, sheet, *rules_of_vertices(main), normal, map, text);
      }
      if (status != Acad::eOk) return status;
    }
    return kind == "DIMENSION" && !in_block_ ? add_block(drawing, stub, main, map, text)
                                             : Acad::eOk;
  }

  /// The block a dimension is drawn by, unless another reference uses it too.
  Acad::ErrorStatus add_block(Drawing& drawing, const Stub& stub, const TagSheet& main,
                              const AcGeMatrix3d& map, MirroredText text) {
    const std::size_t name_at = main.find({}, 2);
    if (name_at == TagSheet::kNone) return Acad::eOk;
    const std::wstring name = main.text_value(name_at);
    const Stub* record = drawing.table_record("BLOCK_RECORD", name);
    if (!record || !name.starts_with(L'*') || is_shared(drawing, stub, name)) return Acad::eOk;
    in_block_ = true;
    for (Stub* piece = drawing.first_in_block(record->handle); piece;
         piece = drawing.next_in_block(record->handle, *piece)) {
      const Acad::ErrorStatus status = add(drawing.object(*piece), map, text);
      if (status != Acad::eOk) return status;
    }
    in_block_ = false;
    return Acad::eOk;
  }

  static bool is_shared(Drawing& drawing, const Stub& own, const std::wstring& name) {
    for (std::size_t i = 0; i < drawing.stub_count(); ++i) {
      const Stub& other = drawing.stub_at(i);
      if (&other == &own || other.erased()) continue;
      const std::string_view kind = drawing.kind_name(other);
      if (kind != "DIMENSION" && kind != "INSERT") continue;
      const TagSheet sheet(drawing.bytes_of(other), drawing.dialect());
      const std::size_t at = sheet.find({}, 2);
      if (at != TagSheet::kNone && sheet.text_value(at) == name) return true;
    }
    return false;
  }

  std::vector<std::pair<AcDbObject*, std::string>> changes_;
  bool in_block_ = false;
};

}  // namespace

Acad::ErrorStatus transform_entity(AcDbEntity& entity, const AcGeMatrix3d& map, MirroredText text) {
  if (is_identity(map) || turned_while_new(entity, map)) return Acad::eOk;
  if (!is_usable(map)) return Acad::eInvalidInput;
  Plan plan;
  const Acad::ErrorStatus status = plan.add(entity, map, text);
  if (status != Acad::eOk) return status;
  plan.write();
  // Put into the place of its mirrored self, a text may start where only its font can tell.
  if (auto* const line = AcDbText::cast(&entity);
      line && text == MirroredText::kReadable && map.det() < 0.0)
    lay_out_text(*line);
  return Acad::eOk;
}

Acad::ErrorStatus transform_object(AcDbObjectId id, const AcGeMatrix3d& map, MirroredText text) {
  AcDbEntity* entity = nullptr;
  Acad::ErrorStatus status = acdbOpenAcDbEntity(entity, id, AcDb::kForWrite);
  if (status != Acad::eOk) return status;
  status = transform_entity(*entity, map, text);
  entity->close();
  return status;
}

Acad::ErrorStatus transform_copy(AcDbObjectId id, const AcGeMatrix3d& map, MirroredText text) {
  if (id.isNull()) return Acad::eNullObjectId;
  Stub& stub = *id.stub();
  AcDbEntity* const entity = AcDbEntity::cast(&StubStore::drawing_of(stub).object(stub));
  if (!entity) return Acad::eNotAnEntity;
  if (stub.erased()) return Acad::eWasErased;
  return transform_entity(*entity, map, text);
}

}  // namespace cad

Acad::ErrorStatus AcDbEntity::transformBy(const AcGeMatrix3d& map) {
  return isWriteEnabled() ? cad::transform_entity(*this, map, cad::MirroredText::kMirrored)
                          : Acad::eNotOpenForWrite;
}
