#include "host/app/select/selection.h"

#include <algorithm>
#include <string>
#include <utility>

#include "host/app/data/entget.h"
#include "host/app/prompt/user_input.h"
#include "host/app/select/entity_index.h"
#include "host/app/select/plan_selection.h"
#include "host/app/select/selection_dialog.h"
#include "host/base/fold.h"
#include "host/db/block.h"
#include "host/db/drawing.h"
#include "host/db/open.h"
#include "host/db/symbol_table.h"
#include "host/lisp/error.h"

namespace cad {
namespace {

using Ids = std::vector<AcDbObjectId>;
using How = Selection::How;
using Method = Selection::Method;
using Points = std::span<const AcGePoint3d>;

/// Entities of the layouts that are not active: their blocks are *Paper_Space0, 1, ...
void append_other_layouts(AcDbDatabase& database, Ids& ids) {
  constexpr std::wstring_view kPrefix = L"*Paper_Space";
  AcDbBlockTable* blocks = nullptr;
  if (database.getSymbolTable(blocks, AcDb::kForRead) != Acad::eOk) return;
  AcDbSymbolTableIterator* walk = nullptr;
  if (blocks->newIterator(walk) == Acad::eOk) {
    for (; !walk->done(); walk->step()) {
      AcDbObjectId id;
      AcDbBlockTableRecord* block = nullptr;
      if (walk->getRecordId(id) != Acad::eOk ||
          acdbOpenObject(block, id, AcDb::kForRead) != Acad::eOk)
        continue;
      const std::wstring name = block->name();
      AcDbBlockTableRecordIterator* entities = nullptr;
      if (name.size() > kPrefix.size() && equal_no_case(name.substr(0, kPrefix.size()), kPrefix) &&
          block->newIterator(entities) == Acad::eOk) {
        for (; !entities->done(); entities->step()) {
          AcDbObjectId entity;
          if (entities->getEntityId(entity) == Acad::eOk) ids.push_back(entity);
        }
        delete entities;
      }
      block->close();
    }
    delete walk;
  }
  blocks->close();
}

/// The mode without "_", and what stood in it behind colons.
struct Mode {
  std::wstring word;
  SelectionOptions options;
};

Mode read_mode(std::wstring_view text) {
  Mode mode;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'_') continue;
    if (text[i] == L':' && i + 1 < text.size()) {
      const wchar_t flag = fold_ascii(text[++i]);
      if (flag == L'l') mode.options.skips_locked = true;
      if (flag == L's') mode.options.single = true;
      if (flag == L'e') mode.options.everything_at_point = true;
    } else if (text[i] != L'+' && text[i] != L'.' && text[i] != L'-') {
      mode.word += fold_ascii(text[i]);
    }
  }
  return mode;
}

/// What a mode selects by itself.
struct Context {
  DocumentSession& session;
  Points points;
  const SelectionOptions& options;
};

Selection of(Ids ids, How how = {}) {
  Selection selection;
  selection.assign(std::move(ids), how);
  return selection;
}

Selection select_whole_drawing(const Context& context) {
  return of(all_entities(context.session.database()));
}

Selection select_all(const Context& context) {
  AcDbDatabase& database = context.session.database();
  const AcDbHandle space = database.currentSpaceId().handle();
  LayerStates layers(database);
  Ids ids = all_entities(database);
  std::erase_if(ids, [&](AcDbObjectId id) {
    const std::uint64_t owner = id.stub()->owner;
    if (owner != 0 && owner != space.value()) return true;
    const LayerStates::State& layer = layers.of(id);
    return layer.frozen || layer.locked;
  });
  return of(std::move(ids));
}

/// The newest of the current space.
Selection select_last(const Context& context) {
  AcDbDatabase& database = context.session.database();
  const std::uint64_t space = database.currentSpaceId().handle().value();
  const auto is_here = [&](AcDbObjectId id) {
    return id.stub()->owner == 0 || id.stub()->owner == space;
  };
  const AcDbObjectId last = last_main_entity(database);
  if (last.isNull() || is_here(last)) return last.isNull() ? Selection() : of({last});
  for (const AcDbObjectId id : all_entities(database))
    if (is_here(id)) return of({id});
  return {};
}

Selection select_previous(const Context& context) {
  Ids ids = context.session.previous_selection;
  std::erase_if(ids, [](AcDbObjectId id) { return id.isErased(); });
  return of(std::move(ids));
}

/// What was selected before the command, without asking.
Selection select_implied(const Context& context) {
  Ids ids = context.session.implied_selection;
  std::erase_if(ids, [](AcDbObjectId id) { return id.isErased(); });
  return of(ids.empty() ? context.session.take_selection() : std::move(ids));
}

Selection select_rectangle(const Context& context, bool crossing) {
  const AcGePoint3d a = context.points[0], b = context.points[1];
  Selection selection;
  const int number = selection.add_polygon({a, {b.x, a.y, a.z}, b, {a.x, b.y, b.z}});
  selection.assign(select_window(context.session, a, b, crossing),
                   {crossing ? Method::kCrossing : Method::kWindow, number});
  return selection;
}

Selection select_in_window(const Context& context) { return select_rectangle(context, false); }
Selection select_crossing(const Context& context) { return select_rectangle(context, true); }

/// A window drawn to the right, a crossing one drawn to the left.
Selection select_box(const Context& context) {
  return select_rectangle(context, context.points[1].x < context.points[0].x);
}

Selection select_by_polygon(const Context& context, bool crossing) {
  Selection selection;
  const int number = selection.add_polygon({context.points.begin(), context.points.end()});
  selection.assign(select_polygon(context.session, context.points, crossing),
                   {crossing ? Method::kCrossing : Method::kWindow, number});
  return selection;
}

Selection select_in_polygon(const Context& context) { return select_by_polygon(context, false); }
Selection select_crossing_polygon(const Context& context) {
  return select_by_polygon(context, true);
}

Selection select_by_fence(const Context& context) {
  Selection selection;
  for (FenceHit& hit : select_fence(context.session, context.points))
    selection.add(hit.entity, {Method::kFence}, std::move(hit.places));
  return selection;
}

Selection select_at_point(const Context& context) {
  Selection selection;
  const AcGePoint3d at = context.points[0];
  Ids ids = pick_all_at(context.session, at);
  if (!context.options.everything_at_point && ids.size() > 1) ids.resize(1);
  for (const AcDbObjectId id : ids) selection.add(id, {Method::kPick}, {at});
  return selection;
}

struct ModeRow {
  std::wstring_view word;
  std::size_t points;  ///< at least; 0: takes none
  bool list;           ///< of points, as many as there are
  Selection (*select)(const Context&);
};
constexpr ModeRow kModes[] = {
    {L"x", 0, false, select_whole_drawing}, {L"a", 0, false, select_all},
    {L"l", 0, false, select_last},          {L"p", 0, false, select_previous},
    {L"i", 0, false, select_implied},       {L"", 1, false, select_at_point},
    {L"w", 2, false, select_in_window},     {L"c", 2, false, select_crossing},
    {L"b", 2, false, select_box},           {L"box", 2, false, select_box},
    {L"wp", 3, true, select_in_polygon},    {L"cp", 3, true, select_crossing_polygon},
    {L"f", 2, true, select_by_fence},
};

const ModeRow* find_mode(std::wstring_view word) {
  for (const ModeRow& row : kModes)
    if (row.word == word) return &row;
  return nullptr;
}

/// What the user selects: what is selected already, the answer given beforehand, or a dialogue when
/// there is somebody to ask.
Selection select_by_user(DocumentSession& session, const Mode& mode,
                         const SelectionFilter& filter) {
  const lisp::Value pick_first = session.variables.get(session.interpreter(), L"PICKFIRST");
  const bool takes_implied = mode.word.empty() && pick_first.is_integer() &&
                             pick_first.integer() != 0 && !session.implied_selection.empty();
  if (takes_implied) return of(std::exchange(session.implied_selection, {}));
  if (mode.word.empty() && !session.selection_answer.empty()) return of(session.take_selection());
  if (!user_input().read_line) return {};
  SelectionOptions options = mode.options;
  options.filter = &filter;
  options.first_word = mode.word;
  return select_by_dialog(session, options, [](std::wstring_view prompt) {
    return std::optional<std::wstring>(ask_user(prompt));
  });
}

}  // namespace

bool Selection::add(AcDbObjectId id, How how, std::vector<AcGePoint3d> places) {
  if (id.isNull()) return false;
  know_all();
  if (!known_.insert(id.stub()).second) return false;
  ids_.push_back(id);
  hows_[id.stub()] = how;
  if (!places.empty()) places_[id.stub()] = std::move(places);
  return true;
}

bool Selection::remove(AcDbObjectId id) {
  know_all();
  if (known_.erase(id.stub()) == 0) return false;
  ids_.erase(std::find(ids_.begin(), ids_.end(), id));
  return true;
}

bool Selection::contains(AcDbObjectId id) const {
  know_all();
  return known_.contains(id.stub());
}

void Selection::assign(std::vector<AcDbObjectId> ids, How how) {
  ids_ = std::move(ids);
  common_ = how;
}

int Selection::add_polygon(std::vector<AcGePoint3d> corners) {
  polygons_.push_back(std::move(corners));
  return -static_cast<int>(polygons_.size());
}

void Selection::know_all() const {
  if (known_.size() == ids_.size()) return;
  for (const AcDbObjectId id : ids_) known_.insert(id.stub());
}

Selection::How Selection::how(AcDbObjectId id) const {
  const auto found = hows_.find(id.stub());
  return found == hows_.end() ? common_ : found->second;
}

std::span<const AcGePoint3d> Selection::places(AcDbObjectId id) const {
  const auto found = places_.find(id.stub());
  if (found == places_.end()) return {};
  return found->second;
}

std::vector<AcDbObjectId> all_entities(AcDbDatabase& database) {
  Ids ids;
  append_other_layouts(database, ids);
  for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id))
    if (!is_sub_entity(id)) ids.push_back(id);
  std::reverse(ids.begin(), ids.end());
  return ids;
}

bool takes_point_list(std::wstring_view mode) {
  const ModeRow* const row = find_mode(read_mode(mode).word);
  return row && row->list;
}

Selection select(DocumentSession& session, const SelectionRequest& request,
                 const SelectionFilter& filter) {
  Mode mode = read_mode(request.mode);
  if (!request.prompt.empty()) mode.options.prompt = request.prompt;
  if (!request.remove_prompt.empty()) mode.options.remove_prompt = request.remove_prompt;
  const ModeRow* const row = find_mode(mode.word);
  if (!row) lisp::raise(L"bad ssget mode string: " + std::wstring(request.mode));
  const bool asks = row->points > 0 && request.points.empty();
  if (!asks && request.points.size() < row->points)
    lisp::raise(L"bad ssget point list: " + std::to_wstring(row->points) +
                L" points are needed by mode \"" + std::wstring(request.mode) + L"\"");
  Selection found = asks ? select_by_user(session, mode, filter)
                         : row->select({session, request.points, mode.options});
  RecordGroups scratch;
  LayerStates layers(session.database());
  found.remove_if([&](AcDbObjectId id) {
    return (!filter.takes_all() && !filter.matches(id, scratch)) ||
           (mode.options.skips_locked && layers.of(id).locked);
  });
  if (!found.empty()) session.previous_selection = found.ids();
  return found;
}

std::vector<AcDbObjectId> select(DocumentSession& session, std::wstring_view mode,
                                 const SelectionFilter& filter) {
  return select(session, SelectionRequest{mode, {}}, filter).take_ids();
}

}  // namespace cad
