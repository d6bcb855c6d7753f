#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "host/font/glyph.h"
#include "host/font/installed_fonts.h"

namespace cad::font {

/// A font read from its file. Unit: the em.
class FontFile {
 public:
  /// The file of an installed font, made bolder or slanted where the font itself is not. Null when
  /// it cannot be read. Read once for all who ask; lives as long as the program.
  static const FontFile* of(const InstalledFont& font, bool bold, bool italic);

  ~FontFile();
  FontFile(const FontFile&) = delete;
  FontFile& operator=(const FontFile&) = delete;

  bool has(std::uint32_t character) const;
  /// Empty for a character the font lacks or whose outline is damaged.
  std::optional<Glyph> glyph(std::uint32_t character) const;
  double capital() const { return capital_; }  ///< height of "H"
  double digit() const { return digit_; }      ///< advance of "0"

 private:
  struct Library;
  struct Face;
  explicit FontFile(std::unique_ptr<Face> face);

  std::unique_ptr<Face> face_;
  double capital_ = 0.0;
  double digit_ = 0.0;
};

}  // namespace cad::font
