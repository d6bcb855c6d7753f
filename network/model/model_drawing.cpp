#include "network/model/model_drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <span>

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/base/progress.h"
#include "host/base/quoted.h"
#include "host/db/database.h"
#include "host/db/make_object.h"
#include "network/model/entity_groups.h"
#include "network/model/model_symbols.h"
#include "network/object_data.h"
#include "network/scale.h"

namespace network {
namespace {

constexpr wchar_t kModelApplication[] = L"PIPENOTE_MODEL";

struct SystemRow {
  const wchar_t* layer_prefix;
  int color;
  Kind pipe_kind;
  Kind node_kind;
};
/// By PipeSystem.
constexpr SystemRow kSystems[] = {{L"给水-", 5, Kind::kWaterPipe, Kind::kWaterNode},
                                  {L"污水-", 30, Kind::kDrainagePipe, Kind::kDrainageWell},
                                  {L"雨水-", 3, Kind::kStormPipe, Kind::kStormWell}};
const SystemRow& row_of(PipeSystem system) { return kSystems[static_cast<std::size_t>(system)]; }

struct ElementRow {
  const char* plural;
  const wchar_t* name;  ///< what the extended data of links that are no pipes says
  const wchar_t* layer;
  const wchar_t* block;
};
/// By ModelNode::Kind.
constexpr ElementRow kNodeRows[] = {
    {"junctions", L"junction", L"节点", kNodeBlock},
    {"reservoirs", L"reservoir", L"水源", kReservoirBlock},
    {"tanks", L"tank", L"水池", kTankBlock},
    {"outfalls", L"outfall", L"排放口", kOutfallBlock},
    {"storage units", L"storage", L"调蓄池", kTankBlock},
    {"dividers", L"divider", L"节点", kNodeBlock},
};
/// By ModelLink::Kind.
constexpr ElementRow kLinkRows[] = {
    {"pipes", L"pipe", L"管线", nullptr},       {"pumps", L"pump", L"水泵", kPumpBlock},
    {"valves", L"valve", L"阀门", kValveBlock}, {"orifices", L"orifice", L"堰孔", kWeirBlock},
    {"weirs", L"weir", L"堰孔", kWeirBlock},    {"outlets", L"outlet", L"堰孔", kWeirBlock},
};
template <class Kind>
const ElementRow& row_of(Kind kind) {
  if constexpr (std::is_same_v<Kind, ModelNode::Kind>) {
    return kNodeRows[static_cast<std::size_t>(kind)];
  } else {
    return kLinkRows[static_cast<std::size_t>(kind)];
  }
}

constexpr wchar_t kTextLayer[] = L"说明";

double plan_length(std::span<const AcGePoint2d> points) {
  double length = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i)
    length += std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
  return length;
}

/// The line of a link; empty when an end has no place.
std::vector<AcGePoint2d> line_of(const NetworkModel& model, const ModelLink& link) {
  const auto& from = model.nodes[link.from].place;
  const auto& to = model.nodes[link.to].place;
  if (!from || !to) return {};
  std::vector<AcGePoint2d> line;
  line.reserve(link.bends.size() + 2);
  line.push_back(*from);
  line.insert(line.end(), link.bends.begin(), link.bends.end());
  line.push_back(*to);
  return line;
}

/// How many metres of pipe there are to a map unit: the median, for some lengths are always off.
std::optional<double> unit_by_lengths(const NetworkModel& model) {
  std::vector<double> ratios;
  for (const ModelLink& link : model.links) {
    if (!link.length) continue;
    const double drawn = plan_length(line_of(model, link));
    if (drawn > 0.0) ratios.push_back(*link.length / drawn);
  }
  if (ratios.empty()) return {};
  const auto middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
  std::nth_element(ratios.begin(), middle, ratios.end());
  constexpr double kClose = 0.1;  // measured lengths are longer than those of a plan
  for (const double usual : {1.0, 0.3048})
    if (std::abs(*middle / usual - 1.0) < kClose) return usual;
  const double digit = std::pow(10.0, std::floor(std::log10(*middle)) - 2);
  const double rounded = std::round(*middle / digit) * digit;
  constexpr double kSmallest = 1e-6, kLargest = 1e6;
  if (!(rounded >= kSmallest && rounded <= kLargest)) return {};
  return rounded;
}

void choose_map_unit(const NetworkModel& model, const ModelDrawingOptions& options,
                     ModelDrawingReport& report) {
  if (options.map_unit) {
    report.map_unit = *options.map_unit;
    report.map_unit_from = "as asked for";
  } else if (model.map_unit) {
    report.map_unit = *model.map_unit;
    report.map_unit_from = "the file says " + model.map_units;
  } else if (const std::optional<double> unit = unit_by_lengths(model)) {
    report.map_unit = *unit;
    report.map_unit_from = "the file does not say; from the lengths of its pipes";
  } else {
    report.map_unit_from = "neither said nor to be seen from lengths of pipes";
  }
}

PipeSystem system_of(const NetworkModel& model, const ModelDrawingOptions& options) {
  if (model.program == NetworkModel::Program::kEpanet) return PipeSystem::kWater;
  if (options.system) return *options.system;
  return model.carries_rain ? PipeSystem::kStorm : PipeSystem::kDrainage;
}

class ModelDrawer {
 public:
  ModelDrawer(NetworkModel& model, AcDbDatabase& database, const ModelDrawingOptions& options)
      : model_(model),
        database_(database),
        scale_(options.scale),
        meter_("drawing", model.nodes.size() + model.links.size()) {
    report_.system = system_of(model, options);
    pipe_kind_ = cad::from_utf8(kind_name(system().pipe_kind));
    node_kind_ = cad::from_utf8(kind_name(system().node_kind));
    choose_map_unit(model, options, report_);
  }

  cad::Result<ModelDrawingReport> draw() {
    for (const auto step :
         {&ModelDrawer::prepare, &ModelDrawer::draw_nodes, &ModelDrawer::draw_links,
          &ModelDrawer::draw_texts, &ModelDrawer::set_header})
      if (cad::Status done = (this->*step)(); !done) return done.error();
    add_counts(node_counts_, kNodeRows);
    add_counts(link_counts_, kLinkRows);
    if (texts_) report_.made.push_back({"labels of the map", texts_});
    return std::move(report_);
  }

 private:
  const SystemRow& system() const { return row_of(report_.system); }
  double paper(double millimetres) const { return millimetres * scale_ / 1000.0; }
  AcGePoint3d plan(const AcGePoint2d& place) const {
    return {place.x * report_.map_unit, place.y * report_.map_unit, 0.0};
  }

  cad::Status prepare() {
    for (const wchar_t* application : {kApplication, kModelApplication})
      // An error says that the application is registered already.
      (void)cad::register_application(database_, application);
    for (const auto rows :
         {std::span<const ElementRow>(kNodeRows), std::span<const ElementRow>(kLinkRows)})
      for (const ElementRow& row : rows)
        if (cad::Status made = make_layer(row.layer); !made) return made;
    if (cad::Status made = make_layer(kTextLayer); !made) return made;
    return make_symbols(database_);
  }

  cad::Status make_layer(const wchar_t* name) {
    std::wstring& layer = layers_[name];
    layer = system().layer_prefix + std::wstring(name);
    const cad::Result<AcDbObjectId> made =
        cad::make_record(database_, cad::GroupList(L"LAYER")
                                        .text(2, layer)
                                        .integer(70, 0)
                                        .integer(62, system().color)
                                        .text(6, L"Continuous"));
    if (made) return {};
    // A layer that the drawing has keeps its looks.
    const cad::Result<AcDbObjectId> there = cad::ensure_layer(database_, layer);
    if (!there) return there.error();
    return {};
  }

  /// Begins a block reference.
  EntityGroups& symbol(const ElementRow& row, const AcGePoint3d& place, double angle) {
    const double size = paper(1.0);
    return groups_.begin(L"INSERT", layers_[row.layer])
        .text(2, row.block)
        .point(10, place)
        .real(41, size)
        .real(42, size)
        .real(43, size)
        .real(50, angle);
  }

  cad::Result<AcDbObjectId> make() {
    meter_.step();
    return cad::make_entity(database_, {}, groups_.views());
  }

  cad::Status draw_nodes() {
    handles_.resize(model_.nodes.size());
    for (std::size_t i = 0; i < model_.nodes.size(); ++i) {
      const ModelNode& node = model_.nodes[i];
      if (!node.place) {
        model_.add_fault(node.line, "the node " + cad::quoted(node.name) +
                                        " has no coordinates; it is not drawn, nor are its links");
        continue;
      }
      const std::wstring number = cad::from_utf8(node.name);
      symbol(row_of(node.kind), plan(*node.place), 0.0)
          .data_of(kApplication)
          .pair(Key::kKind, node_kind_)
          .pair(Key::kNumber, number)
          .pair(Key::kGround, node.ground)
          .pair(Key::kBottom, node.bottom)
          .pair(Key::kFlow, node.flow)
          .pair(Key::kHead, node.head);
      const cad::Result<AcDbObjectId> made = make();
      if (!made) return made.error();
      handles_[i] = cad::handle_text(made->handle());
      ++node_counts_[static_cast<std::size_t>(node.kind)];
    }
    return {};
  }

  /// Begins a line or, with bends, a polyline.
  EntityGroups& curve(const ElementRow& row, const std::vector<AcGePoint2d>& line) {
    const std::wstring& on_layer = layers_[row.layer];
    if (line.size() == 2)
      return groups_.begin(L"LINE", on_layer).point(10, plan(line[0])).point(11, plan(line[1]));
    groups_.begin(L"LWPOLYLINE", on_layer);
    groups_.integer(90, static_cast<std::int64_t>(line.size())).integer(70, 0);
    for (const AcGePoint2d& place : line) groups_.point(10, plan(place), 2);
    return groups_;
  }

  void add_pipe_data(const ModelLink& link, const std::wstring& name) {
    groups_.data_of(kApplication)
        .pair(Key::kKind, pipe_kind_)
        .pair(Key::kStartNode, handles_[link.from])
        .pair(Key::kEndNode, handles_[link.to])
        .pair(Key::kCode, name)
        .pair(Key::kDiameter, link.diameter)
        .pair(Key::kWidth, link.width)
        .pair(Key::kHeight, link.height)
        .pair(Key::kLength, link.length)
        .pair(Key::kStartInvert, link.start_invert)
        .pair(Key::kEndInvert, link.end_invert);
    if (link.parallel > 1) groups_.pair(Key::kParallel, link.parallel);
  }

  void add_model_data(const ModelLink& link, const std::wstring& name) {
    groups_.data_of(kModelApplication)
        .pair(L"element", row_of(link.kind).name)
        .pair(L"name", name)
        .pair(Key::kStartNode, handles_[link.from])
        .pair(Key::kEndNode, handles_[link.to])
        .pair(Key::kDiameter, link.diameter);
  }

  cad::Status draw_links() {
    for (const ModelLink& link : model_.links) {
      const std::vector<AcGePoint2d> line = line_of(model_, link);
      if (line.empty()) continue;  // told with the node
      const bool is_pipe = link.kind == ModelLink::Kind::kPipe;
      const std::wstring name = cad::from_utf8(link.name);
      curve(row_of(link.kind), line);
      if (is_pipe)
        add_pipe_data(link, name);
      else
        add_model_data(link, name);
      if (cad::Result<AcDbObjectId> made = make(); !made) return made.error();
      if (!is_pipe) {
        if (cad::Status drawn = draw_symbol(link, name, line); !drawn) return drawn;
      } else if (plan_length(line) == 0.0) {
        model_.add_fault(link.line, "the pipe " + cad::quoted(link.name) +
                                        " has no length in plan; its line is a point");
      }
      ++link_counts_[static_cast<std::size_t>(link.kind)];
    }
    return {};
  }

  cad::Status draw_symbol(const ModelLink& link, const std::wstring& name,
                          const std::vector<AcGePoint2d>& line) {
    // In the middle of the piece that is in the middle.
    const std::size_t piece = (line.size() - 1) / 2;
    const AcGePoint3d from = plan(line[piece]);
    const AcGePoint3d to = plan(line[piece + 1]);
    const AcGePoint3d middle((from.x + to.x) / 2, (from.y + to.y) / 2, 0.0);
    symbol(row_of(link.kind), middle, std::atan2(to.y - from.y, to.x - from.x));
    add_model_data(link, name);
    const cad::Result<AcDbObjectId> made = make();
    if (!made) return made.error();
    return {};
  }

  cad::Status draw_texts() {
    constexpr double kTextHeight = 3.5;  // paper millimetres
    for (const ModelText& text : model_.texts) {
      const std::wstring shown = cad::from_utf8(text.text);
      groups_.begin(L"TEXT", layers_[kTextLayer])
          .point(10, plan(text.place))
          .real(40, paper(kTextHeight))
          .text(1, shown);
      const cad::Result<AcDbObjectId> made = make();
      if (!made) return made.error();
      ++texts_;
    }
    return {};
  }

  /// So that programs know the unit, and what to show first.
  cad::Status set_header() {
    constexpr std::int64_t kMetres = 6;
    if (cad::Status set = database_.set_header_variable("$INSUNITS", kMetres); !set) return set;
    if (cad::Status set = database_.set_header_variable(kScaleVariable, std::int64_t{scale_}); !set)
      return set;
    AcDbExtents extents;
    for (const ModelNode& node : model_.nodes)
      if (node.place) extents.addPoint(plan(*node.place));
    if (cad::Status set = database_.set_header_variable("$EXTMIN", extents.minPoint()); !set)
      return set;
    return database_.set_header_variable("$EXTMAX", extents.maxPoint());
  }

  void add_counts(std::span<const std::size_t> counts, std::span<const ElementRow> rows) {
    for (std::size_t i = 0; i < counts.size(); ++i)
      if (counts[i]) report_.made.push_back({rows[i].plural, counts[i]});
  }

  NetworkModel& model_;
  AcDbDatabase& database_;
  int scale_;
  cad::ProgressMeter meter_;
  ModelDrawingReport report_;
  std::wstring pipe_kind_;
  std::wstring node_kind_;
  std::map<std::wstring_view, std::wstring> layers_;  // full names
  EntityGroups groups_;
  std::vector<std::wstring> handles_;  // of the nodes drawn
  std::array<std::size_t, std::size(kNodeRows)> node_counts_{};
  std::array<std::size_t, std::size(kLinkRows)> link_counts_{};
  std::size_t texts_ = 0;
};

}  // namespace

cad::Result<ModelDrawingReport> draw_model(NetworkModel& model, AcDbDatabase& database,
                                           const ModelDrawingOptions& options) {
  return ModelDrawer(model, database, options).draw();
}

}  // namespace network
