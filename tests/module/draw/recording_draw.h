#pragma once

#include <string>
#include <vector>

#include "module/platform/drawing.h"

/// A world draw that keeps what it is told.
class RecordingDraw : public AcGiWorldDraw {
 public:
  struct Text {
    std::wstring string;
    AcGePoint3d position;
    AcGeVector3d direction;
    double height;
    double width_factor;
    std::wstring font;
  };
  std::vector<Text> texts;
  std::vector<std::vector<AcGePoint3d>> lines;
  std::vector<Adesk::UInt16> line_colors;  ///< of each of them, when it was drawn
  std::vector<std::vector<AcGePoint3d>> polygons;
  std::vector<Adesk::UInt16> colors;  ///< of each setColor()

  RecordingDraw() : traits_(*this), geometry_(*this) {}
  std::size_t calls() const { return texts.size() + lines.size() + polygons.size(); }

  AcGiRegenType regenType() const override { return kAcGiStandardDisplay; }
  Adesk::Boolean regenAbort() const override { return Adesk::kFalse; }
  Adesk::Boolean isDragging() const override { return Adesk::kTrue; }
  double deviation(AcGiDeviationType, const AcGePoint3d&) const override { return 0.01; }
  AcGiSubEntityTraits& subEntityTraits() const override { return traits_; }
  AcGiWorldGeometry& geometry() const override { return geometry_; }

 private:
  class Traits : public AcGiSubEntityTraits {
   public:
    explicit Traits(RecordingDraw& draw) : draw_(draw) {}
    void setColor(Adesk::UInt16 color) override {
      color_ = color;
      draw_.colors.push_back(color);
    }
    void setTrueColor(Adesk::UInt32) override {}
    void setLayer(AcDbObjectId layer) override { layer_ = layer; }
    void setLineType(AcDbObjectId) override {}
    void setFillType(AcGiFillType) override {}
    void setLineWeight(AcDb::LineWeight) override {}
    void setLineTypeScale(double) override {}
    Adesk::UInt16 color() const override { return color_; }
    AcDbObjectId layerId() const override { return layer_; }
    AcDbObjectId lineTypeId() const override { return {}; }
    AcGiFillType fillType() const override { return kAcGiFillAlways; }
    AcDb::LineWeight lineWeight() const override { return AcDb::kLnWtByLayer; }
    double lineTypeScale() const override { return 1.0; }

   private:
    RecordingDraw& draw_;
    Adesk::UInt16 color_ = 256;
    AcDbObjectId layer_;
  };

  class Geometry : public AcGiWorldGeometry {
   public:
    explicit Geometry(RecordingDraw& draw) : draw_(draw) {}
    Adesk::Boolean pushModelTransform(const AcGeMatrix3d& map) override {
      maps_.push_back(maps_.empty() ? map : maps_.back() * map);
      return Adesk::kFalse;
    }
    Adesk::Boolean popModelTransform() override {
      maps_.pop_back();
      return Adesk::kFalse;
    }
    Adesk::Boolean circle(const AcGePoint3d&, double, const AcGeVector3d&) const override {
      return Adesk::kFalse;
    }
    Adesk::Boolean circularArc(const AcGePoint3d&, double, const AcGeVector3d&, const AcGeVector3d&,
                               double, AcGiArcType) const override {
      return Adesk::kFalse;
    }
    Adesk::Boolean polyline(Adesk::UInt32 count, const AcGePoint3d* points, const AcGeVector3d*,
                            Adesk::LongPtr) const override {
      draw_.lines.push_back(mapped(count, points));
      draw_.line_colors.push_back(draw_.traits_.color());
      return Adesk::kFalse;
    }
    Adesk::Boolean polygon(Adesk::UInt32 count, const AcGePoint3d* points) const override {
      draw_.polygons.push_back(mapped(count, points));
      return Adesk::kFalse;
    }
    Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d&,
                        const AcGeVector3d& direction, double height, double width_factor, double,
                        const ACHAR* text) const override {
      draw_.texts.push_back({text, position, direction, height, width_factor, L""});
      return Adesk::kFalse;
    }
    Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d&,
                        const AcGeVector3d& direction, const ACHAR* text, Adesk::Int32 length,
                        Adesk::Boolean, const AcGiTextStyle& style) const override {
      const std::wstring string =
          length < 0 ? std::wstring(text) : std::wstring(text, static_cast<std::size_t>(length));
      draw_.texts.push_back(
          {string, position, direction, style.textSize(), style.xScale(), style.fileName()});
      return Adesk::kFalse;
    }
    Adesk::Boolean xline(const AcGePoint3d&, const AcGePoint3d&) const override {
      return Adesk::kFalse;
    }
    Adesk::Boolean ray(const AcGePoint3d&, const AcGePoint3d&) const override {
      return Adesk::kFalse;
    }

   private:
    std::vector<AcGePoint3d> mapped(Adesk::UInt32 count, const AcGePoint3d* points) const {
      std::vector<AcGePoint3d> all(points, points + count);
      if (!maps_.empty())
        for (AcGePoint3d& point : all) point.transformBy(maps_.back());
      return all;
    }
    RecordingDraw& draw_;
    std::vector<AcGeMatrix3d> maps_;
  };

  mutable Traits traits_;
  mutable Geometry geometry_;
};
