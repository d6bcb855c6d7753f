// What a call of the module from LISP costs beside the same call from C++, on an open drawing:
//     lisp_call_bench DRAWING
// DRAWING is written by generate_drawing. Each function is called once for every pipe; the times
// are of processor time, the best of several runs. "floor" is the LISP loop without a call.

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/console.h"
#include "host/app/host.h"
#include "host/db/database.h"
#include "host/db/record.h"
#include "module/manager/dim_manager.h"
#include "module/manager/flow_arrows.h"
#include "network/places.h"

namespace {

constexpr int kRuns = 5;

[[noreturn]] void give_up(const std::string& message) {
  std::fprintf(stderr, "%s\n", message.c_str());
  std::exit(1);
}

struct Workload {
  const char* name;
  const char* from_lisp;  ///< of the entity e
  bool (*from_cpp)(AcDbObjectId);
};

bool update(AcDbObjectId pipe) {
  CDimManager manager(pipe);
  StuDim item;
  item.name = L"pipe_dia";
  item.value = L"450";
  return manager.updateDim(item, 0) == Acad::eOk;
}

bool record(AcDbObjectId pipe) {
  CDimManager manager(pipe);
  return manager.dimEntRec(L"bzjg", pipe) == Acad::eOk;
}

bool redraw(AcDbObjectId pipe) {
  CDimManager manager(pipe);
  return manager.openStatus() == Acad::eOk && manager.updateDim(L"pcgb") == dim::kNotFound;
}

bool turn(AcDbObjectId pipe) { return dim::turn_flow_arrows(pipe) == RTNORM; }

constexpr Workload kWorkloads[] = {
    {"dimupdate", "(dimupdate e \"pipe_dia\" \"450\")", update},
    {"dimGeRec", "(dimGeRec (list e \"bzjg\") e)", record},
    {"updatedim", "(updatedim \"pcgb\" e)", redraw},
    {"updateJtDirection", "(updateJtDirection e)", turn},
};

/// Processor time of this thread: what other programs take of the machine does not count.
double processor_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double best_of(const std::function<void()>& work) {
  double best = 1e9;
  for (int run = 0; run < kRuns; ++run) {
    const double start = processor_seconds();
    work();
    best = std::min(best, processor_seconds() - start);
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: lisp_call_bench DRAWING\n");
    return 2;
  }
  cad::set_console([](std::string_view) {});
  cad::host_settings().install_dir = network::default_install_dir();
  cad::Host host;
  const std::string module = cad::Host::library_folder() + "/pipenote.arx.so";
  if (const cad::Status loaded = host.load_module(module); !loaded)
    give_up(loaded.error().message());
  cad::Result<AcApDocument*> opened = host.open_drawing(argv[1]);
  if (!opened) give_up(opened.error().message());
  AcDbDatabase& database = *(*opened)->database();
  std::vector<AcDbObjectId> pipes;
  for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id))
    if (cad::record_kind(id) == "LINE") pipes.push_back(id);
  if (pipes.empty()) give_up(std::string(argv[1]) + ": no pipes");

  const auto evaluate = [&](const std::string& program) {
    if (const auto value = host.eval_string(*opened, program); !value)
      give_up(value.error().message());
  };
  evaluate("(setq pipes (ssget \"X\" '((0 . \"LINE\"))))");
  const auto loop = [&](const std::string& call) {
    return best_of([&] {
      evaluate("(setq n 0) (repeat (sslength pipes) (setq e (ssname pipes n) n (1+ n)) " + call +
               ")");
    });
  };
  const double each = 1e9 / static_cast<double>(pipes.size());
  std::printf("%zu pipes, ns a call\n%-18s %9.0f\n", pipes.size(), "floor", loop("") * each);
  std::printf("%-18s %9s %9s %7s\n", "function", "LISP", "C++", "ratio");
  for (const Workload& workload : kWorkloads) {
    const double lisp = loop(workload.from_lisp);
    const double cpp = best_of([&] {
      for (const AcDbObjectId pipe : pipes)
        if (!workload.from_cpp(pipe)) give_up(std::string(workload.name) + " failed");
    });
    std::printf("%-18s %9.0f %9.0f %7.2f\n", workload.name, lisp * each, cpp * each, lisp / cpp);
    std::fflush(stdout);
  }
}
