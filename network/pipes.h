#pragma once

#include <memory>
#include <optional>

#include "host/geometry/curve.h"
#include "network/drawn_object.h"

/// A pipe of a network: a line, polyline or arc of the drawing with data of the application
/// PIPENOTE, see network/object_data.h. Values that the data lack are absent.
///     if (const std::unique_ptr<CGxGd> pipe = network::open_pipe(id)) pipe->diameter();
class CGxGd : public network::DrawnObject {
 public:
  using DrawnObject::DrawnObject;
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }

  AcDbObjectId start_node() const { return node(network::Key::kStartNode); }
  AcDbObjectId end_node() const { return node(network::Key::kEndNode); }
  std::optional<double> diameter() const { return real(network::Key::kDiameter); }  ///< nominal, mm
  std::optional<int> material() const { return integer(network::Key::kMaterial); }
  std::optional<double> width() const { return real(network::Key::kWidth); }    ///< mm
  std::optional<double> height() const { return real(network::Key::kHeight); }  ///< mm
  std::optional<double> ratio() const { return real(network::Key::kRatio); }
  /// With a width and a height.
  bool is_rectangular() const { return width() && height(); }
  int parallel() const { return integer(network::Key::kParallel).value_or(1); }
  CString code() const { return text(network::Key::kCode); }
  std::optional<double> flow() const { return real(network::Key::kFlow); }
  std::optional<double> speed() const { return real(network::Key::kSpeed); }
  std::optional<double> head_loss() const { return real(network::Key::kHeadLoss); }

  /// What the data say, else the length of the centre line, m. Absent when there is neither.
  std::optional<double> length() const;
  /// The entity's own curve. Nothing for an entity that is no curve or that has no end.
  std::optional<cad::Curve> centre_line() const;
  /// The values of which the higher marks the upstream end; nothing when one is absent.
  struct Ends {
    double start;
    double end;
  };
  virtual std::optional<Ends> flow_ends() const { return std::nullopt; }
};

/// A pipe of a water supply: water flows from the higher head to the lower.
class CGxJsGd : public CGxGd {
 public:
  using CGxGd::CGxGd;
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }

  /// Which calculation is current: 1 design peak, which also stands in when the data name none,
  /// 2 fire, 3 maximum transfer, 4 accident, 5 average, 6 minimum. Nothing for other numbers.
  std::optional<int> head_case() const;
  /// Of a case 1 to 6, m.
  std::optional<double> start_head(int head_case) const;
  std::optional<double> end_head(int head_case) const;
  std::optional<Ends> flow_ends() const override;
};

/// A drainage pipe: water flows from the higher invert to the lower.
class CGxPsGd : public CGxGd {
 public:
  using CGxGd::CGxGd;
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }

  std::optional<double> start_invert() const { return real(network::Key::kStartInvert); }  ///< m
  std::optional<double> end_invert() const { return real(network::Key::kEndInvert); }
  std::optional<Ends> flow_ends() const override;
};

/// A storm-water pipe: as a drainage pipe.
class CGxYsGd : public CGxGd {
 public:
  using CGxGd::CGxGd;
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }

  std::optional<double> start_invert() const { return real(network::Key::kStartInvert); }
  std::optional<double> end_invert() const { return real(network::Key::kEndInvert); }
  std::optional<Ends> flow_ends() const override;
};

namespace network {

/// Null when the entity is no pipe: not there, erased, without data of the application, or with a
/// kind that is none of a pipe. Nobody else's open object stands in the way.
std::unique_ptr<CGxGd> open_pipe(AcDbObjectId id);
/// The same of an entity's data that were read already; they are taken when it is a pipe.
std::unique_ptr<CGxGd> open_pipe(AcDbObjectId id, ObjectData& data);

/// The values at both ends of which the higher marks the upstream one: of a water-supply pipe the
/// heads of the current calculation, of others the inverts. False, and nothing set, when one of
/// them is absent.
bool flow_ends(const CGxGd& pipe, double& start_value, double& end_value);

}  // namespace network

namespace Gx {

/// The first derivative at the point of the curve that is nearest to `near`; at a vertex that of
/// the piece behind it, at the end that of the last. Pieces without length have none: the nearest
/// piece that has one stands in. False, and nothing set, for an entity that is no curve, or one
/// without any length.
bool GetCurFirstDeriv(AcDbObjectId curve, const AcGePoint3d& near, AcGeVector3d& derivative);

}  // namespace Gx
