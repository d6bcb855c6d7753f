#pragma once

#include "host/db/curve.h"

/// Walks the vertices of a polyline whose vertices are objects of their own. The caller deletes it.
class AcDbObjectIterator : public AcRxObject {
  PN_RX_MEMBERS(AcDbObjectIterator)
 public:
  void start() { at_ = 0; }
  bool done() const { return at_ >= ids_.size(); }
  bool step() {
    if (!done()) ++at_;
    return !done();
  }
  AcDbObjectId objectId() const { return done() ? AcDbObjectId() : ids_[at_]; }

 private:
  friend class AcDb2dPolyline;
  friend class AcDb3dPolyline;
  explicit AcDbObjectIterator(std::vector<AcDbObjectId> ids) : ids_(std::move(ids)) {}
  std::vector<AcDbObjectId> ids_;
  std::size_t at_ = 0;
};

/// A vertex of a POLYLINE.
class AcDbVertex : public AcDbEntity {
  PN_RX_MEMBERS(AcDbVertex)
 protected:
  using AcDbEntity::AcDbEntity;

  AcGePoint3d point() const;
  Acad::ErrorStatus set_point(const AcGePoint3d& point);
  double real_of(int code) const;
  Acad::ErrorStatus set_real(int code, double value);
  int flags() const;

 private:
  friend class cad::ObjectAccess;
};

namespace AcDb {
enum Poly2dType { k2dSimplePoly, k2dFitCurvePoly, k2dQuadSplinePoly, k2dCubicSplinePoly };
enum Poly3dType { k3dSimplePoly, k3dQuadSplinePoly, k3dCubicSplinePoly };
enum Vertex2dType { k2dVertex, k2dSplineCtlVertex, k2dSplineFitVertex, k2dCurveFitVertex };
enum Vertex3dType { k3dSimpleVertex, k3dControlVertex, k3dFitVertex };
}  // namespace AcDb

/// Of a flat polyline. The position is stored in the coordinate system of the polyline's normal.
class AcDb2dVertex : public AcDbVertex {
  PN_RX_MEMBERS(AcDb2dVertex)
 public:
  AcDb::Vertex2dType vertexType() const;
  AcGePoint3d position() const { return point(); }
  Acad::ErrorStatus setPosition(const AcGePoint3d& position) { return set_point(position); }
  double bulge() const { return real_of(42); }
  Acad::ErrorStatus setBulge(double bulge) { return set_real(42, bulge); }
  double startWidth() const { return real_of(40); }
  Acad::ErrorStatus setStartWidth(double width) { return set_real(40, width); }
  double endWidth() const { return real_of(41); }
  Acad::ErrorStatus setEndWidth(double width) { return set_real(41, width); }

 protected:
  using AcDbVertex::AcDbVertex;

 private:
  friend class cad::ObjectAccess;
};

class AcDb3dPolylineVertex : public AcDbVertex {
  PN_RX_MEMBERS(AcDb3dPolylineVertex)
 public:
  AcDb::Vertex3dType vertexType() const;
  AcGePoint3d position() const { return point(); }
  Acad::ErrorStatus setPosition(const AcGePoint3d& position) { return set_point(position); }

 protected:
  using AcDbVertex::AcDbVertex;

 private:
  friend class cad::ObjectAccess;
};

/// A flat polyline whose vertices are objects of their own (POLYLINE). As a curve it is what is
/// drawn: of a smoothed one the fitted vertices, not those of the frame.
class AcDb2dPolyline : public AcDbCurve {
  PN_RX_MEMBERS(AcDb2dPolyline)
 public:
  AcDb::Poly2dType polyType() const;
  double elevation() const;
  Acad::ErrorStatus setElevation(double elevation);
  double thickness() const;
  Acad::ErrorStatus setThickness(double thickness);
  AcGeVector3d normal() const;
  double defaultStartWidth() const;
  double defaultEndWidth() const;
  Acad::ErrorStatus makeClosed();
  Acad::ErrorStatus makeOpen();
  /// Where a vertex is in the world.
  AcGePoint3d vertexPosition(const AcDb2dVertex& vertex) const;
  AcDbObjectIterator* vertexIterator() const;

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};

/// A polyline in space, of straight segments.
class AcDb3dPolyline : public AcDbCurve {
  PN_RX_MEMBERS(AcDb3dPolyline)
 public:
  AcDb::Poly3dType polyType() const;
  Acad::ErrorStatus makeClosed();
  Acad::ErrorStatus makeOpen();
  AcDbObjectIterator* vertexIterator() const;

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};
