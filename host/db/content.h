#pragma once

#include "host/base/codepage.h"
#include "host/dxf/dialect.h"

namespace cad {

/// The dialect in which an object that belongs to no drawing holds its tags: ASCII, UTF-8, line
/// feeds, the current release. Its handle reads 0 and its owner 0 until it is added.
const dxf::Dialect& memory_dialect();

}  // namespace cad
