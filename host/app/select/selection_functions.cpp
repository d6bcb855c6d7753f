#include <algorithm>
#include <cmath>
#include <utility>

#include "host/app/aced.h"
#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/invocation.h"
#include "host/app/select/selection.h"
#include "host/base/codepage.h"
#include "host/lisp/error.h"
#include "host/lisp/interpreter.h"

namespace cad {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

namespace {

std::uint64_t payload(AcDbObjectId id) { return static_cast<std::uint64_t>(id.asOldId()); }

Value pickset_of(Interpreter& interp, const std::vector<AcDbObjectId>& ids) {
  Value set = interp.pickset();
  std::vector<std::uint64_t> members;
  members.reserve(ids.size());
  for (const AcDbObjectId id : ids) members.push_back(payload(id));
  set.pickset()->assign(std::move(members));
  return set;
}

bool is_point(const Value& value) {
  const lisp::List list(value);
  return value.car().is_number() && list.at_or_nil(1).is_number();
}

/// (ssget [mode] [points...] [filter])
Value fn_ssget(Call& call) {
  DocumentSession& session = DocumentSession::of(call);
  std::wstring_view mode;
  const Value* filter_list = nullptr;
  for (std::size_t i = 0; i < call.size(); ++i) {
    const Value& argument = call.arg(i);
    if (argument.is_string() && i == 0) {
      mode = argument.text();
    } else if (is_point(argument)) {
      lisp::raise(L"ssget at a point needs a screen");
    } else if (argument.is_list()) {
      if (argument.is_cons()) filter_list = &argument;
    } else {
      lisp::raise_bad_type(L"listp", argument);
    }
  }
  SelectionFilter filter;
  if (filter_list) {
    Result<SelectionFilter> read = SelectionFilter::from_list(*filter_list);
    if (!read) lisp::raise(from_utf8(read.error().what));
    filter = std::move(*read);
  }
  const std::vector<AcDbObjectId> ids = select(session, mode, filter);
  return ids.empty() ? Value() : pickset_of(call.interp(), ids);
}

Value fn_sslength(Call& call) {
  return Value::integer(static_cast<std::int32_t>(call.pickset(0).enames.size()));
}

Value fn_ssname(Call& call) {
  const lisp::Pickset& set = call.pickset(0);
  const double index = std::trunc(call.real(1));
  if (!(index >= 0) || index >= static_cast<double>(set.enames.size())) return Value();
  return call.interp().ename(set.enames[static_cast<std::size_t>(index)]);
}

Value fn_ssadd(Call& call) {
  if (call.size() == 2) {
    add_member(call.pickset(1), id_of_name(call.ename(0)));
    return call.arg(1);
  }
  const AcDbObjectId first = call.has(0) ? id_of_name(call.ename(0)) : AcDbObjectId();
  Value set = call.interp().pickset();
  if (!first.isNull()) add_member(*set.pickset(), first);
  return set;
}

Value fn_ssdel(Call& call) {
  return remove_member(call.pickset(1), id_of_name(call.ename(0))) ? call.arg(1) : Value();
}

Value fn_ssmemb(Call& call) {
  return contains(call.pickset(1), id_of_name(call.ename(0))) ? call.arg(0) : Value();
}

constexpr lisp::Builtin kSelectionFunctions[] = {
    // name, arguments, function, usage, help
    {"ssget", 0, 5, fn_ssget, "(ssget [mode] [filter])",
     "selects entities: \"X\" the whole drawing, \"A\" the current space, \"L\" the last, \"P\" "
     "the previous selection, otherwise the user; nil when nothing fits"},
    {"sslength", 1, 1, fn_sslength, "(sslength set)", "number of entities in a selection set"},
    {"ssname", 2, 2, fn_ssname, "(ssname set index)", "entity of a set, from 0; nil past the end"},
    {"ssadd", 0, 2, fn_ssadd, "(ssadd [ename [set]])", "adds an entity to a set, or to a new one"},
    {"ssdel", 2, 2, fn_ssdel, "(ssdel ename set)", "takes an entity out of a set"},
    {"ssmemb", 2, 2, fn_ssmemb, "(ssmemb ename set)", "ename when it is in the set, else nil"},
};

/// The set a module names, in the session it is working in.
struct NamedSet {
  DocumentSession* session = DocumentSession::current();
  const Value* value = nullptr;

  explicit NamedSet(const std::int64_t* name) {
    if (session && name) value = session->selection_sets.find(name[0]);
  }
  explicit operator bool() const { return value != nullptr; }
  lisp::Pickset* operator->() const { return value->pickset(); }
  lisp::Pickset& operator*() const { return *value->pickset(); }
};

bool give_set(DocumentSession& session, const std::vector<AcDbObjectId>& ids, ads_name set) {
  const std::int64_t number = session.selection_sets.keep(pickset_of(session.interpreter(), ids));
  set[0] = number;
  return number != 0;
}

}  // namespace

std::span<const lisp::Builtin> selection_functions() { return kSelectionFunctions; }

}  // namespace cad

using cad::NamedSet;

int acedSSGet(const ACHAR* how, const void* point1, const void* point2, const resbuf* filter,
              ads_name set) {
  if (!set) return RTREJ;
  set[0] = set[1] = 0;
  cad::DocumentSession* const session = cad::DocumentSession::current();
  if (!session || point1 || point2) return RTREJ;
  cad::Result<cad::SelectionFilter> compiled = cad::SelectionFilter::from_chain(filter);
  if (!compiled) return RTREJ;
  try {
    const std::vector<AcDbObjectId> ids = cad::select(*session, how ? how : L"", *compiled);
    if (ids.empty()) return RTERROR;
    return cad::give_set(*session, ids, set) ? RTNORM : RTERROR;
  } catch (const cad::lisp::LispError&) {
    return RTREJ;
  }
}

int acedSSFree(const ads_name set) {
  cad::DocumentSession* const session = cad::DocumentSession::current();
  return session && set && session->selection_sets.free(set[0]) ? RTNORM : RTERROR;
}

int acedSSLength(const ads_name set, std::int32_t* length) {
  const NamedSet named(set);
  if (!named || !length) return RTERROR;
  *length = static_cast<std::int32_t>(named->enames.size());
  return RTNORM;
}

int acedSSName(const ads_name set, std::int32_t index, ads_name entity) {
  const NamedSet named(set);
  if (!named || !entity || index < 0 || static_cast<std::size_t>(index) >= named->enames.size())
    return RTERROR;
  entity[0] = static_cast<std::int64_t>(named->enames[static_cast<std::size_t>(index)]);
  entity[1] = 0;
  return RTNORM;
}

int acedSSAdd(const ads_name entity, const ads_name set, ads_name result) {
  cad::DocumentSession* const session = cad::DocumentSession::current();
  if (!session || !result) return RTERROR;
  AcDbObjectId id;
  if (entity && acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
  if (set) {
    const NamedSet named(set);
    if (!named || id.isNull()) return RTERROR;
    cad::add_member(*named, id);
    result[0] = set[0];
    result[1] = 0;
    return RTNORM;
  }
  result[1] = 0;
  try {
    std::vector<AcDbObjectId> members;
    if (!id.isNull()) members.push_back(id);
    return cad::give_set(*session, members, result) ? RTNORM : RTERROR;
  } catch (const cad::lisp::LispError&) {
    return RTERROR;
  }
}

int acedSSDel(const ads_name entity, const ads_name set) {
  const NamedSet named(set);
  AcDbObjectId id;
  if (!named || !entity || acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
  return cad::remove_member(*named, id) ? RTNORM : RTERROR;
}

int acedSSMemb(const ads_name entity, const ads_name set) {
  const NamedSet named(set);
  AcDbObjectId id;
  if (!named || !entity || acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
  return cad::contains(*named, id) ? RTNORM : RTERROR;
}
