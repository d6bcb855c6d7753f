#include "host/base/fold.h"
#include "network/model/model_reader.h"

// Input files of EPANET, release 2. Diameters are inches with US flow units, else millimetres.
namespace network {
namespace {

using Row = ModelReader::Row;
constexpr double kInch = 25.4;  // millimetres

std::optional<double> scaled(std::optional<double> value, double unit) {
  if (value) *value *= unit;
  return value;
}

std::optional<double> diameter(ModelReader& reader, const Row& row, std::size_t field) {
  return scaled(reader.size(row, field, "diameter"), reader.model().us_units ? kInch : 1.0);
}

void read_option(ModelReader& reader, const Row& row) {
  if (cad::equal_no_case(row.field(0), "UNITS")) reader.set_flow_units(row, row.field(1));
}

void read_junction(ModelReader& reader, const Row& row) {
  ModelNode* const node = reader.add_node(row, ModelNode::Kind::kJunction);
  if (!node) return;
  node->ground = scaled(reader.number(row, 1, "elevation"), reader.length_unit());
  node->flow = scaled(reader.number_if_given(row, 2, "demand"), reader.flow_unit());
}

/// Demands of several users of one junction add up, in place of the one in [JUNCTIONS].
void read_demand(ModelReader& reader, const Row& row) {
  ModelNode* const node = reader.node_of(row);
  if (!node) return;
  const std::optional<double> demand = scaled(reader.number(row, 1, "demand"), reader.flow_unit());
  if (!demand) return;
  node->flow = reader.is_first_demand(*node) ? *demand : node->flow.value_or(0.0) + *demand;
}

void read_reservoir(ModelReader& reader, const Row& row) {
  if (ModelNode* const node = reader.add_node(row, ModelNode::Kind::kReservoir))
    node->head = scaled(reader.number(row, 1, "head"), reader.length_unit());
}

void read_tank(ModelReader& reader, const Row& row) {
  if (ModelNode* const node = reader.add_node(row, ModelNode::Kind::kTank))
    node->bottom = scaled(reader.number(row, 1, "elevation"), reader.length_unit());
}

void read_pipe(ModelReader& reader, const Row& row) {
  ModelLink* const pipe = reader.add_link(row, ModelLink::Kind::kPipe);
  if (!pipe) return;
  pipe->length = scaled(reader.size(row, 3, "length"), reader.length_unit());
  pipe->diameter = diameter(reader, row, 4);
}

void read_valve(ModelReader& reader, const Row& row) {
  if (ModelLink* const valve = reader.add_link(row, ModelLink::Kind::kValve))
    valve->diameter = diameter(reader, row, 3);
}

void read_map(ModelReader& reader, const Row& row) { reader.set_map_units(row); }

constexpr ModelReader::SectionRule kRules[] = {
    {"TITLE", ModelReader::pass_over},
    {"END", ModelReader::pass_over},
    {"OPTIONS", read_option},
    {"JUNCTIONS", read_junction},
    {"RESERVOIRS", read_reservoir},
    {"TANKS", read_tank},
    {"DEMANDS", read_demand},
    {"PIPES", read_pipe},
    {"PUMPS", ModelReader::read_other_link<ModelLink::Kind::kPump>},
    {"VALVES", read_valve},
    {"COORDINATES", ModelReader::read_place},
    {"VERTICES", ModelReader::read_bend},
    {"LABELS", ModelReader::read_text},
    {"BACKDROP", read_map},
};

}  // namespace

std::span<const ModelReader::SectionRule> epanet_rules() { return kRules; }

}  // namespace network
