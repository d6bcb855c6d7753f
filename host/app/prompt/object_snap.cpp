#include "host/app/prompt/object_snap.h"

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "host/app/prompt/picking.h"
#include "host/app/prompt/point_text.h"
#include "host/app/prompt/question.h"
#include "host/app/prompt/ucs.h"
#include "host/app/prompt/values.h"
#include "host/app/select/plan_selection.h"
#include "host/app/session.h"
#include "host/base/fold.h"
#include "host/db/curve.h"
#include "host/db/record.h"
#include "host/geometry/intersect.h"

namespace cad {
namespace {

/// What is looked at for a snap: points of the world.
struct Scene {
  AcGePoint3d cursor;
  AcGePoint3d last;
  std::vector<AcDbObjectId> entities;
  std::vector<Curve> curves;
};
using Points = std::vector<AcGePoint3d>;

/// The segment of a curve that is nearest to the cursor.
const Segment& segment_near(const Curve& curve, const AcGePoint3d& cursor) {
  return curve.segment_at(curve.closest_param(cursor));
}

void find_ends(const Scene& scene, Points& found) {
  for (const Curve& curve : scene.curves) {
    const Segment& segment = segment_near(curve, scene.cursor);
    const bool is_whole = segment.is_arc() && segment.start().isEqualTo(segment.end());
    if (is_whole || (!curve.is_bounded() && curve.kind() != Curve::Kind::kRay)) continue;
    found.push_back(segment.start());
    if (curve.is_bounded()) found.push_back(segment.end());
  }
}

void find_middles(const Scene& scene, Points& found) {
  for (const Curve& curve : scene.curves) {
    if (!curve.is_bounded()) continue;
    const Segment& segment = segment_near(curve, scene.cursor);
    found.push_back(segment.point_at(segment.u_at_length(segment.length() / 2)));
  }
}

void find_centres(const Scene& scene, Points& found) {
  for (const Curve& curve : scene.curves)
    for (const Segment& segment : curve.segments())
      if (segment.is_arc()) found.push_back(segment.center());
}

void find_quadrants(const Scene& scene, Points& found) {
  for (const Curve& curve : scene.curves) {
    for (const Segment& segment : curve.segments()) {
      if (!segment.is_arc()) continue;
      for (int quarter = 0; quarter < 4; ++quarter) {
        const double angle = quarter * std::numbers::pi / 2;
        const AcGePoint3d point = segment.center() + segment.x_axis() * std::cos(angle) +
                                  segment.y_axis() * std::sin(angle);
        if (segment.nearest(point).distance < 1e-9 * (1 + segment.radius())) found.push_back(point);
      }
    }
  }
}

void find_crossings(const Scene& scene, Points& found) {
  for (std::size_t i = 0; i < scene.curves.size(); ++i) {
    for (std::size_t j = i + 1; j < scene.curves.size(); ++j)
      for (const AcGePoint3d& point : intersections(scene.curves[i], scene.curves[j]))
        found.push_back(point);
  }
}

void find_nearest(const Scene& scene, Points& found) {
  for (const Curve& curve : scene.curves) found.push_back(curve.closest_point(scene.cursor));
}

void find_feet(const Scene& scene, Points& found) {
  for (const Curve& curve : scene.curves)
    found.push_back(curve.closest_point(scene.last, /*extend=*/true));
}

/// Where lines from the last point touch circles.
void find_tangents(const Scene& scene, Points& found) {
  for (const Curve& curve : scene.curves) {
    for (const Segment& segment : curve.segments()) {
      if (segment.kind() != Segment::Kind::kArc) continue;
      const AcGeVector3d way = scene.last - segment.center();
      const double distance = way.length(), radius = segment.radius();
      if (!(distance > radius)) continue;
      const double angle = std::acos(radius / distance);
      for (const double side : {angle, -angle}) {
        AcGeVector3d spoke = way.normal() * radius;
        found.push_back(segment.center() + spoke.rotateBy(side, segment.normal()));
      }
    }
  }
}

void find_places(const Scene& scene, Points& found, std::initializer_list<std::string_view> kinds) {
  for (const AcDbObjectId id : scene.entities) {
    const std::string_view kind = record_kind(id);
    for (const std::string_view wanted : kinds)
      if (kind == wanted) found.push_back(place_of(id));
  }
}

void find_nodes(const Scene& scene, Points& found) { find_places(scene, found, {"POINT"}); }

void find_insertions(const Scene& scene, Points& found) {
  find_places(scene, found, {"INSERT", "TEXT", "MTEXT", "ATTRIB", "ATTDEF", "SHAPE"});
}

struct Mode {
  std::wstring_view name;
  void (*find)(const Scene&, Points&);  // null: no snap at all
};
constexpr Mode kModes[] = {
    {L"ENDPOINT", find_ends},
    {L"MIDPOINT", find_middles},
    {L"CENTER", find_centres},
    {L"NODE", find_nodes},
    {L"QUADRANT", find_quadrants},
    {L"INTERSECTION", find_crossings},
    {L"INSERTION", find_insertions},
    {L"PERPENDICULAR", find_feet},
    {L"TANGENT", find_tangents},
    {L"NEAREST", find_nearest},
    {L"NONE", nullptr},
    {L"QUICK", nullptr},
};

const Mode* find_mode(std::wstring_view typed) {
  if (typed.starts_with(L"_")) typed.remove_prefix(1);
  for (const Mode& mode : kModes)
    if (typed.size() >= 3 && typed.size() <= mode.name.size() &&
        equal_no_case(typed, mode.name.substr(0, typed.size())))
      return &mode;
  return nullptr;
}

double real_variable(DocumentSession& session, std::wstring_view name, double absent) {
  const lisp::Value value = session.variables.get(session.interpreter(), name);
  return value.is_number() && value.number() > 0.0 ? value.number() : absent;
}

/// What lies in the snap box: APERTURE pixels where the pick box has PICKBOX.
Scene scene_at(DocumentSession& session, const AcGePoint3d& cursor) {
  const double pixels = real_variable(session, L"PICKBOX", 3.0);
  const double half = pick_aperture(session) * real_variable(session, L"APERTURE", 10.0) / pixels;
  const AcGeVector3d reach(half, half, 0.0);
  Scene scene;
  scene.cursor = cursor;
  scene.last = ucs_to_world(session) * input_units(session).last;
  scene.entities = select_window(session, cursor - reach, cursor + reach, true);
  for (const AcDbObjectId id : scene.entities)
    if (auto curve = curve_of(id)) scene.curves.push_back(std::move(*curve));
  return scene;
}

}  // namespace

std::optional<std::wstring> snap_modes(std::wstring_view typed) {
  std::wstring modes;
  for (;;) {
    const std::size_t comma = typed.find(L',');
    const Mode* const mode = find_mode(typed.substr(0, comma));
    if (!mode) return std::nullopt;
    if (mode->find) modes.append(modes.empty() ? L"" : L",").append(mode->name);
    if (comma == std::wstring_view::npos) return modes;
    typed.remove_prefix(comma + 1);
  }
}

std::optional<AcGePoint3d> snap_point(DocumentSession& session, const AcGePoint3d& point,
                                      std::wstring_view modes) {
  const AcGePoint3d cursor = ucs_to_world(session) * point;
  const Scene scene = scene_at(session, cursor);
  Points found;
  while (!modes.empty()) {
    const std::size_t comma = std::min(modes.find(L','), modes.size());
    const Mode* const mode = find_mode(modes.substr(0, comma));
    if (mode && mode->find) mode->find(scene, found);
    modes.remove_prefix(std::min(comma + 1, modes.size()));
  }
  const AcGePoint3d* best = nullptr;
  double least = std::numeric_limits<double>::infinity();
  for (const AcGePoint3d& candidate : found) {
    const double off = std::hypot(candidate.x - cursor.x, candidate.y - cursor.y);
    if (off < least) best = &candidate;
    least = std::min(least, off);
  }
  if (!best) return std::nullopt;
  return world_to_ucs(session) * *best;
}

}  // namespace cad
