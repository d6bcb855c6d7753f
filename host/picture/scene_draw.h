#pragma once

#include <functional>
#include <map>
#include <string_view>

#include "host/gi/fine_geometry.h"
#include "host/picture/scene.h"

namespace cad {
class Drawing;
}

namespace cad::picture {

/// Collects what entities draw into a scene.
class SceneDraw : public AcGiWorldDraw, private FineGeometry, private AcGiSubEntityTraits {
 public:
  /// `shown` says by a layer's name whether it is drawn; empty: all are.
  SceneDraw(Drawing& drawing, std::function<bool(std::wstring_view)> shown);

  Scene& scene() { return scene_; }

  AcGiRegenType regenType() const override { return kAcGiStandardDisplay; }
  Adesk::Boolean regenAbort() const override { return Adesk::kFalse; }
  Adesk::Boolean isDragging() const override { return Adesk::kFalse; }
  double deviation(AcGiDeviationType, const AcGePoint3d&) const override { return 0.0; }
  AcGiSubEntityTraits& subEntityTraits() const override { return const_cast<SceneDraw&>(*this); }
  AcGiWorldGeometry& geometry() const override { return const_cast<SceneDraw&>(*this); }

 private:
  // Traits.
  void setColor(Adesk::UInt16 color) override;
  void setTrueColor(Adesk::UInt32 color) override;
  void setLayer(AcDbObjectId layer) override;
  void setLineType(AcDbObjectId linetype) override;
  void setFillType(AcGiFillType type) override { fill_ = type; }
  void setLineWeight(AcDb::LineWeight weight) override;
  void setLineTypeScale(double scale) override;
  Adesk::UInt16 color() const override { return color_; }
  AcDbObjectId layerId() const override { return layer_; }
  AcDbObjectId lineTypeId() const override { return linetype_; }
  AcGiFillType fillType() const override { return fill_; }
  AcDb::LineWeight lineWeight() const override { return weight_; }
  double lineTypeScale() const override { return linetype_scale_; }

  // Geometry.
  Adesk::Boolean pushModelTransform(const AcGeMatrix3d& map) override;
  Adesk::Boolean popModelTransform() override;
  Adesk::Boolean circle(const AcGePoint3d& center, double radius,
                        const AcGeVector3d& normal) const override;
  Adesk::Boolean circularArc(const AcGePoint3d& center, double radius, const AcGeVector3d& normal,
                             const AcGeVector3d& start, double sweep,
                             AcGiArcType type) const override;
  Adesk::Boolean polyline(Adesk::UInt32 count, const AcGePoint3d* points,
                          const AcGeVector3d* normal, Adesk::LongPtr marker) const override;
  Adesk::Boolean polygon(Adesk::UInt32 count, const AcGePoint3d* points) const override;
  Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d& normal,
                      const AcGeVector3d& direction, double height, double width_factor,
                      double oblique, const ACHAR* text) const override;
  Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d& normal,
                      const AcGeVector3d& direction, const ACHAR* text, Adesk::Int32 length,
                      Adesk::Boolean raw, const AcGiTextStyle& style) const override;
  Adesk::Boolean xline(const AcGePoint3d& point, const AcGePoint3d& second) const override;
  Adesk::Boolean ray(const AcGePoint3d& start, const AcGePoint3d& second) const override;
  void curve(const Curve& curve, double width) override;
  void strokes(std::span<const AcGePoint3d> ends) override;
  void area(std::span<const std::vector<Curve>> loops, Rule rule) override;
  void mask(std::span<const AcGePoint3d> corners) override;
  void point(const AcGePoint3d& place, int mode, double size) override;
  void glyphs(const GlyphRun& run) override;

  SceneDraw& self() const { return const_cast<SceneDraw&>(*this); }
  Point flat(const AcGePoint3d& p) const {
    return {
        map_.entry[0][0] * p.x + map_.entry[0][1] * p.y + map_.entry[0][2] * p.z + map_.entry[0][3],
        map_.entry[1][0] * p.x + map_.entry[1][1] * p.y + map_.entry[1][2] * p.z +
            map_.entry[1][3]};
  }
  Point flat(const AcGeVector3d& v) const {
    return {map_.entry[0][0] * v.x + map_.entry[0][1] * v.y + map_.entry[0][2] * v.z,
            map_.entry[1][0] * v.x + map_.entry[1][1] * v.y + map_.entry[1][2] * v.z};
  }
  Item& begin(Item::Kind kind);
  void add(Step step, Point p);
  void add_polygon(Item::Kind kind, std::span<const AcGePoint3d> corners);
  void add_segment(const Segment& segment);
  void add_arc(const Segment& segment);
  void add_spline(const Bezier& curve);
  void add_wide(const Curve& curve, double width);
  /// Ends an item; one that cannot be drawn is taken back.
  void finish();
  std::uint32_t ink();
  int dashes_of(AcDbObjectId linetype);
  bool layer_shown() const { return layer_shown_; }

  Scene scene_;
  Drawing& drawing_;
  std::function<bool(std::wstring_view)> shown_;
  std::map<AcDbObjectId, bool> shown_layers_;
  std::map<AcDbObjectId, int> linetypes_;
  double global_scale_ = 1.0;  // LTSCALE

  AcGeMatrix3d map_;
  std::vector<AcGeMatrix3d> maps_;  // those before it

  Adesk::UInt16 color_ = 7;
  std::optional<std::uint32_t> true_color_;
  AcDbObjectId layer_;
  AcDbObjectId linetype_;
  AcGiFillType fill_ = kAcGiFillNever;
  AcDb::LineWeight weight_ = AcDb::kLnWtByLwDefault;
  double linetype_scale_ = 1.0;
  bool layer_shown_ = true;
  bool ink_changed_ = true;
  std::uint32_t ink_ = 0;
};

}  // namespace cad::picture
