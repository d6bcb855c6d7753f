#pragma once

#include <string_view>
#include <vector>

#include "host/app/command/command_line.h"
#include "host/db/object_groups.h"
#include "host/db/transform.h"

/// What the commands that change objects share.
namespace cad {

/// Those of the objects that may be changed; how many are on locked layers is told.
std::vector<AcDbObjectId> changeable(CommandLine& line, const std::vector<AcDbObjectId>& objects);
bool on_locked_layer(AcDbObjectId object);

/// "Select objects:", without those on locked layers.
Flow<std::vector<AcDbObjectId>> select_changeable(CommandLine& line);

/// Maps all objects; how many cannot be is told. Copies that were just made may be on locked
/// layers.
void transform_all(CommandLine& line, const std::vector<AcDbObjectId>& objects,
                   const AcGeMatrix3d& map, MirroredText text = MirroredText::kReadable);
void transform_copies(CommandLine& line, const std::vector<AcDbObjectId>& copies,
                      const AcGeMatrix3d& map, MirroredText text = MirroredText::kReadable);

/// Copies of all objects, in order; empty when the command has refused.
std::vector<AcDbObjectId> copy_all(CommandLine& line, const std::vector<AcDbObjectId>& objects);

bool erase(AcDbObjectId object);
bool bring_back(AcDbObjectId object);

/// Draws an entity in the block or space that `beside` is in. Null when the command has refused.
AcDbObjectId draw_beside(CommandLine& line, AcDbObjectId beside, const GroupList& groups,
                         std::span<const GroupList> parts = {});

/// "1 was on a locked layer.", "3 were on a locked layer."
std::wstring counted(std::size_t count, std::wstring_view of_one, std::wstring_view of_many);

/// What a command has done step by step, to take back its last step itself.
class EditLog {
 public:
  void begin_step() { steps_.emplace_back(); }
  /// Before the object's shape is changed.
  void changing(AcDbObjectId object);
  void made(AcDbObjectId object) { steps_.back().made.push_back(object); }
  void erased(AcDbObjectId object) { steps_.back().erased.push_back(object); }
  /// Gives up a step in which nothing was done.
  void drop_step() { steps_.pop_back(); }
  bool empty() const { return steps_.empty(); }
  /// False when there is nothing left to take back.
  bool undo();

 private:
  struct Step {
    std::vector<std::pair<AcDbObjectId, GroupList>> changed;
    std::vector<AcDbObjectId> made, erased;
  };
  std::vector<Step> steps_;
};

}  // namespace cad
