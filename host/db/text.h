#pragma once

#include "host/db/entity.h"

/// A single line of text.
class AcDbText : public AcDbEntity {
  PN_RX_MEMBERS(AcDbText)
 public:
  AcDbText();
  AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style = AcDbObjectId(),
           double height = 0, double rotation = 0);

  /// The text as stored, %% codes included, newly made: free it with acutDelString().
  ACHAR* textString() const;
  /// A text that it has already changes nothing.
  Acad::ErrorStatus setTextString(const ACHAR* text);
  AcGePoint3d position() const;
  Acad::ErrorStatus setPosition(const AcGePoint3d& position);
  double height() const;
  Acad::ErrorStatus setHeight(double height);
  double rotation() const;
  Acad::ErrorStatus setRotation(double rotation);

 protected:
  using AcDbEntity::AcDbEntity;

 private:
  friend class cad::ObjectAccess;
};

/// Text of several lines with formatting codes.
class AcDbMText : public AcDbEntity {
  PN_RX_MEMBERS(AcDbMText)
 public:
  AcDbMText();

  /// The whole text, formatting codes included, newly made: free it with acutDelString().
  ACHAR* contents() const;
  /// Replaces everything; contents it has already change nothing. Stored in chunks of 250
  /// characters.
  Acad::ErrorStatus setContents(const ACHAR* text);
  AcGePoint3d location() const;
  Acad::ErrorStatus setLocation(const AcGePoint3d& location);
  double textHeight() const;
  Acad::ErrorStatus setTextHeight(double height);

 protected:
  using AcDbEntity::AcDbEntity;

 private:
  friend class cad::ObjectAccess;
};
