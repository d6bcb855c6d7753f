#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/session.h"
#include "host/db/dictionary.h"
#include "host/db/entity.h"
#include "host/db/open.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Value;

/// A dictionary open for reading as long as the guard lives; false when the name is of none.
class OpenDictionary {
 public:
  OpenDictionary(AcDbObjectId id, AcDb::OpenMode mode) { acdbOpenObject(dictionary_, id, mode); }
  ~OpenDictionary() {
    if (dictionary_) dictionary_->close();
  }
  OpenDictionary(const OpenDictionary&) = delete;
  OpenDictionary& operator=(const OpenDictionary&) = delete;
  explicit operator bool() const { return dictionary_ != nullptr; }
  AcDbDictionary* operator->() const { return dictionary_; }

 private:
  AcDbDictionary* dictionary_ = nullptr;
};

/// The order of iteration: by upper-case characters.
bool comes_behind(std::wstring_view key, std::wstring_view other) {
  const auto upper = [](wchar_t c) { return c >= L'a' && c <= L'z' ? c - L'a' + L'A' : c; };
  return std::lexicographical_compare(other.begin(), other.end(), key.begin(), key.end(),
                                      [&](wchar_t a, wchar_t b) { return upper(a) < upper(b); });
}

/// What dictionaries and tables answer for an entry: its groups.
Value entry_list(Call& call, AcDbObjectId id) { return entget(call.interp(), id, Value()); }

Value fn_namedobjdict(Call& call) {
  return name_of(call.interp(), DocumentSession::of(call).database().namedObjectsDictionaryId());
}

Value fn_dictsearch(Call& call) {
  const AcDbObjectId id = id_of_name(call.ename(0));
  const std::wstring key(call.string(1));
  AcDbObjectId entry;
  {
    const OpenDictionary dictionary(id, AcDb::kForRead);
    if (!dictionary || dictionary->getAt(key.c_str(), entry) != Acad::eOk) return Value();
  }
  // With a third argument dictnext goes on behind this entry.
  if (call.arg(2)) DocumentSession::of(call).dictionary_walks[id] = key;
  return entry_list(call, entry);
}

Value fn_dictnext(Call& call) {
  const AcDbObjectId id = id_of_name(call.ename(0));
  std::map<AcDbObjectId, std::optional<std::wstring>>& walks =
      DocumentSession::of(call).dictionary_walks;
  if (call.arg(1)) walks.erase(id);
  AcDbObjectId entry;
  {
    const OpenDictionary dictionary(id, AcDb::kForRead);
    if (!dictionary) return Value();
    const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
    // The key delivered last may be gone by now: the first one behind it in order is next.
    std::optional<std::wstring>& last = walks[id];
    if (last)
      while (!walk->done() && !comes_behind(walk->name(), *last)) walk->next();
    if (walk->done()) return Value();
    last = walk->name();
    entry = walk->objectId();
  }
  return entry_list(call, entry);
}

Value fn_dictremove(Call& call) {
  const std::wstring key(call.string(1));
  const OpenDictionary dictionary(id_of_name(call.ename(0)), AcDb::kForWrite);
  AcDbObjectId entry;
  if (!dictionary || dictionary->getAt(key.c_str(), entry) != Acad::eOk ||
      dictionary->remove(key.c_str()) != Acad::eOk)
    return Value();
  return name_of(call.interp(), entry);
}

/// Files an object without owner under a key that is free.
Value fn_dictadd(Call& call) {
  const AcDbObjectId id = id_of_name(call.ename(0));
  const std::wstring key(call.string(1));
  const AcDbObjectId entry = id_of_name(call.ename(2));
  const OpenDictionary dictionary(id, AcDb::kForWrite);
  if (!dictionary || dictionary->has(key.c_str())) return Value();
  AcDbObject* object = nullptr;
  if (entry == id || acdbOpenAcDbObject(object, entry, AcDb::kForWrite) != Acad::eOk)
    return Value();
  AcDbObjectId filed;
  const bool is_entity = object->isKindOf(AcDbEntity::desc());
  const bool done = !is_entity && dictionary->setAt(key.c_str(), object, filed) == Acad::eOk;
  object->close();
  return done ? call.arg(2) : Value();
}

Value fn_dictrename(Call& call) {
  const std::wstring key(call.string(1)), new_key(call.string(2));
  const OpenDictionary dictionary(id_of_name(call.ename(0)), AcDb::kForWrite);
  const bool done = dictionary && dictionary->setName(key.c_str(), new_key.c_str()) == Acad::eOk;
  return done ? call.arg(2) : Value();
}

constexpr lisp::Builtin kDictionaryFunctions[] = {
    // name, arguments, function, usage, help
    {"namedobjdict", 0, 0, fn_namedobjdict, "(namedobjdict)", "name of the drawing's dictionary"},
    {"dictsearch", 2, 3, fn_dictsearch, "(dictsearch ename key [setnext])",
     "groups of a dictionary's entry; with setnext, dictnext continues behind it"},
    {"dictnext", 1, 2, fn_dictnext, "(dictnext ename [rewind])",
     "groups of a dictionary's next entry; nil at the end"},
    {"dictadd", 3, 3, fn_dictadd, "(dictadd ename key object)",
     "files an object made by entmakex in a dictionary: its name, or nil when the key is taken"},
    {"dictrename", 3, 3, fn_dictrename, "(dictrename ename key new-key)",
     "gives a dictionary's entry another key: that key, or nil"},
    {"dictremove", 2, 2, fn_dictremove, "(dictremove ename key)",
     "takes an entry out of a dictionary, without erasing it: its name, or nil"},
};

}  // namespace

std::span<const lisp::Builtin> dictionary_functions() { return kDictionaryFunctions; }

}  // namespace cad
