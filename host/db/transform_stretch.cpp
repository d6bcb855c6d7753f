// Pulling single points of entities.

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "host/db/drawing.h"
#include "host/db/entity.h"
#include "host/db/object_access.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/transform_rules.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

using Chosen = std::function<bool(const AcGePoint3d&)>;

/// A defining point and where it is stored.
struct Pull {
  AcDbObject* object;
  TagSheet* sheet;
  std::size_t at;
  AcGeMatrix3d own;  ///< from stored to world coordinates
  AcGePoint3d world;
  bool flat;
};

/// The defining points of an entity and its vertices.
class Points {
 public:
  explicit Points(AcDbObject& entity, Drawing& drawing, const Stub& stub) {
    TagSheet& main = sheet_of(entity);
    kind_ = drawing.kind_name(stub);
    rules_ = rules_of_kind(kind_);
    if (!rules_) return;
    collect(entity, main, *rules_, main.normal());
    if (kind_ != "POLYLINE") return;
    for (Stub* part : drawing.sub_entities(stub)) {
      if (part->erased() || drawing.kind_name(*part) != "VERTEX") continue;
      AcDbObject& vertex = drawing.object(*part);
      TagSheet& sheet = sheet_of(vertex);
      if (!is_face_record(sheet)) {
        collect(vertex, sheet, *rules_of_vertices(main), main.normal());
      }
    }
  }

  const KindRules* rules() const { return rules_; }
  std::string_view kind() const { return kind_; }
  std::vector<Pull>& pulls() { return pulls_; }
  TagSheet& main() { return *sheets_.front(); }

  void write() {
    for (std::size_t i = 0; i < sheets_.size(); ++i) {
      if (sheets_[i]->changed()) ObjectAccess::replace_content(*objects_[i], sheets_[i]->text());
    }
  }

 private:
  TagSheet& sheet_of(AcDbObject& object) {
    objects_.push_back(&object);
    sheets_.push_back(
        std::make_unique<TagSheet>(ObjectAccess::content(object), ObjectAccess::dialect(object)));
    return *sheets_.back();
  }

  void collect(AcDbObject& object, TagSheet& sheet, const KindRules& rules,
               const AcGeVector3d& normal) {
    const AcGeMatrix3d own = ocs_to_wcs(normal);
    const double elevation = sheet.real({}, 38, 0.0);
    for (std::size_t i = 0; i < sheet.size(); ++i) {
      if (sheet.zone(i) != TagSheet::Zone::kOwn) continue;
      for (const Rule& rule : rules.rules) {
        if (rule.code != sheet.code(i)) continue;
        AcGePoint3d stored = sheet.point(i);
        const bool flat = rule.role == Role::kFlatPoint;
        if (flat) stored.z = elevation;
        if (rule.role == Role::kPoint) {
          pulls_.push_back({&object, &sheet, i, AcGeMatrix3d::kIdentity, stored, false});
        } else if (flat || rule.role == Role::kOwnPoint) {
          pulls_.push_back({&object, &sheet, i, own, own * stored, flat});
        }
      }
    }
  }

  std::string_view kind_;
  const KindRules* rules_ = nullptr;
  std::vector<AcDbObject*> objects_;
  std::vector<std::unique_ptr<TagSheet>> sheets_;
  std::vector<Pull> pulls_;
};

AcGePoint3d on_circle(const AcGePoint3d& center, double radius, double degrees) {
  const double angle = degrees * std::numbers::pi / 180.0;
  return center + AcGeVector3d(std::cos(angle), std::sin(angle), 0) * radius;
}

double degrees_of(const AcGeVector3d& v) {
  return normal_degrees(tidy_degrees(std::atan2(v.y, v.x) * 180.0 / std::numbers::pi));
}

/// An arc one end of which is pulled keeps the angle it turns through.
Acad::ErrorStatus stretch_arc(TagSheet& sheet, const AcGeVector3d& by, const Chosen& chosen,
                              bool& whole) {
  const AcGeMatrix3d own = ocs_to_wcs(sheet.normal());
  const std::size_t center_at = sheet.find({}, 10), radius_at = sheet.find({}, 40);
  const std::size_t from_at = sheet.find({}, 50), to_at = sheet.find({}, 51);
  for (const std::size_t at : {center_at, radius_at, from_at, to_at}) {
    if (at == TagSheet::kNone) return Acad::eInvalidInput;
  }
  const AcGePoint3d center = sheet.point(center_at);
  AcGePoint3d from = on_circle(center, sheet.real(radius_at), sheet.real(from_at));
  AcGePoint3d to = on_circle(center, sheet.real(radius_at), sheet.real(to_at));
  const bool from_moves = chosen(own * from), to_moves = chosen(own * to);
  whole = from_moves && to_moves;
  if (from_moves == to_moves) return Acad::eOk;
  const AcGeVector3d shift = own.transpose() * by;
  (from_moves ? from : to) += AcGeVector3d(shift.x, shift.y, 0);
  const double sweep = normal_degrees(sheet.real(to_at) - sheet.real(from_at));
  const double half = sweep * std::numbers::pi / 360.0;
  const AcGeVector3d chord = to - from;
  if (chord.isZeroLength() || std::fabs(std::sin(half)) < 1e-12) return Acad::eInvalidInput;
  const AcGeVector3d left(-chord.y, chord.x, 0);
  const AcGePoint3d middle = from + chord * 0.5 + left * (0.5 / std::tan(half));
  sheet.set_point(center_at, middle);
  sheet.set_real(radius_at, middle.distanceTo(from));
  sheet.set_real(from_at, degrees_of(from - middle));
  sheet.set_real(to_at, degrees_of(to - middle));
  return Acad::eOk;
}

/// The point by which an entity moves as a whole.
AcGePoint3d main_point(const TagSheet& sheet, std::string_view kind) {
  const bool text = kind == "TEXT" || kind == "ATTDEF" || kind == "ATTRIB";
  const bool anchored = text && (sheet.integer({}, 72, 0) != 0 || sheet.integer({}, 73, 0) != 0);
  std::size_t at = anchored ? sheet.find({}, 11) : TagSheet::kNone;
  if (at == TagSheet::kNone) at = sheet.find({}, 10);
  if (at == TagSheet::kNone) return {};
  const bool own = text || kind == "CIRCLE" || kind == "INSERT" || kind == "SHAPE";
  return own ? ocs_to_wcs(sheet.normal()) * sheet.point(at) : sheet.point(at);
}

/// All corners of a hatch's boundary lie inside.
bool holds_boundary(const TagSheet& sheet, const Chosen& chosen) {
  const AcGeMatrix3d own = ocs_to_wcs(sheet.normal());
  const std::size_t head = sheet.find({}, 10);
  if (head == TagSheet::kNone) return false;
  const double elevation = sheet.point(head).z;
  bool any = false;
  for (std::size_t i = head + 1; i < sheet.size() && sheet.code(i) != 75; ++i) {
    if (sheet.code(i) != 10 || sheet.zone(i) != TagSheet::Zone::kOwn) continue;
    any = true;
    if (!chosen(own * AcGePoint3d(sheet.real(i), sheet.real(i + 1), elevation))) return false;
  }
  return any;
}

}  // namespace

Acad::ErrorStatus stretch_object(AcDbObjectId id, const AcGeVector3d& by, const Chosen& chosen) {
  AcDbEntity* entity = nullptr;
  Acad::ErrorStatus status = acdbOpenAcDbEntity(entity, id, AcDb::kForWrite);
  if (status != Acad::eOk) return status;
  const Stub& stub = *id.stub();
  Points points(*entity, StubStore::drawing_of(stub), stub);
  const auto finish = [&](bool whole) {
    if (whole) status = transform_entity(*entity, AcGeMatrix3d::translation(by), {});
    entity->close();
    return status;
  };
  if (!points.rules()) {
    entity->close();
    return Acad::eNotApplicable;
  }
  std::size_t inside = 0;
  for (const Pull& pull : points.pulls()) inside += chosen(pull.world) ? 1 : 0;
  const bool all = inside == points.pulls().size();
  if (points.kind() == "ARC") {
    bool whole = false;
    status = stretch_arc(points.main(), by, chosen, whole);
    if (status == Acad::eOk && !whole) points.write();
    return finish(status == Acad::eOk && whole);
  }
  if (points.kind() == "HATCH") return finish(holds_boundary(points.main(), chosen));
  if (points.kind() == "DIMENSION") {
    if (inside != 0 && !all) status = Acad::eNotApplicable;
    return finish(inside != 0 && all);
  }
  if (points.rules()->moves_whole) return finish(chosen(main_point(points.main(), points.kind())));
  if (inside == 0 || all) return finish(all && inside != 0);
  for (const Pull& pull : points.pulls()) {
    if (!chosen(pull.world)) continue;
    const AcGePoint3d stored = pull.own.transpose() * (pull.world + by);
    pull.sheet->set_point(pull.at, stored, pull.flat);
  }
  points.write();
  return finish(false);
}

}  // namespace cad
