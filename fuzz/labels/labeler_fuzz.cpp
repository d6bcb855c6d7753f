// Any entities and, behind a line of "---", any objects in a new drawing: it is labelled, its
// labels are brought up to date, and its records are handed to the functions on records.
//   - pipes and nodes are still there after labelling and updating;
//   - a second update changes no byte;
//   - the drawing that is saved reads again, with the same labels out of order;
//   - nothing stays open.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/console.h"
#include "host/app/host.h"
#include "host/app/session.h"
#include "host/db/database.h"
#include "host/db/record.h"
#include "host/lisp/interpreter.h"
#include "network/object_data.h"

namespace {

constexpr std::string_view kTypes =
    "'(\"xzgj\" \"xdgj\" \"xdbg_st\" \"xdbg_ed\" \"pcgb\" \"bjbh\" \"bzjg\" \"pcjdb\")";

/// What programs can ask of the records, of every entity in turn.
constexpr std::string_view kRecordCalls = R"(
(defun try (call) (vl-catch-all-apply call (list e)))
(defun each (/ e)
  (setq e (entnext))
  (while e
    (try '(lambda (e) (dimRec (list e "pcgb") e "pipe_dia" "300" "DN" "" "-")))
    (foreach name '("pipe_dia" "pipe_len" "well_bh" "jt")
      (try '(lambda (e) (dimupdate e name "7.5" T "<" ">" "|"))))
    (foreach type types (try '(lambda (e) (updatedim type e))))
    (try 'jgbzUpInfo)
    (try 'updateJtDirection)
    (try 'updatePipeInfo)
    (try 'updateWellInfo)
    (try '(lambda (e) (dimDel e "pcgb")))
    (try 'dimDelAll)
    (try 'dimDelAllInfo)
    (setq e (entnext e))))
(each)
)";

void require(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", law);
  std::abort();
}

cad::Host& host() {
  static cad::Host* const one = new cad::Host;
  static const bool ready = [] {
    cad::set_console([](std::string_view) {});
    cad::host_settings().install_dir = PN_INSTALLATION "/";
    cad::host_settings().module_folders = {PN_MODULES};
    AcApDocument* const drawing = one->new_drawing();
    for (const char* module : {"pipenote.arx", "labeler.arx"})
      require(bool(one->load_module(module)), "the modules load");
    one->close(drawing);
    // Before the modules' own statics end, which a static host would outlive.
    return std::atexit([] { delete one; }) == 0;
  }();
  require(ready, "the host can be ended");
  return *one;
}

/// A new drawing with the input's entities and objects in front of the ends of their sections.
std::string drawing_of(std::string_view input) {
  static const std::string frame = [] {
    AcApDocument* const drawing = host().new_drawing();
    std::string bytes = drawing->database()->save_bytes();
    host().close(drawing);
    return bytes;
  }();
  constexpr std::string_view kMark = "\n---\n", kEnd = "  0\nENDSEC\n";
  const std::size_t entities = frame.find(kEnd, frame.find("\nENTITIES\n"));
  const std::size_t objects = frame.find(kEnd, frame.find("\nOBJECTS\n"));
  require(objects != frame.npos && entities < objects, "a drawing has entities, then objects");
  const std::size_t mark = std::min(input.find(kMark), input.size());
  std::string bytes = frame.substr(0, entities);
  bytes += input.substr(0, mark);
  bytes += mark < input.size() ? "\n" : "";
  bytes += frame.substr(entities, objects - entities);
  bytes += input.substr(std::min(mark + kMark.size(), input.size()));
  bytes += frame.substr(objects);
  return bytes;
}

std::string eval(AcApDocument* drawing, std::string_view text) {
  const cad::Result<cad::lisp::Value> value = host().eval_string(drawing, text);
  host().finish_command(drawing);
  return value ? cad::Host::printed(*value) : "error: " + value.error().what;
}

std::vector<AcDbObjectId> parts_of(const AcDbDatabase& drawing) {
  std::vector<AcDbObjectId> parts;
  drawing.for_each_object([&](AcDbObjectId id) {
    if (cad::is_entity(id) && !id.isErased() && network::kind_of(id)) parts.push_back(id);
  });
  return parts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const cad::Result<AcApDocument*> opened = host().open_bytes(drawing_of(input), "fuzz.dxf");
  if (!opened) return 0;
  AcApDocument* const drawing = *opened;
  const AcDbDatabase& database = *drawing->database();
  drawing->session().interpreter().set_limits(
      {.steps = 20000, .stack_bytes = 256 << 10, .memory_bytes = 64 << 20});
  const std::vector<AcDbObjectId> parts = parts_of(database);
  eval(drawing, "(setq types " + std::string(kTypes) + ")");

  eval(drawing, "(labelnetwork)");
  eval(drawing, "(labelupdate nil T)");
  eval(drawing, "(labelnetwork types)");
  eval(drawing, "(labelupdate nil T)");
  for (const AcDbObjectId part : parts) require(!part.isErased(), "pipes and nodes stay");
  require(database.open_objects().empty(), "nothing stays open");
  const std::string updated = database.save_bytes();
  eval(drawing, "(labelupdate nil T)");
  require(database.save_bytes() == updated, "a second update changes nothing");
  const std::string stale = eval(drawing, "(labelstale)");

  eval(drawing, kRecordCalls);
  require(database.open_objects().empty(), "nothing stays open");
  const std::string called = database.save_bytes();
  host().close(drawing);

  for (const std::string* saved : {&updated, &called}) {
    const cad::Result<AcApDocument*> again = host().open_bytes(*saved, "saved.dxf");
    require(bool(again), "what was saved reads again");
    const std::string now = eval(*again, "(labelstale)");
    if (saved == &updated) require(now == stale, "saved labels are what they were");
    host().close(*again);
  }
  return 0;
}
