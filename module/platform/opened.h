#pragma once

#include <cassert>
#include <type_traits>
#include <utility>

#include "module/platform/objects.h"

namespace dim {

/// An object held open until the guard leaves scope. The host counts opens: keep guards in the
/// smallest block.
///     if (Opened<AcDbText> text{id, AcDb::kForWrite}) text->setTextString(mark);
template <class T>
class Opened {
 public:
  Opened(AcDbObjectId id, AcDb::OpenMode mode, bool open_erased = false)
      : status_(open(object_, id, mode, open_erased)) {}
  Opened(Opened&& other) noexcept
      : object_(std::exchange(other.object_, nullptr)), status_(other.status_) {}
  Opened(const Opened&) = delete;
  ~Opened() {
    if (object_) object_->close();
  }
  explicit operator bool() const { return object_ != nullptr; }
  T* operator->() const {
    assert(object_);
    return object_;
  }
  T& operator*() const {
    assert(object_);
    return *object_;
  }
  Acad::ErrorStatus status() const { return status_; }  ///< why it did not open

 private:
  static Acad::ErrorStatus open(T*& object, AcDbObjectId id, AcDb::OpenMode mode, bool erased) {
    if constexpr (std::is_same_v<T, AcDbEntity>) {
      return acdbOpenAcDbEntity(object, id, mode, erased);
    } else {
      return acdbOpenObject(object, id, mode, erased);
    }
  }
  T* object_ = nullptr;  // before status_: the open call fills it
  Acad::ErrorStatus status_;
};

}  // namespace dim
