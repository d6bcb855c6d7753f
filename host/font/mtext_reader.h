#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The formatting codes of MTEXT, read one piece at a time. Whoever wants to know what a MTEXT says
/// or looks like asks here.
///
///     MTextReader reader(contents, start);
///     for (MTextPiece piece; reader.next(piece);) ... reader.format() ... reader.paragraph()
namespace cad::font {

/// A colour a code asked for.
struct Colour {
  enum class Kind : std::uint8_t { kEntity, kIndex, kTrue };
  Kind kind = Kind::kEntity;  ///< kEntity: none asked for, the text's own
  std::uint32_t value = 0;    ///< index 0 to 256, or 0xRRGGBB
  bool operator==(const Colour&) const = default;
};

/// What holds for the characters that follow.
struct MTextFormat {
  double height = 1.0;  ///< of a capital letter, in drawing units
  double width_factor = 1.0;
  double oblique = 0.0;   ///< radians
  double tracking = 1.0;  ///< factor of the advances
  /// Bottom, middle or top of characters smaller than their line (\A).
  enum class Level : std::uint8_t { kBottom, kMiddle, kTop };
  Level level = Level::kBottom;
  Colour colour;
  bool under = false, over = false, through = false;
  /// \f and \F; empty: the style's own font. A name with an extension is a file, else a typeface.
  std::shared_ptr<const std::wstring> font;
  bool bold = false, italic = false;
  bool operator==(const MTextFormat&) const = default;
};

/// \p: indents and tab stops in drawing units.
struct MTextParagraph {
  enum class Align : std::uint8_t { kDefault, kLeft, kCenter, kRight, kJustified, kDistributed };
  Align align = Align::kDefault;
  double first = 0.0;  ///< of the first line, on top of `left`
  double left = 0.0;
  double right = 0.0;
  struct Tab {
    double position;
    Align align;  ///< kLeft, kCenter or kRight
  };
  std::vector<Tab> tabs;
  /// Of the paragraph's lines, when it says so; 0: the entity's.
  double line_spacing = 0.0;
  bool exact_spacing = false;
};

struct MTextPiece {
  enum class Kind : std::uint8_t {
    kCharacter,
    kTab,
    kParagraphEnd,  ///< \P, a line feed
    kColumnEnd,     ///< \N
    kFraction,      ///< \S: `upper` and `lower`
  };
  Kind kind = Kind::kCharacter;
  wchar_t character = 0;  ///< U+00A0 for a blank that does not break (\~)
  /// Of a fraction: '/' with a bar, '#' with a slope, '^' above each other without a bar, 0 when
  /// there is one part only.
  wchar_t divider = 0;
  std::wstring upper, lower;
};

/// Total: every text reads to its end. Groups nest to any depth. A code that nobody knows shows
/// nothing and is counted; a backslash at the end is shown.
class MTextReader {
 public:
  /// `keep_percent`: %%c and the like come as they are written, as TEXT holds them too; otherwise
  /// they are read as TEXT reads them. The contents must outlive the reader.
  MTextReader(std::wstring_view contents, const MTextFormat& start, bool keep_percent = false);

  bool next(MTextPiece& piece);
  /// For the piece given last.
  const MTextFormat& format() const { return formats_.back(); }
  const MTextParagraph& paragraph() const { return paragraph_; }
  /// Counts changes of the format: equal numbers mean equal formats.
  std::uint64_t format_version() const { return version_; }
  /// The codes that nobody knows, and how often they came.
  const std::map<wchar_t, std::size_t>& unknown() const { return unknown_; }

 private:
  bool read_code(MTextPiece& piece);
  bool read_percent(MTextPiece& piece);
  std::wstring_view value();
  void read_font(std::wstring_view value);
  void read_paragraph(std::wstring_view value);
  void read_fraction(std::wstring_view value, MTextPiece& piece);
  void change(wchar_t code, std::wstring_view value);

  std::wstring_view text_;
  std::size_t at_ = 0;
  double base_height_;
  bool keep_percent_;
  std::vector<MTextFormat> formats_;
  std::size_t too_deep_ = 0;
  MTextParagraph paragraph_;
  std::uint64_t version_ = 0;
  std::map<wchar_t, std::size_t> unknown_;
};

}  // namespace cad::font
