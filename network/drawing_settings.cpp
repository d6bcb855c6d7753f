#include "network/drawing_settings.h"

#include <optional>
#include <string>

#include "host/app/host.h"
#include "host/base/numbers.h"
#include "network/settings_store.h"
#include "network/words.h"

namespace {

/// A size above 0, or `absent`.
double size_of(const wchar_t* key, double absent) {
  const CString text = Gx::getQrmvPz(key, L"", L"Drawing");
  const double size = KT::IsNum(text) ? cad::wtof(text) : 0.0;
  return size > 0.0 ? size : absent;
}

struct HeldFactor {
  std::string install_dir;
  std::string project_dir;
  double factor;
};

std::optional<HeldFactor>& held_factor() {
  static std::optional<HeldFactor> held;
  return held;
}

void read_factor() {
  const cad::HostSettings& places = cad::host_settings();
  held_factor() = {places.install_dir, places.project_dir, size_of(L"TextWidthFactor", 1.0)};
}

}  // namespace

double KT::GetTextHigh() {
  read_factor();
  return size_of(L"TextHigh", -1.0);
}

double Gx::GetTextWidthFactor() {
  const cad::HostSettings& places = cad::host_settings();
  const std::optional<HeldFactor>& held = held_factor();
  if (!held || held->install_dir != places.install_dir || held->project_dir != places.project_dir)
    read_factor();
  return held->factor;
}
