#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/result.h"
#include "host/geometry/ge.h"

/// A network as a calculation program knows it, read from the program's input file. Lengths and
/// elevations are metres, diameters and sections millimetres, flows litres per second, whatever
/// the file's units; places are in the file's map units.
namespace network {

struct ModelNode {
  enum class Kind : std::uint8_t { kJunction, kReservoir, kTank, kOutfall, kStorage, kDivider };
  std::string name;
  Kind kind = Kind::kJunction;
  int line = 0;  ///< where the file declares it
  std::optional<double> ground;
  std::optional<double> bottom;
  std::optional<double> head;
  std::optional<double> flow;  ///< what is taken out
  std::optional<AcGePoint2d> place;
};

struct ModelLink {
  enum class Kind : std::uint8_t { kPipe, kPump, kValve, kOrifice, kWeir, kOutlet };
  std::string name;
  Kind kind = Kind::kPipe;
  int line = 0;
  std::size_t from = 0;  ///< indices of nodes
  std::size_t to = 0;
  std::optional<double> length;
  std::optional<double> diameter;
  std::optional<double> width;  ///< of a section that is not round, like the height
  std::optional<double> height;
  int parallel = 1;
  std::optional<double> start_invert;
  std::optional<double> end_invert;
  std::vector<AcGePoint2d> bends;
};

/// A text that the map shows.
struct ModelText {
  AcGePoint2d place;
  std::string text;
  int line = 0;
};

/// What is wrong with the file, or was left out, and where.
struct ModelFault {
  int line = 0;  ///< 0: the file as a whole
  std::string what;
};

/// A section of which nothing is used.
struct UnusedSection {
  std::string name;
  int line = 0;
  std::size_t rows = 0;
};

struct NetworkModel {
  enum class Program : std::uint8_t { kEpanet, kSwmm };
  Program program = Program::kEpanet;
  std::string flow_units;          ///< as the file names them
  bool us_units = false;           ///< feet and inches in the file
  std::string map_units;           ///< as the file names them; empty when it does not
  std::optional<double> map_unit;  ///< metres; absent when the map has no scale
  bool carries_rain = false;       ///< SWMM: surfaces drain into it
  std::vector<ModelNode> nodes;
  std::vector<ModelLink> links;
  std::vector<ModelText> texts;
  std::vector<UnusedSection> unused;
  std::vector<ModelFault> faults;  ///< the first kMostFaults of them, by line
  std::size_t further_faults = 0;  ///< how many more there are

  static constexpr std::size_t kMostFaults = 1000;
  void add_fault(int line, std::string what);
};

/// Reads the input file of EPANET (supply networks) or SWMM (sewers): which of the two, its
/// sections tell. Whatever cannot be used is left out and told in `faults`. An error when the file
/// cannot be read, is neither, or holds no node with a place.
cad::Result<NetworkModel> read_network_model(const std::string& path);
/// The same from memory; `name` stands in messages.
cad::Result<NetworkModel> read_network_model(std::string text, const std::string& name);

}  // namespace network
