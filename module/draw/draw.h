#pragma once

#include "module/platform/drawing.h"
#include "module/platform/foundation.h"

/// Draws labels: texts, lines, arrows and symbols, at the drawing's scale, on one layer and in one
/// colour, turned so that they read along a reference direction.
///     CDimDraw draw(500, L"ZY-标注");                       // 1:500
///     const AcDbObjectId text = draw.DrawMMText(L"DN300-36.5", at, rotation, 0, -1);
///     pipe.dimTxtRec(L"pcgb", L"pipe_len", text, L"36.5", L"", L"", L"");
///
/// Two modes, chosen by the constructor. Database mode adds each entity to the current space of the
/// working drawing and collects its id. Preview mode hands it to a world draw and lets go of it:
/// nothing enters the drawing, every id is null.
///
/// Paper lengths are millimetres, all others drawing units, which are metres. Angles are radians.
/// What cannot be drawn (a coordinate that is not finite, an arrow without direction, a symbol
/// whose file is missing) is left out: the id is null, the diagnostic trace says why.
class CDimDraw {
 public:
  /// Database mode. A scale of 1 or less, or none, becomes 500. A null layer leaves entities on the
  /// current one. The layer is made when the drawing lacks it, and turned on, thawed and unlocked.
  /// A current layer that is off or locked is turned on and unlocked, with a message.
  CDimDraw(double scale, const wchar_t* layerName);
  /// Preview mode; the current layer is left alone. `worldDraw` must outlive the object, and its
  /// copies.
  CDimDraw(double scale, AcGiWorldDraw* worldDraw, const wchar_t* layerName);
  CDimDraw(const CDimDraw&) = default;
  CDimDraw& operator=(const CDimDraw&) = default;
  virtual ~CDimDraw();

  // Sizes.
  double PaperLongToCAD(double paperLong) const { return paperLong * scale_ / 1000.0; }
  double TextHeight() const { return PaperLongToCAD(text_height_); }  ///< drawing units
  double GetTextHeight() const { return text_height_; }               ///< paper
  void SetTextHeight(const double& height) { text_height_ = height; }

  // Drawing. The id is null in preview mode and when nothing was drawn.

  /// Takes the entity over, turned by the matrix if `transform`.
  AcDbObjectId DrawEntity(AcDbEntity* entity, bool transform);
  /// A height of 0 or less: TextHeight(). A width factor of -1: that of the settings.
  AcDbObjectId DrawTextW(const CString& text, AcGePoint3d point, AcDb::TextHorzMode horizontal,
                         AcDb::TextVertMode vertical, double rotation, double height,
                         double widthFactor);
  /// By which of its points a text stands at `point`: left, middle or right; bottom, middle, top.
  AcDbObjectId DrawLBText(const CString& text, AcGePoint3d point, double rotation, double height,
                          double widthFactor);
  AcDbObjectId DrawRBText(const CString& text, AcGePoint3d point, double rotation, double height,
                          double widthFactor);
  AcDbObjectId DrawMMText(const CString& text, AcGePoint3d point, double rotation, double height,
                          double widthFactor);
  AcDbObjectId DrawMBText(const CString& text, AcGePoint3d point, double rotation, double height,
                          double widthFactor);
  AcDbObjectId DrawMTText(const CString& text, AcGePoint3d point, double rotation, double height,
                          double widthFactor);
  /// A line; with a width of 0 or more a polyline of that width.
  AcDbObjectId DrawLine(AcGePoint3d from, AcGePoint3d to, double width);
  /// A polyline in the XY plane, with a width of 0 or more a constant one. At least two points.
  AcDbObjectId DrawPl(AcGePoint3dArray points, double width);
  /// An arrow of lines, 10.5 mm long, about the point. A matrix that flips turns it around, so that
  /// the flipped arrow points the same way.
  AcDbObjectId Arrow(AcGePoint3d point, AcGeVector3d direction);

  /// A block, read from `blockFile` when the drawing has none of that name. Without a name it is
  /// named after the file. The matrix does not apply.
  AcDbObjectId InsertBlkEnt(CString blockFile, CString blockName, AcGePoint3d position,
                            double rotation, double scale);
  AcDbObjectId InsertBlkEnt(CString blockFile, CString blockName, AcGePoint3d position,
                            double rotation, AcGeScale3d scale);
  /// A flow arrow, 15 mm long, about the point. `transform` moves the point by the matrix; the
  /// arrow keeps its direction, which is up to the caller. A null layer is the object's own.
  AcDbObjectId LeftInsertArrow(AcGePoint3d point, AcGeVector3d direction, bool transform,
                               const wchar_t* layer);
  /// The same from its insertion point on, scaled (0 or less: to the paper). `transform` moves the
  /// point by the matrix, and one that flips turns the arrow around.
  AcDbObjectId MidInsertArrow(AcGePoint3d point, AcGeVector3d direction, bool transform,
                              const wchar_t* layer, double scale);
  /// The same with the arrow that stands on a line.
  AcDbObjectId InsertArrowONline(AcGePoint3d point, AcGeVector3d direction, bool transform,
                                 const wchar_t* layer, double scale);

  // With what to draw.

  /// A colour index; the one before comes back. 256 is by layer.
  Adesk::UInt16 SetDrawColor(Adesk::UInt16 color);
  /// False, and nothing changed, for an empty name. The layer is made ready as by the constructor.
  bool SetDrawLayer(const CString& name);
  /// Turns what is drawn from now on by a half turn about the base point, if a label along
  /// `labelAngle` would read against `referenceAngle`.
  void SetReferenceDirection(const AcGePoint3d& base, double referenceAngle, double labelAngle);
  void SetMatrix(const AcGeMatrix3d& matrix) { matrix_ = matrix; }

  /// The point turned by the matrix; as that is a half turn, also the way back.
  AcGePoint3d DrawToOriginalPoint(AcGePoint3d point) const;
  /// Whether the first point, put into the XY plane and turned, is nearer to the target than the
  /// second.
  bool TestNearestDist(AcGePoint3d first, AcGePoint3d second, AcGePoint3d target) const;

  /// All that was drawn in database mode, in that order.
  const AcDbObjectIdArray& GetAllDimEntityId() const { return entity_ids_; }
  void ClearEntityIdArray() { entity_ids_.removeAll(); }
  AcGiWorldDraw* GetWorldDraw() const { return world_draw_; }
  CString GetLayerName() const { return layer_name_; }

 private:
  void Init(const wchar_t* layerName);
  AcDbBlockReference* GetBlkEnt(CString blockFile, CString blockName, AcGePoint3d position,
                                double rotation, double scale) const;
  AcDbBlockReference* GetBlkEnt(CString blockFile, CString blockName, AcGePoint3d position,
                                double rotation, AcGeScale3d scale) const;
  AcDbObjectId draw_arrow_block(const wchar_t* file, const AcGePoint3d& point, double rotation,
                                double scale, const wchar_t* layer);
  AcDbObjectId insert_turned(const wchar_t* file, AcGePoint3d point, AcGeVector3d direction,
                             bool transform, const wchar_t* layer, double scale);

  double scale_;
  AcGeMatrix3d matrix_;  // the identity or a half turn
  AcGiWorldDraw* world_draw_ = nullptr;
  double text_height_ = 0.0;  // paper
  AcDbObjectId text_style_;
  AcDbObjectIdArray entity_ids_{0, 8};
  Adesk::UInt16 color_ = 256;
  AcDbObjectId layer_id_;
  CString layer_name_;
};
