#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "host/font/font_file.h"
#include "host/font/glyph.h"

namespace cad::font {

/// Where the characters of a face come from, and how they are stretched.
class Source {
 public:
  struct Parts {
    std::wstring wanted;             ///< as the drawing names the font; for the trace
    const FontFile* main = nullptr;  ///< null without any font
    const FontFile* big = nullptr;   ///< null when there is none of its own
    double digit = 0.0;              ///< see Substitute
    double full = 0.0;
    bool bold = false;
    bool italic = false;
  };
  explicit Source(Parts parts);

  Glyph draw(std::uint32_t character);

 private:
  /// The file that has the character; null when none does.
  const FontFile* file_of(std::uint32_t character, bool full_width);

  Parts parts_;
  double em_ = 1.0;       // of the main font, in heights of its capitals
  double stretch_ = 1.0;  // across, of all but full-width characters
  std::set<std::string> traced_;
};

}  // namespace cad::font
