#pragma once

#include <memory>
#include <optional>

#include "host/geometry/ge.h"
#include "network/drawn_object.h"
#include "network/strings.h"

/// A node of a network: a well, or what stands in for one. It is an insertion, point or circle of
/// the drawing with data of the application PIPENOTE, see network/object_data.h; other entities
/// have no position. Values that the data lack are absent.
class CGxJd : public network::DrawnObject {
 public:
  CGxJd() {}
  using DrawnObject::DrawnObject;
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }

  CString number() const { return text(network::Key::kNumber); }
  CString prefix() const { return text(network::Key::kPrefix); }
  std::optional<double> ground() const { return real(network::Key::kGround); }    ///< m
  std::optional<double> natural() const { return real(network::Key::kNatural); }  ///< m
  std::optional<double> bottom() const { return real(network::Key::kBottom); }    ///< m
  std::optional<double> flow() const { return real(network::Key::kFlow); }
  std::optional<double> head() const { return real(network::Key::kHead); }

  /// In world coordinates: where the block is inserted, the point, the circle's centre.
  std::optional<AcGePoint3d> position() const;
};

/// A node of a water supply.
class CGxJsJd : public CGxJd {
 public:
  using CGxJd::CGxJd;
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }
};

/// A fire hydrant.
class CGxXhs : public CGxJsJd {
 public:
  using CGxJsJd::CGxJsJd;
  CGxXhs() {}
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }
};

/// A well of a drainage network.
class CGxPsJd : public CGxJd {
 public:
  using CGxJd::CGxJd;
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }
};

/// A well of a storm-water network.
class CGxYsJd : public CGxJd {
 public:
  using CGxJd::CGxJd;
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }
};

/// A well as the CAD library knows it.
class CKtGxWellType1 {
 public:
  virtual ~CKtGxWellType1() = default;
  static const CRuntimeClass* GetThisClass();
  virtual const CRuntimeClass* GetRuntimeClass() const { return GetThisClass(); }
  /// Whether the object is of this class or of one derived from it.
  bool IsKindOf(const CRuntimeClass* kind) const;
};

/// A fire hydrant of a water supply.
class CKtGxGsWellXHS : public CKtGxWellType1 {
 public:
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }
};

namespace DimUtility {

/// The well-number label of the well given by id; empty when the entity is no well or has no
/// number. Any entity will do whose data of the application PIPENOTE hold a number; a prefix stands
/// in front, joined by the separator of the pipe library's label settings.
CString getJdbhDimStr(const AcDbObjectId& id);

}  // namespace DimUtility

namespace network {

/// Null when the entity is no node: not there, erased, without data of the application, or with a
/// kind that is none of a node. Nobody else's open object stands in the way.
std::unique_ptr<CGxJd> open_node(AcDbObjectId id);
/// The same of an entity's data that were read already; they are taken when it is a node.
std::unique_ptr<CGxJd> open_node(AcDbObjectId id, ObjectData& data);

/// Where a node drawn by that entity is, in world coordinates.
std::optional<AcGePoint3d> position_of(AcDbObjectId id);

}  // namespace network
