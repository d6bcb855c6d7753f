#include "host/db/block_reference.h"

#include <cmath>

#include "host/db/block.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/geometry/ocs.h"

PN_RX_DEFINE(AcDbBlockReference, AcDbEntity, L"INSERT")

namespace {

using cad::Lens;
using cad::LensWriter;

constexpr std::string_view kInsertPart = "AcDbBlockReference";
constexpr std::string_view kBlockRecordPart = "AcDbBlockTableRecord";
constexpr double kDegreesPerRadian = 57.295779513082320876798;

constexpr std::string_view kNewInsert =
    "  0\nINSERT\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbBlockReference\n  2\n\n"
    " 10\n0.0\n 20\n0.0\n 30\n0.0\n";

bool is_finite(double x, double y = 0.0, double z = 0.0) { return std::isfinite(x + y + z); }

}  // namespace

AcDbBlockReference::AcDbBlockReference() : AcDbEntity(kNewInsert) {}

AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockTableRec)
    : AcDbBlockReference() {
  setPosition(position);
  setBlockTableRecord(blockTableRec);
}

AcGePoint3d AcDbBlockReference::position() const {
  return cad::ocs_to_wcs(normal()) * Lens(content(), dialect()).point(kInsertPart, 10);
}

Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
  if (!is_finite(position.x, position.y, position.z)) return Acad::eInvalidInput;
  const AcGePoint3d own = cad::ocs_to_wcs(normal()).transpose() * position;
  return patch([&](LensWriter& tags) { tags.set_point(kInsertPart, 10, own); });
}

double AcDbBlockReference::rotation() const {
  return Lens(content(), dialect()).real(kInsertPart, 50, 0.0) / kDegreesPerRadian;
}

Acad::ErrorStatus AcDbBlockReference::setRotation(double angle) {
  if (!is_finite(angle)) return Acad::eInvalidInput;
  return patch(
      [&](LensWriter& tags) { tags.set_real(kInsertPart, 50, angle * kDegreesPerRadian); });
}

AcGeVector3d AcDbBlockReference::normal() const {
  const Lens lens(content(), dialect());
  if (!lens.find(kInsertPart, 210)) return AcGeVector3d::kZAxis;
  return lens.point(kInsertPart, 210).asVector();
}

Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& normal) {
  if (!is_finite(normal.x, normal.y, normal.z) || normal.isZeroLength()) return Acad::eInvalidInput;
  const AcGePoint3d kept = position();
  const Acad::ErrorStatus status = patch([&](LensWriter& tags) {
    tags.set_point(kInsertPart, 210, AcGePoint3d::kOrigin + normal.normal());
  });
  return status == Acad::eOk ? setPosition(kept) : status;
}

AcDbObjectId AcDbBlockReference::blockTableRecord() const {
  const cad::Stub* own = cad::ObjectAccess::stub(*this);
  if (!own) return {};
  const std::wstring name = Lens(content(), dialect()).text(kInsertPart, 2);
  return AcDbObjectId(cad::StubStore::drawing_of(*own).table_record("BLOCK_RECORD", name));
}

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId block) {
  if (block.isNull()) return Acad::eNullObjectId;
  if (!block.objectClass()->isDerivedFrom(AcDbBlockTableRecord::desc())) {
    return Acad::eWrongObjectType;
  }
  const cad::Drawing& drawing = cad::StubStore::drawing_of(*block.stub());
  const Lens lens(drawing.bytes_of(*block.stub()), drawing.dialect());
  const std::wstring name = lens.text(kBlockRecordPart, 2);
  return patch([&](LensWriter& tags) { tags.set_text(kInsertPart, 2, name); });
}
