#include "cli/batch_run.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <map>
#include <utility>

namespace cli {
namespace {

using Clock = std::chrono::steady_clock;

/// What has ended and waits for an earlier job to be reported: beyond it nothing new is started.
constexpr std::size_t kMostWaiting = std::size_t{256} << 20;

/// A file without a name, which holds what a process prints.
class Captured {
 public:
  Captured() : file_(::memfd_create("output", MFD_CLOEXEC)) {}
  Captured(Captured&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
  Captured& operator=(Captured&&) = delete;
  ~Captured() {
    if (file_ >= 0) ::close(file_);
  }
  int file() const { return file_; }
  std::string text() const {
    const off_t size = ::lseek(file_, 0, SEEK_END);
    std::string text(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
    std::size_t read = 0;
    while (read < text.size()) {
      const ssize_t n =
          ::pread(file_, text.data() + read, text.size() - read, static_cast<off_t>(read));
      if (n <= 0) break;
      read += static_cast<std::size_t>(n);
    }
    text.resize(read);
    return text;
  }

 private:
  int file_;
};

/// Signals wait while it lives, so that none comes between two looks at the processes. What the
/// program was told to ignore from outside (nohup, a shell's background) stays ignored.
class HeldSignals {
 public:
  HeldSignals() {
    ::signal(SIGCHLD, SIG_DFL);  // one that is ignored loses what processes end with
    ::sigemptyset(&held_);
    ::sigaddset(&held_, SIGCHLD);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
      struct sigaction now = {};
      if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler != SIG_IGN)
        ::sigaddset(&held_, signal);
    }
    ::sigprocmask(SIG_BLOCK, &held_, &before_);
  }
  ~HeldSignals() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  int wait() const {
    int signal = 0;
    return ::sigwait(&held_, &signal) == 0 ? signal : 0;
  }
  const sigset_t& before() const { return before_; }

 private:
  sigset_t held_, before_;
};

/// How a process is started: with nothing to read, its output captured, the signals of this one
/// as they were. In a process group of its own, as Ctrl-C is to come from here.
class Spawning {
 public:
  Spawning(const Captured& output, const Captured& errors, const sigset_t& mask) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions_, output.file(), STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions_, errors.file(), STDERR_FILENO);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
    ::posix_spawnattr_setsigmask(&attributes_, &mask);
  }
  ~Spawning() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&actions_);
  }
  Spawning(const Spawning&) = delete;
  Spawning& operator=(const Spawning&) = delete;

  /// 0 or an errno.
  int start(const std::vector<std::string>& arguments, pid_t& process) const {
    std::vector<char*> words = {const_cast<char*>("pipenote")};
    for (const std::string& argument : arguments)
      words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    return ::posix_spawn(&process, "/proc/self/exe", &actions_, &attributes_, words.data(),
                         environ);
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

class Batch {
 public:
  Batch(const std::vector<BatchJob>& jobs, const BatchReport& report)
      : jobs_(jobs), report_(report) {}

  bool run(std::size_t at_once) {
    for (;;) {
      while (!stopping_ && next_ < jobs_.size() && running_.size() < at_once &&
             (running_.empty() || waiting_ < kMostWaiting))
        start(next_++);
      report_ended();
      if (running_.empty() && (stopping_ || next_ == jobs_.size())) break;
      if (running_.empty()) continue;  // the last could not be started
      const int signal = signals_.wait();
      if (signal == SIGCHLD)
        collect();
      else if (signal != 0)
        stop();
    }
    return !stopping_;
  }

 private:
  struct Running {
    std::size_t job;
    Clock::time_point since;
    Captured output, errors;
  };

  void start(std::size_t job) {
    Running running{job, Clock::now(), {}, {}};
    pid_t process = -1;
    int error = errno;
    if (running.output.file() >= 0 && running.errors.file() >= 0)
      error = Spawning(running.output, running.errors, signals_.before())
                  .start(jobs_[job].arguments, process);
    if (process > 0 && error == 0) {
      running_.emplace(process, std::move(running));
      return;
    }
    BatchResult result;
    result.errors = "pipenote: " + jobs_[job].drawing +
                    ": no process could be started: " + std::strerror(error) + '\n';
    keep(job, std::move(result));
  }

  void collect() {
    for (auto at = running_.begin(); at != running_.end();) {
      int status = 0;
      if (::waitpid(at->first, &status, WNOHANG) != at->first) {
        ++at;
        continue;
      }
      const Running& running = at->second;
      BatchResult result;
      const bool exited = WIFEXITED(status);
      result.end = exited ? BatchResult::End::kExited : BatchResult::End::kSignalled;
      result.code = exited ? WEXITSTATUS(status) : WTERMSIG(status);
      result.stopped = stopping_;
      result.seconds = std::chrono::duration<double>(Clock::now() - running.since).count();
      result.output = running.output.text();
      result.errors = running.errors.text();
      keep(running.job, std::move(result));
      at = running_.erase(at);
    }
  }

  void stop() {
    for (const auto& [process, running] : running_) ::kill(process, stopping_ ? SIGKILL : SIGINT);
    stopping_ = true;
  }

  void keep(std::size_t job, BatchResult result) {
    waiting_ += result.output.size() + result.errors.size();
    ended_.emplace(job, std::move(result));
  }

  void report_ended() {
    for (auto at = ended_.begin(); at != ended_.end() && at->first == reported_;
         at = ended_.erase(at), ++reported_) {
      waiting_ -= at->second.output.size() + at->second.errors.size();
      report_(at->first, at->second);
    }
  }

  const std::vector<BatchJob>& jobs_;
  const BatchReport& report_;
  const HeldSignals signals_;
  std::map<pid_t, Running> running_;
  std::map<std::size_t, BatchResult> ended_;
  std::size_t next_ = 0;
  std::size_t reported_ = 0;
  std::size_t waiting_ = 0;  // bytes in ended_
  bool stopping_ = false;
};

}  // namespace

bool run_batch(const std::vector<BatchJob>& jobs, std::size_t at_once, const BatchReport& report) {
  return Batch(jobs, report).run(at_once);
}

}  // namespace cli
