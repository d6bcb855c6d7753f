#pragma once

#include "host/db/curve.h"

/// A flat polyline of straight and circular segments (LWPOLYLINE). Vertices are numbered from 0
/// and stored in the coordinate system of its normal (OCS). A number that is none answers
/// eInvalidIndex.
class AcDbPolyline : public AcDbCurve {
  PN_RX_MEMBERS(AcDbPolyline)
 public:
  AcDbPolyline();
  explicit AcDbPolyline(unsigned int numVerts);  ///< room is made as vertices come

  enum SegType { kLine, kArc, kCoincident, kPoint, kEmpty };
  /// Of the segment behind a vertex: kPoint behind the last one of an open polyline, kCoincident
  /// when its ends are the same, kEmpty for a number that is none.
  SegType segType(unsigned int index) const;

  unsigned int numVerts() const;
  Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint3d& point) const;  ///< in the world
  Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint2d& point) const;  ///< OCS
  Acad::ErrorStatus setPointAt(unsigned int index, const AcGePoint2d& point);
  Acad::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;
  Acad::ErrorStatus setBulgeAt(unsigned int index, double bulge);
  Acad::ErrorStatus getWidthsAt(unsigned int index, double& start, double& end) const;
  /// A width of one vertex ends the constant width: the others keep what it was.
  Acad::ErrorStatus setWidthsAt(unsigned int index, double start, double end);
  /// index == numVerts() appends. A width below 0 stands for the constant width.
  Acad::ErrorStatus addVertexAt(unsigned int index, const AcGePoint2d& point, double bulge = 0.0,
                                double startWidth = -1.0, double endWidth = -1.0);
  /// A polyline keeps two vertices at least: eInvalidInput.
  Acad::ErrorStatus removeVertexAt(unsigned int index);

  void setClosed(bool closed);
  bool hasPlinegen() const;
  void setPlinegen(bool generated);
  bool isOnlyLines() const;
  bool hasBulges() const;
  bool hasWidth() const;
  /// eInvalidInput when vertices have widths that differ.
  Acad::ErrorStatus getConstantWidth(double& width) const;
  /// Of all segments; widths of vertices are gone.
  Acad::ErrorStatus setConstantWidth(double width);

  double elevation() const;
  Acad::ErrorStatus setElevation(double elevation);
  double thickness() const;
  Acad::ErrorStatus setThickness(double thickness);
  AcGeVector3d normal() const;
  /// Vertices keep their numbers: the polyline turns with its plane.
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};
