#include "labeler/back_links.h"

#include "labeler/layout.h"
#include "module/platform/drawing.h"
#include "module/platform/opened.h"
#include "module/platform/resbuf.h"

namespace labeler {
namespace {

constexpr short kApplicationGroup = 1001, kHandleGroup = 1005;

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
  if (!opened) return std::nullopt;
  const dim::ResbufChain data(opened->xData(kLabelApplication));
  for (const resbuf* at = data.get(); at; at = at->rbnext) {
    if (at->restype != kHandleGroup || !at->resval.rstring) continue;
    BackLink link;
    link.owner = at->resval.rstring;
    const AcDbObjectId owner = dim::object_of_handle(link.owner.c_str());
    link.owner_there = !owner.isNull() && !owner.isErased();
    return link;
  }
  return std::nullopt;
}

std::optional<Box> text_box(AcDbObjectId id) {
  dim::Opened<AcDbText> text(id, AcDb::kForRead);
  if (!text) return std::nullopt;
  PlacedText placed;
  ACHAR* shown = text->textString();
  const bool measured =
      KT::GetTextWidth(shown ? shown : L"", text->height(), placed.width, 0, text->widthFactor());
  acutDelString(shown);
  if (!measured) return std::nullopt;
  placed.at = text->isDefaultAlignment() ? text->position() : text->alignmentPoint();
  placed.horizontal = text->horizontalMode();
  placed.vertical = text->verticalMode();
  placed.rotation = text->rotation();
  return box_of(placed, text->height());
}

}  // namespace labeler
