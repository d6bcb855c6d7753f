#include <sys/stat.h>

#include <cmath>
#include <numbers>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/host.h"
#include "host/app/prompt/object_snap.h"
#include "host/app/prompt/question.h"
#include "host/app/prompt/ucs.h"
#include "host/app/prompt/user_input.h"
#include "host/app/prompt/values.h"
#include "host/app/select/plan_selection.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/geometry/angle.h"
#include "host/lisp/error.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

enum ErrorNumber { kPickFailed = 7, kOnlyEnter = 52 };

void set_errno(DocumentSession& session, ErrorNumber number) {
  session.variables.set(session.interpreter(), L"ERRNO", Value::integer(number));
}

/// The arguments of most prompts: ([point] [message]).
struct PromptArguments {
  explicit PromptArguments(Call& call, bool point_last = false) {
    std::size_t i = 0;
    if (point_last && call.arg(0).is_string()) message = call.string(i++);
    if (call.arg(i).is_cons()) {
      from = point_of(call.arg(i));
      if (!from) lisp::raise(L"bad argument value: a point");
      ++i;
    } else if (call.size() == 2 && call.arg(i).is_nil()) {
      ++i;
    }
    if (call.has(i)) message = call.string(i);
    if (call.size() > i + 1) lisp::raise(L"too many arguments");
  }
  std::optional<AcGePoint3d> from;
  std::wstring_view message;
};

/// "!name" stands for the value of a variable.
Value typed_input(Interpreter& interp, const std::wstring& typed) {
  if (typed.size() > 1 && typed.front() == L'!')
    return interp.variable(std::wstring_view(typed).substr(1));
  return interp.string(typed);
}

/// Asks until the answer fits. Empty for a pick that hit nothing, when that is to end the prompt.
std::optional<Answer> ask(DocumentSession& session, Wanted wanted, const Ask& given,
                          bool ends_on_miss = false) {
  Interpreter& interp = session.interpreter();
  Question question(session, wanted, given);
  for (;;) {
    const std::wstring typed = ask_user(question.text());
    interp.step();
    const Value input = typed_input(interp, typed);
    const Question::Reading reading = question.read(input);
    if (!question.message().empty()) interp.print(L"\n" + question.message() + L"\n");
    if (reading == Question::Reading::kAnswered) return std::move(question.answer());
    if (ends_on_miss && question.missed()) return std::nullopt;
  }
}

Answer ask(Call& call, Wanted wanted, const PromptArguments& arguments) {
  DocumentSession& session = DocumentSession::of(call);
  const Initget initget = std::exchange(session.initget, {});
  const Ask given{.text = arguments.message,
                  .keywords = initget.keywords,
                  .bits = initget.bits,
                  .from = arguments.from ? &*arguments.from : nullptr};
  Answer answer = *ask(session, wanted, given);
  if (answer.none()) set_errno(session, kOnlyEnter);
  return answer;
}

/// What a prompt of LISP returns for an answer that is no keyword or other text.
template <class Make>
Value value_of(Call& call, const Answer& answer, Make&& make) {
  if (answer.none()) return Value();
  if (answer.is_keyword() || answer.is_text()) return call.interp().string(answer.text);
  return make();
}

Value ask_point(Call& call, Wanted wanted, const PromptArguments& arguments) {
  const Answer answer = ask(call, wanted, arguments);
  return value_of(call, answer, [&] {
    const Value point = list_of(call.interp(), answer.point);
    DocumentSession::of(call).variables.set(call.interp(), L"LASTPOINT", point);
    return point;
  });
}

Value ask_number(Call& call, Wanted wanted) {
  const Answer answer = ask(call, wanted, PromptArguments(call));
  return value_of(call, answer, [&] { return Value::real(answer.number); });
}

Value ask_angle(Call& call, Wanted wanted) {
  const Answer answer = ask(call, wanted, PromptArguments(call));
  return value_of(call, answer, [&] {
    return Value::real(full_turn(std::fmod(answer.number, 2 * std::numbers::pi)));
  });
}

Value fn_initget(Call& call) {
  Initget initget;
  std::size_t i = 0;
  if (call.arg(0).is_integer()) initget.bits = static_cast<unsigned>(call.integer(i++));
  if (call.has(i)) initget.keywords = call.string(i++);
  if (call.has(i)) lisp::raise_bad_type(L"fixnump", call.arg(0));
  DocumentSession::of(call).initget = std::move(initget);
  return Value();
}

Value fn_getpoint(Call& call) { return ask_point(call, Wanted::kPoint, PromptArguments(call)); }

Value fn_getcorner(Call& call) {
  const PromptArguments arguments(call);
  if (!arguments.from) lisp::raise_bad_type(L"point", call.arg(0));
  return ask_point(call, Wanted::kCorner, arguments);
}

Value fn_getdist(Call& call) { return ask_number(call, Wanted::kDistance); }
Value fn_getreal(Call& call) { return ask_number(call, Wanted::kReal); }
Value fn_getangle(Call& call) { return ask_angle(call, Wanted::kAngle); }
Value fn_getorient(Call& call) { return ask_angle(call, Wanted::kOrientation); }

Value fn_getint(Call& call) {
  const Answer answer = ask(call, Wanted::kInteger, PromptArguments(call));
  return value_of(call, answer, [&] { return Value::integer(answer.integer()); });
}

Value fn_getkword(Call& call) {
  if (DocumentSession::of(call).initget.keywords.empty())
    lisp::raise(L"getkword: no keywords, initget must name them first");
  const Answer answer = ask(call, Wanted::kKeyword, PromptArguments(call));
  return value_of(call, answer, [] { return Value(); });
}

Value fn_getstring(Call& call) {
  DocumentSession::of(call).initget = {};
  const bool has_flag = call.has(0) && !call.arg(0).is_string();
  const std::size_t message = has_flag ? 1 : 0;
  std::wstring typed = ask_user(call.has(message) ? call.string(message) : L"");
  if (!has_flag || !call.arg(0)) typed.resize(std::min(typed.find(L' '), typed.size()));
  return call.interp().string(typed);
}

/// (entity point) of a pick; nil, with the reason in ERRNO, for a miss and for Enter.
Value fn_entsel(Call& call) {
  DocumentSession& session = DocumentSession::of(call);
  const Initget initget = std::exchange(session.initget, {});
  const Ask given{.text = call.has(0) ? call.string(0) : L"\nSelect object: ",
                  .keywords = initget.keywords,
                  .bits = initget.bits};
  const std::optional<Answer> answer = ask(session, Wanted::kEntity, given, true);
  if (!answer || answer->none()) {
    set_errno(session, answer ? kOnlyEnter : kPickFailed);
    return Value();
  }
  return value_of(call, *answer, [&] {
    return call.interp().list(
        {name_of(call.interp(), answer->entity), list_of(call.interp(), answer->point)});
  });
}

/// A 4 by 4 list of the map, as nentselp has it, or its transposed upper rows, as nentsel has it.
Value map_list(Interpreter& interp, const AcGeMatrix3d& map, bool whole) {
  lisp::ListBuilder rows(interp.heap());
  for (unsigned row = 0; row < 4; ++row) {
    lisp::ListBuilder items(interp.heap());
    for (unsigned column = 0; column < (whole ? 4u : 3u); ++column)
      items.append(Value::real(whole ? map(row, column) : map(column, row)));
    rows.append(items.finish());
  }
  return rows.finish();
}

/// (entity point), and for a part of a block its map to the world and the references around it.
Value nested_result(DocumentSession& session, const NestedPick& pick, const AcGePoint3d& at,
                    bool whole) {
  Interpreter& interp = session.interpreter();
  lisp::ListBuilder result(interp.heap());
  result.append(name_of(interp, pick.entity));
  result.append(list_of(interp, at));
  if (!pick.references.empty()) {
    result.append(map_list(interp, pick.map, whole));
    lisp::ListBuilder references(interp.heap());
    for (const AcDbObjectId reference : pick.references)
      references.append(name_of(interp, reference));
    result.append(references.finish());
  }
  return result.finish();
}

/// Of an entity that was named there is no more to find than itself.
NestedPick nested_at(DocumentSession& session, const Answer& answer, bool by_point) {
  NestedPick pick;
  if (by_point) pick = nested_pick_at(session, ucs_to_world(session) * answer.point);
  if (pick.entity.isNull()) pick.entity = pick.picked = answer.entity;
  return pick;
}

Value ask_nested(Call& call, const Ask& given, bool whole) {
  DocumentSession& session = DocumentSession::of(call);
  const std::optional<Answer> answer = ask(session, Wanted::kEntity, given, true);
  if (!answer || answer->none()) {
    set_errno(session, answer ? kOnlyEnter : kPickFailed);
    return Value();
  }
  return value_of(call, *answer, [&] {
    const NestedPick pick = nested_at(session, *answer, answer->from_points);
    return nested_result(session, pick, answer->point, whole);
  });
}

Value fn_nentsel(Call& call) {
  const Initget initget = std::exchange(DocumentSession::of(call).initget, {});
  return ask_nested(call,
                    {.text = call.has(0) ? call.string(0) : L"\nSelect object: ",
                     .keywords = initget.keywords,
                     .bits = initget.bits},
                    false);
}

/// With a point nobody is asked.
Value fn_nentselp(Call& call) {
  DocumentSession& session = DocumentSession::of(call);
  const Initget initget = std::exchange(session.initget, {});
  const PromptArguments arguments(call, /*point_last=*/true);
  if (!arguments.from)
    return ask_nested(call,
                      {.text = call.has(0) ? arguments.message : L"\nSelect object: ",
                       .keywords = initget.keywords,
                       .bits = initget.bits},
                      true);
  const NestedPick pick = nested_pick_at(session, ucs_to_world(session) * *arguments.from);
  if (!pick.entity.isNull()) return nested_result(session, pick, *arguments.from, true);
  set_errno(session, kPickFailed);
  return Value();
}

Value fn_osnap(Call& call) {
  const auto point = point_of(call.arg(0));
  if (!point) lisp::raise_bad_type(L"point", call.arg(0));
  const auto modes = snap_modes(call.string(1));
  if (!modes) lisp::raise_bad_value(L"object snap modes", call.arg(1));
  const auto snapped = snap_point(DocumentSession::of(call), *point, *modes);
  return snapped ? list_of(call.interp(), *snapped) : Value();
}

bool is_folder(const std::string& path) {
  struct stat facts;
  return ::stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

enum GetfiledFlag { kNewFile = 1, kAnyExtension = 4 };

/// The file an answer to getfiled names; empty, with the reason printed, when it will not do.
std::optional<std::wstring> file_answer(Interpreter& interp, std::wstring name,
                                        std::wstring_view extension, int flags) {
  const std::size_t base = name.find_last_of(L"/\\");
  const bool has_extension =
      name.find(L'.', base == std::wstring::npos ? 0 : base) != std::wstring::npos;
  if (!has_extension && !extension.empty() && (flags & kAnyExtension) == 0)
    name += L"." + std::wstring(extension.substr(0, extension.find(L';')));
  if ((flags & kNewFile) != 0) return name;
  const std::optional<std::string> found = find_support_file(to_utf8(name));
  if (found && !is_folder(*found)) return from_utf8(*found);
  interp.print(L"\n" + name + L": there is no such file.\n");
  return std::nullopt;
}

/// There is no dialog: the name is asked for. Enter takes the default; without one it is Cancel.
Value fn_getfiled(Call& call) {
  const std::wstring title(call.string(0)), proposed(call.string(1));
  const std::wstring extension(call.string(2));
  const int flags = call.integer(3);
  const bool has_default = !proposed.empty() && proposed.back() != L'/' && proposed.back() != L'\\';
  const std::wstring prompt =
      L"\n" + title + (has_default ? L" <" + proposed + L">: " : std::wstring(L": "));
  for (;;) {
    const std::wstring typed = ask_user(prompt);
    call.interp().step();
    if (typed.empty() && !has_default) return Value();
    const auto name =
        file_answer(call.interp(), typed.empty() ? proposed : typed, extension, flags);
    if (name) return call.interp().string(*name);
  }
}

constexpr lisp::Builtin kPromptFunctions[] = {
    // name, arguments, function, usage, help
    {"initget", 0, 2, fn_initget, "(initget [bits] [keywords])",
     "what the next prompt takes: 1 no Enter, 2 no zero, 4 nothing negative, 64 distances without "
     "Z, 128 any text; and which keywords"},
    {"getpoint", 0, 2, fn_getpoint, "(getpoint [from] [prompt])", "a point by the user"},
    {"getcorner", 1, 2, fn_getcorner, "(getcorner from [prompt])", "the opposite corner"},
    {"getdist", 0, 2, fn_getdist, "(getdist [from] [prompt])",
     "a distance: a number, or two points"},
    {"getangle", 0, 2, fn_getangle, "(getangle [from] [prompt])",
     "an angle in radians, counter-clockwise from ANGBASE: a number, or two points"},
    {"getorient", 0, 2, fn_getorient, "(getorient [from] [prompt])",
     "as getangle, from the X axis"},
    {"getreal", 0, 1, fn_getreal, "(getreal [prompt])", "a number by the user"},
    {"getint", 0, 1, fn_getint, "(getint [prompt])", "an integer by the user"},
    {"getkword", 0, 1, fn_getkword, "(getkword [prompt])", "one of the keywords of initget"},
    {"getstring", 0, 2, fn_getstring, "(getstring [blanks] [prompt])",
     "a text by the user; up to the first blank unless blanks is T"},
    {"entsel", 0, 1, fn_entsel, "(entsel [prompt])",
     "(entity point) by the user: a point picks, \"handle:2F3\" and \"Last\" name; nil for a miss "
     "(ERRNO 7) and for Enter (ERRNO 52)"},
    {"nentsel", 0, 1, fn_nentsel, "(nentsel [prompt])",
     "as entsel, but of a block the part that was picked: (entity point map references)"},
    {"nentselp", 0, 2, fn_nentselp, "(nentselp [prompt] [point])",
     "as nentsel, with a map of 4 by 4; a point picks without asking"},
    {"getfiled", 4, 4, fn_getfiled, "(getfiled title default extension flags)",
     "a file name by the user, asked for at the command line"},
    {"osnap", 2, 2, fn_osnap, "(osnap point modes)",
     "the point an object snap (\"_end,_mid\") finds near the point; nil when there is none"},
};

}  // namespace

std::span<const lisp::Builtin> prompt_functions() { return kPromptFunctions; }

}  // namespace cad
