#include "cli/progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <utility>

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

}  // namespace

Progress::Progress(std::size_t drawings)
    : drawings_(drawings), start_(std::chrono::steady_clock::now()) {
  current = this;
  if (::isatty(STDERR_FILENO))
    indicator_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

Progress::~Progress() {
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

void Progress::draw() {
  if (doing_.empty()) return;
  const auto elapsed = std::chrono::steady_clock::now() - start_;
  std::string line;
  if (drawings_ > 1) {
    const std::size_t done = (number_ - 1) * kBarLength / drawings_;
    line = '[' + std::string(done, '#') + std::string(kBarLength - done, '-') + "] " +
           std::to_string(number_) + '/' + std::to_string(drawings_) + ' ';
  }
  const std::string tail =
      doing_ + ", " +
      std::to_string(std::chrono::duration_cast<std::chrono::seconds>(elapsed).count()) + " s";
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
