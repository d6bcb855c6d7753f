#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/db/object_id.h"
#include "host/dxf/tag_reader.h"

namespace cad {

// What is asked here opens nothing and changes nothing: several threads may ask at a time while
// none of them changes the drawing.

/// An object's DXF tags as they stand now, whether it is open or not, erased or not.
///     const RecordTags record = record_tags(id);
///     for (dxf::TagReader tags(record.bytes, *record.dialect); tags.next(tag);) ...
struct RecordTags {
  std::string_view bytes;  ///< valid until the object is written to or the drawing closes
  const dxf::Dialect* dialect;
};

/// Empty bytes for the null id.
RecordTags record_tags(AcDbObjectId id);
/// Group 0 of the object ("LINE"); empty for the null id.
std::string_view record_kind(AcDbObjectId id);
/// The object a reference of `id`'s own drawing names; null when it leads nowhere.
AcDbObjectId referenced(AcDbObjectId id, std::uint64_t handle);
/// Whether the object is a graphical entity.
bool is_entity(AcDbObjectId id);
/// As AcDbObject::extensionDictionary().
AcDbObjectId extension_dictionary(AcDbObjectId id);
/// What a TEXT, MTEXT, ATTRIB or ATTDEF says, up to its first null; nothing of other objects.
std::optional<std::wstring> stored_text(AcDbObjectId id);

}  // namespace cad
