// Runs a command with its output thrown away and prints its wall seconds and peak memory in bytes.
// A program of its own because the kernel counts the memory of whoever starts a process into that
// process's peak: a script would put its own megabytes under every figure.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <cstring>

extern char** environ;

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: run_measured COMMAND [ARGUMENT...]\n");
    return 2;
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);

  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  const int spawned = posix_spawnp(&child, argv[1], &actions, nullptr, argv + 1, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) {
    std::fprintf(stderr, "%s: %s\n", argv[1], std::strerror(spawned));
    return 127;
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;

  std::printf("%.6f %lld\n", seconds.count(), static_cast<long long>(usage.ru_maxrss) * 1024);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
