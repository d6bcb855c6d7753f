#include "host/font/mtext_layout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "host/font/characters.h"
#include "host/font/face.h"
#include "host/font/line_layout.h"

namespace cad::font {
namespace {

using Align = MTextParagraph::Align;

constexpr double kLineDistance = 5.0 / 3.0;  // between base lines of single spacing
constexpr double kSmaller = 0.7;             // parts of a fraction
constexpr double kGap = 0.15;                // between them and the bar
constexpr double kMost = 1e30;               // products of larger numbers may overflow
constexpr double kEver = std::numeric_limits<double>::infinity();

/// A format and what is computed from it once.
struct Look {
  MTextFormat format;
  const Face* face;
  double across, slant, up;  // scales of a character's own coordinates

  PlacedGlyph place(const Glyph& glyph, wchar_t c, double x, double y, double size = 1.0) const {
    return {&glyph, c, x, y, across * size, slant * size, up * size};
  }
};

struct Fraction {
  wchar_t divider;
  std::wstring upper, lower;
  double upper_width, lower_width;
};

/// What takes room in a line.
struct Cell {
  enum class Kind : std::uint8_t { kCharacter, kBlank, kTab, kFraction };
  Kind kind;
  wchar_t character;
  std::uint32_t look;
  std::uint32_t fraction;  // of kFraction: its number
  const Glyph* glyph;
  double width;
  double x;  // in its line, once that is known
  std::wstring_view source;
};

class Layout {
 public:
  Layout(const FontStyle& style, const MTextShape& shape) : style_(style), shape_(shape) {
    if (!(shape_.reference_width > 0.0 && shape_.reference_width < kMost))
      shape_.reference_width = 0.0;
    if (!(shape_.line_spacing > 0.0 && shape_.line_spacing < kMost)) shape_.line_spacing = 1.0;
    shape_.attachment = std::clamp(shape_.attachment, 1, 9);
  }

  MTextLayout run(std::wstring_view contents);

 private:
  struct Line {
    std::size_t first, end;  // cells; blanks at the end included
    double width;            // without them
    double indent, room;     // where it may begin, and how wide it may be
    double tallest;          // capital height
    double ascent;           // of what rises highest
    bool last_of_paragraph;
    MTextParagraph paragraph;
  };

  std::uint32_t look_of(const MTextReader& reader);
  void add(const MTextReader& reader, const MTextPiece& piece);
  void end_paragraph(const MTextReader& reader);
  void break_lines(const MTextParagraph& paragraph);
  void end_line(const MTextParagraph& paragraph, std::size_t first, std::size_t end, bool last);
  double tab_stop(const MTextParagraph& paragraph, std::size_t cell, std::size_t end, double x);
  double width_behind(std::size_t cell, std::size_t end) const;
  double fraction_part_width(const Look& look, std::wstring_view part) const;
  void place_lines();
  void spread(const Line& line, double spare);
  void place_line(const Line& line, double left, double base);
  void place_cell(const Cell& cell, const Line& line, double left, double base);
  void place_fraction(const Cell& cell, double x, double base);
  void place_text(const Look& look, std::wstring_view text, double x, double y);
  void add_stroke(Point from, Point to);
  void shift_to_attachment();

  const FontStyle& style_;
  MTextShape shape_;
  MTextLayout out_;
  std::vector<Look> looks_;
  std::optional<std::uint64_t> look_version_;
  std::map<std::uint64_t, std::uint32_t> look_by_version_;
  std::vector<Fraction> fractions_;
  std::vector<Cell> cells_;
  std::size_t paragraph_begin_ = 0;
  std::vector<Line> lines_;
  std::uint32_t look_ = 0;  // of the piece read last
};

MTextLayout Layout::run(std::wstring_view contents) {
  if (!(shape_.height > 0.0) || !std::isfinite(shape_.height)) return {};
  MTextFormat start;
  start.height = shape_.height = std::min(shape_.height, kMost);
  const bool wide = style_.width_factor > 0.0 && style_.width_factor < kMost;
  start.width_factor = wide ? style_.width_factor : 1.0;
  start.oblique = std::isfinite(style_.oblique) ? style_.oblique : 0.0;
  start.bold = style_.bold, start.italic = style_.italic;
  MTextReader reader(contents, start);
  cells_.reserve(contents.size());
  for (MTextPiece piece; reader.next(piece);) {
    const bool end =
        piece.kind == MTextPiece::Kind::kParagraphEnd || piece.kind == MTextPiece::Kind::kColumnEnd;
    end ? end_paragraph(reader) : add(reader, piece);
  }
  end_paragraph(reader);
  out_.unknown = reader.unknown();
  place_lines();
  return std::move(out_);
}

std::uint32_t Layout::look_of(const MTextReader& reader) {
  const std::uint64_t version = reader.format_version();
  if (look_version_ == version) return look_;
  look_version_ = version;
  const auto [place, is_new] =
      look_by_version_.try_emplace(version, static_cast<std::uint32_t>(looks_.size()));
  look_ = place->second;
  if (!is_new) return look_;
  const MTextFormat& format = reader.format();
  FontStyle style = style_;
  if (format.font) {
    const std::wstring& name = *format.font;
    const std::size_t comma = name.find(L',');
    style.typeface = format.font_is_file ? std::wstring() : name;
    style.file = format.font_is_file ? name.substr(0, comma) : std::wstring();
    style.big_file = comma != name.npos ? name.substr(comma + 1) : std::wstring();
  }
  style.bold = format.bold, style.italic = format.italic;
  const double slant = std::tan(std::clamp(format.oblique, -kSteepest, kSteepest));
  looks_.push_back({format, &face_for(style), format.height * format.width_factor,
                    format.height * slant, format.height});
  return look_;
}

void Layout::add(const MTextReader& reader, const MTextPiece& piece) {
  const std::uint32_t number = look_of(reader);
  const Look& look = looks_[number];
  Cell cell{Cell::Kind::kCharacter, piece.character, number, 0, nullptr, 0.0, 0.0, piece.source};
  switch (piece.kind) {
    case MTextPiece::Kind::kTab:
      cell.kind = Cell::Kind::kTab;
      break;
    case MTextPiece::Kind::kFraction: {
      cell.kind = Cell::Kind::kFraction;
      cell.fraction = static_cast<std::uint32_t>(fractions_.size());
      const double upper = fraction_part_width(look, piece.upper);
      const double lower = fraction_part_width(look, piece.lower);
      fractions_.push_back({piece.divider, piece.upper, piece.lower, upper, lower});
      const double slope = kSmaller / 2.0 * look.format.height;
      cell.width = piece.divider == L'#' ? upper + slope + lower : std::max(upper, lower);
      break;
    }
    default:
      if (piece.character == L' ') cell.kind = Cell::Kind::kBlank;
      cell.glyph = &look.face->glyph(piece.character);
      cell.width = cell.glyph->advance * look.across * look.format.tracking;
  }
  cells_.push_back(cell);
}

double Layout::fraction_part_width(const Look& look, std::wstring_view part) const {
  double width = 0.0;
  for (const wchar_t c : part) width += look.face->glyph(c).advance;
  return width * look.across * kSmaller;
}

void Layout::end_paragraph(const MTextReader& reader) {
  look_of(reader);
  break_lines(reader.paragraph());
  paragraph_begin_ = cells_.size();
}

/// Greedy: as much on a line as fits.
void Layout::break_lines(const MTextParagraph& paragraph) {
  const std::size_t end = cells_.size();
  std::size_t first = paragraph_begin_, chance = first;
  double x = 0.0;
  const auto room = [&](bool is_first) {
    if (shape_.reference_width <= 0.0) return kEver;
    return shape_.reference_width - paragraph.left - paragraph.right -
           (is_first ? paragraph.first : 0.0);
  };
  for (std::size_t i = first; i < end; ++i) {
    Cell& cell = cells_[i];
    if (cell.kind == Cell::Kind::kTab) cell.width = tab_stop(paragraph, i, end, x) - x;
    if (i > first && cell.kind != Cell::Kind::kBlank) {
      const Cell& before = cells_[i - 1];
      if (before.kind == Cell::Kind::kBlank || before.kind == Cell::Kind::kTab ||
          (before.kind == Cell::Kind::kCharacter && cell.kind == Cell::Kind::kCharacter &&
           may_break_between(before.character, cell.character)))
        chance = i;
      // Sums of widths that should fill the line exactly may be a hair longer.
      constexpr double kHair = 1e-9;
      const double limit = room(first == paragraph_begin_);
      if (x + cell.width > limit + kHair * std::abs(limit) && chance > first) {
        end_line(paragraph, first, chance, false);
        first = chance;
        x = 0.0;
        for (std::size_t j = first; j < i; ++j) x += cells_[j].width;
        if (cell.kind == Cell::Kind::kTab) cell.width = tab_stop(paragraph, i, end, x) - x;
      }
    }
    x += cell.width;
  }
  end_line(paragraph, first, end, true);
}

/// Where the text behind a tab begins. Stops count from the left edge of the text, `x` from where
/// its line begins.
double Layout::tab_stop(const MTextParagraph& paragraph, std::size_t cell, std::size_t end,
                        double x) {
  const bool is_first = lines_.empty() || lines_.back().last_of_paragraph;
  const double indent = paragraph.left + (is_first ? paragraph.first : 0.0);
  const double at = x + indent;
  for (const MTextParagraph::Tab& tab : paragraph.tabs) {
    if (tab.position <= at) continue;
    const double behind = tab.align == Align::kLeft ? 0.0 : width_behind(cell, end);
    const double begin = tab.position - (tab.align == Align::kCenter ? behind / 2.0 : behind);
    return std::max(begin, at) - indent;
  }
  // A hanging indent is a stop of itself.
  if (paragraph.left > at) return paragraph.left - indent;
  const double distance = kTabDistance * shape_.height;
  const double next = (std::floor(at / distance) + 1.0) * distance;
  return (next > at ? next : at) - indent;
}

/// Of what stands between this tab and the next.
double Layout::width_behind(std::size_t cell, std::size_t end) const {
  double width = 0.0;
  for (std::size_t i = cell + 1; i < end && cells_[i].kind != Cell::Kind::kTab; ++i)
    width += cells_[i].width;
  return width;
}

void Layout::end_line(const MTextParagraph& paragraph, std::size_t first, std::size_t end,
                      bool last) {
  const bool is_first = lines_.empty() || lines_.back().last_of_paragraph;
  Line line{first, end,  0.0,      paragraph.left + (is_first ? paragraph.first : 0.0), 0.0, 0.0,
            0.0,   last, paragraph};
  line.room =
      shape_.reference_width > 0.0 ? shape_.reference_width - line.indent - paragraph.right : 0.0;
  double x = 0.0;
  for (std::size_t i = first; i < end; ++i) {
    Cell& cell = cells_[i];
    cell.x = x;
    x += cell.width;
    const double height = looks_[cell.look].format.height;
    constexpr double kFractionAscent = 0.5 + kGap + kSmaller;
    const bool fraction = cell.kind == Cell::Kind::kFraction;
    line.tallest = std::max(line.tallest, height);
    line.ascent = std::max(line.ascent, fraction ? kFractionAscent * height : height);
    if (cell.kind != Cell::Kind::kBlank) line.width = x;
  }
  if (first == end) line.tallest = line.ascent = looks_[look_].format.height;
  lines_.push_back(std::move(line));
}

void Layout::place_lines() {
  double widest = 0.0;
  for (const Line& line : lines_) widest = std::max(widest, line.indent + line.width);
  const double column = shape_.reference_width > 0.0 ? shape_.reference_width : widest;

  double base = 0.0;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (i == 0) {
      base = -line.ascent;
    } else {
      const MTextParagraph& own = line.paragraph;
      const bool exact = own.line_spacing > 0.0 ? own.exact_spacing : shape_.exact_spacing;
      const double spacing = own.line_spacing > 0.0 ? own.line_spacing : shape_.line_spacing;
      const double more = exact ? 0.0 : line.ascent - line.tallest;
      base -= kLineDistance * spacing * (exact ? shape_.height : line.tallest) + more;
    }
    constexpr Align kByColumn[] = {Align::kLeft, Align::kCenter, Align::kRight};
    Align align = line.paragraph.align;
    if (align == Align::kDefault) align = kByColumn[(shape_.attachment - 1) % 3];
    const double room =
        shape_.reference_width > 0.0 ? line.room : column - line.indent - line.paragraph.right;
    const double spare = room - line.width;
    double left = line.indent;
    if (align == Align::kCenter) left += spare / 2.0;
    if (align == Align::kRight) left += spare;
    const bool fills =
        align == Align::kDistributed || (align == Align::kJustified && !line.last_of_paragraph);
    if (fills && spare > 0.0) spread(line, spare);
    place_line(line, left, base);
  }
  const double shift = -column * ((shape_.attachment - 1) % 3) / 2.0;
  const double height = -base;
  const double rise = height * ((shape_.attachment - 1) / 3) / 2.0;
  double left = kEver, right = -kEver;
  for (MTextLine& line : out_.lines) {
    line.left += shift, line.base += rise;
    left = std::min(left, line.left), right = std::max(right, line.left + line.width);
  }
  out_.frame = {left, rise - height, right, rise};
  for (PlacedGlyph& glyph : out_.glyphs) {
    glyph.x += shift, glyph.y += rise;
    out_.ink.add(box_of(glyph));
  }
  for (Stroke& stroke : out_.strokes) {
    for (Point* p : {&stroke.from, &stroke.to}) p->x += shift, p->y += rise;
    out_.ink.add({std::min(stroke.from.x, stroke.to.x), std::min(stroke.from.y, stroke.to.y),
                  std::max(stroke.from.x, stroke.to.x), std::max(stroke.from.y, stroke.to.y)});
  }
}

/// Widens blanks, or all gaps of a distributed line, until the line is full.
void Layout::spread(const Line& line, double spare) {
  const bool everywhere = line.paragraph.align == Align::kDistributed;
  std::size_t end = line.end;
  while (end > line.first && cells_[end - 1].kind == Cell::Kind::kBlank) --end;
  const auto is_gap = [&](std::size_t i) {
    return everywhere || cells_[i].kind == Cell::Kind::kBlank;
  };
  std::size_t gaps = 0;
  for (std::size_t i = line.first; i + 1 < end; ++i) gaps += is_gap(i) ? 1 : 0;
  if (gaps == 0) return;
  double moved = 0.0;
  for (std::size_t i = line.first; i < line.end; ++i) {
    cells_[i].x += moved;
    if (i + 1 < end && is_gap(i)) moved += spare / static_cast<double>(gaps);
  }
}

void Layout::place_line(const Line& line, double left, double base) {
  MTextLine placed{left, base, line.width, line.tallest, out_.runs.size(), 0, {}};
  std::optional<std::uint32_t> look;
  double run_begin = left;
  const auto end_run = [&](double x) {
    if (!look) return;
    const MTextFormat& format = looks_[*look].format;
    const bool lines[] = {format.under, format.over, format.through};
    for (std::size_t i = 0; i < std::size(lines); ++i) {
      const double y = base + kLineHeights[i] * format.height;
      if (lines[i] && x > run_begin) add_stroke({run_begin, y}, {x, y});
    }
    MTextRun& run = out_.runs.back();
    run.glyphs = out_.glyphs.size() - run.first_glyph;
    run.strokes = out_.strokes.size() - run.first_stroke;
  };
  for (std::size_t i = line.first; i < line.end; ++i) {
    const Cell& cell = cells_[i];
    if (look != cell.look) {
      end_run(left + cell.x);
      look = cell.look;
      run_begin = left + cell.x;
      out_.runs.push_back(
          {looks_[*look].format.colour, out_.glyphs.size(), 0, out_.strokes.size(), 0});
    }
    place_cell(cell, line, left, base);
  }
  // Blanks at the end of a line hang over: nothing is drawn under them.
  std::size_t seen = line.end;
  while (seen > line.first && cells_[seen - 1].kind == Cell::Kind::kBlank) --seen;
  if (seen > line.first) placed.width = cells_[seen - 1].x + cells_[seen - 1].width;
  end_run(left + placed.width);
  const std::size_t said = line.last_of_paragraph ? line.end : seen;
  if (said > line.first) {
    const std::wstring_view first = cells_[line.first].source, last = cells_[said - 1].source;
    placed.source = {first.data(),
                     static_cast<std::size_t>(last.data() - first.data()) + last.size()};
  }
  placed.runs = out_.runs.size() - placed.first_run;
  out_.lines.push_back(placed);
}

void Layout::place_cell(const Cell& cell, const Line& line, double left, double base) {
  const Look& look = looks_[cell.look];
  const double below = line.tallest - look.format.height;
  const double rise = look.format.level == MTextFormat::Level::kMiddle ? below / 2.0
                      : look.format.level == MTextFormat::Level::kTop  ? below
                                                                       : 0.0;
  const double x = left + cell.x, y = base + rise;
  if (cell.kind == Cell::Kind::kFraction) return place_fraction(cell, x, y);
  if (cell.glyph && !cell.glyph->outline.steps.empty())
    out_.glyphs.push_back(look.place(*cell.glyph, cell.character, x, y));
}

void Layout::place_fraction(const Cell& cell, double x, double base) {
  const Fraction& fraction = fractions_[cell.fraction];
  const Look& look = looks_[cell.look];
  const double height = look.format.height;
  const double above = base + height * (0.5 + kGap),
               below = base + height * (0.5 - kGap - kSmaller);
  if (fraction.divider == L'#') {
    const double end = x + cell.width;
    place_text(look, fraction.upper, x, above - height * kGap);
    place_text(look, fraction.lower, end - fraction.lower_width, base - height * kGap);
    const double slope = x + fraction.upper_width;
    add_stroke({slope - height * kGap, base - height * kGap},
               {end - fraction.lower_width + height * kGap, base + height * (1.0 + kGap)});
    return;
  }
  const bool centred = fraction.divider == L'/';
  place_text(look, fraction.upper, x + (centred ? (cell.width - fraction.upper_width) / 2.0 : 0.0),
             above);
  place_text(look, fraction.lower, x + (centred ? (cell.width - fraction.lower_width) / 2.0 : 0.0),
             below);
  const double middle = base + height * 0.5;
  if (centred && cell.width > 0.0) add_stroke({x, middle}, {x + cell.width, middle});
}

void Layout::place_text(const Look& look, std::wstring_view text, double x, double y) {
  for (const wchar_t c : text) {
    const Glyph& glyph = look.face->glyph(c);
    if (!glyph.outline.steps.empty()) out_.glyphs.push_back(look.place(glyph, c, x, y, kSmaller));
    x += glyph.advance * look.across * kSmaller;
  }
}

void Layout::add_stroke(Point from, Point to) { out_.strokes.push_back({from, to}); }

}  // namespace

MTextLayout layout_mtext(std::wstring_view contents, const FontStyle& style,
                         const MTextShape& shape) {
  return Layout(style, shape).run(contents);
}

}  // namespace cad::font
