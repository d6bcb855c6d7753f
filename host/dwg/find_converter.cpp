#include "host/dwg/find_converter.h"

#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string_view>

#include "host/base/file_names.h"
#include "host/base/install_folder.h"

namespace cad::dwg {
namespace {

constexpr std::string_view kLibrary = "node_modules/@mlightcad/libredwg-web";
constexpr std::string_view kScript = "dwg_to_dxf.mjs";

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

/// The folders of a list such as PATH; never the current one, nor one below it.
std::vector<std::string> parts_of(const std::string& list) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find(':', begin), list.size());
    if (list[begin] == '/') parts.push_back(list.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

std::optional<std::string> on_path(std::string_view program) {
  for (const std::string& folder : parts_of(variable("PATH"))) {
    std::string file = folder + "/" + std::string(program);
    if (is_file(file) && ::access(file.c_str(), X_OK) == 0) return file;
  }
  return std::nullopt;
}

/// Folders that share/pipenote/dwg may be, the user's own first.
std::vector<std::string> data_folders() {
  std::vector<std::string> folders;
  const std::string data = variable("XDG_DATA_HOME"), home = variable("HOME");
  if (!data.empty()) {
    folders.push_back(data + "/pipenote/dwg");
  } else if (!home.empty()) {
    folders.push_back(home + "/.local/share/pipenote/dwg");
  }
  folders.push_back(installed_folder("dwg"));
  const std::string shared = variable("XDG_DATA_DIRS");
  for (const std::string& folder :
       parts_of(shared.empty() ? "/usr/local/share:/usr/share" : shared))
    folders.push_back(folder + "/pipenote/dwg");
  return folders;
}

std::optional<std::string> in_data(std::string_view name, std::string_view marker = {}) {
  for (const std::string& folder : data_folders()) {
    std::string path = folder + "/" + std::string(name);
    if (is_file(path + std::string(marker))) return path;
  }
  return std::nullopt;
}

}  // namespace

Result<Converter> find_converter() {
  if (const auto program = on_path("dwg2dxf"))
    return Converter{"dwg2dxf", {*program, "-y", "-o", "{out}", "{in}"}};
  const auto node = on_path("node");
  const auto library = in_data(kLibrary, "/package.json");
  const auto script = in_data(kScript);
  if (node && library && script)
    return Converter{"libredwg-web",
                     // Compiling the library to the best code takes longer than converting.
                     {*node, "--liftoff-only", *script, *library, "{in}", "{out}"}};
  if (library && script) return fail("", "Node (node) is needed to read DWG files: install it");
  return fail("",
              "reading DWG files needs a converter: run script/setup --dwg, or put dwg2dxf of "
              "LibreDWG on the PATH; or save the drawing as DXF");
}

}  // namespace cad::dwg
