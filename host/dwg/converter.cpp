#include "host/dwg/converter.h"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

#include "host/dwg/find_converter.h"

namespace cad::dwg {
namespace {

constexpr std::size_t kVersionLength = 6;

constexpr std::pair<std::string_view, std::string_view> kReleases[] = {
    {"AC1006", "R10"},   {"AC1009", "R12"},   {"AC1012", "R13"},   {"AC1014", "R14"},
    {"AC1015", "R2000"}, {"AC1018", "R2004"}, {"AC1021", "R2007"}, {"AC1024", "R2010"},
    {"AC1027", "R2013"}, {"AC1032", "R2018"},
};

/// A folder of its own, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    const char* const set = std::getenv("TMPDIR");
    path_ = std::string(set && *set ? set : "/tmp") + "/pipenote-dwg-XXXXXX";
    if (!::mkdtemp(path_.data())) path_.clear();
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  explicit operator bool() const { return !path_.empty(); }
  std::string file(std::string_view name) const { return path_ + "/" + std::string(name); }

 private:
  std::string path_;
};

}  // namespace

bool is_dwg(std::string_view bytes) {
  if (bytes.size() < kVersionLength || !bytes.starts_with("AC")) return false;
  for (const char c : bytes.substr(2, kVersionLength - 2))
    if ((c < '0' || c > '9') && c != '.') return false;
  return true;
}

bool is_dwg_file(const std::string& path) {
  char bytes[kVersionLength];
  std::ifstream in(path, std::ios::binary);
  return in.read(bytes, sizeof bytes) && is_dwg({bytes, sizeof bytes});
}

std::string release_name(std::string_view bytes) {
  const std::string_view version = bytes.substr(0, kVersionLength);
  for (const auto& [known, name] : kReleases)
    if (known == version) return std::string(name);
  return std::string(version);
}

Result<Converted> to_dxf(const std::string& path, const Limits& limits) {
  std::string release;
  {
    const Result<MappedFile> file = MappedFile::open(path);
    if (!file) return file.error();
    release = release_name(file->bytes());
  }
  const std::string kind = "is a DWG file (" + release + ")";
  Result<Converter> converter = find_converter();
  if (!converter) return fail(path, kind + "; " + converter.error().what);
  const TemporaryFolder folder;
  if (!folder)
    return fail(path, kind + "; no temporary folder can be made: " + std::strerror(errno));
  const std::unique_ptr<char, void (*)(void*)> whole(::realpath(path.c_str(), nullptr), std::free);
  const std::string out = folder.file("drawing.dxf");
  for (std::string& word : converter->words) {
    if (word == "{in}") word = whole ? whole.get() : path;
    if (word == "{out}") word = out;
  }
  if (const Status run = run_program(converter->words, folder.file("log"), limits); !run)
    return fail(path, kind + ", but its converter " + converter->name + " " + run.error().what);
  Result<MappedFile> dxf = MappedFile::open(out);
  if (!dxf || dxf->bytes().empty())
    return fail(path, kind + ", but its converter " + converter->name + " wrote nothing");
  return Converted{std::move(*dxf), converter->name};
}

}  // namespace cad::dwg
