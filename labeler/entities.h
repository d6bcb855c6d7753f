#pragma once

#include "module/platform/objects.h"

namespace labeler {

/// Visits the entities of the working drawing that are not erased, in its order.
template <class Visit>
void for_each_entity(Visit visit) {
  const AcDbDatabase* const drawing = acdbHostApplicationServices()->workingDatabase();
  if (!drawing) return;
  for (AcDbObjectId id = drawing->first_entity(); !id.isNull(); id = drawing->next_entity(id))
    visit(id);
}

}  // namespace labeler
