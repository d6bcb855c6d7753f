#include "host/db/text.h"

#include <cmath>

#include "host/db/attribute.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/db/text_start.h"

PN_RX_DEFINE(AcDbText, AcDbEntity, L"TEXT")
PN_RX_DEFINE(AcDbAttribute, AcDbText, L"ATTRIB")
PN_RX_DEFINE(AcDbAttributeDefinition, AcDbText, L"ATTDEF")
PN_RX_DEFINE(AcDbMText, AcDbEntity, L"MTEXT")

namespace {

using cad::Lens;
using cad::LensWriter;
using cad::NewTag;

constexpr std::string_view kTextPart = "AcDbText";
constexpr std::string_view kMTextPart = "AcDbMText";
constexpr std::string_view kAttributePart = "AcDbAttribute";
constexpr std::string_view kDefinitionPart = "AcDbAttributeDefinition";
constexpr int kText = 1, kStyle = 7, kPosition = 10, kAlignmentPoint = 11, kThickness = 39,
              kHeight = 40, kWidthFactor = 41, kRotation = 50, kOblique = 51, kGeneration = 71,
              kAcross = 72, kUp = 73, kNormal = 210;
constexpr std::int64_t kBackward = 2, kUpsideDown = 4;

constexpr std::string_view kTextParts[] = {"AcDbEntity", kTextPart, kTextPart};
constexpr NewTag kTextTags[] = {{0, 67, 0},
                                {0, 8},
                                {0, 6},
                                {0, 62, 256},
                                {1, kThickness, 0},
                                {1, kPosition},
                                {1, kHeight},
                                {1, kText},
                                {1, kRotation, 0},
                                {1, kWidthFactor, 1},
                                {1, kOblique, 0},
                                {1, kStyle},
                                {1, kGeneration, 0},
                                {1, kAcross, 0},
                                {1, kAlignmentPoint},
                                {1, kNormal},
                                {2, kUp, 0}};
static_assert(std::size(kTextTags) <= cad::NewTags::kMost);
constexpr cad::NewLayout kNewText{"TEXT", kTextParts, kTextTags};

constexpr std::string_view kNewMText =
    "  0\nMTEXT\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbMText\n 10\n0.0\n 20\n0.0\n "
    "30\n0.0\n"
    " 40\n0.2\n 41\n0.0\n 71\n     1\n 72\n     5\n  1\n\n";

/// Where a text has its vertical mode.
struct UpGroup {
  std::string_view part;
  int code;
};

/// Attributes have it in their own part, and the length of a field in the group where texts do.
UpGroup up_group(const AcDbText& text) {
  constexpr int kAttributeUp = 74;
  const AcRxClass* const kind = text.isA();
  if (kind == AcDbAttribute::desc()) return {kAttributePart, kAttributeUp};
  if (kind == AcDbAttributeDefinition::desc()) return {kDefinitionPart, kAttributeUp};
  return {kTextPart, kUp};
}

}  // namespace

AcDbText::AcDbText() : AcDbEntity(kNewText) {
  cad::NewTags& values = *fresh_for(kPosition);
  values.set_point(kPosition, AcGePoint3d::kOrigin);
  values.set_real(kHeight, 0.2);
  values.set_text(kText, L"");
}

AcDbText::AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style,
                   double height, double rotation)
    : AcDbText() {
  setPosition(position);
  setTextString(text);
  if (height > 0) setHeight(height);
  if (rotation != 0) setRotation(rotation);
  if (!style.isNull()) setTextStyle(style);
}

Acad::ErrorStatus AcDbText::laid_out_later(Acad::ErrorStatus changed) {
  if (changed == Acad::eOk) lay_out_later();
  return changed;
}

ACHAR* AcDbText::textString() const { return acutNewString(text_of(kTextPart, kText).c_str()); }

Acad::ErrorStatus AcDbText::setTextString(const ACHAR* text) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (!fresh()) {
    const auto held = Lens(content(), dialect()).find(kTextPart, kText);
    if (held && cad::dxf::text_value(*held, dialect()) == (text ? text : L"")) return Acad::eOk;
  }
  return laid_out_later(set_text(kTextPart, kText, text ? text : L""));
}

AcGePoint3d AcDbText::position() const { return ocs_point_of(kTextPart, kPosition); }

Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& position) {
  return laid_out_later(set_ocs_point(kTextPart, kPosition, position));
}

double AcDbText::height() const { return real_of(kTextPart, kHeight); }

Acad::ErrorStatus AcDbText::setHeight(double height) {
  return laid_out_later(set_real(kTextPart, kHeight, height));
}

double AcDbText::rotation() const { return angle_of(kTextPart, kRotation); }

Acad::ErrorStatus AcDbText::setRotation(double rotation) {
  return laid_out_later(set_angle(kTextPart, kRotation, rotation));
}

double AcDbText::widthFactor() const { return real_of(kTextPart, kWidthFactor, 1.0); }

Acad::ErrorStatus AcDbText::setWidthFactor(double factor) {
  if (factor == 0.0) return Acad::eInvalidInput;
  return laid_out_later(set_real(kTextPart, kWidthFactor, factor));
}

double AcDbText::oblique() const { return angle_of(kTextPart, kOblique); }

Acad::ErrorStatus AcDbText::setOblique(double angle) {
  return laid_out_later(set_angle(kTextPart, kOblique, angle));
}

double AcDbText::thickness() const { return real_of(kTextPart, kThickness); }
Acad::ErrorStatus AcDbText::setThickness(double thickness) {
  return set_real(kTextPart, kThickness, thickness);
}

AcGeVector3d AcDbText::normal() const { return normal_of(kTextPart); }

Acad::ErrorStatus AcDbText::setNormal(const AcGeVector3d& normal) {
  const AcGePoint3d place = position(), alignment = alignmentPoint();
  const Acad::ErrorStatus status = set_direction(kTextPart, kNormal, normal);
  if (status != Acad::eOk) return status;
  if (!isDefaultAlignment()) set_ocs_point(kTextPart, kAlignmentPoint, alignment);
  return setPosition(place);
}

AcDb::TextHorzMode AcDbText::horizontalMode() const {
  return static_cast<AcDb::TextHorzMode>(integer_of(kTextPart, kAcross));
}

Acad::ErrorStatus AcDbText::setHorizontalMode(AcDb::TextHorzMode mode) {
  if (mode < AcDb::kTextLeft || mode > AcDb::kTextFit) return Acad::eInvalidInput;
  return laid_out_later(set_integer(kTextPart, kAcross, mode));
}

AcDb::TextVertMode AcDbText::verticalMode() const {
  const UpGroup up = up_group(*this);
  return static_cast<AcDb::TextVertMode>(integer_of(up.part, up.code));
}

Acad::ErrorStatus AcDbText::setVerticalMode(AcDb::TextVertMode mode) {
  if (mode < AcDb::kTextBase || mode > AcDb::kTextTop) return Acad::eInvalidInput;
  if (cad::NewTags* values = fresh_for(kUp)) {
    values->set_integer(kUp, mode);
    return laid_out_later(Acad::eOk);
  }
  if (mode == verticalMode()) return isWriteEnabled() ? Acad::eOk : Acad::eNotOpenForWrite;
  const UpGroup up = up_group(*this);
  const Acad::ErrorStatus status = patch([&](LensWriter& tags) {
    const Lens lens(content(), dialect());
    if (up.part != kTextPart || lens.find(kTextPart, kUp))
      return tags.set_integer(up.part, up.code, mode);
    // It stands in the second class part, which ends the record's own tags.
    std::string tag;
    cad::dxf::TagWriter writer(tag, dialect());
    writer.integer(kUp, mode);
    tags.insert(lens.own_end(), tag);
  });
  return laid_out_later(status);
}

bool AcDbText::isDefaultAlignment() const {
  if (!fresh()) {  // one walk tells most texts, which have neither group; two look-ups do not
    cad::dxf::TagReader tags(content(), dialect());
    cad::dxf::Tag tag;
    const int up = up_group(*this).code;
    bool has_mode = false;
    while (!has_mode && tags.next(tag)) has_mode = tag.code == kAcross || tag.code == up;
    if (!has_mode) return true;
  }
  return horizontalMode() == AcDb::kTextLeft && verticalMode() == AcDb::kTextBase;
}

AcGePoint3d AcDbText::alignmentPoint() const { return ocs_point_of(kTextPart, kAlignmentPoint); }

Acad::ErrorStatus AcDbText::setAlignmentPoint(const AcGePoint3d& point) {
  if (isDefaultAlignment()) return Acad::eNotApplicable;
  return laid_out_later(set_ocs_point(kTextPart, kAlignmentPoint, point));
}

Acad::ErrorStatus AcDbText::adjustAlignment(const AcDbDatabase* database) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (isDefaultAlignment() || (!this->database() && !database)) return Acad::eNotApplicable;
  const AcDb::TextHorzMode across = horizontalMode();
  if (across == AcDb::kTextAlign || across == AcDb::kTextFit) return Acad::eNotApplicable;
  if (!fresh() && !Lens(content(), dialect()).find(kTextPart, kAlignmentPoint))
    return Acad::eNotApplicable;  // readers take such a text for one placed by its left end
  constexpr int kTag = 2;
  const std::wstring shown = isA() == AcDbAttributeDefinition::desc()
                                 ? text_of(kDefinitionPart, kTag)
                                 : text_of(kTextPart, kText);
  const AcGePoint3d start = cad::text_start(*this, shown, point_of(kTextPart, kAlignmentPoint));
  return set_point(kTextPart, kPosition, start);
}

void AcDbText::closing() { adjustAlignment(); }

AcDbObjectId AcDbText::textStyle() const {
  if (fresh()) {
    if (const cad::Stub* style = fresh()->record(kStyle))
      return AcDbObjectId(const_cast<cad::Stub*>(style));
  }
  const cad::Stub* own = cad::ObjectAccess::stub(*this);
  if (!own) return {};
  cad::Drawing& drawing = cad::StubStore::drawing_of(*own);
  const std::wstring name = text_of(kTextPart, kStyle);
  return AcDbObjectId(name.empty() ? drawing.current_properties().standard
                                   : drawing.table_record("STYLE", name));
}

Acad::ErrorStatus AcDbText::setTextStyle(AcDbObjectId style) {
  return laid_out_later(set_record(kTextPart, kStyle, "STYLE", style));
}

bool AcDbText::isMirroredInX() const {
  return (integer_of(kTextPart, kGeneration) & kBackward) != 0;
}

Acad::ErrorStatus AcDbText::mirrorInX(bool on) {
  const std::int64_t others = integer_of(kTextPart, kGeneration) & ~kBackward;
  return laid_out_later(set_integer(kTextPart, kGeneration, on ? others | kBackward : others));
}

bool AcDbText::isMirroredInY() const {
  return (integer_of(kTextPart, kGeneration) & kUpsideDown) != 0;
}

Acad::ErrorStatus AcDbText::mirrorInY(bool on) {
  const std::int64_t others = integer_of(kTextPart, kGeneration) & ~kUpsideDown;
  return laid_out_later(set_integer(kTextPart, kGeneration, on ? others | kUpsideDown : others));
}

AcDbMText::AcDbMText() : AcDbEntity(kNewMText) {}

ACHAR* AcDbMText::contents() const {
  return acutNewString(Lens(content(), dialect()).chunked_text(kMTextPart).c_str());
}

Acad::ErrorStatus AcDbMText::setContents(const ACHAR* text) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (Lens(content(), dialect()).chunked_text(kMTextPart) == (text ? text : L"")) return Acad::eOk;
  return patch([&](LensWriter& tags) { tags.set_chunked_text(kMTextPart, text ? text : L""); });
}

AcGePoint3d AcDbMText::location() const { return point_of(kMTextPart, kPosition); }
Acad::ErrorStatus AcDbMText::setLocation(const AcGePoint3d& location) {
  return set_point(kMTextPart, kPosition, location);
}

double AcDbMText::textHeight() const { return real_of(kMTextPart, kHeight); }
Acad::ErrorStatus AcDbMText::setTextHeight(double height) {
  return set_real(kMTextPart, kHeight, height);
}

AcDbMText::AttachmentPoint AcDbMText::attachment() const {
  return static_cast<AttachmentPoint>(integer_of(kMTextPart, 71, kTopLeft));
}

Acad::ErrorStatus AcDbMText::setAttachment(AttachmentPoint point) {
  if (point < kTopLeft || point > kBottomRight) return Acad::eInvalidInput;
  return set_integer(kMTextPart, 71, point);
}

double AcDbMText::width() const { return real_of(kMTextPart, 41); }
Acad::ErrorStatus AcDbMText::setWidth(double width) {
  return width < 0.0 ? Acad::eInvalidInput : set_real(kMTextPart, 41, width);
}

double AcDbMText::rotation() const {
  const Lens lens(content(), dialect());
  const auto along = lens.find(kMTextPart, 11), turned = lens.find(kMTextPart, kRotation);
  if (!along || (turned && turned->begin > along->begin)) return angle_of(kMTextPart, kRotation);
  const AcGeVector3d x_axis =
      cad::ocs_to_wcs(normal_of(kMTextPart)).transpose() * point_of(kMTextPart, 11).asVector();
  return std::atan2(x_axis.y, x_axis.x);
}

Acad::ErrorStatus AcDbMText::setRotation(double rotation) {
  if (!std::isfinite(rotation)) return Acad::eInvalidInput;
  if (!Lens(content(), dialect()).find(kMTextPart, 11))
    return set_angle(kMTextPart, kRotation, rotation);
  // Direction and angle: the later one would count, so the direction follows.
  const AcGeVector3d x_axis = cad::ocs_to_wcs(normal_of(kMTextPart)) *
                              AcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0);
  if (Lens(content(), dialect()).find(kMTextPart, kRotation))
    set_angle(kMTextPart, kRotation, rotation);
  return set_point(kMTextPart, 11, AcGePoint3d::kOrigin + x_axis);
}

AcDbObjectId AcDbMText::textStyle() const { return record_of(kMTextPart, kStyle, "STYLE"); }
Acad::ErrorStatus AcDbMText::setTextStyle(AcDbObjectId style) {
  return set_record(kMTextPart, kStyle, "STYLE", style);
}
