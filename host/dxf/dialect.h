#pragma once

#include <cstdint>
#include <string_view>

#include "host/base/codepage.h"

namespace cad::dxf {

/// Releases of the format, in order, so that they can be compared.
enum class Release : std::uint8_t {
  kR10,
  kR12,
  kR13,
  kR14,
  kR2000,
  kR2004,
  kR2007,
  kR2010,
  kR2013,
  kR2018,
};

/// From the text of $ACADVER ("AC1027"). Unknown texts count as the newest release when they sort
/// behind the known ones, and as R10 otherwise.
Release release_from_version(std::string_view acadver);
/// "R2013".
std::string_view release_name(Release release);
/// "AC1027".
std::string_view release_version(Release release);

/// How the tags of a drawing are spelled.
struct Dialect {
  Release release = Release::kR2018;
  CodePage code_page = CodePage::kUtf8;  ///< of the text bytes; UTF-8 from R2007 on
  bool binary = false;
  bool one_byte_codes = false;  ///< binary files before R14
  bool crlf = false;            ///< ASCII files: how new lines end

  std::string_view eol() const { return crlf ? "\r\n" : "\n"; }
  bool has_dictionaries() const { return release >= Release::kR13; }
  /// Whether xrecords (280) and dictionaries (281) say what becomes of them when they are copied.
  bool has_cloning_flags() const { return release >= Release::kR2000; }
};

}  // namespace cad::dxf
