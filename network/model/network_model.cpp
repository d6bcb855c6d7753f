#include "network/model/network_model.h"

#include <algorithm>

#include "network/model/model_reader.h"

namespace network {
namespace {

using Program = NetworkModel::Program;

/// Sections that only one of the programs has.
struct Hallmark {
  std::string_view section;
  Program program;
};
constexpr Hallmark kHallmarks[] = {
    {"PIPES", Program::kEpanet},       {"RESERVOIRS", Program::kEpanet},
    {"TANKS", Program::kEpanet},       {"CONDUITS", Program::kSwmm},
    {"XSECTIONS", Program::kSwmm},     {"OUTFALLS", Program::kSwmm},
    {"SUBCATCHMENTS", Program::kSwmm},
};

struct Dialect {
  std::string_view default_units;
  std::span<const ModelReader::SectionRule> (*rules)();
};
Dialect dialect_of(Program program) {
  return program == Program::kEpanet ? Dialect{"GPM", epanet_rules} : Dialect{"CFS", swmm_rules};
}

cad::Result<NetworkModel> read_model(const InpFile& file) {
  const auto mark =
      std::find_if(std::begin(kHallmarks), std::end(kHallmarks),
                   [&](const Hallmark& hallmark) { return file.has(hallmark.section); });
  if (mark == std::end(kHallmarks))
    return cad::fail(
        file.name(),
        "is no network of EPANET or SWMM: it has no section [PIPES], [CONDUITS] or the "
        "like");
  const Dialect dialect = dialect_of(mark->program);
  ModelReader reader(file);
  reader.model().program = mark->program;
  reader.set_flow_units({}, dialect.default_units);
  NetworkModel model = reader.read(dialect.rules());
  const bool placed = std::any_of(model.nodes.begin(), model.nodes.end(),
                                  [](const ModelNode& node) { return node.place.has_value(); });
  if (placed) return model;
  return cad::fail(file.name(), model.nodes.empty()
                                    ? "declares no nodes; there is nothing to draw"
                                    : "has no coordinates: without a section [COORDINATES] that "
                                      "places its nodes the network cannot be drawn");
}

}  // namespace

cad::Result<NetworkModel> read_network_model(const std::string& path) {
  const cad::Result<std::unique_ptr<InpFile>> file = InpFile::read(path);
  if (!file) return file.error();
  return read_model(**file);
}

cad::Result<NetworkModel> read_network_model(std::string text, const std::string& name) {
  return read_model(InpFile(std::move(text), name));
}

}  // namespace network
