#pragma once

#include <string>
#include <vector>

#include "host/base/result.h"

namespace cad::dwg {

/// A program that writes DWG files as DXF.
struct Converter {
  std::string name;  ///< for messages
  /// The program, a path, and its arguments; those that are "{in}" and "{out}" stand for the files.
  std::vector<std::string> words;
};

/// dwg2dxf of LibreDWG on the PATH; else Node with the library that script/setup --dwg installs.
/// The error says what to install.
Result<Converter> find_converter();

}  // namespace cad::dwg
