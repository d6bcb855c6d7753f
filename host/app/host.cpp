#include "host/app/host.h"

#include <sys/stat.h>

#include <algorithm>
#include <cassert>
#include <utility>

#include "host/app/command/command_line.h"
#include "host/app/console.h"
#include "host/app/modules.h"
#include "host/app/prompt/user_input.h"
#include "host/app/session.h"
#include "host/app/system/blackboard.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/install_folder.h"
#include "host/base/numbers.h"
#include "host/base/trace.h"
#include "host/db/drawing.h"
#include "host/db/undo.h"
#include "host/dwg/converter.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"

namespace cad {
namespace {

Host* current_host = nullptr;

std::function<void(std::string_view)>& alert_sink() {
  static std::function<void(std::string_view)> sink;
  return sink;
}

/// Once per document: a text that holds for a thousand entities is told with the first.
void tell_alert(const std::wstring& text) {
  DocumentSession* const session = DocumentSession::current();
  if (session && !session->alerts_told.insert(text).second) return;
  if (alert_sink()) alert_sink()(to_utf8(text));
}

/// What Memory::kLeft left: nothing is lost, so that leak checkers have nothing to tell.
std::vector<AcDbDatabase*>& left_databases() {
  static auto* const databases = new std::vector<AcDbDatabase*>;
  return *databases;
}

std::wstring title_of(std::string_view path) { return from_utf8(path.substr(path.rfind('/') + 1)); }

/// A forgotten close() keeps the object locked: worth a line to whoever looks for the fault.
void trace_open_objects(const AcApDocument& document) {
  const std::vector<AcDbObjectId> open = document.database()->open_objects();
  if (open.empty() || !tracing()) return;
  std::wstring line = std::wstring(document.docTitle()) + L": objects left open:";
  for (const AcDbObjectId id : open) line += L" " + handle_text(id.handle().value());
  trace(line);
}

bool same_file(const std::string& a, const std::string& b) {
  struct stat first, second;
  return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace

HostSettings& host_settings() {
  static HostSettings settings;
  return settings;
}

Host::Host() {
  assert(!current_host);
  current_host = this;
  acdbHostApplicationServices()->alert = tell_alert;
  if (host_settings().module_folders.empty())
    host_settings().module_folders.push_back(library_folder());
}

Host::~Host() {
  Modules::instance().broadcast(AcRx::kQuitMsg);
  const Memory memory = ends_with_process_ ? Memory::kLeft : Memory::kFreed;
  while (acDocManager->documentCount() > 0) close(acDocManager->documents().back(), memory);
  Modules::instance().unload_all();
  acdbHostApplicationServices()->alert = nullptr;
  user_input() = {};
  set_alerts({});
  host_settings() = {};
  blackboard() = {};
  current_host = nullptr;
}

Host* Host::current() { return current_host; }

std::string Host::library_folder() { return cad::library_folder(); }

Result<AcApDocument*> Host::open(const std::string& name,
                                 const std::function<Status(AcApDocument&)>& read) {
  if (const Module* module = Modules::instance().single_document_module();
      module && acDocManager->documentCount() > 0)
    return fail(name, "cannot be opened beside another drawing: the module " + module->name +
                          " serves one drawing only");
  auto document = std::unique_ptr<AcApDocument>(new AcApDocument);
  AcApDocument& made = *document;
  AcApDocManager& manager = *acDocManagerPtr();
  made.title_ = title_of(name);
  made.database_ = std::make_unique<AcDbDatabase>(false);
  manager.tell(&AcApDocManagerReactor::documentCreateStarted, &made);
  if (Status status = read(made); !status) {
    manager.tell(&AcApDocManagerReactor::documentCreateCanceled, &made);
    return status.error();
  }
  return adopt(std::move(document));
}

AcApDocument* Host::adopt(std::unique_ptr<AcApDocument> document) {
  AcApDocument* const made = document.release();
  AcApDocManager& manager = *acDocManagerPtr();
  if (!made->session_) made->session_ = std::make_unique<DocumentSession>(*made);
  lisp::Interpreter& interp = made->session().interpreter();
  lisp::Limits limits = interp.limits();
  limits.steps = step_limit_;
  interp.set_limits(limits);
  interp.set_call_trace(call_trace_);
  manager.documents_.push_back(made);
  manager.tell(&AcApDocManagerReactor::documentCreated, made);
  manager.setCurDocument(made);
  return made;
}

Result<AcApDocument*> Host::open_drawing(const std::string& path, OpenOptions options) {
  std::optional<FileLock> lock;
  if (options.for_writing) {
    if (dwg::is_dwg_file(path)) return check_target(path).error();
    Result<FileLock> acquired = FileLock::acquire(path);
    if (!acquired) return acquired.error();
    lock.emplace(std::move(*acquired));
  }
  Result<AcApDocument*> document = open(path, [&](AcApDocument& made) -> Status {
    if (Status status = made.database_->read_file(path); !status) return status;
    char* const whole = ::realpath(path.c_str(), nullptr);
    made.file_name_ = from_utf8(whole ? whole : path);
    ::free(whole);
    made.session_ = std::make_unique<DocumentSession>(made);
    made.session_->path = path;
    return {};
  });
  if (document) (*document)->session().lock = std::move(lock);
  return document;
}

Result<AcApDocument*> Host::open_bytes(std::string bytes, const std::string& name) {
  return open(
      name, [&](AcApDocument& made) { return made.database_->read_bytes(std::move(bytes), name); });
}

AcApDocument* Host::new_drawing() {
  auto document = std::unique_ptr<AcApDocument>(new AcApDocument);
  document->title_ = L"Drawing" + std::to_wstring(++untitled_);
  document->database_ = std::make_unique<AcDbDatabase>(true);
  return adopt(std::move(document));
}

void Host::close(AcApDocument* document) { close(document, Memory::kFreed); }

void Host::close(AcApDocument* document, Memory of_database) {
  AcApDocManager& manager = *acDocManagerPtr();
  if (manager.setCurDocument(document) != Acad::eOk) return;
  Modules::instance().unload_drawing(*document);
  trace_open_objects(*document);
  manager.tell(&AcApDocManagerReactor::documentToBeDestroyed, document);
  blackboard().forget_entities_of(*document->database());
  std::erase(manager.documents_, document);
  manager.current_ = nullptr;
  acdbHostApplicationServices()->setWorkingDatabase(nullptr);
  const std::wstring file_name = document->file_name_;
  if (of_database == Memory::kLeft) left_databases().push_back(document->database_.release());
  delete document;
  manager.tell_destroyed(file_name.c_str());
  if (!manager.documents_.empty()) manager.setCurDocument(manager.documents_.back());
}

Status Host::check_target(const std::string& path) {
  if (dwg::is_dwg_file(path))
    return fail(path, "is a DWG file, and drawings are written as DXF: name another file");
  if (folded(path).ends_with(".dwg") && !is_file(path))
    return fail(path, "drawings are written as DXF: give the file the extension .dxf");
  return {};
}

Status Host::save(AcApDocument* document, const std::string& path, bool keep_backup) {
  if (Status possible = check_target(path); !possible) return possible;
  DocumentSession& session = document->session();
  Modules::instance().broadcast(AcRx::kSaveMsg);
  const Drawing& drawing = document->database()->drawing();
  if (session.lock && same_file(path, session.path))
    return drawing.save(path, keep_backup, &*session.lock);
  struct stat facts;
  if (::stat(path.c_str(), &facts) != 0) return drawing.save(path, keep_backup, nullptr);
  // Somebody else may be working on the file that is about to be replaced.
  Result<FileLock> lock = FileLock::acquire(path);
  if (!lock) return lock.error();
  return drawing.save(path, keep_backup, &*lock);
}

Status Host::load_module(const std::string& file) { return Modules::instance().load(file); }

Status Host::unload_module(const std::string& name) { return Modules::instance().unload(name); }

std::vector<std::string> Host::loaded_modules() const {
  std::vector<std::string> names;
  for (const auto& module : Modules::instance().all()) names.push_back(module->name);
  return names;
}

template <class Run>
Result<lisp::Value> Host::run(AcApDocument* document, Run&& body) {
  acDocManager->setCurDocument(document);
  lisp::Interpreter& interp = document->session().interpreter();
  lisp::Interpreter* const outer = running_.exchange(&interp);
  undo_log(*document->database()).next_step();
  Result<lisp::Value> result = body(interp);
  running_ = outer;
  if (!outer) interrupted_ = false;
  // A program that failed will not give its command what it waits for.
  if (!result) document->session().command_line->cancel();
  return result;
}

Result<lisp::Value> Host::eval_string(AcApDocument* document, std::string_view text,
                                      std::string_view name) {
  return run(document, [&](lisp::Interpreter& interp) { return interp.eval_string(text, name); });
}

Result<lisp::Value> Host::eval_file(AcApDocument* document, const std::string& path) {
  return run(document, [&](lisp::Interpreter& interp) { return interp.load_file(path); });
}

std::string Host::printed(const lisp::Value& value) {
  return value.is_blank() ? std::string() : to_utf8(lisp::to_text(value, lisp::Quoting::kPrin1));
}

Status Host::set_selection(AcApDocument* document, const std::vector<std::string>& handles) {
  return document->session().answer_selection(handles);
}

void Host::set_step_limit(std::uint64_t steps) {
  step_limit_ = steps;
  for (AcApDocument* document : acDocManager->documents()) {
    lisp::Interpreter& interp = document->session().interpreter();
    lisp::Limits limits = interp.limits();
    limits.steps = steps;
    interp.set_limits(limits);
  }
}

void Host::set_call_trace(bool on) {
  call_trace_ = on;
  for (AcApDocument* document : acDocManager->documents())
    document->session().interpreter().set_call_trace(on);
}

void Host::interrupt() noexcept {
  lisp::Interpreter* const interp = running_.load();
  if (!interp) return;
  interrupted_ = true;
  interp->interrupt();
}

void Host::set_input(std::function<std::optional<std::wstring>()> read_line, bool echo) {
  user_input() = {};
  user_input().read_line = std::move(read_line);
  user_input().echo = echo;
}

void Host::refuse_prompts(const std::string& why) { user_input().no_prompts = from_utf8(why); }

void Host::finish_command(AcApDocument* document) {
  CommandLine& line = *document->session().command_line;
  const std::wstring waiting = line.names() + L" waited for \"" + line.pending_prompt() + L"\"";
  while (line.active()) {
    const Result<lisp::Value> done = run(
        document, [&](lisp::Interpreter& interp) { return interp.eval_string("(command pause)"); });
    if (!done) tell_alert(waiting + L" when the program was over: cancelled");
    if (!done) line.cancel();
  }
}

Status Host::set_answers(const std::string& path) {
  const Result<MappedFile> file = MappedFile::open(path);
  if (!file) return file.error();
  user_input() = scripted_input(file->bytes(), path);
  return {};
}

void Host::set_alerts(std::function<void(std::string_view)> sink) {
  alert_sink() = std::move(sink);
}

}  // namespace cad
