#pragma once

#include <string_view>

#include "host/db/drawing.h"
#include "host/db/object.h"

namespace cad {

/// An entity about to be drawn: its record, and where its styles and blocks are found.
struct EntityTags {
  std::string_view kind;
  std::string_view bytes;
  const dxf::Dialect& dialect;
  Drawing* drawing;          ///< its own, or the working one; null without either
  Stub* stub;                ///< null for an entity of no drawing
  const AcDbObject* object;  ///< null when it was found by its id

  bool is_resident() const { return stub != nullptr; }
  static EntityTags of(AcDbObjectId id) {
    Drawing& drawing = StubStore::drawing_of(*id.stub());
    return {drawing.kind_name(*id.stub()),
            drawing.bytes_of(*id.stub()),
            drawing.dialect(),
            &drawing,
            id.stub(),
            nullptr};
  }
};

}  // namespace cad
