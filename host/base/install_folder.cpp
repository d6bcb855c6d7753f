#include "host/base/install_folder.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>

namespace cad {

std::string library_folder() {
  Dl_info facts;
  if (!::dladdr(reinterpret_cast<const void*>(&library_folder), &facts) || !facts.dli_fname)
    return ".";
  const std::string file = facts.dli_fname;
  const std::size_t slash = file.rfind('/');
  return slash == std::string::npos ? "." : file.substr(0, slash);
}

std::string installed_folder(std::string_view name) {
  const std::string library = library_folder();
  // Modules stand one folder below the other libraries.
  for (const char* share : {"/../share/pipenote/", "/../../share/pipenote/"}) {
    const std::string folder = (library + share).append(name);
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(folder.c_str(), nullptr),
                                                      std::free);
    struct stat facts;
    if (real && ::stat(real.get(), &facts) == 0 && S_ISDIR(facts.st_mode)) return real.get();
  }
  return {};
}

}  // namespace cad
