#include <map>
#include <set>

#include "host/app/command/command_table.h"
#include "host/app/command/settings/records.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"

namespace cad {
namespace {

using NameSet = std::set<std::wstring, LessNoCase>;

/// A kind of records that may be unused. Objects name them by name in some groups, or refer to
/// them by handle in any.
struct Kind {
  const wchar_t* option;
  const char* table;
  const wchar_t* word;
};
constexpr Kind kKinds[] = {
    {L"Blocks", "BLOCK_RECORD", L"block"},
    {L"LAyers", "LAYER", L"layer"},
    {L"LTypes", "LTYPE", L"linetype"},
    {L"textSTyles", "STYLE", L"text style"},
    {L"Dimstyles", "DIMSTYLE", L"dimension style"},
    {L"Regapps", "APPID", L"registered application"},
};

/// What the drawing's objects use.
struct Uses {
  std::map<std::string, NameSet> names;  // by table
  std::set<AcDbObjectId> objects;
};

void note_name(Uses& uses, const RecordGroups& record, const Group& group, std::wstring_view kind) {
  if (group.type != Group::Type::kText) return;
  const auto note = [&](const char* table) { uses.names[table].insert(record.text(group)); };
  switch (group.code) {
    case 8:
      note("LAYER");
      break;
    case 6:
      note("LTYPE");
      break;
    case 7:
      note("STYLE");
      break;
    case 2:
      if (kind != L"BLOCK_RECORD" && kind != L"BLOCK") note("BLOCK_RECORD");
      break;
    case 3:
      note("DIMSTYLE");
      break;
    case 1001:
      note("APPID");
      break;
    case 1003:
      note("LAYER");
      break;
    default:
      break;
  }
}

/// References a table keeps to its own records are no use of them, nor are those of a block's head.
bool counts(std::wstring_view kind, const Group& group) {
  const bool is_head = kind == L"BLOCK" || kind == L"ENDBLK";
  return group.code != 330 && !(is_head && group.code >= 320);
}

Uses find_uses(CommandLine& line) {
  Uses uses;
  RecordGroups record;
  line.database().for_each_object([&](AcDbObjectId id) {
    if (id.isErased() || !record.read(id)) return;
    const std::wstring kind = from_utf8(record_kind(id));
    for (const Group& group : record.groups()) {
      if (group.type == Group::Type::kObject) {
        if (counts(kind, group) && group.object != id) uses.objects.insert(group.object);
      } else {
        note_name(uses, record, group, kind);
      }
    }
    for (const Group& group : record.extended_data()) {
      note_name(uses, record, group, kind);
      if (group.type == Group::Type::kObject) uses.objects.insert(group.object);
    }
  });
  const auto note = [&](const char* table, const wchar_t* variable) {
    uses.names[table].insert(line.text_variable(variable));
  };
  note("LAYER", L"CLAYER");
  note("LTYPE", L"CELTYPE");
  note("STYLE", L"TEXTSTYLE");
  note("STYLE", L"DIMTXSTY");
  note("DIMSTYLE", L"DIMSTYLE");
  uses.names["DIMSTYLE"].insert(L"Standard");
  uses.names["APPID"].insert(L"ACAD");
  for (const wchar_t* name : {L"0", L"Defpoints"}) uses.names["LAYER"].insert(name);
  for (const wchar_t* name : {L"ByLayer", L"ByBlock", L"Continuous"})
    uses.names["LTYPE"].insert(name);
  uses.names["STYLE"].insert(L"Standard");
  return uses;
}

bool is_unused(const Uses& uses, const Kind& kind, AcDbObjectId id) {
  const std::wstring name = group_text(id, 2);
  if (name.empty() || name.starts_with(L"*") || name.find(L'|') != std::wstring::npos) return false;
  const auto names = uses.names.find(kind.table);
  if (names != uses.names.end() && names->second.contains(name)) return false;
  return !uses.objects.contains(id);
}

bool erase_record(AcDbObjectId id) {
  AcDbObject* object = nullptr;
  if (acdbOpenAcDbObject(object, id, AcDb::kForWrite) != Acad::eOk) return false;
  const bool done = object->erase() == Acad::eOk;
  object->close();
  return done;
}

Flow<> purge_kind(CommandLine& line, const Kind& kind, std::wstring names, bool verify) {
  const Uses uses = find_uses(line);
  const std::vector<AcDbObjectId> records = matching_records(line.database(), kind.table, names);
  for (const AcDbObjectId id : records) {
    if (!is_unused(uses, kind, id)) continue;
    const std::wstring name = group_text(id, 2);
    if (verify) {
      const std::wstring text = L"Purge " + std::wstring(kind.word) + L" \"" + name + L"\"? <N>: ";
      const Answer yes = co_await line.keyword({.text = text, .keywords = L"Yes No"});
      if (!yes.is(L"Yes")) continue;
    }
    if (erase_record(id))
      line.remark(L"Deleting " + std::wstring(kind.word) + L" \"" + name + L"\".");
  }
}

Flow<> purge_command(CommandLine& line) {
  const Answer type = co_await line.keyword(
      {.text = L"Enter type of unused objects to purge [Blocks/Dimstyles/LAyers/LTypes/"
               L"textSTyles/Regapps/All]: ",
       .keywords = L"Blocks Dimstyles Groups LAyers LTypes MAterials Plotstyles SHapes textSTyles "
                   L"Mlinestyles Tablestyles Visualstyles Regapps Zero-length All",
       .bits = kNoEnter});
  const bool all = type.is(L"All");
  const Kind* wanted = nullptr;
  for (const Kind& kind : kKinds)
    if (type.is(kind.option)) wanted = &kind;
  if (!wanted && !all) {
    line.refuse(type.text + L" are not purged here");
    co_return;
  }
  const Answer given = co_await line.text({.text = L"Enter name(s) to purge <*>: "});
  const Answer verify = co_await line.keyword(
      {.text = L"Verify each name to be purged? [Yes/No] <Y>: ", .keywords = L"Yes No"});
  const std::wstring names = given.none() ? L"*" : given.text;
  for (const Kind& kind : kKinds)
    if (all || wanted == &kind) co_await purge_kind(line, kind, names, !verify.is(L"No"));
}

constexpr CommandRow kRows[] = {
    {"PURGE", "PU", purge_command,
     "[Blocks/Dimstyles/LAyers/LTypes/textSTyles/Regapps/All], names, verify",
     "removes blocks, layers, linetypes, styles and registered applications that nothing uses"},
};

}  // namespace

std::span<const CommandRow> purge_commands() { return kRows; }

}  // namespace cad
