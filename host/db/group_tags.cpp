#include "host/db/group_tags.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/db/object_id.h"
#include "host/dxf/group_codes.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

using Type = GroupView::Type;
using dxf::ValueType;

constexpr double kDegree = std::numbers::pi / 180;

int hex_digit(wchar_t c) {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  return c >= L'A' && c <= L'F' ? c - L'A' + 10 : -1;
}

bool is_hex(std::wstring_view text) {
  for (const wchar_t c : text)
    if (hex_digit(c) < 0) return false;
  return true;
}

std::vector<unsigned char> chunk_of(std::wstring_view text) {
  std::vector<unsigned char> bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2)
    bytes.push_back(static_cast<unsigned char>(hex_digit(text[i]) << 4 | hex_digit(text[i + 1])));
  return bytes;
}

/// A real given as a number: whole numbers do.
double number_of(const GroupView& group) {
  return group.type == Type::kInteger ? static_cast<double>(group.integer) : group.numbers[0];
}

struct Bounds {
  std::int64_t least, most;
};

Bounds bounds_of(ValueType type) {
  switch (type) {
    case ValueType::kInt16:
      return {-32768, 32767};
    case ValueType::kInt32:
      return {-2147483648LL, 2147483647LL};
    case ValueType::kBool:
      return {0, 1};
    default:
      return {INT64_MIN, INT64_MAX};
  }
}

std::string real_fault(const GroupView& group) {
  if (group.type == Type::kPoint) {
    if (!dxf::is_point_code(group.code)) return "wants a number, not a point";
    for (int i = 0; i < group.dimensions; ++i)
      if (!std::isfinite(group.numbers[i])) return "wants finite numbers";
    return {};
  }
  if (group.type != Type::kReal && group.type != Type::kInteger)
    return dxf::is_point_code(group.code) ? "wants a point" : "wants a number";
  return std::isfinite(number_of(group)) ? "" : "wants a finite number";
}

std::string handle_fault(const GroupView& group) {
  if (group.type == Type::kObject && !is_text_handle(group.code)) return {};
  if (group.type != Type::kText)
    return is_text_handle(group.code) ? "wants a handle as text" : "wants the name of an object";
  return !group.text.empty() && group.text.size() <= 16 && is_hex(group.text)
             ? ""
             : "wants a handle, hexadecimal digits";
}

/// Whether wide text is these bytes without any spelling.
bool same_plain(std::string_view bytes, std::wstring_view text, bool& certain) {
  certain = bytes.size() == text.size();
  for (std::size_t i = 0; certain && i < bytes.size(); ++i) {
    const char c = bytes[i];
    certain = static_cast<signed char>(c) >= ' ' && c != '^' && c != '\\' &&
              static_cast<wchar_t>(c) == text[i];
  }
  return certain;
}

}  // namespace

bool is_angle(int code, std::string_view kind) {
  return code >= 50 && code <= 58 && kind != "XRECORD";
}

bool is_text_handle(int code) {
  return code == 5 || code == 105 || code == 1005 || (code >= 320 && code <= 329);
}

std::string group_fault(const GroupView& group) {
  const ValueType type = dxf::value_type(group.code);
  switch (type) {
    case ValueType::kReal:
      return real_fault(group);
    case ValueType::kHandle:
      return handle_fault(group);
    case ValueType::kText:
      return group.type == Type::kText ? "" : "wants a text";
    case ValueType::kChunk: {
      constexpr std::size_t kMostDigits = 254;
      const bool fits = group.type == Type::kText && group.text.size() % 2 == 0 &&
                        group.text.size() <= kMostDigits && is_hex(group.text);
      return fits ? "" : "wants at most 127 bytes as pairs of hexadecimal digits";
    }
    default:
      break;
  }
  if (group.type != Type::kInteger) return "wants a whole number";
  const Bounds bounds = bounds_of(type);
  return group.integer >= bounds.least && group.integer <= bounds.most
             ? ""
             : "wants a number from " + std::to_string(bounds.least) + " to " +
                   std::to_string(bounds.most);
}

void write_group(const GroupView& group, std::string_view kind, bool flat, dxf::TagWriter& writer) {
  const int code = group.code;
  switch (dxf::value_type(code)) {
    case ValueType::kReal:
      if (group.type == Type::kPoint) {
        const int last = flat ? 2 : 3;
        for (int axis = 0; axis < last; ++axis) writer.real(code + 10 * axis, group.numbers[axis]);
      } else {
        const double number = number_of(group);
        writer.real(code, is_angle(code, kind) ? number / kDegree : number);
      }
      return;
    case ValueType::kHandle:
      if (group.type == Type::kObject) return writer.handle(code, group.object.handle());
      return writer.text(code, group.text);
    case ValueType::kText:
      return writer.text(code, group.text);
    case ValueType::kChunk:
      return writer.chunk(code, chunk_of(group.text));
    default:
      return writer.integer(code, group.integer);
  }
}

std::size_t text_piece_end(std::wstring_view text, std::size_t longest) {
  std::size_t end = longest;
  for (std::size_t at = longest - 1; at > longest - dxf::kLongestEscape; --at)
    if (dxf::looks_escaped(text, at)) end = at;
  return end;
}

bool TagSpanReader::next(TagSpan& span) {
  if (!more_) return false;
  span.first = next_;
  span.tags = 1;
  span.end = next_.end;
  more_ = tags_.next(next_);
  if (!dxf::is_point_code(span.first.code)) return true;
  span.numbers[0] = dxf::real_value(span.first, dialect_);
  while (more_ && span.tags < 3 && next_.code == span.first.code + 10 * span.tags) {
    span.numbers[span.tags++] = dxf::real_value(next_, dialect_);
    span.end = next_.end;
    more_ = tags_.next(next_);
  }
  return true;
}

bool same_value(const TagSpan& tags, const GroupView& group, std::string_view kind,
                const dxf::Dialect& dialect) {
  const dxf::Tag& tag = tags.first;
  if (tag.code != group.code) return false;
  switch (dxf::value_type(tag.code)) {
    case ValueType::kReal: {
      if (group.type == Type::kPoint) {
        // What either lacks is not compared: a flat point, or one given without z.
        for (int axis = 0; axis < std::min<int>(tags.tags, group.dimensions); ++axis)
          if (tags.numbers[axis] != group.numbers[axis]) return false;
        return tags.tags > 1;
      }
      if (tags.tags > 1) return false;
      const double held = dxf::real_value(tag, dialect);
      return (is_angle(tag.code, kind) ? held * kDegree : held) == number_of(group);
    }
    case ValueType::kHandle:
      if (group.type == Type::kObject) {
        const std::uint64_t handle = dxf::handle_value(tag);
        return handle == std::uint64_t{group.object.handle()};
      }
      [[fallthrough]];
    case ValueType::kText: {
      bool certain = false;
      if (same_plain(tag.value, group.text, certain)) return true;
      static thread_local std::wstring held;  // keeps its memory: lists are compared text by text
      held.clear();
      dxf::append_decoded(tag.value, dialect, held);
      return held == group.text;
    }
    case ValueType::kChunk:
      return dxf::chunk_value(tag, dialect) == chunk_of(group.text);
    default:
      return dxf::int_value(tag, dialect) == group.integer;
  }
}

}  // namespace cad
