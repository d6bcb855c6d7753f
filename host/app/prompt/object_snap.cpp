#include "host/app/prompt/object_snap.h"

#include "host/base/fold.h"

namespace cad {
namespace {

constexpr std::wstring_view kModes[] = {
    L"ENDPOINT",     L"MIDPOINT",  L"CENTER",        L"NODE",    L"QUADRANT",
    L"INTERSECTION", L"INSERTION", L"PERPENDICULAR", L"TANGENT", L"NEAREST"};
constexpr std::wstring_view kIgnored[] = {L"NONE", L"QUICK"};

bool abbreviates(std::wstring_view typed, std::wstring_view name) {
  return typed.size() >= 3 && typed.size() <= name.size() &&
         equal_no_case(typed, name.substr(0, typed.size()));
}

}  // namespace

std::optional<std::wstring> snap_modes(std::wstring_view typed) {
  std::wstring modes;
  if (typed.empty()) return std::nullopt;
  for (;;) {
    const std::size_t comma = typed.find(L',');
    std::wstring_view word = typed.substr(0, comma);
    if (word.starts_with(L"_")) word.remove_prefix(1);
    bool known = false;
    for (const std::wstring_view ignored : kIgnored) known = known || abbreviates(word, ignored);
    for (const std::wstring_view mode : kModes) {
      if (known || !abbreviates(word, mode)) continue;
      known = true;
      modes += (modes.empty() ? L"" : L",") + std::wstring(mode.substr(0, 3));
    }
    if (!known) return std::nullopt;
    if (comma == std::wstring_view::npos) return modes;
    typed.remove_prefix(comma + 1);
  }
}

std::optional<AcGePoint3d> snap_point(DocumentSession&, const AcGePoint3d& point,
                                      std::wstring_view) {
  return point;
}

}  // namespace cad
