#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

#include "host/lisp/compare.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

Value fn_member(Call& call) {
  call.list(1);
  for (const Value* at = &call.arg(1); at->is_cons(); at = &at->cons()->cdr) {
    if (is_equal(call.interp(), call.arg(0), at->cons()->car)) return *at;
  }
  return Value();
}

// Elements that are no pairs are an error, as in the host; nil is passed over.
Value fn_assoc(Call& call) {
  for (const Value& pair : call.list(1)) {
    if (!pair.is_list()) raise_bad_type(L"listp", pair);
    if (pair && is_equal(call.interp(), call.arg(0), pair.car())) return pair;
  }
  return Value();
}

// Elements of this list only, not of lists in it.
Value fn_subst(Call& call) {
  ListBuilder builder(call.interp().heap());
  for (const Value& item : call.list(2)) {
    builder.append(is_equal(call.interp(), item, call.arg(1)) ? call.arg(0) : item);
  }
  return builder.finish();
}

Value fn_position(Call& call) {
  std::int32_t at = 0;
  for (const Value& item : call.list(1)) {
    if (is_equal(call.interp(), call.arg(0), item)) return Value::integer(at);
    ++at;
  }
  return Value();
}

Value fn_remove(Call& call) {
  ListBuilder builder(call.interp().heap());
  for (const Value& item : call.list(1)) {
    if (!is_equal(call.interp(), call.arg(0), item)) builder.append(item);
  }
  return builder.finish();
}

Value keep(Call& call, bool wanted) {
  Interpreter& interp = call.interp();
  const Value test = interp.callable(call.arg(0));
  ListBuilder builder(interp.heap());
  for (const Value& item : call.list(1)) {
    if (static_cast<bool>(interp.apply(test, {&item, 1})) == wanted) builder.append(item);
  }
  return builder.finish();
}
Value fn_remove_if(Call& call) { return keep(call, false); }
Value fn_remove_if_not(Call& call) { return keep(call, true); }

Value rest_from(Call& call, bool wanted) {
  Interpreter& interp = call.interp();
  const Value test = interp.callable(call.arg(0));
  call.list(1);
  for (const Value* at = &call.arg(1); at->is_cons(); at = &at->cons()->cdr) {
    if (static_cast<bool>(interp.apply(test, {&at->cons()->car, 1})) == wanted) return *at;
  }
  return Value();
}
Value fn_member_if(Call& call) { return rest_from(call, true); }
Value fn_member_if_not(Call& call) { return rest_from(call, false); }

// Calls the test with the first, second, ... elements of the lists until it answers `stop`; that
// answer, or no value when a list came to its end.
std::optional<Value> first_answer(Call& call, bool stop) {
  Interpreter& interp = call.interp();
  const Value test = interp.callable(call.arg(0));
  const std::size_t lists = call.size() - 1;
  std::vector<const Value*> rests(lists);
  for (std::size_t i = 0; i < lists; ++i) {
    call.list(i + 1);
    rests[i] = &call.arg(i + 1);
  }
  std::vector<Value> args(lists);
  for (;;) {
    for (std::size_t i = 0; i < lists; ++i) {
      if (!rests[i]->is_cons()) return std::nullopt;
      args[i] = rests[i]->cons()->car;
      rests[i] = &rests[i]->cons()->cdr;
    }
    Value answer = interp.apply(test, args);
    if (static_cast<bool>(answer) == stop) return answer;
  }
}

Value fn_some(Call& call) {
  std::optional<Value> found = first_answer(call, true);
  return found ? *std::move(found) : Value();
}
Value fn_every(Call& call) { return call.truth(!first_answer(call, false)); }

// Merge sort of element numbers. The comparison is a program's and may contradict itself; nothing
// here relies on it being an order.
class Sorter {
 public:
  Sorter(Interpreter& interp, Value less, const List& list)
      : interp_(interp), less_(std::move(less)) {
    for (const Value& item : list) items_.push_back(item);
    order_.resize(items_.size());
    std::iota(order_.begin(), order_.end(), 0);
  }

  void sort() {
    std::vector<std::uint32_t> merged(order_.size());
    for (std::size_t width = 1; width < order_.size(); width *= 2) {
      for (std::size_t from = 0; from < order_.size(); from += 2 * width) {
        const std::size_t middle = std::min(from + width, order_.size());
        merge(from, middle, std::min(middle + width, order_.size()), merged);
      }
      order_.swap(merged);
    }
  }

  const std::vector<std::uint32_t>& order() const { return order_; }
  const Value& item(std::uint32_t number) const { return items_[number]; }

 private:
  void merge(std::size_t a, std::size_t middle, std::size_t end,
             std::vector<std::uint32_t>& merged) {
    std::size_t b = middle;
    for (std::size_t to = a; to < merged.size() && (a < middle || b < end); ++to) {
      const bool take_b = a == middle || (b < end && is_less(order_[b], order_[a]));
      merged[to] = order_[take_b ? b++ : a++];
    }
  }
  bool is_less(std::uint32_t a, std::uint32_t b) {
    const Value args[] = {items_[a], items_[b]};
    return static_cast<bool>(interp_.apply(less_, args));
  }

  Interpreter& interp_;
  Value less_;
  std::vector<Value> items_;
  std::vector<std::uint32_t> order_;
};

Sorter sorted(Call& call) {
  Sorter sorter(call.interp(), call.interp().callable(call.arg(1)), call.list(0));
  sorter.sort();
  return sorter;
}

// As in the host, the same integer or symbol stays once; texts, reals and lists all stay.
Value fn_sort(Call& call) {
  const Sorter sorter = sorted(call);
  ListBuilder builder(call.interp().heap());
  const Value* last = nullptr;
  for (const std::uint32_t number : sorter.order()) {
    const Value& item = sorter.item(number);
    const bool again =
        last != nullptr && (item.is_integer() || item.is_symbol()) && item.same(*last);
    if (!again) builder.append(item);
    last = &item;
  }
  return builder.finish();
}

Value fn_sort_i(Call& call) {
  const Sorter sorter = sorted(call);
  ListBuilder builder(call.interp().heap());
  for (const std::uint32_t number : sorter.order()) {
    builder.append(Value::integer(static_cast<std::int32_t>(number)));
  }
  return builder.finish();
}

Value fn_strlsort(Call& call) {
  std::vector<Value> items;
  for (const Value& item : call.list(0)) {
    if (!item.is_string()) raise_bad_type(L"stringp", item);
    items.push_back(item);
  }
  std::stable_sort(items.begin(), items.end(),
                   [](const Value& a, const Value& b) { return a.text() < b.text(); });
  return call.interp().list(items);
}

// clang-format off
constexpr Builtin kListSearchFunctions[] = {
    {"member",           2, 2,     fn_member,        "(member item list)",            "the list from the first equal element on"},
    {"assoc",            2, 2,     fn_assoc,         "(assoc key list)",              "the first element whose car equals the key"},
    {"subst",            3, 3,     fn_subst,         "(subst new old list)",          "the list with new for every element equal to old"},
    {"vl-position",      2, 2,     fn_position,      "(vl-position item list)",       "number of the first equal element, from 0"},
    {"vl-remove",        2, 2,     fn_remove,        "(vl-remove item list)",         "the list without elements equal to item"},
    {"vl-remove-if",     2, 2,     fn_remove_if,     "(vl-remove-if test list)",      "the elements for which test gives nil"},
    {"vl-remove-if-not", 2, 2,     fn_remove_if_not, "(vl-remove-if-not test list)",  "the elements for which test gives a value"},
    {"vl-member-if",     2, 2,     fn_member_if,     "(vl-member-if test list)",      "the list from the first element that passes on"},
    {"vl-member-if-not", 2, 2,     fn_member_if_not, "(vl-member-if-not test list)",  "the list from the first element that fails on"},
    {"vl-some",          2, kMany, fn_some,          "(vl-some test list ...)",       "the first result that is not nil"},
    {"vl-every",         2, kMany, fn_every,         "(vl-every test list ...)",      "T when test never gives nil"},
    {"vl-sort",          2, 2,     fn_sort,          "(vl-sort list less)",           "sorted by less; the same integer or symbol stays once"},
    {"vl-sort-i",        2, 2,     fn_sort_i,        "(vl-sort-i list less)",         "the element numbers in sorted order"},
    {"acad_strlsort",    1, 1,     fn_strlsort,      "(acad_strlsort list)",          "a list of texts in order of character codes"},
};
// clang-format on

}  // namespace

std::span<const Builtin> list_search_functions() { return kListSearchFunctions; }

}  // namespace cad::lisp
