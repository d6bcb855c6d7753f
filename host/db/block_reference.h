#pragma once

#include "host/db/entity.h"

/// A block inserted at a place, or a grid of such insertions (of which this tells the first).
class AcDbBlockReference : public AcDbEntity {
  PN_RX_MEMBERS(AcDbBlockReference)
 public:
  /// Inserts no block yet.
  AcDbBlockReference();
  AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockTableRec);

  /// The insertion point, in world coordinates.
  AcGePoint3d position() const;
  Acad::ErrorStatus setPosition(const AcGePoint3d& position);
  /// About the normal, from the X axis that follows from it.
  double rotation() const;
  Acad::ErrorStatus setRotation(double angle);
  AcGeScale3d scaleFactors() const;
  /// eInvalidInput when a factor is 0.
  Acad::ErrorStatus setScaleFactors(const AcGeScale3d& scale);
  AcGeVector3d normal() const;
  /// The insertion point stays where it is. eInvalidInput for a vector of no length.
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
  /// The block; null when the drawing has none of the name.
  AcDbObjectId blockTableRecord() const;
  /// eNullObjectId, eWrongObjectType for what is no block, eWrongDatabase for another drawing's.
  Acad::ErrorStatus setBlockTableRecord(AcDbObjectId block);

 protected:
  using AcDbEntity::AcDbEntity;

 private:
  friend class cad::ObjectAccess;
};
