// Whatever a drawing holds, pictures of it are made, in every format, and:
//   - the same drawing gives the same picture;
//   - every number in an SVG is one: neither "nan" nor "inf" is among its coordinates.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/db/database.h"
#include "host/picture/picture.h"

namespace {

void require(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", law);
  std::abort();
}

std::string picture_of(AcDbDatabase& database, cad::picture::Format format,
                       const cad::picture::Options& options) {
  const auto made = cad::picture::make_picture(database, format, options);
  require(static_cast<bool>(made), "a picture of 64 by 48 pixels is made");
  return made->file;
}

/// Nothing but path data is looked at: texts may say what they like.
void check_paths(const std::string& svg) {
  for (std::size_t at = 0; (at = svg.find(" d=\"", at)) != std::string::npos;) {
    at += 4;
    const std::size_t end = svg.find('"', at);
    require(end != std::string::npos, "path data end");
    const std::string data = svg.substr(at, end - at);
    require(data.find_first_not_of("MmLlCcaz-. 0123456789") == std::string::npos,
            "path data are commands and numbers");
    at = end;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  AcDbDatabase database(false);
  if (!database.read_bytes(std::string(reinterpret_cast<const char*>(data), size), "fuzz"))
    return 0;
  cad::picture::Options options;
  options.size = {64, 48};
  options.highlights.push_back(database.first_entity());
  if (options.highlights.front().isNull()) options.highlights.clear();
  using cad::picture::Format;
  const std::string svg = picture_of(database, Format::kSvg, options);
  check_paths(svg);
  require(picture_of(database, Format::kSvg, options) == svg, "equal drawings, equal pictures");
  picture_of(database, Format::kPdf, options);
  options.dark = true;
  options.window = cad::picture::Box{0, 0, 10, 10};
  picture_of(database, Format::kPng, options);
  return 0;
}
