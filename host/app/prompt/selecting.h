#pragma once

#include <string>

#include "host/app/prompt/question.h"
#include "host/app/select/selection_dialog.h"

namespace cad {

/// The dialogue of "Select objects:" as one of the kinds of questions.
class Question::Selecting {
 public:
  Selecting(DocumentSession& session, const std::wstring& prompt, bool at_once)
      : prompt_(prompt), dialog_(session, {.single = at_once, .prompt = prompt_}) {}

  Reading read(const lisp::Value& input);
  const std::wstring& text() const { return dialog_.prompt(); }
  const std::wstring& message() const { return dialog_.message(); }
  bool in_parts() const { return dialog_.in_parts(); }
  void take(Answer& answer) {
    Selection selection = dialog_.take();
    for (const AcDbObjectId id : selection.ids()) {
      const Selection::How how = selection.how(id);
      if (how.method == Selection::Method::kCrossing && how.polygon != 0)
        answer.crossing = selection.polygons()[static_cast<std::size_t>(-how.polygon - 1)];
    }
    answer.selection = selection.take_ids();
  }

 private:
  const std::wstring prompt_;  // before the dialogue, which looks at it
  SelectionDialog dialog_;
};

}  // namespace cad
