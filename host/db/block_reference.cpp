#include "host/db/block_reference.h"

#include "host/db/new_tags.h"

PN_RX_DEFINE(AcDbBlockReference, AcDbEntity, L"INSERT")

namespace {

constexpr std::string_view kPart = "AcDbBlockReference";
constexpr int kBlock = 2, kPosition = 10, kScale = 41, kRotation = 50, kNormal = 210;

constexpr std::string_view kParts[] = {"AcDbEntity", kPart};
constexpr cad::NewTag kTags[] = {{0, 67, 0},
                                 {0, 8},
                                 {0, 6},
                                 {0, 62, 256},
                                 {1, kBlock},
                                 {1, kPosition},
                                 {1, kScale, 1.0},
                                 {1, kScale + 1, 1.0},
                                 {1, kScale + 2, 1.0},
                                 {1, kRotation, 0},
                                 {1, kNormal}};
constexpr cad::NewLayout kNewInsert{"INSERT", kParts, kTags};

}  // namespace

AcDbBlockReference::AcDbBlockReference() : AcDbEntity(kNewInsert) {
  set_text(kPart, kBlock, L"");
  set_point(kPart, kPosition, AcGePoint3d::kOrigin);
}

AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockTableRec)
    : AcDbBlockReference() {
  setPosition(position);
  setBlockTableRecord(blockTableRec);
}

AcGePoint3d AcDbBlockReference::position() const { return ocs_point_of(kPart, kPosition); }
Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
  return set_ocs_point(kPart, kPosition, position);
}

double AcDbBlockReference::rotation() const { return angle_of(kPart, kRotation); }
Acad::ErrorStatus AcDbBlockReference::setRotation(double angle) {
  return set_angle(kPart, kRotation, angle);
}

AcGeScale3d AcDbBlockReference::scaleFactors() const {
  return {real_of(kPart, kScale, 1.0), real_of(kPart, kScale + 1, 1.0),
          real_of(kPart, kScale + 2, 1.0)};
}

Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& scale) {
  const double factors[] = {scale.sx, scale.sy, scale.sz};
  for (const double factor : factors)
    if (factor == 0.0 || !std::isfinite(factor)) return Acad::eInvalidInput;
  Acad::ErrorStatus status = Acad::eOk;
  for (int axis = 0; axis < 3 && status == Acad::eOk; ++axis)
    status = set_real(kPart, kScale + axis, factors[axis]);
  return status;
}

AcGeVector3d AcDbBlockReference::normal() const { return normal_of(kPart); }

Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& normal) {
  const AcGePoint3d kept = position();
  const Acad::ErrorStatus status = set_direction(kPart, kNormal, normal);
  return status == Acad::eOk ? setPosition(kept) : status;
}

AcDbObjectId AcDbBlockReference::blockTableRecord() const {
  return record_of(kPart, kBlock, "BLOCK_RECORD");
}

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId block) {
  return set_record(kPart, kBlock, "BLOCK_RECORD", block);
}
