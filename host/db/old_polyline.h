#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/dialect.h"

namespace cad {

/// A record that stands in for one of the drawing's own.
struct OldRecord {
  std::string_view kind;
  std::string bytes;
};

/// What releases before R14 have in place of a LWPOLYLINE: a POLYLINE, its VERTEXs and a SEQEND, in
/// the dialect of the LWPOLYLINE's drawing but without class markers and handles. Frame and
/// extended data stay with the POLYLINE.
std::vector<OldRecord> old_polyline(std::string_view lwpolyline, const dxf::Dialect& dialect);

}  // namespace cad
