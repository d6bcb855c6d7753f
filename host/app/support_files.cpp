#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <string>

#include "host/app/host.h"
#include "host/app/session.h"
#include "host/base/fold.h"

namespace cad {
namespace {

bool is_file(const std::string& path) {
  struct stat facts;
  return ::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
}

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

/// The path below the folder, each part spelled as it is on disk, those that are not there as they
/// are named.
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

std::optional<std::string> find_below(std::string folder, std::string_view name) {
  std::string path = spelled_below(std::move(folder), name);
  if (!is_file(path)) return std::nullopt;
  return path;
}

}  // namespace

std::string path_on_disk(std::string_view named) {
  std::string path(named);
  std::replace(path.begin(), path.end(), '\\', '/');
  if (exists(path)) return path;
  return spelled_below(path.starts_with('/') ? "/" : "", path);
}

std::optional<std::string> find_support_file(std::string_view wanted) {
  std::string name(wanted);
  std::replace(name.begin(), name.end(), '\\', '/');
  if (name.empty()) return std::nullopt;
  if (is_file(name)) return name;
  if (name.front() == '/') return find_below("/", name);
  std::vector<std::string> folders = {"./"};
  if (const DocumentSession* session = DocumentSession::current();
      session && !session->path.empty())
    folders.push_back(session->path.substr(0, session->path.rfind('/') + 1));
  for (const std::string* folder : {&host_settings().project_dir, &host_settings().install_dir})
    if (!folder->empty()) folders.push_back(*folder + "/");
  for (const std::string& folder : folders)
    if (std::optional<std::string> file = find_below(folder.empty() ? "./" : folder, name))
      return file;
  return std::nullopt;
}

}  // namespace cad
