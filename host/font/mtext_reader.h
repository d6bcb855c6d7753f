#pragma once

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
  /// \f, a typeface, or \F, a file ("txt,gbcbig": with a big font); null: the style's own font.
  std::shared_ptr<const std::wstring> font;
  bool font_is_file = false;
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
  std::wstring_view source;  ///< what says it in the contents
};

/// Total: every text reads to its end. A code that nobody knows shows nothing and is counted; a
/// backslash at the end is shown. Groups within more than 256 others share the format of the last
/// of these.
class MTextReader {
 public:
  /// `keep_percent`: %%c and the like come as they are written, as TEXT holds them too; otherwise
  /// they are read as TEXT reads them. The contents must outlive the reader.
  MTextReader(std::wstring_view contents, const MTextFormat& start, bool keep_percent = false);

  bool next(MTextPiece& piece);
  /// For the piece given last.
  const MTextFormat& format() const { return levels_.back().format; }
  const MTextParagraph& paragraph() const { return paragraph_; }
  /// Equal numbers mean equal formats; a number is never used for another one.
  std::uint64_t format_version() const { return levels_.back().version; }
  /// The codes that nobody knows, and how often they came.
  const std::map<wchar_t, std::size_t>& unknown() const { return unknown_; }

 private:
  struct Level {
    MTextFormat format;
    std::uint64_t version;
  };
  struct Code;
  static const Code kCodes[];

  bool read_piece(MTextPiece& piece);
  bool read_backslash(MTextPiece& piece);
  bool read_percent(MTextPiece& piece);
  bool show(wchar_t character, std::size_t length, MTextPiece& piece);
  void open_group();
  void close_group();
  MTextFormat& changed_format();
  std::wstring_view value_to_semicolon();
  std::wstring_view number_value();

  // The codes that change what follows; `code` as it is written.
  void set_line(wchar_t code, std::wstring_view value);
  void set_size(wchar_t code, std::wstring_view value);
  void set_level(wchar_t code, std::wstring_view value);
  void set_colour(wchar_t code, std::wstring_view value);
  void set_font(wchar_t code, std::wstring_view value);
  void set_paragraph(wchar_t code, std::wstring_view value);
  void read_fraction(MTextPiece& piece);

  std::wstring_view text_;
  std::size_t at_ = 0;
  double base_height_;
  bool keep_percent_;
  std::vector<Level> levels_;
  std::size_t too_deep_ = 0;
  MTextParagraph paragraph_;
  std::uint64_t versions_ = 0;
  std::map<wchar_t, std::size_t> unknown_;
};

}  // namespace cad::font
