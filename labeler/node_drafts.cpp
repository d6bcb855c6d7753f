#include "labeler/node_drafts.h"

#include <utility>

#include "labeler/pipe_drafts.h"
#include "module/manager/draw_value.h"
#include "module/manager/precision.h"
#include "module/platform/text.h"
#include "module/registry/update_service.h"
#include "module/style/style.h"

namespace labeler {
namespace {

constexpr const wchar_t* kNoNumber = L"has no number";
/// How the placement items say that there is none.
constexpr wchar_t kNone[] = L"NULL";

CDimStyle& style() { return CDimStyle::Instance(); }

/// The label of the well's number; its value is the number alone where the label ends with it.
/// Hydrants have a prefix of their own; other wells without one no separator either.
Piece number_piece(const CGxJd& node) {
  const CString number = node.number(), prefix = node.prefix();
  if (number.empty()) return {};
  const bool prefixed = !prefix.empty() || node.IsKindOf(CGxXhs::GetThisClass());
  // Without prefix GetJdStr() of the entity answers the number, which was read with its other data.
  const CString text = prefixed ? style().GetJdStr(&node, prefix, number) : number;
  return piece_ending_with(L"well_bh", text, number);
}

CString calculated(const wchar_t* name, double value) {
  const CDimUpdateServ& service = CDimUpdateServ::getInstance();
  const dim::PrecisionSettings settings{service.getGcGpBzSz(), service.getZdmGdBzSz(),
                                        service.getPcBzSz()};
  CString text = Gx::Format(L"%f", value);
  if (!settings.plan || !settings.profile || !settings.calculation) return text;
  return dim::rounded_value(name, text, settings);
}

void add_line(Draft& draft, const wchar_t* name, std::optional<double> value) {
  if (value) draft.lines.push_back({{{name, {}, calculated(name, *value), {}, {}}}});
}

void add_elevation(Draft& draft, const wchar_t* name, ElevType type, std::optional<double> value) {
  if (value) draft.lines.push_back({{piece_of(name, style().GetBgStr(type, *value))}});
}

/// Diameter and invert of a pipe under names that hold its handle.
TextLine pipe_line(const Owner& pipe, bool at_start) {
  const CString handle = handle_of(pipe.id);
  TextLine line;
  Piece diameter = diameter_piece(pipe);
  if (!diameter.value.empty()) {
    diameter.separator = L" ";
    line.pieces.push_back(std::move(diameter));
  }
  if (const std::optional<double> invert =
          at_start ? start_invert(*pipe.pipe) : end_invert(*pipe.pipe))
    line.pieces.push_back(piece_of(L"pipe_bgnd", style().GetBgStr(PIPEBOTTOM, *invert)));
  for (Piece& piece : line.pieces) piece.name = handle + L"@" + piece.name;
  if (!line.pieces.empty()) line.pieces.back().separator.clear();
  return line;
}

}  // namespace

StuDim note_of(const wchar_t* name, CString value) {
  StuDim note;
  note.name = name;
  note.value = std::move(value);
  note.recordKind = dim::kNoEntityKind;
  return note;
}

Drafted draft_number(const Owner& node) {
  Piece number = number_piece(*node.node);
  if (number.value.empty()) return {{}, kNoNumber};
  Draft draft;
  draft.form = Form::kBesideNode;
  draft.lines.push_back(line_of(std::move(number)));
  return {std::move(draft), nullptr};
}

Drafted draft_node_calculation(const Owner& owner) {
  const CGxJd& node = *owner.node;
  Piece number = number_piece(node);
  if (number.value.empty()) return {{}, kNoNumber};
  Draft draft;
  draft.form = Form::kBesideNode;
  draft.lines.push_back(line_of(std::move(number)));
  add_line(draft, L"well_ll_pc", node.flow());
  add_line(draft, L"well_bgdm_pc", node.ground());
  add_line(draft, L"well_bgzyst", node.head());
  if (node.head() && node.ground()) add_line(draft, L"well_gdzy", *node.head() - *node.ground());
  return {std::move(draft), nullptr};
}

Drafted draft_well_and_pipes(const Owner& owner, std::span<const JoinedPipe> pipes,
                             const LeaderPlacement& placement) {
  const CGxJd& node = *owner.node;
  Draft draft;
  draft.form = Form::kOnLeader;
  Piece number = number_piece(node);
  if (number.value.empty()) return {{}, kNoNumber};
  draft.lines.push_back(line_of(std::move(number)));
  add_elevation(draft, L"well_bgdm", GROUND, node.ground());
  add_elevation(draft, L"well_bgjd", USUAL, node.bottom());
  for (const JoinedPipe& joined : pipes) {
    const std::optional<Owner> pipe = network_part(joined.pipe);
    if (!pipe || pipe->kind != OwnerKind::kPipe) continue;
    TextLine line = pipe_line(*pipe, joined.at_start);
    if (!line.pieces.empty()) draft.lines.push_back(std::move(line));
  }
  draft.leader = placement;
  return {std::move(draft), nullptr};
}

std::vector<StuDim> notes_of(const LeaderPlacement& placement) {
  const auto or_none = [](const CString& text) { return text.empty() ? CString(kNone) : text; };
  return {note_of(L"zh_mc", or_none(placement.stake_name)),
          note_of(L"ang_yx", dim::value_text(placement.leader_angle)),
          note_of(L"dist_jgbz", dim::value_text(placement.distance)),
          note_of(L"ang_wz", dim::value_text(placement.text_angle)),
          note_of(L"czfx_jgbz", or_none(placement.stake_type)),
          note_of(L"xfdh", or_none(placement.program))};
}

bool read_notes(std::span<const StuDim> items, LeaderPlacement& placement) {
  bool found = false;
  const auto read = [&](const wchar_t* name, auto take) {
    for (const StuDim& item : items)
      if (dim::equal_no_case(item.name, name)) {
        found = true;
        return take(item.value);
      }
  };
  const auto text_into = [](CString& out) {
    return [&out](const CString& value) {
      out = dim::equal_no_case(value, kNone) ? CString() : value;
    };
  };
  const auto real_into = [](double& out) {
    return [&out](const CString& value) { out = _wtof(value.c_str()); };
  };
  read(L"zh_mc", text_into(placement.stake_name));
  read(L"ang_yx", real_into(placement.leader_angle));
  read(L"dist_jgbz", real_into(placement.distance));
  read(L"ang_wz", real_into(placement.text_angle));
  read(L"czfx_jgbz", text_into(placement.stake_type));
  read(L"xfdh", text_into(placement.program));
  return found;
}

}  // namespace labeler
