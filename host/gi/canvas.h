#pragma once

#include <span>
#include <vector>

#include "host/gi/fine_geometry.h"
#include "host/gi/wide_outline.h"

namespace cad {

/// What entities draw on: a world draw, fine or not.
class Canvas {
 public:
  explicit Canvas(AcGiWorldDraw& draw)
      : draw_(draw),
        geometry_(draw.geometry()),
        fine_(dynamic_cast<FineGeometry*>(&draw.geometry())) {}

  AcGiWorldDraw& world() const { return draw_; }
  AcGiWorldGeometry& geometry() const { return geometry_; }
  AcGiSubEntityTraits& traits() const { return draw_.subEntityTraits(); }

  void curve(const Curve& curve, double width = 0.0);
  /// A flat polyline whose segments have widths of their own.
  void wide_curve(const Curve& curve, std::span<const SegmentWidth> widths,
                  const AcGeVector3d& axis);
  void outline(std::span<const AcGePoint3d> points, bool closed);
  void fill(std::span<const AcGePoint3d> corners);
  /// What the loops enclose; without fine geometry the outermost are filled, holes and all.
  void area(std::span<const std::vector<Curve>> loops, FineGeometry::Rule rule);
  /// Straight pieces: pairs of ends.
  void strokes(std::span<const AcGePoint3d> ends);
  void mask(std::span<const AcGePoint3d> corners);
  void point(const AcGePoint3d& place, int mode, double size);
  /// Null where only published geometry is understood.
  FineGeometry* fine() const { return fine_; }
  double deviation(const AcGePoint3d& near) const {
    return draw_.deviation(kAcGiMaxDevForCurve, near);
  }

 private:
  AcGiWorldDraw& draw_;
  AcGiWorldGeometry& geometry_;
  FineGeometry* fine_;
};

/// The points of a chain of curves.
std::vector<AcGePoint3d> points_of(std::span<const Curve> chain, double deviation);

}  // namespace cad
