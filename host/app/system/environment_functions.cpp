#include <unistd.h>

#include <cstdlib>
#include <map>
#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/system/environment.h"
#include "host/app/system/settings_store.h"
#include "host/base/codepage.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

std::map<std::wstring, std::wstring, std::less<>>& own_values() {
  static std::map<std::wstring, std::wstring, std::less<>> values;
  return values;
}

struct Meaning {
  std::string_view name;
  const char* variable;
  const char* otherwise;
};
/// Variables of the host's own system that programs ask for.
constexpr Meaning kMeanings[] = {
    {"TEMP", "TMPDIR", "/tmp"},
    {"TMP", "TMPDIR", "/tmp"},
    {"USERNAME", "USER", nullptr},
    {"USERPROFILE", "HOME", nullptr},
};

}  // namespace

std::optional<std::wstring> environment_value(std::wstring_view name) {
  if (const auto own = own_values().find(name); own != own_values().end()) return own->second;
  const std::string plain = to_utf8(name);
  const char* value = std::getenv(plain.c_str());
  for (const Meaning& row : kMeanings)
    if (!value && plain == row.name) {
      value = std::getenv(row.variable);
      if (!value) value = row.otherwise;
    }
  if (!value) return std::nullopt;
  return from_utf8(value);
}

void set_environment_value(std::wstring_view name, std::wstring_view value) {
  own_values().insert_or_assign(std::wstring(name), std::wstring(value));
}

namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

Value fn_getenv(Call& call) {
  const std::optional<std::wstring> value = environment_value(call.string(0));
  return value ? call.interp().string(*value) : Value();
}

Value fn_setenv(Call& call) {
  set_environment_value(call.string(0), call.string(1));
  return call.arg(1);
}

// --- Kept settings

[[noreturn]] void raise_failure(const Call& call, const Error& error) {
  lisp::raise(from_utf8(std::string(call.row().name) + ": " + error.message()));
}

SettingsStore settings(const Call& call) {
  Result<SettingsStore> store = SettingsStore::read(SettingsStore::user_file());
  if (!store) raise_failure(call, store.error());
  return *std::move(store);
}

void keep(const Call& call, const SettingsStore& store) {
  const std::string file = SettingsStore::user_file();
  if (file.empty()) raise_failure(call, Error{"settings", "have no place: set HOME"});
  if (const Status status = store.write(file); !status) raise_failure(call, status.error());
}

Value to_lisp(Interpreter& interp, const SettingsStore::Value* value) {
  if (!value) return {};
  return value->index() == 0 ? interp.string(std::get<0>(*value))
                             : Value::integer(std::get<1>(*value));
}

/// "AppData/Tools/Scale" is the value Scale of the key AppData/Tools; other keys are refused.
struct CfgName {
  std::wstring_view key;
  std::wstring_view name;
};
std::optional<CfgName> cfg_name(std::wstring_view path) {
  const std::size_t last = path.find_last_of(L"/\\");
  const std::size_t first = path.find_first_of(L"/\\");
  if (last == path.npos || first == last || !equal_no_case(path.substr(0, first), L"AppData"))
    return std::nullopt;
  return CfgName{path.substr(0, last), path.substr(last + 1)};
}

Value fn_getcfg(Call& call) {
  const auto asked = cfg_name(call.string(0));
  if (!asked) return {};
  return to_lisp(call.interp(), settings(call).find(asked->key, asked->name));
}

Value fn_setcfg(Call& call) {
  const auto asked = cfg_name(call.string(0));
  const std::wstring value(call.string(1));
  if (!asked) return {};
  SettingsStore store = settings(call);
  store.set(asked->key, asked->name, value);
  keep(call, store);
  return call.arg(1);
}

std::wstring value_name(const Call& call, std::size_t i) {
  return call.arg(i) ? std::wstring(call.string(i)) : std::wstring();
}

Value fn_registry_read(Call& call) {
  const SettingsStore store = settings(call);
  return to_lisp(call.interp(), store.find(call.string(0), value_name(call, 1)));
}

Value fn_registry_write(Call& call) {
  SettingsStore store = settings(call);
  if (!call.has(2)) {
    store.set_key(call.string(0));
  } else if (call.arg(2).is_integer()) {
    store.set(call.string(0), value_name(call, 1), call.integer(2));
  } else {
    store.set(call.string(0), value_name(call, 1), std::wstring(call.string(2)));
  }
  keep(call, store);
  return call.has(2) ? call.arg(2) : call.interp().string(L"");
}

Value fn_registry_delete(Call& call) {
  SettingsStore store = settings(call);
  const bool removed =
      call.arg(1) ? store.remove(call.string(0), call.string(1)) : store.remove_key(call.string(0));
  if (removed) keep(call, store);
  return call.truth(removed);
}

Value fn_registry_descendents(Call& call) {
  const SettingsStore store = settings(call);
  lisp::ListBuilder list(call.interp().heap());
  for (const std::wstring& name :
       call.arg(1) ? store.names(call.string(0)) : store.keys_below(call.string(0)))
    list.append(call.interp().string(name));
  return list.finish();
}

constexpr lisp::Builtin kEnvironmentFunctions[] = {
    // name, arguments, function, usage, help
    {"getenv", 1, 1, fn_getenv, "(getenv name)", "an environment variable; nil when it is not set"},
    {"setenv", 2, 2, fn_setenv, "(setenv name value)",
     "sets an environment variable for LISP programs of this process; the value"},
    {"getcfg", 1, 1, fn_getcfg, "(getcfg path)",
     "a setting \"AppData/...\" that setcfg kept; nil when there is none"},
    {"setcfg", 2, 2, fn_setcfg, "(setcfg path text)",
     "keeps a setting \"AppData/...\" for later runs; nil for other paths"},
    {"vl-registry-read", 1, 2, fn_registry_read, "(vl-registry-read key [name])",
     "a setting that vl-registry-write kept; nil when there is none"},
    {"vl-registry-write", 1, 3, fn_registry_write, "(vl-registry-write key [name value])",
     "keeps a text or an integer for later runs; the value"},
    {"vl-registry-delete", 1, 2, fn_registry_delete, "(vl-registry-delete key [name])",
     "removes a value, or a key that has no keys below; T when it was there"},
    {"vl-registry-descendents", 1, 2, fn_registry_descendents,
     "(vl-registry-descendents key [names])",
     "the keys below, or the names of the values when names is not nil"},
};

}  // namespace

std::span<const lisp::Builtin> environment_functions() { return kEnvironmentFunctions; }

}  // namespace cad
