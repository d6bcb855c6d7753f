#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/db/resbuf.h"
#include "host/db/status.h"

class AcDbDatabase;
class AcRxClass;

namespace cad {
struct Stub;
}

/// A 64-bit object handle: unique in its drawing, never reused, written as upper-case hexadecimal.
class AcDbHandle {
 public:
  constexpr AcDbHandle() = default;
  constexpr explicit AcDbHandle(std::uint64_t value) : value_(value) {}
  /// From hexadecimal text; null when the text is no handle.
  explicit AcDbHandle(const ACHAR* text);
  constexpr bool isNull() const { return value_ == 0; }
  constexpr std::uint64_t value() const { return value_; }
  constexpr operator std::uint64_t() const { return value_; }
  /// Writes at most 16 digits and the final null.
  bool getIntoAsciiBuffer(ACHAR* buffer) const;

 private:
  std::uint64_t value_ = 0;
};

/// Names an object of an open drawing: stable while the drawing is open, erased or not, and as
/// large as a pointer.
class AcDbObjectId {
 public:
  constexpr AcDbObjectId() = default;
  constexpr explicit AcDbObjectId(cad::Stub* stub) : stub_(stub) {}
  static const AcDbObjectId kNull;
  bool isNull() const { return stub_ == nullptr; }
  bool isValid() const { return stub_ != nullptr; }
  explicit operator bool() const { return stub_ != nullptr; }
  void setNull() { stub_ = nullptr; }
  bool isErased() const;
  AcDbHandle handle() const;       ///< null for an object that the file gives no handle
  AcDbDatabase* database() const;  ///< null for the null id
  AcRxClass* objectClass() const;  ///< class the object opens as; null for the null id
  std::int64_t asOldId() const { return reinterpret_cast<std::int64_t>(stub_); }
  cad::Stub* stub() const { return stub_; }
  friend bool operator==(AcDbObjectId a, AcDbObjectId b) { return a.stub_ == b.stub_; }
  friend bool operator!=(AcDbObjectId a, AcDbObjectId b) { return a.stub_ != b.stub_; }
  friend bool operator<(AcDbObjectId a, AcDbObjectId b) {
    return std::less<cad::Stub*>()(a.stub_, b.stub_);
  }

 private:
  cad::Stub* stub_ = nullptr;
};

/// The host's growing array of ids.
class AcDbObjectIdArray {
 public:
  /// `physical` slots are reserved at once; the growth step is a hint that is kept and not used.
  explicit AcDbObjectIdArray(int physical = 0, int grow = 8) : grow_(grow) {
    ids_.reserve(static_cast<std::size_t>(physical));
  }
  int length() const { return static_cast<int>(ids_.size()); }
  bool isEmpty() const { return ids_.empty(); }
  int growLength() const { return grow_; }
  AcDbObjectId at(int i) const { return ids_[static_cast<std::size_t>(i)]; }
  AcDbObjectId& operator[](int i) { return ids_[static_cast<std::size_t>(i)]; }
  const AcDbObjectId& operator[](int i) const { return ids_[static_cast<std::size_t>(i)]; }
  int append(AcDbObjectId id) {
    ids_.push_back(id);
    return length() - 1;
  }
  AcDbObjectIdArray& append(const AcDbObjectIdArray& other) {
    ids_.insert(ids_.end(), other.ids_.begin(), other.ids_.end());
    return *this;
  }
  bool contains(AcDbObjectId id) const;
  void removeAll() { ids_.clear(); }
  auto begin() const { return ids_.begin(); }
  auto end() const { return ids_.end(); }

 private:
  std::vector<AcDbObjectId> ids_;
  int grow_;
};

/// Converts between entity names, as LISP holds them, and ids. The names stay valid while the
/// drawing is open. eNullObjectId / eInvalidInput when there is nothing to convert.
Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name);
Acad::ErrorStatus acdbGetAdsName(ads_name& name, AcDbObjectId id);
