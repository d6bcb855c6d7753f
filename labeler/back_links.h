#pragma once

#include <optional>

#include "labeler/occupancy.h"
#include "module/platform/objects.h"

/// Label entities know their owner: extended data of the application PIPENOTE_LABEL hold its
/// handle. Records lie with the owner and go with it; by the link a label that stays is recognised.
namespace labeler {

inline constexpr wchar_t kLabelApplication[] = L"PIPENOTE_LABEL";

/// Makes the application's name known to a drawing, once before its first link.
void register_links(AcDbDatabase& drawing);
/// eOk, or why the entity could not be written.
Acad::ErrorStatus link_to_owner(AcDbObjectId entity, AcDbObjectId owner);

struct BackLink {
  CString owner;             ///< handle as it stands
  bool owner_there = false;  ///< neither erased nor unknown
};
/// Nothing for an entity that is erased or no label of this module.
std::optional<BackLink> back_link_of(AcDbObjectId entity);

/// Whether an entity that the owner's record names can be a part of its label. Not the label of
/// another owner: a copied pipe brings the record of the original along. Not the owner itself, nor
/// a pipe or node: handles of records are texts, which no program translates when it gives entities
/// new handles. False for what is erased or no entity.
bool may_be_label_of(AcDbObjectId owner, AcDbObjectId entity);

/// What a text entity takes of the plan; nothing for other entities and texts without extent.
std::optional<Box> text_box(AcDbObjectId entity);
/// A circle that the text does not leave, found without measuring it; nothing for other entities
/// than TEXT. Several threads may ask.
struct TextCircle {
  AcGePoint3d middle;
  double radius;
};
std::optional<TextCircle> text_circle(AcDbObjectId entity);

}  // namespace labeler
