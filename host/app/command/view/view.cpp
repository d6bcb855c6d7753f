#include "host/app/command/view/view.h"

#include <cmath>

#include "host/app/prompt/values.h"
#include "host/app/session.h"

namespace cad {
namespace {

AcGePoint3d point_variable(const CommandLine& line, std::wstring_view name, AcGePoint3d absent) {
  DocumentSession& session = line.session();
  return point_of(session.variables.get(session.interpreter(), name)).value_or(absent);
}

}  // namespace

AcGePoint3d view_centre(const CommandLine& line) {
  return line.to_world() * point_variable(line, L"VIEWCTR", {});
}

double view_height(const CommandLine& line) {
  const double height = line.real_variable(L"VIEWSIZE");
  return height > 0.0 ? height : 1.0;
}

double screen_ratio(const CommandLine& line) {
  const AcGePoint3d size = point_variable(line, L"SCREENSIZE", {4.0, 3.0, 0.0});
  return size.x > 0.0 && size.y > 0.0 ? size.x / size.y : 4.0 / 3.0;
}

void set_view(CommandLine& line, const AcGePoint3d& centre, double height) {
  if (!std::isfinite(height) || !(height > 0.0)) return;
  line.put_variable(L"VIEWSIZE", height);
  line.put_variable(L"VIEWCTR", line.to_user() * centre);
}

}  // namespace cad
