#pragma once

#include <cstdint>
#include <map>

#include "host/db/object_id.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/value.h"

namespace cad {

class Selection;

/// The selection sets of one document that modules know, under the numbers that stand in their
/// ads_names. Sets of a module's own last until it frees them; sets lent to it as arguments or
/// values of symbols last as long as the call.
class SelectionSets {
 public:
  static constexpr std::size_t kMost = 128;

  /// 0 when too many sets of modules' own live.
  std::int64_t keep(lisp::Value pickset);
  std::int64_t lend(const lisp::Value& pickset);
  void end_loans();
  bool free(std::int64_t number);
  /// Null for a number that names no set.
  const lisp::Value* find(std::int64_t number) const;

 private:
  struct Entry {
    lisp::Value pickset;
    bool lent;
  };
  std::map<std::int64_t, Entry> entries_;
  std::int64_t last_number_ = 0;
  std::size_t kept_ = 0;
};

/// A selection as a value of LISP, which keeps how each member was selected.
lisp::Value pickset_of(lisp::Interpreter& interp, Selection selection);

/// Membership keeps the order in which entities were added.
bool contains(const lisp::Pickset& set, AcDbObjectId id);
void add_member(lisp::Pickset& set, AcDbObjectId id);
bool remove_member(lisp::Pickset& set, AcDbObjectId id);

}  // namespace cad
