#pragma once

#include <vector>

#include "host/base/result.h"
#include "host/db/object_id.h"

namespace cad {

/// A copy of an entity at the end of `into_block` (a block record, a BLOCK, or an entity for the
/// block or space that one is in; null: where the copied entity is), with its vertices or
/// attributes, extended data and extension dictionary. All of them get new handles. References
/// between objects that are copied lead to the copies, all others stay; handles written as text
/// stay too. Reactors outside of what is copied do not come along. A dimension's own block is
/// copied with it.
///
/// `into_block` may be in another drawing. Then layers, styles, blocks and what else the entity
/// needs come along; where that drawing has the name already, its own counts. References to what
/// does not come along become 0.
Result<AcDbObjectId> copy_entity(AcDbObjectId entity, AcDbObjectId into_block = {});

/// The same for several entities of one drawing at once, so that references among them are kept
/// among the copies. All or none.
Result<std::vector<AcDbObjectId>> copy_entities(const std::vector<AcDbObjectId>& entities,
                                                AcDbObjectId into_block = {});

}  // namespace cad
