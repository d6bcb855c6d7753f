#include "host/lisp/member_set.h"

#include <algorithm>

namespace cad::lisp {
namespace {

constexpr std::size_t kFew = 32;  // are searched one by one

// Entry i of the sums (from 1) covers as many slots as its lowest bit says, the last being i.
std::size_t lowest_bit(std::size_t i) { return i & (~i + 1); }

}  // namespace

std::size_t MemberSet::find(std::uint64_t member) const {
  if (member == kGap) return kNone;
  if (slots_.size() <= kFew) {
    const auto found = std::find(slots_.begin(), slots_.end(), member);
    return found == slots_.end() ? kNone : static_cast<std::size_t>(found - slots_.begin());
  }
  if (places_.empty()) {
    places_.reserve(slots_.size());
    for (std::size_t i = 0; i < slots_.size(); ++i)
      if (slots_[i] != kGap) places_.emplace(slots_[i], static_cast<std::uint32_t>(i));
  }
  const auto found = places_.find(member);
  return found == places_.end() ? kNone : found->second;
}

std::uint64_t MemberSet::operator[](std::size_t i) const {
  if (gaps_ == 0) return slots_[i];
  // Down the sums: the last place with at most i members in front of it.
  std::size_t place = 0, left = i + 1, step = 1;
  while (step * 2 < counts_.size()) step *= 2;
  for (; step > 0; step /= 2) {
    if (place + step < counts_.size() && counts_[place + step] < left) {
      place += step;
      left -= counts_[place];
    }
  }
  return slots_[place];
}

bool MemberSet::add(std::uint64_t member) {
  if (member == kGap || contains(member)) return false;
  if (!places_.empty()) places_.emplace(member, static_cast<std::uint32_t>(slots_.size()));
  slots_.push_back(member);
  if (gaps_ == 0) return true;
  const std::size_t last = slots_.size();
  std::uint32_t sum = 1;
  for (std::size_t i = last - 1; i > last - lowest_bit(last); i -= lowest_bit(i)) sum += counts_[i];
  counts_.push_back(sum);
  return true;
}

bool MemberSet::remove(std::uint64_t member) {
  const std::size_t place = find(member);
  if (place == kNone) return false;
  places_.erase(member);
  if (gaps_ == 0 && place + 1 == slots_.size()) {
    slots_.pop_back();
    return true;
  }
  if (gaps_ == 0) count_slots();
  slots_[place] = kGap;
  ++gaps_;
  for (std::size_t i = place + 1; i < counts_.size(); i += lowest_bit(i)) --counts_[i];
  if (gaps_ > slots_.size() / 2) close_gaps();
  return true;
}

void MemberSet::assign(std::vector<std::uint64_t> members) {
  slots_ = std::move(members);
  gaps_ = 0;
  places_.clear();
  counts_.clear();
}

void MemberSet::close_gaps() {
  std::erase(slots_, kGap);
  assign(std::move(slots_));
}

void MemberSet::count_slots() {
  counts_.assign(slots_.size() + 1, 0);
  for (std::size_t i = 1; i < counts_.size(); ++i) {
    ++counts_[i];
    const std::size_t above = i + lowest_bit(i);
    if (above < counts_.size()) counts_[above] += counts_[i];
  }
}

}  // namespace cad::lisp
