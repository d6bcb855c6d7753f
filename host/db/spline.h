#pragma once

#include "host/db/curve.h"

/// A B-spline by control points, or a curve through fit points. The curve's parameter is the knot
/// value, of one that has fit points only the length of the chords passed.
class AcDbSpline : public AcDbCurve {
  PN_RX_MEMBERS(AcDbSpline)
 public:
  int degree() const;
  bool isRational() const;
  int numControlPoints() const;
  Acad::ErrorStatus getControlPointAt(int index, AcGePoint3d& point) const;
  /// eInvalidIndex. The knots and weights stay.
  Acad::ErrorStatus setControlPointAt(int index, const AcGePoint3d& point);
  double weightAt(int index) const;  ///< 1 where none is stored
  int numFitPoints() const;
  Acad::ErrorStatus getFitPointAt(int index, AcGePoint3d& point) const;
  bool hasFitData() const { return numFitPoints() > 0; }
  Acad::ErrorStatus getNurbsData(int& degree, bool& rational, bool& closed, bool& periodic,
                                 AcGePoint3dArray& controlPoints, AcGeDoubleArray& knots,
                                 AcGeDoubleArray& weights, double& controlPtTol,
                                 double& knotTol) const;

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};

/// The line from a note to what it notes. As a curve it goes through its vertices.
class AcDbLeader : public AcDbCurve {
  PN_RX_MEMBERS(AcDbLeader)
 public:
  int numVertices() const;
  /// The origin for an index that is none.
  AcGePoint3d vertexAt(int index) const;
  bool isSplined() const;
  bool hasArrowHead() const;

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};
