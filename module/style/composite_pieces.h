#pragma once

#include <algorithm>
#include <string_view>

#include "module/style/label_pieces.h"

namespace dim {

/// The words that fill composite slots in the settings, and the items that callers and item-order
/// lists name.
enum Slot { kDiameterSlot, kLengthSlot, kSlopeSlot, kCodeSlot, kNominalSlot, kNoSlot };
struct SlotWord {
  std::wstring_view word;
  std::wstring_view item;
};
inline constexpr SlotWord kSlotWords[kNoSlot] = {
    {L"DN", L"管径"},   {L"LL", L"管长"},       {L"PD", L"坡度"},
    {L"DH", L"管代号"}, {L"GCDN", L"公称直径"},
};
// The last two are known to drawing standard LY alone.
inline constexpr int kCommonSlots = kCodeSlot;

/// What a slot word stands for; kNoSlot for any other word.
inline Slot slot_of(std::wstring_view word, bool ly) {
  const int count = ly ? kNoSlot : kCommonSlots;
  for (int slot = 0; slot < count; ++slot)
    if (kSlotWords[slot].word == word) return static_cast<Slot>(slot);
  return kNoSlot;
}

/// Whether the list names the slot's item.
inline bool names_item(const CStringArray& items, Slot slot) {
  return slot != kNoSlot &&
         std::find(items.begin(), items.end(), kSlotWords[slot].item) != items.end();
}

/// What a composite label is made of.
struct PipeValues {
  double diameter;
  double slope;
  double length;
  int material;
  Section section;
  int pipes;  ///< parallel ones; below 2 they are not told
};

/// The diameter text of parallel pipes: 2xDN300.
inline void append_diameter(LabelText& label, const PipeValues& pipe, const DiameterForms& forms) {
  if (pipe.pipes >= 2) label.whole(pipe.pipes).text(L"x");
  append_diameter(label, pipe.diameter, pipe.material, pipe.section, forms);
}

}  // namespace dim
