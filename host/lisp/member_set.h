#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <unordered_map>
#include <vector>

namespace cad::lisp {

struct Pickset;

/// The members of a selection set in the order in which they were added. Adding, taking out and
/// finding one, and reaching the n-th, stay quick with a hundred thousand of them, in whatever
/// order they go. Changed through Pickset only.
class MemberSet {
 public:
  std::size_t size() const { return slots_.size() - gaps_; }
  bool empty() const { return size() == 0; }
  std::uint64_t operator[](std::size_t i) const;  ///< i < size()
  bool contains(std::uint64_t member) const { return find(member) != kNone; }

  class iterator {
   public:
    using value_type = std::uint64_t;
    using difference_type = std::ptrdiff_t;
    using pointer = const std::uint64_t*;
    using reference = const std::uint64_t&;
    using iterator_category = std::forward_iterator_tag;

    iterator() = default;
    iterator(pointer at, pointer end) : at_(at), end_(end) { skip_gaps(); }
    reference operator*() const { return *at_; }
    iterator& operator++() {
      ++at_;
      skip_gaps();
      return *this;
    }
    iterator operator++(int) {
      iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const iterator& other) const { return at_ == other.at_; }

   private:
    void skip_gaps() {
      while (at_ != end_ && *at_ == kGap) ++at_;
    }
    pointer at_ = nullptr;
    pointer end_ = nullptr;
  };
  iterator begin() const { return {slots_.data(), slots_.data() + slots_.size()}; }
  iterator end() const { return {slots_.data() + slots_.size(), slots_.data() + slots_.size()}; }

 private:
  friend struct Pickset;

  static constexpr std::uint64_t kGap = 0;  // no member is 0
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  bool add(std::uint64_t member);
  bool remove(std::uint64_t member);
  void assign(std::vector<std::uint64_t> members);
  std::size_t find(std::uint64_t member) const;
  void close_gaps();
  void count_slots();

  std::vector<std::uint64_t> slots_;
  std::size_t gaps_ = 0;
  mutable std::unordered_map<std::uint64_t, std::uint32_t> places_;  // of large sets, when asked
  std::vector<std::uint32_t> counts_;  // with gaps: sums of members by which the n-th is found
};

}  // namespace cad::lisp
