// Lists that programs keep in the drawing under a key: in a dictionary of the drawing, or with an
// object. An entry is an xrecord in a dictionary: the named one of the drawing's root, or LDATA in
// the object's extension dictionary. Its data spell the list: 1 a text, 90 an integer, 40 a real,
// 330 an object, 2 a symbol, and 102 the marks ( ) . and nil.

#include <memory>
#include <string>
#include <vector>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/db/dictionary.h"
#include "host/db/make_object.h"
#include "host/db/open.h"
#include "host/db/record_groups.h"
#include "host/lisp/error.h"
#include "host/lisp/heap.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

constexpr const wchar_t* kOfObject = L"LDATA";
constexpr int kMark = 102;
constexpr int kSymbol = 2;

/// Closes what it opened.
template <class T>
class Opened {
 public:
  Opened(AcDbObjectId id, AcDb::OpenMode mode) { acdbOpenObject(object_, id, mode); }
  ~Opened() {
    if (object_) object_->close();
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  explicit operator bool() const { return object_ != nullptr; }
  T* operator->() const { return object_; }

 private:
  T* object_ = nullptr;
};

/// The dictionary filed under a key of another, made when `create` is set.
AcDbObjectId dictionary_in(AcDbObjectId parent, const wchar_t* key, bool create) {
  AcDbObjectId found;
  {
    const Opened<AcDbDictionary> dictionary(parent, AcDb::kForRead);
    if (!dictionary) return {};
    if (dictionary->getAt(key, found) == Acad::eOk) {
      const bool fits = found.objectClass()->isDerivedFrom(AcDbDictionary::desc());
      return fits ? found : AcDbObjectId();
    }
  }
  if (!create) return {};
  const Opened<AcDbDictionary> dictionary(parent, AcDb::kForWrite);
  if (!dictionary) return {};
  auto made = std::make_unique<AcDbDictionary>();
  if (dictionary->setAt(key, made.get(), found) != Acad::eOk) return {};
  made.release()->close();
  return found;
}

/// The dictionary that the first argument stands for: a name, or an object.
AcDbObjectId dictionary_of(Call& call, bool create) {
  if (call.arg(0).is_string()) {
    const std::wstring name(call.string(0));
    AcDbDatabase& database = DocumentSession::of(call).database();
    return dictionary_in(database.namedObjectsDictionaryId(), name.c_str(), create);
  }
  const AcDbObjectId owner = id_of_name(call.ename(0));
  AcDbObjectId extension;
  {
    const Opened<AcDbObject> object(owner, create ? AcDb::kForWrite : AcDb::kForRead);
    if (!object) return {};
    if (create) object->createExtensionDictionary();
    extension = object->extensionDictionary();
  }
  return dictionary_in(extension, kOfObject, create);
}

AcDbObjectId entry_in(AcDbObjectId dictionary_id, const std::wstring& key) {
  AcDbObjectId found;
  const Opened<AcDbDictionary> dictionary(dictionary_id, AcDb::kForRead);
  if (dictionary) dictionary->getAt(key.c_str(), found);
  return found;
}

/// Spells a value as groups. Texts stay in the value.
class Speller {
 public:
  void add(const Value& value, int depth = 0) {
    constexpr int kDeepest = 1000;
    if (depth > kDeepest) lisp::raise(L"bad argument value: the list is nested too deep");
    GroupView group;
    if (value.is_cons()) return add_list(value, depth);
    if (value.is_nil()) return mark(L"nil");
    if (value.is_string()) {
      group.code = 1;
      group.text = value.text();
    } else if (value.is_integer()) {
      group.code = 90;
      group.type = GroupView::Type::kInteger;
      group.integer = value.integer();
    } else if (value.is_real()) {
      group.code = 40;
      group.type = GroupView::Type::kReal;
      group.numbers[0] = value.real();
    } else if (value.is_symbol()) {
      group.code = kSymbol;
      group.text = value.symbol()->name;
    } else if (value.is_ename()) {
      group.code = 330;
      group.type = GroupView::Type::kObject;
      group.object = id_of_name(value.ename());
    } else {
      lisp::raise_bad_type(L"a list, text, number, symbol or entity name", value);
    }
    groups_.push_back(group);
  }
  void mark(std::wstring_view text) {
    GroupView group;
    group.code = kMark;
    group.text = text;
    groups_.push_back(group);
  }
  std::vector<GroupView>& groups() { return groups_; }

 private:
  void add_list(const Value& list, int depth) {
    mark(L"(");
    const Value* at = &list;
    for (; at->is_cons(); at = &at->cdr()) add(at->car(), depth + 1);
    if (!at->is_nil()) {
      mark(L".");
      add(*at, depth + 1);
    }
    mark(L")");
  }

  std::vector<GroupView> groups_;
};

/// Reads the value that groups spell; nil for groups that spell none.
class Reader {
 public:
  Reader(Interpreter& interp, const RecordGroups& record) : interp_(interp), record_(record) {}

  Value read() {
    bool in_data = false;
    for (const Group& group : record_.groups()) {
      if (in_data && group.code != 280) take(group);
      in_data = in_data || group.code == 100;
    }
    return levels_.empty() ? result_ : Value();
  }

 private:
  struct Level {
    std::vector<Value> items;
    bool dotted = false;
  };

  void take(const Group& group) {
    if (group.code != kMark) return put(value_of(group));
    const std::wstring mark = record_.text(group);
    if (mark == L"(") {
      levels_.emplace_back();
    } else if (mark == L"nil") {
      put(Value());
    } else if (mark == L"." && !levels_.empty()) {
      levels_.back().dotted = true;
    } else if (mark == L")" && !levels_.empty()) {
      Level level = std::move(levels_.back());
      levels_.pop_back();
      put(list_of(level));
    }
  }
  void put(Value value) {
    if (levels_.empty()) {
      result_ = std::move(value);
    } else {
      levels_.back().items.push_back(std::move(value));
    }
  }
  Value value_of(const Group& group) {
    if (group.code == kSymbol) {
      return Value::symbol(&interp_.intern(record_.text(group)));
    }
    return group_pair(interp_, record_, group).cdr();
  }
  Value list_of(const Level& level) {
    std::size_t end = level.items.size();
    Value list;
    if (level.dotted && end > 0) list = level.items[--end];
    while (end > 0) list = interp_.cons(level.items[--end], std::move(list));
    return list;
  }

  Interpreter& interp_;
  const RecordGroups& record_;
  std::vector<Level> levels_;
  Value result_;
};

Value read_entry(Interpreter& interp, AcDbObjectId entry) {
  RecordGroups record;
  if (entry.isNull() || !record.read(entry)) return Value();
  return Reader(interp, record).read();
}

Value fn_ldata_put(Call& call) {
  const std::wstring key(call.string(1));
  Speller spelled;
  GroupView kind, marker;
  kind.text = L"XRECORD";
  marker.code = 100;
  marker.text = L"AcDbXrecord";
  spelled.groups() = {kind, marker};
  spelled.add(call.arg(2));
  const AcDbObjectId dictionary_id = dictionary_of(call, true);
  if (dictionary_id.isNull()) return Value();
  const AcDbObjectId old = entry_in(dictionary_id, key);
  if (!old.isNull()) {
    const Status changed = change_object(old, spelled.groups());
    return changed ? call.arg(2) : Value();
  }
  const Result<AcDbObjectId> made =
      make_object(DocumentSession::of(call).database(), spelled.groups());
  if (!made) return Value();
  const Opened<AcDbDictionary> dictionary(dictionary_id, AcDb::kForWrite);
  AcDbObject* record = nullptr;
  if (!dictionary || acdbOpenAcDbObject(record, *made, AcDb::kForWrite) != Acad::eOk)
    return Value();
  AcDbObjectId filed;
  const bool done = dictionary->setAt(key.c_str(), record, filed) == Acad::eOk;
  if (!done) record->erase();
  record->close();
  return done ? call.arg(2) : Value();
}

Value fn_ldata_get(Call& call) {
  const std::wstring key(call.string(1));
  const AcDbObjectId entry = entry_in(dictionary_of(call, false), key);
  return entry.isNull() ? call.arg(2) : read_entry(call.interp(), entry);
}

Value fn_ldata_delete(Call& call) {
  const std::wstring key(call.string(1));
  const AcDbObjectId entry = entry_in(dictionary_of(call, false), key);
  if (entry.isNull()) return Value();
  const Opened<AcDbObject> record(entry, AcDb::kForWrite);
  return call.truth(record && record->erase() == Acad::eOk);
}

Value fn_ldata_list(Call& call) {
  std::vector<std::pair<std::wstring, AcDbObjectId>> entries;
  {
    const Opened<AcDbDictionary> dictionary(dictionary_of(call, false), AcDb::kForRead);
    if (!dictionary) return Value();
    const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
    for (; !walk->done(); walk->next()) entries.emplace_back(walk->name(), walk->objectId());
  }
  Interpreter& interp = call.interp();
  lisp::ListBuilder list(interp.heap());
  for (const auto& [key, entry] : entries)
    list.append(interp.cons(interp.string(key), read_entry(interp, entry)));
  return list.finish();
}

constexpr lisp::Builtin kLdataFunctions[] = {
    // name, arguments, function, usage, help
    {"vlax-ldata-put", 3, 4, fn_ldata_put, "(vlax-ldata-put dictionary key data [private])",
     "keeps a value in the drawing under a key, in a dictionary by name or with an object; stored "
     "as "
     "an xrecord"},
    {"vlax-ldata-get", 2, 4, fn_ldata_get, "(vlax-ldata-get dictionary key [default] [private])",
     "the value kept under a key, or the default"},
    {"vlax-ldata-delete", 2, 3, fn_ldata_delete, "(vlax-ldata-delete dictionary key [private])",
     "forgets the value kept under a key: T, or nil when there was none"},
    {"vlax-ldata-list", 1, 2, fn_ldata_list, "(vlax-ldata-list dictionary [private])",
     "all keys and values kept there, as pairs"},
};

}  // namespace

std::span<const lisp::Builtin> ldata_functions() { return kLdataFunctions; }

}  // namespace cad
