#pragma once

/// When two points, or two vectors, count as the same.
class AcGeTol {
 public:
  constexpr AcGeTol() = default;

  /// Largest distance between equal points, in drawing units.
  constexpr double equalPoint() const { return point_; }
  /// Largest length of the difference of equal vectors; direction tests apply it to unit vectors.
  constexpr double equalVector() const { return vector_; }
  constexpr void setEqualPoint(double value) { point_ = value; }
  constexpr void setEqualVector(double value) { vector_ = value; }

 private:
  double point_ = 1e-10;
  double vector_ = 1e-12;
};

/// The tolerance of every test that is given none.
struct AcGeContext {
  static inline AcGeTol gTol;
};
