// How fast a drawing's lines can be counted at all.
// Maps the file and counts line ends with memchr, several times; prints the median run.

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "bench/floor/line_floor.h"

namespace {

constexpr int kRuns = 5;

int fail(const char* path, const char* what) {
  std::fprintf(stderr, "%s: %s: %s\n", path, what, std::strerror(errno));
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: newline_floor FILE\n");
    return 2;
  }
  const char* path = argv[1];
  std::array<double, kRuns> seconds;
  std::size_t bytes = 0;
  std::size_t lines = 0;
  for (double& run : seconds) {
    const auto start = std::chrono::steady_clock::now();
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    struct stat status;
    if (file < 0 || fstat(file, &status) != 0) return fail(path, "cannot open");
    bytes = static_cast<std::size_t>(status.st_size);
    if (bytes == 0) {
      std::fprintf(stderr, "%s: is empty\n", path);
      return 1;
    }
    void* mapped = mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE, file, 0);
    if (mapped == MAP_FAILED) return fail(path, "cannot map");
    const char* begin = static_cast<const char*>(mapped);
    lines = bench::count_lines({begin, bytes});
    munmap(mapped, bytes);
    close(file);
    run = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
  std::sort(seconds.begin(), seconds.end());
  const double median = seconds[kRuns / 2];
  std::printf("%zu bytes, %zu lines: %.4f s, %.2f GB/s\n", bytes, lines, median,
              static_cast<double>(bytes) / median / 1e9);
}
