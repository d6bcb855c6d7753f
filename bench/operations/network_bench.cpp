// Pipes and wells of an open drawing.
//     network_bench DRAWING...
// Each DRAWING is written by generate_drawing --network. Times are processor time for each pipe,
// the best of several rounds over all pipes; "x floor" compares with walking once through the tags
// of the pipe's record, which is what any reading of its data takes at least. With several drawings
// the last column compares the cost with the first one's.
//
//     floor       the tags of the pipe's record
//     open        open_pipe()
//     wells       getWellAtGx(): by handle, or for every fourth pipe by nearness
//     near wells  the same of those pipes only
//     moved       the same, after a well was written to
//     direction   the derivative of the centre line at its middle, the wells, and the values there
//     survey      all that `pipenote network` does with the drawing
// "index" is the time of the first question for a near well, which looks through the drawing once.

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "host/db/database.h"
#include "host/db/record.h"
#include "network/pipe_ends.h"
#include "network/survey.h"

namespace {

constexpr int kRounds = 5;

[[noreturn]] void give_up(const std::string& message) {
  std::fprintf(stderr, "%s\n", message.c_str());
  std::exit(1);
}

double processor_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double seconds(const std::function<void()>& work) {
  const double start = processor_seconds();
  work();
  return processor_seconds() - start;
}

using Ids = std::vector<AcDbObjectId>;
using Wells = std::pair<AcDbObjectId, AcDbObjectId>;

std::size_t count_tags(AcDbObjectId id) {
  const cad::RecordTags record = cad::record_tags(id);
  std::size_t count = 0;
  cad::dxf::Tag tag;
  for (cad::dxf::TagReader tags(record.bytes, *record.dialect); tags.next(tag);) ++count;
  return count;
}

bool find_wells(AcDbObjectId id) {
  Wells wells;
  return Gx::getWellAtGx(id, wells) == Acad::eOk;
}

bool find_wells_after_a_change(AcDbObjectId id) {
  Wells wells;
  if (Gx::getWellAtGx(id, wells) != Acad::eOk) return false;
  return network::write_real(wells.first, network::Key::kFlow, 1.5) == Acad::eOk && find_wells(id);
}

bool find_direction(AcDbObjectId id) {
  Wells wells;
  double start = 0.0, end = 0.0;
  AcGeVector3d derivative;
  const auto pipe = network::open_pipe(id);
  return pipe && Gx::getWellAtGx(id, wells) == Acad::eOk && network::flow_ends(*pipe, start, end) &&
         Gx::GetCurFirstDeriv(id, AcGePoint3d(30.0, 0.0, 0.0), derivative);
}

struct Row {
  const char* name;
  bool near_only;  ///< of pipes that do not name their wells
  bool (*work)(AcDbObjectId);
};
constexpr Row kRows[] = {
    {"floor", false, [](AcDbObjectId id) { return count_tags(id) != 0; }},
    {"open", false, [](AcDbObjectId id) { return network::open_pipe(id) != nullptr; }},
    {"wells", false, find_wells},
    {"near wells", true, find_wells},
    {"moved", true, find_wells_after_a_change},
    {"direction", false, find_direction},
};

/// Nanoseconds a pipe, by row; behind them those of the survey.
using Costs = std::vector<double>;

Costs measure(const std::string& path) {
  AcDbDatabase database(false);
  if (const cad::Status read = database.read_file(path); !read) give_up(read.error().message());
  Ids pipes, near;
  for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id)) {
    const auto pipe = network::open_pipe(id);
    if (!pipe) continue;
    pipes.push_back(id);
    if (pipe->start_node().isNull()) near.push_back(id);
  }
  if (pipes.empty() || near.empty()) give_up(path + ": no pipes; see generate_drawing --network");
  const double index = seconds([&] { find_wells(near.front()); });
  std::printf("%s: %zu pipes, index %.0f ms\n", path.c_str(), pipes.size(), index * 1e3);
  Costs costs;
  for (const Row& row : kRows) {
    const Ids& of = row.near_only ? near : pipes;
    double best = 1e9;
    for (int round = 0; round < kRounds; ++round) {
      best = std::min(best, seconds([&] {
                        for (const AcDbObjectId id : of)
                          if (!row.work(id)) give_up(std::string(row.name) + " failed");
                      }));
    }
    costs.push_back(best * 1e9 / static_cast<double>(of.size()));
  }
  double best = 1e9;
  for (int round = 0; round < kRounds; ++round)
    best = std::min(best, seconds([&] { network::survey(database); }));
  costs.push_back(best * 1e9 / static_cast<double>(pipes.size()));
  return costs;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) give_up("usage: network_bench DRAWING...");
  Costs first;
  for (int i = 1; i < argc; ++i) {
    const Costs costs = measure(argv[i]);
    if (first.empty()) first = costs;
    for (std::size_t row = 0; row < costs.size(); ++row) {
      std::printf("  %-12s %8.0f ns %7.1f x floor",
                  row < std::size(kRows) ? kRows[row].name : "survey", costs[row],
                  costs[row] / costs[0]);
      if (i > 1) std::printf(" %6.2f x the first drawing", costs[row] / first[row]);
      std::putchar('\n');
    }
  }
}
