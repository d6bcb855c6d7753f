#include "host/dxf/dialect.h"

#include <iterator>

namespace cad::dxf {
namespace {

struct ReleaseRow {
  std::string_view version;
  std::string_view name;
  Release release;
};

constexpr ReleaseRow kReleases[] = {
    // $ACADVER  name      release
    {"AC1006", "R10", Release::kR10},     {"AC1009", "R12", Release::kR12},
    {"AC1012", "R13", Release::kR13},     {"AC1014", "R14", Release::kR14},
    {"AC1015", "R2000", Release::kR2000}, {"AC1018", "R2004", Release::kR2004},
    {"AC1021", "R2007", Release::kR2007}, {"AC1024", "R2010", Release::kR2010},
    {"AC1027", "R2013", Release::kR2013}, {"AC1032", "R2018", Release::kR2018},
};

const ReleaseRow& row(Release release) { return kReleases[static_cast<std::size_t>(release)]; }

static_assert(std::size(kReleases) == static_cast<std::size_t>(Release::kR2018) + 1);

}  // namespace

Release release_from_version(std::string_view acadver) {
  Release found = Release::kR10;
  for (const ReleaseRow& candidate : kReleases) {
    if (candidate.version <= acadver) found = candidate.release;
  }
  return found;
}

std::string_view release_name(Release release) { return row(release).name; }
std::string_view release_version(Release release) { return row(release).version; }

}  // namespace cad::dxf
