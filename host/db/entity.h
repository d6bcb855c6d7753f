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

 private:
  friend class cad::ObjectAccess;
};
