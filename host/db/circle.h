#pragma once

#include "host/db/curve.h"

/// A whole circle. The center is in world coordinates.
class AcDbCircle : public AcDbCurve {
  PN_RX_MEMBERS(AcDbCircle)
 public:
  AcDbCircle();
  AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius);

  AcGePoint3d center() const;
  Acad::ErrorStatus setCenter(const AcGePoint3d& center);
  double radius() const;
  /// eInvalidInput for one below 0.
  Acad::ErrorStatus setRadius(double radius);
  double thickness() const;
  Acad::ErrorStatus setThickness(double thickness);
  AcGeVector3d normal() const;
  /// The center stays where it is.
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};
