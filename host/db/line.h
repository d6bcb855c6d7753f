#pragma once

#include "host/db/entity.h"

class AcDbCurve : public AcDbEntity {
  PN_RX_MEMBERS(AcDbCurve)
 protected:
  using AcDbEntity::AcDbEntity;
};

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

 protected:
  using AcDbCurve::AcDbCurve;

 private:
  friend class cad::ObjectAccess;
};
