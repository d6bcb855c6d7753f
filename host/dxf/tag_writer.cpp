#include "host/dxf/tag_writer.h"

#include <charconv>
#include <cstring>

#include "host/base/numbers.h"
#include "host/dxf/text.h"

namespace cad::dxf {
namespace {

template <class T>
void append_little_endian(std::string& out, T value) {
  char bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  out.append(bytes, sizeof value);
}

void append_aligned(std::string& out, std::int64_t value, std::size_t width) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  const auto length = static_cast<std::size_t>(end - digits);
  if (length < width) out.append(width - length, ' ');
  out.append(digits, length);
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

bool is_plain(std::string_view bytes) {
  for (const char c : bytes) {
    if (static_cast<signed char>(c) < ' ' || c == '^' || c == '\\') return false;
  }
  return true;
}

}  // namespace

void TagWriter::code(int code) {
  if (fits_line_pair(code)) {
    const char line[] = {code >= 100 ? static_cast<char>('0' + code / 100) : ' ',
                         code >= 10 ? static_cast<char>('0' + code / 10 % 10) : ' ',
                         static_cast<char>('0' + code % 10), dialect_.crlf ? '\r' : '\n', '\n'};
    out_.append(line, dialect_.crlf ? 5 : 4);
    return;
  }
  if (!dialect_.binary) {
    append_aligned(out_, code, 3);
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

template <class Char>
void TagWriter::plain_line_pair(int code, std::basic_string_view<Char> value) {
  const std::size_t line_end = dialect_.crlf ? 2 : 1;
  const std::size_t before = out_.size();
  out_.resize(before + 3 + value.size() + 2 * line_end);
  char* to = out_.data() + before;
  const auto end_line = [&] {
    if (dialect_.crlf) *to++ = '\r';
    *to++ = '\n';
  };
  *to++ = code >= 100 ? static_cast<char>('0' + code / 100) : ' ';
  *to++ = code >= 10 ? static_cast<char>('0' + code / 10 % 10) : ' ';
  *to++ = static_cast<char>('0' + code % 10);
  end_line();
  for (const Char c : value) *to++ = static_cast<char>(c);
  end_line();
}

void TagWriter::text(int code, std::wstring_view value) {
  if (fits_line_pair(code) && is_plain_text(value)) return plain_line_pair(code, value);
  this->code(code);
  append_encoded(value, dialect_, out_);
  end_value();
}

void TagWriter::raw(int code, std::string_view value) {
  if (fits_line_pair(code)) return plain_line_pair(code, value);
  this->code(code);
  out_ += value;
  end_value();
}

void TagWriter::integer(int code, std::int64_t value) {
  if (value_type(code) == ValueType::kReal) return real(code, static_cast<double>(value));
  this->code(code);
  if (!dialect_.binary) {
    append_aligned(out_, value, integer_width(code));
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
  append_aligned(out_, value, 0);
  end_value();
}

void TagWriter::real(int code, double value) {
  this->code(code);
  if (dialect_.binary && value_type(code) == ValueType::kReal) {
    return append_little_endian(out_, value);
  }
  append_real(out_, value);
  end_value();
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
      if (is_plain(tag.value)) return raw(tag.code, tag.value);
      return text(tag.code, text_value(tag, from));
    case ValueType::kHandle:
      return raw(tag.code, tag.value);
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
