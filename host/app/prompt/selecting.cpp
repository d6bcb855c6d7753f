#include "host/app/prompt/selecting.h"

namespace cad {

Question::Reading Question::Selecting::read(const lisp::Value& input) {
  switch (dialog_.read(input)) {
    case SelectionDialog::State::kDone:
      return Reading::kAnswered;
    case SelectionDialog::State::kMore:
      return Reading::kMore;
    case SelectionDialog::State::kRefused:
      break;
  }
  return Reading::kRefused;
}

}  // namespace cad
