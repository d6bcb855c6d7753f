#include <algorithm>
#include <string>
#include <vector>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/drawing.h"
#include "host/db/layouts.h"
#include "host/db/make_object.h"
#include "host/lisp/heap.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

/// A symbol table as LISP names it, and as the drawing does.
struct TableRow {
  std::wstring_view name;
  const char* table;
};
constexpr TableRow kTables[] = {
    {L"APPID", "APPID"}, {L"BLOCK", "BLOCK_RECORD"}, {L"DIMSTYLE", "DIMSTYLE"},
    {L"LAYER", "LAYER"}, {L"LTYPE", "LTYPE"},        {L"STYLE", "STYLE"},
    {L"UCS", "UCS"},     {L"VIEW", "VIEW"},          {L"VPORT", "VPORT"},
};

const TableRow* find_table(std::wstring_view name) {
  for (const TableRow& row : kTables)
    if (equal_no_case(row.name, name)) return &row;
  return nullptr;
}

bool is_blocks(const TableRow& row) { return row.name == L"BLOCK"; }

Drawing& drawing_of(const Call& call) { return DocumentSession::of(call).database().drawing(); }

/// Groups that tblsearch leaves out: the frame of the record, references to objects, plotting.
bool is_frame(const Group& group) {
  return group.code == 5 || group.code == 105 || group.code == 100 || group.code == 102 ||
         group.code == 290 || group.code == 370 || group.type == Group::Type::kObject;
}

void append_groups(Interpreter& interp, const RecordGroups& record, lisp::ListBuilder& list) {
  bool in_braces = false;
  for (const Group& group : record.groups()) {
    if (group.code == 102) in_braces = !group.bytes.empty() && group.bytes.front() == '{';
    if (!in_braces && !is_frame(group)) list.append(group_pair(interp, record, group));
  }
}

/// A block by its record or, in drawings before R13, by its BLOCK.
bool is_begin_of_block(Drawing& drawing, AcDbObjectId id) {
  return drawing.kind_name(*id.stub()) == "BLOCK";
}

const Drawing::Block* block_of(Drawing& drawing, AcDbObjectId id) {
  return is_begin_of_block(drawing, id) ? drawing.block_at(*id.stub())
                                        : drawing.block_of(id.stub()->handle);
}

Stub* first_entity(Drawing& drawing, AcDbObjectId id, const Drawing::Block& block) {
  return is_begin_of_block(drawing, id) ? drawing.first_in(block)
                                        : drawing.first_in_block(id.stub()->handle);
}

/// ((0 . "LAYER") (2 . "0") (70 . 0) ...)
Value record_list(Call& call, const TableRow& row, AcDbObjectId id) {
  Interpreter& interp = call.interp();
  lisp::ListBuilder list(interp.heap());
  RecordGroups record;
  record.read(id);
  if (!is_blocks(row)) {
    append_groups(interp, record, list);
    return list.finish();
  }
  // The name is the record's; flags, base point and the like stand at the beginning of the block,
  // in drawings before R13 the name too.
  Drawing& drawing = drawing_of(call);
  const Group* const name = record.find(2);
  list.append(interp.cons(Value::integer(0), interp.string(L"BLOCK")));
  if (name) list.append(group_pair(interp, record, *name));
  const Drawing::Block* const block = block_of(drawing, id);
  if (!block) return list.finish();
  record.read(AcDbObjectId(&drawing.stub_at(block->begin)));
  for (const int code : {70, 10, 1, 4})
    if (const Group* group = record.find(code)) list.append(group_pair(interp, record, *group));
  if (Stub* first = first_entity(drawing, id, *block))
    list.append(interp.cons(Value::integer(-2), name_of(interp, AcDbObjectId(first))));
  return list.finish();
}

std::vector<AcDbObjectId> records(Drawing& drawing, const TableRow& row) {
  std::vector<AcDbObjectId> ids;
  const Drawing::Table* const table = drawing.table(row.table);
  if (!table && is_blocks(row)) {
    for (const Drawing::Block& block : drawing.blocks()) {
      Stub& begin = drawing.stub_at(block.begin);
      if (!begin.erased()) ids.push_back(AcDbObjectId(&begin));
    }
  }
  if (!table) return ids;
  for (const std::size_t index : drawing.table_records(*table)) {
    Stub& stub = drawing.stub_at(index);
    if (!stub.erased()) ids.push_back(AcDbObjectId(&stub));
  }
  return ids;
}

AcDbObjectId find_record(Call& call, const TableRow& row) {
  Drawing& drawing = drawing_of(call);
  if (is_blocks(row) && !drawing.table(row.table)) {
    const Drawing::Block* const block = drawing.block_named(call.string(1));
    return block ? AcDbObjectId(&drawing.stub_at(block->begin)) : AcDbObjectId();
  }
  return AcDbObjectId(drawing_of(call).table_record(row.table, call.string(1)));
}

std::size_t& walk_of(Call& call, const TableRow& row) {
  return DocumentSession::of(call).table_walks[std::wstring(row.name)];
}

Value fn_tblsearch(Call& call) {
  const TableRow* const row = find_table(call.string(0));
  call.string(1);
  if (!row) return Value();
  const AcDbObjectId id = find_record(call, *row);
  if (id.isNull()) return Value();
  if (call.arg(2)) {
    const std::vector<AcDbObjectId> all = records(drawing_of(call), *row);
    const auto found = std::find(all.begin(), all.end(), id);
    if (found != all.end()) walk_of(call, *row) = static_cast<std::size_t>(found - all.begin()) + 1;
  }
  return record_list(call, *row, id);
}

/// The blocks of the spaces are no blocks to tblnext.
bool is_space(Drawing& drawing, const TableRow& row, AcDbObjectId id) {
  if (!is_blocks(row)) return false;
  RecordGroups record;
  record.read(id);
  const Group* const name = record.find(2);
  if (!name) return false;
  const std::wstring text = folded(record.text(*name));
  return text.starts_with(L"*model_space") || text.starts_with(L"*paper_space") ||
         drawing.is_space(id.stub()->handle);
}

Value fn_tblnext(Call& call) {
  const TableRow* const row = find_table(call.string(0));
  if (!row) return Value();
  std::size_t& at = walk_of(call, *row);
  if (call.arg(1)) at = 0;
  Drawing& drawing = drawing_of(call);
  const std::vector<AcDbObjectId> all = records(drawing, *row);
  while (at < all.size() && is_space(drawing, *row, all[at])) ++at;
  return at < all.size() ? record_list(call, *row, all[at++]) : Value();
}

Value fn_tblobjname(Call& call) {
  const TableRow* const row = find_table(call.string(0));
  call.string(1);
  if (!row) return Value();
  const AcDbObjectId id = find_record(call, *row);
  if (id.isNull() || !is_blocks(*row)) return name_of(call.interp(), id);
  Drawing& drawing = drawing_of(call);
  const Drawing::Block* const block = block_of(drawing, id);
  return block ? name_of(call.interp(), AcDbObjectId(&drawing.stub_at(block->begin))) : Value();
}

Value fn_regapp(Call& call) {
  const std::wstring name(call.string(0));
  const Result<AcDbObjectId> made =
      register_application(DocumentSession::of(call).database(), name);
  return made ? call.arg(0) : Value();
}

Value fn_snvalid(Call& call) {
  constexpr std::int32_t kAllowBar = 1;
  std::wstring name(call.string(0));
  const bool bar_allowed = call.has(1) && (call.integer(1) & kAllowBar) != 0;
  // Records of external drawings are named FILE|NAME.
  const std::size_t bar = bar_allowed ? name.find(L'|') : std::wstring::npos;
  const bool is_inside = bar != std::wstring::npos && bar > 0 && bar + 1 < name.size();
  if (is_inside) name[bar] = L'_';
  return call.truth(is_symbol_name(name, drawing_of(call).has_long_names()));
}

Value fn_layoutlist(Call& call) {
  lisp::ListBuilder names(call.interp().heap());
  for (const Layout& layout : layouts_of(DocumentSession::of(call).database()))
    if (!equal_no_case(layout.name, L"Model")) names.append(call.interp().string(layout.name));
  return names.finish();
}

constexpr lisp::Builtin kSymbolTableFunctions[] = {
    // name, arguments, function, usage, help
    {"tblsearch", 2, 3, fn_tblsearch, "(tblsearch table name [setnext])",
     "groups of a layer, style, block, ...; nil when there is none of that name"},
    {"tblnext", 1, 2, fn_tblnext, "(tblnext table [rewind])",
     "groups of the next record of a table; nil at the end"},
    {"tblobjname", 2, 2, fn_tblobjname, "(tblobjname table name)",
     "name of the record, for entget; of a block, the name of its beginning"},
    {"regapp", 1, 1, fn_regapp, "(regapp name)",
     "registers an application for extended data: the name, or nil when it is registered already"},
    {"snvalid", 1, 2, fn_snvalid, "(snvalid name [flags])",
     "whether a text can name a record of a table; with 1 as flags one | may stand inside"},
    {"layoutlist", 0, 0, fn_layoutlist, "(layoutlist)", "names of the paper layouts, by tab order"},
};

}  // namespace

std::span<const lisp::Builtin> symbol_table_functions() { return kSymbolTableFunctions; }

}  // namespace cad
