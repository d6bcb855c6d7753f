#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/app/select/selection_filter.h"
#include "host/app/session.h"
#include "host/geometry/point3d.h"
#include "host/lisp/value.h"

namespace cad {

/// How an entity was selected; the numbers are those of ssnamex.
enum class SelectedBy : std::uint8_t { kOther, kPick, kWindow, kCrossing, kFence };
struct HowSelected {
  SelectedBy method = SelectedBy::kOther;
  int polygon = 0;  ///< number of the window or polygon, counted -1, -2, ...; 0 for none
};

/// Entities in the order in which they were selected, each once, and how each was.
class Selection {
 public:
  using Method = SelectedBy;
  using How = HowSelected;

  /// False when it is in already.
  bool add(AcDbObjectId id, How how = {}, std::vector<AcGePoint3d> places = {});
  bool remove(AcDbObjectId id);
  bool contains(AcDbObjectId id) const;
  template <class Test>
  void remove_if(Test&& test) {
    known_.clear();
    std::erase_if(ids_, test);
  }
  /// Of entities that are all different, into an empty selection: without looking each one up.
  void assign(std::vector<AcDbObjectId> ids, How how = {});
  /// A window (as its corners) or polygon by which entities are selected; its number.
  int add_polygon(std::vector<AcGePoint3d> corners);

  const std::vector<AcDbObjectId>& ids() const { return ids_; }
  bool empty() const { return ids_.empty(); }
  std::size_t size() const { return ids_.size(); }
  std::vector<AcDbObjectId> take_ids() { return std::move(ids_); }

  How how(AcDbObjectId id) const;
  void set_how(AcDbObjectId id, How how) { hows_[id.stub()] = how; }
  /// The pick point, or where a fence met it; in the world.
  std::span<const AcGePoint3d> places(AcDbObjectId id) const;
  std::span<const std::vector<AcGePoint3d>> polygons() const { return polygons_; }

 private:
  void know_all() const;

  std::vector<AcDbObjectId> ids_;
  How common_;  // of those that hows_ lacks
  std::unordered_map<const Stub*, How> hows_;
  std::unordered_map<const Stub*, std::vector<AcGePoint3d>> places_;
  std::vector<std::vector<AcGePoint3d>> polygons_;
  mutable std::unordered_set<const Stub*> known_;  // all of ids_, once one was looked up
};

/// What ssget was told beside the filter: its mode ("X", "_WP", ":L"), and points of the world.
struct SelectionRequest {
  std::wstring_view mode;
  std::span<const AcGePoint3d> points;
  // What the user is asked with; empty for the usual prompts.
  std::wstring_view prompt = {};
  std::wstring_view remove_prompt = {};
};

/// What the request selects in the document, filter applied; where the host itself searches, the
/// newest entity first. Without points, modes that need them and modes that ask the user start a
/// dialogue. Raises a LISP error for a mode that makes no sense.
Selection select(DocumentSession& session, const SelectionRequest& request,
                 const SelectionFilter& filter);
std::vector<AcDbObjectId> select(DocumentSession& session, std::wstring_view mode,
                                 const SelectionFilter& filter);

/// Whether the mode is given one list of points rather than one or two points.
bool takes_point_list(std::wstring_view mode);

/// All entities of all spaces, the newest first, parts of others left out.
std::vector<AcDbObjectId> all_entities(AcDbDatabase& database);

}  // namespace cad
