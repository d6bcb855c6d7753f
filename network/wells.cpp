#include "network/wells.h"

#include "host/db/entity_fields.h"
#include "host/db/record.h"
#include "host/geometry/ocs.h"
#include "network/gx_data.h"

using network::Key;
using network::Kind;

namespace {

constexpr CRuntimeClass kJdClass{"CGxJd", nullptr};
constexpr CRuntimeClass kJsJdClass{"CGxJsJd", &kJdClass};
constexpr CRuntimeClass kXhsClass{"CGxXhs", &kJsJdClass};
constexpr CRuntimeClass kPsJdClass{"CGxPsJd", &kJdClass};
constexpr CRuntimeClass kYsJdClass{"CGxYsJd", &kJdClass};
constexpr CRuntimeClass kWellType1Class{"CKtGxWellType1", nullptr};
constexpr CRuntimeClass kGsWellXhsClass{"CKtGxGsWellXHS", &kWellType1Class};

}  // namespace

const CRuntimeClass* CGxJd::GetThisClass() { return &kJdClass; }
const CRuntimeClass* CGxJsJd::GetThisClass() { return &kJsJdClass; }
const CRuntimeClass* CGxXhs::GetThisClass() { return &kXhsClass; }
const CRuntimeClass* CGxPsJd::GetThisClass() { return &kPsJdClass; }
const CRuntimeClass* CGxYsJd::GetThisClass() { return &kYsJdClass; }
const CRuntimeClass* CKtGxWellType1::GetThisClass() { return &kWellType1Class; }
const CRuntimeClass* CKtGxGsWellXHS::GetThisClass() { return &kGsWellXhsClass; }

bool CKtGxWellType1::IsKindOf(const CRuntimeClass* kind) const {
  return kind && GetRuntimeClass()->IsDerivedFrom(kind);
}

std::optional<AcGePoint3d> CGxJd::position() const { return network::position_of(objectId()); }

std::unique_ptr<CGxJd> network::open_node(AcDbObjectId id) {
  if (id.isNull() || id.isErased()) return nullptr;
  std::optional<ObjectData> data = ObjectData::read(id);
  if (!data) return nullptr;
  return open_node(id, *data);
}

std::unique_ptr<CGxJd> network::open_node(AcDbObjectId id, ObjectData& data) {
  switch (data.kind()) {
    case Kind::kWaterNode:
      return std::make_unique<CGxJsJd>(id, std::move(data));
    case Kind::kHydrant:
      return std::make_unique<CGxXhs>(id, std::move(data));
    case Kind::kDrainageWell:
      return std::make_unique<CGxPsJd>(id, std::move(data));
    case Kind::kStormWell:
      return std::make_unique<CGxYsJd>(id, std::move(data));
    default:
      return nullptr;
  }
}

std::optional<AcGePoint3d> network::position_of(AcDbObjectId id) {
  const std::string_view kind = cad::record_kind(id);
  const bool is_point = kind == "POINT";  // in world coordinates, unlike the others
  if (!is_point && kind != "INSERT" && kind != "CIRCLE") return std::nullopt;
  const cad::RecordTags record = cad::record_tags(id);
  const cad::EntityFields fields(record.bytes, *record.dialect);
  const AcGePoint3d at = fields.point(10);
  return is_point ? at : cad::ocs_to_wcs(fields.normal()) * at;
}

CString DimUtility::getJdbhDimStr(const AcDbObjectId& id) {
  if (id.isNull() || id.isErased()) return {};
  const std::optional<network::ObjectData> data = network::ObjectData::read(id);
  if (!data) return {};
  const CString number = data->text(Key::kNumber);
  const CString prefix = data->text(Key::kPrefix);
  if (number.empty() || prefix.empty()) return number;
  const DimUtility::tdfGdcdpdbz* const labels = CGxData::Instance()->getGcGpBzSz();
  return prefix + (labels ? *labels : DimUtility::tdfGdcdpdbz()).wellNumberSeparator + number;
}
