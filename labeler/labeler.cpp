#include "labeler/labeler.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>
#include <utility>

#include "labeler/areas.h"
#include "labeler/back_links.h"
#include "labeler/entities.h"
#include "labeler/parallel.h"
#include "module/platform/opened.h"
#include "module/platform/records.h"
#include "module/style/style.h"

namespace labeler {
namespace {

// Paper millimetres.
constexpr double kGap = 1.0;
constexpr double kArrowLength = 15.0;
constexpr double kArrowWidth = 2.0;
constexpr double kNodeRadius = 2.0;
constexpr double kEndDistance = 4.0;
constexpr double kTick = 1.5;
constexpr double kLeaderLength = 12.0;

/// A text upon a text cannot be read, one upon a line can.
constexpr int kTextWeight = 4;

constexpr wchar_t kArrow[] = L"jt";
/// Note of a label whose arrow could not be drawn, so that it is not looked for.
constexpr wchar_t kNoArrowNote[] = L"bz_jt";

constexpr double kByMeasure = -1.0;  // text width factor: that of the settings
constexpr double kThinLine = -1.0;

Sizes sizes_of(const CDimDraw& draw) {
  const CDimStyle& style = CDimStyle::Instance();
  Sizes sizes;
  sizes.text_height = draw.TextHeight();
  sizes.gap = draw.PaperLongToCAD(kGap);
  sizes.line_space = draw.PaperLongToCAD(style.SwBzTxtLineSpace());
  sizes.text_space = draw.PaperLongToCAD(style.SwBzTxtTxtSpace());
  sizes.arrow_length = draw.PaperLongToCAD(kArrowLength);
  sizes.arrow_width = draw.PaperLongToCAD(kArrowWidth);
  sizes.node_radius = draw.PaperLongToCAD(kNodeRadius);
  sizes.end_distance = draw.PaperLongToCAD(kEndDistance);
  sizes.tick = draw.PaperLongToCAD(kTick);
  return sizes;
}

AcGeVector3d direction_of(double angle) { return {std::cos(angle), std::sin(angle), 0.0}; }

/// Moves all entities of a label.
bool move_label(const StoredLabel& label, const AcGeMatrix3d& map) {
  const auto move = [&](AcDbObjectId id) {
    dim::Opened<AcDbEntity> entity(id, AcDb::kForWrite);
    return entity && entity->transformBy(map) == Acad::eOk;
  };
  bool done = true;
  for (const StoredLine& line : label.lines) done = move(line.entity) && done;
  for (const AcDbObjectId id : label.others) done = move(id) && done;
  return done;
}

/// Of a cell of what is taken.
constexpr double kCellOfTextHeights = 6.0;

AcDbExtents grown(const AcDbExtents& extents, double by) {
  const AcGeVector3d way(by, by, 0.0);
  return {extents.minPoint() - way, extents.maxPoint() + way};
}

/// Where a pipe or a node of a network lies, without a look at its data.
AcDbExtents extents_of(AcDbObjectId id) {
  if (const std::optional<cad::Curve> curve = cad::curve_of(id)) return curve->extents();
  const AcGePoint3d at = network::position_of(id).value_or(AcGePoint3d());
  return {at, at};
}

/// For a label that is drawn for the first time.
DraftContext context_of(const LabelOptions& options) {
  DraftContext context{{}, options.stakes};
  context.leader.program = L"1";
  return context;
}

/// Number by which the boxes of an entity are filed.
std::uint64_t box_owner(AcDbObjectId entity) { return entity.handle().value(); }

}  // namespace

CString status_text(Acad::ErrorStatus status) {
  switch (status) {
    case Acad::eOnLockedLayer:
      return L"its layer is locked";
    case Acad::eWasErased:
      return L"it was erased";
    case Acad::eWasOpenForRead:
    case Acad::eWasOpenForWrite:
      return L"it is open elsewhere";
    case Acad::eNotInitializedYet:
      return L"the drawing can hold no records; save it in a later release";
    default:
      return Gx::Format(L"the drawing refuses it (status %d)", static_cast<int>(status));
  }
}

// A preview without a world draw is the database mode that leaves the current layer alone.
Labeler::Labeler(Tell tell)
    : tell_(std::move(tell)),
      draw_(WDLGX::GetCTBL(), static_cast<AcGiWorldDraw*>(nullptr), nullptr) {
  sizes_ = sizes_of(draw_);
}

Labeler::~Labeler() = default;

void Labeler::tell(const Owner& owner, const LabelType& type, const CString& what) {
  tell_(describe(owner) + L" (" + type.name + L"): " + what);
}

ReadingAngle Labeler::reading(double reference) {
  return [this, reference](const AcGePoint3d& base, double along) {
    // The places tried for a label mostly have one direction.
    if (last_read_ && last_read_->reference == reference && last_read_->along == along)
      return last_read_->angle;
    const AcGePoint3d ahead = base + direction_of(along);
    draw_.SetReferenceDirection(base, reference, along);
    const bool flipped = draw_.DrawToOriginalPoint(ahead).distanceTo(ahead) > 1.0;
    draw_.SetMatrix(AcGeMatrix3d());
    const double angle = Gx::CalcDimAng(along);
    last_read_ = {reference, along,
                  flipped ? std::fmod(angle + std::numbers::pi, 2 * std::numbers::pi) : angle};
    return last_read_->angle;
  };
}

double Labeler::width_of(const CString& text) const {
  double width = 0.0;
  KT::GetTextWidth(text, sizes_.text_height, width, 0, Gx::GetTextWidthFactor());
  return width;
}

void Labeler::keep_clear(std::span<const Owner> parts) {
  constexpr std::size_t kUsualBoxes = 3;  // of a part, its label and an arrow
  taken_.emplace(kCellOfTextHeights * sizes_.text_height);
  taken_->reserve(kUsualBoxes * parts.size());
  for (const Owner& part : parts) taken_->add(boxes_of(part, sizes_));
  for_each_entity([&](AcDbObjectId id) {
    if (const std::optional<Box> text = text_box(id))
      taken_->add(*text, box_owner(id), kTextWeight);
  });
}

void Labeler::keep_clear_at(std::span<const AcDbExtents> places) {
  constexpr double kAreaOfTextHeights = 30.0;
  Areas areas(kAreaOfTextHeights * sizes_.text_height);
  for (const AcDbExtents& place : places) areas.add(place);
  taken_.emplace(kCellOfTextHeights * sizes_.text_height);
  struct Row {
    AcDbObjectId id;
    bool near;
  };
  std::vector<Row> rows;
  for_each_entity([&](AcDbObjectId id) { rows.push_back({id, false}); });
  for_each_in_parallel(rows, [&](Row& row) {
    if (const std::optional<TextCircle> text = text_circle(row.id))
      row.near = areas.meet(grown({text->middle, text->middle}, text->radius));
    else
      row.near = cad::stored_text(row.id) ||  // an attribute
                 areas.meet(grown(extents_of(row.id), sizes_.node_radius));
  });
  for (const auto& [id, near] : rows) {
    if (!near) continue;
    if (const std::optional<Box> text = text_box(id))
      taken_->add(*text, box_owner(id), kTextWeight);
    else if (const std::optional<Owner> part = network_part(id))
      taken_->add(boxes_of(*part, sizes_));
  }
}

AcDbExtents Labeler::reach_of(const Owner& owner, const Draft& draft) const {
  // Nothing of a label is farther from its owner than all its parts in a row.
  double reach = sizes_.node_radius + sizes_.end_distance + sizes_.tick + sizes_.arrow_length +
                 draft.leader.distance + draw_.PaperLongToCAD(kLeaderLength);
  for (const TextLine& line : draft.lines)
    reach += width_of(line.text()) + sizes_.text_space + 2.0 * sizes_.text_height +
             sizes_.line_space + 2.0 * sizes_.gap;
  const AcDbExtents place =
      owner.curve ? owner.curve->extents() : AcDbExtents(owner.position, owner.position);
  return grown(place, reach);
}

AcDbExtents Labeler::reach_of(const Owner& owner, const LabelType& type,
                              const LabelOptions& options) {
  if (std::optional<StoredLabel> stored = read_label(owner.id, type.name))
    return reach_of(owner, check(owner, type, std::move(stored)).draft);
  DraftContext context = context_of(options);
  const Drafted drafted = type.draft(owner, context);
  return reach_of(owner, drafted.draft.value_or(Draft()));
}

/// The leader where the variant has it, unless the record says where it is.
LeaderPlacement Labeler::turned(const LeaderPlacement& leader, int variant,
                                double reference) const {
  LeaderPlacement turned = leader;
  if (leader.distance > 0.0) return turned;
  turned.distance = draw_.PaperLongToCAD(kLeaderLength);
  turned.leader_angle = leader_angle(variant) + reference;
  turned.text_angle = reference;
  return turned;
}

/// The first place that nothing else takes, else the one where the least does.
Labeler::Choice Labeler::choose(const Owner& owner, Draft& draft, std::span<const double> widths,
                                std::optional<int> fixed, double reference) {
  const ReadingAngle read = reading(reference);
  const LeaderPlacement leader = draft.leader;
  Choice choice;
  const auto take = [&](int variant) {
    choice.place = place_of(draft.form, owner, variant, read);
    if (draft.form == Form::kOnLeader) draft.leader = turned(leader, variant, reference);
    choice.shape =
        shape_of(draft, owner, choice.place, sizes_, read, widths, std::move(choice.shape));
  };
  const auto conflicts = [&](int enough) {
    room_.boxes = boxes_of(choice.shape, sizes_, std::move(room_.boxes));
    return taken_->conflicts(room_.boxes, enough);
  };
  const int first = fixed.value_or(0);
  take(first);
  if (!taken_) return choice;
  int best = first, last = first;
  int fewest = conflicts(std::numeric_limits<int>::max());
  for (int variant = 0; variant < variant_count(draft.form) && fewest > 0; ++variant) {
    if (variant == first) continue;
    take(last = variant);
    const int met = conflicts(fewest);
    if (met >= fewest) continue;
    fewest = met;
    best = variant;
  }
  if (best != last) take(best);
  choice.crowded = fewest > 0;
  return choice;
}

bool Labeler::mark(AcDbObjectId entity, AcDbObjectId owner) {
  if (!links_registered_) register_links(*owner.database());
  links_registered_ = true;
  return !entity.isNull() && link_to_owner(entity, owner) == Acad::eOk;
}

void Labeler::set_layer(const Owner& owner, const LabelType& type) {
  const network::Kind kind = owner.pipe   ? owner.pipe->kind()
                             : owner.node ? owner.node->kind()
                                          : network::Kind::kNone;
  const auto [row, is_new] = layers_.try_emplace({&type, kind});
  if (is_new) row->second = type.layer(owner);
  if (row->second == layer_) return;
  draw_.SetDrawLayer(row->second);
  layer_ = row->second;
}

Labeler::Drawn Labeler::draw(const Owner& owner, const LabelType& type, Draft draft,
                             std::optional<int> variant, double reference) {
  Drawn drawn;
  // An arrow between wells that are not known could not be turned later.
  if (draft.flow != 0 && !network::ends_of(*owner.pipe, owner.curve).found()) {
    draft.flow = 0;
    draft.notes.push_back(note_of(kNoArrowNote, L"NULL"));
  }
  std::vector<CString>& texts = room_.texts;
  std::vector<double>& widths = room_.widths;
  texts.clear();
  widths.clear();
  for (const TextLine& line : draft.lines) {
    texts.push_back(line.text());
    widths.push_back(width_of(texts.back()));
  }
  const auto [place, shape, crowded] = choose(owner, draft, widths, variant, reference);
  drawn.crowded = crowded;
  set_layer(owner, type);
  draw_.ClearEntityIdArray();
  dim::ItemTexts& items = room_.items;
  items.clear();
  std::vector<CString>& handles = room_.handles;  // of the items
  handles.clear();
  handles.reserve(shape.texts.size() + shape.lines.size() + 1);
  const auto handle_text = [&](AcDbObjectId id) -> const CString& {
    return handles.emplace_back(handle_of(id));
  };
  bool complete = true;
  for (std::size_t i = 0; i < shape.texts.size(); ++i) {
    const PlacedText& text = shape.texts[i];
    const AcDbObjectId id = draw_.DrawTextW(texts[i], text.at, text.horizontal, text.vertical,
                                            text.rotation, sizes_.text_height, kByMeasure);
    complete = complete && mark(id, owner.id);
    if (!complete) break;
    const CString& handle = handle_text(id);
    for (const Piece& piece : draft.lines[i].pieces)
      items.add_piece(piece.name, handle, piece.prefix, piece.value, piece.suffix, piece.separator);
    if (taken_) taken_->add(box_of(text, sizes_.text_height), box_owner(id), kTextWeight);
  }
  for (const auto& [from, to] : shape.lines) {
    if (!complete) break;
    const AcDbObjectId id = draw_.DrawLine(from, to, kThinLine);
    complete = mark(id, owner.id);
    if (!complete) break;
    const CString& handle = handle_text(id);
    items.add_entity(handle, handle, {});
  }
  if (complete && shape.arrow) {
    const AcDbObjectId id = draw_.LeftInsertArrow(
        shape.arrow->middle, direction_of(shape.arrow->direction), false, nullptr);
    if (id.isNull()) {
      draft.notes.push_back(note_of(kNoArrowNote, L"NULL"));
    } else {
      complete = mark(id, owner.id);
      items.add_entity(kArrow, handle_text(id), kArrow);
      if (taken_) taken_->add(box_of(*shape.arrow, sizes_), box_owner(id));
    }
  }
  std::vector<StuDim> leader;
  if (draft.form == Form::kOnLeader) leader = notes_of(draft.leader);
  for (const StuDim& note : leader) items.add(note);
  for (const StuDim& note : draft.notes) items.add(note);
  const CString drawn_at = place_text(drawn_place(draft, place, shape, reference));
  items.add_note(kPlaceNote, drawn_at);
  const Acad::ErrorStatus filed =
      complete ? file_label(owner.id, type.name, items) : Acad::eNotImplementedYet;
  if (filed == Acad::eOk) {
    drawn.done = true;
    return drawn;
  }
  for (const AcDbObjectId id : draw_.GetAllDimEntityId())
    if (dim::Opened<AcDbEntity> entity{id, AcDb::kForWrite}) entity->erase();
  tell(owner, type,
       L"cannot be labelled, " +
           (complete ? status_text(filed) : CString(L"a text could not be drawn")));
  return drawn;
}

void Labeler::label(const Owner& owner, const LabelType& type, const LabelOptions& options,
                    LabelCounts& counts) {
  std::optional<StoredLabel> stored = read_label(owner.id, type.name);
  if (stored && stored->anything_there()) {
    Check found = check(owner, type, std::move(stored));
    if (found.state == Check::State::kNoData || !update(owner, type, found, false))
      ++counts.skipped;
    else
      ++counts.updated;
    return;
  }
  DraftContext context = context_of(options);
  Drafted drafted = type.draft(owner, context);
  if (!drafted.draft) {
    if (!drafted.why_not) return;
    ++counts.skipped;
    return tell(owner, type, CString(drafted.why_not) + L"; no label");
  }
  if (const Acad::ErrorStatus status = can_be_recorded(owner.id); status != Acad::eOk) {
    ++counts.skipped;
    return tell(owner, type, L"cannot be labelled, " + status_text(status));
  }
  const Drawn drawn = draw(owner, type, *std::move(drafted.draft), std::nullopt, options.reference);
  ++(drawn.done ? counts.drawn : counts.skipped);
  if (drawn.done && drawn.crowded) ++counts.crowded;
}

Check Labeler::check(const Owner& owner, const LabelType& type) {
  return check(owner, type, read_label(owner.id, type.name));
}

Check Labeler::check(const Owner& owner, const LabelType& type, std::optional<StoredLabel> stored) {
  if (!stored) return {};
  DraftContext context;
  read_notes(stored->notes, context.leader);
  if (std::optional<StakePlan> stakes = stake_plan_of(stored->notes)) context.stakes = *stakes;
  const double reference = stored->place ? stored->place->reference : 0.0;
  const bool owner_fits = owner.kind == type.owner || type.owner == OwnerKind::kRoute;
  Drafted drafted = owner_fits ? type.draft(owner, context)
                               : Drafted{{},
                                         type.owner == OwnerKind::kPipe ? L"the owner is no pipe"
                                                                        : L"the owner is no node"};
  return compare(owner, type, *std::move(stored), std::move(drafted), reading(reference));
}

bool Labeler::rewrite(const Owner& owner, const LabelType& type, const Check& check) {
  std::vector<StuDim> items;
  for (std::size_t i = 0; i < check.draft.lines.size(); ++i)
    for (const Piece& piece : check.draft.lines[i].pieces)
      items.push_back(item_of(piece, check.stored.lines[i].handle));
  return rewrite_label(owner.id, type.name, items) == Acad::eOk;
}

/// Moves the label as it stands with its owner.
bool Labeler::follow(const Owner& owner, const LabelType& type, Check& check) {
  const DrawnPlace& was = *check.stored.place;
  DrawnPlace now = was;
  now.x = check.place.anchor.x;
  now.y = check.place.anchor.y;
  now.angle = check.place.angle;
  const AcGePoint3d from(was.x, was.y, 0.0);
  const AcGePoint3d to(now.x, now.y, 0.0);
  const AcGeMatrix3d turn = AcGeMatrix3d::rotation(now.angle - was.angle, AcGeVector3d::kZAxis, to);
  const AcGeMatrix3d map = turn * AcGeMatrix3d::translation(to - from);
  const bool done = move_label(check.stored, map);
  AcGePoint3d text(was.text_x, was.text_y, 0.0);
  text.transformBy(map);
  now.text_x = text.x;
  now.text_y = text.y;
  const StuDim note = note_of(kPlaceNote, place_text(now));
  return rewrite_label(owner.id, type.name, {note}) == Acad::eOk && done;
}

/// About its middle.
bool Labeler::turn_arrow(const Check& check) {
  dim::Opened<AcDbBlockReference> arrow(check.stored.arrow, AcDb::kForWrite);
  if (!arrow) return false;
  const double angle = arrow->rotation();
  const AcGePoint3d tip = arrow->position() + direction_of(angle) * sizes_.arrow_length;
  return arrow->setPosition(tip) == Acad::eOk &&
         arrow->setRotation(std::fmod(angle + std::numbers::pi, 2 * std::numbers::pi)) == Acad::eOk;
}

bool Labeler::redraw(const Owner& owner, const LabelType& type, Check& check) {
  std::optional<int> variant;
  double reference = 0.0;
  if (check.stored.place) {
    variant = check.stored.place->variant;
    reference = check.stored.place->reference;
  }
  if (taken_) {
    for (const StoredLine& line : check.stored.lines)
      if (line.shown.there) taken_->remove(box_owner(line.entity));
    for (const AcDbObjectId other : check.stored.others) taken_->remove(box_owner(other));
  }
  std::optional<AcGePoint3d> shown;
  if (check.moved_by_hand) shown = place_shown(check.stored.lines.front().entity);
  erase_entities(check.stored);
  if (!shown) return draw(owner, type, check.draft, variant, reference).done;
  // Its place is the user's choice.
  std::optional<Occupancy> set_aside;
  set_aside.swap(taken_);
  const bool done = draw(owner, type, check.draft, variant, reference).done &&
                    move_as_before(owner, type, check, *shown);
  taken_.swap(set_aside);
  return done;
}

/// Moves a label just drawn as far from its place as the one before, shown at that point, had been
/// moved by hand.
bool Labeler::move_as_before(const Owner& owner, const LabelType& type, const Check& check,
                             const AcGePoint3d& shown) {
  const std::optional<StoredLabel> drawn = read_label(owner.id, type.name);
  if (!drawn || !drawn->place) return false;
  const DrawnPlace& was = *check.stored.place;
  AcGeVector3d moved(shown.x - was.text_x, shown.y - was.text_y, 0.0);
  moved.rotateBy(drawn->place->angle - was.angle, AcGeVector3d::kZAxis);
  return move_label(*drawn, AcGeMatrix3d::translation(moved));
}

bool Labeler::redraws(const Check& check, bool overwrite_edited) {
  if (check.state == Check::State::kNoData || (check.edited && !overwrite_edited)) return false;
  return check.state == Check::State::kStaleForm || (check.moved && !check.moved_by_hand);
}

bool Labeler::update(const Owner& owner, const LabelType& type, Check& check,
                     bool overwrite_edited) {
  using State = Check::State;
  const auto all_became = [&](Action action, const CString& trouble = {}) {
    for (Finding& finding : check.findings) {
      finding.action = action;
      finding.trouble = trouble;
    }
    return action != Action::kFailed;
  };
  if (check.findings.empty()) return true;
  if (check.state == State::kNoData) return all_became(Action::kKept);
  if (check.edited && !overwrite_edited) return all_became(Action::kKept);
  if (const Acad::ErrorStatus status = can_be_written(check.stored); status != Acad::eOk) {
    tell(owner, type, L"the label is left as it is, " + status_text(status));
    return all_became(Action::kFailed, status_text(status));
  }
  if (redraws(check, overwrite_edited)) {
    if (const Acad::ErrorStatus status = can_be_recorded(owner.id); status != Acad::eOk) {
      tell(owner, type, L"cannot be redrawn, " + status_text(status));
      return all_became(Action::kFailed, status_text(status));
    }
    return all_became(redraw(owner, type, check) ? Action::kRedrawn : Action::kFailed);
  }
  bool done = true;
  if (check.state == State::kStaleText || check.edited) done = rewrite(owner, type, check);
  if (check.turned) done = turn_arrow(check) && done;
  if (check.moved) done = follow(owner, type, check) && done;
  const Action action = check.moved ? Action::kFollowed : Action::kUpdated;
  return all_became(done ? action : Action::kFailed);
}

}  // namespace labeler
