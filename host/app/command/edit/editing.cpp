#include "host/app/command/edit/editing.h"

#include "host/db/copy_entity.h"
#include "host/db/entity.h"
#include "host/db/make_object.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"

namespace cad {
namespace {

bool turn(AcDbObjectId id, bool erasing) {
  AcDbObject* object = nullptr;
  if (acdbOpenAcDbObject(object, id, AcDb::kForWrite, !erasing) != Acad::eOk) return false;
  const bool done = object->erase(erasing) == Acad::eOk;
  object->close();
  return done;
}

/// What an entity has whatever its kind: layer, linetype, colour, weight, scale, visibility.
constexpr int kCommonCodes[] = {8, 6, 62, 370, 420, 430, 440, 48, 60};

bool is_common(int code) {
  for (const int common : kCommonCodes) {
    if (code == common) return true;
  }
  return false;
}

/// Groups that say what an object is and where it belongs, not how it is drawn.
bool is_frame(int code) {
  return code == 0 || code == 5 || code == 100 || code == 102 || code == 330 || code == 360 ||
         code == 67 || code == 410;
}

void add_group(GroupList& list, const RecordGroups& record, const Group& group) {
  switch (group.type) {
    case Group::Type::kInteger:
      list.integer(group.code, group.integer);
      break;
    case Group::Type::kReal:
      list.real(group.code, group.numbers[0]);
      break;
    case Group::Type::kPoint:
      if (group.dimensions == 2) {
        list.point2d(group.code, {group.numbers[0], group.numbers[1]});
      } else {
        list.point(group.code, {group.numbers[0], group.numbers[1], group.numbers[2]});
      }
      break;
    case Group::Type::kObject:
      list.object(group.code, group.object);
      break;
    case Group::Type::kText:
    case Group::Type::kHandle:
    case Group::Type::kChunk:
      list.text(group.code, record.text(group));
      break;
  }
}

void tell_failed(CommandLine& line, std::size_t failed) {
  if (failed == 0) return;
  line.print(counted(failed, L"object cannot be transformed so and was left as it is.",
                     L"objects cannot be transformed so and were left as they are."));
}

}  // namespace

std::wstring counted(std::size_t count, std::wstring_view of_one, std::wstring_view of_many) {
  return std::to_wstring(count).append(L" ").append(count == 1 ? of_one : of_many);
}

bool on_locked_layer(AcDbObjectId object) {
  AcDbEntity* entity = nullptr;
  const Acad::ErrorStatus status = acdbOpenAcDbEntity(entity, object, AcDb::kForWrite);
  if (entity) entity->close();
  return status == Acad::eOnLockedLayer;
}

std::vector<AcDbObjectId> changeable(CommandLine& line, const std::vector<AcDbObjectId>& objects) {
  std::vector<AcDbObjectId> free;
  for (const AcDbObjectId object : objects) {
    if (!on_locked_layer(object)) free.push_back(object);
  }
  const std::size_t locked = objects.size() - free.size();
  if (locked > 0) {
    line.print(counted(locked, L"was on a locked layer.", L"were on a locked layer."));
  }
  return free;
}

Flow<std::vector<AcDbObjectId>> select_changeable(CommandLine& line) {
  const Answer which = co_await line.selection();
  co_return changeable(line, which.selection);
}

void transform_all(CommandLine& line, const std::vector<AcDbObjectId>& objects,
                   const AcGeMatrix3d& map, MirroredText text) {
  std::size_t failed = 0;
  for (const AcDbObjectId object : objects) {
    if (transform_object(object, map, text) != Acad::eOk) ++failed;
  }
  tell_failed(line, failed);
}

void transform_copies(CommandLine& line, const std::vector<AcDbObjectId>& copies,
                      const AcGeMatrix3d& map, MirroredText text) {
  std::size_t failed = 0;
  for (const AcDbObjectId copy : copies) {
    if (transform_copy(copy, map, text) != Acad::eOk) ++failed;
  }
  tell_failed(line, failed);
}

std::vector<AcDbObjectId> copy_all(CommandLine& line, const std::vector<AcDbObjectId>& objects) {
  Result<std::vector<AcDbObjectId>> copies = copy_entities(objects);
  if (!line.check(copies)) return {};
  return std::move(*copies);
}

bool erase(AcDbObjectId object) { return turn(object, true); }
bool bring_back(AcDbObjectId object) { return turn(object, false); }

GroupList drawn_groups(AcDbObjectId object) {
  GroupList list;
  RecordGroups record;
  record.read(object);
  bool in_braces = false;
  for (const Group& group : record.groups()) {
    if (group.code == 102) in_braces = !group.bytes.empty() && group.bytes.front() == '{';
    if (!in_braces && !is_frame(group.code)) add_group(list, record, group);
  }
  return list;
}

GroupList like(AcDbObjectId source, std::wstring_view kind) {
  GroupList list(kind);
  RecordGroups record;
  record.read(source);
  for (const Group& group : record.groups()) {
    if (is_common(group.code)) add_group(list, record, group);
  }
  for (const Group& group : record.extended_data()) add_group(list, record, group);
  return list;
}

AcDbObjectId draw_beside(CommandLine& line, AcDbObjectId beside, const GroupList& groups,
                         std::span<const GroupList> parts) {
  // Extended data comes last; callers add to what like() gives.
  GroupList sorted;
  for (const bool extended : {false, true}) {
    for (const GroupValue& group : groups.groups()) {
      if ((group.code >= 1000) == extended) sorted.add(group);
    }
  }
  AcDbEntity* entity = nullptr;
  if (acdbOpenAcDbEntity(entity, beside, AcDb::kForRead, true) != Acad::eOk) return {};
  const AcDbObjectId block = entity->ownerId();
  entity->close();
  const Result<AcDbObjectId> made = make_entity(line.database(), block, sorted, parts);
  return line.check(made) ? *made : AcDbObjectId();
}

void EditLog::changing(AcDbObjectId object) {
  steps_.back().changed.emplace_back(object, drawn_groups(object));
}

bool EditLog::undo() {
  if (steps_.empty()) return false;
  const Step step = std::move(steps_.back());
  steps_.pop_back();
  for (const AcDbObjectId object : step.made) erase(object);
  for (const AcDbObjectId object : step.erased) bring_back(object);
  for (const auto& [object, groups] : step.changed) {
    if (!change_object(object, groups)) return true;
  }
  return true;
}

}  // namespace cad
