#include "network/model/model_reader.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/base/quoted.h"
#include "host/db/extended_data.h"

namespace network {
namespace {

struct FlowUnit {
  std::string_view name;
  bool us;
  double litres_per_second;
};
constexpr double kCubicFoot = 28.316846592;  // litres
constexpr double kDay = 86400.0;             // seconds
constexpr FlowUnit kFlowUnits[] = {
    {"CFS", true, kCubicFoot},
    {"GPM", true, 3.785411784 / 60.0},
    {"MGD", true, 3.785411784e6 / kDay},
    {"IMGD", true, 4.54609e6 / kDay},
    {"AFD", true, 43560.0 * kCubicFoot / kDay},
    {"LPS", false, 1.0},
    {"LPM", false, 1.0 / 60.0},
    {"MLD", false, 1e6 / kDay},
    {"CMH", false, 1000.0 / 3600.0},
    {"CMD", false, 1000.0 / kDay},
    {"CMS", false, 1000.0},
};

struct MapUnit {
  std::string_view name;
  std::optional<double> metres;
};
constexpr MapUnit kMapUnits[] = {
    {"FEET", 0.3048}, {"METERS", 1.0}, {"DEGREES", std::nullopt}, {"NONE", std::nullopt}};

/// Beyond this no length, elevation or coordinate makes sense, and products might overflow.
constexpr double kLargestNumber = 1e12;

std::optional<double> sensible_number(std::string_view text) {
  const std::optional<double> value = cad::parse_real(text);
  return value && std::abs(*value) <= kLargestNumber ? value : std::nullopt;
}

std::string_view word_of(ModelLink::Kind kind) {
  using Kind = ModelLink::Kind;
  switch (kind) {
    case Kind::kPipe:
      return "pipe";
    case Kind::kPump:
      return "pump";
    case Kind::kValve:
      return "valve";
    case Kind::kOrifice:
      return "orifice";
    case Kind::kWeir:
      return "weir";
    case Kind::kOutlet:
      return "outlet";
  }
  return "link";
}

}  // namespace

void NetworkModel::add_fault(int line, std::string what) {
  if (faults.size() < kMostFaults)
    faults.push_back({line, std::move(what)});
  else
    ++further_faults;
}

NetworkModel ModelReader::read(std::span<const SectionRule> rules) {
  for (const SectionRule& rule : rules)
    for (const InpFile::Section& section : file_.sections())
      if (InpFile::is_named(section, rule.name))
        InpFile::for_each_row(section, [&](const Row& row) { rule.read(*this, row); });
  note_unused(rules);
  std::stable_sort(model_.faults.begin(), model_.faults.end(),
                   [](const ModelFault& a, const ModelFault& b) { return a.line < b.line; });
  return std::move(model_);
}

void ModelReader::note_unused(std::span<const SectionRule> rules) {
  std::map<std::string, std::size_t> places;
  for (const InpFile::Section& section : file_.sections()) {
    const bool used = std::any_of(rules.begin(), rules.end(), [&](const SectionRule& rule) {
      return InpFile::is_named(section, rule.name);
    });
    if (used) continue;
    const auto [place, added] = places.try_emplace(cad::folded(section.name), model_.unused.size());
    if (added) model_.unused.push_back({section.name, section.line, 0});
    model_.unused[place->second].rows += InpFile::count_rows(section);
  }
}

void ModelReader::set_flow_units(const Row& row, std::string_view name) {
  const auto unit = std::find_if(std::begin(kFlowUnits), std::end(kFlowUnits),
                                 [&](const auto& u) { return cad::equal_no_case(u.name, name); });
  if (unit == std::end(kFlowUnits)) {
    fault(row, "the flow unit " + cad::quoted(name) + " is not known; " + model_.flow_units +
                   " is taken instead");
    return;
  }
  model_.flow_units = unit->name;
  model_.us_units = unit->us;
  flow_unit_ = unit->litres_per_second;
}

void ModelReader::set_map_units(const Row& row) {
  if (!cad::equal_no_case(row.field(0), "UNITS")) return;
  const std::string_view name = row.field(1);
  const auto unit = std::find_if(std::begin(kMapUnits), std::end(kMapUnits),
                                 [&](const auto& u) { return cad::equal_no_case(u.name, name); });
  if (unit == std::end(kMapUnits)) {
    fault(row, "the map unit " + cad::quoted(name) + " is not known");
    return;
  }
  model_.map_units = unit->name;
  model_.map_unit = unit->metres;
}

bool ModelReader::is_name(const Row& row) {
  // A character takes 3 bytes at most where it took one; most names need no closer look.
  const std::string_view name = row.fields[0];
  if (name.size() <= cad::kLongestExtendedText / 3) return true;
  const std::size_t size = cad::to_utf8(cad::from_utf8(name)).size();
  if (size <= cad::kLongestExtendedText) return true;
  fault(row, "the name " + cad::quoted(name) + " has " + std::to_string(size) +
                 " bytes; a drawing holds " + std::to_string(cad::kLongestExtendedText) +
                 "; left out");
  return false;
}

ModelNode* ModelReader::add_node(const Row& row, ModelNode::Kind kind) {
  if (!is_name(row)) return nullptr;
  if (!nodes_.try_emplace(row.fields[0], model_.nodes.size()).second) {
    fault(row, "the node " + cad::quoted(row.fields[0]) + " is declared a second time; left out");
    return nullptr;
  }
  ModelNode& node = model_.nodes.emplace_back();
  node.name = row.fields[0];
  node.kind = kind;
  node.line = row.line;
  return &node;
}

std::optional<std::size_t> ModelReader::end_node(const Row& row, std::size_t field) {
  const std::string_view name = row.field(field);
  const std::string_view end = field == 1 ? "begins" : "ends";
  if (name.empty()) {
    fault(row, cad::quoted(row.fields[0]) + " does not say at which node it " + std::string(end) +
                   "; left out");
    return {};
  }
  const auto found = nodes_.find(name);
  if (found != nodes_.end()) return found->second;
  fault(row, cad::quoted(row.fields[0]) + " " + std::string(end) + " at the node " +
                 cad::quoted(name) + ", which is not declared; left out");
  return {};
}

ModelLink* ModelReader::add_link(const Row& row, ModelLink::Kind kind) {
  if (!is_name(row)) return nullptr;
  const std::optional<std::size_t> from = end_node(row, 1);
  if (!from) return nullptr;
  const std::optional<std::size_t> to = end_node(row, 2);
  if (!to) return nullptr;
  if (!links_.try_emplace(row.fields[0], model_.links.size()).second) {
    fault(row, "the " + std::string(word_of(kind)) + " " + cad::quoted(row.fields[0]) +
                   " has the name of another link; left out");
    return nullptr;
  }
  ModelLink& link = model_.links.emplace_back();
  link.name = row.fields[0];
  link.kind = kind;
  link.line = row.line;
  link.from = *from;
  link.to = *to;
  return &link;
}

ModelNode* ModelReader::node_of(const Row& row) {
  const auto found = nodes_.find(row.fields[0]);
  if (found != nodes_.end()) return &model_.nodes[found->second];
  fault(row, "no node is called " + cad::quoted(row.fields[0]) + "; the line is left out");
  return nullptr;
}

ModelLink* ModelReader::link_of(const Row& row) {
  const auto found = links_.find(row.fields[0]);
  if (found != links_.end()) return &model_.links[found->second];
  fault(row, "no link is called " + cad::quoted(row.fields[0]) + "; the line is left out");
  return nullptr;
}

std::optional<double> ModelReader::number(const Row& row, std::size_t field,
                                          std::string_view what) {
  const std::string_view text = row.field(field);
  if (const std::optional<double> value = sensible_number(text)) return value;
  fault(row, text.empty() ? cad::quoted(row.fields[0]) + " has no " + std::string(what)
                          : "the " + std::string(what) + " of " + cad::quoted(row.fields[0]) +
                                " is no number that makes sense: " + cad::quoted(text));
  return {};
}

std::optional<double> ModelReader::number_if_given(const Row& row, std::size_t field,
                                                   std::string_view what) {
  if (row.field(field).empty()) return {};
  return number(row, field, what);
}

std::optional<double> ModelReader::size(const Row& row, std::size_t field, std::string_view what) {
  const std::optional<double> value = number(row, field, what);
  if (!value || *value > 0.0) return value;
  fault(row, "the " + std::string(what) + " of " + cad::quoted(row.fields[0]) + " is " +
                 cad::excerpt(row.field(field)) + ", which no pipe has; left out");
  return {};
}

std::optional<AcGePoint2d> ModelReader::place(const Row& row, std::size_t field) {
  const std::optional<double> x = number(row, field, "x coordinate");
  if (!x) return {};
  const std::optional<double> y = number(row, field + 1, "y coordinate");
  if (!y) return {};
  return AcGePoint2d(*x, *y);
}

void ModelReader::read_place(ModelReader& reader, const Row& row) {
  if (ModelNode* node = reader.node_of(row))
    if (const std::optional<AcGePoint2d> place = reader.place(row, 1)) node->place = place;
}

void ModelReader::read_bend(ModelReader& reader, const Row& row) {
  if (ModelLink* link = reader.link_of(row))
    if (const std::optional<AcGePoint2d> place = reader.place(row, 1))
      link->bends.push_back(*place);
}

void ModelReader::read_text(ModelReader& reader, const Row& row) {
  const std::optional<double> x = sensible_number(row.field(0));
  const std::optional<double> y = sensible_number(row.field(1));
  if (!x || !y || row.field(2).empty()) {
    reader.fault(row, "a label wants two coordinates and a text; left out");
    return;
  }
  reader.model().texts.push_back({AcGePoint2d(*x, *y), std::string(row.field(2)), row.line});
}

}  // namespace network
