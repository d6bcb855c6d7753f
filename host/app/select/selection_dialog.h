#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/select/selection.h"

namespace cad {

/// How a dialogue goes.
struct SelectionOptions {
  bool single = false;               ///< ends when something was selected
  bool skips_locked = false;         ///< takes nothing on locked layers
  bool everything_at_point = false;  ///< a pick takes all within the pick box
  const SelectionFilter* filter = nullptr;
  std::wstring_view first_word = {};  ///< begins as if this had been typed, and ends with it
  std::wstring_view prompt = L"Select objects: ";
  std::wstring_view remove_prompt = L"Remove objects: ";
};

/// The dialogue of "Select objects:", one input after the other, so that it can stand in a
/// command that waits for each. Inputs are texts as typed (a point, W, C, BOX, WP, CP, F, ALL, L,
/// P, handle:2F3; R and A switch between removing and adding, U takes the last step back, an empty
/// text ends), points in the user's coordinates, entity names, (name point) and selection sets.
///     SelectionDialog dialog(session);
///     while (dialog.read(next_input(dialog.prompt())) != SelectionDialog::State::kDone) {}
class SelectionDialog {
 public:
  explicit SelectionDialog(DocumentSession& session, SelectionOptions options = {});

  enum class State : std::uint8_t {
    kMore,     ///< taken; ask again with prompt()
    kRefused,  ///< message() says why; ask again
    kDone,
  };
  State read(const lisp::Value& input);

  const std::wstring& prompt() const { return prompt_; }
  /// What is said about the last input: "2 found, 1 duplicate, 3 total"; may be empty.
  const std::wstring& message() const { return message_; }
  /// Whether a window or polygon has begun and wants a further point.
  bool in_parts() const { return stage_ != Stage::kObjects; }
  const Selection& selection() const { return selection_; }
  /// Also becomes the previous selection, unless it is empty.
  Selection take();

 private:
  enum class Stage : std::uint8_t { kObjects, kFirstCorner, kOppositeCorner, kPoints };
  enum class Shape : std::uint8_t { kWindow, kCrossing, kBox, kWPolygon, kCPolygon, kFence };

  State read_text(std::wstring_view typed);
  State read_word(std::wstring_view word);
  State read_point(const AcGePoint3d& point);
  State begin(Shape shape);
  State end_points();
  State select_shape(std::wstring_view mode, std::span<const AcGePoint3d> points);
  State take_in(const Selection& found);
  State take_back();
  State refuse();
  void ask_again();

  DocumentSession& session_;
  SelectionOptions options_;
  Selection selection_;
  std::vector<Selection> before_;  // each step
  Stage stage_ = Stage::kObjects;
  Shape shape_ = Shape::kWindow;
  std::vector<AcGePoint3d> points_;  // of the world
  bool removing_ = false;
  std::wstring prompt_;
  std::wstring message_;
};

/// Runs a dialogue with whoever answers: an answer is what was typed, none ends the dialogue with
/// nothing selected. Typed LISP, "(handent "2F3")" and "!set", stands for its value. Messages are
/// printed on the command line.
Selection select_by_dialog(
    DocumentSession& session, const SelectionOptions& options,
    const std::function<std::optional<std::wstring>(std::wstring_view prompt)>& ask);

}  // namespace cad
