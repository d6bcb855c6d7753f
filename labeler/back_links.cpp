#include "labeler/back_links.h"

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

/// Handle of the owner that the entity names as a label of this module.
std::optional<CString> linked_handle(const AcDbEntity& entity) {
  const dim::ResbufChain data(entity.xData(kLabelApplication));
  for (const resbuf* at = data.get(); at; at = at->rbnext)
    if (at->restype == kHandleGroup && at->resval.rstring) return at->resval.rstring;
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
  dim::Opened<AcDbEntity> opened(entity, AcDb::kForRead);
  std::optional<CString> handle = opened ? linked_handle(*opened) : std::nullopt;
  if (!handle) return std::nullopt;
  const AcDbObjectId owner = dim::object_of_handle(handle->c_str());
  return BackLink{*std::move(handle), !owner.isNull() && !owner.isErased()};
}

bool may_be_label_of(AcDbObjectId owner, const AcDbEntity& entity) {
  if (const std::optional<CString> handle = linked_handle(entity))
    return dim::object_of_handle(handle->c_str()) == owner;
  return entity.objectId() != owner && !network::kind_of(entity.objectId());
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

std::optional<Box> text_box(AcDbObjectId id) {
  if (id.isNull() || id.isErased()) return std::nullopt;
  if (cad::record_kind(id) != "TEXT") {
    const dim::Opened<AcDbText> other(id, AcDb::kForRead);  // an attribute
    return other ? box_of_text(*other) : std::nullopt;
  }
  // All that is asked is read in one pass: a drawing holds as many texts as everything else.
  const cad::RecordTags record = cad::record_tags(id);
  const cad::EntityFields fields(record.bytes, *record.dialect);
  const CString shown = fields.text(kText);
  const double height = fields.real(kHeight);
  PlacedText placed;
  if (!KT::GetTextWidth(shown, height, placed.width, 0, fields.real(kWidthFactor, 1.0)))
    return std::nullopt;
  placed.horizontal = static_cast<AcDb::TextHorzMode>(fields.integer(kAcross));
  placed.vertical = static_cast<AcDb::TextVertMode>(fields.integer(kUp));
  const bool by_its_start =
      placed.horizontal == AcDb::kTextLeft && placed.vertical == AcDb::kTextBase;
  placed.at = cad::ocs_to_wcs(fields.normal()) * fields.point(by_its_start ? kStart : kAlignment);
  placed.rotation = fields.angle(kRotation);
  return box_of(placed, height);
}

}  // namespace labeler
