#include "host/db/entity.h"

#include <cmath>
#include <numbers>

#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"

PN_RX_DEFINE(AcDbEntity, AcDbObject, L"")

namespace {

using cad::Lens;
using cad::LensWriter;
using cad::NewTags;

constexpr std::string_view kEntityPart = "AcDbEntity";
constexpr int kColorByLayer = 256;
constexpr int kLayer = 8, kColor = 62, kNormal = 210;
constexpr double kDegree = std::numbers::pi / 180;

// A drawing has no text for numbers that are not finite.
bool is_finite(const AcGePoint3d& point) {
  return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

}  // namespace

ACHAR* AcDbEntity::layer() const { return acutNewString(text_of(kEntityPart, kLayer).c_str()); }

AcDbObjectId AcDbEntity::layerId() const { return record_of(kEntityPart, kLayer, "LAYER"); }

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* name) {
  if (!name) return Acad::eInvalidInput;
  const cad::Stub* own = cad::ObjectAccess::stub(*this);
  if (own && !cad::StubStore::drawing_of(*own).table_record("LAYER", name)) {
    return Acad::eKeyNotFound;
  }
  return set_text(kEntityPart, kLayer, name);
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId layer) {
  return set_record(kEntityPart, kLayer, "LAYER", layer);
}

int AcDbEntity::colorIndex() const {
  return static_cast<int>(integer_of(kEntityPart, kColor, kColorByLayer));
}

Acad::ErrorStatus AcDbEntity::setColorIndex(int color) {
  if (color < 0 || color > kColorByLayer) return Acad::eOutOfRange;
  return set_integer(kEntityPart, kColor, color);
}

double AcDbEntity::real_of(std::string_view part, int code, double absent) const {
  if (fresh() && fresh()->has(code)) return fresh()->real(code, absent);
  return Lens(content(), dialect()).real(part, code, absent);
}

std::int64_t AcDbEntity::integer_of(std::string_view part, int code, std::int64_t absent) const {
  if (fresh() && fresh()->has(code)) return fresh()->integer(code, absent);
  return Lens(content(), dialect()).integer(part, code, absent);
}

std::wstring AcDbEntity::text_of(std::string_view part, int code) const {
  if (fresh() && fresh()->has(code)) return fresh()->text(code);
  return Lens(content(), dialect()).text(part, code);
}

double AcDbEntity::angle_of(std::string_view part, int code) const {
  return real_of(part, code) * kDegree;
}

AcGePoint3d AcDbEntity::point_of(std::string_view part, int code) const {
  if (fresh() && fresh()->has(code)) return fresh()->point(code);
  return Lens(content(), dialect()).point(part, code);
}

AcGeVector3d AcDbEntity::normal_of(std::string_view part) const {
  if (fresh() && fresh()->has(kNormal))
    return fresh()->is_set(kNormal) ? fresh()->point(kNormal).asVector() : AcGeVector3d::kZAxis;
  const Lens lens(content(), dialect());
  if (!lens.find(part, kNormal)) return AcGeVector3d::kZAxis;
  return lens.point(part, kNormal).asVector();
}

AcGePoint3d AcDbEntity::ocs_point_of(std::string_view part, int code) const {
  return cad::ocs_to_wcs(normal_of(part)) * point_of(part, code);
}

AcDbObjectId AcDbEntity::record_of(std::string_view part, int code, std::string_view table) const {
  const cad::Stub* own = cad::ObjectAccess::stub(*this);
  if (!own) return {};
  return AcDbObjectId(cad::StubStore::drawing_of(*own).table_record(table, text_of(part, code)));
}

Acad::ErrorStatus AcDbEntity::set_real(std::string_view part, int code, double value) {
  if (!std::isfinite(value)) return Acad::eInvalidInput;
  if (NewTags* values = fresh_for(code)) return values->set_real(code, value), Acad::eOk;
  return patch([&](LensWriter& tags) { tags.set_real(part, code, value); });
}

Acad::ErrorStatus AcDbEntity::set_integer(std::string_view part, int code, std::int64_t value) {
  if (NewTags* values = fresh_for(code)) return values->set_integer(code, value), Acad::eOk;
  return patch([&](LensWriter& tags) { tags.set_integer(part, code, value); });
}

Acad::ErrorStatus AcDbEntity::set_text(std::string_view part, int code, std::wstring_view value) {
  if (NewTags* values = fresh_for(code)) return values->set_text(code, value), Acad::eOk;
  return patch([&](LensWriter& tags) { tags.set_text(part, code, value); });
}

Acad::ErrorStatus AcDbEntity::set_angle(std::string_view part, int code, double value) {
  return set_real(part, code, value / kDegree);
}

Acad::ErrorStatus AcDbEntity::set_point(std::string_view part, int code, const AcGePoint3d& value) {
  if (!is_finite(value)) return Acad::eInvalidInput;
  if (NewTags* values = fresh_for(code)) return values->set_point(code, value), Acad::eOk;
  return patch([&](LensWriter& tags) { tags.set_point(part, code, value); });
}

Acad::ErrorStatus AcDbEntity::set_ocs_point(std::string_view part, int code,
                                            const AcGePoint3d& value) {
  if (!is_finite(value)) return Acad::eInvalidInput;
  const AcGeVector3d normal = normal_of(part);
  if (normal.x == 0.0 && normal.y == 0.0 && normal.z > 0.0) return set_point(part, code, value);
  return set_point(part, code, cad::ocs_to_wcs(normal).transpose() * value);
}

Acad::ErrorStatus AcDbEntity::set_direction(std::string_view part, int code,
                                            const AcGeVector3d& value) {
  if (value.isZeroLength()) return Acad::eInvalidInput;
  return set_point(part, code, AcGePoint3d::kOrigin + value.normal());
}

Acad::ErrorStatus AcDbEntity::set_record(std::string_view part, int code, std::string_view table,
                                         AcDbObjectId record) {
  if (record.isNull()) return Acad::eNullObjectId;
  const cad::Stub& stub = *record.stub();
  const cad::Drawing& drawing = cad::StubStore::drawing_of(stub);
  if (drawing.kind_name(stub) != table) return Acad::eWrongObjectType;
  const cad::Stub* own = cad::ObjectAccess::stub(*this);
  if (own && &cad::StubStore::drawing_of(*own) != &drawing) return Acad::eWrongDatabase;
  if (stub.erased()) return Acad::eWasErased;
  if (NewTags* values = fresh_for(code)) return values->set_record(code, stub), Acad::eOk;
  cad::dxf::Tag name;
  name.value = cad::symbol_name_bytes(stub);
  return set_text(part, code, cad::dxf::text_value(name, drawing.dialect()));
}
