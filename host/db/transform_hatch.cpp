// Hatches: boundary paths and pattern lines stand one after the other, told apart only by counts
// and flags in front of them.

#include "host/db/transform_rules.h"

namespace cad {
namespace {

/// Walks the tags of a hatch in order.
class HatchMapper {
 public:
  HatchMapper(TagSheet& sheet, const ObjectMap& map) : sheet_(sheet), map_(map) {}

  void run() {
    for (std::size_t i = 0; i < sheet_.size(); ++i) {
      if (sheet_.zone(i) == TagSheet::Zone::kOwn) tag(i);
    }
  }

 private:
  enum class Place { kHead, kPath, kPolyline, kEdge, kSources, kPattern, kSeeds };
  enum EdgeType { kLine = 1, kArc = 2, kEllipse = 3, kSpline = 4 };
  static constexpr std::int64_t kPolylinePath = 2;

  void tag(std::size_t i) {
    const int code = sheet_.code(i);
    if (code == 92 && place_ != Place::kPattern) {
      place_ = (sheet_.integer(i) & kPolylinePath) != 0 ? Place::kPolyline : Place::kPath;
    } else if (code == 75 || code == 76) {
      place_ = Place::kPattern;
    } else if (code == 98) {
      place_ = Place::kSeeds;
    } else if (code == 97 && place_ != Place::kHead && !(place_ == Place::kEdge && spline_open_)) {
      place_ = Place::kSources;
    } else if (code == 97) {
      spline_open_ = false;  // its fit points follow
    } else if (code == 72 && (place_ == Place::kPath || place_ == Place::kEdge)) {
      place_ = Place::kEdge;
      edge_ = sheet_.integer(i);
      spline_open_ = edge_ == kSpline;
    } else {
      value(i, code);
    }
  }

  void value(std::size_t i, int code) {
    switch (place_) {
      case Place::kHead:
        // The elevation point holds z only.
        if (code == 10 && sheet_.has_z(i)) {
          sheet_.set_real(i + 2, map_.own_point({0, 0, sheet_.real(i + 2)}).z);
        }
        break;
      case Place::kPolyline:
        if (code == 10) flat_point(i);
        if (code == 42 && map_.mirrored()) sheet_.set_real(i, -sheet_.real(i));
        break;
      case Place::kEdge:
        edge_value(i, code);
        break;
      case Place::kPattern:
        pattern_value(i, code);
        break;
      case Place::kSeeds:
        if (code == 10) flat_point(i);
        break;
      case Place::kPath:
      case Place::kSources:
        break;
    }
  }

  void edge_value(std::size_t i, int code) {
    const bool spline = edge_ == kSpline;
    if (code == 10) {
      flat_point(i);
    } else if (code == 11 && edge_ != kEllipse) {
      flat_point(i);  // a line's end, a spline's fit point
    } else if (code == 11 || (spline && (code == 12 || code == 13))) {
      flat_vector(i);
    } else if (code == 40 && edge_ == kArc) {
      sheet_.set_real(i, sheet_.real(i) * map_.scale());
    } else if (code == 51 && (edge_ == kArc || edge_ == kEllipse) && i > 0) {
      arc_angles(i - 1, i);
    }
  }

  /// Angles of a clockwise arc are stored negated; a mirrored arc runs the other way round.
  void arc_angles(std::size_t start, std::size_t end) {
    if (sheet_.code(start) != 50) return;
    const std::size_t way = end + 1;
    if (way >= sheet_.size() || sheet_.code(way) != 73) return;
    const bool counter_clockwise = sheet_.integer(way) != 0;
    // Those of an ellipse count from its major axis, which is mapped already.
    const double turn = edge_ == kArc ? map_.turn() : 0.0;
    const double shift = counter_clockwise != map_.mirrored() ? turn : -turn;
    const double from = sheet_.real(start);
    const double sweep = sheet_.real(end) - from;
    if (shift != 0) {
      const double turned = normal_degrees(tidy_degrees(from + shift));
      sheet_.set_real(start, turned);
      sheet_.set_real(end, tidy_degrees(turned + sweep));
    }
    if (map_.mirrored()) sheet_.set_integer(way, counter_clockwise ? 0 : 1);
  }

  void pattern_value(std::size_t i, int code) {
    switch (code) {
      case 52:  // of the pattern
      case 53:  // of a line of it
        sheet_.set_real(i, map_.angle(sheet_.real(i)));
        break;
      case 41:  // the pattern's scale
      case 49:  // a dash
      case 47:  // the size of a pixel
        sheet_.set_real(i, sheet_.real(i) * map_.scale());
        break;
      case 43:  // where a line starts, and the step to the next one
        pair(i, 44, [&](const AcGePoint3d& p) { return map_.own_point(p); });
        break;
      case 45:
        pair(i, 46, [&](const AcGePoint3d& p) {
          return AcGePoint3d::kOrigin + map_.own_vector(p.asVector());
        });
        break;
      case 10:
        flat_point(i);
        break;
      default:
        break;
    }
  }

  template <class Change>
  void pair(std::size_t i, int second, const Change& change) {
    if (i + 1 >= sheet_.size() || sheet_.code(i + 1) != second) return;
    const AcGePoint3d fresh = change({sheet_.real(i), sheet_.real(i + 1), 0});
    sheet_.set_real(i, fresh.x);
    sheet_.set_real(i + 1, fresh.y);
  }

  void flat_point(std::size_t i) { sheet_.set_point(i, map_.own_point(sheet_.point(i)), true); }
  void flat_vector(std::size_t i) {
    const AcGeVector3d image = map_.own_vector(sheet_.point(i).asVector());
    sheet_.set_point(i, AcGePoint3d::kOrigin + image, true);
  }

  TagSheet& sheet_;
  const ObjectMap& map_;
  Place place_ = Place::kHead;
  std::int64_t edge_ = 0;
  bool spline_open_ = false;
};

}  // namespace

Acad::ErrorStatus map_hatch(TagSheet& sheet, const ObjectMap& map, MirroredText) {
  HatchMapper(sheet, map).run();
  return Acad::eOk;
}

}  // namespace cad
