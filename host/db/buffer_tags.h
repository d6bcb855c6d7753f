#pragma once

#include <string>

#include "host/db/drawing.h"
#include "host/db/resbuf.h"
#include "host/dxf/tag_reader.h"
#include "host/dxf/tag_writer.h"

namespace cad {

/// One tag as a result buffer; of a point only x is set. References (330 and on) become entity
/// names of `drawing`, null names without one.
resbuf* buffer_of_tag(const dxf::Tag& tag, const dxf::Dialect& dialect, Drawing* drawing);

/// The tags at offsets `from` to `to` as a chain; the three tags of a point make one buffer.
/// A tag with the code `stop` ends it early.
ResbufChain chain_of_tags(std::string_view bytes, const dxf::Dialect& dialect, std::size_t from,
                          std::size_t to, Drawing* drawing, int stop = -1);

/// Writes one buffer as tags. False, and nothing written, for a buffer whose value does not fit
/// its code: a number that is not finite, a chunk over 127 bytes.
bool write_buffer(const resbuf& buffer, dxf::TagWriter& writer);

}  // namespace cad
