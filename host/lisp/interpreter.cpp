#include "host/lisp/interpreter.h"

#include <algorithm>
#include <deque>
#include <unordered_map>
#include <utility>

#include "host/lisp/names.h"
#include "host/lisp/tables.h"

namespace cad::lisp {

struct Interpreter::SymbolTable {
  std::deque<Symbol> symbols;
  std::unordered_map<std::wstring_view, Symbol*> by_name;  // views of Symbol::name
  std::size_t charged = 0;
};

Interpreter::Interpreter(Services services)
    : services_(std::move(services)),
      heap_(limits_.memory_bytes),
      symbols_(std::make_unique<SymbolTable>()) {
  t_ = &intern(L"T");
  t_->value = Value::symbol(t_);
  lambda_ = &intern(L"LAMBDA");
  error_handler_ = &intern(L"*ERROR*");
  set_variable(L"PI", Value::real(3.14159265358979323846));
  set_variable(L"PAUSE", string(L"\\"));

  define(special_forms());
  define(trace_forms());
  for (const auto table :
       {control_functions, list_functions, list_search_functions, number_functions,
        compare_functions, predicate_functions, string_functions, string_search_functions,
        convert_functions, geometry_functions, print_functions, file_functions, path_functions,
        symbol_functions, trace_functions, namespace_functions}) {
    define(table());
  }
}

Interpreter::~Interpreter() {
  unbind_to(0);
  const std::size_t charged = symbols_->charged;
  symbols_.reset();
  heap_.discharge(charged);
}

Symbol& Interpreter::intern(std::wstring_view name) {
  std::wstring folded = symbol_name(name);
  const auto known = symbols_->by_name.find(folded);
  if (known != symbols_->by_name.end()) return *known->second;
  // Symbols are never freed, so a program making up names must meet the limit.
  const std::size_t bytes = sizeof(Symbol) + 64 + folded.size() * sizeof(wchar_t);
  heap_.charge(bytes);
  symbols_->charged += bytes;
  Symbol& symbol = symbols_->symbols.emplace_back();
  symbol.name = std::move(folded);
  symbols_->by_name.emplace(symbol.name, &symbol);
  return symbol;
}

Symbol* Interpreter::find_symbol(std::wstring_view name) const {
  const auto known = symbols_->by_name.find(symbol_name(name));
  return known == symbols_->by_name.end() ? nullptr : known->second;
}

Value Interpreter::variable(std::wstring_view name) const {
  const Symbol* symbol = find_symbol(name);
  return symbol != nullptr ? symbol->value : Value();
}

void Interpreter::set_variable(std::wstring_view name, Value value) {
  intern(name).value = std::move(value);
}

std::vector<std::wstring> Interpreter::bound_names() const {
  std::vector<std::wstring> names;
  for (const Symbol& symbol : symbols_->symbols) {
    if (symbol.value) names.push_back(symbol.name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

void Interpreter::define(std::span<const Builtin> table) {
  for (const Builtin& row : table) {
    intern(symbol_name(std::string_view(row.name))).value =
        Value::adopt(heap_.make<Subr>(0, row, ++numbers_));
  }
}

void Interpreter::define(std::span<const SpecialForm> table) {
  for (const SpecialForm& row : table) {
    intern(symbol_name(std::string_view(row.name))).value =
        Value::adopt(heap_.make<SpecialCell>(0, row, ++numbers_));
  }
}

void Interpreter::define_external(std::wstring_view name, int code, std::uint64_t owner) {
  Symbol& symbol = intern(name);
  symbol.value = Value::adopt(heap_.make<External>(0, &symbol, code, owner, ++numbers_));
}

bool Interpreter::undefine_external(std::wstring_view name, int code, std::uint64_t owner) {
  Symbol* symbol = find_symbol(name);
  if (symbol == nullptr || !symbol->value.is(Kind::kExternal)) return false;
  const External& function = *symbol->value.external();
  if (function.code != code || function.owner != owner) return false;
  symbol->value = Value();
  return true;
}

void Interpreter::undefine_externals(std::uint64_t owner) {
  for (Symbol& symbol : symbols_->symbols) {
    if (symbol.value.is(Kind::kExternal) && symbol.value.external()->owner == owner) {
      symbol.value = Value();
    }
  }
}

void Interpreter::unbind_to(std::size_t mark) {
  while (bindings_.size() > mark) {
    Binding& last = bindings_.back();
    if (last.symbol != nullptr) last.symbol->value = std::move(last.saved);
    bindings_.pop_back();
  }
}

Value Interpreter::pickset() { return Value::adopt(heap_.make<Pickset>(0, ++pickset_numbers_)); }

Value Interpreter::list(std::span<const Value> items) {
  ListBuilder builder(heap_);
  for (const Value& item : items) builder.append(item);
  return builder.finish();
}

void Interpreter::print(std::wstring_view text) {
  if (text.empty()) return;
  at_line_start_ = text.back() == L'\n';
  if (services_.output) services_.output(text);
}

std::int32_t Interpreter::system_integer(std::wstring_view name, std::int32_t fallback) {
  if (!services_.system_variable) return fallback;
  const Value value = services_.system_variable(*this, name);
  return value.is_integer() ? value.integer() : fallback;
}

void Interpreter::set_limits(const Limits& limits) {
  limits_ = limits;
  heap_.set_limit(limits.memory_bytes);
  step_ceiling_ = limits.steps;
}

}  // namespace cad::lisp
