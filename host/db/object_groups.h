#pragma once

#include <span>
#include <string_view>

#include "host/base/result.h"
#include "host/db/group_list.h"

namespace cad {

/// The groups of an object by which it is drawn, without class markers, handle, owner and extended
/// data: what change_object() takes to set it back.
GroupList drawn_groups(AcDbObjectId object);

/// Groups of a new entity that has layer, colour and the like of another; with its extended data
/// when it takes its place.
enum class Data { kLeave, kTake };
GroupList like(AcDbObjectId source, std::wstring_view kind, Data data = Data::kLeave);

/// Takes groups out of what all entities have (layer, colour ...): those that say the same in
/// another way, such as the true colour beside a colour number. Not for entities on locked layers.
Status drop_groups(AcDbObjectId entity, std::span<const int> codes);

}  // namespace cad
