#include "host/db/object_id.h"

#include <algorithm>

#include "host/base/numbers.h"
#include "host/db/drawing.h"

const AcDbObjectId AcDbObjectId::kNull;

AcDbHandle::AcDbHandle(const ACHAR* text)
    : value_(text ? cad::parse_handle(std::wstring_view(text)).value_or(0) : 0) {}

bool AcDbHandle::getIntoAsciiBuffer(ACHAR* buffer) const {
  if (!buffer) return false;
  const cad::HandleDigits digits(value_);
  *std::copy(digits.view().begin(), digits.view().end(), buffer) = L'\0';
  return true;
}

bool AcDbObjectId::isErased() const { return stub_ && stub_->erased(); }

AcDbHandle AcDbObjectId::handle() const { return AcDbHandle(stub_ ? stub_->handle : 0); }

AcDbDatabase* AcDbObjectId::database() const {
  return stub_ ? &cad::StubStore::drawing_of(*stub_).database() : nullptr;
}

AcRxClass* AcDbObjectId::objectClass() const {
  return stub_ ? cad::StubStore::drawing_of(*stub_).class_of(*stub_).describe() : nullptr;
}

bool AcDbObjectIdArray::contains(AcDbObjectId id) const {
  return std::find(ids_.begin(), ids_.end(), id) != ids_.end();
}

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name) {
  id = AcDbObjectId(reinterpret_cast<cad::Stub*>(name[0]));
  return id.isNull() ? Acad::eNullObjectId : Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name& name, AcDbObjectId id) {
  name[0] = id.asOldId();
  name[1] = 0;
  return id.isNull() ? Acad::eNullObjectId : Acad::eOk;
}
