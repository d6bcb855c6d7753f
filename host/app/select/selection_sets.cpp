#include "host/app/select/selection_sets.h"

#include <utility>

#include "host/app/select/selection.h"

namespace cad {
namespace {

std::uint64_t payload(AcDbObjectId id) { return static_cast<std::uint64_t>(id.asOldId()); }

}  // namespace

std::int64_t SelectionSets::keep(lisp::Value pickset) {
  if (kept_ == kMost) return 0;
  ++kept_;
  entries_.emplace(++last_number_, Entry{std::move(pickset), false});
  return last_number_;
}

std::int64_t SelectionSets::lend(const lisp::Value& pickset) {
  for (const auto& [number, entry] : entries_)
    if (entry.pickset.same(pickset)) return number;
  entries_.emplace(++last_number_, Entry{pickset, true});
  return last_number_;
}

void SelectionSets::end_loans() {
  std::erase_if(entries_, [](const auto& item) { return item.second.lent; });
}

bool SelectionSets::free(std::int64_t number) {
  const auto found = entries_.find(number);
  if (found == entries_.end() || found->second.lent) return false;
  entries_.erase(found);
  --kept_;
  return true;
}

const lisp::Value* SelectionSets::find(std::int64_t number) const {
  const auto found = entries_.find(number);
  return found == entries_.end() ? nullptr : &found->second.pickset;
}

bool contains(const lisp::Pickset& set, AcDbObjectId id) {
  return set.enames.contains(payload(id));
}

void add_member(lisp::Pickset& set, AcDbObjectId id) {
  if (!set.add(payload(id)) || !set.origin) return;
  std::static_pointer_cast<Selection>(set.origin)->set_how(id, {});
}

bool remove_member(lisp::Pickset& set, AcDbObjectId id) { return set.remove(payload(id)); }

lisp::Value pickset_of(lisp::Interpreter& interp, Selection selection) {
  lisp::Value set = interp.pickset();
  std::vector<std::uint64_t> members;
  members.reserve(selection.size());
  for (const AcDbObjectId id : selection.ids()) members.push_back(payload(id));
  set.pickset()->assign(std::move(members));
  selection.take_ids();  // the set has them
  set.pickset()->origin = std::make_shared<Selection>(std::move(selection));
  return set;
}

}  // namespace cad
