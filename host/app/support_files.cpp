#include <algorithm>
#include <string>

#include "host/app/host.h"
#include "host/app/session.h"
#include "host/base/file_names.h"

namespace cad {
namespace {

std::optional<std::string> find_below(std::string folder, std::string_view name) {
  std::string path = spelled_below(std::move(folder), name);
  if (!is_file(path)) return std::nullopt;
  return path;
}

}  // namespace

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
