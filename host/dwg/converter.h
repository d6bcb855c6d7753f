#pragma once

#include <string>
#include <string_view>

#include "host/base/file.h"
#include "host/base/result.h"
#include "host/dwg/run_program.h"

/// DWG files are read through a converter, a program of its own that writes them as DXF.
namespace cad::dwg {

/// Whether bytes are the beginning of a DWG file, whatever its name.
bool is_dwg(std::string_view bytes);
/// The same of a file; false for one that cannot be read.
bool is_dwg_file(const std::string& path);
/// "R2013", or the version as the file has it ("AC1099") where it is not known.
std::string release_name(std::string_view bytes);

struct Converted {
  MappedFile dxf;         ///< of a temporary file that is gone already
  std::string converter;  ///< for messages about what it wrote
};

/// The drawing as DXF. Errors are one line: that there is no converter and what to install, or what
/// the converter did. Nothing is left behind.
Result<Converted> to_dxf(const std::string& path, const Limits& limits = {});

}  // namespace cad::dwg
