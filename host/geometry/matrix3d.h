#pragma once

#include "host/geometry/point3d.h"

class AcGeScale3d;

/// An affine map of space: columns 0 to 2 are the images of the axes, column 3 of the origin. The
/// last row is 0 0 0 1. `a * b` applies b first.
///     text->transformBy(AcGeMatrix3d::rotation(angle, AcGeVector3d::kZAxis, text->position()));
class AcGeMatrix3d {
 public:
  double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};  // [row][column]

  static const AcGeMatrix3d kIdentity;

  constexpr AcGeMatrix3d() = default;

  constexpr double operator()(unsigned row, unsigned column) const { return entry[row][column]; }
  constexpr double& operator()(unsigned row, unsigned column) { return entry[row][column]; }

  constexpr AcGeMatrix3d operator*(const AcGeMatrix3d& right) const {
    AcGeMatrix3d product;
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 4; ++column) {
        double sum = 0.0;
        for (int k = 0; k < 4; ++k) sum += entry[row][k] * right.entry[k][column];
        product.entry[row][column] = sum;
      }
    }
    return product;
  }
  constexpr AcGeMatrix3d& operator*=(const AcGeMatrix3d& right) { return postMultBy(right); }
  constexpr AcGeMatrix3d& postMultBy(const AcGeMatrix3d& right) { return *this = *this * right; }
  constexpr AcGeMatrix3d& preMultBy(const AcGeMatrix3d& left) { return *this = left * *this; }
  constexpr AcGeMatrix3d& setToProduct(const AcGeMatrix3d& left, const AcGeMatrix3d& right) {
    return *this = left * right;
  }

  constexpr AcGePoint3d operator*(const AcGePoint3d& p) const {
    return AcGePoint3d::kOrigin + translation() + *this * p.asVector();
  }
  constexpr AcGeVector3d operator*(const AcGeVector3d& v) const {
    return column(0) * v.x + column(1) * v.y + column(2) * v.z;
  }

  /// The image of an axis (0 to 2); of the origin (3).
  constexpr AcGeVector3d column(unsigned i) const {
    return {entry[0][i], entry[1][i], entry[2][i]};
  }
  constexpr AcGeVector3d translation() const { return column(3); }

  constexpr AcGeMatrix3d& setToIdentity() { return *this = AcGeMatrix3d(); }
  /// Exchanges the translation, the rest stays.
  constexpr AcGeMatrix3d& setTranslation(const AcGeVector3d& v) { return set_column(3, v); }
  constexpr AcGeMatrix3d& setToTranslation(const AcGeVector3d& v) { return *this = translation(v); }
  AcGeMatrix3d& setToRotation(double angle, const AcGeVector3d& axis,
                              const AcGePoint3d& center = AcGePoint3d::kOrigin) {
    return *this = rotation(angle, axis, center);
  }
  constexpr AcGeMatrix3d& setToScaling(double factor,
                                       const AcGePoint3d& center = AcGePoint3d::kOrigin) {
    return *this = scaling(factor, center);
  }
  AcGeMatrix3d& setToMirroring(const AcGePlane& plane) { return *this = mirroring(plane); }
  AcGeMatrix3d& setToMirroring(const AcGePoint3d& about) { return *this = mirroring(about); }
  constexpr AcGeMatrix3d& setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& x_axis,
                                         const AcGeVector3d& y_axis, const AcGeVector3d& z_axis) {
    setToIdentity();
    return set_column(0, x_axis).set_column(1, y_axis).set_column(2, z_axis).setTranslation(
        origin.asVector());
  }
  constexpr void getCoordSystem(AcGePoint3d& origin, AcGeVector3d& x_axis, AcGeVector3d& y_axis,
                                AcGeVector3d& z_axis) const {
    origin = AcGePoint3d::kOrigin + translation();
    x_axis = column(0);
    y_axis = column(1);
    z_axis = column(2);
  }

  static constexpr AcGeMatrix3d translation(const AcGeVector3d& v) {
    return AcGeMatrix3d().setTranslation(v);
  }
  /// Right-handed; about an axis of no length the identity.
  static AcGeMatrix3d rotation(double angle, const AcGeVector3d& axis,
                               const AcGePoint3d& center = AcGePoint3d::kOrigin);
  static constexpr AcGeMatrix3d scaling(double factor,
                                        const AcGePoint3d& center = AcGePoint3d::kOrigin) {
    AcGeMatrix3d m;
    for (int i = 0; i < 3; ++i) m.entry[i][i] = factor;
    return m.setTranslation(center.asVector() * (1.0 - factor));
  }
  static AcGeMatrix3d scaling(const AcGeScale3d& scale,
                              const AcGePoint3d& center = AcGePoint3d::kOrigin);
  static AcGeMatrix3d mirroring(const AcGePlane& plane);
  /// Point reflection.
  static AcGeMatrix3d mirroring(const AcGePoint3d& about) { return scaling(-1.0, about); }
  /// Between world coordinates and those of a plane: of its own origin and axes, or for a normal
  /// alone the object coordinates a drawing stores.
  static AcGeMatrix3d planeToWorld(const AcGeVector3d& normal);
  static AcGeMatrix3d planeToWorld(const AcGePlane& plane);
  static AcGeMatrix3d worldToPlane(const AcGeVector3d& normal);
  static AcGeMatrix3d worldToPlane(const AcGePlane& plane);

  constexpr double det() const { return column(0).dotProduct(column(1).crossProduct(column(2))); }
  /// Whether space is flattened: the axes, each taken at unit length, span no volume.
  bool isSingular(const AcGeTol& tol = AcGeContext::gTol) const;
  /// The map back. A singular matrix has none: the identity.
  AcGeMatrix3d inverse(const AcGeTol& tol = AcGeContext::gTol) const;
  AcGeMatrix3d& invert() { return *this = inverse(); }
  constexpr AcGeMatrix3d transpose() const {
    AcGeMatrix3d m;
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 4; ++column) m.entry[row][column] = entry[column][row];
    }
    return m;
  }
  constexpr AcGeMatrix3d& transposeIt() { return *this = transpose(); }
  /// The largest length of an axis' image.
  double scale() const;
  /// Whether the axes stay at right angles, with one common scale.
  bool isUniScaledOrtho(const AcGeTol& tol = AcGeContext::gTol) const;

  /// The images of the axes equal as vectors, those of the origin as points.
  bool isEqualTo(const AcGeMatrix3d& m, const AcGeTol& tol = AcGeContext::gTol) const;
  bool operator==(const AcGeMatrix3d& m) const { return isEqualTo(m); }

 private:
  constexpr AcGeMatrix3d& set_column(unsigned i, const AcGeVector3d& v) {
    for (unsigned row = 0; row < 3; ++row) entry[row][i] = v[row];
    return *this;
  }
};

inline constexpr AcGeMatrix3d AcGeMatrix3d::kIdentity{};

inline AcGePoint3d& AcGePoint3d::transformBy(const AcGeMatrix3d& matrix) {
  return *this = matrix * *this;
}
inline AcGeVector3d& AcGeVector3d::transformBy(const AcGeMatrix3d& matrix) {
  return *this = matrix * *this;
}
