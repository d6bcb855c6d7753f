#include "host/db/entity.h"

#include <cmath>

#include "host/db/block.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/db/text.h"

PN_RX_DEFINE(AcDbEntity, AcDbObject, L"")
PN_RX_DEFINE(AcDbText, AcDbEntity, L"TEXT")
PN_RX_DEFINE(AcDbMText, AcDbEntity, L"MTEXT")

namespace {

using cad::Lens;
using cad::LensWriter;

constexpr std::string_view kEntityPart = "AcDbEntity";
constexpr std::string_view kTextPart = "AcDbText";
constexpr std::string_view kMTextPart = "AcDbMText";
constexpr int kColorByLayer = 256;
constexpr double kDegreesPerRadian = 57.295779513082320876798;

constexpr std::string_view kNewText =
    "  0\nTEXT\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbText\n 10\n0.0\n 20\n0.0\n "
    "30\n0.0\n"
    " 40\n0.2\n  1\n\n100\nAcDbText\n";
constexpr std::string_view kNewMText =
    "  0\nMTEXT\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbMText\n 10\n0.0\n 20\n0.0\n "
    "30\n0.0\n"
    " 40\n0.2\n 41\n0.0\n 71\n     1\n 72\n     5\n  1\n\n";

// A drawing has no text for numbers that are not finite.
bool is_finite(double value) { return std::isfinite(value); }
bool is_finite(const AcGePoint3d& point) {
  return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

}  // namespace

ACHAR* AcDbEntity::layer() const {
  return acutNewString(Lens(content(), dialect()).text(kEntityPart, 8).c_str());
}

AcDbObjectId AcDbEntity::layerId() const {
  const cad::Stub* own = cad::ObjectAccess::stub(*this);
  if (!own) return {};
  const std::wstring name = Lens(content(), dialect()).text(kEntityPart, 8);
  return AcDbObjectId(cad::StubStore::drawing_of(*own).table_record("LAYER", name));
}

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* name) {
  if (!name) return Acad::eInvalidInput;
  const cad::Stub* own = cad::ObjectAccess::stub(*this);
  if (own && !cad::StubStore::drawing_of(*own).table_record("LAYER", name)) {
    return Acad::eKeyNotFound;
  }
  return patch([&](LensWriter& tags) { tags.set_text(kEntityPart, 8, name); });
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId layer) {
  if (layer.isNull()) return Acad::eNullObjectId;
  const cad::Drawing& drawing = cad::StubStore::drawing_of(*layer.stub());
  const Lens lens(drawing.bytes_of(*layer.stub()), drawing.dialect());
  return setLayer(lens.text("AcDbLayerTableRecord", 2).c_str());
}

int AcDbEntity::colorIndex() const {
  return static_cast<int>(Lens(content(), dialect()).integer(kEntityPart, 62, kColorByLayer));
}

Acad::ErrorStatus AcDbEntity::setColorIndex(int color) {
  if (color < 0 || color > kColorByLayer) return Acad::eOutOfRange;
  return patch([&](LensWriter& tags) { tags.set_integer(kEntityPart, 62, color); });
}

AcDbText::AcDbText() : AcDbEntity(kNewText) {}

AcDbText::AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style,
                   double height, double rotation)
    : AcDbText() {
  setPosition(position);
  setTextString(text);
  if (height > 0) setHeight(height);
  if (rotation != 0) setRotation(rotation);
  if (style.isNull()) return;
  const cad::Drawing& drawing = cad::StubStore::drawing_of(*style.stub());
  const std::wstring name =
      Lens(drawing.bytes_of(*style.stub()), drawing.dialect()).text("AcDbTextStyleTableRecord", 2);
  patch([&](LensWriter& tags) { tags.set_text(kTextPart, 7, name); });
}

ACHAR* AcDbText::textString() const {
  return acutNewString(Lens(content(), dialect()).text(kTextPart, 1).c_str());
}

Acad::ErrorStatus AcDbText::setTextString(const ACHAR* text) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  const std::wstring_view wanted = text ? text : L"";
  const auto old = Lens(content(), dialect()).find(kTextPart, 1);
  if (old && cad::dxf::text_value(*old, dialect()) == wanted) return Acad::eOk;
  return patch([&](LensWriter& tags) { tags.set_text(kTextPart, 1, wanted); });
}

AcGePoint3d AcDbText::position() const { return Lens(content(), dialect()).point(kTextPart, 10); }

Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& position) {
  if (!is_finite(position)) return Acad::eInvalidInput;
  return patch([&](LensWriter& tags) { tags.set_point(kTextPart, 10, position); });
}

double AcDbText::height() const { return Lens(content(), dialect()).real(kTextPart, 40, 0.0); }

Acad::ErrorStatus AcDbText::setHeight(double height) {
  if (!is_finite(height)) return Acad::eInvalidInput;
  return patch([&](LensWriter& tags) { tags.set_real(kTextPart, 40, height); });
}

double AcDbText::rotation() const {
  return Lens(content(), dialect()).real(kTextPart, 50, 0.0) / kDegreesPerRadian;
}

Acad::ErrorStatus AcDbText::setRotation(double rotation) {
  if (!is_finite(rotation)) return Acad::eInvalidInput;
  return patch(
      [&](LensWriter& tags) { tags.set_real(kTextPart, 50, rotation * kDegreesPerRadian); });
}

AcDbMText::AcDbMText() : AcDbEntity(kNewMText) {}

ACHAR* AcDbMText::contents() const {
  return acutNewString(Lens(content(), dialect()).chunked_text(kMTextPart).c_str());
}

Acad::ErrorStatus AcDbMText::setContents(const ACHAR* text) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  const std::wstring_view wanted = text ? text : L"";
  if (Lens(content(), dialect()).chunked_text(kMTextPart) == wanted) return Acad::eOk;
  return patch([&](LensWriter& tags) { tags.set_chunked_text(kMTextPart, wanted); });
}

AcGePoint3d AcDbMText::location() const { return Lens(content(), dialect()).point(kMTextPart, 10); }

Acad::ErrorStatus AcDbMText::setLocation(const AcGePoint3d& location) {
  if (!is_finite(location)) return Acad::eInvalidInput;
  return patch([&](LensWriter& tags) { tags.set_point(kMTextPart, 10, location); });
}

double AcDbMText::textHeight() const {
  return Lens(content(), dialect()).real(kMTextPart, 40, 0.0);
}

Acad::ErrorStatus AcDbMText::setTextHeight(double height) {
  if (!is_finite(height)) return Acad::eInvalidInput;
  return patch([&](LensWriter& tags) { tags.set_real(kMTextPart, 40, height); });
}
