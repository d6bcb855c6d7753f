#pragma once

#include "host/base/adesk.h"
#include "host/db/object_id.h"
#include "host/db/rx.h"
#include "host/geometry/ge.h"
#include "host/gi/text_style.h"

/// Where entities draw themselves: AcDbEntity::worldDraw() tells an AcGiWorldDraw what is seen of
/// it. Pictures of drawings and the preview of an entity being dragged both implement this.
///
/// Lengths are drawing units, angles radians, points in world coordinates unless a model transform
/// was pushed. Strings and arrays belong to the caller and are read during the call only.

enum AcGiRegenType {
  eAcGiRegenTypeInvalid = 0,
  kAcGiStandardDisplay = 2,
  kAcGiHideOrShadeCommand,
  kAcGiRenderCommand,
  kAcGiForExplode,
  kAcGiSaveWorldDrawForProxy,
  kAcGiForExtents
};
enum AcGiFillType { kAcGiFillAlways = 1, kAcGiFillNever };
enum AcGiArcType { kAcGiArcSimple = 0, kAcGiArcSector, kAcGiArcChord };
enum AcGiDeviationType { kAcGiMaxDevForCircle = 0, kAcGiMaxDevForCurve, kAcGiMaxDevForBoundary };

namespace AcDb {
/// In hundredths of a millimetre, or one of three that stand for another's.
enum LineWeight : int { kLnWtByLayer = -1, kLnWtByBlock = -2, kLnWtByLwDefault = -3 };
}  // namespace AcDb

/// With what the geometry that follows is drawn.
class AcGiSubEntityTraits : public AcRxObject {
 public:
  /// 0 ByBlock, 1 to 255 of the palette, 256 ByLayer. Ends a true colour.
  virtual void setColor(Adesk::UInt16 color) = 0;
  /// 0xRRGGBB; it rules over the index until setColor() is called.
  virtual void setTrueColor(Adesk::UInt32 color) = 0;
  virtual void setLayer(AcDbObjectId layer) = 0;
  virtual void setLineType(AcDbObjectId linetype) = 0;
  virtual void setFillType(AcGiFillType type) = 0;
  virtual void setLineWeight(AcDb::LineWeight weight) = 0;
  virtual void setLineTypeScale(double scale = 1.0) = 0;

  virtual Adesk::UInt16 color() const = 0;
  virtual AcDbObjectId layerId() const = 0;
  virtual AcDbObjectId lineTypeId() const = 0;
  virtual AcGiFillType fillType() const = 0;
  virtual AcDb::LineWeight lineWeight() const = 0;
  virtual double lineTypeScale() const = 0;
};

/// What is drawn. Every call answers kFalse to go on and kTrue to ask that drawing be ended early.
class AcGiGeometry : public AcRxObject {
 public:
  /// Points that follow go through `map`, and then through those pushed before.
  virtual Adesk::Boolean pushModelTransform(const AcGeMatrix3d& map) = 0;
  virtual Adesk::Boolean popModelTransform() = 0;

  virtual Adesk::Boolean circle(const AcGePoint3d& center, double radius,
                                const AcGeVector3d& normal) const = 0;
  /// From the direction of `start` on, counter-clockwise about the normal through `sweep`.
  virtual Adesk::Boolean circularArc(const AcGePoint3d& center, double radius,
                                     const AcGeVector3d& normal, const AcGeVector3d& start,
                                     double sweep, AcGiArcType type = kAcGiArcSimple) const = 0;
  virtual Adesk::Boolean polyline(Adesk::UInt32 count, const AcGePoint3d* points,
                                  const AcGeVector3d* normal = nullptr,
                                  Adesk::LongPtr marker = -1) const = 0;
  /// Closed, and filled with kAcGiFillAlways.
  virtual Adesk::Boolean polygon(Adesk::UInt32 count, const AcGePoint3d* points) const = 0;
  /// A line of text from the start of its base line, without regard to how it is aligned.
  virtual Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d& normal,
                              const AcGeVector3d& direction, double height, double width_factor,
                              double oblique, const ACHAR* text) const = 0;
  /// The same with a style. `length` -1: up to the null. `raw`: %% codes stand for themselves.
  virtual Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d& normal,
                              const AcGeVector3d& direction, const ACHAR* text, Adesk::Int32 length,
                              Adesk::Boolean raw, const AcGiTextStyle& style) const = 0;
  virtual Adesk::Boolean xline(const AcGePoint3d& point, const AcGePoint3d& second) const = 0;
  virtual Adesk::Boolean ray(const AcGePoint3d& start, const AcGePoint3d& second) const = 0;
};

class AcGiWorldGeometry : public AcGiGeometry {};

class AcGiWorldDraw : public AcRxObject {
 public:
  virtual AcGiRegenType regenType() const = 0;
  /// Whether drawing should be given up.
  virtual Adesk::Boolean regenAbort() const = 0;
  virtual Adesk::Boolean isDragging() const = 0;
  /// How far a polyline may keep from the true curve that it stands for.
  virtual double deviation(AcGiDeviationType type, const AcGePoint3d& near) const = 0;
  virtual AcGiSubEntityTraits& subEntityTraits() const = 0;
  virtual AcGiWorldGeometry& geometry() const = 0;
};
