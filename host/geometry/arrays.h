#pragma once

#include <algorithm>
#include <cassert>
#include <initializer_list>
#include <utility>
#include <vector>

#include "host/geometry/point3d.h"

/// The growing array of the published interfaces, where positions are int. A position that does
/// not exist is the caller's mistake (asserted).
template <class T>
class AcArray {
 public:
  using value_type = T;

  AcArray() = default;
  AcArray(std::initializer_list<T> items) : items_(items) {}

  int length() const { return static_cast<int>(items_.size()); }
  int logicalLength() const { return length(); }
  bool isEmpty() const { return items_.empty(); }
  bool isValid(int i) const { return i >= 0 && i < length(); }

  T& operator[](int i) { return items_[index(i)]; }
  const T& operator[](int i) const { return items_[index(i)]; }
  T& at(int i) { return items_[index(i)]; }
  const T& at(int i) const { return items_[index(i)]; }
  T& first() { return at(0); }
  const T& first() const { return at(0); }
  T& last() { return at(length() - 1); }
  const T& last() const { return at(length() - 1); }

  /// The position of the new item.
  int append(T item) {
    items_.push_back(std::move(item));
    return length() - 1;
  }
  AcArray& append(const AcArray& other) {
    const std::vector<T> copy = other.items_;  // other may be this
    items_.insert(items_.end(), copy.begin(), copy.end());
    return *this;
  }
  /// i == length() appends.
  AcArray& insertAt(int i, T item) {
    assert(i >= 0 && i <= length());
    items_.insert(items_.begin() + i, std::move(item));
    return *this;
  }
  AcArray& setAt(int i, T item) {
    at(i) = std::move(item);
    return *this;
  }
  AcArray& removeAt(int i) {
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index(i)));
    return *this;
  }
  /// Removes the first equal item; whether there was one.
  bool remove(const T& item) {
    const int i = find(item);
    if (i >= 0) removeAt(i);
    return i >= 0;
  }
  AcArray& removeFirst() { return removeAt(0); }
  AcArray& removeLast() { return removeAt(length() - 1); }
  AcArray& removeAll() {
    items_.clear();
    return *this;
  }
  /// New items are value-initialised.
  AcArray& setLogicalLength(int n) {
    assert(n >= 0);
    items_.resize(static_cast<std::size_t>(n));
    return *this;
  }
  AcArray& setPhysicalLength(int n) {
    items_.reserve(static_cast<std::size_t>(std::max(n, 0)));
    return *this;
  }
  AcArray& reverse() {
    std::ranges::reverse(items_);
    return *this;
  }

  /// Position of the first equal item from `start` on, or -1.
  int find(const T& item, int start = 0) const {
    for (int i = std::max(start, 0); i < length(); ++i) {
      if (items_[static_cast<std::size_t>(i)] == item) return i;
    }
    return -1;
  }
  bool contains(const T& item) const { return find(item) >= 0; }

  const T* asArrayPtr() const { return items_.data(); }
  T* asArrayPtr() { return items_.data(); }
  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  friend bool operator==(const AcArray& a, const AcArray& b) { return a.items_ == b.items_; }

 private:
  std::size_t index(int i) const {
    assert(isValid(i));
    return static_cast<std::size_t>(i);
  }

  std::vector<T> items_;
};

using AcGePoint2dArray = AcArray<AcGePoint2d>;
using AcGePoint3dArray = AcArray<AcGePoint3d>;
using AcGeVector2dArray = AcArray<AcGeVector2d>;
using AcGeVector3dArray = AcArray<AcGeVector3d>;
using AcGeDoubleArray = AcArray<double>;
using AcGeIntArray = AcArray<int>;
