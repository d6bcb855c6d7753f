#include "cli/progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "host/base/progress.h"

namespace cli {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 1s;
constexpr auto kBeat = 200ms;
constexpr std::size_t kBarLength = 10;

Progress* current = nullptr;

std::size_t terminal_width() {
  winsize size{};
  return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

bool cannot_erase_lines() {
  const char* const terminal = std::getenv("TERM");
  return terminal && std::strcmp(terminal, "dumb") == 0;
}

}  // namespace

Progress::Progress(std::size_t drawings)
    : drawings_(drawings), start_(std::chrono::steady_clock::now()) {
  current = this;
  if (!::isatty(STDERR_FILENO) || cannot_erase_lines()) return;
  // Signals are for the thread that works.
  sigset_t all, before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  indicator_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  cad::set_progress_sink([this](std::string_view label, double done) {
    const std::lock_guard lock(mutex_);
    const bool another = part_ != label;
    part_ = label;
    done_ = done;
    // At once, for it may be over before the next beat.
    if (another && std::chrono::steady_clock::now() - start_ >= kPatience) draw();
  });
}

Progress::~Progress() {
  cad::set_progress_sink({});
  if (indicator_.joinable()) {
    indicator_.request_stop();
    indicator_.join();
  }
  hide();
  current = nullptr;
}

void Progress::next(const std::string& path) {
  const std::lock_guard lock(mutex_);
  ++number_;
  drawing_ = std::filesystem::path(path).filename().string();
}

void Progress::show(std::string doing) {
  const std::lock_guard lock(mutex_);
  doing_ = std::move(doing);
}

void Progress::hide() {
  const std::lock_guard lock(mutex_);
  doing_.clear();
  erase();
}

void Progress::hide_current() {
  if (current) current->hide();
}

void Progress::run(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  wake_.wait_until(lock, stop, start_ + kPatience, [] { return false; });
  while (!stop.stop_requested()) {
    draw();
    wake_.wait_for(lock, stop, kBeat, [] { return false; });
  }
}

std::string Progress::bar() const {
  const bool several = drawings_ > 1;
  if (!several && part_.empty()) return {};
  const double done =
      several ? static_cast<double>(number_ - 1) / static_cast<double>(drawings_) : done_;
  const auto marks = static_cast<std::size_t>(done * kBarLength);
  std::string bar = '[' + std::string(marks, '#') + std::string(kBarLength - marks, '-') + "] ";
  if (several) bar += std::to_string(number_) + '/' + std::to_string(drawings_) + ' ';
  return bar;
}

void Progress::draw() {
  if (doing_.empty()) return;
  const auto elapsed = std::chrono::steady_clock::now() - start_;
  std::string line = bar();
  std::string tail = part_.empty() ? doing_ : part_;
  if (!part_.empty()) tail += ", " + std::to_string(static_cast<int>(done_ * 100.0)) + '%';
  tail += ", " + std::to_string(std::chrono::duration_cast<std::chrono::seconds>(elapsed).count()) +
          " s";
  // A line that wraps could not be erased.
  const bool fits = line.size() + drawing_.size() + 2 + tail.size() < terminal_width();
  if (fits) line += drawing_ + ": ";
  std::fprintf(stderr, "\r\033[K%s%s", line.c_str(), tail.c_str());
  std::fflush(stderr);
  drawn_ = true;
}

void Progress::erase() {
  if (!drawn_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  drawn_ = false;
}

}  // namespace cli
