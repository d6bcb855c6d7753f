#include "host/app/select/selection.h"

#include <algorithm>
#include <string>

#include "host/db/record_groups.h"
#include "host/base/fold.h"
#include "host/db/block.h"
#include "host/db/drawing.h"
#include "host/db/open.h"
#include "host/db/symbol_table.h"
#include "host/lisp/error.h"

namespace cad {
namespace {

using Ids = std::vector<AcDbObjectId>;

template <class T>
void close(T* object) {
  if (object) object->close();
}

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
      close(block);
    }
    delete walk;
  }
  close(blocks);
}

/// All spaces, newest first.
Ids all_entities(AcDbDatabase& database) {
  Ids ids;
  append_other_layouts(database, ids);
  for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id))
    if (!is_sub_entity(id)) ids.push_back(id);
  std::reverse(ids.begin(), ids.end());
  return ids;
}

/// State of the layers, asked once per selection.
class Layers {
 public:
  explicit Layers(AcDbDatabase& database) : database_(database) {}

  bool is_locked(AcDbObjectId entity, RecordGroups& scratch) {
    return state(entity, scratch).locked;
  }
  bool is_frozen(AcDbObjectId entity, RecordGroups& scratch) {
    return state(entity, scratch).frozen;
  }

 private:
  struct State {
    bool locked = false;
    bool frozen = false;
  };

  const State& state(AcDbObjectId entity, RecordGroups& scratch) {
    scratch.read(entity);
    const Group* const group = scratch.find(8);
    const std::wstring name = group ? folded(scratch.text(*group)) : L"0";
    const auto [found, is_new] = states_.try_emplace(name);
    if (is_new) found->second = read(name);
    return found->second;
  }

  State read(const std::wstring& name) const {
    State state;
    AcDbLayerTable* table = nullptr;
    if (database_.getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return state;
    AcDbObjectId id;
    AcDbLayerTableRecord* layer = nullptr;
    if (table->getAt(name.c_str(), id) == Acad::eOk &&
        acdbOpenObject(layer, id, AcDb::kForRead) == Acad::eOk)
      state = {layer->isLocked(), layer->isFrozen()};
    close(layer);
    close(table);
    return state;
  }

  AcDbDatabase& database_;
  std::map<std::wstring, State> states_;
};

/// The mode without "_", and whether ":L" (no locked layers) stood in it.
struct Mode {
  std::wstring word;
  bool skips_locked = false;
};

Mode read_mode(std::wstring_view text) {
  Mode mode;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'_') continue;
    if (text[i] == L':' && i + 1 < text.size()) {
      mode.skips_locked = mode.skips_locked || fold_ascii(text[i + 1]) == L'l';
      ++i;  // ":S", ":E", ":N", ... say how the user is asked
    } else if (text[i] != L'+' && text[i] != L'.' && text[i] != L'-') {
      mode.word += fold_ascii(text[i]);
    }
  }
  return mode;
}

Ids select_all(DocumentSession& session) {
  AcDbDatabase& database = session.database();
  const AcDbHandle space = database.currentSpaceId().handle();
  Layers layers(database);
  RecordGroups scratch;
  Ids ids = all_entities(database);
  std::erase_if(ids, [&](AcDbObjectId id) {
    const std::uint64_t owner = id.stub()->owner;
    return (owner != 0 && owner != space.value()) || layers.is_frozen(id, scratch) ||
           layers.is_locked(id, scratch);
  });
  return ids;
}

Ids select_last(DocumentSession& session) {
  const Ids ids = all_entities(session.database());
  return ids.empty() ? Ids() : Ids{ids.front()};
}

Ids select_previous(DocumentSession& session) {
  Ids ids = session.previous_selection;
  std::erase_if(ids, [](AcDbObjectId id) { return id.isErased(); });
  return ids;
}

Ids select_by_user(DocumentSession& session) { return session.take_selection(); }

Ids select_whole_drawing(DocumentSession& session) { return all_entities(session.database()); }

struct ModeRow {
  std::wstring_view word;
  Ids (*select)(DocumentSession&);
};
constexpr ModeRow kModes[] = {
    {L"", select_by_user},   {L"x", select_whole_drawing}, {L"a", select_all}, {L"l", select_last},
    {L"p", select_previous}, {L"i", select_by_user},  // what was selected before the command
};
constexpr std::wstring_view kScreenModes[] = {L"w", L"c", L"cp", L"wp", L"f", L"b"};

}  // namespace

std::vector<AcDbObjectId> select(DocumentSession& session, std::wstring_view text,
                                 const SelectionFilter& filter) {
  const Mode mode = read_mode(text);
  const auto* const row = std::find_if(std::begin(kModes), std::end(kModes),
                                       [&](const ModeRow& r) { return r.word == mode.word; });
  if (row == std::end(kModes)) {
    const bool needs_screen = std::find(std::begin(kScreenModes), std::end(kScreenModes),
                                        mode.word) != std::end(kScreenModes);
    lisp::raise((needs_screen ? L"ssget mode needs a screen: " : L"bad ssget mode string: ") +
                std::wstring(text));
  }
  Ids ids = row->select(session);
  RecordGroups scratch;
  Layers layers(session.database());
  std::erase_if(ids, [&](AcDbObjectId id) {
    return !filter.matches(id, scratch) || (mode.skips_locked && layers.is_locked(id, scratch));
  });
  if (!ids.empty()) session.previous_selection = ids;
  return ids;
}

}  // namespace cad
