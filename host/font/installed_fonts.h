#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/font/font_table.h"

/// The fonts fontconfig knows of: those with outlines.
namespace cad::font {

struct InstalledFont {
  std::string path;
  int index = 0;  ///< in a collection, and which of its variations
  std::vector<std::string> families;
  int weight = 80;  ///< fontconfig's numbers: 80 regular, 200 bold
  bool slanted = false;
  bool condensed = false;

  const std::string& name() const { return families.front(); }
};

/// Found once; fonts installed later are not seen. The answers live as long as the program.
class InstalledFonts {
 public:
  static const InstalledFonts& instance();

  /// The font of a family, letter case ignored, that is nearest in weight and slant. Null when no
  /// font of that family is installed.
  const InstalledFont* of_family(const Family& family) const;
  /// By its file's name without folder, letter case ignored.
  const InstalledFont* of_file(std::string_view name) const;
  /// The font one would use for a character of a Chinese drawing. Null when none has it.
  const InstalledFont* with_character(std::uint32_t character) const;
  /// What text without further wishes is drawn with; null when there are no fonts.
  const InstalledFont* usual() const;

  InstalledFonts(const InstalledFonts&) = delete;
  InstalledFonts& operator=(const InstalledFonts&) = delete;

 private:
  InstalledFonts();
  ~InstalledFonts() = delete;  // the one instance stays

  struct Coverage;
  std::vector<InstalledFont> fonts_;
  std::vector<Coverage> by_preference_;
};

}  // namespace cad::font
