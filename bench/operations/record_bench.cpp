// Recording on an open drawing of many labelled pipes, through the exported classes and from LISP.
//     record_bench DRAWING [Google Benchmark options]
// DRAWING is written by generate_drawing. Each iteration works on another pipe; when the pipes are
// used up the drawing is opened anew, outside of the measured time.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "host/app/console.h"
#include "host/app/host.h"
#include "host/db/arxdbg_utils.h"
#include "host/db/database.h"
#include "host/db/record.h"
#include "host/db/undo.h"
#include "module/manager/dim_manager.h"
#include "module/record/dim_item.h"

namespace {

std::string drawing_path;

[[noreturn]] void give_up(const cad::Error& error) {
  std::fprintf(stderr, "%s\n", error.message().c_str());
  std::exit(1);
}

/// The drawing, opened anew each time its pipes are used up.
class Pipes {
 public:
  Pipes() {
    const std::string module = cad::Host::library_folder() + "/pipenote.arx.so";
    if (const cad::Status loaded = host_.load_module(module); !loaded) give_up(loaded.error());
  }

  struct Pipe {
    AcDbObjectId line;
    AcDbObjectId text;
  };

  void open() {
    if (document_) host_.close(document_);
    pipes_.clear();
    cad::Result<AcApDocument*> opened = host_.open_drawing(drawing_path);
    if (!opened) give_up(opened.error());
    document_ = *opened;
    AcDbDatabase& database = *document_->database();
    cad::undo_log(database).set_recording(logged);
    for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id)) {
      if (cad::record_kind(id) != "LINE") continue;
      pipes_.push_back({id, database.next_entity(id)});
    }
    next_ = 0;
  }
  bool logged = true;  ///< whether what is recorded can be taken back

  bool used_up() const { return next_ >= pipes_.size(); }
  const Pipe& next() { return pipes_[next_++]; }
  std::size_t count() const { return pipes_.size(); }
  cad::Host& host() { return host_; }
  AcApDocument* document() { return document_; }

 private:
  cad::Host host_;
  AcApDocument* document_ = nullptr;
  std::vector<Pipe> pipes_;
  std::size_t next_ = 0;
};

Pipes& pipes() {
  static Pipes all;
  return all;
}

StuDim label(const Pipes::Pipe& pipe, const wchar_t* name) {
  StuDim item;
  item.name = name;
  ArxDbgUtils::objIdToHandleStr(pipe.text, item.handle);
  item.value = L"300";
  item.prefix = L"DN";
  item.separator = L"-";
  return item;
}

/// One dimRecEx() of `type` and `name` per iteration, manager and handle text ready before.
void record(benchmark::State& state, const wchar_t* type, const wchar_t* name) {
  pipes().open();
  std::vector<CDimManager> managers;
  std::vector<StuDim> items;
  std::size_t i = 0;
  for (auto _ : state) {
    if (i == items.size()) {
      state.PauseTiming();
      pipes().open();
      managers.clear();
      items.clear();
      while (!pipes().used_up()) {
        const Pipes::Pipe& pipe = pipes().next();
        managers.emplace_back(pipe.line);
        items.push_back(label(pipe, name));
      }
      i = 0;
      state.ResumeTiming();
    }
    if (managers[i].dimRecEx(type, items[i]) != Acad::eOk) state.SkipWithError("not recorded");
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}

void new_record(benchmark::State& state) { record(state, L"xzgj", L"pipe_dia"); }
BENCHMARK(new_record);

/// The same without the log of steps: what taking back costs is the difference.
void new_record_unlogged(benchmark::State& state) {
  pipes().logged = false;
  record(state, L"xzgj", L"pipe_dia");
  pipes().logged = true;
}
BENCHMARK(new_record_unlogged);

void merge_into_a_record_of_two(benchmark::State& state) { record(state, L"pcgb", L"pipe_dia"); }
BENCHMARK(merge_into_a_record_of_two);

/// The whole of (dimRec ...) for every pipe, in one LISP loop.
void record_from_lisp(benchmark::State& state) {
  std::int64_t calls = 0;
  for (auto _ : state) {
    state.PauseTiming();
    pipes().open();
    cad::Host& host = pipes().host();
    const auto ready = host.eval_string(pipes().document(),
                                        "(setq e (entnext) lines nil texts nil)"
                                        "(while e"
                                        "  (if (= (cdr (assoc 0 (entget e))) \"LINE\")"
                                        "    (setq lines (cons e lines)"
                                        "          texts (cons (entnext e) texts)))"
                                        "  (setq e (entnext e)))");
    if (!ready) state.SkipWithError(ready.error().message().c_str());
    state.ResumeTiming();
    const auto done = host.eval_string(
        pipes().document(),
        "(while lines"
        "  (dimRec (list (car lines) \"xzgj\") (car texts) \"pipe_dia\" \"300\" \"DN\" \"\" \"-\")"
        "  (setq lines (cdr lines) texts (cdr texts)))");
    if (!done) state.SkipWithError(done.error().message().c_str());
    calls += static_cast<std::int64_t>(pipes().count());
  }
  state.SetItemsProcessed(calls);
}
BENCHMARK(record_from_lisp)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: record_bench DRAWING [--benchmark_...]\n");
    return 2;
  }
  drawing_path = argv[1];
  cad::set_console([](std::string_view) {});
  benchmark::RunSpecifiedBenchmarks();
}
