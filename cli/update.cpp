#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/add_commands.h"
#include "cli/labelling.h"
#include "cli/progress.h"
#include "cli/records_survey.h"
#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/db/record.h"

namespace cli {
namespace {

constexpr char kFooter[] =
    R"(Compares every recorded label with the data of its pipe or node, and brings those up to date
that no longer agree. Everything that is not in order is told, a line each: owner and type of the
label, the piece of it, why, old -> new, and what was done.

A label whose text was edited by hand is kept unless --overwrite-edited is given; one whose owner
is gone or lacks the data is kept as well. A label with a part on a locked layer cannot be written.
In place, a drawing with nothing to do keeps its file.

Exit status: 0 when all is in order now or was kept on purpose, 1 when a label could not be
written, with --dry-run 1 when anything is not in order. Of several drawings the greatest.

Examples:
  pipenote update plan.dxf --dry-run
  pipenote update plan.dxf -o updated.dxf
  pipenote update north.dxf south.dxf --in-place
  pipenote update plan.dxf --owner 2F3,2F4 --overwrite-edited --in-place)";

struct UpdateOptions {
  ToolOptions tool;
  std::vector<std::string> drawings;
  TargetOptions target;
  std::vector<std::string> owners;
  bool dry_run = false;
  bool overwrite_edited = false;
  bool json = false;
};

/// A row of the module's answer, UTF-8.
struct Finding {
  std::string owner, type, item, was, now, reason, action, trouble;
};
using Findings = std::vector<Finding>;

constexpr std::array kColumns = {&Finding::owner,  &Finding::type,   &Finding::item,
                                 &Finding::was,    &Finding::now,    &Finding::reason,
                                 &Finding::action, &Finding::trouble};
constexpr std::array kColumnNames = {"owner", "type",   "item",   "was",
                                     "now",   "reason", "action", "trouble"};
static_assert(kColumns.size() == kColumnNames.size());

Findings findings_of(const cad::lisp::Value& answer) {
  Findings findings;
  for (const cad::lisp::Value& row : cad::lisp::List(answer)) {
    Finding finding;
    auto column = kColumns.begin();
    for (const cad::lisp::Value& text : cad::lisp::List(row)) {
      if (column == kColumns.end()) break;
      if (text.is_string()) finding.*(*column) = cad::to_utf8(text.text());
      ++column;
    }
    findings.push_back(std::move(finding));
  }
  return findings;
}

std::string quoted(const std::string& text) { return in_quotes(cad::from_utf8(text)); }

/// ", "DN300" -> "DN400"" or what the module explains.
std::string change_text(const Finding& finding) {
  if (finding.reason == "moved") return ", " + finding.was + " -> " + finding.now;
  if (finding.reason == "no data" || finding.reason == "owner gone")
    return (finding.was.empty() ? "" : ", " + quoted(finding.was)) + " (" + finding.now + ")";
  if (finding.was.empty() && finding.now.empty()) return {};
  return ", " + quoted(finding.was) + " -> " + quoted(finding.now);
}

std::string line_of(const Finding& finding) {
  std::string line = finding.owner;
  for (const std::string& word : {finding.type, finding.item})
    if (!word.empty()) line += ' ' + word;
  line += ": " + finding.reason + change_text(finding) + ": " + finding.action;
  return finding.trouble.empty() ? line : line + ", " + finding.trouble;
}

/// What was found in a drawing and what became of it.
struct Outcome {
  std::string drawing;
  ExitStatus status = kSuccess;
  bool read = false;
  bool written = false;
  Findings findings;

  /// Labels, of which each may have several rows.
  std::size_t labels(bool (*chosen)(const Finding&)) const {
    std::set<std::pair<std::string_view, std::string_view>> found;
    for (const Finding& finding : findings)
      if (chosen(finding)) found.emplace(finding.owner, finding.type);
    return found.size();
  }
};

bool every(const Finding&) { return true; }
bool was_kept(const Finding& finding) { return finding.action == "kept"; }
bool has_failed(const Finding& finding) { return finding.action == "failed"; }
bool was_written(const Finding& finding) { return !was_kept(finding) && !has_failed(finding); }

const char* labels_are(std::size_t count) { return count == 1 ? "label is" : "labels are"; }

void print_text(const Outcome& outcome, bool dry_run) {
  const char* const drawing = outcome.drawing.c_str();
  for (const Finding& finding : outcome.findings)
    std::printf("%s: %s\n", drawing, line_of(finding).c_str());
  const std::size_t all = outcome.labels(every);
  if (all == 0)
    std::printf("%s: nothing is stale\n", drawing);
  else if (dry_run)
    std::printf("%s: %zu %s not in order\n", drawing, all, labels_are(all));
  else
    std::printf("%s: %zu brought up to date, %zu kept, %zu failed\n", drawing,
                outcome.labels(was_written), outcome.labels(was_kept), outcome.labels(has_failed));
  std::fflush(stdout);
}

nlohmann::ordered_json json_of(const Outcome& outcome) {
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (const Finding& finding : outcome.findings) {
    nlohmann::ordered_json& row = rows.emplace_back();
    for (std::size_t i = 0; i < kColumns.size(); ++i) row[kColumnNames[i]] = finding.*kColumns[i];
  }
  return {{"drawing", outcome.drawing},
          {"status", static_cast<int>(outcome.status)},
          {"written", outcome.written},
          {"findings", std::move(rows)}};
}

/// The list of the owners wanted, "nil" for all; nothing, and a line told, when one is not there.
std::optional<std::string> owner_list(AcDbDatabase& drawing, const UpdateOptions& options,
                                      const std::string& path) {
  if (options.owners.empty()) return "nil";
  std::string list = "(list";
  for (const std::string& text : options.owners) {
    const auto handle = cad::parse_handle(std::string_view(text));
    AcDbObjectId id;
    if (!handle || drawing.getAcDbObjectId(id, false, AcDbHandle(*handle)) != Acad::eOk ||
        !cad::is_entity(id)) {
      complain(path + ": --owner: no entity has the handle " + text);
      return std::nullopt;
    }
    list += " (handent " + lisp_text(handle_of(id)) + ')';
  }
  return list + ')';
}

class Updating {
 public:
  explicit Updating(const UpdateOptions& options)
      : options_(options), labelling_(options.tool), progress_(options.drawings.size()) {}

  ExitStatus run() {
    ExitStatus worst = kSuccess;
    nlohmann::ordered_json reports = nlohmann::ordered_json::array();
    for (const std::string& path : options_.drawings) {
      progress_.next(path);
      const Outcome outcome = update(path);
      progress_.hide();
      worst = std::max(worst, outcome.status);
      if (options_.json)
        reports.push_back(json_of(outcome));
      else if (outcome.read)
        print_text(outcome, options_.dry_run);
      if (InterruptScope::interrupted()) break;
    }
    if (options_.json)
      std::puts(reports.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
    return worst;
  }

 private:
  Outcome update(const std::string& path) {
    Outcome outcome;
    outcome.drawing = path;
    progress_.show("reading");
    const bool for_writing = options_.target.in_place && !options_.dry_run;
    AcApDocument* const drawing = labelling_.open(path, for_writing, outcome.status);
    if (!drawing) return outcome;
    update(drawing, outcome);
    return outcome;
  }

  void update(AcApDocument* drawing, Outcome& outcome) {
    const std::optional<std::string> owners =
        owner_list(*drawing->database(), options_, outcome.drawing);
    if (!owners) {
      outcome.status = kProgramFailed;
      return;
    }
    progress_.show(options_.dry_run ? "comparing labels" : "updating labels");
    labelling_.take_lines();
    const auto answer = labelling_.call(drawing, "(labelupdate " + *owners +
                                                     (options_.overwrite_edited ? " T" : " nil") +
                                                     (options_.dry_run ? " T)" : " nil)"));
    if (!answer) {
      complain(outcome.drawing + ": " + answer.error().message() + "; nothing was written");
      outcome.status = kProgramFailed;
      return;
    }
    outcome.read = true;
    outcome.findings = findings_of(*answer);
    for (const std::string& line : labelling_.take_lines()) complain(outcome.drawing + ": " + line);
    const bool wrong = outcome.labels(options_.dry_run ? every : has_failed) != 0;
    outcome.status = wrong ? kProgramFailed : kSuccess;
    if (options_.dry_run) return;
    progress_.show("writing");
    const ExitStatus saved =
        labelling_.save(drawing, outcome.drawing, options_.target, outcome.written);
    outcome.status = std::max(outcome.status, saved);
  }

  const UpdateOptions& options_;
  Labelling labelling_;
  Progress progress_;
};

/// What is wrong with the way the command was called; null when nothing is.
const char* misuse(const UpdateOptions& options) {
  if (options.target.none() && !options.dry_run)
    return "say where to write: -o OUT or --in-place; --dry-run only reports";
  if (options.drawings.size() > 1 && !options.target.output.empty())
    return "-o takes one drawing; several are updated with --in-place";
  return nullptr;
}

ExitStatus update(const UpdateOptions& options) {
  if (const char* why = misuse(options)) {
    complain(why);
    return kWrongUsage;
  }
  for (const std::string& drawing : options.drawings)
    if (!may_be_target(options.target, drawing)) return kWrongUsage;
  InterruptScope::reset();
  return Updating(options).run();
}

}  // namespace

void add_update_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<UpdateOptions>();
  CLI::App* const command =
      program.add_subcommand("update", "bring labels up to date with their pipes and nodes");
  command->footer(kFooter);
  add_inputs(*command, "DRAWING", options->drawings, "drawings, DXF files; a DWG file with -o");
  add_target_options(*command, options->target);
  command->add_flag("--dry-run", options->dry_run, "write nothing, only report");
  command->add_flag("--overwrite-edited", options->overwrite_edited,
                    "also labels whose text was edited by hand");
  command->add_option("--owner", options->owners, "labels of these pipes and nodes only")
      ->type_name("HANDLE,HANDLE...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_flag("--json", options->json, "print the report as JSON");
  add_tool_options(*command, options->tool);
  command->callback([=, &status] { status = update(*options); });
}

}  // namespace cli
