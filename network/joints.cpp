#include "network/joints.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "host/db/drawing.h"
#include "network/pipe_ends.h"
#include "network/wells.h"

namespace network {
namespace {

AcDbObjectId id_of(const cad::Stub& stub) { return AcDbObjectId(const_cast<cad::Stub*>(&stub)); }

/// Nodes and the pipes that meet them; kept with the drawing.
class JointIndex : public cad::DrawingListener {
 public:
  explicit JointIndex(cad::Drawing& drawing) : drawing_(drawing) {}

  std::vector<Joint> at(const cad::Stub& node) {
    refresh();
    std::vector<Joint> joints;
    const auto found = nodes_.find(&node);
    if (found == nodes_.end()) return joints;
    for (const Meeting& one : found->second) joints.push_back({id_of(*one.pipe), one.at_start});
    std::stable_sort(joints.begin(), joints.end(), [](const Joint& a, const Joint& b) {
      return cad::StubStore::index_of(*a.pipe.stub()) < cad::StubStore::index_of(*b.pipe.stub());
    });
    return joints;
  }

  void object_changed(const cad::Stub& stub) override {
    if (built_ && stub.section == cad::dxf::Section::kEntities &&
        (changed_.empty() || changed_.back() != &stub))
      changed_.push_back(&stub);
  }

 private:
  struct Meeting {
    const cad::Stub* pipe;
    bool at_start;
  };
  struct Ends {
    const cad::Stub* start;
    const cad::Stub* end;
  };

  void refresh() {
    if (!built_) {
      for (cad::Stub* stub = drawing_.first_entity(); stub; stub = drawing_.entity_behind(*stub))
        add(*stub);
      built_ = true;
    }
    if (changed_.empty()) return;
    std::unordered_set<const cad::Stub*> pipes;
    for (const cad::Stub* stub : changed_) {
      pipes.insert(stub);
      const auto node = nodes_.find(stub);
      const bool was_node = node != nodes_.end();
      if (was_node)
        for (const Meeting& one : node->second) pipes.insert(one.pipe);
      if (was_node || is_part_of_curve(*stub) ||
          is_node(kind_of(id_of(*stub)).value_or(Kind::kNone)))
        pipes.insert(loose_.begin(), loose_.end());
    }
    changed_.clear();
    for (const cad::Stub* pipe : pipes) {
      remove(*pipe);
      add(*pipe);
    }
  }

  /// Vertices are entities of their own in old polylines.
  bool is_part_of_curve(const cad::Stub& stub) const {
    return drawing_.kind_name(stub) == "VERTEX";
  }

  void add(const cad::Stub& stub) {
    const std::unique_ptr<CGxGd> pipe = open_pipe(id_of(stub));
    if (!pipe) return;
    const PipeEnds ends = ends_of(*pipe);
    if (ends.start.state != EndState::kGiven || ends.end.state != EndState::kGiven)
      loose_.insert(&stub);
    Ends& kept = pipes_[&stub];
    kept = {ends.start.node.stub(), ends.end.node.stub()};
    if (kept.start) nodes_[kept.start].push_back({&stub, true});
    if (kept.end) nodes_[kept.end].push_back({&stub, false});
  }

  void remove(const cad::Stub& stub) {
    loose_.erase(&stub);
    const auto pipe = pipes_.find(&stub);
    if (pipe == pipes_.end()) return;
    for (const cad::Stub* node : {pipe->second.start, pipe->second.end}) {
      const auto meetings = nodes_.find(node);
      if (meetings == nodes_.end()) continue;
      std::erase_if(meetings->second, [&](const Meeting& one) { return one.pipe == &stub; });
      if (meetings->second.empty()) nodes_.erase(meetings);
    }
    pipes_.erase(pipe);
  }

  cad::Drawing& drawing_;
  std::unordered_map<const cad::Stub*, std::vector<Meeting>> nodes_;
  std::unordered_map<const cad::Stub*, Ends> pipes_;
  std::unordered_set<const cad::Stub*> loose_;  // pipes that nodes elsewhere may come to meet
  bool built_ = false;
  std::vector<const cad::Stub*> changed_;  // since the last refresh
};

}  // namespace

std::vector<Joint> joints_of(AcDbObjectId node) {
  if (node.isNull()) return {};
  const cad::Stub& stub = *node.stub();
  return cad::StubStore::drawing_of(stub).companion<JointIndex>().at(stub);
}

}  // namespace network
