#include "host/app/command/command_line.h"

#include <algorithm>
#include <utility>

#include "host/app/command/command_table.h"
#include "host/app/command/variable_command.h"
#include "host/app/console.h"
#include "host/app/prompt/ucs.h"
#include "host/app/prompt/user_input.h"
#include "host/app/prompt/values.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/db/undo.h"
#include "host/lisp/error.h"
#include "host/lisp/names.h"

namespace cad {

using lisp::Value;

struct CommandLine::Running {
  std::wstring name;      // as CMDNAMES has it
  std::wstring variable;  // the system variable it stands for
  unsigned flags = 0;
  bool has_asked = false;
  bool has_refused = false;
  FlowStack stack;
  std::optional<Question> question;
  AcGeMatrix3d to_world;  // as it was when the question was put
  Flow<> flow;            // last: goes first, with the locals of the command
};

namespace {

std::wstring_view trimmed(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(L" \t\r\n");
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(L" \t\r\n") - first + 1);
}

/// A command's name without "'", "_" and "." in front.
std::wstring_view without_marks(std::wstring_view name) {
  return name.substr(std::min(name.find_first_not_of(L"'_."), name.size()));
}

/// Sets a flag while it lives.
class Scope {
 public:
  explicit Scope(bool& flag) : flag_(flag) { flag_ = true; }
  ~Scope() { flag_ = false; }
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

 private:
  bool& flag_;
};

}  // namespace

CommandLine::CommandLine(DocumentSession& session) : session_(session) {}

CommandLine::~CommandLine() { abandon(); }

AcDbDatabase& CommandLine::database() const { return session_.database(); }

// --- For commands

CommandLine::Prompt CommandLine::prompt(Wanted wanted, const Ask& ask) {
  Running& top = *running_.back();
  top.to_world = ucs_to_world(session_);
  AcGePoint3d from;
  Ask in_user_coordinates = ask;
  if (ask.from) {
    from = top.to_world.inverse() * *ask.from;
    in_user_coordinates.from = &from;
  }
  top.question.emplace(session_, wanted, in_user_coordinates);
  is_answered_ = answer_beforehand(wanted);
  return Prompt(this);
}

/// Objects that were selected before the command, with PICKFIRST on, answer its first prompt when
/// that is the one for objects.
bool CommandLine::answer_beforehand(Wanted wanted) {
  Running& top = *running_.back();
  const bool is_first = !std::exchange(top.has_asked, true);
  if (wanted != Wanted::kSelection || !is_first || (top.flags & CommandRow::kNoPickFirst) != 0 ||
      session_.implied_selection.empty() || integer_variable(L"PICKFIRST") == 0)
    return false;
  answer_ = {};
  answer_.kind = Answer::Kind::kSelection;
  answer_.selection = std::exchange(session_.implied_selection, {});
  std::erase_if(answer_.selection, [](AcDbObjectId id) { return id.isErased(); });
  session_.previous_selection = answer_.selection;
  return true;
}

Answer CommandLine::take_answer() {
  is_answered_ = false;
  return std::exchange(answer_, {});
}

AcGeMatrix3d CommandLine::to_world() const { return ucs_to_world(session_); }

AcGePoint3d CommandLine::last_point() const { return to_world() * point_variable(L"LASTPOINT"); }

void CommandLine::set_last_point(const AcGePoint3d& point) {
  lisp::Interpreter& interp = session_.interpreter();
  session_.variables.set(interp, L"LASTPOINT", list_of(interp, to_user() * point));
}

double CommandLine::real_variable(std::wstring_view name) const {
  const Value value = session_.variables.get(session_.interpreter(), name);
  return value.is_number() ? value.number() : 0.0;
}

int CommandLine::integer_variable(std::wstring_view name, int absent) const {
  const Value value = session_.variables.get(session_.interpreter(), name);
  return value.is_integer() ? value.integer() : absent;
}

std::wstring CommandLine::text_variable(std::wstring_view name) const {
  const Value value = session_.variables.get(session_.interpreter(), name);
  return value.is_string() ? std::wstring(value.text()) : std::wstring();
}

void CommandLine::put_variable(std::wstring_view name, const Value& value) {
  session_.variables.put(name, value);
}

void CommandLine::put_variable(std::wstring_view name, double value) {
  put_variable(name, Value::real(value));
}

void CommandLine::put_variable(std::wstring_view name, const AcGePoint3d& value) {
  put_variable(name, list_of(session_.interpreter(), value));
}

void CommandLine::put_variable(std::wstring_view name, std::wstring_view value) {
  put_variable(name, session_.interpreter().string(value));
}

void CommandLine::set_variable(std::wstring_view name, const Value& value) {
  session_.variables.set(session_.interpreter(), name, value);
}

void CommandLine::set_variable(std::wstring_view name, double value) {
  set_variable(name, Value::real(value));
}

void CommandLine::set_variable(std::wstring_view name, int value) {
  set_variable(name, Value::integer(value));
}

void CommandLine::set_variable(std::wstring_view name, std::wstring_view value) {
  set_variable(name, session_.interpreter().string(value));
}

AcGePoint3d CommandLine::point_variable(std::wstring_view name) const {
  const Value value = session_.variables.get(session_.interpreter(), name);
  return point_of(value).value_or(AcGePoint3d());
}

bool CommandLine::spares_warning(int level) const { return integer_variable(L"EXPERT") >= level; }

bool CommandLine::echoes() const {
  return integer_variable(L"CMDECHO") != 0 && integer_variable(L"NOMUTT") == 0;
}

void CommandLine::print(std::wstring_view text) {
  std::wstring line = std::exchange(printed_in_call_, true) ? L"" : L"\n";
  line.append(text).append(L"\n");
  session_.interpreter().print(line);
}

void CommandLine::remark(std::wstring_view text) {
  if (echoes()) print(text);
}

void CommandLine::refuse(std::wstring_view why) {
  const std::wstring line = (active() ? names() + L": " : L"") + std::wstring(why);
  print(line);
  passing_over_ = true;
  if (active()) running_.back()->has_refused = true;
  if (const auto& alert = acdbHostApplicationServices()->alert) alert(line);
}

void CommandLine::refuse_error(const Error& error) { refuse(from_utf8(error.message())); }

bool CommandLine::check(const Status& status) {
  if (!status) refuse_error(status.error());
  return static_cast<bool>(status);
}

const std::wstring& CommandLine::variable_name() const { return running_.back()->variable; }

// --- For the host

std::wstring CommandLine::names() const {
  std::wstring text;
  for (const auto& running : running_) text += (text.empty() ? L"" : L"'") + running->name;
  return text;
}

std::wstring CommandLine::pending_prompt() const {
  if (!active() || !running_.back()->question) return {};
  return (transparent() ? L">>" : L"") + running_.back()->question->text();
}

void CommandLine::begin_call() {
  passing_over_ = false;
  printed_in_call_ = false;
}

void CommandLine::abandon() {
  while (active()) running_.pop_back();
}

void CommandLine::cancel() {
  if (!active()) return;
  constexpr int kMostEnters = 4;  // an option of a command, and the command
  const Value enter = session_.interpreter().string({});
  for (int i = 0; i < kMostEnters && active(); ++i) {
    Running& top = *running_.back();
    if ((top.flags & CommandRow::kEndsWithEnter) == 0 ||
        top.question->read(enter) != Question::Reading::kAnswered)
      break;
    answer_ = std::move(top.question->answer());
    top.question.reset();
    run();
  }
  abandon();
  undo_log(database()).next_step();
  remark(L"*Cancel*");
}

bool CommandLine::end_where_it_may() {
  if (!active() || !running_.back()->question->may_end()) return false;
  Running& top = *running_.back();
  top.question->read(session_.interpreter().string({}));
  answer_ = std::move(top.question->answer());
  top.question.reset();
  run();
  return !active();
}

bool CommandLine::feed(const Value& input) { return take(input) != Taken::kRefused; }

void CommandLine::feed_from_user() {
  try {
    for (Taken taken = Taken::kMore; active() && taken != Taken::kYes;) {
      const std::wstring typed = ask_user((printed_in_call_ ? L"" : L"\n") + pending_prompt());
      printed_in_call_ = true;
      const Scope quiet(typing_);
      taken = take(session_.interpreter().string(typed));
    }
  } catch (const lisp::LispError&) {
    cancel();
    throw;
  }
}

/// "!name" and "(...)" typed at a prompt stand for their value.
Value CommandLine::evaluated(const Value& input) {
  if (!input.is_string()) return input;
  const std::wstring_view text = trimmed(input.text());
  const bool is_lisp = text.starts_with(L"(") || (text.starts_with(L"!") && text.size() > 1);
  const bool literal =
      active() && running_.back()->question->takes_text() && integer_variable(L"TEXTEVAL") == 0;
  if (!is_lisp || literal) return input;
  return session_.interpreter().eval_text(text.starts_with(L"!") ? text.substr(1) : text, {});
}

CommandLine::Taken CommandLine::take(const Value& typed) {
  if (resuming_) lisp::raise(L"a command cannot be used while another one is working");
  const Value input = evaluated(typed);
  if (!active()) return start(input);
  if (input.is_string()) {
    const std::wstring_view text = trimmed(input.text());
    if (text.starts_with(L"'") && !running_.back()->question->takes_text()) return start(input);
  }
  Running& top = *running_.back();
  Question& question = *top.question;
  if (echoes() && !typing_) print(pending_prompt() + typed_value(input));
  const Question::Reading reading = question.read(input);
  if (reading == Question::Reading::kRefused && input.is_string() &&
      find_command(trimmed(input.text())) && end_where_it_may()) {
    return take(input);
  }
  if (reading == Question::Reading::kRefused) {
    tell_message(question, input);
    return Taken::kRefused;
  }
  if (!question.message().empty()) remark(question.message());
  if (reading == Question::Reading::kMore) return question.in_parts() ? Taken::kMore : Taken::kYes;

  answer_ = std::move(question.answer());
  top.question.reset();
  if (answer_.is_point()) {
    lisp::Interpreter& interp = session_.interpreter();
    session_.variables.set(interp, L"LASTPOINT", list_of(interp, answer_.point));
  }
  answer_.point = top.to_world * answer_.point;
  return run();
}

/// The host's wording; with what was wrong beside it where no echo shows it.
void CommandLine::tell_message(const Question& question, const Value& input) {
  std::wstring line = question.message();
  if (!echoes() && !typing_)
    line =
        names() + L": " + line + L"  (" + typed_value(input) + L", for: " + question.text() + L")";
  print(line);
}

CommandLine::Taken CommandLine::start(const Value& input) {
  const std::wstring typed = typed_value(input);
  std::wstring_view name = trimmed(typed);
  if (name.empty() || !input) return Taken::kYes;  // Enter: there is nothing to repeat
  if (echoes() && !typing_) print(L"Command: " + typed);
  const CommandRow* row = input.is_string() ? find_command(name) : nullptr;
  auto running = std::make_unique<Running>();
  if (row) {
    running->name = from_utf8(row->name);
    running->flags = row->flags;
  } else if (input.is_string()) {
    running->variable = lisp::symbol_name(without_marks(name));
    if (!session_.variables.get(session_.interpreter(), running->variable))
      running->variable.clear();
    else
      row = &variable_command();
    running->name = L"SETVAR";
    running->flags = row ? row->flags : 0;
  }
  if (!row) {
    refuse(L"Unknown command \"" + lisp::symbol_name(typed) + L"\".  Press F1 for help.");
    return Taken::kRefused;
  }
  if (active() && (running->flags & CommandRow::kTransparent) == 0) {
    print(L"** That command may not be invoked transparently **");
    return Taken::kRefused;
  }
  if (!active() && (running->flags & CommandRow::kNoStep) == 0) undo_log(database()).next_step();
  running->flow = row->run(*this);
  running->flow.start(running->stack);
  running_.push_back(std::move(running));
  return run();
}

/// Lets the command at the end go on; a finished one makes way for the one around it.
CommandLine::Taken CommandLine::run() {
  Running& top = *running_.back();
  {
    const Scope resuming(resuming_);
    top.stack.run();
  }
  if (!top.stack.empty() && !top.has_refused) return Taken::kYes;
  const std::unique_ptr<Running> finished = std::move(running_.back());
  running_.pop_back();
  if (active())
    remark(L"Resuming " + running_.back()->name + L" command.");
  else if ((finished->flags & CommandRow::kNoStep) == 0)
    undo_log(database()).next_step();
  finished->flow.result();
  return passing_over_ ? Taken::kRefused : Taken::kYes;
}

}  // namespace cad
