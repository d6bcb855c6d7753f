#pragma once

#include <string>
#include <vector>

#include "host/base/codepage.h"
#include "host/gi/world_draw.h"

/// A world draw that knows published geometry only and keeps what it is told, in world coordinates.
class RecordedDraw : public AcGiWorldDraw, private AcGiWorldGeometry, private AcGiSubEntityTraits {
 public:
  struct Call {
    std::string what;  ///< "circle", "arc", "polyline", "polygon", "text", "xline", "ray"
    std::vector<AcGePoint3d> points;
    double radius = 0.0;  ///< of a circle or arc; the height of a text
    double sweep = 0.0;
    std::wstring text;
    AcGeVector3d direction;
    AcGiTextStyle style;
    int color = 0;
    std::uint32_t true_color = 0;
    AcDbObjectId layer;
    AcDbObjectId linetype;
    bool filled = false;
  };
  std::vector<Call> calls;

  std::vector<std::string> kinds() const {
    std::vector<std::string> names;
    for (const Call& call : calls) names.push_back(call.what);
    return names;
  }

  AcGiRegenType regenType() const override { return kAcGiStandardDisplay; }
  Adesk::Boolean regenAbort() const override { return Adesk::kFalse; }
  Adesk::Boolean isDragging() const override { return Adesk::kTrue; }
  double deviation(AcGiDeviationType, const AcGePoint3d&) const override { return 0.01; }
  AcGiSubEntityTraits& subEntityTraits() const override { return const_cast<RecordedDraw&>(*this); }
  AcGiWorldGeometry& geometry() const override { return const_cast<RecordedDraw&>(*this); }
  AcGeMatrix3d map() const { return maps_.empty() ? AcGeMatrix3d() : maps_.back(); }

 private:
  void setColor(Adesk::UInt16 color) override { traits_.color = color, traits_.true_color = 0; }
  void setTrueColor(Adesk::UInt32 color) override { traits_.true_color = color; }
  void setLayer(AcDbObjectId layer) override { traits_.layer = layer; }
  void setLineType(AcDbObjectId linetype) override { traits_.linetype = linetype; }
  void setFillType(AcGiFillType type) override { traits_.filled = type == kAcGiFillAlways; }
  void setLineWeight(AcDb::LineWeight weight) override { weight_ = weight; }
  void setLineTypeScale(double scale) override { linetype_scale_ = scale; }
  Adesk::UInt16 color() const override { return static_cast<Adesk::UInt16>(traits_.color); }
  AcDbObjectId layerId() const override { return traits_.layer; }
  AcDbObjectId lineTypeId() const override { return traits_.linetype; }
  AcGiFillType fillType() const override {
    return traits_.filled ? kAcGiFillAlways : kAcGiFillNever;
  }
  AcDb::LineWeight lineWeight() const override { return weight_; }
  double lineTypeScale() const override { return linetype_scale_; }

  Call& add(std::string what, std::vector<AcGePoint3d> points) const {
    auto& self = const_cast<RecordedDraw&>(*this);
    Call call = traits_;
    call.what = std::move(what);
    for (AcGePoint3d& p : points) p.transformBy(map());
    call.points = std::move(points);
    self.calls.push_back(std::move(call));
    return self.calls.back();
  }
  Adesk::Boolean pushModelTransform(const AcGeMatrix3d& map) override {
    maps_.push_back(this->map() * map);
    return Adesk::kFalse;
  }
  Adesk::Boolean popModelTransform() override {
    maps_.pop_back();
    return Adesk::kFalse;
  }
  Adesk::Boolean circle(const AcGePoint3d& center, double radius,
                        const AcGeVector3d&) const override {
    add("circle", {center}).radius = radius;
    return Adesk::kFalse;
  }
  Adesk::Boolean circularArc(const AcGePoint3d& center, double radius, const AcGeVector3d& normal,
                             const AcGeVector3d& start, double sweep, AcGiArcType) const override {
    AcGeVector3d end = start;
    end.rotateBy(sweep, normal);
    Call& call =
        add("arc", {center, center + start.normal() * radius, center + end.normal() * radius});
    call.radius = radius;
    call.sweep = sweep;
    return Adesk::kFalse;
  }
  Adesk::Boolean polyline(Adesk::UInt32 count, const AcGePoint3d* points, const AcGeVector3d*,
                          Adesk::LongPtr) const override {
    add("polyline", {points, points + count});
    return Adesk::kFalse;
  }
  Adesk::Boolean polygon(Adesk::UInt32 count, const AcGePoint3d* points) const override {
    add("polygon", {points, points + count});
    return Adesk::kFalse;
  }
  Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d&,
                      const AcGeVector3d& direction, double height, double, double,
                      const ACHAR* text) const override {
    Call& call = add("text", {position});
    call.text = text;
    call.direction = direction;
    call.radius = height;
    return Adesk::kFalse;
  }
  Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d&,
                      const AcGeVector3d& direction, const ACHAR* text, Adesk::Int32,
                      Adesk::Boolean, const AcGiTextStyle& style) const override {
    Call& call = add("text", {position});
    call.text = text;
    call.direction = map() * direction;
    call.radius = style.textSize();
    call.style = style;
    return Adesk::kFalse;
  }
  Adesk::Boolean xline(const AcGePoint3d& point, const AcGePoint3d& second) const override {
    add("xline", {point, second});
    return Adesk::kFalse;
  }
  Adesk::Boolean ray(const AcGePoint3d& start, const AcGePoint3d& second) const override {
    add("ray", {start, second});
    return Adesk::kFalse;
  }

  std::vector<AcGeMatrix3d> maps_;
  Call traits_;
  AcDb::LineWeight weight_ = AcDb::kLnWtByLwDefault;
  double linetype_scale_ = 1.0;
};
