// Labels drawn into a drawing, with the undo log on.
//     draw_bench [COUNT]
// Of each kind COUNT (100,000) are drawn into a new drawing. The rates are of processor time, the
// best of several runs. The floor writes the numbers and texts of the same labels to memory and
// does nothing else; "x floor" says how much more drawing costs.

#include <time.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/app/console.h"
#include "host/app/host.h"
#include "module/draw/draw.h"
#include "network/places.h"

namespace {

constexpr int kRuns = 5;
constexpr double kGoal = 500e3;  // labels per second

double processor_seconds() {
  timespec now;
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Places of a network in plan: seven digits and some decimals, each another.
AcGePoint3d place(int i) { return {507'000.125 + i * 0.37, 311'000.5 + i % 977 * 1.13, 0.0}; }
double turn(int i) { return i % 360 * 0.0043; }

const CString& label(int i) {
  static const CString labels[] = {L"DN300-36.5-3.2‰", L"DN1000-128.25-0.8‰", L"de110-9.7-5.0‰"};
  return labels[i % 3];
}

struct Workload {
  const char* name;
  bool has_goal;
  bool flipped;
  void (*draw)(CDimDraw&, int);
};

constexpr Workload kWorkloads[] = {
    {"text, left", true, false,
     [](CDimDraw& draw, int i) {
       draw.DrawTextW(label(i), place(i), AcDb::kTextLeft, AcDb::kTextBase, turn(i), 1.75, 0.7);
     }},
    {"text, middle", true, false,
     [](CDimDraw& draw, int i) { draw.DrawMMText(label(i), place(i), turn(i), 0, -1); }},
    {"text, bottom right", true, false,
     [](CDimDraw& draw, int i) { draw.DrawRBText(label(i), place(i), turn(i), 0, -1); }},
    {"text, flipped", false, true,
     [](CDimDraw& draw, int i) { draw.DrawMMText(label(i), place(i), turn(i), 0, -1); }},
    {"line", false, false,
     [](CDimDraw& draw, int i) { draw.DrawLine(place(i), place(i + 3), -1); }},
    {"wide line", false, false,
     [](CDimDraw& draw, int i) { draw.DrawLine(place(i), place(i + 3), 0.35); }},
    {"arrow", false, false,
     [](CDimDraw& draw, int i) {
       draw.Arrow(place(i), {1.0, turn(i), 0.0});
     }},
    {"arrow symbol", false, false,
     [](CDimDraw& draw, int i) {
       draw.LeftInsertArrow(place(i), {1.0, turn(i), 0.0}, false, nullptr);
     }},
};

double drawn(const Workload& workload, cad::Host& host, int count) {
  double best = 1e9;
  for (int run = 0; run < kRuns; ++run) {
    AcApDocument* const document = host.new_drawing();
    CDimDraw draw(500, L"ZY-标注");
    if (workload.flipped) draw.SetReferenceDirection({507'000, 311'000, 0}, 3.14159265358979, 0);
    const double begin = processor_seconds();
    for (int i = 0; i < count; ++i) workload.draw(draw, i);
    best = std::min(best, processor_seconds() - begin);
    if (draw.GetAllDimEntityId().length() != count) {
      std::fprintf(stderr, "%s: not everything was drawn\n", workload.name);
      std::exit(1);
    }
    host.close(document);
  }
  return best / count;
}

/// The numbers of a TEXT in the middle: two points, height, width, rotation.
double floor_of(int count) {
  double best = 1e9;
  for (int run = 0; run < kRuns; ++run) {
    std::string out;
    const double begin = processor_seconds();
    for (int i = 0; i < count; ++i) {
      const AcGePoint3d at = place(i);
      const double numbers[] = {at.x - 3.1, at.y - 0.7,     0.0, at.x, at.y, 0.0,
                                1.75,       turn(i) * 57.3, 0.7};
      char text[32];
      for (const double number : numbers) {
        out.append(" 10\n", 4);
        out.append(text, std::to_chars(text, text + sizeof text, number).ptr);
        out += '\n';
      }
      for (const wchar_t c : label(i)) out += static_cast<char>(c);
    }
    best = std::min(best, processor_seconds() - begin);
    if (out.empty()) std::exit(1);
  }
  return best / count;
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc == 2 ? std::atoi(argv[1]) : 100'000;
  if (argc > 2 || count < 1) {
    std::fprintf(stderr, "usage: draw_bench [COUNT]\n");
    return 2;
  }
  cad::host_settings().install_dir = network::default_install_dir();
  cad::set_console([](std::string_view) {});
  cad::Host host;
  const double floor = floor_of(count);
  std::printf("%-20s %12s %10s %8s\n", "", "per second", "ns", "x floor");
  std::printf("%-20s %12.0f %10.0f %8s\n", "floor", 1.0 / floor, floor * 1e9, "");
  for (const Workload& workload : kWorkloads) {
    const double cost = drawn(workload, host, count);
    std::printf("%-20s %12.0f %10.0f %8.2f%s\n", workload.name, 1.0 / cost, cost * 1e9,
                cost / floor, workload.has_goal && 1.0 / cost < kGoal ? "  below 500,000" : "");
  }
}
