#include "host/app/select/plan_selection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "host/app/select/entity_index.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"

namespace cad {
namespace {

using Visit = EntityShapes::Visit;
using Box = EntityIndex::Box;
constexpr double kFar = std::numeric_limits<double>::infinity();

AcGePoint2d flat(const AcGePoint3d& p) { return {p.x, p.y}; }

Box box_of(const AcDbExtents& extents, double margin) {
  const AcGePoint3d a = extents.minPoint(), b = extents.maxPoint();
  return {a.x - margin, a.y - margin, b.x + margin, b.y + margin};
}

/// Rounding of extents, far below what a drawing means.
double slack(const AcDbExtents& box) {
  constexpr double kRelative = 1e-11, kLeast = 1e-12;
  const AcGePoint3d a = box.minPoint(), b = box.maxPoint();
  return kLeast +
         kRelative * std::max({std::fabs(a.x), std::fabs(a.y), std::fabs(b.x), std::fabs(b.y)});
}

PlanArea area_of(const FilledArea& filled) {
  std::vector<AcGePoint2d> corners;
  for (const AcGePoint3d& corner : filled.corners) corners.push_back(flat(corner));
  return PlanArea(std::move(corners));
}

/// A part of a block that is hidden although its reference is not.
bool is_hidden(EntityIndex& index, const Visit& visit) {
  return !visit.path.empty() && !index.is_drawn(visit.entity);
}

/// Calls with the part in the world.
template <class Use>
auto in_world(const Visit& visit, Use&& use) {
  if (visit.path.empty()) return use(visit.part);
  return use(transformed(visit.part, visit.map));
}

bool touches(const PlanArea& area, const ShapePart& part) {
  if (const auto* curve = std::get_if<Curve>(&part)) return area.touches(*curve);
  if (const auto* point = std::get_if<AcGePoint3d>(&part)) return area.holds(flat(*point));
  return area.touches(area_of(std::get<FilledArea>(part)));
}

bool holds(const PlanArea& area, const ShapePart& part) {
  if (const auto* curve = std::get_if<Curve>(&part)) return area.holds(*curve);
  if (const auto* point = std::get_if<AcGePoint3d>(&part)) return area.holds(flat(*point));
  return area.holds(area_of(std::get<FilledArea>(part)));
}

bool is_touched(EntityIndex& index, AcDbObjectId id, const PlanArea& area) {
  return !index.shapes().visit(id, [&](const Visit& visit) {
    return is_hidden(index, visit) ||
           !in_world(visit, [&](const ShapePart& part) { return touches(area, part); });
  });
}

bool is_held(EntityIndex& index, AcDbObjectId id, const PlanArea& area) {
  return index.shapes().visit(id, [&](const Visit& visit) {
    return is_hidden(index, visit) ||
           in_world(visit, [&](const ShapePart& part) { return holds(area, part); });
  });
}

EntityIndex& fresh_index(DocumentSession& session) {
  EntityIndex& index = session.entity_index();
  index.refresh();
  return index;
}

/// Calls `use` for each drawn entity whose box meets the given one, the newest first.
template <class Use>
void for_each_near(const EntityIndex& index, const Box& near, Use&& use) {
  const auto boxes = index.boxes();
  const auto entries = index.entries();
  for (std::size_t i = boxes.size(); i-- > 0;)
    if (boxes[i].meets(near) && index.is_selectable(entries[i])) use(entries[i], boxes[i]);
}

}  // namespace

std::vector<AcDbObjectId> select_area(DocumentSession& session, const PlanArea& area,
                                      bool crossing) {
  std::vector<AcDbObjectId> found;
  if (area.corners().empty()) return found;
  EntityIndex& index = fresh_index(session);
  const Box around = box_of(area.extents(), slack(area.extents()));
  for_each_near(index, around, [&](const EntityIndex::Entry& entry, const Box& box) {
    const bool inside = box.lies_in(around);
    if (!crossing && !inside) return;
    const bool taken = inside && area.is_box() ? true
                       : crossing              ? is_touched(index, entry.id, area)
                                               : is_held(index, entry.id, area);
    if (taken) found.push_back(entry.id);
  });
  return found;
}

std::vector<AcDbObjectId> select_window(DocumentSession& session, const AcGePoint3d& p1,
                                        const AcGePoint3d& p2, bool crossing) {
  return select_area(session, PlanArea::box(flat(p1), flat(p2)), crossing);
}

std::vector<AcDbObjectId> select_polygon(DocumentSession& session,
                                         std::span<const AcGePoint3d> corners, bool crossing) {
  std::vector<AcGePoint2d> flattened;
  for (const AcGePoint3d& corner : corners) flattened.push_back(flat(corner));
  return select_area(session, PlanArea(std::move(flattened)), crossing);
}

namespace {

/// A place on a fence: the number of its segment and the fraction along it.
struct FencePlace {
  double along;
  AcGePoint3d point;
};

void add_places(const Segment& segment, std::span<const AcGePoint3d> fence, std::size_t i,
                std::vector<FencePlace>& places) {
  const AcGePoint2d a = flat(fence[i]), b = flat(fence[i + 1]);
  const double square = (b - a).lengthSqrd();
  for (const double u : meetings(segment, a, b)) {
    const AcGePoint3d p = segment.point_at(u);
    const double t = square > 0.0 ? (flat(p) - a).dotProduct(b - a) / square : 0.0;
    places.push_back({static_cast<double>(i) + std::clamp(t, 0.0, 1.0), p});
  }
}

void add_places(const ShapePart& part, std::span<const AcGePoint3d> fence, std::size_t i,
                std::vector<FencePlace>& places) {
  if (const auto* curve = std::get_if<Curve>(&part)) {
    AcDbExtents box;
    box.addPoint(fence[i]);
    box.addPoint(fence[i + 1]);
    const Curve seen = clipped(*curve, box);
    for (const Segment& segment : seen.segments()) add_places(segment, fence, i, places);
  } else if (const auto* point = std::get_if<AcGePoint3d>(&part)) {
    add_places(Segment::line(*point, *point), fence, i, places);
  } else {
    const FilledArea& filled = std::get<FilledArea>(part);
    const std::size_t count = filled.corners.size();
    for (std::size_t k = 0; k < count; ++k)
      add_places(Segment::line(filled.corners[k], filled.corners[(k + 1) % count]), fence, i,
                 places);
    if (area_of(filled).holds(flat(fence[i]))) places.push_back({static_cast<double>(i), fence[i]});
  }
}

}  // namespace

std::vector<FenceHit> select_fence(DocumentSession& session, std::span<const AcGePoint3d> points) {
  std::vector<std::pair<double, FenceHit>> hits;
  if (points.size() < 2) return {};
  EntityIndex& index = fresh_index(session);
  AcDbExtents around;
  for (const AcGePoint3d& p : points) around.addPoint(p);
  const double margin = slack(around);
  for_each_near(
      index, box_of(around, margin), [&](const EntityIndex::Entry& entry, const Box& box) {
        std::vector<FencePlace> places;
        for (std::size_t i = 0; i + 1 < points.size(); ++i) {
          AcDbExtents segment;
          segment.addPoint(points[i]);
          segment.addPoint(points[i + 1]);
          if (!box.meets(box_of(segment, margin))) continue;
          index.shapes().visit(entry.id, [&](const Visit& visit) {
            if (!is_hidden(index, visit))
              in_world(visit, [&](const ShapePart& part) { add_places(part, points, i, places); });
            return true;
          });
        }
        if (places.empty()) return;
        std::sort(places.begin(), places.end(),
                  [](const FencePlace& a, const FencePlace& b) { return a.along < b.along; });
        FenceHit hit{entry.id, {}};
        for (const FencePlace& place : places)
          if (hit.places.empty() || !hit.places.back().isEqualTo(place.point))
            hit.places.push_back(place.point);
        hits.emplace_back(places.front().along, std::move(hit));
      });
  std::stable_sort(hits.begin(), hits.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<FenceHit> ordered;
  for (auto& [along, hit] : hits) ordered.push_back(std::move(hit));
  return ordered;
}

double pick_aperture(DocumentSession& session) {
  lisp::Interpreter& interp = session.interpreter();
  const auto number = [&](std::wstring_view name, double absent) {
    const lisp::Value value = session.variables.get(interp, name);
    if (value.is_cons()) {  // SCREENSIZE: width and height
      const lisp::Value& height = lisp::List(value).at_or_nil(1);
      return height.is_number() && height.number() > 0.0 ? height.number() : absent;
    }
    return value.is_number() && value.number() > 0.0 ? value.number() : absent;
  };
  constexpr double kUsualPickbox = 3, kUsualView = 297, kUsualScreen = 1000;
  return number(L"PICKBOX", kUsualPickbox) * number(L"VIEWSIZE", kUsualView) /
         number(L"SCREENSIZE", kUsualScreen);
}

namespace {

/// Distance in the plan; 0 inside a filled area.
double distance_to(const ShapePart& part, const AcGePoint3d& p) {
  const auto to_curve = [&](const Curve& curve) {
    return flat(curve.nearest_in_projection(p, AcGeVector3d::kZAxis).point).distanceTo(flat(p));
  };
  if (const auto* curve = std::get_if<Curve>(&part))
    return curve->segments().empty() ? kFar : to_curve(*curve);
  if (const auto* point = std::get_if<AcGePoint3d>(&part)) return flat(*point).distanceTo(flat(p));
  const FilledArea& filled = std::get<FilledArea>(part);
  if (filled.corners.empty()) return kFar;
  if (area_of(filled).holds(flat(p))) return 0.0;
  return to_curve(Curve::polyline3d(filled.corners, true));
}

struct Hit {
  double distance;
  AcDbObjectId entity;
};

/// Hits within the pick box, the nearest first, among equals the newest.
std::vector<Hit> hits_at(DocumentSession& session, const AcGePoint3d& point) {
  EntityIndex& index = fresh_index(session);
  const double aperture = pick_aperture(session);
  AcDbExtents here;
  here.addPoint(point);
  const PlanArea pick_box = PlanArea::box({point.x - aperture, point.y - aperture},
                                          {point.x + aperture, point.y + aperture});
  std::vector<Hit> hits;
  for_each_near(index, box_of(here, aperture), [&](const EntityIndex::Entry& entry, const Box&) {
    if (!is_touched(index, entry.id, pick_box)) return;
    double nearest = kFar;
    index.shapes().visit(entry.id, [&](const Visit& visit) {
      if (!is_hidden(index, visit))
        nearest = std::min(nearest, in_world(visit, [&](const ShapePart& part) {
                             return distance_to(part, point);
                           }));
      return true;
    });
    hits.push_back({nearest, entry.id});
  });
  const double same = 1e-9 * aperture;
  std::stable_sort(hits.begin(), hits.end(), [&](const Hit& a, const Hit& b) {
    return std::floor(a.distance / same) < std::floor(b.distance / same);
  });
  return hits;
}

/// The vertex at which the picked segment of an old polyline begins; the entity itself for others.
AcDbObjectId picked_vertex(AcDbObjectId id, const AcGePoint3d& point) {
  Drawing& drawing = StubStore::drawing_of(*id.stub());
  if (drawing.kind_name(*id.stub()) != "POLYLINE") return id;
  const std::optional<Curve> curve = curve_of(id);
  if (!curve) return id;
  const double param = curve->nearest_in_projection(point, AcGeVector3d::kZAxis).param;
  auto left = static_cast<std::size_t>(std::floor(param));
  constexpr int kFrame = 16;
  AcDbObjectId last = id;
  for (Stub* part : drawing.sub_entities(*id.stub())) {
    if (part->erased() || drawing.kind_name(*part) != "VERTEX") continue;
    if (EntityFields(drawing.bytes_of(*part), drawing.dialect()).integer(70) & kFrame) continue;
    last = AcDbObjectId(part);
    if (left-- == 0) break;
  }
  return last;
}

}  // namespace

std::vector<AcDbObjectId> pick_all_at(DocumentSession& session, const AcGePoint3d& point) {
  std::vector<AcDbObjectId> found;
  for (const Hit& hit : hits_at(session, point)) found.push_back(hit.entity);
  return found;
}

AcDbObjectId pick_at(DocumentSession& session, const AcGePoint3d& point) {
  const std::vector<Hit> hits = hits_at(session, point);
  return hits.empty() ? AcDbObjectId() : hits.front().entity;
}

NestedPick nested_pick_at(DocumentSession& session, const AcGePoint3d& point) {
  NestedPick pick;
  pick.picked = pick_at(session, point);
  if (pick.picked.isNull()) return pick;
  EntityIndex& index = session.entity_index();
  double nearest = kFar;
  index.shapes().visit(pick.picked, [&](const Visit& visit) {
    if (is_hidden(index, visit)) return true;
    const double distance =
        in_world(visit, [&](const ShapePart& part) { return distance_to(part, point); });
    if (distance >= nearest && !pick.entity.isNull()) return true;
    nearest = distance;
    pick.entity = visit.entity;
    pick.map = visit.map;
    pick.references.assign(visit.path.rbegin(), visit.path.rend());
    return true;
  });
  if (pick.references.empty()) pick.entity = picked_vertex(pick.entity, point);
  return pick;
}

}  // namespace cad
