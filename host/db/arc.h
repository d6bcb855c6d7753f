#pragma once

#include "host/db/curve.h"

/// A part of a circle, counter-clockwise from its start to its end angle; both count from the X
/// axis that belongs to the normal. The center is in world coordinates.
class AcDbArc : public AcDbCurve {
  PN_RX_MEMBERS(AcDbArc)
 public:
  AcDbArc();
  AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle);
  AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle,
          double endAngle);

  AcGePoint3d center() const;
  Acad::ErrorStatus setCenter(const AcGePoint3d& center);
  double radius() const;
  /// eInvalidInput for one below 0.
  Acad::ErrorStatus setRadius(double radius);
  double startAngle() const;
  Acad::ErrorStatus setStartAngle(double angle);
  double endAngle() const;
  Acad::ErrorStatus setEndAngle(double angle);
  double length() const;
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
