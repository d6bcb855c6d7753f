#include "host/app/prompt/question.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "host/app/data/entget.h"
#include "host/app/prompt/object_snap.h"
#include "host/app/prompt/picking.h"
#include "host/app/prompt/selecting.h"
#include "host/app/prompt/ucs.h"
#include "host/app/prompt/values.h"
#include "host/app/session.h"
#include "host/db/record.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Value;
using Reading = Question::Reading;

std::wstring_view trimmed(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(L" \t\r");
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(L" \t\r") - first + 1);
}

/// What the host says to an answer of the wrong kind, without keywords and with them.
struct Wording {
  Wanted wanted;
  const wchar_t* plain;
  const wchar_t* with_keywords;
};
constexpr Wording kWordings[] = {
    {Wanted::kPoint, L"Invalid point.", L"Point or option keyword required."},
    {Wanted::kCorner, L"Invalid point.", L"Point or option keyword required."},
    {Wanted::kDistance, L"Requires numeric distance or two points.",
     L"Requires numeric distance, two points, or option keyword."},
    {Wanted::kAngle, L"Requires valid numeric angle or two points.",
     L"Requires valid numeric angle, two points, or option keyword."},
    {Wanted::kOrientation, L"Requires valid numeric angle or two points.",
     L"Requires valid numeric angle, two points, or option keyword."},
    {Wanted::kInteger, L"Requires an integer value.",
     L"Requires an integer value or option keyword."},
    {Wanted::kReal, L"Requires numeric value.", L"Requires numeric value or option keyword."},
    {Wanted::kWord, L"Requires a text.", L"Requires a text or option keyword."},
    {Wanted::kText, L"Requires a text.", L"Requires a text or option keyword."},
    {Wanted::kKeyword, L"Invalid option keyword.", L"Invalid option keyword."},
    {Wanted::kEntity, L"Invalid selection.  Expects a point or Last.",
     L"Invalid selection.  Expects a point, Last or option keyword."},
    {Wanted::kSelection, L"*Invalid selection*", L"*Invalid selection*"},
};

bool is_text_wanted(Wanted wanted) { return wanted == Wanted::kText || wanted == Wanted::kWord; }

/// A number LISP gives for an angle is one that is typed: in the drawing's angle units.
double radians_of(double typed, lisp::AngleUnits units) {
  if (units == lisp::AngleUnits::kRadians) return typed;
  return typed * std::numbers::pi / (units == lisp::AngleUnits::kGrads ? 200 : 180);
}

}  // namespace

InputUnits input_units(DocumentSession& session) {
  lisp::Interpreter& interp = session.interpreter();
  const auto integer = [&](std::wstring_view name, int lowest, int highest, int otherwise) {
    const Value value = session.variables.get(interp, name);
    const bool fits = value.is_integer() && value.integer() >= lowest && value.integer() <= highest;
    return fits ? value.integer() : otherwise;
  };
  const auto real = [&](std::wstring_view name) {
    const Value value = session.variables.get(interp, name);
    return value.is_number() ? value.number() : 0.0;
  };
  InputUnits units;
  units.lengths = static_cast<lisp::LengthUnits>(integer(L"LUNITS", 1, 5, 2));
  units.angles = static_cast<lisp::AngleUnits>(integer(L"AUNITS", 0, 4, 0));
  units.angle_base = real(L"ANGBASE");
  units.clockwise = integer(L"ANGDIR", 0, 1, 0) == 1;
  units.elevation = real(L"ELEVATION");
  units.last = point_of(session.variables.get(interp, L"LASTPOINT")).value_or(AcGePoint3d());
  units.world_to_ucs = world_to_ucs(session);
  return units;
}

Question::Question(DocumentSession& session, Wanted wanted, const Ask& ask)
    : session_(&session),
      wanted_(wanted),
      text_(ask.text),
      asked_(ask.text),
      keywords_(ask.keywords),
      bits_(ask.bits) {
  if (ask.from) from_ = *ask.from;
  if (wanted == Wanted::kSelection) {
    if (text_.empty()) text_ = L"Select objects: ";
    selecting_ = std::make_unique<Selecting>(session, text_, (bits_ & kAtOnce) != 0);
  }
}

Question::~Question() = default;
Question::Question(Question&&) noexcept = default;
Question& Question::operator=(Question&&) noexcept = default;

Reading Question::refuse(std::wstring message) {
  message_ = std::move(message);
  text_ = asked_;
  first_.reset();
  snap_.clear();
  return Reading::kRefused;
}

Reading Question::refuse_kind() {
  for (const Wording& row : kWordings)
    if (row.wanted == wanted_) return refuse(keywords_.empty() ? row.plain : row.with_keywords);
  return refuse(L"Invalid input.");
}

bool Question::wants_point() const { return wanted_ <= Wanted::kOrientation; }

bool Question::in_parts() const {
  return selecting_ ? selecting_->in_parts() : first_.has_value() || text_ != asked_;
}

Reading Question::read(const Value& input) {
  message_.clear();
  missed_ = false;
  if (wanted_ == Wanted::kSelection) return select(input);
  if (input.is_string()) return read_text(input.text());
  if (input.is_number()) return read_number(input.number(), input.is_integer());
  if (const auto point = point_of(input, input_units(*session_).elevation))
    return read_point(*point);
  if (wanted_ != Wanted::kEntity) return refuse_kind();
  if (input.is_ename()) return read_entity(id_of_name(input.ename()), nullptr);
  if (input.car().is_ename()) {
    const auto at = point_of(input.cdr().car());
    return read_entity(id_of_name(input.car().ename()), at ? &*at : nullptr);
  }
  return refuse_kind();
}

Reading Question::read_enter() {
  if (first_ || !snap_.empty() || (bits_ & kNoEnter) != 0) return refuse_kind();
  answer_.kind = Answer::Kind::kNone;
  return Reading::kAnswered;
}

Reading Question::read_text(std::wstring_view typed) {
  const std::wstring_view word = trimmed(typed);
  if (wanted_ == Wanted::kText ? typed.empty() : word.empty()) return read_enter();
  if (!first_ && snap_.empty()) {
    if (const auto keyword = keywords_.match(word)) {
      answer_.kind = Answer::Kind::kKeyword;
      answer_.text = *keyword;
      return Reading::kAnswered;
    }
  }
  const auto as_text = [&](std::wstring_view text) {
    answer_.kind = Answer::Kind::kText;
    answer_.text = text;
    return Reading::kAnswered;
  };
  if (is_text_wanted(wanted_)) return as_text(wanted_ == Wanted::kText ? typed : word);

  const InputUnits units = input_units(*session_);
  if (wants_point() || wanted_ == Wanted::kEntity) {
    InputUnits from = units;
    if (first_ || from_) from.last = first_ ? *first_ : *from_;
    // "end 10,20", and "end" alone with the point in the next answer.
    const std::size_t blank = std::min(word.find_first_of(L" \t"), word.size());
    if (const auto modes = snap_modes(word.substr(0, blank))) {
      snap_ = *modes;
      if (blank < word.size()) return read_text(word.substr(blank));
      text_ = snap_.empty() ? text_ : L"of ";
      return Reading::kMore;
    }
    if (const auto point = parse_point(word, from)) return read_point(*point);
    if (word.starts_with(L".") && word.size() <= 3)
      return refuse(L"Point filters (.x, .xy ...) are not available: give the whole point.");
  }
  if (wanted_ == Wanted::kEntity) {
    if (const auto id = named_entity(*session_, word)) return read_entity(*id, nullptr);
  } else if (wanted_ == Wanted::kAngle || wanted_ == Wanted::kOrientation) {
    if (const auto angle = lisp::parse_angle(word, units.angles))
      return take_number(wanted_ == Wanted::kAngle ? units.turn(*angle) : units.direction(*angle));
  } else if (wanted_ == Wanted::kDistance || wanted_ == Wanted::kReal) {
    if (const auto number = lisp::parse_length(word, units.lengths))
      return read_number(*number, false);
  } else if (wanted_ == Wanted::kInteger) {
    const auto number = lisp::parse_length(word, lisp::LengthUnits::kDecimal);
    if (number && *number == std::trunc(*number)) return read_number(*number, true);
  }
  return (bits_ & kAnyText) != 0 && !first_ && snap_.empty() ? as_text(word) : refuse_kind();
}

Reading Question::read_number(double number, bool is_integer) {
  const InputUnits units = input_units(*session_);
  switch (wanted_) {
    case Wanted::kDistance:
      return first_ ? refuse_kind() : take_number(number);
    case Wanted::kReal:
      return take_number(number);
    case Wanted::kAngle:
      return first_ ? refuse_kind() : take_number(units.turn(radians_of(number, units.angles)));
    case Wanted::kOrientation:
      return first_ ? refuse_kind()
                    : take_number(units.direction(radians_of(number, units.angles)));
    case Wanted::kInteger: {
      using Bounds = std::numeric_limits<std::int16_t>;
      if (!is_integer && number != std::trunc(number)) return refuse_kind();
      if (number < Bounds::min() || number > Bounds::max())
        return refuse(L"Requires an integer value between -32768 and 32767.");
      return take_number(number);
    }
    case Wanted::kWord:
    case Wanted::kText:
    case Wanted::kKeyword:
      return read_text(typed_number(number));
    default:
      if ((bits_ & kAnyText) != 0 && !first_ && snap_.empty())
        return read_text(typed_number(number));
      return refuse_kind();
  }
}

Reading Question::read_point(const AcGePoint3d& typed) {
  AcGePoint3d point = typed;
  if (!snap_.empty()) {
    const auto snapped = snap_point(*session_, point, std::exchange(snap_, {}));
    if (!snapped) return refuse(L"No object snap point found there.");
    point = *snapped;
  }
  switch (wanted_) {
    case Wanted::kPoint:
    case Wanted::kCorner:
      return take_point(point);
    case Wanted::kDistance:
    case Wanted::kAngle:
    case Wanted::kOrientation:
      if (first_) return take_two_points(*first_, point);
      if (from_) return take_two_points(*from_, point);
      first_ = point;
      text_ = L"Specify second point: ";
      return Reading::kMore;
    case Wanted::kEntity:
      return pick(point);
    case Wanted::kWord:
    case Wanted::kText:
      return read_text(typed_point(point));
    default:
      return refuse_kind();
  }
}

Reading Question::take_point(const AcGePoint3d& point) {
  answer_.kind = Answer::Kind::kPoint;
  answer_.point = point;
  return Reading::kAnswered;
}

Reading Question::take_two_points(const AcGePoint3d& a, const AcGePoint3d& b) {
  AcGeVector3d way = b - a;
  answer_.point = b;
  answer_.from_points = true;
  if (wanted_ == Wanted::kDistance) {
    if ((bits_ & kFlat) != 0) way.z = 0.0;
    return take_number(way.length());
  }
  const double direction = std::atan2(way.y, way.x);
  return take_number(
      wanted_ == Wanted::kOrientation ? direction : direction - input_units(*session_).angle_base);
}

Reading Question::take_number(double number) {
  if (!std::isfinite(number)) return refuse_kind();
  const bool no_zero = (bits_ & kNoZero) != 0, no_negative = (bits_ & kNoNegative) != 0;
  if ((no_zero && number == 0.0) || (no_negative && number < 0.0))
    return refuse(no_zero && no_negative ? L"Value must be positive and nonzero."
                  : no_zero              ? L"Value must be nonzero."
                                         : L"Value must be positive.");
  answer_.kind = Answer::Kind::kNumber;
  answer_.number = number;
  return Reading::kAnswered;
}

Reading Question::read_entity(AcDbObjectId id, const AcGePoint3d* at) {
  if (id.isNull() || id.isErased() || !is_entity(id)) return refuse_kind();
  answer_.kind = Answer::Kind::kEntity;
  answer_.entity = id;
  answer_.point = at ? *at : world_to_ucs(*session_) * place_of(id);
  return Reading::kAnswered;
}

Reading Question::pick(const AcGePoint3d& at) {
  const AcDbObjectId id = entity_at(*session_, ucs_to_world(*session_) * at);
  answer_.from_points = true;
  if (!id.isNull()) return read_entity(id, &at);
  refuse(L"Nothing found there.");
  missed_ = true;
  return Reading::kRefused;
}

Reading Question::select(const Value& input) {
  const Reading reading = selecting_->read(input);
  message_ = selecting_->message();
  text_ = selecting_->text();
  if (reading != Reading::kAnswered) return reading;
  selecting_->take(answer_);
  answer_.kind = Answer::Kind::kSelection;
  return reading;
}

}  // namespace cad
