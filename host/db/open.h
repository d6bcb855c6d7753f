#pragma once

#include "host/db/object.h"

class AcDbEntity;

/// Opening objects by id. On success the object is open in the mode asked for and must be closed
/// once; on failure the pointer is null. Statuses: eNullObjectId; eWasErased (unless openErased);
/// eWasOpenForRead, eWasOpenForWrite, eWasOpenForNotify when another holder is in the way;
/// eAtMaxReaders from the 257th reader on; eOnLockedLayer for writing an entity on a locked layer.

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased = false);

/// As above; eNotAnEntity when the object is no graphical entity.
Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased = false);

/// As acdbOpenAcDbObject(), for a known class; eNotThatKindOfClass when the object is another.
template <class T>
Acad::ErrorStatus acdbOpenObject(T*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErased = false) {
  AcDbObject* opened = nullptr;
  object = nullptr;
  const Acad::ErrorStatus status = acdbOpenAcDbObject(opened, id, mode, openErased);
  if (status != Acad::eOk) return status;
  object = T::cast(opened);
  if (object) return Acad::eOk;
  opened->close();
  return Acad::eNotThatKindOfClass;
}
