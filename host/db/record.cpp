#include "host/db/record.h"

#include "host/db/content.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"

namespace cad {

RecordTags record_tags(AcDbObjectId id) {
  if (id.isNull()) return {{}, &memory_dialect()};
  const Drawing& drawing = StubStore::drawing_of(*id.stub());
  return {drawing.bytes_of(*id.stub()), &drawing.dialect()};
}

std::string_view record_kind(AcDbObjectId id) {
  return id.isNull() ? std::string_view() : StubStore::drawing_of(*id.stub()).kind_name(*id.stub());
}

AcDbObjectId referenced(AcDbObjectId id, std::uint64_t handle) {
  return id.isNull() ? id : AcDbObjectId(StubStore::drawing_of(*id.stub()).find(handle));
}

bool is_entity(AcDbObjectId id) {
  return !id.isNull() && StubStore::drawing_of(*id.stub()).class_of(*id.stub()).entity;
}

std::optional<std::wstring> stored_text(AcDbObjectId id) {
  const std::string_view kind = record_kind(id);
  const RecordTags record = record_tags(id);
  const Lens lens(record.bytes, *record.dialect);
  std::wstring text;
  if (kind == "TEXT" || kind == "ATTRIB" || kind == "ATTDEF")
    text = lens.text("AcDbText", 1);
  else if (kind == "MTEXT")
    text = lens.chunked_text("AcDbMText");
  else
    return std::nullopt;
  if (const std::size_t end = text.find(L'\0'); end != text.npos) text.resize(end);
  return text;
}

}  // namespace cad
