#include "host/db/record.h"

#include "host/db/content.h"
#include "host/db/drawing.h"

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

}  // namespace cad
