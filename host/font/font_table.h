#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The table of substitute fonts: data/fonts/substitutes.txt tells its format.
namespace cad::font {

struct Family {
  std::string name;  ///< UTF-8, as fontconfig knows it
  bool bold = false;
  bool italic = false;
};

/// What is drawn instead of the fonts of some names.
struct Substitute {
  std::vector<std::wstring> patterns;  ///< folded; * and ? as in file names
  std::vector<Family> families;        ///< the first that is installed counts
  double digit = 0.0;                  ///< advance of a digit in capital heights; 0: as it comes
  double full = 0.0;                   ///< size of a Chinese character likewise
};

/// Reads a table, UTF-8. A line that is none is left out and traced as `name`:line.
std::vector<Substitute> read_table(std::string_view text, const std::string& name);

/// The first row with a pattern for that name, or null. Letter case does not count.
const Substitute* find_substitute(const std::vector<Substitute>& table, std::wstring_view name);

/// The user's own table, named by the environment variable PIPENOTE_FONTS; empty without one.
const std::vector<Substitute>& user_table();
/// The one installed with the program.
const std::vector<Substitute>& installed_table();

}  // namespace cad::font
