#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "network/model/inp_file.h"
#include "network/model/network_model.h"

namespace network {

/// What the readers of both programs' files share: looking up names, reading numbers, telling
/// faults. Names point into the file's text.
class ModelReader {
 public:
  using Row = InpFile::Row;
  /// Reads the rows of one section; rows of it may follow later in the file.
  struct SectionRule {
    std::string_view name;
    void (*read)(ModelReader& reader, const Row& row);
  };

  explicit ModelReader(const InpFile& file) : file_(file) {}

  /// Reads the sections in the order of the rules, which is not that of the file; what no rule
  /// names counts as unused.
  NetworkModel read(std::span<const SectionRule> rules);

  NetworkModel& model() { return model_; }
  double length_unit() const { return model_.us_units ? 0.3048 : 1.0; }  ///< metres
  double flow_unit() const { return flow_unit_; }                        ///< litres per second

  void set_flow_units(const Row& row, std::string_view name);
  void set_map_units(const Row& row);
  void set_offsets_are_elevations(bool yes) { offsets_are_elevations_ = yes; }
  bool offsets_are_elevations() const { return offsets_are_elevations_; }

  /// Null for a name that is taken already or too long for a drawing: told, and the row is left
  /// out.
  ModelNode* add_node(const Row& row, ModelNode::Kind kind);
  /// From the nodes in fields 1 and 2; null also when one of them does not exist.
  ModelLink* add_link(const Row& row, ModelLink::Kind kind);
  /// By the name in field 0; null, and told, when there is none.
  ModelNode* node_of(const Row& row);
  ModelLink* link_of(const Row& row);

  /// The number in a field. Absent, and told, when the field is none; `what` names it: "length".
  std::optional<double> number(const Row& row, std::size_t field, std::string_view what);
  /// As number(), but a field that is not there is nothing to tell.
  std::optional<double> number_if_given(const Row& row, std::size_t field, std::string_view what);
  /// As number(), and absent and told unless it is above 0.
  std::optional<double> size(const Row& row, std::size_t field, std::string_view what);
  std::optional<AcGePoint2d> place(const Row& row, std::size_t field);

  /// Whether this is the first time that it is asked for the node.
  bool is_first_demand(const ModelNode& node) { return demanded_.insert(&node).second; }

  void fault(const Row& row, std::string what) { model_.add_fault(row.line, std::move(what)); }

  // Sections that mean the same in both programs.
  static void read_place(ModelReader& reader, const Row& row);
  static void read_bend(ModelReader& reader, const Row& row);
  static void read_text(ModelReader& reader, const Row& row);
  static void pass_over(ModelReader&, const Row&) {}
  template <ModelLink::Kind kKind>
  static void read_other_link(ModelReader& reader, const Row& row) {
    reader.add_link(row, kKind);
  }

 private:
  using Names = std::unordered_map<std::string_view, std::size_t>;
  bool is_name(const Row& row);
  std::optional<std::size_t> end_node(const Row& row, std::size_t field);
  void note_unused(std::span<const SectionRule> rules);

  const InpFile& file_;
  NetworkModel model_;
  Names nodes_;
  Names links_;
  std::unordered_set<const ModelNode*> demanded_;
  double flow_unit_ = 1.0;
  bool offsets_are_elevations_ = false;
};

std::span<const ModelReader::SectionRule> epanet_rules();
std::span<const ModelReader::SectionRule> swmm_rules();

}  // namespace network
