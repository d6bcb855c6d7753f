#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "host/dxf/dialect.h"
#include "host/dxf/tag_reader.h"

namespace cad::dxf {

/// Appends tags in the form the CAD program itself writes: codes right-aligned to three columns,
/// 16-bit integers to six, 32-bit integers to nine, reals by the shortest text that reads back.
class TagWriter {
 public:
  TagWriter(std::string& out, const Dialect& dialect) : out_(out), dialect_(dialect) {}

  void text(int code, std::wstring_view value);
  /// Bytes that are spelled for this dialect already, or plain ASCII without escapes.
  void raw(int code, std::string_view value);
  /// By the code's type; a code of another type takes the plain digits.
  void integer(int code, std::int64_t value);
  /// `value` must be finite.
  void real(int code, double value);
  void handle(int code, std::uint64_t value);
  void point(int code, double x, double y, double z);
  /// At most 127 bytes.
  void chunk(int code, std::span<const unsigned char> bytes);
  /// A tag of another dialect, respelled for this one.
  void copy(const Tag& tag, const Dialect& from);

 private:
  void code(int code);
  void end_value();
  /// Whether both lines of a tag may be written in one piece.
  bool fits_line_pair(int code) const { return !dialect_.binary && code >= 0 && code < 10000; }

  std::string& out_;
  const Dialect& dialect_;
};

}  // namespace cad::dxf
