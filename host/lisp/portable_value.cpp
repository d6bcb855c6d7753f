#include "host/lisp/portable_value.h"

#include <bit>
#include <utility>

#include "host/lisp/error.h"
#include "host/lisp/heap.h"

namespace cad::lisp {

void PortableValue::add_atom(const Value& atom) {
  switch (atom.kind()) {
    case Kind::kNil:
      items_.push_back({Mark::kEmpty});
      break;
    case Kind::kBlank:
      items_.push_back({Mark::kBlank});
      break;
    case Kind::kInteger:
      items_.push_back({Mark::kInteger, static_cast<std::uint32_t>(atom.integer())});
      break;
    case Kind::kReal:
      items_.push_back({Mark::kReal, std::bit_cast<std::uint64_t>(atom.real())});
      break;
    case Kind::kString:
      items_.push_back({Mark::kText, 0, std::wstring(atom.text())});
      break;
    case Kind::kSymbol:
      items_.push_back({Mark::kSymbol, 0, atom.symbol()->name});
      break;
    case Kind::kEname:
      items_.push_back({Mark::kEname, atom.ename()});
      break;
    default:
      raise_bad_type(L"data", atom);
  }
}

PortableValue PortableValue::of(const Value& value) {
  PortableValue result;
  std::vector<const Value*> rests;  // what follows in each list still open
  const Value* at = &value;
  for (;;) {
    if (at->is_cons()) {
      result.items_.push_back({Mark::kOpen});
      rests.push_back(&at->cdr());
      at = &at->car();
      continue;
    }
    result.add_atom(*at);
    while (!rests.empty() && !rests.back()->is_cons()) {
      if (!rests.back()->is_nil()) {
        result.items_.push_back({Mark::kDot});
        result.add_atom(*rests.back());
      }
      result.items_.push_back({Mark::kClose});
      rests.pop_back();
    }
    if (rests.empty()) return result;
    const Value* const next = rests.back();
    at = &next->car();
    rests.back() = &next->cdr();
  }
}

void PortableValue::forget_enames(const std::function<bool(std::uint64_t)>& is_gone) {
  for (Item& item : items_)
    if (item.mark == Mark::kEname && is_gone(item.bits)) item = {Mark::kEmpty};
}

Value PortableValue::in(Interpreter& interp) const {
  struct Open {
    std::vector<Value> items;
    bool dotted = false;
  };
  std::vector<Open> open;
  Value made;
  for (const Item& item : items_) {
    switch (item.mark) {
      case Mark::kOpen:
        open.emplace_back();
        continue;
      case Mark::kDot:
        open.back().dotted = true;
        continue;
      case Mark::kClose: {
        Open& list = open.back();
        Value tail;
        if (list.dotted) {
          tail = std::move(list.items.back());
          list.items.pop_back();
        }
        ListBuilder builder(interp.heap());
        for (Value& element : list.items) builder.append(std::move(element));
        made = builder.finish(std::move(tail));
        open.pop_back();
        break;
      }
      case Mark::kEmpty:
        made = Value();
        break;
      case Mark::kBlank:
        made = Value::blank();
        break;
      case Mark::kInteger:
        made = Value::integer(static_cast<std::int32_t>(item.bits));
        break;
      case Mark::kReal:
        made = Value::real(std::bit_cast<double>(item.bits));
        break;
      case Mark::kText:
        made = interp.string(item.text);
        break;
      case Mark::kSymbol:
        made = Value::symbol(&interp.intern(item.text));
        break;
      case Mark::kEname:
        made = interp.ename(item.bits);
        break;
    }
    if (!open.empty()) open.back().items.push_back(std::move(made));
  }
  return made;
}

}  // namespace cad::lisp
