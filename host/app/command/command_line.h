#pragma once

#include <coroutine>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/command/flow.h"
#include "host/app/prompt/answer.h"
#include "host/app/prompt/question.h"
#include "host/base/result.h"
#include "host/db/database.h"
#include "host/geometry/matrix3d.h"
#include "host/lisp/value.h"

namespace cad {

struct CommandRow;
class DocumentSession;

/// The command line of a document: starts commands, hands them what is typed or given by LISP, and
/// keeps a command that waits for more until the next call.
///
/// What a command sees of it:
///     const Answer to = co_await line.point({.text = L"Specify next point: ", .from = &from});
///     if (to.none()) co_return;
/// Points are of the world, angles in radians; the line has checked the answer against the Ask.
class CommandLine {
 public:
  explicit CommandLine(DocumentSession& session);
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  // --- For commands

  DocumentSession& session() const { return session_; }
  AcDbDatabase& database() const;

  /// What `co_await` waits for: the answer to a prompt.
  class Prompt {
   public:
    bool await_ready() const noexcept { return line_->is_answered_; }
    template <class Promise>
    void await_suspend(std::coroutine_handle<Promise> flow) const noexcept {
      flow.promise().stack->pause();
    }
    Answer await_resume() const { return line_->take_answer(); }

   private:
    friend class CommandLine;
    explicit Prompt(CommandLine* line) : line_(line) {}
    CommandLine* line_;
  };
  // Enter answers none() unless kNoEnter is set; a keyword answers is(L"Keyword").
  Prompt point(const Ask& ask) { return prompt(Wanted::kPoint, ask); }
  Prompt corner(const Ask& ask) { return prompt(Wanted::kCorner, ask); }
  Prompt distance(const Ask& ask) { return prompt(Wanted::kDistance, ask); }
  /// An angle by which something turns, counter-clockwise; not brought into a full turn.
  Prompt turn(const Ask& ask) { return prompt(Wanted::kAngle, ask); }
  /// A direction, counter-clockwise from the X axis of the user's coordinates.
  Prompt orientation(const Ask& ask) { return prompt(Wanted::kOrientation, ask); }
  Prompt integer(const Ask& ask) { return prompt(Wanted::kInteger, ask); }
  Prompt real(const Ask& ask) { return prompt(Wanted::kReal, ask); }
  Prompt word(const Ask& ask) { return prompt(Wanted::kWord, ask); }  ///< a name: no blanks
  Prompt text(const Ask& ask) { return prompt(Wanted::kText, ask); }  ///< blanks and all
  Prompt keyword(const Ask& ask) { return prompt(Wanted::kKeyword, ask); }
  /// One entity, by pick or by name; a pick that hits nothing is asked again.
  Prompt entity(const Ask& ask) { return prompt(Wanted::kEntity, ask); }
  /// "Select objects:" to its end. The answer's `selection` is empty when nothing was selected.
  Prompt selection(const Ask& ask = {.text = L"Select objects: "}) {
    return prompt(Wanted::kSelection, ask);
  }

  /// Prints a line of its own, whatever CMDECHO is.
  void print(std::wstring_view text);
  /// Prints a line unless CMDECHO is 0: what a person wants to know and a program does not.
  void remark(std::wstring_view text);
  /// The command cannot do what was asked: says so, tells the host's user, and has the rest of this
  /// call of (command ...) passed over, since it was meant for what does not happen. The command
  /// ends at its next prompt unless it ends by itself.
  void refuse(std::wstring_view why);
  /// True for success; otherwise refuses with the reason.
  bool check(const Status& status);
  template <class T>
  bool check(const Result<T>& result) {
    if (!result) refuse_error(result.error());
    return static_cast<bool>(result);
  }

  /// From the user's coordinates to the world; the Z axis of the user is the normal of what is
  /// drawn.
  AcGeMatrix3d to_world() const;
  AcGeMatrix3d to_user() const { return to_world().inverse(); }
  AcGeVector3d normal() const { return to_world().column(2).normal(); }
  /// The user's last point (LASTPOINT), of the world.
  AcGePoint3d last_point() const;
  void set_last_point(const AcGePoint3d& point);

  double real_variable(std::wstring_view name) const;
  int integer_variable(std::wstring_view name, int absent = 0) const;
  std::wstring text_variable(std::wstring_view name) const;
  AcGePoint3d point_variable(std::wstring_view name) const;
  /// Whether EXPERT spares the user warnings of this level: 1 of the current layer going off, 2 of
  /// blocks redefined, 3 of linetypes loaded again.
  bool spares_warning(int level) const;

  /// What the command has found out: a variable programs cannot set (AREA, VIEWSIZE).
  void put_variable(std::wstring_view name, const lisp::Value& value);
  void put_variable(std::wstring_view name, double value);
  void put_variable(std::wstring_view name, const AcGePoint3d& value);
  void put_variable(std::wstring_view name, std::wstring_view value);
  /// Sets a system variable as setvar does. Raises its LISP error for a value it does not take.
  void set_variable(std::wstring_view name, const lisp::Value& value);
  void set_variable(std::wstring_view name, double value);
  void set_variable(std::wstring_view name, int value);
  void set_variable(std::wstring_view name, std::wstring_view value);

  // --- For the host

  /// One input: a command's name when none is active, else the answer to its prompt. False when it
  /// was refused, or the command has refused to go on.
  bool feed(const lisp::Value& input);
  /// Asks the user for the answer to the pending prompt, until one is taken.
  void feed_from_user();
  /// Esc: abandons all active commands; what they have drawn so far stays.
  void cancel();
  /// Enter at a prompt that may be left without an answer (kMayEnd); whether that was all.
  bool end_where_it_may();
  bool active() const { return !running_.empty(); }
  /// Whether a command is inside another ('ZOOM inside of LINE).
  bool transparent() const { return running_.size() > 1; }
  /// "LINE", "LINE'ZOOM"; empty when none is active.
  std::wstring names() const;
  /// The prompt that waits; empty when none does.
  std::wstring pending_prompt() const;
  /// Whether the rest of the call of (command ...) under way is to be passed over.
  bool passing_over() const { return passing_over_; }
  void begin_call();
  /// The variable a command that is the name of a system variable stands for.
  const std::wstring& variable_name() const;

 private:
  struct Running;
  enum class Taken : std::uint8_t {
    kYes,
    kMore,  ///< the prompt needs a further part of the answer
    kRefused,
  };

  Prompt prompt(Wanted wanted, const Ask& ask);
  bool answer_beforehand(Wanted wanted);
  Answer take_answer();
  Taken take(const lisp::Value& typed);
  Taken start(const lisp::Value& input);
  Taken run();
  void abandon();
  void refuse_error(const Error& error);
  void tell_message(const Question& question, const lisp::Value& input);
  lisp::Value evaluated(const lisp::Value& input);
  bool echoes() const;

  DocumentSession& session_;
  std::vector<std::unique_ptr<Running>> running_;  // the last is the one that is asked
  Answer answer_;
  bool passing_over_ = false;
  bool printed_in_call_ = false;
  bool is_answered_ = false;  // the prompt just put has its answer already
  bool resuming_ = false;     // while a command works
  bool typing_ = false;       // the user types, so that prompt and answer are on the screen already
};

}  // namespace cad
