#include "host/db/content.h"

namespace cad {

const dxf::Dialect& memory_dialect() {
  static const dxf::Dialect dialect;
  return dialect;
}

}  // namespace cad
