#include <algorithm>

#include "host/base/fold.h"
#include "host/base/quoted.h"
#include "network/model/model_reader.h"

// Input files of SWMM, release 5. Sections of conduits are feet with US flow units, else metres.
namespace network {
namespace {

using Row = ModelReader::Row;
constexpr double kMillimetres = 1000.0;  // of a metre

void read_option(ModelReader& reader, const Row& row) {
  if (cad::equal_no_case(row.field(0), "FLOW_UNITS")) reader.set_flow_units(row, row.field(1));
  if (cad::equal_no_case(row.field(0), "LINK_OFFSETS"))
    reader.set_offsets_are_elevations(cad::equal_no_case(row.field(1), "ELEVATION"));
}

void note_rain(ModelReader& reader, const Row&) { reader.model().carries_rain = true; }

/// Name, invert and, where the kind has one, depth.
template <ModelNode::Kind kKind, bool kHasDepth>
void read_node(ModelReader& reader, const Row& row) {
  ModelNode* const node = reader.add_node(row, kKind);
  if (!node) return;
  const std::optional<double> bottom = reader.number(row, 1, "invert elevation");
  if (!bottom) return;
  node->bottom = *bottom * reader.length_unit();
  if (!kHasDepth) return;
  const std::optional<double> depth = reader.number_if_given(row, 2, "depth");
  if (depth && *depth > 0.0) node->ground = (*bottom + *depth) * reader.length_unit();
}

/// Elevation of a conduit's end from what its row gives: a height above the node's bottom, or an
/// elevation, where "*" stands for the bottom.
std::optional<double> invert(ModelReader& reader, const Row& row, std::size_t field,
                             std::size_t node) {
  const std::optional<double> bottom = reader.model().nodes[node].bottom;
  if (row.field(field).empty() || row.field(field) == "*") return bottom;
  const std::optional<double> given = reader.number(row, field, "offset");
  if (!given) return bottom;
  const double offset = *given * reader.length_unit();
  if (reader.offsets_are_elevations()) return offset;
  if (!bottom) return {};
  return *bottom + offset;
}

void read_conduit(ModelReader& reader, const Row& row) {
  ModelLink* const conduit = reader.add_link(row, ModelLink::Kind::kPipe);
  if (!conduit) return;
  if (const std::optional<double> length = reader.size(row, 3, "length"))
    conduit->length = *length * reader.length_unit();
  conduit->start_invert = invert(reader, row, 5, conduit->from);
  conduit->end_invert = invert(reader, row, 6, conduit->to);
}

enum class Shape { kRound, kHeightAndWidth };
struct ShapeRow {
  std::string_view name;
  Shape shape;
};
constexpr ShapeRow kShapes[] = {
    {"CIRCULAR", Shape::kRound},           {"FORCE_MAIN", Shape::kRound},
    {"FILLED_CIRCULAR", Shape::kRound},    {"RECT_CLOSED", Shape::kHeightAndWidth},
    {"RECT_OPEN", Shape::kHeightAndWidth},
};

void read_section(ModelReader& reader, const Row& row) {
  ModelLink* const link = reader.link_of(row);
  if (!link) return;
  if (link->kind != ModelLink::Kind::kPipe) return;  // openings of weirs and orifices
  const std::string_view name = row.field(1);
  const auto shape = std::find_if(std::begin(kShapes), std::end(kShapes), [&](const ShapeRow& s) {
    return cad::equal_no_case(s.name, name);
  });
  if (shape == std::end(kShapes)) {
    reader.fault(row, "the section of " + cad::quoted(link->name) +
                          " is neither round nor rectangular (" + cad::excerpt(name) +
                          "); its size is left out");
    return;
  }
  const double unit = reader.length_unit() * kMillimetres;
  if (shape->shape == Shape::kRound) {
    if (const std::optional<double> size = reader.size(row, 2, "diameter"))
      link->diameter = *size * unit;
  } else {
    const std::optional<double> height = reader.size(row, 2, "height");
    const std::optional<double> width = reader.size(row, 3, "width");
    if (height && width) {
      link->height = *height * unit;
      link->width = *width * unit;
    }
  }
  const std::optional<double> barrels = reader.number_if_given(row, 6, "number of barrels");
  if (barrels && *barrels > 1.0 && *barrels <= 100.0) link->parallel = static_cast<int>(*barrels);
}

void read_map(ModelReader& reader, const Row& row) { reader.set_map_units(row); }

using NodeKind = ModelNode::Kind;
using LinkKind = ModelLink::Kind;
constexpr ModelReader::SectionRule kRules[] = {
    {"TITLE", ModelReader::pass_over},
    {"OPTIONS", read_option},
    {"SUBCATCHMENTS", note_rain},
    {"JUNCTIONS", read_node<NodeKind::kJunction, true>},
    {"OUTFALLS", read_node<NodeKind::kOutfall, false>},
    {"STORAGE", read_node<NodeKind::kStorage, true>},
    {"DIVIDERS", read_node<NodeKind::kDivider, false>},
    {"CONDUITS", read_conduit},
    {"PUMPS", ModelReader::read_other_link<LinkKind::kPump>},
    {"ORIFICES", ModelReader::read_other_link<LinkKind::kOrifice>},
    {"WEIRS", ModelReader::read_other_link<LinkKind::kWeir>},
    {"OUTLETS", ModelReader::read_other_link<LinkKind::kOutlet>},
    {"XSECTIONS", read_section},
    {"COORDINATES", ModelReader::read_place},
    {"VERTICES", ModelReader::read_bend},
    {"LABELS", ModelReader::read_text},
    {"MAP", read_map},
};

}  // namespace

std::span<const ModelReader::SectionRule> swmm_rules() { return kRules; }

}  // namespace network
