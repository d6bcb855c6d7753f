#pragma once

#include <optional>
#include <vector>

#include "host/base/result.h"
#include "host/db/object_id.h"
#include "host/lisp/value.h"

class AcDbDatabase;

namespace cad {

/// What successive calls of entmake build up: a POLYLINE or an INSERT with attributes until its
/// SEQEND, a block until its ENDBLK. Nothing stands in the drawing before the end, so a sequence
/// that is broken off leaves nothing behind.
class EntmakeSequence {
 public:
  /// What a call came to: an object, a list kept for later, or the name of a finished block.
  struct Outcome {
    AcDbObjectId made;
    std::wstring block_name = {};
  };

  /// The list is kept where its sequence goes on. `ownerless` allows objects for dictionaries.
  Result<Outcome> take(AcDbDatabase& database, const lisp::Value& list, bool ownerless);
  void cancel();
  bool under_way() const { return in_block_ || !complex_.empty(); }

 private:
  Result<Outcome> take_entity(AcDbDatabase& database, const lisp::Value& list);
  Result<Outcome> end_complex(AcDbDatabase& database);
  Result<Outcome> begin_block(const lisp::Value& list);
  Result<Outcome> end_block(AcDbDatabase& database);

  std::vector<lisp::Value> complex_;  // the main entity and its parts so far
  bool in_block_ = false;
  lisp::Value block_;
  std::vector<lisp::Value> entities_;  // of the block
};

}  // namespace cad
