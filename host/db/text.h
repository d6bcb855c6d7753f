#pragma once

#include "host/db/entity.h"

namespace AcDb {
enum TextHorzMode {
  kTextLeft = 0,
  kTextCenter = 1,
  kTextRight = 2,
  kTextAlign = 3,  ///< from position to alignment point, as high as that makes it
  kTextMid = 4,    ///< about the middle of its box
  kTextFit = 5     ///< from position to alignment point, as wide as that makes it
};
enum TextVertMode { kTextBase = 0, kTextBottom = 1, kTextVertMid = 2, kTextTop = 3 };
}  // namespace AcDb

/// A single line of text. Points are in world coordinates, the rotation is about the normal.
///
/// A text that is neither left and on its base line, nor aligned or fitted between two points, is
/// placed by its alignment point. Where it begins follows from how large it is, and is worked out
/// when a text of a drawing is closed; one that is in no drawing keeps the position it was given.
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
  AcGePoint3d position() const;  ///< where its first character begins, on the base line
  Acad::ErrorStatus setPosition(const AcGePoint3d& position);
  double height() const;  ///< of capital letters
  Acad::ErrorStatus setHeight(double height);
  double rotation() const;
  Acad::ErrorStatus setRotation(double rotation);
  double widthFactor() const;
  /// eInvalidInput for a factor of 0.
  Acad::ErrorStatus setWidthFactor(double factor);
  double oblique() const;
  Acad::ErrorStatus setOblique(double angle);
  double thickness() const;
  Acad::ErrorStatus setThickness(double thickness);
  AcGeVector3d normal() const;
  /// Points keep their place in the world.
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

  AcDb::TextHorzMode horizontalMode() const;
  Acad::ErrorStatus setHorizontalMode(AcDb::TextHorzMode mode);
  AcDb::TextVertMode verticalMode() const;
  Acad::ErrorStatus setVerticalMode(AcDb::TextVertMode mode);
  bool isDefaultAlignment() const;  ///< left, on its base line
  AcGePoint3d alignmentPoint() const;
  /// eNotApplicable for a left text on its base line: set the modes first.
  Acad::ErrorStatus setAlignmentPoint(const AcGePoint3d& point);
  /// Works out the position now. eNotApplicable when the position rules, or the text is in no
  /// drawing and `database` is null.
  Acad::ErrorStatus adjustAlignment(const AcDbDatabase* database = nullptr);

  /// The style in the text's drawing, null for a text of no drawing that was given none.
  AcDbObjectId textStyle() const;
  Acad::ErrorStatus setTextStyle(AcDbObjectId style);
  bool isMirroredInX() const;  ///< backward
  Acad::ErrorStatus mirrorInX(bool on);
  bool isMirroredInY() const;  ///< upside down
  Acad::ErrorStatus mirrorInY(bool on);

 protected:
  using AcDbEntity::AcDbEntity;
  void closing() override;

 private:
  friend class cad::ObjectAccess;
  Acad::ErrorStatus laid_out_later(Acad::ErrorStatus changed);
};

/// Text of several lines with formatting codes.
class AcDbMText : public AcDbEntity {
  PN_RX_MEMBERS(AcDbMText)
 public:
  AcDbMText();

  enum AttachmentPoint {
    kTopLeft = 1,
    kTopCenter,
    kTopRight,
    kMiddleLeft,
    kMiddleCenter,
    kMiddleRight,
    kBottomLeft,
    kBottomCenter,
    kBottomRight
  };

  /// The whole text, formatting codes included, newly made: free it with acutDelString().
  ACHAR* contents() const;
  /// Replaces everything; contents it has already change nothing. Stored in chunks of 250
  /// characters.
  Acad::ErrorStatus setContents(const ACHAR* text);
  AcGePoint3d location() const;
  Acad::ErrorStatus setLocation(const AcGePoint3d& location);
  double textHeight() const;
  Acad::ErrorStatus setTextHeight(double height);
  AttachmentPoint attachment() const;
  Acad::ErrorStatus setAttachment(AttachmentPoint point);
  double width() const;  ///< at which lines are broken; 0: nowhere
  Acad::ErrorStatus setWidth(double width);
  /// From the X axis of the text's plane.
  double rotation() const;
  Acad::ErrorStatus setRotation(double rotation);
  AcDbObjectId textStyle() const;
  Acad::ErrorStatus setTextStyle(AcDbObjectId style);

 protected:
  using AcDbEntity::AcDbEntity;

 private:
  friend class cad::ObjectAccess;
};
