#include "labeler/check.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "module/platform/opened.h"
#include "module/platform/text.h"

namespace labeler {
namespace {

/// Adds rows to a check.
class FindingRows {
 public:
  FindingRows(Check& check, const Owner& owner, const LabelType& type)
      : check_(check), owner_(owner.id), type_(type.name) {}
  void add(Reason reason, CString item, CString was, CString now) {
    check_.findings.push_back({owner_,
                               type_,
                               std::move(item),
                               std::move(was),
                               std::move(now),
                               reason,
                               Action::kNone,
                               {}});
  }

 private:
  Check& check_;
  AcDbObjectId owner_;
  const wchar_t* type_;
};

bool same_names(const TextLine& a, const TextLine& b) {
  return std::equal(a.pieces.begin(), a.pieces.end(), b.pieces.begin(), b.pieces.end(),
                    [](const Piece& x, const Piece& y) { return x.name == y.name; });
}

bool same_form(const std::vector<StoredLine>& stored, const std::vector<TextLine>& lines) {
  return std::equal(stored.begin(), stored.end(), lines.begin(), lines.end(),
                    [](const StoredLine& a, const TextLine& b) { return same_names(a.line, b); });
}

CString name_of(const TextLine& line) {
  return line.pieces.empty() ? CString() : line.pieces.front().name;
}

/// What somebody has written over, unless that is what should stand there.
bool is_edited(const StoredLine& line, const TextLine* wanted) {
  if (!line.shown.there || line.shown.text == line.line.text()) return false;
  return !wanted || line.shown.text != wanted->text();
}

void compare_pieces(Check& check, FindingRows& findings) {
  for (std::size_t i = 0; i < check.stored.lines.size(); ++i) {
    const std::vector<Piece>& was = check.stored.lines[i].line.pieces;
    const std::vector<Piece>& now = check.draft.lines[i].pieces;
    for (std::size_t p = 0; p < was.size(); ++p) {
      if (was[p] == now[p]) continue;
      findings.add(Reason::kDataChanged, now[p].name, text_of(was[p]), text_of(now[p]));
      check.state = Check::State::kStaleText;
    }
  }
}

/// Line by line, for labels whose pieces are no longer the same ones.
void compare_forms(Check& check, FindingRows& findings) {
  const auto& was = check.stored.lines;
  const auto& now = check.draft.lines;
  for (std::size_t i = 0; i < std::max(was.size(), now.size()); ++i) {
    const CString old_text = i < was.size() ? was[i].line.text() : CString();
    const CString new_text = i < now.size() ? now[i].text() : CString();
    if (i < was.size() && i < now.size() && same_names(was[i].line, now[i]) && old_text == new_text)
      continue;
    findings.add(Reason::kDataChanged, i < now.size() ? name_of(now[i]) : name_of(was[i].line),
                 old_text, new_text);
  }
  check.state = Check::State::kStaleForm;
}

void find_missing(Check& check, FindingRows& findings) {
  for (std::size_t i = 0; i < check.stored.lines.size(); ++i) {
    const StoredLine& line = check.stored.lines[i];
    if (line.shown.there) continue;
    const CString now = i < check.draft.lines.size() ? check.draft.lines[i].text() : CString();
    findings.add(Reason::kIncomplete, name_of(line.line), line.line.text(), now);
    check.state = Check::State::kStaleForm;
  }
  if (check.stored.others_missing == 0) return;
  findings.add(Reason::kIncomplete, {}, Gx::Format(L"%d erased", check.stored.others_missing), {});
  check.state = Check::State::kStaleForm;
}

CString degrees(double angle) {
  constexpr double kTurn = 2 * std::numbers::pi;
  double turned = std::fmod(angle, kTurn);
  if (turned < 0.0) turned += kTurn;
  return Gx::Format(L"%.2f", turned * 180.0 / std::numbers::pi);
}

void compare_arrow(Check& check, FindingRows& findings) {
  if (check.stored.arrow.isNull()) return;
  if (check.draft.flow == 0) {
    findings.add(Reason::kDataChanged, L"jt", L"arrow", {});
    check.state = Check::State::kStaleForm;
    return;
  }
  dim::Opened<AcDbBlockReference> arrow(check.stored.arrow, AcDb::kForRead);
  if (!arrow) return;
  const double wanted =
      check.draft.flow > 0 ? check.place.along : check.place.along + std::numbers::pi;
  // On a bend an arrow may follow the pipe where it stands: only the other way round is wrong.
  if (std::cos(arrow->rotation() - wanted) > 0.0) return;
  check.turned = true;
  findings.add(Reason::kDataChanged, L"jt", degrees(arrow->rotation()), degrees(wanted));
}

CString coordinates(double x, double y) { return Gx::Format(L"%.3f, %.3f", x, y); }

/// Of the ticks of stakes.
AcGePoint3d middle_of_ticks(const Shape& shape) {
  AcGePoint3d middle;
  const auto share = 0.5 / static_cast<double>(shape.lines.size());
  for (const auto& [from, to] : shape.lines) {
    middle.x += (from.x + to.x) * share;
    middle.y += (from.y + to.y) * share;
  }
  return middle;
}

void compare_place(Check& check, const Owner& owner, const ReadingAngle& reading,
                   FindingRows& findings) {
  if (!check.stored.place) return;
  const DrawnPlace& was = *check.stored.place;
  DrawnPlace now;
  now.x = check.place.anchor.x;
  now.y = check.place.anchor.y;
  bool same = std::hypot(now.x - was.x, now.y - was.y) < kSamePlace &&
              same_angle(check.place.angle, was.angle);
  if (check.draft.form == Form::kStakes) {
    // All along the route: by the middle of its stakes.
    const std::vector<double> widths(check.draft.lines.size());
    const Shape shape = shape_of(check.draft, owner, check.place, Sizes(), reading, widths);
    const AcGePoint3d middle = middle_of_ticks(shape);
    same = same && std::hypot(middle.x - was.text_x, middle.y - was.text_y) < kSamePlace;
  }
  if (!same) {
    check.moved = true;
    findings.add(Reason::kMoved, {}, coordinates(was.x, was.y), coordinates(now.x, now.y));
  }
}

/// Asked for labels with something to do only.
bool was_moved_by_hand(const Check& check) {
  if (!check.stored.place || check.draft.form == Form::kStakes || check.stored.lines.empty())
    return false;
  const StoredLine& first = check.stored.lines.front();
  const AcGePoint3d at = place_shown(first.entity);
  return first.shown.there && std::hypot(at.x - check.stored.place->text_x,
                                         at.y - check.stored.place->text_y) > kSamePlace;
}

void find_edited(Check& check, FindingRows& findings) {
  for (std::size_t i = 0; i < check.stored.lines.size(); ++i) {
    const StoredLine& line = check.stored.lines[i];
    const TextLine* const wanted = i < check.draft.lines.size() ? &check.draft.lines[i] : nullptr;
    if (!is_edited(line, wanted)) continue;
    check.edited = true;
    findings.add(Reason::kEdited, name_of(line.line), line.shown.text,
                 wanted ? wanted->text() : CString());
  }
}

}  // namespace

CString text_of(const Piece& piece) { return piece.prefix + piece.value + piece.suffix; }

DrawnPlace drawn_place(const Draft& draft, const Place& place, const Shape& shape,
                       double reference) {
  DrawnPlace drawn;
  drawn.x = place.anchor.x;
  drawn.y = place.anchor.y;
  drawn.angle = place.angle;
  drawn.variant = place.variant;
  drawn.reference = reference;
  if (shape.texts.empty()) return drawn;
  const AcGePoint3d at =
      draft.form == Form::kStakes ? middle_of_ticks(shape) : shape.texts.front().at;
  drawn.text_x = at.x;
  drawn.text_y = at.y;
  return drawn;
}

Check compare(const Owner& owner, const LabelType& type, StoredLabel stored, Drafted drafted,
              const ReadingAngle& reading) {
  Check check;
  check.stored = std::move(stored);
  if (!check.stored.anything_there()) return check;
  FindingRows findings(check, owner, type);
  if (!drafted.draft) {
    check.state = Check::State::kNoData;
    const CString was = check.stored.lines.empty() ? CString() : check.stored.lines[0].line.text();
    findings.add(Reason::kNoData, {}, was, drafted.why_not ? drafted.why_not : L"");
    return check;
  }
  check.draft = *std::move(drafted.draft);
  check.state = Check::State::kUpToDate;
  const int variant = check.stored.place ? check.stored.place->variant : 0;
  check.place = place_of(check.draft.form, owner, variant, reading);
  find_edited(check, findings);
  if (same_form(check.stored.lines, check.draft.lines))
    compare_pieces(check, findings);
  else
    compare_forms(check, findings);
  find_missing(check, findings);
  compare_arrow(check, findings);
  compare_place(check, owner, reading, findings);
  if (!check.findings.empty()) check.moved_by_hand = was_moved_by_hand(check);
  return check;
}

}  // namespace labeler
