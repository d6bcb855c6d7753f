#include "network/wells.h"

#include <string_view>

#include "host/db/entity.h"
#include "host/db/open.h"
#include "host/db/resbuf.h"
#include "network/gx_data.h"

namespace {

constexpr wchar_t kApplication[] = L"PIPENOTE";
constexpr short kXdText = 1000;
constexpr short kXdApplication = 1001;
constexpr short kXdBrace = 1002;

constexpr CRuntimeClass kJdClass{"CGxJd", nullptr};
constexpr CRuntimeClass kXhsClass{"CGxXhs", &kJdClass};
constexpr CRuntimeClass kWellType1Class{"CKtGxWellType1", nullptr};
constexpr CRuntimeClass kGsWellXhsClass{"CKtGxGsWellXHS", &kWellType1Class};

bool is_derived(const CRuntimeClass* one, const CRuntimeClass* from) {
  while (one && one != from) one = one->m_pBaseClass;
  return one != nullptr && from != nullptr;
}

}  // namespace

const CRuntimeClass* CGxJd::GetThisClass() { return &kJdClass; }
const CRuntimeClass* CGxXhs::GetThisClass() { return &kXhsClass; }
const CRuntimeClass* CKtGxWellType1::GetThisClass() { return &kWellType1Class; }
const CRuntimeClass* CKtGxGsWellXHS::GetThisClass() { return &kGsWellXhsClass; }

bool CGxJd::IsKindOf(const CRuntimeClass* kind) const {
  return is_derived(GetRuntimeClass(), kind);
}
bool CKtGxWellType1::IsKindOf(const CRuntimeClass* kind) const {
  return is_derived(GetRuntimeClass(), kind);
}

namespace {

/// The text paired with the name; empty when there is none.
CString named_text(const resbuf* chain, std::wstring_view name) {
  while (chain && chain->rbnext) {
    if (chain->restype == kXdApplication || chain->restype == kXdBrace) {
      chain = chain->rbnext;
      continue;
    }
    const resbuf* const value = chain->rbnext;
    if (chain->restype == kXdText && name == chain->resval.rstring && value->restype == kXdText)
      return value->resval.rstring;
    chain = value->rbnext;
  }
  return {};
}

}  // namespace

CString DimUtility::getJdbhDimStr(const AcDbObjectId& id) {
  AcDbEntity* well = nullptr;
  if (acdbOpenAcDbEntity(well, id, AcDb::kForRead) != Acad::eOk) return {};
  const cad::ResbufChain data(well->xData(kApplication));
  well->close();
  const CString number = named_text(data.get(), L"number");
  if (number.empty()) return {};
  const CString prefix = named_text(data.get(), L"prefix");
  if (prefix.empty()) return number;
  return prefix + CGxData::Instance()->getGcGpBzSz()->wellNumberSeparator + number;
}
