#include "host/dxf/tag_writer.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "host/base/numbers.h"
#include "host/dxf/plain_text.h"
#include "host/dxf/short_lines.h"
#include "host/dxf/text.h"

namespace cad::dxf {
namespace {

template <class T>
void append_little_endian(std::string& out, T value) {
  char bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  out.append(bytes, sizeof value);
}

/// Columns an integer of that code takes in an ASCII file.
std::size_t integer_width(int code) {
  switch (value_type(code)) {
    case ValueType::kInt16:
    case ValueType::kBool:
      return 6;
    case ValueType::kInt32:
      return 9;
    case ValueType::kInt64:
      return 18;
    case ValueType::kText:
    case ValueType::kHandle:
    case ValueType::kReal:
    case ValueType::kChunk:
      break;
  }
  return 0;
}

/// Puts both lines of a tag behind `out`, the value left open: returns where its `size` bytes go.
/// `code` has up to four columns.
char* put_line_pair(std::string& out, int code, std::size_t size, bool crlf) {
  const auto number = static_cast<std::uint32_t>(code);
  const bool four = number >= 1000;
  const std::size_t begin = out.size();
  out.resize(begin + (four ? 4 : 3) + size + (crlf ? 4 : 2));
  char* to = out.data() + begin;
  const auto end_line = [&] {
    if (crlf) *to++ = '\r';
    *to++ = '\n';
  };
  const std::uint32_t columns = kThreeColumns[four ? number / 10 : number];
  std::memcpy(to, &columns, sizeof columns);  // the fourth is written over
  to += 3;
  if (four) *to++ = static_cast<char>('0' + number % 10);
  end_line();
  char* const value = to;
  to += size;
  end_line();
  return value;
}

bool is_plain(std::string_view bytes) {
  for (const char c : bytes) {
    if (static_cast<signed char>(c) < ' ' || c == '^' || c == '\\') return false;
  }
  return true;
}

}  // namespace

void TagWriter::code(int code) {
  if (!dialect_.binary) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, code).ptr;
    const auto length = static_cast<std::size_t>(end - digits);
    if (length < 3) out_.append(3 - length, ' ');
    out_.append(digits, length);
    out_ += dialect_.eol();
    return;
  }
  if (!dialect_.one_byte_codes) {
    append_little_endian(out_, static_cast<std::int16_t>(code));
  } else if (code < 255) {
    out_.push_back(static_cast<char>(code));
  } else {
    out_.push_back(static_cast<char>(255));
    append_little_endian(out_, static_cast<std::int16_t>(code));
  }
}

void TagWriter::end_value() {
  if (dialect_.binary) {
    out_.push_back('\0');
  } else {
    out_ += dialect_.eol();
  }
}

void TagWriter::text(int code, std::wstring_view value) {
  if (fits_line_pair(code)) {
    const std::size_t begin = out_.size();
    if (narrow_plain_text(value, put_line_pair(out_, code, value.size(), dialect_.crlf))) return;
    out_.resize(begin);
  }
  this->code(code);
  append_encoded(value, dialect_, out_);
  end_value();
}

void TagWriter::raw(int code, std::string_view value) {
  if (fits_line_pair(code)) {
    value.copy(put_line_pair(out_, code, value.size(), dialect_.crlf), value.size());
    return;
  }
  this->code(code);
  out_ += value;
  end_value();
}

void TagWriter::integer(int code, std::int64_t value) {
  if (value_type(code) == ValueType::kReal) return real(code, static_cast<double>(value));
  if (fits_line_pair(code)) {
    char digits[24];
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    const auto length = static_cast<std::size_t>(end - digits);
    const std::size_t width = std::max(length, integer_width(code));
    char* to = put_line_pair(out_, code, width, dialect_.crlf);
    to = std::fill_n(to, width - length, ' ');
    std::memcpy(to, digits, length);
    return;
  }
  this->code(code);
  if (!dialect_.binary) {
    out_ += std::to_string(value);
    return end_value();
  }
  switch (value_type(code)) {
    case ValueType::kInt16:
      return append_little_endian(out_, static_cast<std::int16_t>(value));
    case ValueType::kInt32:
      return append_little_endian(out_, static_cast<std::int32_t>(value));
    case ValueType::kInt64:
      return append_little_endian(out_, value);
    case ValueType::kBool:
      return append_little_endian(out_, static_cast<std::int8_t>(value));
    case ValueType::kText:
    case ValueType::kHandle:
    case ValueType::kReal:
    case ValueType::kChunk:
      break;
  }
  out_ += std::to_string(value);
  end_value();
}

void TagWriter::real(int code, double value) {
  if (!dialect_.binary || value_type(code) != ValueType::kReal) {
    return raw(code, RealDigits(value).view());
  }
  this->code(code);
  append_little_endian(out_, value);
}

void TagWriter::handle(int code, std::uint64_t value) { raw(code, HandleDigits(value).view()); }

void TagWriter::point(int code, double x, double y, double z) {
  real(code, x);
  real(code + 10, y);
  real(code + 20, z);
}

void TagWriter::chunk(int code, std::span<const unsigned char> bytes) {
  this->code(code);
  if (dialect_.binary) {
    out_.push_back(static_cast<char>(bytes.size()));
    out_.append(bytes.begin(), bytes.end());
    return;
  }
  constexpr char kDigits[] = "0123456789ABCDEF";
  for (const unsigned char byte : bytes) {
    out_.push_back(kDigits[byte >> 4]);
    out_.push_back(kDigits[byte & 0xF]);
  }
  end_value();
}

void TagWriter::copy(const Tag& tag, const Dialect& from) {
  switch (value_type(tag.code)) {
    case ValueType::kText:
    case ValueType::kHandle:  // in a damaged file any text
      if (is_plain(tag.value)) return raw(tag.code, tag.value);
      return text(tag.code, text_value(tag, from));
    case ValueType::kReal:
      return real(tag.code, real_value(tag, from));
    case ValueType::kInt16:
    case ValueType::kInt32:
    case ValueType::kInt64:
    case ValueType::kBool:
      return integer(tag.code, int_value(tag, from));
    case ValueType::kChunk:
      return chunk(tag.code, chunk_value(tag, from));
  }
}

}  // namespace cad::dxf
