#include "host/db/undo.h"

#include <utility>

#include "host/db/drawing.h"
#include "host/db/object_access.h"

namespace cad {

UndoLog& undo_log(AcDbDatabase& database) { return database.drawing().undo(); }

UndoLog::Step& UndoLog::step() {
  if (!open_) {
    undone_.clear();
    done_.emplace_back().next_handle = drawing_.next_handle();
    open_ = true;
  }
  return done_.back();
}

void UndoLog::close_step() {
  if (!std::exchange(open_, false)) return;
  for (const Change& change : done_.back().changes)
    if (change.stub->object) ObjectAccess::set_flag(*change.stub->object, kRecorded, false);
}

UndoLog::Change& UndoLog::record(Stub& stub) {
  if (stub.object) ObjectAccess::set_flag(*stub.object, kRecorded, true);
  std::vector<Change>& changes = step().changes;
  // A step may have millions: memory that is not used costs less than moving them time and again.
  constexpr std::size_t kMany = 1024, kGrowth = 8;
  if (changes.size() == changes.capacity() && changes.size() >= kMany)
    changes.reserve(kGrowth * changes.size());
  return changes.emplace_back(Change{&stub, stub.owner, nullptr, stub.flags, false});
}

void UndoLog::before_change(Stub& stub) {
  if (!recording_) return;
  const bool known = stub.object && ObjectAccess::has_flag(*stub.object, kRecorded);
  if (known) return;
  Change& change = record(stub);
  const std::string* own = stub.object ? ObjectAccess::own_content(*stub.object) : nullptr;
  if (own) change.content = std::make_unique<std::string>(*own);
}

void UndoLog::before_replacing(AcDbObject& object) {
  if (recording_) record(*ObjectAccess::stub(object)).content = ObjectAccess::take_content(object);
}

void UndoLog::made(Stub& stub) {
  if (!recording_) return;
  Change& change = record(stub);
  change.flags |= Stub::kErased;
  change.made = true;
}

void UndoLog::before_header_change(const std::string& name) {
  if (!recording_) return;
  auto& header = step().header;
  if (!header.contains(name)) header.emplace(name, drawing_.header_edit(name));
}

void UndoLog::next_step() {
  if (group_depth_ == 0) close_step();
}

void UndoLog::begin_group() {
  if (group_depth_++ == 0) close_step();
}

void UndoLog::end_group() {
  if (group_depth_ != 0 && --group_depth_ == 0) close_step();
}

void UndoLog::set_mark() {
  group_depth_ = 0;
  close_step();
  marks_.push_back(done_.size());
}

void UndoLog::exchange(Change& change) {
  Stub& stub = *change.stub;
  std::swap(stub.owner, change.owner);
  const std::uint8_t now = stub.flags;
  stub.flags =
      static_cast<std::uint8_t>((stub.flags & ~Stub::kErased) | (change.flags & Stub::kErased));
  change.flags = now;
  if (!change.made && stub.object) ObjectAccess::exchange_content(*stub.object, change.content);
  drawing_.restored(stub);
}

void UndoLog::exchange(Step& step, bool forward) {
  if (forward) {
    for (Change& change : step.changes) exchange(change);
  } else {
    for (auto change = step.changes.rbegin(); change != step.changes.rend(); ++change)
      exchange(*change);
  }
  for (auto& [name, tags] : step.header) drawing_.exchange_header(name, tags);
  drawing_.exchange_next_handle(step.next_handle);
}

std::size_t UndoLog::undo(std::size_t steps) {
  group_depth_ = 0;
  close_step();
  if (drawing_.open_count() != 0) return 0;
  std::size_t count = 0;
  for (; count < steps && !done_.empty(); ++count) {
    exchange(done_.back(), false);
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
  }
  while (!marks_.empty() && marks_.back() > done_.size()) marks_.pop_back();
  return count;
}

bool UndoLog::back_to_mark() {
  if (marks_.empty() || drawing_.open_count() != 0) return false;
  group_depth_ = 0;
  close_step();
  const std::size_t mark = marks_.back();
  marks_.pop_back();
  undo(done_.size() - mark);
  return true;
}

std::size_t UndoLog::redo(std::size_t steps) {
  close_step();
  if (drawing_.open_count() != 0) return 0;
  std::size_t count = 0;
  for (; count < steps && !undone_.empty(); ++count) {
    exchange(undone_.back(), true);
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
  }
  return count;
}

void UndoLog::set_recording(bool recording) {
  group_depth_ = 0;
  close_step();
  recording_ = recording;
  if (recording) return;
  done_.clear();
  undone_.clear();
  marks_.clear();
}

}  // namespace cad
