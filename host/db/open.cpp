#include "host/db/open.h"

#include "host/db/drawing.h"
#include "host/db/entity.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"

namespace cad {
namespace {
constexpr unsigned kMostReaders = 256;
}

bool ObjectAccess::on_locked_layer(const AcDbObject& object) {
  const Stub& stub = *object.stub_;
  Drawing& drawing = StubStore::drawing_of(stub);
  if (!drawing.class_of(stub).entity || !drawing.has_locked_layers()) return false;
  return drawing.layer_is_locked(Lens(object.content(), object.dialect()).text("AcDbEntity", 8));
}

Acad::ErrorStatus ObjectAccess::open(AcDbObject& object, AcDb::OpenMode mode) {
  const bool was_open = is_open(object);
  if (mode == AcDb::kForNotify) {
    if (object.isNotifyEnabled()) return Acad::eWasOpenForNotify;
    object.flags_ |= kOpenNotify;
  } else {
    if (object.isWriteEnabled()) return Acad::eWasOpenForWrite;
    if (object.isNotifyEnabled()) return Acad::eWasOpenForNotify;
    if (mode == AcDb::kForRead) {
      if (object.readers_ >= kMostReaders) return Acad::eAtMaxReaders;
      ++object.readers_;
    } else {
      if (object.readers_ != 0) return Acad::eWasOpenForRead;
      if (on_locked_layer(object)) return Acad::eOnLockedLayer;
      object.flags_ |= kOpenWrite;
    }
  }
  if (!was_open) {
    object.flags_ = static_cast<std::uint8_t>(object.flags_ & ~kModified);
    StubStore::drawing_of(*object.stub_).opened();
  }
  return Acad::eOk;
}

}  // namespace cad

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased) {
  object = nullptr;
  if (id.isNull()) return Acad::eNullObjectId;
  cad::Stub& stub = *id.stub();
  if (stub.has(cad::Stub::kMissing)) return Acad::ePermanentlyErased;
  if (stub.erased() && !openErased) return Acad::eWasErased;
  AcDbObject& found = cad::StubStore::drawing_of(stub).object(stub);
  const Acad::ErrorStatus status = cad::ObjectAccess::open(found, mode);
  if (status == Acad::eOk) object = &found;
  return status;
}

Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased) {
  entity = nullptr;
  AcDbObject* object = nullptr;
  const Acad::ErrorStatus status = acdbOpenAcDbObject(object, id, mode, openErased);
  if (status != Acad::eOk) return status;
  entity = AcDbEntity::cast(object);
  if (entity) return Acad::eOk;
  object->close();
  return Acad::eNotAnEntity;
}
