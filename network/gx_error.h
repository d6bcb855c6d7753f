#pragma once

#include "network/strings.h"
#include "network/values.h"

/// The pipe library's error object: keeps the text of the last fault until somebody reports.
class CGxError {
 public:
  /// The text of a fault, in place of one that nobody reported. A CString may stand where "%s"
  /// wants text.
  template <class... Arguments>
  void Set(const wchar_t* format, const Arguments&... arguments) {
    text_ = Gx::Format(format, arguments...);
  }
  const CString& text() const { return text_; }

  /// Prints on the command line, each on a line of its own, the text that was set and then `text`,
  /// those that are not empty; nothing is kept. `icon` is the picture a dialogue would show: 3 a
  /// hint.
  void Report2Pp(int icon, const CString& text);
  /// Prints the text as a hint, on a line of its own. A text that was set is kept.
  void Report(const CString& text);
  /// Prints the text on the command line as it stands: whoever writes it begins it with a line
  /// break.
  void Report2Cmd(const CString& text);

 private:
  CString text_;
};
