// Composite labels: diameter, length and slope of a pipe in one.
#include <array>
#include <utility>

#include "module/style/composite_pieces.h"
#include "module/style/style.h"

namespace {

using dim::DiameterForms;
using dim::LabelText;
using dim::PipeValues;
using dim::Slot;

/// Main text and the texts for further lines.
using Lines = std::array<std::wstring_view, 3>;

/// The texts that slots may take.
class SlotTexts {
 public:
  SlotTexts(const PipeValues& pipe, const tdfGdcdpdbz& settings, const DiameterForms& forms) {
    dim::append_diameter(texts_[dim::kDiameterSlot], pipe, forms);
    dim::append_length(texts_[dim::kLengthSlot], pipe.length, settings);
    dim::append_slope(texts_[dim::kSlopeSlot], pipe.slope, settings);
  }
  std::wstring_view operator[](Slot slot) const { return texts_[slot].view(); }

 private:
  LabelText texts_[dim::kCommonSlots];
};

std::array<Slot, 3> slots_of(const tdfGdcdpdbz& s) {
  return {dim::slot_of(s.compositeSlot1, false), dim::slot_of(s.compositeSlot2, false),
          dim::slot_of(s.compositeSlot3, false)};
}

void close_gaps(Lines& lines) {
  auto& [main, second, third] = lines;
  if (main.empty()) {
    main = std::exchange(second, std::exchange(third, {}));
  } else if (second.empty()) {
    second = std::exchange(third, {});
  }
  if (main.empty()) main = std::exchange(second, {});
}

CString joined(const Lines& lines, const CString& separator) {
  LabelText label;
  label.text(lines[0]);
  for (const std::wstring_view further : {lines[1], lines[2]})
    if (!further.empty()) label.text(separator).text(further);
  return label.str();
}

/// Appends the lines of the items named; true when `texts` holds anything then.
bool append_lines(const PipeValues& pipe, const tdfGdcdpdbz& settings, const DiameterForms& forms,
                  const CStringArray& items, bool apart, CStringArray& texts) {
  const SlotTexts made(pipe, settings, forms);
  const std::array<Slot, 3> slots = slots_of(settings);
  Lines lines;
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (dim::names_item(items, slots[i])) lines[i] = made[slots[i]];
  close_gaps(lines);
  if (lines[0].empty()) return false;
  if (settings.compositeSeparateLines == 0 && !apart) {
    texts.push_back(joined(lines, settings.compositeSeparator));
    return true;
  }
  for (const std::wstring_view line : lines)
    if (!line.empty()) texts.emplace_back(line);
  return true;
}

}  // namespace

CString CDimStyle::GetCompositeDim(double diameter, double slope, double length, int material,
                                   CString& second, CString& third, int rectangular, double width,
                                   double height, double ratio) const {
  const PipeValues pipe{
      diameter, slope, length, material, {rectangular != 0, width, height, ratio, false}, 1};
  const SlotTexts made(pipe, m_pipeLabels, diameter_forms());
  const std::array<Slot, 3> slots = slots_of(m_pipeLabels);
  Lines lines = {L"", second, third};
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (slots[i] != dim::kNoSlot) lines[i] = made[slots[i]];
  close_gaps(lines);
  if (lines[0].empty() || m_pipeLabels.compositeSeparateLines != 0) {
    // Copied before anything is assigned: the lines may look at the caller's texts.
    CString main(lines[0]), second_line(lines[1]), third_line(lines[2]);
    second = std::move(second_line);
    third = std::move(third_line);
    return main;
  }
  CString all = joined(lines, m_pipeLabels.compositeSeparator);
  second.clear();
  third.clear();
  return all;
}

bool CDimStyle::GetCompositeDimEx(double diameter, double slope, double length, int material,
                                  const CStringArray& items, CStringArray& texts, int rectangular,
                                  double width, double height, double ratio, bool apart) const {
  return GetCompositeDimExt(diameter, slope, length, material, items, texts, rectangular, width,
                            height, ratio, apart, 1);
}

bool CDimStyle::GetCompositeDimExt(double diameter, double slope, double length, int material,
                                   const CStringArray& items, CStringArray& texts, int rectangular,
                                   double width, double height, double ratio, bool apart,
                                   int pipes) const {
  const PipeValues pipe{
      diameter, slope, length, material, {rectangular != 0, width, height, ratio, false}, pipes};
  return append_lines(pipe, m_pipeLabels, diameter_forms(), items, apart, texts);
}

bool CDimStyle::GetDRectCompositeDimEx(double diameter, double slope, double length, int material,
                                       const CStringArray& items, CStringArray& texts,
                                       int rectangular, double width, double height, double ratio,
                                       bool apart) const {
  return GetDRectCompositeDimExt(diameter, slope, length, material, items, texts, rectangular,
                                 width, height, ratio, apart, 1);
}

bool CDimStyle::GetDRectCompositeDimExt(double diameter, double slope, double length, int material,
                                        const CStringArray& items, CStringArray& texts,
                                        int rectangular, double width, double height, double ratio,
                                        bool apart, int pipes) const {
  const PipeValues pipe{
      diameter, slope, length, material, {rectangular != 0, width, height, ratio, true}, pipes};
  return append_lines(pipe, m_pipeLabels, diameter_forms(), items, apart, texts);
}
