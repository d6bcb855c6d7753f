#include "cli/settings_in_force.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "host/app/console.h"
#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "module/style/style.h"

namespace cli {
namespace {

bool is_variable_name(std::string_view name) {
  constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";
  return !name.empty() && name.find_first_not_of(kLetters) == name.npos;
}

/// The value as a LISP program writes it: a number, or else a text.
std::string lisp_value(const std::string& text) {
  if (cad::parse_int(text) || cad::parse_real(text)) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

void complain_line_by_line(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (end != 0) complain(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

}  // namespace

void add_settings_options(CLI::App& command, SettingsOptions& options) {
  add_folder_options(command, options.folders);
  command
      .add_option("--set", options.variables,
                  "set a variable of the drawing, such as useri4=3, the decimals of stakes; may be "
                  "repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
}

SettingsInForce::SettingsInForce(const SettingsOptions& options) {
  use_folders(options.folders);
  cad::set_console(complain_line_by_line);
  AcApDocument* const drawing = host_.new_drawing();
  for (const std::string& assignment : options.variables)
    good_ = good_ && set_variable(drawing, assignment);
  if (good_) CDimStyle::Instance().UpdateData();
}

SettingsInForce::~SettingsInForce() { cad::set_console({}); }

const CDimStyle& SettingsInForce::style() const { return CDimStyle::Instance(); }

bool SettingsInForce::set_variable(AcApDocument* drawing, const std::string& assignment) {
  const std::size_t equals = std::min(assignment.find('='), assignment.size());
  const std::string name = assignment.substr(0, equals);
  if (equals == assignment.size() || !is_variable_name(name)) {
    complain("--set wants NAME=VALUE, found \"" + assignment + "\"");
    return false;
  }
  const std::string program =
      "(setvar \"" + name + "\" " + lisp_value(assignment.substr(equals + 1)) + ")";
  const cad::Result<cad::lisp::Value> done = host_.eval_string(drawing, program);
  if (!done) complain("--set " + assignment + ": " + done.error().what);
  return static_cast<bool>(done);
}

void SettingsInForce::read_the_rest() {
  const CDimStyle& labels = style();
  labels.SwBzTxtLineSpace();
  labels.SwBzTxtTxtSpace();
  labels.SwBzJdBhLayer(L"", L"");
  labels.SwBzJgBzLayer(L"", L"");
  labels.SwBzGxLayer(L"", L"");
  stuStakeDimMode layout;
  labels.ReadZhMode(layout);
  WDLGX::GetDimH(L"1");  // names the table of pipe materials
  CGxData::Instance()->getPcBzSz();
  KT::GetTextHigh();
}

std::vector<network::SettingNote> in_force(const network::SettingsLog& log) {
  std::vector<network::SettingNote> notes;
  std::map<CString, std::size_t> places;
  for (const network::SettingNote& note : log.settings) {
    const auto [at, is_new] = places.emplace(note.name, notes.size());
    if (is_new) {
      notes.push_back(note);
    } else {
      notes[at->second] = note;
    }
  }
  return notes;
}

std::string origin_text(const network::SettingNote& note) {
  const network::SettingOrigin& origin = note.origin;
  std::string text = cad::to_utf8(origin.file);
  if (note.is_default) return "built in, not in " + text;
  if (origin.line > 0) text += ":" + std::to_string(origin.line);
  if (!origin.place.empty()) text += ", " + cad::to_utf8(origin.place);
  return text;
}

}  // namespace cli
