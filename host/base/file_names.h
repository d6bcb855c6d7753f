#pragma once

#include <string>
#include <string_view>

/// File names as programs for other systems spell them: with "\\", and in any letter case.
namespace cad {

/// Whether a regular file of that name can be reached.
bool is_file(const std::string& path);

/// The path as it is on disk: "\\" becomes "/", and letter case is ignored in the parts that do not
/// exist as named. Parts that exist in no spelling stay as named.
std::string path_on_disk(std::string_view path);

/// The path below the folder ("" or one that ends with "/"), each part spelled as it is on disk,
/// those that are not there as they are named.
std::string spelled_below(std::string folder, std::string_view name);

/// The drawing file of that name: as path_on_disk() has it, or else with .dxf in place of .dwg or
/// the other way round. The name itself when there is neither.
std::string drawing_on_disk(std::string_view path);

}  // namespace cad
