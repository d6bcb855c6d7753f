#pragma once

namespace cli {

/// What the program answers to the shell; promised in docs/command-line.md.
enum ExitStatus : int {
  kSuccess = 0,
  kProgramFailed = 1,  ///< a LISP error, or Ctrl-C, ended a script: the drawing was not written
  kWrongUsage = 2,
  kNotRead = 3,     ///< the drawing could not be read
  kNotWritten = 4,  ///< it could not be written
};

}  // namespace cli
