#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/lisp/interpreter.h"
#include "host/lisp/value.h"

namespace cad::lisp {

/// A value that belongs to no interpreter: it can be given to another one, or outlive its own.
/// Numbers, texts, symbols, entity names and lists of these, of any depth; functions, files and
/// selection sets stay where they are.
class PortableValue {
 public:
  PortableValue() = default;  ///< nil
  /// Raises "bad argument type" for what cannot be carried.
  static PortableValue of(const Value& value);
  Value in(Interpreter& interp) const;
  /// Puts nil in place of the entity names that answer true, as those of a drawing that closes.
  void forget_enames(const std::function<bool(std::uint64_t ename)>& is_gone);

 private:
  enum class Mark { kOpen, kClose, kDot, kEmpty, kBlank, kInteger, kReal, kText, kSymbol, kEname };
  struct Item {
    Mark mark;
    std::uint64_t bits = 0;
    std::wstring text = {};
  };
  void add_atom(const Value& atom);

  std::vector<Item> items_;  // in the order of the printed form
};

}  // namespace cad::lisp
