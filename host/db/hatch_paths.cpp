#include "host/db/hatch_paths.h"

#include <cmath>
#include <numbers>
#include <utility>

#include "host/db/entity_fields.h"
#include "host/db/shape_parts.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

/// Angles of an edge that runs clockwise, which are counted that way.
void turn_around(double& from, double& to) {
  const double was = from;
  from = -to;
  to = -was;
}

/// Reads the tags of the paths in their order.
class PathReader {
 public:
  PathReader(std::string_view bytes, const dxf::Dialect& dialect, const AcGeMatrix3d& axes,
             double elevation, std::vector<HatchPath>& paths)
      : tags_(bytes, dialect),
        dialect_(dialect),
        axes_(axes),
        elevation_(elevation),
        paths_(paths) {}

  void read() {
    constexpr int kPathCount = 91;
    while (more_ && tag_.code != kPathCount) step();
    const long paths = integer();
    step();
    for (long i = 0; i < paths && more_; ++i) read_path();
  }

 private:
  void step() { more_ = tags_.next(tag_); }
  double real() const { return dxf::real_value(tag_, dialect_); }
  long integer() const { return static_cast<long>(dxf::int_value(tag_, dialect_)); }

  /// The value of the next tag when it has that code.
  double take(int code, double absent = 0.0) {
    if (!more_ || tag_.code != code) return absent;
    const double value = real();
    step();
    return value;
  }
  long take_integer(int code, long absent = 0) {
    if (!more_ || tag_.code != code) return absent;
    const long value = integer();
    step();
    return value;
  }
  AcGePoint2d take_point(int code) {
    const double x = take(code);
    return {x, take(code + 10)};
  }
  AcGePoint3d place(const AcGePoint2d& p) const {
    return axes_ * AcGePoint3d(p.x, p.y, elevation_);
  }
  AcGeVector3d direction(double x, double y) const { return axes_ * AcGeVector3d(x, y, 0.0); }

  void add(Curve edge) { paths_.back().edges.push_back(std::move(edge)); }

  void read_path() {
    constexpr int kFlags = 92, kPolyline = 2, kSources = 97, kSource = 330;
    while (more_ && tag_.code != kFlags) step();
    HatchPath& path = paths_.emplace_back();
    path.flags = static_cast<int>(take_integer(kFlags));
    if (path.flags & kPolyline)
      read_polyline();
    else
      read_edges();
    for (long n = take_integer(kSources); n > 0 && more_ && tag_.code == kSource; --n) step();
  }

  void read_polyline() {
    take_integer(72);  // whether there are bulges
    const bool closed = take_integer(73) != 0;
    std::vector<Curve::Vertex> vertices;
    for (long n = take_integer(93); n > 0 && more_ && tag_.code == 10; --n) {
      const AcGePoint2d p = take_point(10);
      vertices.push_back({p, take(42)});
    }
    if (vertices.empty()) return;
    Curve flat = Curve::polyline(vertices, closed, AcGeVector3d::kZAxis, elevation_);
    add(flat.transformed(axes_));
  }

  void read_edges() {
    enum { kLine = 1, kArc, kEllipse, kSpline };
    for (long n = take_integer(93); n > 0 && more_ && tag_.code == 72; --n) {
      switch (take_integer(72)) {
        case kLine: {
          const AcGePoint2d from = take_point(10);
          add(Curve::line(place(from), place(take_point(11))));
          break;
        }
        case kArc:
          read_arc();
          break;
        case kEllipse:
          read_ellipse();
          break;
        case kSpline:
          read_spline();
          break;
        default:
          return;
      }
    }
  }

  void read_arc() {
    const AcGePoint2d center = take_point(10);
    const double radius = take(40);
    double from = take(50) * kDegree, to = take(51) * kDegree;
    if (take_integer(73, 1) == 0) turn_around(from, to);
    Curve arc =
        Curve::arc({center.x, center.y, elevation_}, AcGeVector3d::kZAxis, radius, from, to);
    add(arc.transformed(axes_));
  }

  void read_ellipse() {
    const AcGePoint2d center = take_point(10), major = take_point(11);
    const double ratio = take(40);
    double from = take(50) * kDegree, to = take(51) * kDegree;
    if (take_integer(73, 1) == 0) turn_around(from, to);
    Curve arc = Curve::ellipse({center.x, center.y, elevation_}, AcGeVector3d::kZAxis,
                               {major.x, major.y, 0.0}, ratio, from, to);
    add(arc.transformed(axes_));
  }

  void read_spline() {
    SplineShape shape;
    shape.degree = static_cast<int>(take_integer(94, 3));
    const bool rational = take_integer(73) != 0;
    take_integer(74);  // periodic
    long knots = take_integer(95);
    long controls = take_integer(96);
    for (; knots > 0 && more_ && tag_.code == 40; --knots) shape.knots.push_back(take(40));
    for (; controls > 0 && more_ && tag_.code == 10; --controls) {
      shape.controls.push_back(place(take_point(10)));
      const double weight = take(42, 1.0);
      if (rational) shape.weights.push_back(weight);
    }
    // Later releases add fit points and tangents behind a count.
    constexpr int kFitCount = 97;
    if (more_ && tag_.code == kFitCount) {
      step();
      while (more_ && (tag_.code == 11 || tag_.code == 21 || tag_.code == 12 || tag_.code == 22 ||
                       tag_.code == 13 || tag_.code == 23))
        step();
    }
    if (std::optional<Curve> curve = Curve::spline(shape)) add(std::move(*curve));
  }

  OwnTags tags_;
  const dxf::Dialect& dialect_;
  const AcGeMatrix3d axes_;
  const double elevation_;
  std::vector<HatchPath>& paths_;
  dxf::Tag tag_;
  bool more_ = true;
};

}  // namespace

void append_hatch_paths(std::string_view bytes, const dxf::Dialect& dialect,
                        std::vector<ShapePart>& parts) {
  for (HatchPath& path : hatch_paths(bytes, dialect))
    for (Curve& edge : path.edges) parts.emplace_back(std::move(edge));
}

std::vector<HatchPath> hatch_paths(std::string_view bytes, const dxf::Dialect& dialect) {
  const EntityFields fields(bytes, dialect);
  std::vector<HatchPath> paths;
  PathReader(bytes, dialect, ocs_to_wcs(fields.normal()), fields.real(30), paths).read();
  return paths;
}

}  // namespace cad
