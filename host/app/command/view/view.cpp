#include "host/app/command/view/view.h"

#include <cmath>

namespace cad {
AcGePoint3d view_centre(const CommandLine& line) {
  return line.to_world() * line.point_variable(L"VIEWCTR");
}

double view_height(const CommandLine& line) {
  const double height = line.real_variable(L"VIEWSIZE");
  return height > 0.0 ? height : 1.0;
}

double screen_ratio(const CommandLine& line) {
  const AcGePoint3d size = line.point_variable(L"SCREENSIZE");
  return size.x > 0.0 && size.y > 0.0 ? size.x / size.y : 4.0 / 3.0;
}

void set_view(CommandLine& line, const AcGePoint3d& centre, double height) {
  if (!std::isfinite(height) || !(height > 0.0)) return;
  line.put_variable(L"VIEWSIZE", height);
  line.put_variable(L"VIEWCTR", line.to_user() * centre);
}

}  // namespace cad
