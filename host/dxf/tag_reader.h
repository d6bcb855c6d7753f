#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/dialect.h"
#include "host/dxf/group_codes.h"

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
  const char* at = start;
  while (at < end && (*at == ' ' || *at == '\t' || *at == '\r')) ++at;
  const bool negative = at < end && *at == '-';
  if (negative) ++at;
  constexpr int kMost = 100'000;  // the front of a file is read before the scanner has checked it
  int code = 0;
  for (; at < end && *at >= '0' && *at <= '9'; ++at) {
    if (code < kMost) code = code * 10 + (*at - '0');
  }
  while (at < end && *at != '\n') ++at;
  if (at == end) return false;
  ++at;
  const auto* newline =
      static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
  const char* value_end = newline ? newline : end;
  tag.code = negative ? -code : code;
  tag.begin = position_;
  position_ = static_cast<std::size_t>((newline ? newline + 1 : end) - bytes_.data());
  tag.end = position_;
  if (value_end > at && value_end[-1] == '\r') --value_end;
  tag.value = {at, static_cast<std::size_t>(value_end - at)};
  return true;
}

}  // namespace cad::dxf
