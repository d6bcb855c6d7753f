#pragma once

#include <algorithm>

#include "host/geometry/matrix3d.h"

/// The box along the axes around something. New ones are empty.
class AcDbExtents {
 public:
  constexpr AcDbExtents() = default;
  /// The corners in order: each coordinate of `min` is the smaller one.
  constexpr AcDbExtents(const AcGePoint3d& min, const AcGePoint3d& max) : min_(min), max_(max) {}

  constexpr AcGePoint3d minPoint() const { return min_; }
  constexpr AcGePoint3d maxPoint() const { return max_; }
  constexpr void set(const AcGePoint3d& min, const AcGePoint3d& max) { *this = {min, max}; }

  constexpr void addPoint(const AcGePoint3d& p) {
    min_.set(std::min(min_.x, p.x), std::min(min_.y, p.y), std::min(min_.z, p.z));
    max_.set(std::max(max_.x, p.x), std::max(max_.y, p.y), std::max(max_.z, p.z));
  }
  constexpr void addExt(const AcDbExtents& other) {
    if (other.is_empty()) return;
    addPoint(other.min_);
    addPoint(other.max_);
  }
  /// Grows the box so that it holds itself moved by `v` too.
  constexpr void expandBy(const AcGeVector3d& v) {
    if (is_empty()) return;
    const AcGePoint3d min = min_, max = max_;
    addPoint(min + v);
    addPoint(max + v);
  }
  /// The box around this box after the map.
  constexpr void transformBy(const AcGeMatrix3d& map) {
    if (is_empty()) return;
    AcDbExtents mapped;
    for (int corner = 0; corner < 8; ++corner)
      mapped.addPoint(map * AcGePoint3d((corner & 1) ? max_.x : min_.x,
                                        (corner & 2) ? max_.y : min_.y,
                                        (corner & 4) ? max_.z : min_.z));
    *this = mapped;
  }

  constexpr bool is_empty() const {
    return !(min_.x <= max_.x && min_.y <= max_.y && min_.z <= max_.z);
  }

 private:
  AcGePoint3d min_{1e20, 1e20, 1e20};
  AcGePoint3d max_{-1e20, -1e20, -1e20};
};
