#pragma once

#include "host/db/curve.h"

/// A straight segment.
class AcDbLine : public AcDbCurve {
  PN_RX_MEMBERS(AcDbLine)
 public:
  AcDbLine();
  AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end);

  AcGePoint3d startPoint() const;
  AcGePoint3d endPoint() const;
  Acad::ErrorStatus setStartPoint(const AcGePoint3d& point);
  Acad::ErrorStatus setEndPoint(const AcGePoint3d& point);
  double thickness() const;
  Acad::ErrorStatus setThickness(double thickness);
  AcGeVector3d normal() const;
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};

/// A straight line without end, in one direction from its base point.
class AcDbRay : public AcDbCurve {
  PN_RX_MEMBERS(AcDbRay)
 public:
  AcDbRay();

  AcGePoint3d basePoint() const;
  AcGeVector3d unitDir() const;
  Acad::ErrorStatus setBasePoint(const AcGePoint3d& point);
  /// eInvalidInput for a direction without length.
  Acad::ErrorStatus setUnitDir(const AcGeVector3d& direction);

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};

/// A straight line without end, in both directions.
class AcDbXline : public AcDbCurve {
  PN_RX_MEMBERS(AcDbXline)
 public:
  AcDbXline();

  AcGePoint3d basePoint() const;
  AcGeVector3d unitDir() const;
  Acad::ErrorStatus setBasePoint(const AcGePoint3d& point);
  Acad::ErrorStatus setUnitDir(const AcGeVector3d& direction);

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};
