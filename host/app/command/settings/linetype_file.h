#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/base/result.h"
#include "host/db/group_list.h"

namespace cad {

/// A linetype of a linetype file: dashes above 0, gaps below, dots 0.
struct LinetypePattern {
  std::wstring name;
  std::wstring description;
  std::vector<double> dashes;
  bool complex = false;  ///< holds texts or shapes, which are not read

  GroupList groups() const;
};

/// The linetypes of a file's text:
///     *DASHED,Dashed __ __ __
///     A,.5,-.25
/// Lines behind ";" are comments. What is no linetype is left out.
std::vector<LinetypePattern> parse_linetypes(std::wstring_view text);

/// The file of that name; the standard linetypes for the standard files ("acad.lin",
/// "acadiso.lin") where there is no such file.
Result<std::vector<LinetypePattern>> read_linetype_file(std::wstring_view name);

}  // namespace cad
