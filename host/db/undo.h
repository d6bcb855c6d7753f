#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class AcDbDatabase;
class AcDbObject;

namespace cad {

class Drawing;
struct Stub;

/// What was changed in a drawing, in steps that can be taken back and done again: contents and
/// erasing of objects, new objects, symbol tables, header variables. An object as it stands in the
/// file costs no copy: its former state is the file's. Objects made since become erased ones.
///
/// Steps are taken back only while no object is open.
class UndoLog {
 public:
  explicit UndoLog(Drawing& drawing) : drawing_(drawing) {}
  UndoLog(const UndoLog&) = delete;
  UndoLog& operator=(const UndoLog&) = delete;

  /// What changes from here on is a step of its own, unless a group is open.
  void next_step();
  /// Steps from here to the end of the group count as one. Groups inside a group are part of it.
  void begin_group();
  void end_group();
  void set_mark();

  /// Takes back up to `steps` steps, an open group first; how many it were. 0 also while objects
  /// are open.
  std::size_t undo(std::size_t steps);
  /// Takes back what was done since the last mark, which is used up. False without a mark: then
  /// nothing is taken back.
  bool back_to_mark();
  /// Does again what undo() took back, until something else is changed.
  std::size_t redo(std::size_t steps);

  std::size_t steps() const { return done_.size(); }  ///< that can be taken back
  std::size_t redo_steps() const { return undone_.size(); }
  bool in_group() const { return group_depth_ != 0; }
  bool has_mark() const { return !marks_.empty(); }
  bool is_recording() const { return recording_; }
  /// Without recording nothing can be taken back; what was recorded is forgotten.
  void set_recording(bool recording);

  // For those who change the drawing.

  /// An object's contents, owner or erased flag are about to change.
  void before_change(Stub& stub);
  /// All its contents are about to be replaced: they are moved here.
  void before_replacing(AcDbObject& object);
  /// A handle is about to be given to a new object, which made() then names.
  void before_making() {
    if (recording_) step();
  }
  void made(Stub& stub);
  void before_header_change(const std::string& name);

 private:
  struct Change {
    Stub* stub;
    std::uint64_t owner;
    std::unique_ptr<std::string> content;  // null: as in the file
    std::uint8_t flags;                    // of the stub
    bool made;                             // in this step: only the flags count
  };
  struct Step {
    std::vector<Change> changes;
    std::map<std::string, std::optional<std::string>> header;  // tags before; none: as in the file
    std::uint64_t next_handle = 0;
  };

  Step& step();
  void close_step();
  void exchange(Step& step, bool forward);
  void exchange(Change& change);
  Change& record(Stub& stub);

  Drawing& drawing_;
  std::vector<Step> done_;
  std::vector<Step> undone_;
  std::vector<std::size_t> marks_;  // numbers of steps done when they were set
  std::size_t group_depth_ = 0;
  bool open_ = false;  // changes go to the last step of done_
  bool recording_ = true;
};

UndoLog& undo_log(AcDbDatabase& database);

}  // namespace cad
