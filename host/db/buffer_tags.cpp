#include "host/db/buffer_tags.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "host/base/numbers.h"
#include "host/db/resbuf_owner.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

constexpr std::size_t kLongestChunk = 127;

resbuf* string_buffer(const dxf::Tag& tag, const dxf::Dialect& dialect) {
  // Most texts are plain ASCII: they are widened without an intermediate string.
  const bool plain = std::all_of(tag.value.begin(), tag.value.end(), [](char c) {
    return static_cast<signed char>(c) >= 0 && c != '^' && c != '\\';
  });
  if (plain) return new_ascii_buffer(static_cast<short>(tag.code), tag.value);
  return new_string_buffer(static_cast<short>(tag.code), dxf::text_value(tag, dialect));
}

resbuf* chunk_buffer(const dxf::Tag& tag, const dxf::Dialect& dialect) {
  const auto bytes = dxf::chunk_value(tag, dialect);
  resbuf* buffer = acutNewRb(tag.code);
  if (!buffer) return nullptr;
  const std::size_t size = std::min(bytes.size(), kLongestChunk);
  buffer->resval.rbinary.clen = static_cast<short>(size);
  buffer->resval.rbinary.buf = static_cast<char*>(std::malloc(std::max<std::size_t>(size, 1)));
  if (size != 0) std::memcpy(buffer->resval.rbinary.buf, bytes.data(), size);
  return buffer;
}

}  // namespace

namespace {

resbuf* buffer_of_value(BufferValue value, const dxf::Tag& tag, const dxf::Dialect& dialect,
                        Drawing* drawing) {
  switch (value) {
    case BufferValue::kString:
      return string_buffer(tag, dialect);
    case BufferValue::kBinary:
      return chunk_buffer(tag, dialect);
    case BufferValue::kName: {
      if (name_is_text(tag.code)) return string_buffer(tag, dialect);
      resbuf* buffer = acutNewRb(tag.code);
      Stub* target = drawing ? drawing->reference(dxf::handle_value(tag)) : nullptr;
      buffer->resval.rlname[0] = reinterpret_cast<std::int64_t>(target);
      buffer->resval.rlname[1] = 0;
      return buffer;
    }
    default:
      break;
  }
  resbuf* buffer = acutNewRb(tag.code);
  switch (value) {
    case BufferValue::kReal:
      buffer->resval.rreal = dxf::real_value(tag, dialect);
      break;
    case BufferValue::kPoint:
      buffer->resval.rpoint[0] = dxf::real_value(tag, dialect);
      break;
    case BufferValue::kInt16:
      buffer->resval.rint = static_cast<short>(dxf::int_value(tag, dialect));
      break;
    case BufferValue::kInt32:
      buffer->resval.rlong = static_cast<std::int32_t>(dxf::int_value(tag, dialect));
      break;
    case BufferValue::kInt64:
      buffer->resval.mnInt64 = dxf::int_value(tag, dialect);
      break;
    default:
      break;
  }
  return buffer;
}

}  // namespace

resbuf* buffer_of_tag(const dxf::Tag& tag, const dxf::Dialect& dialect, Drawing* drawing) {
  return buffer_of_value(buffer_value(tag.code), tag, dialect, drawing);
}

ResbufChain chain_of_tags(std::string_view bytes, const dxf::Dialect& dialect, std::size_t from,
                          std::size_t to, Drawing* drawing, int stop) {
  ChainBuilder chain;
  dxf::TagReader tags(bytes.substr(0, to), dialect, from);
  dxf::Tag tag;
  resbuf* point = nullptr;
  int coordinates = 0;  // that the point has so far
  while (tags.next(tag) && tag.code != stop) {
    if (point) {
      if (coordinates < 3 && tag.code == point->restype + 10 * coordinates) {
        point->resval.rpoint[coordinates++] = dxf::real_value(tag, dialect);
        continue;
      }
      point = nullptr;
    }
    const BufferValue value = buffer_value(tag.code);
    resbuf* buffer = buffer_of_value(value, tag, dialect, drawing);
    if (buffer && value == BufferValue::kPoint) {
      point = buffer;
      coordinates = 1;
    }
    chain.add(buffer);
  }
  return ResbufChain(chain.release());
}

bool write_buffer(const resbuf& buffer, dxf::TagWriter& writer) {
  const int code = buffer.restype;
  const ads_u_val& value = buffer.resval;
  switch (buffer_value(code)) {
    case BufferValue::kString:
      writer.text(code, value.rstring ? value.rstring : L"");
      return true;
    case BufferValue::kReal:
      if (!std::isfinite(value.rreal)) return false;
      writer.real(code, value.rreal);
      return true;
    case BufferValue::kPoint:
      for (const double coordinate : value.rpoint) {
        if (!std::isfinite(coordinate)) return false;
      }
      writer.point(code, value.rpoint[0], value.rpoint[1], value.rpoint[2]);
      return true;
    case BufferValue::kInt16:
      writer.integer(code, value.rint);
      return true;
    case BufferValue::kInt32:
      writer.integer(code, value.rlong);
      return true;
    case BufferValue::kInt64:
      writer.integer(code, value.mnInt64);
      return true;
    case BufferValue::kName: {
      if (name_is_text(code)) {
        writer.text(code, value.rstring ? value.rstring : L"0");
        return true;
      }
      const auto* target = reinterpret_cast<const Stub*>(value.rlname[0]);
      writer.handle(code, target ? target->handle : 0);
      return true;
    }
    case BufferValue::kBinary:
      if (value.rbinary.clen < 0 || static_cast<std::size_t>(value.rbinary.clen) > kLongestChunk) {
        return false;
      }
      writer.chunk(code, {reinterpret_cast<const unsigned char*>(value.rbinary.buf),
                          static_cast<std::size_t>(value.rbinary.clen)});
      return true;
    case BufferValue::kNone:
      return false;
  }
  return false;
}

}  // namespace cad
