// Selecting by geometry in a drawing of 100,000 entities, and the nearest point of long curves.
//     selection_bench [Google Benchmark options]
// The drawing is made here: pipes with labels, wells and valves in rows, 1 unit apart.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/app/console.h"
#include "host/app/host.h"
#include "host/app/select/entity_index.h"
#include "host/app/select/plan_selection.h"
#include "host/app/session.h"
#include "host/db/line.h"
#include "host/db/open.h"

namespace {

constexpr int kEntities = 100'000;
constexpr int kPerRow = 400;

void add_tags(std::string& out, std::initializer_list<std::pair<int, std::string>> tags) {
  for (const auto& [code, value] : tags) out += std::to_string(code) + "\n" + value + "\n";
}

/// Lines, texts, circles and polylines with arcs by turns, from the lower left.
std::string drawing_of_many() {
  std::string out;
  add_tags(out, {{0, "SECTION"},
                 {2, "HEADER"},
                 {9, "$ACADVER"},
                 {1, "AC1009"},
                 {0, "ENDSEC"},
                 {0, "SECTION"},
                 {2, "ENTITIES"}});
  for (int i = 0; i < kEntities; ++i) {
    const double x = i % kPerRow, y = i / kPerRow;
    const std::string at_x = std::to_string(x), at_y = std::to_string(y);
    const std::string to_x = std::to_string(x + 0.8), to_y = std::to_string(y + 0.6);
    const std::string handle = std::to_string(100'000 + i);
    switch (i % 4) {
      case 0:
        add_tags(out, {{0, "LINE"},
                       {5, handle},
                       {8, "PIPES"},
                       {10, at_x},
                       {20, at_y},
                       {11, to_x},
                       {21, to_y}});
        break;
      case 1:
        add_tags(out, {{0, "TEXT"},
                       {5, handle},
                       {8, "LABELS"},
                       {10, at_x},
                       {20, at_y},
                       {40, "0.2"},
                       {1, "DN300"},
                       {50, "36.87"}});
        break;
      case 2:
        add_tags(out,
                 {{0, "CIRCLE"}, {5, handle}, {8, "WELLS"}, {10, at_x}, {20, at_y}, {40, "0.3"}});
        break;
      default:
        add_tags(out, {{0, "LWPOLYLINE"},
                       {5, handle},
                       {8, "PIPES"},
                       {90, "3"},
                       {70, "0"},
                       {10, at_x},
                       {20, at_y},
                       {42, "0.5"},
                       {10, to_x},
                       {20, at_y},
                       {10, to_x},
                       {20, to_y}});
    }
  }
  add_tags(out, {{0, "ENDSEC"}, {0, "EOF"}});
  return out;
}

/// The drawing, opened once.
class Plan {
 public:
  Plan() {
    cad::set_console([](std::string_view) {});
    cad::Result<AcApDocument*> opened = host_.open_bytes(drawing_of_many(), "many.dxf");
    if (!opened) {
      std::fprintf(stderr, "%s\n", opened.error().message().c_str());
      std::exit(1);
    }
    document_ = *opened;
  }
  cad::DocumentSession& session() { return document_->session(); }
  void eval(const char* text) {
    if (!host_.eval_string(document_, text)) std::exit(1);
  }

 private:
  cad::Host host_;
  AcApDocument* document_ = nullptr;
};

Plan& plan() {
  static auto* const the_plan = new Plan;  // lives to the end of the process
  return *the_plan;
}

/// The boxes of all entities, measured anew.
void index_all(benchmark::State& state) {
  plan();
  for (auto _ : state) {
    cad::EntityIndex index(plan().session().database());
    index.refresh();
    benchmark::DoNotOptimize(index.entries().data());
  }
  state.SetItemsProcessed(state.iterations() * kEntities);
}
BENCHMARK(index_all)->Unit(benchmark::kMillisecond);

/// A window or crossing window over `range` by `range` units: about as many entities squared.
void select_square(benchmark::State& state) {
  const bool crossing = state.range(1) != 0;
  const auto side = static_cast<double>(state.range(0));
  cad::select_window(plan().session(), {0, 0, 0}, {1, 1, 0}, true);  // makes the index
  std::size_t found = 0;
  for (auto _ : state) {
    const auto ids = cad::select_window(plan().session(), {100.3, 100.3, 0},
                                        {100.3 + side, 100.3 + side, 0}, crossing);
    found = ids.size();
  }
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(select_square)
    ->ArgsProduct({{5, 100, 1000}, {0, 1}})
    ->ArgNames({"side", "crossing"})
    ->Unit(benchmark::kMicrosecond);

/// All of it, as LISP has it: with a selection set.
void ssget_window(benchmark::State& state) {
  plan().eval("(ssget \"W\" '(-9 -9) '(999 999))");
  for (auto _ : state) plan().eval("(ssget \"W\" '(-9 -9) '(999 999))");
}
BENCHMARK(ssget_window)->Unit(benchmark::kMicrosecond);

/// A small window after one entity was changed.
void select_after_change(benchmark::State& state) {
  cad::select_window(plan().session(), {0, 0, 0}, {1, 1, 0}, true);
  const AcDbObjectId first = plan().session().database().first_entity();
  double x = 0;
  for (auto _ : state) {
    AcDbLine* line = nullptr;
    if (acdbOpenObject(line, first, AcDb::kForWrite) != Acad::eOk) std::exit(1);
    line->setStartPoint({x += 0.001, 0, 0});
    line->close();
    benchmark::DoNotOptimize(
        cad::select_window(plan().session(), {100.3, 100.3, 0}, {105.3, 105.3, 0}, true));
  }
}
BENCHMARK(select_after_change)->Unit(benchmark::kMicrosecond);

void pick(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(cad::pick_at(plan().session(), {200, 100, 0}));
}
BENCHMARK(pick)->Unit(benchmark::kMicrosecond);

/// Of a polyline of `range` segments, half of them arcs.
void nearest_on_polyline(benchmark::State& state) {
  std::vector<cad::Curve::Vertex> vertices;
  for (int i = 0; i <= state.range(0); ++i)
    vertices.push_back({{static_cast<double>(i), std::sin(i * 0.1)}, i % 2 ? 0.3 : 0.0});
  const cad::Curve curve = cad::Curve::polyline(vertices, false);
  double x = 0;
  for (auto _ : state) {
    x = std::fmod(x + 7.3, static_cast<double>(state.range(0)));
    benchmark::DoNotOptimize(curve.nearest({x, 3, 0}));
  }
}
BENCHMARK(nearest_on_polyline)->Arg(10)->Arg(1000)->Unit(benchmark::kMicrosecond);

void nearest_on_spline(benchmark::State& state) {
  cad::SplineShape shape;
  for (int i = 0; i <= state.range(0); ++i)
    shape.fit_points.push_back({static_cast<double>(i), std::sin(i * 0.7), 0.0});
  const cad::Curve curve = *cad::Curve::spline(shape);
  double x = 0;
  for (auto _ : state) {
    x = std::fmod(x + 7.3, static_cast<double>(state.range(0)));
    benchmark::DoNotOptimize(curve.nearest({x, 3, 0}));
  }
}
BENCHMARK(nearest_on_spline)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
