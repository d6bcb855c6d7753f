#include "labeler/pipe_drafts.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "module/manager/precision.h"
#include "module/registry/update_service.h"
#include "module/style/style.h"

namespace labeler {
namespace {

constexpr const wchar_t* kNoLength = L"has no length";
constexpr const wchar_t* kNothingKnown = L"has no diameter, length or slope to show";

CDimStyle& style() { return CDimStyle::Instance(); }

double value_or_none(std::optional<double> value) { return value.value_or(Gx::kNoData); }

bool is_twin_section(const CGxGd& pipe) { return pipe.is_rectangular() && pipe.parallel() == 2; }

/// What the formatters are given of a pipe.
struct PipeValues {
  explicit PipeValues(const Owner& owner)
      : pipe(*owner.pipe),
        diameter(value_or_none(pipe.diameter())),
        width(value_or_none(pipe.width())),
        height(value_or_none(pipe.height())),
        ratio(value_or_none(pipe.ratio())),
        material(pipe.material().value_or(0)),
        rectangular(pipe.is_rectangular()),
        parallel(pipe.parallel()),
        twin(is_twin_section(pipe)) {
    // As CGxGd::length() has it, without finding the curve again.
    const std::optional<double> measured = pipe.data().real(network::Key::kLength);
    length = measured ? *measured : owner.curve ? owner.curve->length() : Gx::kNoData;
    const std::optional<double> start = start_invert(pipe), end = end_invert(pipe);
    if (start && end && length > 0.0) slope = (*start - *end) / length;
  }

  const CGxGd& pipe;
  double diameter, width, height, ratio;
  int material, rectangular, parallel;
  bool twin;
  double length = Gx::kNoData;
  std::optional<double> slope;  ///< of the inverts over the length
};

/// The composite label of the items named.
CStringArray composite_texts(const PipeValues& v, const CStringArray& items) {
  const double slope = v.slope.value_or(0.0);
  CStringArray texts;
  if (style().GetLocalStyle() == LY) {
    style().GetCompositeDim_LY(v.diameter, slope, v.length, v.material, v.pipe.code(), L"", L"",
                               v.twin, items, texts, v.rectangular, v.width, v.height, v.ratio,
                               false, v.twin ? 1 : v.parallel);
  } else if (v.twin) {
    style().GetDRectCompositeDimEx(v.diameter, slope, v.length, v.material, items, texts,
                                   v.rectangular, v.width, v.height, v.ratio, false);
  } else {
    style().GetCompositeDimExt(v.diameter, slope, v.length, v.material, items, texts, v.rectangular,
                               v.width, v.height, v.ratio, false, v.parallel);
  }
  return texts;
}

CString length_name() {
  const auto* const settings = CDimUpdateServ::getInstance().getGcGpBzSz();
  return settings && settings->lengthUnit == 1 ? L"pipe_len_mm" : L"pipe_len";
}

CString slope_name() {
  constexpr const wchar_t* kNames[] = {L"pipe_i", L"pipe_ii", L"pipe_iii"};
  const auto* const settings = CDimUpdateServ::getInstance().getGcGpBzSz();
  const int unit = settings ? settings->slopeUnit : 0;
  return kNames[unit >= 0 && unit < 3 ? unit : 0];
}

/// A diameter as a piece. Others update a diameter as one whole number: what is none goes under the
/// name of the size as a whole, which is kept as text.
Piece diameter_piece_of(std::wstring_view text, int parallel) {
  std::wstring count;
  if (parallel >= 2) count = std::to_wstring(parallel) + L"x";
  const bool counted = !count.empty() && text.starts_with(count);
  const std::wstring_view size = counted ? text.substr(count.size()) : text;
  Piece piece = piece_of(L"pipe_dia", size);
  if (count_numbers(size) != 1 || piece.value.find(L'.') != CString::npos)
    return {L"pipe_gg", {}, CString(text), {}, {}};
  if (counted) piece.prefix.insert(0, count);
  return piece;
}

CString diameter_text_of(const PipeValues& v) {
  if (v.twin)
    return style().GetDRectPipeDnStr(v.diameter, v.material, v.rectangular, v.width, v.height,
                                     v.ratio);
  const CString text =
      style().GetDnStr(v.diameter, v.material, v.rectangular, v.width, v.height, v.ratio);
  if (v.parallel < 2 || text.empty()) return text;
  return std::to_wstring(v.parallel) + L"x" + text;
}

/// One item of the composite label. Its value is empty when there is nothing to show.
Piece piece_of_item(const PipeValues& v, const CString& item) {
  if (item == L"管径") return diameter_piece_of(diameter_text_of(v), v.parallel);
  if (item == L"管长") return piece_of(length_name(), style().GetPipeLongStr(v.length));
  if (item == L"坡度") return piece_of(slope_name(), style().GetPipePdStr(v.slope.value_or(0.0)));
  if (item == L"管代号") return {L"gdh", {}, v.pipe.code(), {}, {}};
  if (Gx::IsValidData(v.width))
    return piece_of(L"GC@pipe_dia",
                    Gx::Format(L"%dx%d", static_cast<int>(v.width), static_cast<int>(v.height)));
  return piece_of(L"GC@pipe_dia", Gx::Format(L"%d", static_cast<int>(v.diameter)));
}

/// The lines of the label in pieces; where the pieces do not make the text that is formatted (an
/// item is named twice, or the style has an item of its own), each line is one piece.
std::vector<TextLine> composite_lines(const PipeValues& v, const CStringArray& items) {
  bool separate = false;
  CString separator;
  style().GetFlag(separate, separator);
  const CStringArray texts = composite_texts(v, items);
  std::vector<TextLine> lines;
  lines.reserve(texts.size());
  bool twice = false;
  const auto is_named = [&](const CString& name) {
    return std::any_of(lines.begin(), lines.end(), [&](const TextLine& line) {
      return std::any_of(line.pieces.begin(), line.pieces.end(),
                         [&](const Piece& piece) { return piece.name == name; });
    });
  };
  for (const CString& item : items) {
    Piece piece = piece_of_item(v, item);
    if (piece.value.empty()) continue;
    twice = twice || is_named(piece.name);
    if (lines.empty() || texts.size() > 1) {
      lines.emplace_back();
      lines.back().pieces.reserve(texts.size() > 1 ? 1 : items.size());
    }
    if (!lines.back().pieces.empty()) lines.back().pieces.back().separator = separator;
    lines.back().pieces.push_back(std::move(piece));
  }
  const bool as_formatted =
      !twice &&
      std::equal(lines.begin(), lines.end(), texts.begin(), texts.end(),
                 [](const TextLine& line, const CString& text) { return line.text() == text; });
  if (as_formatted) return lines;
  lines.clear();
  for (const CString& text : texts)
    lines.push_back({{{std::to_wstring(lines.size() + 1) + L"@pipe_gg", {}, text, {}, {}}}});
  return lines;
}

int direction_of_flow(const Owner& owner) {
  double start = 0.0, end = 0.0;
  if (!network::flow_ends(*owner.pipe, start, end)) return 0;
  return start > end ? 1 : -1;
}

bool has_length(const Owner& pipe) { return pipe.curve && pipe.curve->length() > 0.0; }

Drafted one_line(Form form, const Owner& pipe, Piece piece) {
  if (!has_length(pipe)) return {{}, kNoLength};
  if (piece.value.empty()) return {};
  Draft draft;
  draft.form = form;
  draft.lines.push_back(line_of(std::move(piece)));
  return {std::move(draft), nullptr};
}

Drafted draft_invert(Form form, const Owner& pipe, std::optional<double> invert) {
  if (!invert) return has_length(pipe) ? Drafted{} : Drafted{{}, kNoLength};
  return one_line(form, pipe, piece_of(L"pipe_bgnd", style().GetBgStr(PIPEBOTTOM, *invert)));
}

/// A value of the network calculation, with the decimals its settings ask for.
void add_calculated(TextLine& line, const wchar_t* name, std::optional<double> value) {
  if (!value) return;
  const CDimUpdateServ& service = CDimUpdateServ::getInstance();
  const dim::PrecisionSettings settings{service.getGcGpBzSz(), service.getZdmGdBzSz(),
                                        service.getPcBzSz()};
  CString text = Gx::Format(L"%f", *value);
  if (settings.plan && settings.profile && settings.calculation)
    text = dim::rounded_value(name, text, settings);
  line.pieces.push_back({name, {}, text, {}, L"-"});
}

}  // namespace

std::optional<double> start_invert(const CGxGd& pipe) {
  return pipe.data().real(network::Key::kStartInvert);
}
std::optional<double> end_invert(const CGxGd& pipe) {
  return pipe.data().real(network::Key::kEndInvert);
}

const wchar_t* system_letter(network::Kind kind) {
  using network::Kind;
  switch (kind) {
    case Kind::kWaterPipe:
    case Kind::kWaterNode:
    case Kind::kHydrant:
      return L"J";
    case Kind::kDrainagePipe:
    case Kind::kDrainageWell:
      return L"P";
    case Kind::kStormPipe:
    case Kind::kStormWell:
      return L"Y";
    case Kind::kNone:
      break;
  }
  return L"";
}

Piece diameter_piece(const Owner& pipe) {
  const PipeValues values(pipe);
  return diameter_piece_of(diameter_text_of(values), values.parallel);
}

Drafted draft_composite(const Owner& owner) {
  if (!has_length(owner)) return {{}, kNoLength};
  CStringArray items;
  if (!style().GetDnOrderDims(items, system_letter(owner.pipe->kind()))) return {};
  const auto shown_flow = std::find(items.begin(), items.end(), L"水流方向");
  const bool with_flow = shown_flow != items.end();
  if (with_flow) items.erase(shown_flow);
  const PipeValues values(owner);
  if (!values.slope) std::erase(items, L"坡度");  // one that nobody measured would be printed
  Draft draft;
  draft.lines = composite_lines(values, items);
  if (draft.lines.empty()) return {{}, kNothingKnown};
  draft.in_a_row = draft.lines.size() > 1 && !style().IsVerticalDimMode();
  if (draft.in_a_row) draft.above = draft.lines.size();
  if (with_flow) draft.flow = direction_of_flow(owner);
  return {std::move(draft), nullptr};
}

Drafted draft_end_diameter(const Owner& owner) {
  return one_line(Form::kAtEnd, owner, diameter_piece(owner));
}

Drafted draft_start_invert(const Owner& owner) {
  return draft_invert(Form::kAtStart, owner, start_invert(*owner.pipe));
}

Drafted draft_end_invert(const Owner& owner) {
  return draft_invert(Form::kAtEnd, owner, end_invert(*owner.pipe));
}

Drafted draft_calculation(const Owner& owner) {
  if (!has_length(owner)) return {{}, kNoLength};
  const CGxGd& pipe = *owner.pipe;
  TextLine above, below;
  add_calculated(above, L"pipe_len_pc", pipe.length());
  if (Piece diameter = diameter_piece(owner); !diameter.value.empty())
    above.pieces.push_back(std::move(diameter));
  add_calculated(below, L"pipe_flow", pipe.flow());
  add_calculated(below, L"pipe_speed", pipe.speed());
  if (const auto length = pipe.length(); length && *length > 0.0 && pipe.head_loss())
    add_calculated(below, L"pipe_headi", *pipe.head_loss() / *length * 1000.0);
  Draft draft;
  for (TextLine* line : {&above, &below}) {
    if (line->pieces.empty()) continue;
    line->pieces.back().separator.clear();
    draft.lines.push_back(std::move(*line));
  }
  if (draft.lines.empty()) return {};
  return {std::move(draft), nullptr};
}

}  // namespace labeler
