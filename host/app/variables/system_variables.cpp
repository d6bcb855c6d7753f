#include "host/app/variables/system_variables.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <numbers>

#include "host/app/command/command_line.h"
#include "host/app/documents.h"
#include "host/app/host.h"
#include "host/app/session.h"
#include "host/app/variables/system_variable_rows.h"
#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/lisp/error.h"
#include "host/lisp/printer.h"

namespace cad {
namespace {

using lisp::Interpreter;
using lisp::Value;
using Kind = VariableRow::Kind;
using Source = VariableRow::Source;

std::wstring document_folder(const AcApDocument& document) {
  const std::wstring path = document.fileName();
  const std::size_t slash = path.rfind(L'/');
  if (slash != std::wstring::npos) return path.substr(0, slash + 1);
  char folder[4096];
  return ::getcwd(folder, sizeof folder) ? from_utf8(folder) + L"/" : L"";
}

std::tm local_time(double& seconds) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  const std::time_t whole = milliseconds / 1000;
  std::tm time{};
  ::localtime_r(&whole, &time);
  seconds = time.tm_sec + static_cast<double>(milliseconds % 1000) / 1000;
  return time;
}

/// Calendar date and time as one number: 20240131.235959123.
double calendar_date() {
  double seconds = 0;
  const std::tm t = local_time(seconds);
  const int day = (t.tm_year + 1900) * 10000 + (t.tm_mon + 1) * 100 + t.tm_mday;
  return day + (t.tm_hour * 10000 + t.tm_min * 100 + seconds) / 1e6;
}

/// Julian day number and the fraction of the day since midnight.
double julian_date() {
  double seconds = 0;
  const std::tm t = local_time(seconds);
  const int month = t.tm_mon + 1, year = t.tm_year + 1900;
  const int a = (14 - month) / 12, y = year + 4800 - a, m = month + 12 * a - 3;
  const int day = t.tm_mday + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045;
  return day + (t.tm_hour * 3600 + t.tm_min * 60 + seconds) / 86400;
}

const VariableRow* find_row(const std::string& name) {
  static const std::unordered_map<std::string_view, const VariableRow*> by_name = [] {
    std::unordered_map<std::string_view, const VariableRow*> rows;
    for (const VariableRow& row : system_variable_rows()) rows.emplace(row.name, &row);
    return rows;
  }();
  const auto found = by_name.find(name);
  return found == by_name.end() ? nullptr : found->second;
}

std::string upper_case(std::wstring_view name) {
  std::string key = to_utf8(name);
  for (char& c : key)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return key;
}

Value read_value(Interpreter& interp, Kind kind, std::wstring_view text) {
  const std::string narrow = kind == Kind::kText ? std::string() : to_utf8(text);
  switch (kind) {
    case Kind::kShort:
      return Value::integer(static_cast<std::int32_t>(parse_int(narrow).value_or(0)));
    case Kind::kReal:
      return Value::real(parse_real(narrow).value_or(0));
    case Kind::kAngle:
      return Value::real(parse_real(narrow).value_or(0) * std::numbers::pi / 180);
    case Kind::kPoint3: {
      double point[3] = {};
      std::size_t at = 0;
      for (double& coordinate : point) {
        const std::size_t end = std::min(narrow.find(' ', at), narrow.size());
        coordinate = parse_real(std::string_view(narrow).substr(at, end - at)).value_or(0);
        at = std::min(end + 1, narrow.size());
      }
      return interp.list({Value::real(point[0]), Value::real(point[1]), Value::real(point[2])});
    }
    case Kind::kText:
      break;
  }
  return interp.string(text);
}

std::wstring color_name(std::wstring_view index) {
  if (index.empty() || index == L"256") return L"BYLAYER";
  return index == L"0" ? L"BYBLOCK" : std::wstring(index);
}

std::wstring environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? from_utf8(value) : std::wstring();
}

/// The facts that are looked up, by name.
struct Fact {
  const char* name;
  Value (*value)(Interpreter&, const AcApDocument&);
};

constexpr Fact kFacts[] = {
    {"ACADPREFIX",
     [](Interpreter& i, const AcApDocument&) {
       return i.string(from_utf8(host_settings().install_dir));
     }},
    {"CDATE", [](Interpreter&, const AcApDocument&) { return Value::real(calendar_date()); }},
    {"CECOLOR",
     [](Interpreter& i, const AcApDocument& d) {
       return i.string(color_name(d.database()->header_value("$CECOLOR")));
     }},
    {"CMDACTIVE",
     [](Interpreter&, const AcApDocument& d) {
       const CommandLine& line = *d.session().command_line;
       return Value::integer((line.active() ? 1 : 0) | (line.transparent() ? 2 : 0));
     }},
    {"CMDNAMES", [](Interpreter& i,
                    const AcApDocument& d) { return i.string(d.session().command_line->names()); }},
    {"CVPORT",
     [](Interpreter&, const AcApDocument& d) {
       return Value::integer(d.database()->header_value("$TILEMODE") == L"0" ? 1 : 2);
     }},
    {"DATE", [](Interpreter&, const AcApDocument&) { return Value::real(julian_date()); }},
    {"DBMOD",
     [](Interpreter&, const AcApDocument& d) {
       return Value::integer(d.database()->is_modified() ? 1 : 0);
     }},
    {"DWGCODEPAGE",
     [](Interpreter& i, const AcApDocument& d) {
       const std::string& page = d.database()->facts().code_page;
       return i.string(page.empty() ? L"ANSI_1252" : from_utf8(page));
     }},
    {"DWGNAME", [](Interpreter& i, const AcApDocument& d) { return i.string(d.docTitle()); }},
    {"DWGPREFIX",
     [](Interpreter& i, const AcApDocument& d) { return i.string(document_folder(d)); }},
    {"DWGTITLED",
     [](Interpreter&, const AcApDocument& d) { return Value::integer(*d.fileName() ? 1 : 0); }},
    {"LOGINNAME",
     [](Interpreter& i, const AcApDocument&) { return i.string(environment("USER")); }},
    {"SAVENAME", [](Interpreter& i, const AcApDocument& d) { return i.string(d.fileName()); }},
};

const Fact* find_fact(std::string_view name) {
  for (const Fact& fact : kFacts)
    if (fact.name == name) return &fact;
  return nullptr;
}

/// The value as the variable holds it; nil when the variable cannot hold it.
Value converted(Interpreter& interp, Kind kind, const Value& value) {
  switch (kind) {
    case Kind::kShort: {
      if (!value.is_integer()) return Value();
      using Bounds = std::numeric_limits<std::int16_t>;
      const std::int32_t number = value.integer();
      return number >= Bounds::min() && number <= Bounds::max() ? value : Value();
    }
    case Kind::kReal:
    case Kind::kAngle:
      return value.is_number() ? Value::real(value.number()) : Value();
    case Kind::kText:
      return value.is_string() ? value : Value();
    case Kind::kPoint3:
      break;
  }
  double point[3] = {};
  std::size_t count = 0;
  for (const Value& item : lisp::List(value)) {
    if (count == 3 || !item.is_number()) return Value();
    point[count++] = item.number();
  }
  if (count < 2) return Value();
  return interp.list({Value::real(point[0]), Value::real(point[1]), Value::real(point[2])});
}

}  // namespace

Value SystemVariables::get(Interpreter& interp, std::wstring_view name) {
  const std::string key = upper_case(name);
  if (const auto known = values_.find(key); known != values_.end()) return known->second;
  const VariableRow* const row = find_row(key);
  if (!row) return Value();
  if (const Fact* fact = find_fact(key)) return fact->value(interp, document_);
  std::wstring text;
  if (row->source == Source::kHeader || row->source == Source::kHeaderOnly)
    text = document_.database()->header_value("$" + key);
  Value value = read_value(interp, row->kind, text.empty() ? from_utf8(row->initial) : text);
  values_.emplace(key, value);
  return value;
}

void SystemVariables::set(Interpreter& interp, std::wstring_view name, const Value& value) {
  const std::string key = upper_case(name);
  const VariableRow* const row = find_row(key);
  Value held;
  if (row && row->source != Source::kComputed && row->source != Source::kHeaderOnly)
    held = converted(interp, row->kind, value);
  if (held.is_nil())
    lisp::raise(L"AutoCAD variable setting rejected: " +
                lisp::to_text(interp.string(from_utf8(key)), lisp::Quoting::kPrin1) + L" " +
                lisp::to_text(value, lisp::Quoting::kPrin1));
  values_.insert_or_assign(key, std::move(held));
}

}  // namespace cad
