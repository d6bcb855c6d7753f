#include "host/db/rename_record.h"

#include <algorithm>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/make_object.h"
#include "host/db/name_groups.h"
#include "host/db/object_access.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

struct NameVariable {
  std::string_view table;
  std::string_view name;
};

constexpr NameVariable kNameVariables[] = {
    {"LAYER", "$CLAYER"},         {"STYLE", "$TEXTSTYLE"},      {"STYLE", "$DIMTXSTY"},
    {"LTYPE", "$CELTYPE"},        {"DIMSTYLE", "$DIMSTYLE"},    {"BLOCK_RECORD", "$DIMBLK"},
    {"BLOCK_RECORD", "$DIMBLK1"}, {"BLOCK_RECORD", "$DIMBLK2"}, {"BLOCK_RECORD", "$DIMLDRBLK"},
};

/// Records that everything leans on.
bool keeps_its_name(std::string_view table, std::wstring_view name) {
  constexpr std::pair<std::string_view, std::wstring_view> kFixed[] = {
      {"LAYER", L"0"},          {"LTYPE", L"bylayer"}, {"LTYPE", L"byblock"},
      {"LTYPE", L"continuous"}, {"APPID", L"acad"},
  };
  const std::wstring wanted = folded(name);
  if (table == "BLOCK_RECORD" && wanted.starts_with(L'*')) return true;
  return std::any_of(std::begin(kFixed), std::end(kFixed),
                     [&](const auto& row) { return row.first == table && row.second == wanted; });
}

/// The record with the new name in place of the old one; empty when it does not name it.
std::string renamed(std::string_view bytes, const dxf::Dialect& dialect, std::string_view table,
                    std::wstring_view from, std::wstring_view to) {
  std::string out;
  std::size_t copied = 0;
  std::string_view kind;
  dxf::Tag tag;
  for (dxf::TagReader tags(bytes, dialect); tags.next(tag);) {
    if (tag.code == 0) kind = tag.value;
    if (named_table(kind, tag.code) != table) continue;
    if (!equal_no_case(dxf::text_value(tag, dialect), from)) continue;
    out += bytes.substr(copied, tag.begin - copied);
    dxf::TagWriter(out, dialect).text(tag.code, to);
    copied = tag.end;
  }
  if (copied != 0) out += bytes.substr(copied);
  return out;
}

}  // namespace

Status check_rename(Drawing& drawing, const Drawing::Table& table, std::wstring_view from,
                    std::wstring_view to) {
  if (keeps_its_name(table.name, from)) return fail(table.name, to_utf8(from) + " keeps its name");
  if (!is_symbol_name(to, drawing.has_long_names()))
    return fail(table.name, "\"" + to_utf8(to) + "\" cannot be a name (group 2)");
  if (!equal_no_case(from, to) && drawing.table_record(table.name, to))
    return fail(table.name, "the drawing has a record " + to_utf8(to) + " already");
  return {};
}

void rename_references(Drawing& drawing, const Drawing::Table& table, std::wstring_view from,
                       std::wstring_view to) {
  for (std::size_t i = 0; i < drawing.stub_count(); ++i) {
    Stub& stub = drawing.stub_at(i);
    if (stub.erased() || stub.has(Stub::kMissing)) continue;
    std::string now = renamed(drawing.bytes_of(stub), drawing.dialect(), table.name, from, to);
    if (!now.empty()) ObjectAccess::replace_content(drawing.object(stub), std::move(now));
  }
  for (const NameVariable& variable : kNameVariables) {
    if (variable.table != table.name) continue;
    AcDbDatabase& database = drawing.database();
    if (!equal_no_case(database.header_value(variable.name), from)) continue;
    // A variable the file has takes a text: it held one.
    [[maybe_unused]] const Status set =
        database.set_header_variable(variable.name, std::wstring(to));
  }
}

}  // namespace cad
