#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/files.h"
#include "cli/tool.h"

/// What the commands on labels share: the module that draws labels, called as LISP programs do.
namespace cli {

/// A text as a LISP program spells it, quotes included.
std::string lisp_text(std::string_view text);

class Labelling {
 public:
  explicit Labelling(ToolOptions options);
  Labelling(const Labelling&) = delete;
  Labelling& operator=(const Labelling&) = delete;

  /// As Tool::open(), after closing the drawing opened before. The last one is closed at the end.
  AcApDocument* open(const std::string& path, bool for_writing, ExitStatus& status);
  /// Evaluates a call of the module; Ctrl-C makes it an error.
  cad::Result<cad::lisp::Value> call(AcApDocument* drawing, const std::string& expression);
  /// The lines that the module has printed since the last time.
  std::vector<std::string> take_lines();
  /// Writes the drawing where the user wants it; over itself only when something has changed.
  /// `written` tells whether a file was written.
  ExitStatus save(AcApDocument* drawing, const std::string& path, const TargetOptions& target,
                  bool& written);

 private:
  Tool tool_;
  AcApDocument* drawing_ = nullptr;
  std::string printed_;
};

}  // namespace cli
