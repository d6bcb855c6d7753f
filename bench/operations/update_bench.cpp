// Labels that follow their pipes, on an open drawing: updating, deleting, asking.
//     update_bench [--only WORKLOAD] DRAWING...
// Each DRAWING is written by generate_drawing: a record of two texts for every pipe. The rates are
// of processor time with the drawing open, the best of several runs on drawings opened anew. With
// several drawings the last column compares the cost per pipe with the first one's.
//
//     update     updateDim() of the diameter of every pipe: its text is made anew
//     query      isDimExisted() of every pipe
//     delete     deleteAllDim() of every pipe: texts and record are erased
// "opening" makes the manager of the pipe first, as a caller with an entity in hand does; the other
// rows have it ready.

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/console.h"
#include "host/app/host.h"
#include "host/db/database.h"
#include "host/db/record.h"
#include "module/manager/dim_manager.h"
#include "module/registry/update_service.h"
#include "network/places.h"

namespace {

[[noreturn]] void give_up(const std::string& message) {
  std::fprintf(stderr, "%s\n", message.c_str());
  std::exit(1);
}

struct Workload {
  const char* name;
  const char* unit;
  int per_pipe;  ///< units of one pipe
  double goal;   ///< units per second; 0 for none
  bool opening;  ///< whether the managers are made within the time measured
  bool (*work)(CDimManager&);
};

bool update(CDimManager& pipe) { return pipe.updateDim(L"pipe_dia", L"450") == Acad::eOk; }

bool query(CDimManager& pipe) {
  int existing = 0;
  int missing = 0;
  return pipe.isDimExisted(L"pcgb", existing, missing) == Acad::eOk && existing == 1;
}

bool erase(CDimManager& pipe) { return pipe.deleteAllDim() == Acad::eOk; }

constexpr Workload kWorkloads[] = {
    {"update", "labels", 1, 200e3, false, update},
    {"update, opening", "labels", 1, 0, true, update},
    {"query", "records", 1, 1e6, false, query},
    {"query, opening", "records", 1, 0, true, query},
    {"delete", "entities", 2, 1e6, false, erase},
    {"delete, opening", "entities", 2, 0, true, erase},
};

/// Processor time of this thread: what other programs take of the machine does not count.
double processor_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The pipes of an open drawing.
std::vector<AcDbObjectId> pipes_of(AcDbDatabase& database) {
  std::vector<AcDbObjectId> pipes;
  for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id)) {
    if (cad::record_kind(id) == "LINE") pipes.push_back(id);
  }
  return pipes;
}

struct Cost {
  std::size_t pipes = 0;
  double seconds = 1e9;  ///< of all pipes, the best run
};

Cost measure(cad::Host& host, const std::string& path, const Workload& workload) {
  Cost cost;
  const double begin = processor_seconds();
  for (int run = 0; run < 20 && (run < 3 || processor_seconds() - begin < 1.0); ++run) {
    cad::Result<AcApDocument*> opened = host.open_drawing(path);
    if (!opened) give_up(opened.error().message());
    const std::vector<AcDbObjectId> pipes = pipes_of(*(*opened)->database());
    std::vector<CDimManager> managers;
    for (std::size_t i = 0; !workload.opening && i < pipes.size(); ++i)
      managers.emplace_back(pipes[i]);
    std::size_t done = 0;
    const double start = processor_seconds();
    for (std::size_t i = 0; i < pipes.size(); ++i) {
      if (workload.opening) {
        CDimManager manager(pipes[i]);
        done += workload.work(manager);
      } else {
        done += workload.work(managers[i]);
      }
    }
    cost.seconds = std::min(cost.seconds, processor_seconds() - start);
    cost.pipes = pipes.size();
    if (done != pipes.size()) give_up(path + ": " + workload.name + ": not every pipe was done");
    host.close(*opened);
  }
  return cost;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> drawings(argv + 1, argv + argc);
  std::string only;
  if (drawings.size() > 2 && drawings[0] == "--only") {
    only = drawings[1];
    drawings.erase(drawings.begin(), drawings.begin() + 2);
  }
  if (drawings.empty()) {
    std::fprintf(stderr, "usage: update_bench [--only WORKLOAD] DRAWING...\n");
    return 2;
  }
  cad::set_console([](std::string_view) {});
  cad::host_settings().install_dir = network::default_install_dir();
  if (!CDimUpdateServ::getInstance().getPcBzSz()) give_up("the label settings are not installed");
  cad::Host host;
  const std::string module = cad::Host::library_folder() + "/pipenote.arx.so";
  if (const cad::Status loaded = host.load_module(module); !loaded)
    give_up(loaded.error().message());
  std::printf("%-18s %9s %14s %-10s %8s %9s %7s\n", "workload", "pipes", "rate", "unit/s",
              "of goal", "ns/pipe", "growth");
  for (const Workload& workload : kWorkloads) {
    if (!only.empty() && only != workload.name) continue;
    double first = 0;
    for (const std::string& drawing : drawings) {
      const Cost cost = measure(host, drawing, workload);
      const double per_pipe = cost.seconds / static_cast<double>(cost.pipes);
      const double rate = workload.per_pipe / per_pipe;
      if (first == 0) first = per_pipe;
      char goal[16] = "";
      if (workload.goal > 0) std::snprintf(goal, sizeof goal, "%.2f", rate / workload.goal);
      std::printf("%-18s %9zu %14.0f %-10s %8s %9.0f %7.2f\n", workload.name, cost.pipes, rate,
                  workload.unit, goal, per_pipe * 1e9, per_pipe / first);
      std::fflush(stdout);
    }
  }
}
