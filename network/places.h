#pragma once

#include <optional>
#include <string>

#include "network/strings.h"

/// Where settings are kept.
namespace KT {

/// The folder of the installation's settings, with a trailing backslash. False, and an empty text,
/// when none is set.
bool GetInstallDir(CString& folder);

/// The folder of the current project, with a trailing backslash if `with_separator`. False, and an
/// empty text, when none is set.
bool GetWorkDir(CString& folder, bool with_separator);

}  // namespace KT

namespace network {

/// The existing regular file that a path means: "\" and "/" both separate, and letter case is
/// ignored in every part that does not exist as written. A relative path starts at the current
/// folder. Empty when there is none. The answer is UTF-8, for cad::MappedFile and the like.
std::optional<std::string> find_settings_file(const CString& path);

/// Where a file is to be created that a path means: existing folders are found as above. Empty when
/// a folder of the path does not exist.
std::optional<std::string> place_settings_file(const CString& path);

/// The settings installed with the program: share/pipenote/install beside its libraries, which in a
/// build folder leads to the sources' data/install. Empty when there are none. UTF-8.
std::string default_install_dir();

}  // namespace network
