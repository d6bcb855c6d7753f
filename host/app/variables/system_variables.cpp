#include "host/app/variables/system_variables.h"

#include <limits>
#include <numbers>

#include "host/app/documents.h"
#include "host/app/variables/system_variable_rows.h"
#include "host/app/variables/variable_facts.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/drawing.h"
#include "host/db/extents.h"
#include "host/db/lens.h"
#include "host/lisp/error.h"
#include "host/lisp/printer.h"

namespace cad {
namespace {

using lisp::Interpreter;
using lisp::Value;
using Kind = VariableRow::Kind;
using Source = VariableRow::Source;

const VariableRow* find_row(const std::string& name) {
  static const std::unordered_map<std::string_view, const VariableRow*> by_name = [] {
    std::unordered_map<std::string_view, const VariableRow*> rows;
    for (const VariableRow& row : system_variable_rows()) rows.emplace(row.name, &row);
    return rows;
  }();
  const auto found = by_name.find(name);
  return found == by_name.end() ? nullptr : found->second;
}

std::string upper_case(std::wstring_view name) {
  std::string key = to_utf8(name);
  for (char& c : key)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return key;
}

bool is_header(const VariableRow& row) {
  return row.source == Source::kHeader || row.source == Source::kHeaderOnly;
}

Value point_value(Interpreter& interp, Kind kind, const AcGePoint3d& p) {
  if (kind == Kind::kPoint2) return interp.list({Value::real(p.x), Value::real(p.y)});
  return interp.list({Value::real(p.x), Value::real(p.y), Value::real(p.z)});
}

/// Numbers separated by blanks.
AcGePoint3d read_point(std::string_view text) {
  AcGePoint3d point;
  for (unsigned axis = 0; axis < 3 && !text.empty(); ++axis) {
    const std::size_t end = std::min(text.find(' '), text.size());
    point[axis] = parse_real(text.substr(0, end)).value_or(0);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return point;
}

Value read_value(Interpreter& interp, Kind kind, std::wstring_view text) {
  if (kind == Kind::kText) return interp.string(text);
  const std::string narrow = to_utf8(text);
  switch (kind) {
    case Kind::kShort:
      return Value::integer(static_cast<std::int32_t>(parse_int(narrow).value_or(0)));
    case Kind::kReal:
      return Value::real(parse_real(narrow).value_or(0));
    case Kind::kAngle:
      return Value::real(parse_real(narrow).value_or(0) * std::numbers::pi / 180);
    default:
      return point_value(interp, kind, read_point(narrow));
  }
}

bool within(const VariableRow& row, double number) {
  return row.least == row.most || (number >= row.least && number <= row.most);
}

/// The value as the variable holds it; nil when the variable cannot hold it.
Value converted(Interpreter& interp, const VariableRow& row, const Value& value) {
  switch (row.kind) {
    case Kind::kShort: {
      if (!value.is_integer()) return Value();
      using Bounds = std::numeric_limits<std::int16_t>;
      const std::int32_t number = value.integer();
      const bool is_short = number >= Bounds::min() && number <= Bounds::max();
      return is_short && within(row, number) ? value : Value();
    }
    case Kind::kReal:
    case Kind::kAngle:
      return value.is_number() && within(row, value.number()) ? Value::real(value.number())
                                                              : Value();
    case Kind::kText:
      return value.is_string() ? value : Value();
    default:
      break;
  }
  AcGePoint3d point;
  unsigned count = 0;
  for (const Value& item : lisp::List(value)) {
    if (count == 3 || !item.is_number()) return Value();
    point[count++] = item.number();
  }
  return count >= 2 ? point_value(interp, row.kind, point) : Value();
}

/// The name as its record spells it; empty when the table has none of that name.
std::wstring name_in_table(Drawing& drawing, const char* table, std::wstring_view name) {
  const std::wstring wanted = folded(name);
  const bool always = std::string_view(table) == "LTYPE" &&
                      (wanted == L"bylayer" || wanted == L"byblock" || wanted == L"continuous");
  const Stub* record = drawing.table_record(table, name);
  if (!record) return always ? std::wstring(name) : std::wstring();
  dxf::Tag tag;
  for (dxf::TagReader tags(drawing.bytes_of(*record), drawing.dialect()); tags.next(tag);)
    if (tag.code == 2) return dxf::text_value(tag, drawing.dialect());
  return {};
}

GroupValue::Value group_value(const VariableRow& row, const Value& value) {
  switch (row.kind) {
    case Kind::kShort:
      return std::int64_t{value.integer()};
    case Kind::kReal:
    case Kind::kAngle:
      return value.number();
    case Kind::kText:
      return std::wstring(value.text());
    default:
      break;
  }
  AcGePoint3d point;
  unsigned axis = 0;
  for (const Value& item : lisp::List(value))
    if (axis < 3) point[axis++] = item.number();
  return point;
}

}  // namespace

Value SystemVariables::header_value(Interpreter& interp, const VariableRow& row) {
  const AcDbDatabase& database = *document_.database();
  const std::string name = "$" + std::string(row.name);
  const bool is_point = row.kind == Kind::kPoint2 || row.kind == Kind::kPoint3;
  if (is_point && database.drawing().header_variable(name))
    return point_value(interp, row.kind, database.header_point(name));
  const std::wstring text = is_point ? std::wstring() : database.header_value(name);
  return read_value(interp, row.kind, text.empty() ? from_utf8(row.initial) : text);
}

Value SystemVariables::get(Interpreter& interp, std::wstring_view name) {
  const std::string key = upper_case(name);
  const VariableRow* const row = find_row(key);
  if (const auto set = values_.find(key); set != values_.end()) return set->second;
  if (!row) return Value();
  FactSource source{interp, document_, *this};
  if (const VariableFact* fact = find_variable_fact(key)) return fact->value(source);
  if (!is_header(*row)) return read_value(interp, row->kind, from_utf8(row->initial));
  const std::uint64_t version = document_.database()->drawing().header_version();
  if (version != header_version_) header_.clear();
  header_version_ = version;
  const auto known = header_.find(key);
  if (known != header_.end()) return known->second;
  return header_.emplace(key, header_value(interp, *row)).first->second;
}

bool SystemVariables::set_header(const VariableRow& row, const Value& value) {
  const std::string name = "$" + std::string(row.name);
  AcDbDatabase& database = *document_.database();
  if (!database.drawing().has_header_variable(name)) return false;
  return bool(database.set_header_variable(name, group_value(row, value)));
}

bool SystemVariables::set_row(Interpreter& interp, const VariableRow& row, const Value& value) {
  Value held = converted(interp, row, value);
  if (held.is_nil()) return false;
  if (*row.table) {
    Drawing& drawing = document_.database()->drawing();
    const std::wstring known = name_in_table(drawing, row.table, held.text());
    if (known.empty()) return false;
    held = interp.string(known);
  }
  if (!is_header(row) || !set_header(row, held))
    values_.insert_or_assign(row.name, std::move(held));
  return true;
}

void SystemVariables::set(Interpreter& interp, std::wstring_view name, const Value& value) {
  const std::string key = upper_case(name);
  const VariableRow* const row = find_row(key);
  bool done = false;
  FactSource source{interp, document_, *this};
  if (const VariableSetter* setter = find_variable_setter(key)) {
    done = setter->set(source, value);
  } else if (row && (row->source == Source::kHeader || row->source == Source::kSession)) {
    done = set_row(interp, *row, value);
  }
  if (!done)
    lisp::raise(L"AutoCAD variable setting rejected: " +
                lisp::to_text(interp.string(from_utf8(key)), lisp::Quoting::kPrin1) + L" " +
                lisp::to_text(value, lisp::Quoting::kPrin1));
}

void SystemVariables::put(std::wstring_view name, Value value) {
  std::string key = upper_case(name);
  const VariableRow* const row = find_row(key);
  if (row && is_header(*row) && set_header(*row, value)) return;
  values_.insert_or_assign(std::move(key), std::move(value));
}

const AcDbExtents& SystemVariables::extents() {
  AcDbDatabase& database = *document_.database();
  const std::uint64_t version = database.drawing().version();
  if (version == extents_version_) return extents_;
  extents_version_ = version;
  extents_ = AcDbExtents();
  const AcDbObjectId space = database.currentSpaceId();
  Drawing& drawing = database.drawing();
  const auto add = [&](AcDbObjectId id) {
    AcDbExtents box;
    if (entity_extents(id, box)) extents_.addExt(box);
  };
  if (space.isNull()) {  // R12: model space is what there is
    for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id))
      if (!drawing.is_sub_entity(*id.stub())) add(id);
    return extents_;
  }
  const std::uint64_t owner = space.handle();
  for (Stub* stub = drawing.first_in_block(owner); stub; stub = drawing.next_in_block(owner, *stub))
    add(AcDbObjectId(stub));
  return extents_;
}

}  // namespace cad
