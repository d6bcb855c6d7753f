// TRIM and EXTEND: curves are cut at, or made longer to, other curves. What meets what is judged in
// the plan.

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/app/command/edit/curve_entity.h"
#include "host/app/command/edit/edit_commands.h"
#include "host/app/session.h"
#include "host/db/curve.h"
#include "host/db/open.h"
#include "host/db/record_groups.h"
#include "host/geometry/intersect.h"

namespace cad {
namespace {

constexpr double kSame = 1e-9;  // of places on a curve

/// The curves that cut, or to which others are made longer.
struct Edge {
  AcDbObjectId object;
  Curve plan;
};

std::vector<AcDbObjectId> entities_of_space(AcDbDatabase& database) {
  std::vector<AcDbObjectId> all;
  const AcDbObjectId space = database.currentSpaceId();
  for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id)) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) continue;
    const AcDbObjectId owner = entity->ownerId();
    entity->close();
    if (owner == space || (owner.isNull() && !is_sub_entity(id))) all.push_back(id);
  }
  return all;
}

std::vector<Edge> edges_among(const std::vector<AcDbObjectId>& objects) {
  std::vector<Edge> edges;
  for (const AcDbObjectId object : objects) {
    const std::optional<Curve> curve = curve_of(object);
    if (curve && !curve->segments().empty()) {
      edges.push_back({object, CurveEntity::flattened(*curve)});
    }
  }
  return edges;
}

/// Where a curve crosses the edges, as places on it, in order.
std::vector<double> places_on(const CurveEntity& entity, const std::vector<Edge>& edges,
                              Extend extend) {
  std::vector<double> places;
  const Curve plan = entity.in_plan();
  for (const Edge& edge : edges) {
    if (edge.object == entity.object()) continue;
    for (const Crossing& at : crossings(plan, edge.plan, extend)) {
      places.push_back(static_cast<double>(at.first_segment) + at.first_u);
    }
  }
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end(),
                           [](double a, double b) { return std::fabs(a - b) < kSame; }),
               places.end());
  return places;
}

/// What is left of a curve when the part around `picked`, between two places, goes. Nothing when
/// no place bounds it.
std::optional<std::vector<Span>> parts_left(const CurveEntity& entity, std::vector<double> places,
                                            double picked) {
  if (entity.closed()) {
    std::erase_if(places, [&](double at) { return at > entity.end() - kSame; });
    if (places.size() < 2) return std::nullopt;
    auto next = std::find_if(places.begin(), places.end(), [&](double at) { return at > picked; });
    const double high = next == places.end() ? places.front() : *next;
    const double low = next == places.begin() ? places.back() : *(next - 1);
    return std::vector<Span>{{high, low > high ? low : low + entity.end()}};
  }
  double low = entity.start(), high = entity.end();
  for (const double at : places) {
    if (at < entity.start() + kSame || at > entity.end() - kSame) continue;
    if (at <= picked && at > low) low = at;
    if (at > picked && at < high) high = at;
  }
  if (low == entity.start() && high == entity.end()) return std::nullopt;
  std::vector<Span> left;
  if (low != entity.start()) left.push_back({entity.start(), low});
  if (high != entity.end()) left.push_back({high, entity.end()});
  return left;
}

/// The dialogue of both commands.
class Cutter {
 public:
  Cutter(CommandLine& line, bool trims) : line_(line), trims_(trims) {}

  CommandLine& line() { return line_; }
  bool trims() const { return trims_; }
  void set_edges(const std::vector<AcDbObjectId>& objects) {
    all_ = objects.empty();
    chosen_ = objects;
  }
  bool has_edges() const { return all_ || !edges_among(chosen_).empty(); }
  bool undo() { return log_.undo(); }

  /// Cuts or extends one object where it was picked; `quiet` leaves out what could not be done.
  bool apply(AcDbObjectId object, const AcGePoint3d& point, bool quiet = false) {
    if (on_locked_layer(object)) return tell(L"Object is on a locked layer.", quiet);
    const std::optional<CurveEntity> entity = CurveEntity::of(object);
    if (!entity) {
      return tell(trims_ ? L"Cannot TRIM this object." : L"Cannot EXTEND this object.", quiet);
    }
    return trims_ ? trim(*entity, point, quiet) : extend(*entity, point, quiet);
  }

  /// Every object of the space that the path crosses, where it does.
  void apply_along(const std::vector<AcGePoint3d>& path) {
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
      const Curve step = CurveEntity::flattened(Curve::line(path[i], path[i + 1]));
      // Objects that a cut makes are not cut again by the same step.
      for (const AcDbObjectId object : entities_of_space(line_.database())) {
        const std::optional<CurveEntity> entity = CurveEntity::of(object);
        if (!entity) continue;
        const std::vector<Crossing> met = crossings(entity->in_plan(), step);
        if (!met.empty()) apply(object, met.front().point, true);
      }
    }
  }

 private:
  Extend extend_of_edges() const {
    return line_.integer_variable(L"EDGEMODE") != 0 ? Extend::kSecond : Extend::kNeither;
  }
  std::vector<Edge> edges() const {
    return edges_among(all_ ? entities_of_space(line_.database()) : chosen_);
  }

  bool tell(std::wstring_view text, bool quiet) {
    if (!quiet) line_.print(text);
    return false;
  }

  bool keep(const CurveEntity& entity, const std::vector<Span>& parts) {
    log_.begin_step();
    const std::vector<AcDbObjectId> kept = entity.keep(line_, parts, log_);
    // The edges that were cut still cut.
    if (std::find(chosen_.begin(), chosen_.end(), entity.object()) != chosen_.end()) {
      for (const AcDbObjectId piece : kept) {
        if (piece != entity.object()) chosen_.push_back(piece);
      }
    }
    return !kept.empty();
  }

  bool trim(const CurveEntity& entity, const AcGePoint3d& point, bool quiet) {
    const std::vector<double> places = places_on(entity, edges(), extend_of_edges());
    const auto left = parts_left(entity, places, entity.nearest(point));
    if (left) return keep(entity, *left);
    const bool once = entity.closed() && places.size() == 1;
    return tell(once ? L"Circle must intersect twice." : L"Object does not intersect an edge.",
                quiet);
  }

  bool extend(const CurveEntity& entity, const AcGePoint3d& point, bool quiet) {
    if (entity.closed() || !entity.curve().is_bounded()) {
      return tell(L"Cannot EXTEND this object.", quiet);
    }
    const Extend mode = extend_of_edges() == Extend::kSecond ? Extend::kBoth : Extend::kFirst;
    const double last = entity.end();
    const Curve& curve = entity.curve();
    const double picked = entity.nearest(point);
    const double along = curve.segments().size() == 1
                             ? picked
                             : curve.distance_at(std::clamp(picked, 0.0, last)) / curve.length();
    const bool at_end = along >= 0.5;
    const Segment& arc = at_end ? curve.segments().back() : curve.segments().front();
    // A prolonged arc comes around: a place before its start is one behind its end as well.
    const bool comes_around = arc.is_arc() && curve.segments().size() == 1;
    const double round = comes_around ? 2.0 * std::numbers::pi / std::fabs(arc.sweep()) : 0.0;
    double best = std::numeric_limits<double>::infinity();
    for (const double place : places_on(entity, edges(), mode)) {
      if (place >= -kSame && place <= last + kSame) continue;
      const double beyond = at_end ? (place < 0.0 ? place + round : place) - last
                                   : (place > last ? round - place : -place);
      if (beyond > kSame) best = std::min(best, beyond);
    }
    if (std::isinf(best)) return tell(L"Object does not intersect an edge.", quiet);
    return keep(entity, {at_end ? Span{0.0, last + best} : Span{-best, last}});
  }

  CommandLine& line_;
  const bool trims_;
  bool all_ = true;
  std::vector<AcDbObjectId> chosen_;
  EditLog log_;
};

Flow<> ask_edge_mode(CommandLine& line) {
  const Answer mode = co_await line.keyword(
      {.text = L"Enter an implied edge extension mode [Extend/No extend] <No extend>: ",
       .keywords = L"Extend No"});
  if (!mode.none()) line.set_variable(L"EDGEMODE", mode.is(L"Extend") ? 1 : 0);
}

Flow<> ask_projection(CommandLine& line) {
  const Answer mode = co_await line.keyword(
      {.text = L"Enter a projection option [None/Ucs/View] <Ucs>: ", .keywords = L"None Ucs View"});
  if (!mode.none() && !mode.is(L"Ucs")) {
    line.refuse(L"objects are always projected to the plan; this option is not offered.");
  }
}

Flow<std::vector<AcGePoint3d>> ask_fence(CommandLine& line) {
  std::vector<AcGePoint3d> path;
  for (;;) {
    const AcGePoint3d from = path.empty() ? AcGePoint3d() : path.back();
    const Answer next =
        co_await line.point({.text = path.empty() ? L"Specify first fence point: "
                                                  : L"Specify next fence point or [Undo]: ",
                             .keywords = path.empty() ? L"" : L"Undo",
                             .from = path.empty() ? nullptr : &from});
    if (next.is(L"Undo")) {
      path.pop_back();
    } else if (next.is_point()) {
      path.push_back(next.point);
    } else {
      co_return path;
    }
  }
}

/// The sides of a window.
Flow<std::vector<AcGePoint3d>> ask_window(CommandLine& line) {
  const Answer a = co_await line.point({.text = L"Specify first corner: ", .bits = kNoEnter});
  const Answer b = co_await line.corner(
      {.text = L"Specify opposite corner: ", .bits = kNoEnter, .from = &a.point});
  const AcGePoint3d p = a.point, q = b.point;
  co_return std::vector<AcGePoint3d>{p, {q.x, p.y, 0}, q, {p.x, q.y, 0}, p};
}

Flow<> cut(Cutter& cutter) {
  CommandLine& line = cutter.line();
  const Answer edges = co_await line.selection(
      {.text = cutter.trims() ? L"Select cutting edges...\nSelect objects or <select all>: "
                              : L"Select boundary edges...\nSelect objects or <select all>: "});
  cutter.set_edges(edges.selection);
  if (!cutter.has_edges()) {
    line.print(L"No edges selected.");
    co_return;
  }
  for (;;) {
    const Answer answer = co_await line.entity(
        {.text = cutter.trims() ? L"Select object to trim or shift-select to extend or "
                                  L"[Fence/Crossing/Project/Edge/eRase/Undo]: "
                                : L"Select object to extend or shift-select to trim or "
                                  L"[Fence/Crossing/Project/Edge/Undo]: ",
         .keywords = cutter.trims() ? L"Fence Crossing Project Edge eRase Undo"
                                    : L"Fence Crossing Project Edge Undo",
         .bits = kMayEnd});
    if (answer.is_entity()) {
      cutter.apply(answer.entity, answer.point);
    } else if (answer.is(L"Fence")) {
      const std::vector<AcGePoint3d> path = co_await ask_fence(line);
      cutter.apply_along(path);
    } else if (answer.is(L"Crossing")) {
      const std::vector<AcGePoint3d> path = co_await ask_window(line);
      cutter.apply_along(path);
    } else if (answer.is(L"Project")) {
      co_await ask_projection(line);
    } else if (answer.is(L"Edge")) {
      co_await ask_edge_mode(line);
    } else if (answer.is(L"eRase")) {
      const std::vector<AcDbObjectId> unwanted = co_await select_changeable(line);
      for (const AcDbObjectId object : unwanted) erase(object);
    } else if (answer.is(L"Undo")) {
      if (!cutter.undo()) line.print(L"Command has been completely undone.");
    } else {
      co_return;
    }
    if (line.passing_over()) co_return;
  }
}

Flow<> trim_command(CommandLine& line) {
  Cutter cutter(line, true);
  co_await cut(cutter);
}

Flow<> extend_command(CommandLine& line) {
  Cutter cutter(line, false);
  co_await cut(cutter);
}

constexpr CommandRow kRows[] = {
    {"TRIM", "TR", trim_command,
     "cutting edges, Enter (at once: all), objects to trim or [Fence/Crossing/Project/Edge/eRase/"
     "Undo] ..., Enter",
     "cuts objects at others", CommandRow::kEndsWithEnter | CommandRow::kNoPickFirst},
    {"EXTEND", "EX", extend_command,
     "boundary edges, Enter (at once: all), objects to extend or [Fence/Crossing/Project/Edge/"
     "Undo] ..., Enter",
     "makes objects longer up to others", CommandRow::kEndsWithEnter | CommandRow::kNoPickFirst},
};

}  // namespace

std::span<const CommandRow> trim_commands() { return kRows; }

}  // namespace cad
