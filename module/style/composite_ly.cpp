// Composite labels of drawing standard LY: five slots, code and nominal size among the items.
#include <array>
#include <span>

#include "module/style/composite_pieces.h"
#include "module/style/style.h"

namespace {

using dim::LabelText;

/// "600" or, of a section, "2000x1500".
void append_nominal_size(LabelText& label, const dim::PipeValues& pipe) {
  if (Gx::IsValidData(pipe.section.width)) {
    label.whole(dim::whole_part(pipe.section.width))
        .text(L"x")
        .whole(dim::whole_part(pipe.section.height));
  } else {
    label.whole(dim::whole_part(pipe.diameter));
  }
}

}  // namespace

bool CDimStyle::GetCompositeDim_LY(double diameter, double slope, double length, int material,
                                   const CString& code1, const CString& code2, const CString& code3,
                                   bool twin, const CStringArray& items, CStringArray& texts,
                                   int rectangular, double width, double height, double ratio,
                                   bool apart, int pipes) const {
  const tdfGdcdpdbz& s = m_pipeLabels;
  const dim::PipeValues pipe{
      diameter, slope, length, material, {rectangular != 0, width, height, ratio, twin}, pipes};
  LabelText made[dim::kNoSlot];
  dim::append_diameter(made[dim::kDiameterSlot], pipe, diameter_forms());
  dim::append_length(made[dim::kLengthSlot], length, s);
  dim::append_slope(made[dim::kSlopeSlot], slope, s);
  made[dim::kCodeSlot].text(code1).text(code2).text(code3);
  append_nominal_size(made[dim::kNominalSlot], pipe);

  std::array<std::wstring_view, 5> collected;
  std::size_t count = 0;
  for (const CString* word : {&s.compositeSlot1, &s.compositeSlot2, &s.compositeSlot3,
                              &s.compositeSlot4, &s.compositeSlot5}) {
    const dim::Slot slot = dim::slot_of(*word, true);
    if (dim::names_item(items, slot) && !made[slot].view().empty())
      collected[count++] = made[slot].view();
  }
  if (count == 0) return false;
  const std::span<const std::wstring_view> parts(collected.data(), count);
  if (s.compositeSeparateLines != 0 || apart) {
    for (const std::wstring_view part : parts) texts.emplace_back(part);
    return true;
  }
  LabelText all;
  all.text(parts.front());
  for (const std::wstring_view part : parts.subspan(1)) all.text(s.compositeSeparator).text(part);
  texts.push_back(all.str());
  return true;
}
