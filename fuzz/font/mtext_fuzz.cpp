// Any characters are laid out, as MTEXT and as TEXT. Always:
//   - pieces come from the contents in order, each character from one of them at most;
//   - lines and runs hold all glyphs and strokes, in order, and all numbers are finite;
//   - the attachment moves lines but neither breaks nor sizes them;
//   - a line is measured as it is laid out;
//   - what is escaped reads as it was.
// The first bytes choose width, spacing and attachment.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/base/codepage.h"
#include "host/font/line_layout.h"
#include "host/font/mtext_layout.h"

namespace {

using namespace cad::font;

void require(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", law);
  std::abort();
}

const FontStyle& style() {
  static const FontStyle style{.file = L"simplex.shx", .big_file = L"gbcbig.shx"};
  return style;
}

void check_pieces(std::wstring_view contents) {
  MTextReader reader(contents, {});
  const wchar_t* behind = contents.data();
  for (MTextPiece piece; reader.next(piece);) {
    require(piece.source.data() >= behind && !piece.source.empty(), "pieces come in order");
    behind = piece.source.data() + piece.source.size();
    require(behind <= contents.data() + contents.size(), "pieces are parts of the contents");
    require(reader.format().height > 0.0, "characters have a height");
  }
}

void check_layout(const MTextLayout& layout) {
  std::size_t runs = 0, glyphs = 0, strokes = 0;
  for (const MTextLine& line : layout.lines) {
    require(line.first_run == runs, "lines hold the runs in order");
    runs += line.runs;
    require(std::isfinite(line.left + line.base + line.width + line.height), "lines are finite");
  }
  for (const MTextRun& run : layout.runs) {
    require(run.first_glyph == glyphs && run.first_stroke == strokes, "runs come in order");
    glyphs += run.glyphs, strokes += run.strokes;
  }
  require(runs == layout.runs.size(), "every run is of a line");
  require(glyphs == layout.glyphs.size(), "every glyph is of a run");
  require(strokes == layout.strokes.size(), "every stroke is of a run");
  for (const PlacedGlyph& g : layout.glyphs)
    require(std::isfinite(g.x + g.y + g.xx + g.xy + g.yy), "glyphs are finite");
  for (const Stroke& s : layout.strokes)
    require(std::isfinite(s.from.x + s.from.y + s.to.x + s.to.y), "strokes are finite");
}

void check_attachment(std::wstring_view contents, MTextShape shape) {
  shape.attachment = 1;
  const MTextLayout first = layout_mtext(contents, style(), shape);
  shape.attachment = 9;
  const MTextLayout last = layout_mtext(contents, style(), shape);
  require(first.lines.size() == last.lines.size(), "attachment breaks no lines");
  for (std::size_t i = 0; i < first.lines.size(); ++i)
    require(first.lines[i].source == last.lines[i].source, "attachment moves no text");
  require(first.glyphs.size() == last.glyphs.size(), "attachment hides nothing");
}

void check_line(std::wstring_view text) {
  const Face& face = face_for(style());
  const LineShape shape{.height = 2.5, .width_factor = 0.8, .oblique = 0.1};
  const LineExtent measured = measure_line(text, face, shape);
  const LineLayout layout = layout_line(text, face, shape);
  require(measured.advance == layout.advance, "a line is as long as measured");
  require(measured.ink.left == layout.ink.left && measured.ink.right == layout.ink.right &&
              measured.ink.bottom == layout.ink.bottom && measured.ink.top == layout.ink.top,
          "a line covers what was measured");
}

void check_escapes(std::wstring_view text) {
  constexpr std::wstring_view kNoEscape = L"%^\r\n\t";
  if (text.find_first_of(kNoEscape) != text.npos) return;
  std::wstring escaped, read;
  for (const wchar_t c : text) {
    if (c == L'\\' || c == L'{' || c == L'}') escaped += L'\\';
    escaped += c;
  }
  MTextReader reader(escaped, {});
  for (MTextPiece piece; reader.next(piece);) read += piece.character;
  require(read == text, "what is escaped reads as it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kHead = 2;
  if (size < kHead) return 0;
  MTextShape shape;
  shape.height = 2.5;
  shape.reference_width = data[0] % 64;
  shape.exact_spacing = (data[1] & 1) != 0;
  shape.line_spacing = 0.25 + (data[1] >> 1 & 7) / 2.0;
  shape.attachment = data[1] >> 4;
  const std::wstring text =
      cad::from_utf8({reinterpret_cast<const char*>(data) + kHead, size - kHead});
  check_pieces(text);
  check_layout(layout_mtext(text, style(), shape));
  check_attachment(text, shape);
  check_line(text);
  check_escapes(text);
  return 0;
}
