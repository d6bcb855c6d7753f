#include "host/app/select/selection_sets.h"

#include <utility>

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

void add_member(lisp::Pickset& set, AcDbObjectId id) { set.add(payload(id)); }

bool remove_member(lisp::Pickset& set, AcDbObjectId id) { return set.remove(payload(id)); }

}  // namespace cad
