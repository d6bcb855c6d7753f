#include "network/places.h"

#include <sys/stat.h>

#include "host/app/host.h"
#include "host/base/codepage.h"
#include "host/base/install_folder.h"

namespace {

bool is_kind(const std::string& path, mode_t kind) {
  struct stat facts;
  return ::stat(path.c_str(), &facts) == 0 && (facts.st_mode & S_IFMT) == kind;
}

/// The folder as wide text without the separators at its end; the root keeps none.
CString folder_text(const std::string& folder) {
  CString text = cad::from_utf8(folder);
  while (!text.empty() && (text.back() == L'/' || text.back() == L'\\')) text.pop_back();
  return text;
}

}  // namespace

bool KT::GetInstallDir(CString& folder) {
  const std::string& set = cad::host_settings().install_dir;
  folder = set.empty() ? CString() : folder_text(set) + L"\\";
  return !set.empty();
}

bool KT::GetWorkDir(CString& folder, bool with_separator) {
  const std::string& set = cad::host_settings().project_dir;
  folder = set.empty() ? CString() : folder_text(set);
  if (!set.empty() && with_separator) folder += L'\\';
  return !set.empty();
}

namespace network {

std::optional<std::string> find_settings_file(const CString& path) {
  std::string found = cad::path_on_disk(cad::to_utf8(path));
  if (!is_kind(found, S_IFREG)) return std::nullopt;
  return found;
}

std::optional<std::string> place_settings_file(const CString& path) {
  std::string place = cad::path_on_disk(cad::to_utf8(path));
  const std::size_t slash = place.rfind('/');
  const std::string folder = slash == place.npos ? "." : place.substr(0, slash + 1);
  if (place.empty() || slash + 1 == place.size() || !is_kind(folder, S_IFDIR)) return std::nullopt;
  return place;
}

std::string default_install_dir() { return cad::installed_folder("install"); }

}  // namespace network
