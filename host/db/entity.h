#pragma once

#include "host/base/adesk.h"
#include "host/db/object.h"
#include "host/geometry/ge.h"

class AcGiWorldDraw;

/// A graphical object. Lengths are drawing units, angles radians (DXF tags hold degrees).
/// Setters answer eNotOpenForWrite on an object that is not open for write, and eInvalidInput to
/// numbers that are not finite.
class AcDbEntity : public AcDbObject {
  PN_RX_MEMBERS(AcDbEntity)
 public:
  AcDbObjectId blockId() const { return ownerId(); }

  /// Name of the layer, newly made: the caller frees it with acutDelString().
  ACHAR* layer() const;
  /// Null when the drawing has no layer of that name.
  AcDbObjectId layerId() const;
  /// eKeyNotFound when the drawing has no such layer. A new object takes any name; adding it to a
  /// drawing without that layer fails.
  Acad::ErrorStatus setLayer(const ACHAR* name);
  Acad::ErrorStatus setLayer(AcDbObjectId layer);
  /// 0 ByBlock, 1 to 255, 256 ByLayer.
  int colorIndex() const;
  Acad::ErrorStatus setColorIndex(int color);

  /// See host/db/transform.h; texts are mirrored by a mirroring map.
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& map);

  /// Draws what is seen of the entity, with the traits that are set: its own layer and colour are
  /// its caller's concern, those of a block's contents are set on the way. An entity of no drawing
  /// finds styles and blocks in the working database; a text of no drawing starts at its position,
  /// however it is aligned. kFalse for a kind that is not drawn. Defined in host/gi.
  Adesk::Boolean worldDraw(AcGiWorldDraw* draw);

 protected:
  explicit AcDbEntity(std::string_view record) : AcDbObject(record) {}
  explicit AcDbEntity(const cad::NewLayout& layout) : AcDbObject(layout) {}

  // Values of a class part, angles in radians.
  double real_of(std::string_view part, int code, double absent = 0.0) const;
  std::int64_t integer_of(std::string_view part, int code, std::int64_t absent = 0) const;
  std::wstring text_of(std::string_view part, int code) const;
  double angle_of(std::string_view part, int code) const;
  AcGePoint3d point_of(std::string_view part, int code) const;
  AcGeVector3d normal_of(std::string_view part) const;  ///< Z where it is absent
  /// In world coordinates, of a point stored in those of the part's normal.
  AcGePoint3d ocs_point_of(std::string_view part, int code) const;
  /// The record of a symbol table that a value names; null when the entity is in no drawing, or
  /// the drawing has none of that name.
  AcDbObjectId record_of(std::string_view part, int code, std::string_view table) const;
  Acad::ErrorStatus set_real(std::string_view part, int code, double value);
  Acad::ErrorStatus set_integer(std::string_view part, int code, std::int64_t value);
  Acad::ErrorStatus set_text(std::string_view part, int code, std::wstring_view value);
  Acad::ErrorStatus set_angle(std::string_view part, int code, double value);
  Acad::ErrorStatus set_point(std::string_view part, int code, const AcGePoint3d& value);
  Acad::ErrorStatus set_ocs_point(std::string_view part, int code, const AcGePoint3d& value);
  /// A unit vector; eInvalidInput for one without length.
  Acad::ErrorStatus set_direction(std::string_view part, int code, const AcGeVector3d& value);
  /// The name of a record of that table: eNullObjectId, eWrongObjectType for a record of another,
  /// eWrongDatabase for one of another drawing.
  Acad::ErrorStatus set_record(std::string_view part, int code, std::string_view table,
                               AcDbObjectId record);

 private:
  friend class cad::ObjectAccess;
};
