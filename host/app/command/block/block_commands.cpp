#include <set>

#include "host/app/command/block/block_lookup.h"
#include "host/app/command/command_table.h"
#include "host/app/command/draw/draw.h"
#include "host/app/command/settings/records.h"
#include "host/app/command/text/text_place.h"
#include "host/app/session.h"
#include "host/base/fold.h"
#include "host/db/copy_entity.h"
#include "host/db/make_object.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/transform.h"
#include "host/lisp/names.h"

namespace cad {
namespace {

constexpr int kHasAttributes = 2;  // of a BLOCK

/// Whether any of the entities shows the block, directly or inside of others.
bool shows(AcDbDatabase& database, const std::vector<AcDbObjectId>& entities,
           std::wstring_view name, std::set<std::wstring, LessNoCase>& seen) {
  for (const AcDbObjectId id : entities) {
    if (record_kind(id) != "INSERT") continue;
    const std::wstring inner = group_text(id, 2);
    if (equal_no_case(inner, name)) return true;
    if (!seen.insert(inner).second) continue;
    if (shows(database, block_contents(database, find_block(database, inner)), name, seen))
      return true;
  }
  return false;
}

/// Erases what has become a block; OOPS brings it back.
void erase_all(CommandLine& line, const std::vector<AcDbObjectId>& entities) {
  for (const AcDbObjectId id : entities) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, id, AcDb::kForWrite) != Acad::eOk) continue;
    object->erase();
    object->close();
  }
  line.session().erased_last = entities;
}

bool define(CommandLine& line, const std::wstring& name, const AcGePoint3d& base,
            const std::vector<AcDbObjectId>& entities) {
  AcDbDatabase& database = line.database();
  const AcGeMatrix3d to_user = line.to_user();
  const Result<AcDbObjectId> block = make_block(database, name, to_user * base);
  if (!line.check(block)) return false;
  const Result<std::vector<AcDbObjectId>> copies = copy_entities(entities, *block);
  if (!line.check(copies)) return false;
  bool has_attributes = false;
  for (const AcDbObjectId copy : *copies) {
    has_attributes = has_attributes || record_kind(copy) == "ATTDEF";
    if (to_user.isEqualTo(AcGeMatrix3d::kIdentity)) continue;
    if (transform_object(copy, to_user) != Acad::eOk) {
      line.refuse(L"an object cannot be brought into the user's coordinates");
      return false;
    }
  }
  if (!has_attributes) return true;
  return line.check(
      change_object(block_head(database, *block), GroupList().integer(70, kHasAttributes)));
}

Flow<> block_command(CommandLine& line) {
  const Answer name = co_await line.text(
      {.text = L"Enter block name or [?]: ", .keywords = L"?", .bits = kNoEnter});
  if (name.is(L"?")) {
    for (const std::wstring& known : block_names(line.database())) line.print(known);
    co_return;
  }
  if (!is_symbol_name(name.text, line.database().has_dictionaries())) {
    line.refuse(L"\"" + name.text + L"\" is no name for a block");
    co_return;
  }
  if (!find_block(line.database(), name.text).isNull() && !line.spares_warning(2)) {
    const std::wstring text =
        L"Block \"" + name.text + L"\" already exists. Redefine it? [Yes/No] <N>: ";
    const Answer redefine = co_await line.keyword({.text = text, .keywords = L"Yes No"});
    if (!redefine.is(L"Yes")) {
      line.refuse(L"the block \"" + name.text + L"\" stays as it was");
      co_return;
    }
  }
  const Answer base =
      co_await line.point({.text = L"Specify insertion base point: ", .bits = kNoEnter});
  const Answer which = co_await line.selection();
  std::set<std::wstring, LessNoCase> seen;
  if (shows(line.database(), which.selection, name.text, seen)) {
    line.refuse(L"Block references itself");
    co_return;
  }
  if (define(line, name.text, base.point, which.selection)) erase_all(line, which.selection);
}

// --- ATTDEF

struct Mode {
  const wchar_t* name;
  int flag;
};
constexpr Mode kModes[] = {
    {L"Invisible", 1}, {L"Constant", 2}, {L"Verify", 4}, {L"Preset", 8}, {L"Lock", 0}};

Flow<int> ask_modes(CommandLine& line) {
  int flags = line.integer_variable(L"AFLAGS") & 15;
  for (;;) {
    std::wstring text = L"Current attribute modes: ";
    for (const Mode& mode : kModes)
      if (mode.flag != 0)
        text += std::wstring(mode.name) + ((flags & mode.flag) != 0 ? L"=Y " : L"=N ");
    line.remark(text);
    const Answer option = co_await line.keyword(
        {.text = L"Enter an option to change [Invisible/Constant/Verify/Preset/Lock position] "
                 L"<done>: ",
         .keywords = L"Invisible Constant Verify Preset Lock"});
    if (option.none()) break;
    for (const Mode& mode : kModes)
      if (option.is(mode.name)) flags ^= mode.flag;
  }
  line.put_variable(L"AFLAGS", lisp::Value::integer(flags));
  co_return flags;
}

Flow<> attdef_command(CommandLine& line) {
  const int flags = co_await ask_modes(line);
  const Answer tag = co_await line.word({.text = L"Enter attribute tag name: ", .bits = kNoEnter});
  const bool constant = (flags & 2) != 0;
  std::wstring prompt;
  if (!constant) {
    const Answer asked = co_await line.text({.text = L"Enter attribute prompt: "});
    prompt = asked.text;
  }
  const Answer value = co_await line.text(
      {.text = constant ? L"Enter attribute value: " : L"Enter default attribute value: "});
  const TextPlace place = co_await ask_text_place(line);
  const std::wstring name = lisp::symbol_name(tag.text);
  GroupList groups(L"ATTDEF");
  groups.text(1, value.text).text(3, prompt).text(2, name).integer(70, flags);
  add_place(groups, line, place, name, 74);
  draw(line, groups);
}

constexpr CommandRow kRows[] = {
    {"BLOCK", "B BMAKE", block_command, "name [?], [redefine], base point, objects, Enter",
     "makes a block of objects, which are erased"},
    {"ATTDEF", "ATT", attdef_command,
     "modes ..., Enter, tag, prompt, default value, start point [Justify/Style], height, rotation",
     "draws the definition of an attribute"},
};

}  // namespace

std::span<const CommandRow> block_commands() { return kRows; }

}  // namespace cad
