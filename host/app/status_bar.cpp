#include "host/app/status_bar.h"

#include <algorithm>
#include <optional>
#include <string>

#include "host/app/host.h"
#include "host/base/codepage.h"
#include "host/base/progress.h"

namespace {

struct Meter {
  std::string label;
  int lowest, highest, position;
};

std::optional<Meter>& shown() {
  static std::optional<Meter> meter;
  return meter;
}

void show(const Meter& meter) {
  const double length = static_cast<double>(meter.highest) - meter.lowest;
  cad::show_progress(meter.label, (static_cast<double>(meter.position) - meter.lowest) / length);
}

}  // namespace

int acedSetStatusBarProgressMeter(const ACHAR* label, int lowest, int highest) {
  if (!label || lowest >= highest) return -1;
  shown() = Meter{cad::to_utf8(label), lowest, highest, lowest};
  show(*shown());
  return 0;
}

int acedSetStatusBarProgressMeterPos(int position) {
  std::optional<Meter>& meter = shown();
  if (!meter) return -1;
  const long long wanted = position < 0 ? 0LL + meter->position - position : position;
  meter->position = static_cast<int>(std::clamp<long long>(wanted, meter->lowest, meter->highest));
  show(*meter);
  return 0;
}

void acedRestoreStatusBar() {
  shown().reset();
  cad::hide_progress();
}

int acedUsrBrk() {
  const cad::Host* const host = cad::Host::current();
  return host && host->interrupted() ? 1 : 0;
}
