#include <cmath>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/prompt/ucs.h"
#include "host/app/prompt/values.h"
#include "host/app/select/selection.h"
#include "host/base/codepage.h"
#include "host/lisp/error.h"
#include "host/lisp/interpreter.h"

namespace cad {

using lisp::Call;
using lisp::Interpreter;
using lisp::ListBuilder;
using lisp::Value;

namespace {

/// What ssget is given: ([mode] [point [point] | (point...)] [filter]).
struct Arguments {
  Arguments(Call& call, DocumentSession& session) {
    const AcGeMatrix3d to_world = ucs_to_world(session);
    std::size_t i = 0;
    if (call.arg(0).is_string()) mode = call.string(i++);
    for (; i < call.size() && point_of(call.arg(i)); ++i)
      points.push_back(to_world * *point_of(call.arg(i)));
    if (points.empty() && takes_point_list(mode) && is_point_list(call.arg(i))) {
      for (const Value& item : call.list(i)) points.push_back(to_world * *point_of(item));
      ++i;
    }
    if (i < call.size()) {
      filter = call.list(i).empty() ? nullptr : &call.arg(i);
      ++i;
    }
    if (i < call.size()) lisp::raise(L"too many arguments");
  }

  static bool is_point_list(const Value& value) {
    if (!value.is_cons()) return false;
    for (const Value& item : lisp::List(value))
      if (!point_of(item)) return false;
    return true;
  }

  std::wstring_view mode;
  std::vector<AcGePoint3d> points;
  const Value* filter = nullptr;
};

SelectionFilter filter_of(const Value* list) {
  if (!list) return {};
  Result<SelectionFilter> read = SelectionFilter::from_list(*list);
  if (!read) lisp::raise(from_utf8(read.error().what));
  return std::move(*read);
}

Value fn_ssget(Call& call) {
  DocumentSession& session = DocumentSession::of(call);
  const Arguments arguments(call, session);
  const SelectionFilter filter = filter_of(arguments.filter);
  Selection found = select(session, SelectionRequest{arguments.mode, arguments.points}, filter);
  return found.empty() ? Value() : pickset_of(call.interp(), std::move(found));
}

Value fn_sslength(Call& call) {
  return Value::integer(static_cast<std::int32_t>(call.pickset(0).enames.size()));
}

/// The member a call names by its index.
std::optional<std::uint64_t> member_at(Call& call, const lisp::Pickset& set, std::size_t argument) {
  const double index = std::trunc(call.real(argument));
  if (!(index >= 0) || index >= static_cast<double>(set.enames.size())) return std::nullopt;
  return set.enames[static_cast<std::size_t>(index)];
}

Value fn_ssname(Call& call) {
  const auto member = member_at(call, call.pickset(0), 1);
  return member ? call.interp().ename(*member) : Value();
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

/// A point of the world as ssnamex gives it: seen along Z, an infinite line (0) through it.
Value point_item(Interpreter& interp, const AcGePoint3d& point) {
  return interp.list({Value::integer(0), list_of(interp, point)});
}

/// (method name 0 [polygon or points])
Value how_item(Interpreter& interp, std::uint64_t member, const Selection* origin) {
  ListBuilder item(interp.heap());
  const AcDbObjectId id = id_of_name(member);
  const Selection::How how = origin ? origin->how(id) : Selection::How();
  item.append(Value::integer(static_cast<std::int32_t>(how.method)));
  item.append(interp.ename(member));
  item.append(Value::integer(0));  // the mark of a screen's picture, which there is none of
  if (how.polygon != 0) item.append(Value::integer(how.polygon));
  if (origin)
    for (const AcGePoint3d& place : origin->places(id)) item.append(point_item(interp, place));
  return item.finish();
}

void append_polygon(Interpreter& interp, const Selection& origin, int number, ListBuilder& out) {
  ListBuilder item(interp.heap());
  item.append(Value::integer(number));
  for (const AcGePoint3d& corner : origin.polygons()[static_cast<std::size_t>(-number - 1)])
    item.append(point_item(interp, corner));
  out.append(item.finish());
}

Value fn_ssnamex(Call& call) {
  Interpreter& interp = call.interp();
  const lisp::Pickset& set = call.pickset(0);
  const auto origin = std::static_pointer_cast<Selection>(set.origin);
  ListBuilder out(interp.heap());
  if (call.has(1)) {
    const auto member = member_at(call, set, 1);
    if (!member) return Value();
    out.append(how_item(interp, *member, origin.get()));
    const int polygon = origin ? origin->how(id_of_name(*member)).polygon : 0;
    if (polygon != 0) append_polygon(interp, *origin, polygon, out);
    return out.finish();
  }
  for (const std::uint64_t member : set.enames) out.append(how_item(interp, member, origin.get()));
  const int polygons = origin ? static_cast<int>(origin->polygons().size()) : 0;
  for (int i = 1; i <= polygons; ++i) append_polygon(interp, *origin, -i, out);
  return out.finish();
}

/// Entities that are selected before a command; grips are for screens.
Value fn_sssetfirst(Call& call) {
  DocumentSession& session = DocumentSession::of(call);
  session.implied_selection.clear();
  const Value& chosen = call.has(1) && call.arg(1) ? call.arg(1) : call.arg(0);
  if (chosen)
    for (const std::uint64_t member : call.pickset(call.arg(1) ? 1 : 0).enames)
      session.implied_selection.push_back(id_of_name(member));
  return call.interp().list({Value(), chosen});
}

Value fn_ssgetfirst(Call& call) {
  DocumentSession& session = DocumentSession::of(call);
  Selection chosen;
  for (const AcDbObjectId id : session.implied_selection)
    if (!id.isErased()) chosen.add(id);
  Value set = chosen.empty() ? Value() : pickset_of(call.interp(), std::move(chosen));
  return call.interp().list({Value(), std::move(set)});
}

constexpr lisp::Builtin kSelectionFunctions[] = {
    // name, arguments, function, usage, help
    {"ssget", 0, 5, fn_ssget, "(ssget [mode] [point [point]] [points] [filter])",
     "selects entities: \"X\" the whole drawing, \"A\" the current space, \"L\" the last, \"P\" "
     "the previous selection, \"I\" what is selected already, \"W\" \"C\" \"B\" by two corners, "
     "\"WP\" \"CP\" \"F\" by a list of points, a point what is there, otherwise the user; \":L\" "
     "nothing on locked layers, \":S\" one step, \":E\" all within the pick box; nil when nothing "
     "fits"},
    {"sslength", 1, 1, fn_sslength, "(sslength set)", "number of entities in a selection set"},
    {"ssname", 2, 2, fn_ssname, "(ssname set index)", "entity of a set, from 0; nil past the end"},
    {"ssnamex", 1, 2, fn_ssnamex, "(ssnamex set [index])",
     "how the entities of a set were selected"},
    {"ssadd", 0, 2, fn_ssadd, "(ssadd [ename [set]])", "adds an entity to a set, or to a new one"},
    {"ssdel", 2, 2, fn_ssdel, "(ssdel ename set)", "takes an entity out of a set"},
    {"ssmemb", 2, 2, fn_ssmemb, "(ssmemb ename set)", "ename when it is in the set, else nil"},
    {"sssetfirst", 1, 2, fn_sssetfirst, "(sssetfirst grips [set])",
     "selects entities before a command: for (ssget) and (ssget \"I\")"},
    {"ssgetfirst", 0, 0, fn_ssgetfirst, "(ssgetfirst)",
     "(nil set) of the entities that are selected"},
};

}  // namespace

std::span<const lisp::Builtin> selection_functions() { return kSelectionFunctions; }

}  // namespace cad
