#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/session.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/drawing.h"
#include "host/db/entity.h"
#include "host/db/open.h"
#include "host/lisp/heap.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/wildcard.h"

namespace cad {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

AcDbObjectId id_of_name(std::uint64_t payload) {
  return AcDbObjectId(reinterpret_cast<Stub*>(static_cast<std::uintptr_t>(payload)));
}

Value name_of(Interpreter& interp, AcDbObjectId id) {
  return id.isNull() ? Value() : interp.ename(static_cast<std::uint64_t>(id.asOldId()));
}

namespace {

Value number_value(std::int64_t number) {
  using Bounds = std::numeric_limits<std::int32_t>;
  if (number < Bounds::min() || number > Bounds::max())
    return Value::real(static_cast<double>(number));
  return Value::integer(static_cast<std::int32_t>(number));
}

Value point_value(Interpreter& interp, const Group& group) {
  const double* const n = group.numbers;
  if (group.dimensions == 2) return interp.list({Value::real(n[0]), Value::real(n[1])});
  return interp.list({Value::real(n[0]), Value::real(n[1]), Value::real(n[2])});
}

/// Most texts are plain ASCII: they become a string without one in between.
Value text_value(Interpreter& interp, const RecordGroups& record, const Group& group) {
  bool plain = group.type != Group::Type::kChunk;
  for (const char c : group.bytes)
    plain &= static_cast<signed char>(c) >= ' ' && c != '^' && c != '\\';
  if (!plain || group.bytes.empty()) {
    static thread_local std::wstring text;
    text.clear();
    record.append_text(group, text);
    return interp.string(text);
  }
  lisp::String* string = interp.heap().blank_string(group.bytes.size());
  std::copy(group.bytes.begin(), group.bytes.end(), string->data());
  return Value::adopt(string);
}

Value group_value(Interpreter& interp, const RecordGroups& record, const Group& group) {
  switch (group.type) {
    case Group::Type::kInteger:
      return number_value(group.integer);
    case Group::Type::kReal:
      return Value::real(group.numbers[0]);
    case Group::Type::kPoint:
      return point_value(interp, group);
    case Group::Type::kObject:
      // A pointer to nothing is a name too, one that nothing answers to.
      return interp.ename(static_cast<std::uint64_t>(group.object.asOldId()));
    default:
      return text_value(interp, record, group);
  }
}

/// (-3 ("APP" (1000 . "x") ...) ...) for the applications asked for; nil when there are none.
Value extended_data(Interpreter& interp, const RecordGroups& record, const Value& applications) {
  lisp::ListBuilder result(interp.heap());
  std::optional<lisp::ListBuilder> application;
  bool wanted = false;
  const auto end_application = [&] {
    if (application) result.append(application->finish());
    application.reset();
  };
  for (const Group& group : record.extended_data()) {
    if (group.code == 1001) {
      end_application();
      const std::wstring name = record.text(group);
      wanted = false;
      for (const Value& pattern : lisp::List(applications))
        wanted = wanted || (pattern.is_string() && matches_no_case(name, pattern.text()));
      if (!wanted) continue;
      application.emplace(interp.heap());
      application->append(interp.string(name));
    } else if (wanted) {
      application->append(group_pair(interp, record, group));
    }
  }
  end_application();
  if (result.empty()) return Value();
  return interp.cons(Value::integer(-3), result.finish());
}

}  // namespace

Value group_pair(Interpreter& interp, const RecordGroups& record, const Group& group) {
  return interp.cons(Value::integer(group.code), group_value(interp, record, group));
}

Value entget(Interpreter& interp, AcDbObjectId id, const Value& applications) {
  static thread_local RecordGroups record;  // keeps its memory from call to call
  if (id.isNull() || id.isErased() || !record.read(id)) return Value();
  lisp::ListBuilder list(interp.heap());
  list.append(interp.cons(Value::integer(-1), name_of(interp, id)));
  for (const Group& group : record.groups()) list.append(group_pair(interp, record, group));
  if (!applications.is_nil()) {
    Value data = extended_data(interp, record, applications);
    if (!data.is_nil()) list.append(std::move(data));
  }
  return list.finish();
}

bool matches_no_case(std::wstring_view text, std::wstring_view pattern) {
  return lisp::matches_wildcard(folded(text), folded(pattern));
}

namespace {

AcDbDatabase& drawing_of(const Call& call) { return DocumentSession::of(call).database(); }

Value fn_handent(Call& call) {
  const std::optional<std::uint64_t> handle = parse_handle(call.string(0));
  AcDbObjectId id;
  if (!handle || drawing_of(call).getAcDbObjectId(id, false, AcDbHandle(*handle)) != Acad::eOk)
    return Value();
  return name_of(call.interp(), id);
}

Value fn_entget(Call& call) {
  const AcDbObjectId id = id_of_name(call.ename(0));
  call.list(1);
  return entget(call.interp(), id, call.arg(1));
}

Value fn_entnext(Call& call) {
  AcDbDatabase& drawing = drawing_of(call);
  if (!call.has(0)) return name_of(call.interp(), drawing.first_entity());
  const AcDbObjectId id = id_of_name(call.ename(0));
  return id.isNull() ? Value() : name_of(call.interp(), drawing.next_entity(id));
}

Value fn_entlast(Call& call) { return name_of(call.interp(), last_main_entity(drawing_of(call))); }

Value fn_entdel(Call& call) {
  const AcDbObjectId id = id_of_name(call.ename(0));
  AcDbObject* object = nullptr;
  if (acdbOpenAcDbObject(object, id, AcDb::kForWrite, true) != Acad::eOk) return Value();
  const bool is_main = object->isKindOf(AcDbEntity::desc()) && !is_sub_entity(id);
  const bool done = is_main && object->erase(!object->isErased()) == Acad::eOk;
  object->close();
  return done ? call.arg(0) : Value();
}

Value fn_entupd(Call& call) {
  call.ename(0);
  return call.arg(0);
}

constexpr lisp::Builtin kEntityFunctions[] = {
    // name, arguments, function, usage, help
    {"handent", 1, 1, fn_handent, "(handent handle)",
     "name of the object with that handle, or nil"},
    {"entget", 1, 2, fn_entget, "(entget ename [applications])",
     "groups of an object; with applications (wildcards allowed) their extended data too"},
    {"entnext", 0, 1, fn_entnext, "(entnext [ename])",
     "first entity of the drawing, or the one behind ename"},
    {"entlast", 0, 0, fn_entlast, "(entlast)", "last entity of the drawing"},
    {"entdel", 1, 1, fn_entdel, "(entdel ename)",
     "erases an entity, or brings back one that was erased"},
    {"entupd", 1, 1, fn_entupd, "(entupd ename)", "there is no screen to update: the name itself"},
};

}  // namespace

AcDbObjectId last_main_entity(AcDbDatabase& database) {
  AcDbObjectId id = database.last_entity();
  Drawing& drawing = database.drawing();
  // The parts of an entity stand behind it.
  while (!id.isNull() && (is_sub_entity(id) || id.isErased())) {
    const std::size_t index = StubStore::index_of(*id.stub());
    id = index == 0 ? AcDbObjectId() : AcDbObjectId(&drawing.stub_at(index - 1));
  }
  return id;
}

std::span<const lisp::Builtin> entity_functions() { return kEntityFunctions; }

}  // namespace cad
