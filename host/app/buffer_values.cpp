#include "host/app/buffer_values.h"

#include <memory>
#include <utility>
#include <vector>

#include "host/app/select/selection_sets.h"
#include "host/lisp/heap.h"

namespace cad {

using lisp::Value;

std::optional<Value> value_of_buffer(lisp::Interpreter& interp, const resbuf& buffer,
                                     const SelectionSets& sets) {
  const ads_u_val& v = buffer.resval;
  switch (buffer.restype) {
    case RTREAL:
    case RTANG:
    case RTORINT:
      return Value::real(v.rreal);
    case RTPOINT:
      return interp.list({Value::real(v.rpoint[0]), Value::real(v.rpoint[1])});
    case RT3DPOINT:
      return interp.list(
          {Value::real(v.rpoint[0]), Value::real(v.rpoint[1]), Value::real(v.rpoint[2])});
    case RTSHORT:
      return Value::integer(v.rint);
    case RTLONG:
      return Value::integer(v.rlong);
    case RTSTR:
      return interp.string(v.rstring ? v.rstring : L"");
    case RTENAME:
      return interp.ename(static_cast<std::uint64_t>(v.rlname[0]));
    case RTPICKS:
      if (const Value* set = sets.find(v.rlname[0])) return *set;
      return std::nullopt;
    case RTVOID:
      return Value::blank();
    case RTNIL:
      return Value();
    case RTT:
      return interp.truth(true);
    default:
      return std::nullopt;
  }
}

namespace {

/// A list being built; finished by its RTLE.
struct OpenList {
  explicit OpenList(lisp::Heap& heap) : items(heap) {}
  lisp::ListBuilder items;
  Value tail;
  bool dotted = false;    // RTDOTE was seen
  bool complete = false;  // and so was what follows it

  bool add(Value item) {
    if (complete) return false;
    if (dotted) {
      tail = std::move(item);
      complete = true;
    } else {
      items.append(std::move(item));
    }
    return true;
  }
};

}  // namespace

std::optional<Value> value_of_chain(lisp::Interpreter& interp, const resbuf* chain,
                                    const SelectionSets& sets) {
  if (!chain) return std::nullopt;
  // The outermost level collects the items of the chain itself.
  std::vector<std::unique_ptr<OpenList>> levels;
  levels.push_back(std::make_unique<OpenList>(interp.heap()));
  std::size_t top_items = 0;
  bool top_is_list = false;
  for (const resbuf* at = chain; at; at = at->rbnext) {
    if (levels.size() == 1) {
      ++top_items;
      top_is_list = at->restype == RTLB;
    }
    switch (at->restype) {
      case RTLB:
        levels.push_back(std::make_unique<OpenList>(interp.heap()));
        break;
      case RTLE: {
        if (levels.size() == 1) return std::nullopt;
        OpenList& done = *levels.back();
        if (done.dotted && !done.complete) return std::nullopt;
        Value list = done.items.finish(std::move(done.tail));
        levels.pop_back();
        if (!levels.back()->add(std::move(list))) return std::nullopt;
        break;
      }
      case RTDOTE: {
        OpenList& list = *levels.back();
        if (levels.size() == 1 || list.dotted || list.items.empty()) return std::nullopt;
        list.dotted = true;
        break;
      }
      case RTLONG:
        return std::nullopt;
      default: {
        std::optional<Value> item = value_of_buffer(interp, *at, sets);
        if (!item || !levels.back()->add(std::move(*item))) return std::nullopt;
      }
    }
  }
  if (levels.size() != 1) return std::nullopt;
  Value list = levels.front()->items.finish();
  return top_items == 1 && top_is_list ? list.car() : list;
}

}  // namespace cad
