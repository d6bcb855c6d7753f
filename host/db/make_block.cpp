// Blocks made from groups.

#include <algorithm>

#include "host/base/fold.h"
#include "host/db/block_frame.h"
#include "host/db/draft.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"
#include "host/db/object_access.h"

namespace cad {
namespace {

/// An entity of the list and the parts behind it.
struct Entity {
  std::vector<GroupView> main;
  std::vector<std::vector<GroupView>> parts;
};

std::wstring_view kind_of(std::span<const GroupView> groups) {
  for (const GroupView& group : groups)
    if (group.code == 0) return group.text;
  return {};
}

std::vector<Entity> entities_of(std::span<const GroupList> lists) {
  std::vector<Entity> entities;
  bool in_parts = false;
  for (const GroupList& list : lists) {
    std::vector<GroupView> groups = views_of(list);
    const std::wstring kind = folded(kind_of(groups));
    if (in_parts && kind == L"seqend") {
      in_parts = false;
    } else if (in_parts) {
      entities.back().parts.push_back(std::move(groups));
    } else {
      const GroupValue* follow = list.find(66);
      const auto* flag = follow ? std::get_if<std::int64_t>(&follow->value) : nullptr;
      in_parts = kind == L"polyline" || (kind == L"insert" && flag && *flag != 0);
      entities.push_back({std::move(groups), {}});
    }
  }
  return entities;
}

/// Whether an entity shows the block itself.
bool shows(std::span<const Entity> entities, std::wstring_view block) {
  return std::any_of(entities.begin(), entities.end(), [&](const Entity& entity) {
    if (folded(kind_of(entity.main)) != L"insert") return false;
    return std::any_of(entity.main.begin(), entity.main.end(), [&](const GroupView& group) {
      return group.code == 2 && equal_no_case(group.text, block);
    });
  });
}

bool defines_attributes(std::span<const Entity> entities) {
  return std::any_of(entities.begin(), entities.end(), [](const Entity& entity) {
    return folded(kind_of(entity.main)) == L"attdef";
  });
}

}  // namespace

Result<AcDbObjectId> make_block(AcDbDatabase& database, std::wstring_view name,
                                const AcGePoint3d& base, std::span<const GroupList> lists) {
  Drawing& drawing = database.drawing();
  const bool anonymous = name.size() >= 2 && name.front() == L'*';
  if (!anonymous && !is_symbol_name(name, drawing.has_long_names()))
    return fail("BLOCK", "\"" + to_utf8(name) + "\" cannot be a name (group 2)");
  if (is_space_name(name)) return fail("BLOCK", to_utf8(name) + " is a space of the drawing");
  std::vector<Entity> entities = entities_of(lists);
  for (const Entity& entity : entities)
    if (Status status = check_entity(database, entity.main, entity.parts); !status)
      return status.error();
  if (shows(entities, name)) return fail("BLOCK", to_utf8(name) + " would contain itself");

  const std::int64_t flags =
      (anonymous ? kAnonymousBlock : 0) | (defines_attributes(entities) ? kBlockWithAttributes : 0);
  std::uint64_t number = 1;
  const Drawing::Block* old = anonymous ? nullptr : drawing.block_named(name);
  Stub& stub = old ? empty_block(drawing, *old, base, flags)
                   : add_empty_block(drawing,
                                     anonymous ? anonymous_block_name(drawing, name[1], number)
                                               : std::wstring(name),
                                     base, flags);
  const AcDbObjectId block(&stub);
  for (const Entity& entity : entities) {
    const Result<AcDbObjectId> made = make_entity(database, block, entity.main, entity.parts);
    if (!made) return made.error();
  }
  return block;
}

}  // namespace cad
