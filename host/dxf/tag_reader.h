#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/dialect.h"
#include "host/dxf/group_codes.h"
#include "host/dxf/short_lines.h"

namespace cad::dxf {

/// One code and value of a record that the scanner has accepted.
struct Tag {
  int code = 0;
  /// ASCII: the value line without its end, undecoded. Binary: the payload, text without its
  /// null, a chunk without its length byte.
  std::string_view value;
  std::size_t begin = 0;  ///< offset of the code in the bytes being read
  std::size_t end = 0;    ///< offset behind the value, line end or null included
};

/// Walks the tags of one record. The bytes must outlive the tags, and must be such as the scanner
/// accepted or TagWriter wrote; reading stops at the first tag that is not whole.
///     for (TagReader tags(bytes, dialect); tags.next(tag);) ...
class TagReader {
 public:
  TagReader(std::string_view bytes, const Dialect& dialect, std::size_t from = 0)
      : bytes_(bytes), position_(from), dialect_(&dialect) {}

  bool next(Tag& tag) { return dialect_->binary ? next_binary(tag) : next_ascii(tag); }

 private:
  bool next_ascii(Tag& tag);
  bool next_binary(Tag& tag);
  /// The code line in front, however it is spelled; of length 0 when the bytes end inside it.
  static CodeLine any_code_line(std::string_view bytes);

  std::string_view bytes_;
  std::size_t position_;
  const Dialect* dialect_;
};

/// Decoders of a tag's value. A value that is no number reads as 0.
std::int64_t int_value(const Tag& tag, const Dialect& dialect);
double real_value(const Tag& tag, const Dialect& dialect);
std::uint64_t handle_value(const Tag& tag);  ///< 0 when the text is no handle
std::vector<unsigned char> chunk_value(const Tag& tag, const Dialect& dialect);
std::wstring text_value(const Tag& tag, const Dialect& dialect);

inline bool TagReader::next_ascii(Tag& tag) {
  if (position_ >= bytes_.size()) return false;
  const char* const start = bytes_.data() + position_;
  const char* const end = bytes_.data() + bytes_.size();
  const bool readable = static_cast<std::size_t>(end - start) >= kLongestUsualCodeLine;
  CodeLine line;
  if (!readable || !read_usual_code_line(start, line)) {
    line = any_code_line({start, static_cast<std::size_t>(end - start)});
    if (line.length == 0) return false;
  }
  const char* const value = start + line.length;
  const char* const newline = find_newline(value, end);
  const char* value_end = newline ? newline : end;
  tag.code = line.code;
  tag.begin = position_;
  position_ = static_cast<std::size_t>((newline ? newline + 1 : end) - bytes_.data());
  tag.end = position_;
  if (value_end > value && value_end[-1] == '\r') --value_end;
  tag.value = {value, static_cast<std::size_t>(value_end - value)};
  return true;
}

}  // namespace cad::dxf
