#pragma once

#include <string_view>

#include "host/db/resbuf.h"

/// Result-buffer chains.
namespace dim {

using cad::ChainBuilder;
using cad::ResbufChain;

/// A buffer holding a copy of `text`, which ends at its first null.
inline resbuf* new_text_buffer(short type, std::wstring_view text) {
  return cad::new_string_buffer(type, text.substr(0, text.find(L'\0')));
}

/// Text of a buffer, null-terminated; the empty text for a buffer that holds none.
inline std::wstring_view buffer_text(const resbuf& buffer) {
  if (cad::buffer_value(buffer.restype) != cad::BufferValue::kString || !buffer.resval.rstring) {
    return L"";
  }
  return buffer.resval.rstring;
}

}  // namespace dim
