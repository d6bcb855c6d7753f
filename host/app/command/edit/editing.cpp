#include "host/app/command/edit/editing.h"

#include "host/db/copy_entity.h"
#include "host/db/entity.h"
#include "host/db/make_object.h"
#include "host/db/open.h"

namespace cad {
namespace {

bool turn(AcDbObjectId id, bool erasing) {
  AcDbObject* object = nullptr;
  if (acdbOpenAcDbObject(object, id, AcDb::kForWrite, !erasing) != Acad::eOk) return false;
  const bool done = object->erase(erasing) == Acad::eOk;
  object->close();
  return done;
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
