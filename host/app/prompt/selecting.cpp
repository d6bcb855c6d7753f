#include "host/app/prompt/selecting.h"

#include <algorithm>

#include "host/app/data/entget.h"
#include "host/app/prompt/picking.h"
#include "host/app/select/selection.h"
#include "host/app/session.h"
#include "host/base/fold.h"

namespace cad {

void Question::Selecting::add(AcDbObjectId id) {
  if (id.isNull() || id.isErased()) return;
  if (std::find(selected_.begin(), selected_.end(), id) == selected_.end()) selected_.push_back(id);
}

std::vector<AcDbObjectId> Question::Selecting::take() {
  if (!selected_.empty()) session_.previous_selection = selected_;
  return std::move(selected_);
}

Question::Reading Question::Selecting::read(const lisp::Value& input) {
  message_.clear();
  if (input.is(lisp::Kind::kPickset)) {
    for (const std::uint64_t name : input.pickset()->enames) add(id_of_name(name));
    return Reading::kMore;
  }
  const lisp::Value& name = input.is_cons() ? input.car() : input;
  if (name.is_ename()) {
    add(id_of_name(name.ename()));
    return Reading::kMore;
  }
  if (input.is_string()) {
    std::wstring_view word = input.text();
    if (word.empty()) return Reading::kAnswered;
    if (word.starts_with(L"_")) word.remove_prefix(1);
    if (const auto id = named_entity(session_, word)) {
      add(*id);
      return Reading::kMore;
    }
    if (equal_no_case(word, L"P") || equal_no_case(word, L"PREVIOUS")) {
      for (const AcDbObjectId id : session_.previous_selection) add(id);
      return Reading::kMore;
    }
    if (equal_no_case(word, L"ALL")) {
      for (const AcDbObjectId id : cad::select(session_, L"A", SelectionFilter())) add(id);
      return Reading::kMore;
    }
  }
  message_ = L"*Invalid selection*";
  return Reading::kRefused;
}

}  // namespace cad
