// Any bytes stand in every settings file at once, and every reader comes to an end with what it
// promises.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/settings/settings_readers.h"
#include "host/app/host.h"

namespace {

namespace fs = std::filesystem;

constexpr std::span<const SettingsReader> (*kReaderLists[])() = {network_readers, style_readers};

/// An installation and project whose files are all links to one file.
class Folders {
 public:
  Folders() {
    std::string name = (fs::temp_directory_path() / "settings_fuzz.XXXXXX").string();
    if (!::mkdtemp(name.data())) std::abort();
    folder_ = name;
    for (const char* file :
         {"install/sys/DimStyle.ini", "install/sys/QrmvPz.ini", "install/User/KtGxBz.ini",
          "install/User/zdm_bzsz.dat", "install/Is/gdcdpdbz.dat", "install/Is/gdbzfsk.dat",
          "install/Is/bgbzfsk.dat", "install/Is/pcbzsz.dat", "install/using/ktsysvar.ksv",
          "install/using/PipeMaterials.dat", "project/ktsysvar.ksv", "project/QrmvPz.ini"}) {
      fs::create_directories((folder_ / file).parent_path());
      fs::create_symlink(folder_ / "bytes", folder_ / file);
    }
    cad::host_settings().install_dir = (folder_ / "install").string();
    cad::host_settings().project_dir = (folder_ / "project").string();
  }
  ~Folders() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  void fill(std::string_view bytes) const {
    std::ofstream(folder_ / "bytes", std::ios::binary) << bytes;
  }

 private:
  fs::path folder_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folders folders;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  folders.fill(bytes);
  for (const auto list : kReaderLists)
    for (const SettingsReader& reader : list()) reader.read(bytes);
  return 0;
}
