#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "host/db/database.h"
#include "module/record/dim_item.h"

/// What the commands on records share.
namespace cli {

/// An entity that can hold records, and its extension dictionary.
struct RecordOwner {
  AcDbObjectId entity;
  AcDbObjectId dictionary;
};

/// The entity as a record owner; a null dictionary when it has none or is no entity.
RecordOwner record_owner(AcDbObjectId entity);
/// Every entity with an extension dictionary, in drawing order, those of blocks included.
void for_each_record_owner(AcDbDatabase& database,
                           const std::function<void(const RecordOwner&)>& visit);

/// Kind of an object as the drawing names it: "LWPOLYLINE".
std::string kind_of(AcDbObjectId object);
std::string handle_of(AcDbObjectId object);

/// Whether the entity that an item annotates with can be opened.
enum class AnnotationState {
  kNone,  ///< the item needs none
  kPresent,
  kMissing,
};
AnnotationState annotation_state(const StuDim& item);
const char* name_of(AnnotationState state);

/// UTF-8 in double quotes, what cannot be shown as \ escapes.
std::string in_quotes(std::wstring_view text);

}  // namespace cli
