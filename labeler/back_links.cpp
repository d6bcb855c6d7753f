#include "labeler/back_links.h"

#include <algorithm>
#include <cmath>

#include "labeler/layout.h"
#include "module/platform/drawing.h"
#include "module/platform/opened.h"
#include "module/platform/pipe_library.h"
#include "module/platform/records.h"
#include "module/platform/resbuf.h"

namespace labeler {
namespace {

constexpr short kApplicationGroup = 1001, kHandleGroup = 1005;

// Groups of a TEXT.
constexpr int kText = 1, kStart = 10, kAlignment = 11, kHeight = 40, kWidthFactor = 41,
              kRotation = 50, kAcross = 72, kUp = 73;

bool is_there(AcDbObjectId entity) {
  return !entity.isNull() && !entity.isErased() && cad::is_entity(entity);
}

/// Handle of the owner that the entity names as a label of this module.
std::optional<CString> linked_handle(AcDbObjectId entity) {
  const cad::RecordTags record = cad::record_tags(entity);
  cad::ExtendedTags data(record.bytes, *record.dialect, kLabelApplication);
  for (cad::dxf::Tag tag; data.next(tag);)
    if (tag.code == kHandleGroup) return cad::dxf::text_value(tag, *record.dialect);
  return std::nullopt;
}

}  // namespace

void register_links(AcDbDatabase& drawing) {
  AcDbRegAppTable* table = nullptr;
  if (drawing.getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return;
  const bool known = table->has(kLabelApplication);
  table->close();
  if (known || drawing.getSymbolTable(table, AcDb::kForWrite) != Acad::eOk) return;
  auto* const record = new AcDbRegAppTableRecord;
  record->setName(kLabelApplication);
  if (AcDbObjectId id; table->add(id, record) == Acad::eOk)
    record->close();
  else
    delete record;
  table->close();
}

Acad::ErrorStatus link_to_owner(AcDbObjectId entity, AcDbObjectId owner) {
  dim::Opened<AcDbEntity> opened(entity, AcDb::kForWrite);
  if (!opened) return opened.status();
  dim::ChainBuilder chain;
  chain.add(dim::new_text_buffer(kApplicationGroup, kLabelApplication));
  chain.add(dim::new_text_buffer(kHandleGroup, handle_of(owner)));
  return opened->setXData(chain.head());
}

std::optional<BackLink> back_link_of(AcDbObjectId entity) {
  std::optional<CString> handle = is_there(entity) ? linked_handle(entity) : std::nullopt;
  if (!handle) return std::nullopt;
  const AcDbObjectId owner = dim::object_of_handle(handle->c_str());
  return BackLink{*std::move(handle), !owner.isNull() && !owner.isErased()};
}

bool may_be_label_of(AcDbObjectId owner, AcDbObjectId entity) {
  if (!is_there(entity)) return false;
  if (const std::optional<CString> handle = linked_handle(entity))
    return dim::object_of_handle(handle->c_str()) == owner;
  return entity != owner && !network::kind_of(entity);
}

namespace {

std::optional<Box> box_of_text(const AcDbText& text) {
  PlacedText placed;
  ACHAR* shown = text.textString();
  const bool measured =
      KT::GetTextWidth(shown ? shown : L"", text.height(), placed.width, 0, text.widthFactor());
  acutDelString(shown);
  if (!measured) return std::nullopt;
  placed.at = text.isDefaultAlignment() ? text.position() : text.alignmentPoint();
  placed.horizontal = text.horizontalMode();
  placed.vertical = text.verticalMode();
  placed.rotation = text.rotation();
  return box_of(placed, text.height());
}

}  // namespace

namespace {

/// All that is asked of a TEXT, read in one pass: a drawing holds as many texts as everything else.
struct StoredText {
  CString shown;
  double height;
  double width_factor;
  PlacedText placed;  ///< without its width
};

std::optional<StoredText> read_text(AcDbObjectId id) {
  if (id.isNull() || id.isErased() || cad::record_kind(id) != "TEXT") return std::nullopt;
  const cad::RecordTags record = cad::record_tags(id);
  const cad::EntityFields fields(record.bytes, *record.dialect);
  StoredText text{fields.text(kText), fields.real(kHeight), fields.real(kWidthFactor, 1.0), {}};
  text.placed.horizontal = static_cast<AcDb::TextHorzMode>(fields.integer(kAcross));
  text.placed.vertical = static_cast<AcDb::TextVertMode>(fields.integer(kUp));
  const bool by_its_start =
      text.placed.horizontal == AcDb::kTextLeft && text.placed.vertical == AcDb::kTextBase;
  text.placed.at =
      cad::ocs_to_wcs(fields.normal()) * fields.point(by_its_start ? kStart : kAlignment);
  text.placed.rotation = fields.angle(kRotation);
  return text;
}

}  // namespace

std::optional<TextCircle> text_circle(AcDbObjectId id) {
  constexpr double kWidestLetter = 2.0;  // in text heights; those of fonts are narrower
  const std::optional<StoredText> text = read_text(id);
  if (!text) return std::nullopt;
  const double letter = text->height * kWidestLetter * std::max(1.0, std::fabs(text->width_factor));
  return TextCircle{text->placed.at, static_cast<double>(text->shown.size() + 1) * letter};
}

std::optional<Box> text_box(AcDbObjectId id) {
  if (std::optional<StoredText> text = read_text(id)) {
    const bool measured =
        KT::GetTextWidth(text->shown, text->height, text->placed.width, 0, text->width_factor);
    return measured ? std::optional(box_of(text->placed, text->height)) : std::nullopt;
  }
  if (id.isNull() || !cad::stored_text(id)) return std::nullopt;
  const dim::Opened<AcDbText> attribute(id, AcDb::kForRead);
  return attribute ? box_of_text(*attribute) : std::nullopt;
}

}  // namespace labeler
