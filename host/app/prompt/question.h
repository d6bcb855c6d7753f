#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/app/prompt/answer.h"
#include "host/app/prompt/keywords.h"
#include "host/app/prompt/point_text.h"
#include "host/lisp/value.h"

namespace cad {

class DocumentSession;

/// What kind of answer a prompt wants.
enum class Wanted : std::uint8_t {
  kPoint,
  kCorner,       ///< the corner opposite `from`
  kDistance,     ///< a number, or two points, or one when there is a point it is measured from
  kAngle,        ///< counter-clockwise from the direction ANGBASE
  kOrientation,  ///< counter-clockwise from the X axis
  kInteger,
  kReal,
  kWord,  ///< a text without blanks
  kText,
  kKeyword,
  kEntity,
  kSelection,
};

/// A prompt while it is being answered: turns what is typed, or given by LISP, into an answer. The
/// answer may take several inputs: an object snap and a point, two points for a distance, a
/// selection.
class Question {
 public:
  /// Points of the answer, and `from`, are in the user's coordinates; `entity` prompts give the
  /// place of the pick in them too.
  Question(DocumentSession& session, Wanted wanted, const Ask& ask);
  ~Question();
  Question(Question&&) noexcept;
  Question& operator=(Question&&) noexcept;

  /// What the user is asked next.
  const std::wstring& text() const { return text_; }
  Wanted wanted() const { return wanted_; }
  /// Whether a typed text is taken as it stands, blanks and all.
  bool takes_text() const { return wanted_ == Wanted::kText; }

  enum class Reading : std::uint8_t {
    kAnswered,
    kMore,     ///< taken; ask again with the new text()
    kRefused,  ///< message() says why; ask again
  };
  /// A string is what somebody types; numbers, points, entity names, (name point) and selection
  /// sets are what LISP gives.
  Reading read(const lisp::Value& input);

  Answer& answer() { return answer_; }
  const std::wstring& message() const { return message_; }
  /// Whether the answer has begun and wants a further input before anything else can happen.
  bool in_parts() const;
  /// Whether the name of a command may stand for Enter.
  bool may_end() const { return (bits_ & kMayEnd) != 0 && !in_parts(); }
  /// Whether a pick hit nothing: the message is then of a miss, not of a wrong input.
  bool missed() const { return missed_; }

 private:
  class Selecting;

  Reading read_text(std::wstring_view typed);
  Reading read_number(double number, bool is_integer);
  Reading read_point(const AcGePoint3d& point);
  Reading read_enter();
  Reading read_entity(AcDbObjectId id, const AcGePoint3d* at);
  Reading pick(const AcGePoint3d& at);
  Reading select(const lisp::Value& input);
  Reading take_number(double number);
  Reading take_point(const AcGePoint3d& point);
  Reading take_two_points(const AcGePoint3d& a, const AcGePoint3d& b);
  Reading refuse(std::wstring message);
  Reading refuse_kind();
  bool wants_point() const;

  DocumentSession* session_;
  Wanted wanted_;
  std::wstring text_;
  std::wstring asked_;  // the text to go back to when a part of the answer was refused
  Keywords keywords_;
  unsigned bits_;
  std::optional<AcGePoint3d> from_;
  std::optional<AcGePoint3d> first_;  // of two points
  std::wstring snap_;                 // modes that hold for the next point
  std::unique_ptr<Selecting> selecting_;
  Answer answer_;
  std::wstring message_;
  bool missed_ = false;
};

/// What is typed means this just now.
InputUnits input_units(DocumentSession& session);

}  // namespace cad
