#include "host/app/variables/variable_facts.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <numbers>

#include "host/app/command/command_line.h"
#include "host/app/documents.h"
#include "host/app/host.h"
#include "host/app/session.h"
#include "host/app/variables/system_variables.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/drawing.h"
#include "host/db/extents.h"
#include "host/db/layouts.h"
#include "host/db/lens.h"
#include "host/db/undo.h"

namespace cad {
namespace {

using lisp::Interpreter;
using lisp::Value;

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

/// Milliseconds of a clock that only goes forward, in 31 bits.
std::int32_t milliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const auto count = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  return static_cast<std::int32_t>(count & 0x7FFFFFFF);
}

std::wstring environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? from_utf8(value) : std::wstring();
}

Value point(Interpreter& interp, const AcGePoint3d& p) {
  return interp.list({Value::real(p.x), Value::real(p.y), Value::real(p.z)});
}

AcGePoint3d point_of(const Value& list) {
  AcGePoint3d p;
  unsigned axis = 0;
  for (const Value& number : lisp::List(list))
    if (axis < 3 && number.is_number()) p[axis++] = number.number();
  return p;
}

constexpr std::string_view kViewPart = "AcDbViewportTableRecord";

/// The active view of model space, when the drawing has one.
std::optional<Lens> active_view(Drawing& drawing) {
  const Stub* view = drawing.table_record("VPORT", L"*Active");
  if (!view) return std::nullopt;
  return Lens(drawing.bytes_of(*view), drawing.dialect());
}

double view_number(FactSource& source, int code, double absent) {
  const auto view = active_view(source.document.database()->drawing());
  return view ? view->real(kViewPart, code, absent) : absent;
}

AcGePoint3d view_point(FactSource& source, int code, const AcGePoint3d& absent) {
  const auto view = active_view(source.document.database()->drawing());
  return view ? view->point(kViewPart, code) : absent;
}

/// A corner of the screen: `side` is -1 for the lower left, 1 for the upper right one.
Value screen_corner(FactSource& source, double side) {
  SystemVariables& variables = source.variables;
  const AcGePoint3d centre = point_of(variables.get(source.interp, L"VIEWCTR"));
  const AcGePoint3d screen = point_of(variables.get(source.interp, L"SCREENSIZE"));
  const double half = variables.get(source.interp, L"VIEWSIZE").number() / 2;
  const double ratio = screen.y > 0 ? screen.x / screen.y : 1;
  return point(source.interp, {centre.x + side * half * ratio, centre.y + side * half, centre.z});
}

std::wstring current_layout(AcDbDatabase& database) {
  if (database.tile_mode()) return L"Model";
  const AcDbObjectId space = database.currentSpaceId();
  for (const Layout& layout : layouts_of(database))
    if (layout.block == space) return layout.name;
  return L"Layout1";
}

std::wstring color_name(AcDbDatabase& database) {
  if (const auto rgb = database.current_true_color())
    return L"RGB:" + std::to_wstring(*rgb >> 16) + L"," + std::to_wstring(*rgb >> 8 & 255) + L"," +
           std::to_wstring(*rgb & 255);
  const std::wstring index = database.header_value("$CECOLOR");
  if (index.empty() || index == L"256") return L"BYLAYER";
  return index == L"0" ? L"BYBLOCK" : index;
}

AcDbDatabase& drawing_of(FactSource& s) { return *s.document.database(); }

constexpr VariableFact kFacts[] = {
    {"ACADPREFIX",
     [](FactSource& s) { return s.interp.string(from_utf8(host_settings().install_dir)); }},
    {"CDATE", [](FactSource&) { return Value::real(calendar_date()); }},
    {"CECOLOR", [](FactSource& s) { return s.interp.string(color_name(drawing_of(s))); }},
    {"CMDACTIVE",
     [](FactSource& s) {
       const CommandLine& line = *s.document.session().command_line;
       return Value::integer((line.active() ? 1 : 0) | (line.transparent() ? 2 : 0));
     }},
    {"CMDNAMES",
     [](FactSource& s) { return s.interp.string(s.document.session().command_line->names()); }},
    {"CTAB", [](FactSource& s) { return s.interp.string(current_layout(drawing_of(s))); }},
    {"CVPORT", [](FactSource& s) { return Value::integer(drawing_of(s).tile_mode() ? 2 : 1); }},
    {"DATE", [](FactSource&) { return Value::real(julian_date()); }},
    {"DBMOD", [](FactSource& s) { return Value::integer(drawing_of(s).is_modified() ? 1 : 0); }},
    {"DWGCODEPAGE",
     [](FactSource& s) {
       const std::string& page = drawing_of(s).facts().code_page;
       return s.interp.string(page.empty() ? L"ANSI_1252" : from_utf8(page));
     }},
    {"DWGNAME", [](FactSource& s) { return s.interp.string(s.document.docTitle()); }},
    {"DWGPREFIX", [](FactSource& s) { return s.interp.string(document_folder(s.document)); }},
    {"DWGTITLED", [](FactSource& s) { return Value::integer(*s.document.fileName() ? 1 : 0); }},
    {"EXTMAX", [](FactSource& s) { return point(s.interp, s.variables.extents().maxPoint()); }},
    {"EXTMIN", [](FactSource& s) { return point(s.interp, s.variables.extents().minPoint()); }},
    {"LOGINNAME", [](FactSource& s) { return s.interp.string(environment("USER")); }},
    {"MILLISECS", [](FactSource&) { return Value::integer(milliseconds()); }},
    {"SAVENAME", [](FactSource& s) { return s.interp.string(s.document.fileName()); }},
    {"TARGET", [](FactSource& s) { return point(s.interp, view_point(s, 17, {})); }},
    {"UNDOCTL",
     [](FactSource& s) {
       constexpr std::int32_t kOn = 1, kAuto = 4, kInGroup = 8;
       const UndoLog& log = undo_log(drawing_of(s));
       if (!log.is_recording()) return Value::integer(0);
       return Value::integer(kOn | kAuto | (log.in_group() ? kInGroup : 0));
     }},
    {"VIEWCTR", [](FactSource& s) { return point(s.interp, view_point(s, 12, {})); }},
    {"VIEWDIR",
     [](FactSource& s) {
       return point(s.interp, view_point(s, 16, {0, 0, 1}));
     }},
    {"VIEWSIZE", [](FactSource& s) { return Value::real(view_number(s, 40, 9)); }},
    {"VIEWTWIST",
     [](FactSource& s) { return Value::real(view_number(s, 51, 0) * std::numbers::pi / 180); }},
    {"VSMAX", [](FactSource& s) { return screen_corner(s, 1); }},
    {"VSMIN", [](FactSource& s) { return screen_corner(s, -1); }},
    {"WORLDUCS",
     [](FactSource& s) {
       const auto axis = [&](const wchar_t* name) {
         return point_of(s.variables.get(s.interp, name));
       };
       const AcGePoint3d origin = axis(L"UCSORG"), x = axis(L"UCSXDIR"), y = axis(L"UCSYDIR");
       const bool world = origin.asVector().length() < 1e-9 && x.distanceTo({1, 0, 0}) < 1e-9 &&
                          y.distanceTo({0, 1, 0}) < 1e-9;
       return Value::integer(world ? 1 : 0);
     }},
};

}  // namespace

const VariableFact* find_variable_fact(std::string_view name) {
  for (const VariableFact& fact : kFacts)
    if (fact.name == name) return &fact;
  return nullptr;
}

}  // namespace cad
