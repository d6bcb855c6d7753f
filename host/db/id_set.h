#pragma once

#include <cstddef>
#include <vector>

#include "host/db/object_id.h"
#include "host/db/stub.h"

namespace cad {

/// Objects of one drawing, a bit for each that the drawing has.
class IdSet {
 public:
  /// The null id is never in a set.
  void insert(AcDbObjectId id) {
    if (id.isNull()) return;
    const std::size_t index = StubStore::index_of(*id.stub());
    if (index >= bits_.size()) bits_.resize(2 * index + 1);
    bits_[index] = true;
  }
  bool contains(AcDbObjectId id) const {
    if (id.isNull()) return false;
    const std::size_t index = StubStore::index_of(*id.stub());
    return index < bits_.size() && bits_[index];
  }

 private:
  std::vector<bool> bits_;  // by the place of the object's stub
};

}  // namespace cad
