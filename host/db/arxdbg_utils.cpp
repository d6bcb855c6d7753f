#include "host/db/arxdbg_utils.h"

#include <memory>

#include "host/base/numbers.h"
#include "host/db/block.h"
#include "host/db/database.h"
#include "host/db/open.h"
#include "host/db/stub.h"

Acad::ErrorStatus ArxDbgUtils::enameToObjId(const ads_name name, AcDbObjectId& id) {
  return acdbGetObjectId(id, name);
}

Acad::ErrorStatus ArxDbgUtils::objIdToEname(AcDbObjectId id, ads_name& name) {
  return acdbGetAdsName(name, id);
}

Acad::ErrorStatus ArxDbgUtils::handleStrToObjId(AcDbDatabase* database, const ACHAR* text,
                                                AcDbObjectId& id) {
  id.setNull();
  if (!database || !text) return Acad::eInvalidInput;
  const auto handle = cad::parse_handle(std::wstring_view(text));
  if (!handle || database->getAcDbObjectId(id, false, AcDbHandle(*handle)) != Acad::eOk) {
    return Acad::eInvalidInput;
  }
  return Acad::eOk;
}

void ArxDbgUtils::objIdToHandleStr(AcDbObjectId id, std::wstring& text) {
  text.clear();
  AcDbObject* object = nullptr;
  if (acdbOpenAcDbObject(object, id, AcDb::kForRead) != Acad::eOk) return;
  const bool own_handle = !id.stub()->has(cad::Stub::kStrayTwin) && !id.handle().isNull();
  if (own_handle) text = cad::handle_text(id.handle());
  object->close();
}

Acad::ErrorStatus ArxDbgUtils::addToCurrentSpace(AcDbEntity* entity) {
  AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
  if (!database) return Acad::eNoDatabase;
  AcDbBlockTableRecord* space = nullptr;
  const Acad::ErrorStatus opened =
      acdbOpenObject(space, database->currentSpaceId(), AcDb::kForWrite);
  if (opened != Acad::eOk) return opened;
  AcDbObjectId id;
  const Acad::ErrorStatus status = space->appendAcDbEntity(id, entity);
  space->close();
  return status;
}
