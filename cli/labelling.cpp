#include "cli/labelling.h"

#include <sstream>
#include <utility>

#include "host/app/console.h"

namespace cli {
namespace {

constexpr char kModule[] = "labeler.arx";

/// Further modules come after it, so that their handlers count.
ToolOptions with_labeler(ToolOptions options) {
  options.modules.insert(options.modules.begin(), kModule);
  return options;
}

}  // namespace

std::string lisp_text(std::string_view text) {
  std::string spelled = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') spelled += '\\';
    spelled += c;
  }
  return spelled + '"';
}

Labelling::Labelling(ToolOptions options) : tool_(with_labeler(std::move(options))) {
  cad::set_console([this](std::string_view text) { printed_ += text; });
}

AcApDocument* Labelling::open(const std::string& path, bool for_writing, ExitStatus& status) {
  if (drawing_) tool_.host().close(std::exchange(drawing_, nullptr));
  return drawing_ = tool_.open(path, for_writing, status);
}

cad::Result<cad::lisp::Value> Labelling::call(AcApDocument* drawing,
                                              const std::string& expression) {
  const InterruptScope interrupts(tool_.host());
  cad::Result<cad::lisp::Value> value = tool_.host().eval_string(drawing, expression);
  if (InterruptScope::interrupted()) return cad::fail({}, "interrupted");
  return value;
}

std::vector<std::string> Labelling::take_lines() {
  std::istringstream text(std::exchange(printed_, {}));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);)
    if (!line.empty()) lines.push_back(std::move(line));
  return lines;
}

ExitStatus Labelling::save(AcApDocument* drawing, const std::string& path,
                           const TargetOptions& target, bool& written) {
  written = false;
  if (target.none() || (target.in_place && !drawing->database()->is_modified())) return kSuccess;
  const ExitStatus status =
      tool_.save(drawing, target.in_place ? path : target.output, target.in_place);
  written = status == kSuccess;
  return status;
}

}  // namespace cli
