// Runs a fuzz target over its seeds, so that ordinary builds keep the target and its law alive.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  int replayed = 0;
  for (int i = 1; i < argc; ++i) {
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(argv[i], error)) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      // Named before it runs: when the target fails, this is the last line.
      std::printf("%s\n", entry.path().c_str());
      std::fflush(stdout);
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++replayed;
    }
  }
  if (replayed == 0) {
    std::fprintf(stderr, "no seeds: give a folder with at least one file\n");
    return 1;
  }
}
