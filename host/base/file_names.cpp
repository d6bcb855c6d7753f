#include "host/base/file_names.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "host/base/fold.h"

namespace cad {
namespace {

bool exists(const std::string& path) {
  struct stat facts;
  return ::stat(path.c_str(), &facts) == 0;
}

/// The entry of a folder whose name differs in letter case only; empty when there is none. Of
/// several the first by name, so that the answer does not depend on the folder's order.
std::string entry_like(const std::string& folder, std::string_view name) {
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(folder.c_str()), ::closedir);
  std::string found;
  if (!listing) return found;
  while (const dirent* entry = ::readdir(listing.get()))
    if (equal_no_case(entry->d_name, name) && (found.empty() || entry->d_name < found))
      found = entry->d_name;
  return found;
}

}  // namespace

bool is_file(const std::string& path) {
  struct stat facts;
  return ::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
}

std::string spelled_below(std::string folder, std::string_view name) {
  while (!name.empty()) {
    const std::size_t slash = std::min(name.find('/'), name.size());
    const std::string_view part = name.substr(0, slash);
    name.remove_prefix(std::min(slash + 1, name.size()));
    if (part.empty()) continue;
    std::string next = folder + std::string(part);
    if (!exists(next)) {
      const std::string like = entry_like(folder.empty() ? "." : folder, part);
      if (!like.empty()) next = folder + like;
    }
    folder = name.empty() ? next : next + "/";
  }
  return folder;
}

std::string path_on_disk(std::string_view named) {
  std::string path(named);
  std::replace(path.begin(), path.end(), '\\', '/');
  if (exists(path)) return path;
  return spelled_below(path.starts_with('/') ? "/" : "", path);
}

std::string drawing_on_disk(std::string_view named) {
  std::string path = path_on_disk(named);
  if (is_file(path) || path.size() < 4) return path;
  const std::string extension = folded(path.substr(path.size() - 4));
  const char* other = extension == ".dwg" ? ".dxf" : extension == ".dxf" ? ".dwg" : nullptr;
  if (!other) return path;
  const std::string twin = path_on_disk(path.substr(0, path.size() - 4) + other);
  return is_file(twin) ? twin : path;
}

}  // namespace cad
