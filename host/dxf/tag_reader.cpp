#include "host/dxf/tag_reader.h"

#include <bit>
#include <cmath>
#include <cstring>

#include "host/base/numbers.h"
#include "host/dxf/binary_layout.h"
#include "host/dxf/text.h"

namespace cad::dxf {
namespace {

template <class T>
T little_endian(std::string_view bytes) {
  static_assert(std::endian::native == std::endian::little, "binary drawings are little endian");
  T value{};
  if (bytes.size() >= sizeof value) std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

int hex_digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

CodeLine TagReader::any_code_line(std::string_view bytes) {
  const char* at = bytes.data();
  const char* const end = at + bytes.size();
  while (at < end && (*at == ' ' || *at == '\t' || *at == '\r')) ++at;
  const bool negative = at < end && *at == '-';
  if (negative) ++at;
  constexpr int kMost = 100'000;  // the front of a file is read before the scanner has checked it
  int code = 0;
  for (; at < end && *at >= '0' && *at <= '9'; ++at) {
    if (code < kMost) code = code * 10 + (*at - '0');
  }
  const char* const newline = find_newline(at, end);
  if (!newline) return {};
  return {negative ? -code : code, static_cast<std::size_t>(newline + 1 - bytes.data())};
}

bool TagReader::next_binary(Tag& tag) {
  const auto found = binary_tag_at(bytes_, position_, dialect_->one_byte_codes);
  if (!found) return false;
  tag.code = found->code;
  tag.value = bytes_.substr(found->value_begin, found->value_end - found->value_begin);
  tag.begin = position_;
  tag.end = position_ = found->end;
  return true;
}

std::int64_t int_value(const Tag& tag, const Dialect& dialect) {
  if (!dialect.binary) return parse_int(tag.value).value_or(0);
  switch (value_type(tag.code)) {
    case ValueType::kInt16:
      return little_endian<std::int16_t>(tag.value);
    case ValueType::kInt32:
      return little_endian<std::int32_t>(tag.value);
    case ValueType::kInt64:
      return little_endian<std::int64_t>(tag.value);
    case ValueType::kBool:
      return little_endian<std::int8_t>(tag.value);
    case ValueType::kReal:
      return static_cast<std::int64_t>(little_endian<double>(tag.value));
    case ValueType::kText:
    case ValueType::kHandle:
    case ValueType::kChunk:
      break;
  }
  return parse_int(tag.value).value_or(0);
}

double real_value(const Tag& tag, const Dialect& dialect) {
  if (dialect.binary && value_type(tag.code) == ValueType::kReal) {
    const double value = little_endian<double>(tag.value);
    return std::isfinite(value) ? value : 0.0;
  }
  if (dialect.binary) return static_cast<double>(int_value(tag, dialect));
  return parse_real(tag.value).value_or(0.0);
}

std::uint64_t handle_value(const Tag& tag) { return parse_handle(tag.value).value_or(0); }

std::vector<unsigned char> chunk_value(const Tag& tag, const Dialect& dialect) {
  if (dialect.binary) return {tag.value.begin(), tag.value.end()};
  std::vector<unsigned char> bytes;
  bytes.reserve(tag.value.size() / 2);
  for (std::size_t i = 0; i + 1 < tag.value.size(); i += 2) {
    const int high = hex_digit(tag.value[i]);
    const int low = hex_digit(tag.value[i + 1]);
    if (high < 0 || low < 0) break;
    bytes.push_back(static_cast<unsigned char>(high << 4 | low));
  }
  return bytes;
}

std::wstring text_value(const Tag& tag, const Dialect& dialect) {
  std::wstring text;
  append_decoded(tag.value, dialect, text);
  return text;
}

}  // namespace cad::dxf
