#pragma once

#include "host/app/prompt/question.h"

namespace cad {

/// The dialogue of "Select objects:" as one of the kinds of questions.
class Question::Selecting {
 public:
  explicit Selecting(DocumentSession& session) : session_(session) {}

  Reading read(const lisp::Value& input);
  /// What the user is asked next; empty for the prompt of the command.
  const std::wstring& text() const { return text_; }
  const std::wstring& message() const { return message_; }
  bool has_selected() const { return !selected_.empty(); }
  std::vector<AcDbObjectId> take();

 private:
  void add(AcDbObjectId id);

  DocumentSession& session_;
  std::vector<AcDbObjectId> selected_;
  std::wstring text_;
  std::wstring message_;
};

}  // namespace cad
