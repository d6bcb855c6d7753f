#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/font/glyph.h"
#include "host/font/style.h"

/// Which installed fonts draw a style, and their characters.
///
/// Fonts are looked for when a style is first asked for, a character when it is first drawn; after
/// that both are a look-up. Not for use from several threads.
namespace cad::font {

class Source;

/// The characters of a style. Those the style's font lacks come from another installed font; those
/// no font has are drawn as a box. Without any font, characters are boxes as wide as those of the
/// usual single-stroke font. Lives as long as the program.
class Face {
 public:
  Face(std::unique_ptr<Source> source, std::string name);
  ~Face();
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  const Glyph& glyph(wchar_t character) const {
    const auto code = static_cast<std::uint32_t>(character);
    const Page* const page = code < kCharacters ? pages_[code / kPageSize].get() : nullptr;
    const Glyph* const known = page ? page->glyphs[code % kPageSize].get() : nullptr;
    return known ? *known : make(code);
  }
  /// How far letters such as "p" go below the base line, in heights of a capital letter.
  double descender() const { return descender_; }
  /// What draws it: "Liberation Sans"; "none" without a font.
  const std::string& name() const { return name_; }

 private:
  static constexpr std::uint32_t kCharacters = 0x110000, kPageSize = 256;
  struct Page {
    std::unique_ptr<const Glyph> glyphs[kPageSize];
  };
  const Glyph& make(std::uint32_t code) const;

  std::unique_ptr<Source> source_;
  std::string name_;
  double descender_ = 0.0;
  mutable std::vector<std::unique_ptr<Page>> pages_;
};

/// The face of a style's font; of its size and direction nothing. Cheap enough to ask for once per
/// text, not once per character.
const Face& face_for(const FontStyle& style);

/// A font that was asked for and is drawn by another.
struct Replacement {
  std::wstring wanted;  ///< as the drawing names it: "simplex.shx"
  std::string used;     ///< "Liberation Sans"
};
/// All replacements since the program began, in the order they came up.
const std::vector<Replacement>& replacements();
/// "simplex.shx -> Liberation Sans"
std::wstring describe(const Replacement& replacement);

}  // namespace cad::font
