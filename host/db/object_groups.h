#pragma once

#include <string_view>

#include "host/db/group_list.h"

namespace cad {

/// The groups of an object by which it is drawn, without class markers, handle, owner and extended
/// data: what change_object() takes to set it back.
GroupList drawn_groups(AcDbObjectId object);

/// Groups of a new entity that has layer, colour and the like of another; with its extended data
/// when it takes its place.
enum class Data { kLeave, kTake };
GroupList like(AcDbObjectId source, std::wstring_view kind, Data data = Data::kLeave);

}  // namespace cad
