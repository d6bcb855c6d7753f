#pragma once

#include "host/db/curve.h"

/// A whole ellipse or an arc of one. All points and vectors are in world coordinates, angles are
/// those of the curve's own parameter.
class AcDbEllipse : public AcDbCurve {
  PN_RX_MEMBERS(AcDbEllipse)
 public:
  AcDbEllipse();
  AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
              const AcGeVector3d& majorAxis, double radiusRatio, double startAngle = 0.0,
              double endAngle = 6.28318530717958647692);

  AcGePoint3d center() const;
  Acad::ErrorStatus setCenter(const AcGePoint3d& center);
  AcGeVector3d majorAxis() const;
  AcGeVector3d minorAxis() const;
  AcGeVector3d normal() const;
  double radiusRatio() const;
  /// eInvalidInput unless above 0 and at most 1.
  Acad::ErrorStatus setRadiusRatio(double ratio);
  double startParam() const;
  Acad::ErrorStatus setStartParam(double param);
  double endParam() const;
  Acad::ErrorStatus setEndParam(double param);
  /// eInvalidInput for an axis without length and for a normal that is not at a right angle to it.
  Acad::ErrorStatus set(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                        const AcGeVector3d& majorAxis, double radiusRatio, double startAngle = 0.0,
                        double endAngle = 6.28318530717958647692);

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};
