// Labels made of values, each beside the same label made by snprintf, and the reading of all
// settings.
//     format_bench [Google Benchmark options]
// The settings are those installed with the program. The table at the end gives the shortest time
// of all repetitions, in processor time, and the target of each label.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "host/app/console.h"
#include "host/app/host.h"
#include "module/style/style.h"

namespace {

constexpr double kNoValue = -999999999.0;
constexpr int kRepetitions = 15;

CDimStyle& style() { return CDimStyle::Instance(); }

/// Measures of many pipes, so that no label is guessed from the one before.
const std::array<double, 1024>& measures() {
  static const std::array<double, 1024> all = [] {
    std::array<double, 1024> made{};
    for (std::size_t i = 0; i < made.size(); ++i)
      made[i] = 0.37 + static_cast<double>(i * 7919 % 100'000) * 0.0173;
    return made;
  }();
  return all;
}

template <class Make>
void make_labels(benchmark::State& state, const Make& make) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(make(measures()[i]));
    i = (i + 1) % measures().size();
  }
}

template <class... Arguments>
std::string printed(const char* format, Arguments... arguments) {
  char text[256];
  const int size = std::snprintf(text, sizeof text, format, arguments...);
  return std::string(text, static_cast<std::size_t>(size));
}

/// A stake as a program would write it by hand with snprintf, in the built-in style.
std::string stake_by_snprintf(double stake) {
  const int unit = static_cast<int>(stake / 1000.0);
  const double beyond = stake - unit * 1000.0;
  std::string text = printed("K%d+%07.3f", unit, beyond);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

/// The form of the label depends on the pipe's material, whoever makes it.
std::string diameter_by_snprintf(double diameter) {
  constexpr const char* kPrefixes[] = {"DN", "d", "de", "D"};
  const int form = WDLGX::GetDimH(L"1");
  return printed("%s%d", kPrefixes[form], static_cast<int>(diameter));
}

std::string composite_by_snprintf(double value) {
  const std::string diameter = diameter_by_snprintf(300.0);
  const std::string length = printed("%s%.*f%s", "L=", 1, value, "m");
  const std::string slope = printed("%s%.*f%s", "i=", 1, value * 0.1, "‰");
  return printed("%s-%s-%s", diameter.c_str(), length.c_str(), slope.c_str());
}

struct Label {
  const char* name;
  double target;  ///< nanoseconds
  void (*ours)(benchmark::State&);
  void (*theirs)(benchmark::State&);
};

constexpr Label kLabels[] = {
    {"length", 200,
     [](benchmark::State& s) {
       make_labels(s, [](double v) { return style().GetPipeLongStr(v); });
     },
     [](benchmark::State& s) {
       make_labels(s, [](double v) { return printed("%s%.*f%s", "L=", 1, v, "m"); });
     }},
    {"slope", 200,
     [](benchmark::State& s) {
       make_labels(s, [](double v) { return style().GetPipePdStr(v * 1e-4); });
     },
     [](benchmark::State& s) {
       make_labels(s, [](double v) { return printed("%s%.*f%s", "i=", 1, v * 0.1, "‰"); });
     }},
    {"elevation", 200,
     [](benchmark::State& s) {
       make_labels(s, [](double v) { return style().GetBgStr(GROUND, v); });
     },
     [](benchmark::State& s) { make_labels(s, [](double v) { return printed("%.*f", 3, v); }); }},
    {"diameter", 200,
     [](benchmark::State& s) {
       make_labels(s, [](double v) {
         return style().GetDnStr(300.0 + v, 1, 0, kNoValue, kNoValue, kNoValue);
       });
     },
     [](benchmark::State& s) {
       make_labels(s, [](double v) { return diameter_by_snprintf(300.0 + v); });
     }},
    {"stake", 500,
     [](benchmark::State& s) {
       const CString name;
       make_labels(s, [&](double v) { return style().GetZhStr(v * 10.0, name); });
     },
     [](benchmark::State& s) {
       make_labels(s, [](double v) { return stake_by_snprintf(v * 10.0); });
     }},
    {"composite", 1000,
     [](benchmark::State& s) {
       CString second, third;
       make_labels(s, [&](double v) {
         return style().GetCompositeDim(300.0, v * 1e-4, v, 1, second, third, 0, kNoValue, kNoValue,
                                        kNoValue);
       });
     },
     [](benchmark::State& s) { make_labels(s, composite_by_snprintf); }},
};

constexpr char kOurs[] = "/style";
constexpr char kTheirs[] = "/snprintf";
constexpr char kReading[] = "read_all_settings";
constexpr double kReadingTarget = 5e6;

void read_all_settings(benchmark::State& state) {
  for (auto _ : state) style().UpdateData();
}

/// Keeps the shortest time of each benchmark.
class Shortest : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
      const double time = run.cpu_accumulated_time * 1e9 / static_cast<double>(run.iterations);
      const auto [at, is_new] = times_.emplace(run.run_name.function_name, time);
      if (!is_new) at->second = std::min(at->second, time);
    }
  }
  void print_table() const {
    std::printf("%-12s %10s %12s %8s %10s\n", "label", "ns", "snprintf ns", "ratio", "target ns");
    for (const Label& label : kLabels) {
      const double ours = time(std::string(label.name) + kOurs);
      const double theirs = time(std::string(label.name) + kTheirs);
      if (ours == 0.0 || theirs == 0.0) continue;
      std::printf("%-12s %10.1f %12.1f %8.2f %10.0f%s\n", label.name, ours, theirs, ours / theirs,
                  label.target, ours < label.target && ours <= theirs ? "" : "  missed");
    }
    if (const double reading = time(kReading); reading != 0.0) {
      std::printf("%-12s %8.3f ms, target %.0f ms%s\n", "all settings", reading / 1e6,
                  kReadingTarget / 1e6, reading < kReadingTarget ? "" : "  missed");
    }
  }

 private:
  double time(const std::string& name) const {
    const auto at = times_.find(name);
    return at == times_.end() ? 0.0 : at->second;
  }
  std::map<std::string, double> times_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 1) {
    std::fprintf(stderr, "usage: format_bench [--benchmark_...]\n");
    return 2;
  }
  cad::host_settings().install_dir = network::default_install_dir();
  cad::set_console([](std::string_view) {});
  style().UpdateData();
  for (const Label& label : kLabels) {
    const std::string name = label.name;
    benchmark::RegisterBenchmark((name + kOurs).c_str(), label.ours)
        ->MinTime(0.02)
        ->Repetitions(kRepetitions);
    benchmark::RegisterBenchmark((name + kTheirs).c_str(), label.theirs)
        ->MinTime(0.02)
        ->Repetitions(kRepetitions);
  }
  benchmark::RegisterBenchmark(kReading, read_all_settings)
      ->MinTime(0.02)
      ->Repetitions(kRepetitions);
  Shortest shortest;
  benchmark::RunSpecifiedBenchmarks(&shortest);
  shortest.print_table();
}
