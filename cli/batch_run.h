#pragma once

#include <functional>
#include <string>
#include <vector>

/// Many processes of this program, some of them at once.
namespace cli {

struct BatchJob {
  std::string drawing;                 ///< as the user named it
  std::vector<std::string> arguments;  ///< of the program, without its own name
};

struct BatchResult {
  enum class End { kNotStarted, kExited, kSignalled };
  End end = End::kNotStarted;
  int code = 0;          ///< exit status or signal
  bool stopped = false;  ///< was running when the batch was interrupted
  double seconds = 0.0;
  std::string output;  ///< of standard output
  std::string errors;  ///< of standard error
  bool succeeded() const { return end == End::kExited && code == 0; }
};

/// Takes the job of that place; called in the order of the jobs, as soon as it and all before it
/// have ended.
using BatchReport = std::function<void(std::size_t job, const BatchResult& result)>;

/// Runs them, at most `at_once` at a time. A SIGINT, SIGTERM or SIGHUP starts no more of them and
/// sends a SIGINT to those that run; a second one kills them. False when that has happened. Jobs
/// that were not started are not reported.
bool run_batch(const std::vector<BatchJob>& jobs, std::size_t at_once, const BatchReport& report);

}  // namespace cli
