#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/result.h"
#include "host/db/group_list.h"
#include "host/db/group_tags.h"
#include "host/db/kind_table.h"
#include "host/db/object_id.h"

namespace cad {

/// Merges groups into the tags of a record. Looks at the record and the groups only; what is
/// written is checked by the caller.
///
/// Lists that programs change are those entget gave them: nearly all groups stand where the record
/// has them. So both are walked side by side first, and only where that fails are the groups sorted
/// into class parts.
class GroupMerge {
 public:
  GroupMerge(AcDbObjectId id, std::span<const GroupView> groups);

  /// The error names a group that has no place in the record.
  Status run();
  bool changed() const { return !pieces_.empty() || !extended_.empty(); }
  /// The groups that are written, extended data apart.
  std::vector<GroupView> fresh() const;
  /// The extended data that is written.
  std::vector<GroupView> fresh_extended_data() const;
  /// The record as it becomes.
  std::string result() const;

 private:
  /// A stretch of the record, in file order, and what is written in its place.
  struct Piece {
    std::size_t begin = 0;
    std::size_t end = 0;
    const GroupView* group = nullptr;  // null: the stretch goes
    std::string_view marker = {};      // of a class part that is added
    TagSpan tags = {};                 // the group's own tags, when it is there already
    bool flat = false;
  };
  /// A class part of the record.
  struct Part {
    std::string_view marker;
    std::size_t begin = 0;  ///< behind the marker
    std::size_t end = 0;
    bool missing = false;  ///< the record lacks it: its groups come last, behind a marker
    const PartRow* row = nullptr;
    std::vector<TagSpan> tags;
    std::vector<const GroupView*> groups;  // that go here
  };
  struct ExtendedRun {
    std::wstring_view application;
    std::vector<GroupView> groups;  // with the 1001; that alone removes
  };

  class OwnGroups;

  void sort_out_frame();
  void take_extended_data();
  bool walk_side_by_side();
  Status sort_and_merge();
  void read_parts();
  Status sort_groups();
  Part* part_for(const GroupView& group, Part* named);
  Part* part_named(std::wstring_view marker, const Part* behind);
  void merge_cloning_flag();
  Status merge_part(Part& part);
  void merge_single(Part& part, int code);
  Status merge_sequence(Part& part, const std::vector<int>& codes);
  void insert(Part& part, const GroupView& group);
  void replace(const TagSpan& tags, const GroupView& group, bool flat);
  bool same(const TagSpan& tags, const GroupView& group) const;
  void add_counts();
  void set_count(int counter, int counted);
  void split_long_text();
  void merge_extended_data();
  void write(const Piece& piece, std::string& out) const;

  const AcDbObjectId id_;
  const std::string_view kind_;
  const bool is_entity_;
  std::string_view bytes_;
  const dxf::Dialect& dialect_;
  const std::span<const GroupView> groups_;
  std::vector<GroupView> body_;  // markers included, frame left out
  std::vector<GroupView> own_;   // counts and pieces of text made here
  std::vector<ExtendedRun> extended_data_;
  std::vector<Part> parts_;
  std::vector<PartRow> merged_rows_;  // of records without markers
  std::vector<Piece> pieces_;
  std::vector<Piece> extended_;
  std::size_t own_end_ = 0;  // where extended data begins
};

}  // namespace cad
