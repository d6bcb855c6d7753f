#pragma once

#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/result.h"
#include "host/db/drawing.h"
#include "host/db/group_list.h"
#include "host/db/kind_table.h"

namespace cad {

/// An object about to be made: its groups, whose texts stay where the caller has them, sorted into
/// the class parts of its kind, checked, with what was left out added. Nothing in the drawing
/// changes meanwhile.
class Draft {
 public:
  Draft(Draft&&) = default;  // groups show texts that the draft keeps: no copies
  Draft& operator=(Draft&&) = default;

  /// `layer` is taken when the groups name none; empty: the current one. `flags` are added to the
  /// group 70 of a part when it is left out (vertices of a 3D polyline).
  static Result<Draft> of(AcDbDatabase& database, std::span<const GroupView> groups,
                          std::wstring_view layer = {}, std::int64_t flags = 0);

  const std::string& kind() const { return kind_; }
  const KindRow* row() const { return row_; }
  bool is_entity() const;
  std::wstring_view text(int code) const;  ///< of the first such group; empty when there is none
  std::int64_t integer(int code, std::int64_t absent) const;
  /// The layout (410) or space (67) the groups ask for.
  std::wstring_view layout() const { return layout_; }
  bool wants_paper() const { return wants_paper_; }
  /// Replaces an integer, or adds it.
  void set_integer(int code, std::int64_t value);

  /// The record's tags.
  std::string spell(const dxf::Dialect& dialect, std::uint64_t handle, std::uint64_t owner,
                    bool in_paper) const;

 private:
  struct Item {
    GroupView group;
    const GroupRow* row;  // null for a group the table lacks
  };
  struct Part {
    std::string_view marker;
    const PartRow* row;  // null for a part the table lacks
    std::vector<Item> items;
  };

  Draft() = default;
  Error wrong(int code, const std::string& what) const;
  Status sort_groups(std::span<const GroupView> groups);
  Status place(const GroupView& group, Part* named);
  Part* part_named(std::wstring_view marker, const Part* behind);
  Status complete(AcDbDatabase& database, std::wstring_view layer, std::int64_t flags);
  Status complete_part(AcDbDatabase& database, Part& part);
  Status add_initial(AcDbDatabase& database, Part& part, const GroupRow& row);
  void add_current(AcDbDatabase& database, std::wstring_view layer);
  void add_text(Part& part, int code, std::wstring_view text);
  void add_item(Part& part, const GroupView& group);
  void count_repeated();
  void split_long_text();
  Status check_references(AcDbDatabase& database) const;
  const Item* find(int code) const;
  std::size_t count(int code) const;
  std::wstring_view keep(std::wstring text);

  std::string kind_;
  const KindRow* row_ = nullptr;
  std::vector<Part> parts_;
  std::vector<GroupView> extended_;
  std::deque<std::wstring> kept_;        // texts that stand in no group of the caller
  std::deque<std::string> own_markers_;  // of parts that the table lacks
  std::wstring_view layout_;
  bool wants_paper_ = false;
};

/// Why extended data cannot be stored: an application that is not registered, unbalanced braces, a
/// value that does not fit, more than an object can hold.
Status check_extended_data(Drawing& drawing, std::span<const GroupView> groups);
/// Why a group's reference (layer, linetype, style, block) leads nowhere. A missing layer is none.
Status check_reference(Drawing& drawing, std::string_view kind, const GroupView& group);

}  // namespace cad
