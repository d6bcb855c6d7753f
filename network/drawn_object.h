#pragma once

#include <optional>
#include <utility>

#include "host/db/object_id.h"
#include "network/object_data.h"
#include "network/runtime_class.h"

namespace network {

/// A view over an entity that stands for a part of a network: the entity's data as it was when the
/// view was made, and the way to change it. The entity is not kept open; a view outlives neither
/// its drawing nor, usefully, a change by somebody else. Without an entity all values are absent.
class DrawnObject {
 public:
  DrawnObject() = default;
  DrawnObject(AcDbObjectId id, ObjectData data) : id_(id), data_(std::move(data)) {}
  virtual ~DrawnObject() = default;
  virtual const CRuntimeClass* GetRuntimeClass() const = 0;
  /// Whether the object is of this class or of one derived from it.
  bool IsKindOf(const CRuntimeClass* kind) const {
    return kind && GetRuntimeClass()->IsDerivedFrom(kind);
  }

  AcDbObjectId objectId() const { return id_; }
  Kind kind() const { return data_.kind(); }
  const ObjectData& data() const { return data_; }

  /// Change the entity, and the view with it; see write_real() for what they answer.
  Acad::ErrorStatus set_real(Key key, double value);
  Acad::ErrorStatus set_integer(Key key, int value);
  Acad::ErrorStatus set_text(Key key, const CString& value);
  Acad::ErrorStatus set_node(Key key, AcDbObjectId node);  ///< null: removes the reference
  Acad::ErrorStatus remove(Key key);

 protected:
  std::optional<double> real(Key key) const { return data_.real(key); }
  std::optional<int> integer(Key key) const { return data_.integer(key); }
  CString text(Key key) const { return data_.text(key); }
  /// The entity whose handle the key holds; null when there is none of that handle.
  AcDbObjectId node(Key key) const;

 private:
  AcDbObjectId id_;
  ObjectData data_;
};

}  // namespace network
