#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "host/base/result.h"
#include "host/db/record_groups.h"
#include "host/db/resbuf.h"
#include "host/lisp/value.h"

namespace cad {

/// Which entities a selection takes: a list of groups that must all be found in the entity. Texts
/// are wildcard patterns and letter case does not count; -4 groups compare otherwise or combine
/// ("<AND" ... "AND>"), -3 asks for extended data of all applications named.
class SelectionFilter {
 public:
  /// Takes everything.
  SelectionFilter() { nodes_.push_back({}); }
  /// From ((code . value) ...) or the buffers of acedSSGet(). The error is worded for LISP.
  static Result<SelectionFilter> from_list(const lisp::Value& list);
  static Result<SelectionFilter> from_chain(const resbuf* chain);

  bool takes_all() const { return nodes_[0].children.empty(); }
  bool matches(AcDbObjectId id, RecordGroups& scratch) const;

 private:
  class Compiler;
  struct Point {
    double coordinates[3];
    int dimensions;
  };
  using Operand = std::variant<std::wstring, double, Point, AcDbObjectId>;
  enum class Relation : std::uint8_t {
    kEqual,
    kNotEqual,
    kLess,
    kLessEqual,
    kGreater,
    kGreaterEqual,
    kAny,
    kAnyBit,
    kAllBits,
  };
  struct Node {
    enum Kind : std::uint8_t { kAnd, kOr, kXor, kNot, kTest, kApplication } kind = kAnd;
    std::vector<std::size_t> children = {};
    int code = 0;
    Relation relations[3] = {};  // of x, y, z; the first for everything else
    Operand operand = {};
  };

  bool holds(const Node& node, const RecordGroups& record) const;
  static bool test(const Node& node, const RecordGroups& record);
  static bool test(const Node& node, const RecordGroups& record, const Group& group);
  static bool compare(Relation relation, double found, double wanted);

  std::vector<Node> nodes_;  // the first is the root; combinations name their parts by index
};

}  // namespace cad
