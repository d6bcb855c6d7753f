#include "host/app/select/selection_filter.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/app/data/entget.h"
#include "host/base/fold.h"
#include "host/lisp/wildcard.h"

namespace cad {
namespace {

using lisp::Value;

// Texts of the host's own messages.
constexpr char kBadList[] = "bad SSGET list";
constexpr char kBadValue[] = "bad SSGET list value";

constexpr std::size_t kDeepest = 64;  // combinations within combinations

/// Numbers that went through text or degrees.
bool nearly_equal(double a, double b) {
  return std::fabs(a - b) <= 1e-10 * std::max({1.0, std::fabs(a), std::fabs(b)});
}

/// What an entity has of a group that its record leaves out.
struct Default {
  int code;
  double number;
  const wchar_t* text;
};
constexpr Default kDefaults[] = {
    {6, 0, L"BYLAYER"}, {39, 0, nullptr}, {48, 1, nullptr},   {60, 0, nullptr},
    {62, 256, nullptr}, {67, 0, nullptr}, {370, -1, nullptr},
};

}  // namespace

/// Reads the items of a filter in turn.
class SelectionFilter::Compiler {
 public:
  Status item(int code, Operand operand) {
    if (code == -4) {
      const auto* const text = std::get_if<std::wstring>(&operand);
      return text ? control(*text) : Error{{}, kBadValue};
    }
    Node node;
    node.kind = Node::kTest;
    node.code = code;
    if (relations_) {
      std::copy_n(relations_->values, 3, node.relations);
      relations_.reset();
    }
    if (auto* const text = std::get_if<std::wstring>(&operand)) *text = folded(*text);
    node.operand = std::move(operand);
    return add(std::move(node));
  }

  Status application(std::wstring name) {
    Node node;
    node.kind = Node::kApplication;
    node.operand = std::move(name);
    return add(std::move(node));
  }

  Result<SelectionFilter> finish() {
    if (open_.size() != 1 || relations_) return fail({}, kBadList);
    return std::move(filter_);
  }

 private:
  struct Relations {
    Relation values[3];
  };
  struct Word {
    const wchar_t* open;
    const wchar_t* close;
    Node::Kind kind;
    std::size_t least, most;  // operands
  };
  static constexpr std::size_t kMany = static_cast<std::size_t>(-1);

  Status add(Node node) {
    std::vector<Node>& nodes = filter_.nodes_;
    nodes[open_.back()].children.push_back(nodes.size());
    nodes.push_back(std::move(node));
    return {};
  }

  Status control(const std::wstring& text) {
    static constexpr Word kWords[] = {
        {L"<AND", L"AND>", Node::kAnd, 1, kMany},
        {L"<OR", L"OR>", Node::kOr, 1, kMany},
        {L"<XOR", L"XOR>", Node::kXor, 2, 2},
        {L"<NOT", L"NOT>", Node::kNot, 1, 1},
    };
    for (const Word& word : kWords) {
      if (equal_no_case(text, word.open)) {
        if (open_.size() > kDeepest || relations_) return fail({}, kBadList);
        Node node;
        node.kind = word.kind;
        const std::size_t index = filter_.nodes_.size();
        if (Status status = add(std::move(node)); !status) return status;
        open_.push_back(index);
        return {};
      }
      if (equal_no_case(text, word.close)) {
        const Node& node = filter_.nodes_[open_.back()];
        const std::size_t count = node.children.size();
        if (open_.size() == 1 || node.kind != word.kind || count < word.least ||
            count > word.most || relations_)
          return fail({}, kBadList);
        open_.pop_back();
        return {};
      }
    }
    return relation(text);
  }

  /// "<=" or, for points, one per coordinate: ">,>,*".
  Status relation(std::wstring_view text) {
    struct Row {
      std::wstring_view text;
      Relation relation;
    };
    static constexpr Row kRows[] = {
        {L"=", Relation::kEqual},     {L"!=", Relation::kNotEqual},
        {L"/=", Relation::kNotEqual}, {L"<>", Relation::kNotEqual},
        {L"<", Relation::kLess},      {L"<=", Relation::kLessEqual},
        {L">", Relation::kGreater},   {L">=", Relation::kGreaterEqual},
        {L"*", Relation::kAny},       {L"&", Relation::kAnyBit},
        {L"&=", Relation::kAllBits},
    };
    if (relations_) return fail({}, kBadList);
    Relations found{{Relation::kAny, Relation::kAny, Relation::kAny}};
    std::size_t count = 0;
    for (bool more = true; more; ++count) {
      const std::size_t comma = text.find(L',');
      const std::wstring_view word = text.substr(0, comma);
      const auto* const row = std::find_if(std::begin(kRows), std::end(kRows),
                                           [&](const Row& r) { return r.text == word; });
      if (row == std::end(kRows) || count == 3) return fail({}, kBadValue);
      found.values[count] = row->relation;
      more = comma != std::wstring_view::npos;
      if (more) text.remove_prefix(comma + 1);
    }
    // One relation for all coordinates.
    if (count == 1) found.values[1] = found.values[2] = found.values[0];
    relations_ = found;
    return {};
  }

  SelectionFilter filter_;
  std::vector<std::size_t> open_ = {0};  // combinations being read, outermost first
  std::optional<Relations> relations_;   // for the next item
};

Result<SelectionFilter> SelectionFilter::from_list(const Value& list) {
  Compiler compiler;
  for (const Value& item : lisp::List(list)) {
    if (!item.car().is_integer()) return fail({}, kBadList);
    const int code = item.car().integer();
    const Value& value = item.cdr();
    Status status;
    if (code == -3) {
      for (const Value& application : lisp::List(value)) {
        if (!application.car().is_string()) return fail({}, kBadValue);
        status = compiler.application(std::wstring(application.car().text()));
      }
    } else if (value.is_string()) {
      status = compiler.item(code, std::wstring(value.text()));
    } else if (value.is_number()) {
      status = compiler.item(code, value.number());
    } else if (value.is_ename()) {
      status = compiler.item(code, id_of_name(value.ename()));
    } else {
      Point point{};
      for (const Value& coordinate : lisp::List(value)) {
        if (point.dimensions == 3 || !coordinate.is_number()) return fail({}, kBadValue);
        point.coordinates[point.dimensions++] = coordinate.number();
      }
      if (point.dimensions < 2) return fail({}, kBadValue);
      status = compiler.item(code, point);
    }
    if (!status) return status.error();
  }
  return compiler.finish();
}

Result<SelectionFilter> SelectionFilter::from_chain(const resbuf* chain) {
  Compiler compiler;
  bool in_applications = false;
  for (const resbuf* at = chain; at; at = at->rbnext) {
    const int code = at->restype == RTDXF0 ? 0 : at->restype;
    if (code == -3) {
      in_applications = true;
      continue;
    }
    Status status;
    const ads_u_val& v = at->resval;
    switch (code < 0 ? BufferValue::kString : buffer_value(at->restype)) {
      case BufferValue::kString: {
        std::wstring text = v.rstring ? v.rstring : L"";
        status = in_applications && code == 1001 ? compiler.application(std::move(text))
                                                 : compiler.item(code, std::move(text));
        break;
      }
      case BufferValue::kReal:
        status = compiler.item(code, v.rreal);
        break;
      case BufferValue::kInt16:
        status = compiler.item(code, static_cast<double>(v.rint));
        break;
      case BufferValue::kInt32:
        status = compiler.item(code, static_cast<double>(v.rlong));
        break;
      case BufferValue::kInt64:
        status = compiler.item(code, static_cast<double>(v.mnInt64));
        break;
      case BufferValue::kPoint:
        status = compiler.item(code, Point{{v.rpoint[0], v.rpoint[1], v.rpoint[2]}, 3});
        break;
      case BufferValue::kName:
        if (name_is_text(code))
          status = compiler.item(code, std::wstring(v.rstring ? v.rstring : L""));
        else
          status = compiler.item(code, id_of_name(static_cast<std::uint64_t>(v.rlname[0])));
        break;
      default:
        return fail({}, kBadValue);
    }
    if (!status) return status.error();
  }
  return compiler.finish();
}

bool SelectionFilter::matches(AcDbObjectId id, RecordGroups& scratch) const {
  if (takes_all()) return true;
  return scratch.read(id) && holds(nodes_[0], scratch);
}

bool SelectionFilter::holds(const Node& node, const RecordGroups& record) const {
  const auto part = [&](std::size_t index) { return holds(nodes_[index], record); };
  const std::vector<std::size_t>& parts = node.children;
  switch (node.kind) {
    case Node::kAnd:
      return std::all_of(parts.begin(), parts.end(), part);
    case Node::kOr:
      return std::any_of(parts.begin(), parts.end(), part);
    case Node::kXor:
      return part(parts[0]) != part(parts[1]);
    case Node::kNot:
      return !part(parts[0]);
    case Node::kTest:
      return test(node, record);
    case Node::kApplication:
      break;
  }
  const std::wstring& name = std::get<std::wstring>(node.operand);
  const auto data = record.extended_data();
  return std::any_of(data.begin(), data.end(), [&](const Group& group) {
    return group.code == 1001 && matches_no_case(record.text(group), name);
  });
}

bool SelectionFilter::compare(Relation relation, double found, double wanted) {
  const auto bits = [](double number) {
    return std::fabs(number) < 1e18 ? static_cast<std::int64_t>(number) : 0;
  };
  switch (relation) {
    case Relation::kEqual:
      return nearly_equal(found, wanted);
    case Relation::kNotEqual:
      return !nearly_equal(found, wanted);
    case Relation::kLess:
      return found < wanted && !nearly_equal(found, wanted);
    case Relation::kLessEqual:
      return found < wanted || nearly_equal(found, wanted);
    case Relation::kGreater:
      return found > wanted && !nearly_equal(found, wanted);
    case Relation::kGreaterEqual:
      return found > wanted || nearly_equal(found, wanted);
    case Relation::kAny:
      return true;
    case Relation::kAnyBit:
      return (bits(found) & bits(wanted)) != 0;
    case Relation::kAllBits:
      return (bits(found) & bits(wanted)) == bits(wanted);
  }
  return false;
}

/// A group that occurs several times, a vertex for instance, needs to match once.
bool SelectionFilter::test(const Node& node, const RecordGroups& record) {
  bool found = false;
  for (const Group& group : record.groups()) {
    if (group.code != node.code) continue;
    found = true;
    if (test(node, record, group)) return true;
  }
  if (found) return false;
  for (const Default& left_out : kDefaults) {
    if (left_out.code != node.code) continue;
    if (const auto* wanted = std::get_if<double>(&node.operand))
      return compare(node.relations[0], left_out.number, *wanted);
    if (const auto* pattern = std::get_if<std::wstring>(&node.operand); pattern && left_out.text)
      return lisp::matches_wildcard(folded(std::wstring_view(left_out.text)), *pattern) !=
             (node.relations[0] == Relation::kNotEqual);
  }
  return false;
}

bool SelectionFilter::test(const Node& node, const RecordGroups& record, const Group& group) {
  if (const auto* pattern = std::get_if<std::wstring>(&node.operand)) {
    if (group.type != Group::Type::kText && group.type != Group::Type::kHandle) return false;
    const std::wstring text = folded(record.text(group));
    switch (node.relations[0]) {
      case Relation::kEqual:
        return lisp::matches_wildcard(text, *pattern);
      case Relation::kNotEqual:
        return !lisp::matches_wildcard(text, *pattern);
      case Relation::kAny:
        return true;
      default:
        return compare(node.relations[0], text.compare(*pattern), 0);
    }
  }
  if (const auto* id = std::get_if<AcDbObjectId>(&node.operand))
    return group.type == Group::Type::kObject &&
           (group.object == *id) != (node.relations[0] == Relation::kNotEqual);
  if (const auto* wanted = std::get_if<double>(&node.operand)) {
    if (group.type == Group::Type::kInteger)
      return compare(node.relations[0], static_cast<double>(group.integer), *wanted);
    return group.type == Group::Type::kReal &&
           compare(node.relations[0], group.numbers[0], *wanted);
  }
  const auto& point = std::get<Point>(node.operand);
  if (group.type != Group::Type::kPoint) return false;
  const int dimensions = std::min<int>(point.dimensions, group.dimensions);
  // "Not equal" without a word for each coordinate means the point as a whole.
  if (node.relations[0] == Relation::kNotEqual && node.relations[2] == Relation::kNotEqual) {
    for (int i = 0; i < dimensions; ++i)
      if (!nearly_equal(group.numbers[i], point.coordinates[i])) return true;
    return false;
  }
  for (int i = 0; i < dimensions; ++i)
    if (!compare(node.relations[i], group.numbers[i], point.coordinates[i])) return false;
  return true;
}

}  // namespace cad
