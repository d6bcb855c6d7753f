#include "network/survey.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/base/quoted.h"
#include "host/db/drawing.h"
#include "host/db/record.h"
#include "network/node_index.h"
#include "network/pipe_ends.h"
#include "network/wells.h"

namespace network {
namespace {

using What = Problem::What;

// In the order of What.
constexpr std::string_view kProblemNames[] = {
    "kind",
    "data",
    "no-centre-line",
    "no-position",
    "no-end",
    "no-node",
    "ambiguous-end",
    "same-node",
    "other-network",
    "diameter",
    "section",
    "length",
    "invert-above-ground",
    "bottom-above-ground",
    "flow-direction",
    "duplicate-number",
    "isolated",
};
static_assert(std::size(kProblemNames) == static_cast<std::size_t>(What::kIsolated) + 1);

/// The shortest digits that read back.
std::string digits(double value) {
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

std::string handle_of(AcDbObjectId id) {
  return std::string(cad::HandleDigits(id.handle().value()).view());
}

std::string name_of(Key key) { return std::string(row_of(key).name); }

bool is_water(Kind kind) {
  return kind == Kind::kWaterPipe || kind == Kind::kWaterNode || kind == Kind::kHydrant;
}

/// One end of a pipe, in words.
struct Side {
  const char* name;
  Key node;
  Key invert;
};
constexpr Side kStart{"start", Key::kStartNode, Key::kStartInvert};
constexpr Side kEnd{"end", Key::kEndNode, Key::kEndInvert};

class Surveyor {
 public:
  explicit Surveyor(AcDbDatabase& database) : drawing_(database.drawing()) {}

  NetworkSurvey run() {
    for (std::size_t i = 0; i < drawing_.stub_count(); ++i) take(drawing_.stub_at(i));
    for (const AcDbObjectId pipe : pipes_) check_pipe(*open_pipe(pipe));
    for (const Node& node : nodes_)
      if (!node.used) report(What::kIsolated, node.id, node.kind, "no pipe ends here");
    std::stable_sort(result_.problems.begin(), result_.problems.end(),
                     [](const Problem& a, const Problem& b) {
                       return cad::StubStore::index_of(*a.object.stub()) <
                              cad::StubStore::index_of(*b.object.stub());
                     });
    return std::move(result_);
  }

 private:
  struct Node {
    AcDbObjectId id;
    Kind kind;
    std::optional<double> ground;
    bool used = false;
  };

  void report(What what, AcDbObjectId id, Kind kind, std::string text) {
    for (char& c : text)
      if ((c >= 0 && c < ' ') || c == '\x7F') c = '?';
    result_.problems.push_back({what, id, kind, std::move(text)});
  }

  void take(cad::Stub& stub) {
    if (stub.section != cad::dxf::Section::kEntities || stub.erased() ||
        stub.has(cad::Stub::kMissing)) {
      return;
    }
    const AcDbObjectId id(&stub);
    const std::optional<Kind> found = kind_of(id);
    if (!found) return;
    const Kind kind = *found;
    ++result_.counts[static_cast<std::size_t>(kind)].objects;
    if (is_pipe(kind)) return pipes_.push_back(id);
    const std::optional<ObjectData> data = ObjectData::read(id);
    check_data(id, *data);
    if (is_node(kind)) {
      places_.emplace(&stub, nodes_.size());
      nodes_.push_back({id, kind, data->real(Key::kGround)});
      check_node(id, *data);
    } else {
      const std::string word = cad::to_utf8(data->text(Key::kKind));
      report(
          What::kKind, id, kind,
          word.empty() ? "the kind is missing" : "the kind " + cad::quoted(word) + " is unknown");
    }
  }

  void check_data(AcDbObjectId id, const ObjectData& data) {
    for (const DataFault& fault : data.faults())
      report(What::kData, id, data.kind(), fault.message());
  }

  void check_pipe(const CGxGd& pipe) {
    check_data(pipe.objectId(), pipe.data());
    const Kind kind = pipe.kind();
    const auto tell = [&](What what, std::string text) {
      report(what, pipe.objectId(), kind, std::move(text));
    };
    check_curve(pipe, tell);
    const PipeEnds ends = ends_of(pipe);
    if (ends.start.state == EndState::kSameNode) {
      tell(What::kSameNode, "both ends meet the same node");
    } else {
      check_end(pipe, kStart, ends.start, tell);
      check_end(pipe, kEnd, ends.end, tell);
    }
    check_section(pipe, tell);
    if (!pipe.flow_ends()) tell(What::kFlowDirection, reason_of_no_flow(pipe));
  }

  template <class Tell>
  void check_curve(const CGxGd& pipe, const Tell& tell) {
    const std::optional<cad::Curve> curve = pipe.centre_line();
    const double drawn = curve ? curve->length() : 0.0;
    constexpr double kLongest = 1e9;  // metres: no pipe has more, and sums stay numbers
    const std::optional<double> given = pipe.data().real(Key::kLength);
    const double length = given.value_or(drawn);
    if (length <= kLongest) result_.counts[static_cast<std::size_t>(pipe.kind())].length += length;
    if (!curve) {
      tell(What::kNoCentreLine,
           "a " + std::string(cad::record_kind(pipe.objectId())) + " without a centre line");
    } else if (!(drawn > 0.0)) {
      tell(What::kNoCentreLine, "the centre line has no length");
    }
    if (given && !(*given > 0.0 && *given <= kLongest))
      tell(What::kLength, "length is " + digits(*given));
  }

  template <class Tell>
  void check_end(const CGxGd& pipe, const Side& side, const PipeEnd& end, const Tell& tell) {
    const std::string name(side.name);
    switch (end.state) {
      case EndState::kMissing:
        return tell(What::kNoEnd, "no node at its " + name + ": " + name_of(side.node) +
                                      " is missing, and none is within " +
                                      digits(NodeIndex::kTolerance) + " of it");
      case EndState::kNoCurve:
        return tell(What::kNoEnd,
                    "no node at its " + name + ": " + name_of(side.node) + " is missing");
      case EndState::kAmbiguous:
        return tell(What::kAmbiguousEnd, "several nodes are equally near to its " + name +
                                             ", and " + name_of(side.node) + " is missing");
      case EndState::kNoNode:
        return tell(What::kNoNode, reason_of_no_node(pipe, side));
      case EndState::kSameNode:
        return;
      case EndState::kGiven:
      case EndState::kNearest:
        break;
    }
    const auto place = places_.find(end.node.stub());
    if (place == places_.end()) return;  // in a block
    Node& node = nodes_[place->second];
    node.used = true;
    if (is_water(node.kind) != is_water(pipe.kind())) {
      tell(What::kOtherNetwork, name_of(side.node) + " " + handle_of(node.id) + " is a " +
                                    std::string(kind_name(node.kind)));
    }
    const std::optional<double> invert = pipe.data().real(side.invert);
    if (!is_water(pipe.kind()) && invert && node.ground && *invert > *node.ground) {
      tell(What::kInvertAboveGround, name_of(side.invert) + " " + digits(*invert) +
                                         " lies above the ground " + digits(*node.ground) +
                                         " of node " + handle_of(node.id));
    }
  }

  std::string reason_of_no_node(const CGxGd& pipe, const Side& side) const {
    const std::uint64_t handle = pipe.data().handle(side.node);
    const std::string reference =
        name_of(side.node) + " " + std::string(cad::HandleDigits(handle).view());
    const AcDbObjectId id = cad::referenced(pipe.objectId(), handle);
    if (id.isNull() || id.stub()->has(cad::Stub::kMissing))
      return reference + " leads nowhere: the drawing has no such handle";
    if (id.isErased()) return reference + " leads to an erased entity";
    return reference + " is no node, but a " + std::string(cad::record_kind(id));
  }

  template <class Tell>
  void check_section(const CGxGd& pipe, const Tell& tell) {
    for (const Key key : {Key::kWidth, Key::kHeight}) {
      const std::optional<double> size = pipe.data().real(key);
      if (size && !(*size > 0.0)) tell(What::kSection, name_of(key) + " is " + digits(*size));
    }
    if (pipe.is_rectangular()) return;
    const std::optional<double> diameter = pipe.diameter();
    if (!diameter) {
      tell(What::kDiameter, "diameter is missing, and there are no width and height");
    } else if (!(*diameter > 0.0)) {
      tell(What::kDiameter, "diameter is " + digits(*diameter));
    }
  }

  static std::string reason_of_no_flow(const CGxGd& pipe) {
    const std::string unknown = "the flow direction is unknown: ";
    Key start = Key::kStartInvert, end = Key::kEndInvert;
    if (pipe.kind() == Kind::kWaterPipe) {
      const int head_case = pipe.data().integer(Key::kHeadCase).value_or(1);
      if (head_case < 1 || head_case > kHeadCases)
        return unknown + "head_case is " + std::to_string(head_case) + ", none of 1 to 6";
      start = start_head(head_case);
      end = end_head(head_case);
    }
    const bool lacks_start = !pipe.data().has(start), lacks_end = !pipe.data().has(end);
    if (lacks_start && lacks_end)
      return unknown + name_of(start) + " and " + name_of(end) + " are missing";
    return unknown + name_of(lacks_start ? start : end) + " is missing";
  }

  void check_node(AcDbObjectId id, const ObjectData& data) {
    const auto tell = [&](What what, std::string text) {
      report(what, id, data.kind(), std::move(text));
    };
    if (!position_of(id)) {
      tell(What::kNoPosition, "a " + std::string(cad::record_kind(id)) +
                                  " has no position; INSERT, POINT and CIRCLE have");
    }
    const std::optional<double> ground = data.real(Key::kGround);
    const std::optional<double> bottom = data.real(Key::kBottom);
    if (ground && bottom && *bottom > *ground) {
      tell(What::kBottomAboveGround,
           "bottom " + digits(*bottom) + " lies above the ground " + digits(*ground));
    }
    check_number(id, data, tell);
  }

  template <class Tell>
  void check_number(AcDbObjectId id, const ObjectData& data, const Tell& tell) {
    const CString number = data.text(Key::kNumber);
    if (number.empty()) return;
    const CString prefix = data.text(Key::kPrefix);
    // A hydrant and a water node are nodes of one network.
    const Kind network = is_water(data.kind()) ? Kind::kWaterNode : data.kind();
    const auto [first, is_new] = numbers_.try_emplace({network, prefix, number}, id);
    if (is_new) return;
    tell(
        What::kDuplicateNumber,
        "number " + cad::quoted(cad::to_utf8(number)) +
            (prefix.empty() ? std::string() : " with prefix " + cad::quoted(cad::to_utf8(prefix))) +
            " is also that of " + handle_of(first->second));
  }

  cad::Drawing& drawing_;
  NetworkSurvey result_;
  std::vector<Node> nodes_;
  std::vector<AcDbObjectId> pipes_;
  std::unordered_map<const cad::Stub*, std::size_t> places_;  // of nodes
  std::map<std::tuple<Kind, CString, CString>, AcDbObjectId> numbers_;
};

}  // namespace

std::string_view problem_name(What what) { return kProblemNames[static_cast<std::size_t>(what)]; }

NetworkSurvey survey(AcDbDatabase& database) { return Surveyor(database).run(); }

}  // namespace network
