#pragma once

#include <array>
#include <bitset>
#include <string>
#include <string_view>

#include "host/dxf/tag_reader.h"
#include "host/geometry/ge.h"

namespace cad {

/// Where an entity's values stand, found in one pass over its record; each is decoded when asked
/// for. Of a code that repeats, the first. For the kinds whose shape is in single values.
///     const EntityFields fields(record.bytes, *record.dialect);
///     const AcGePoint3d center = fields.point(10);
class EntityFields {
 public:
  /// The bytes must outlive the fields.
  EntityFields(std::string_view bytes, const dxf::Dialect& dialect);

  /// Codes below 80 and 210 to 239.
  bool has(int code) const { return slot(code) < kSlots && present_[slot(code)]; }
  double real(int code, double absent = 0.0) const;
  double angle(int code, double absent = 0.0) const;  ///< degrees in the file, radians here
  int integer(int code, int absent = 0) const;
  std::wstring text(int code) const;
  std::string_view bytes(int code) const;  ///< as stored; empty when absent
  AcGePoint3d point(int code) const;
  AcGeVector3d vector(int code) const { return point(code).asVector(); }
  /// Group 210, or Z where it is absent.
  AcGeVector3d normal() const { return has(210) ? vector(210) : AcGeVector3d::kZAxis; }

 private:
  static constexpr std::size_t kPlain = 80, kSlots = 110;
  static constexpr std::size_t slot(int code) {
    const auto n = static_cast<std::size_t>(code);
    return n < kPlain ? n : n >= 210 && n < 240 ? n - 210 + kPlain : kSlots;
  }

  const dxf::Dialect& dialect_;
  std::bitset<kSlots> present_;
  std::array<std::string_view, kSlots> values_;
};

/// The next tag that is the object's own: neither in a {...} group nor of extended data or of an
/// object within it.
class OwnTags {
 public:
  OwnTags(std::string_view bytes, const dxf::Dialect& dialect) : tags_(bytes, dialect) {}
  bool next(dxf::Tag& tag);

 private:
  dxf::TagReader tags_;
  bool in_group_ = false;
};

}  // namespace cad
