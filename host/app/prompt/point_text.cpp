#include "host/app/prompt/point_text.h"

#include <cmath>
#include <vector>

namespace cad {
namespace {

std::wstring_view trimmed(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(L" \t");
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

std::vector<std::wstring_view> split(std::wstring_view text, wchar_t separator) {
  std::vector<std::wstring_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(trimmed(text.substr(0, end)));
    if (end == std::wstring_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

/// An offset: from the origin, or from the last point.
struct Offset {
  AcGeVector3d vector;
  bool has_z = false;
};

std::optional<Offset> cartesian(std::wstring_view text, const InputUnits& units) {
  const auto parts = split(text, L',');
  if (parts.size() < 2 || parts.size() > 3) return std::nullopt;
  Offset offset{{}, parts.size() == 3};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const std::optional<double> number = lisp::parse_length(parts[i], units.lengths);
    if (!number) return std::nullopt;
    offset.vector[static_cast<unsigned>(i)] = *number;
  }
  return offset;
}

/// "dist<angle", "dist<angle,z", "dist<angle<angle above the XY plane".
std::optional<Offset> polar(std::wstring_view text, const InputUnits& units) {
  const auto parts = split(text, L'<');
  if (parts.size() < 2 || parts.size() > 3) return std::nullopt;
  const auto last = split(parts.back(), L',');
  if (last.size() > (parts.size() == 2 ? 2u : 1u)) return std::nullopt;
  const auto distance = lisp::parse_length(parts[0], units.lengths);
  const auto angle = lisp::parse_angle(parts.size() == 2 ? last[0] : parts[1], units.angles);
  if (!distance || !angle) return std::nullopt;
  const double direction = units.direction(*angle);
  double flat = *distance, z = 0.0;
  if (parts.size() == 3) {
    const auto rise = lisp::parse_angle(parts[2], units.angles);
    if (!rise) return std::nullopt;
    flat = *distance * std::cos(*rise);
    z = *distance * std::sin(*rise);
  } else if (last.size() == 2) {
    const auto height = lisp::parse_length(last[1], units.lengths);
    if (!height) return std::nullopt;
    z = *height;
  }
  return Offset{{flat * std::cos(direction), flat * std::sin(direction), z},
                parts.size() == 3 || last.size() == 2};
}

}  // namespace

std::optional<AcGePoint3d> parse_point(std::wstring_view text, const InputUnits& units) {
  text = trimmed(text);
  const bool relative = text.starts_with(L"@");
  if (relative) text.remove_prefix(1);
  const bool world = text.starts_with(L"*");
  if (world || (!relative && text.starts_with(L"#"))) text.remove_prefix(1);
  if (relative && !world && trimmed(text).empty()) return units.last;
  const std::optional<Offset> offset =
      text.find(L'<') == std::wstring_view::npos ? cartesian(text, units) : polar(text, units);
  if (!offset) return std::nullopt;
  if (relative) return units.last + (world ? units.world_to_ucs * offset->vector : offset->vector);
  AcGePoint3d point = AcGePoint3d::kOrigin + offset->vector;
  if (world) return units.world_to_ucs * point;
  if (!offset->has_z) point.z = units.elevation;
  return point;
}

}  // namespace cad
