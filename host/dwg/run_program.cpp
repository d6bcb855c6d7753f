#include "host/dwg/run_program.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fstream>

namespace cad::dwg {
namespace {

using std::chrono::milliseconds;

constexpr int kNotStarted = 127;

/// In the child: nothing that allocates.
[[noreturn]] void become(char* const* words, const char* log, std::uint64_t file_bytes) {
  ::setpgid(0, 0);
  const int nothing = ::open("/dev/null", O_RDWR);
  const int errors = ::open(log, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (nothing < 0 || errors < 0) ::_exit(kNotStarted);
  ::dup2(nothing, STDIN_FILENO);
  ::dup2(nothing, STDOUT_FILENO);
  ::dup2(errors, STDERR_FILENO);
  const rlimit most{file_bytes, file_bytes};
  ::setrlimit(RLIMIT_FSIZE, &most);
  const rlimit no_core{0, 0};
  ::setrlimit(RLIMIT_CORE, &no_core);
  ::signal(SIGINT, SIG_DFL);
  ::signal(SIGPIPE, SIG_DFL);
  ::execv(words[0], words);
  ::_exit(kNotStarted);
}

/// Waits until the child has ended; false when its time was over before.
bool wait_for(pid_t child, milliseconds time, int& status) {
  const auto end = std::chrono::steady_clock::now() + time;
  milliseconds pause{1};
  for (;;) {
    const pid_t ended = ::waitpid(child, &status, WNOHANG);
    if (ended == child || (ended < 0 && errno != EINTR)) return true;
    if (std::chrono::steady_clock::now() >= end) break;
    timespec nap{0, static_cast<long>(pause.count()) * 1'000'000};
    ::nanosleep(&nap, nullptr);
    pause = std::min(pause * 2, milliseconds(20));
  }
  ::kill(-child, SIGKILL);
  ::kill(child, SIGKILL);  // it may not have made its group yet
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return false;
}

/// The last line with anything in it, cut to what fits a message.
std::string last_line(const std::string& file) {
  constexpr std::streamoff kTail = 4096;
  constexpr std::size_t kLongest = 200;
  std::ifstream in(file, std::ios::binary | std::ios::ate);
  if (!in) return {};
  in.seekg(std::max(std::streamoff{0}, static_cast<std::streamoff>(in.tellg()) - kTail));
  std::string line, last;
  while (std::getline(in, line)) {
    if (line.find_first_not_of(" \t\r") != std::string::npos) last = line;
  }
  for (char& c : last)
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  while (!last.empty() && last.back() == ' ') last.pop_back();
  return last.substr(0, kLongest);
}

std::string seconds(milliseconds time) {
  const auto whole = std::chrono::duration_cast<std::chrono::seconds>(time).count();
  return whole > 0 ? std::to_string(whole) + " s" : std::to_string(time.count()) + " ms";
}

}  // namespace

Status run_program(const std::vector<std::string>& words, const std::string& log,
                   const Limits& limits) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = ::fork();
  if (child < 0) return fail("", std::string("cannot be started: ") + std::strerror(errno));
  if (child == 0) become(arguments.data(), log.c_str(), limits.file_bytes);
  int status = 0;
  if (!wait_for(child, limits.time, status))
    return fail("", "took more than " + seconds(limits.time) + " and was stopped");
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
  const std::string said = last_line(log);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ)
    return fail("", "wrote more than " + std::to_string(limits.file_bytes) + " bytes");
  if (!said.empty()) return fail("", "failed: " + said);
  if (WIFSIGNALED(status)) return fail("", std::string("failed: ") + ::strsignal(WTERMSIG(status)));
  if (WEXITSTATUS(status) == kNotStarted) return fail("", "cannot be started");
  return fail("", "failed with status " + std::to_string(WEXITSTATUS(status)));
}

}  // namespace cad::dwg
