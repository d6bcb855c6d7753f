#include "host/app/select/selection_dialog.h"

#include <algorithm>
#include <utility>

#include "host/app/data/entget.h"
#include "host/app/prompt/picking.h"
#include "host/app/prompt/question.h"
#include "host/app/prompt/ucs.h"
#include "host/app/prompt/values.h"
#include "host/app/select/layer_states.h"
#include "host/app/select/plan_selection.h"
#include "host/base/fold.h"
#include "host/db/record.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using State = SelectionDialog::State;

constexpr std::wstring_view kInvalid =
    L"*Invalid selection*\nExpects a point or "
    L"Window/Last/Crossing/BOX/ALL/Fence/WPolygon/CPolygon/Add/Remove/Previous/Undo";

enum class Word {
  kWindow,
  kCrossing,
  kBox,
  kWPolygon,
  kCPolygon,
  kFence,
  kAll,
  kLast,
  kPrevious,
  kAdd,
  kRemove,
  kUndo,
  kNoChange,  // switches of how a screen is used
};
struct WordRow {
  std::wstring_view name;
  std::size_t least;  ///< as many letters must be typed
  Word word;
};
constexpr WordRow kWords[] = {
    {L"window", 1, Word::kWindow},     {L"crossing", 1, Word::kCrossing},
    {L"box", 3, Word::kBox},           {L"wpolygon", 2, Word::kWPolygon},
    {L"cpolygon", 2, Word::kCPolygon}, {L"fence", 1, Word::kFence},
    {L"all", 3, Word::kAll},           {L"last", 1, Word::kLast},
    {L"previous", 1, Word::kPrevious}, {L"add", 1, Word::kAdd},
    {L"remove", 1, Word::kRemove},     {L"undo", 1, Word::kUndo},
    {L"auto", 2, Word::kNoChange},     {L"multiple", 1, Word::kNoChange},
    {L"single", 2, Word::kNoChange},
};

std::optional<Word> word_of(std::wstring_view typed) {
  if (typed.starts_with(L"_")) typed.remove_prefix(1);
  for (const WordRow& row : kWords) {
    if (typed.size() >= row.least && typed.size() <= row.name.size() &&
        equal_no_case(typed, row.name.substr(0, typed.size())))
      return row.word;
  }
  return std::nullopt;
}

std::wstring number(std::size_t n) { return std::to_wstring(n); }

bool is_point(const lisp::Value& value) { return point_of(value).has_value(); }

}  // namespace

SelectionDialog::SelectionDialog(DocumentSession& session, SelectionOptions options)
    : session_(session), options_(options) {
  ask_again();
  if (!options_.first_word.empty()) {
    options_.single = true;
    read_word(options_.first_word);
  }
}

void SelectionDialog::ask_again() {
  stage_ = Stage::kObjects;
  points_.clear();
  prompt_ = removing_ ? options_.remove_prompt : options_.prompt;
}

Selection SelectionDialog::take() {
  if (!selection_.empty()) session_.previous_selection = selection_.ids();
  return std::move(selection_);
}

State SelectionDialog::refuse() {
  message_ = kInvalid;
  return State::kRefused;
}

State SelectionDialog::read(const lisp::Value& input) {
  message_.clear();
  if (input.is_string()) return read_text(input.text());
  if (is_point(input)) return read_point(ucs_to_world(session_) * *point_of(input));
  if (stage_ != Stage::kObjects) return refuse();
  Selection found;
  const lisp::Value& name = input.is_cons() ? input.car() : input;
  if (input.is(lisp::Kind::kPickset)) {
    const auto origin = std::static_pointer_cast<Selection>(input.pickset()->origin);
    if (origin)
      for (const auto& polygon : origin->polygons()) found.add_polygon(polygon);
    for (const std::uint64_t member : input.pickset()->enames) {
      const AcDbObjectId id = id_of_name(member);
      found.add(id, origin ? origin->how(id) : Selection::How());
    }
  } else if (name.is_ename()) {
    std::vector<AcGePoint3d> places;
    if (input.is_cons() && is_point(input.cdr().car()))
      places.push_back(ucs_to_world(session_) * *point_of(input.cdr().car()));
    found.add(id_of_name(name.ename()), {Selection::Method::kPick}, std::move(places));
  } else {
    return refuse();
  }
  return take_in(found);
}

State SelectionDialog::read_text(std::wstring_view typed) {
  while (!typed.empty() && typed.front() == L' ') typed.remove_prefix(1);
  while (!typed.empty() && typed.back() == L' ') typed.remove_suffix(1);
  if (typed.empty()) {
    if (stage_ == Stage::kPoints) return end_points();
    if (stage_ == Stage::kObjects) return State::kDone;
    ask_again();
    return State::kMore;
  }
  if (const auto point = parse_point(typed, input_units(session_)))
    return read_point(ucs_to_world(session_) * *point);
  if (stage_ == Stage::kPoints && word_of(typed) == Word::kUndo) {
    if (points_.size() > 1) points_.pop_back();
    return State::kMore;
  }
  if (stage_ != Stage::kObjects) {
    message_ = L"Invalid point.";
    return State::kRefused;
  }
  constexpr std::wstring_view kHandle = L"handle:";
  if (typed.size() > kHandle.size() && equal_no_case(typed.substr(0, kHandle.size()), kHandle)) {
    const auto id = named_entity(session_, typed);
    if (!id) {
      message_ = L"No entity has this handle.";
      return State::kRefused;
    }
    Selection found;
    found.add(*id, {Selection::Method::kPick}, {place_of(*id)});
    return take_in(found);
  }
  return read_word(typed);
}

State SelectionDialog::read_word(std::wstring_view typed) {
  const std::optional<Word> word = word_of(typed);
  if (!word && equal_no_case(typed, L"b")) return begin(Shape::kBox);  // of ssget
  if (!word) return refuse();
  switch (*word) {
    case Word::kWindow:
      return begin(Shape::kWindow);
    case Word::kCrossing:
      return begin(Shape::kCrossing);
    case Word::kBox:
      return begin(Shape::kBox);
    case Word::kWPolygon:
      return begin(Shape::kWPolygon);
    case Word::kCPolygon:
      return begin(Shape::kCPolygon);
    case Word::kFence:
      return begin(Shape::kFence);
    case Word::kAll:
      return select_shape(L"A", {});
    case Word::kLast:
      return select_shape(L"L", {});
    case Word::kPrevious:
      return select_shape(L"P", {});
    case Word::kAdd:
    case Word::kRemove:
      removing_ = *word == Word::kRemove;
      ask_again();
      return State::kMore;
    case Word::kUndo:
      return take_back();
    case Word::kNoChange:
      break;
  }
  return State::kMore;
}

State SelectionDialog::begin(Shape shape) {
  shape_ = shape;
  points_.clear();
  if (shape == Shape::kFence || shape == Shape::kWPolygon || shape == Shape::kCPolygon) {
    stage_ = Stage::kPoints;
    prompt_ = shape == Shape::kFence ? L"Specify first fence point: " : L"First polygon point: ";
  } else {
    stage_ = Stage::kFirstCorner;
    prompt_ = L"Specify first corner: ";
  }
  return State::kMore;
}

State SelectionDialog::read_point(const AcGePoint3d& point) {
  switch (stage_) {
    case Stage::kFirstCorner:
      points_ = {point};
      stage_ = Stage::kOppositeCorner;
      prompt_ = L"Specify opposite corner: ";
      return State::kMore;
    case Stage::kOppositeCorner: {
      const std::vector<AcGePoint3d> corners{points_.front(), point};
      const wchar_t* const mode = shape_ == Shape::kWindow     ? L"W"
                                  : shape_ == Shape::kCrossing ? L"C"
                                                               : L"B";
      ask_again();
      return select_shape(mode, corners);
    }
    case Stage::kPoints:
      points_.push_back(point);
      prompt_ = shape_ == Shape::kFence ? L"Specify next fence point or [Undo]: "
                                        : L"Specify endpoint of line or [Undo]: ";
      return State::kMore;
    case Stage::kObjects:
      break;
  }
  if (pick_at(session_, point).isNull()) {
    // Beside everything: the first corner of a window, or of a crossing one to the left.
    shape_ = Shape::kBox;
    points_ = {point};
    stage_ = Stage::kOppositeCorner;
    prompt_ = L"Specify opposite corner: ";
    return State::kMore;
  }
  return select_shape(options_.everything_at_point ? L":E" : L"", std::span(&point, 1));
}

State SelectionDialog::end_points() {
  const std::vector<AcGePoint3d> points = std::move(points_);
  const wchar_t* const mode = shape_ == Shape::kFence      ? L"F"
                              : shape_ == Shape::kWPolygon ? L"WP"
                                                           : L"CP";
  ask_again();
  const std::size_t least = shape_ == Shape::kFence ? 2 : 3;
  if (points.size() < least) {
    message_ = L"0 found";
    return options_.first_word.empty() ? State::kMore : State::kDone;
  }
  return select_shape(mode, points);
}

/// By the modes of ssget. What is selected in between is not yet the previous selection.
State SelectionDialog::select_shape(std::wstring_view mode, std::span<const AcGePoint3d> points) {
  const std::vector<AcDbObjectId> previous = session_.previous_selection;
  const Selection found = cad::select(session_, SelectionRequest{mode, points}, SelectionFilter());
  session_.previous_selection = previous;
  return take_in(found);
}

State SelectionDialog::take_in(const Selection& found) {
  RecordGroups scratch;
  LayerStates layers(session_.database());
  Selection changed = selection_;
  std::size_t taken = 0, duplicates = 0, filtered = 0, locked = 0, count = 0;
  std::vector<int> numbers;  // that the polygons of `found` have here
  for (const auto& polygon : found.polygons()) numbers.push_back(changed.add_polygon(polygon));
  for (const AcDbObjectId id : found.ids()) {
    if (id.isErased() || !is_entity(id)) continue;
    if (removing_) {
      ++count;
      taken += changed.remove(id);
      continue;
    }
    if (options_.filter && !options_.filter->takes_all() &&
        !options_.filter->matches(id, scratch)) {
      ++filtered;
      continue;
    }
    ++count;
    if (options_.skips_locked && layers.of(id).locked) {
      ++locked;
      continue;
    }
    Selection::How how = found.how(id);
    if (how.polygon != 0) how.polygon = numbers[static_cast<std::size_t>(-how.polygon - 1)];
    const auto places = found.places(id);
    (changed.add(id, how, {places.begin(), places.end()}) ? taken : duplicates) += 1;
  }
  message_ = number(count) + L" found";
  if (removing_) message_ += L", " + number(taken) + L" removed";
  if (duplicates > 0) message_ += L" (" + number(duplicates) + L" duplicate)";
  if (changed.size() != taken || removing_) message_ += L", " + number(changed.size()) + L" total";
  if (filtered > 0)
    message_ += L"\n" + number(filtered) + (filtered == 1 ? L" was" : L" were") + L" filtered out.";
  if (locked > 0)
    message_ +=
        L"\n" + number(locked) + (locked == 1 ? L" was" : L" were") + L" on a locked layer.";
  before_.push_back(std::exchange(selection_, std::move(changed)));
  return options_.single && (taken > 0 || !options_.first_word.empty()) ? State::kDone
                                                                        : State::kMore;
}

State SelectionDialog::take_back() {
  if (before_.empty()) {
    message_ = L"Everything has been undone";
    return State::kMore;
  }
  selection_ = std::move(before_.back());
  before_.pop_back();
  return State::kMore;
}

Selection select_by_dialog(
    DocumentSession& session, const SelectionOptions& options,
    const std::function<std::optional<std::wstring>(std::wstring_view prompt)>& ask) {
  SelectionDialog dialog(session, options);
  lisp::Interpreter& interp = session.interpreter();
  for (;;) {
    const std::optional<std::wstring> typed = ask(dialog.prompt());
    if (!typed) return {};
    lisp::Value input;
    if (typed->starts_with(L"("))
      input = interp.eval_text(*typed, "");
    else if (typed->size() > 1 && typed->front() == L'!')
      input = interp.variable(std::wstring_view(*typed).substr(1));
    else
      input = interp.string(*typed);
    const State state = dialog.read(input);
    if (!dialog.message().empty()) interp.print(dialog.message() + L"\n");
    if (state == State::kDone) return dialog.take();
  }
}

}  // namespace cad
