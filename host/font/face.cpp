#include "host/font/face.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/trace.h"
#include "host/font/characters.h"
#include "host/font/font_table.h"
#include "host/font/source.h"

namespace cad::font {
namespace {

std::vector<Replacement>& all_replacements() {
  static auto& list = *new std::vector<Replacement>;
  return list;
}

/// A font as a drawing names it, and what draws it here.
struct Found {
  std::wstring wanted;
  const InstalledFont* font = nullptr;
  const FontFile* file = nullptr;
  double digit = 0.0;
  double full = 0.0;
};

struct Wish {
  std::wstring name;
  bool bold = false;
  bool italic = false;
};

/// Whether the font could be opened.
bool take(Found& found, const InstalledFont* font, bool bold, bool italic) {
  if (!font) return false;
  found.font = font;
  found.file = FontFile::of(*font, bold, italic);
  return found.file != nullptr;
}

bool take_row(Found& found, const Substitute* row, const Wish& wish) {
  if (!row) return false;
  found.digit = row->digit, found.full = row->full;
  return std::any_of(row->families.begin(), row->families.end(), [&](Family family) {
    family.bold |= wish.bold;
    family.italic |= wish.italic;
    return take(found, InstalledFonts::instance().of_family(family), family.bold, family.italic);
  });
}

/// The font itself, when it is installed.
bool take_itself(Found& found, const Wish& wish) {
  const InstalledFonts& fonts = InstalledFonts::instance();
  const std::string name = to_utf8(wish.name);
  const bool itself =
      take(found, fonts.of_file(name), wish.bold, wish.italic) ||
      take(found, fonts.of_family({name, wish.bold, wish.italic}), wish.bold, wish.italic);
  if (itself) found.digit = found.full = 0.0;
  return itself;
}

Found find(const Wish& wish) {
  Found found{wish.name};
  const Substitute* const own = find_substitute(user_table(), wish.name);
  if (take_row(found, own, wish) || take_itself(found, wish)) return found;
  const Substitute* const row = find_substitute(installed_table(), wish.name);
  if (take_row(found, row, wish)) return found;
  take(found, InstalledFonts::instance().usual(), wish.bold, wish.italic);
  return found;
}

void note_replacement(const Found& found) {
  if (found.wanted.empty()) return;
  const std::string used = found.file ? found.font->name() : "none";
  if (found.file) {
    const std::string wanted = to_utf8(found.wanted);
    const auto is_wanted = [&](const std::string& name) { return equal_no_case(name, wanted); };
    const std::string& path = found.font->path;
    if (std::any_of(found.font->families.begin(), found.font->families.end(), is_wanted) ||
        is_wanted(path.substr(path.rfind('/') + 1)))
      return;
  }
  for (const Replacement& each : all_replacements())
    if (each.used == used && equal_no_case(each.wanted, found.wanted)) return;
  all_replacements().push_back({found.wanted, used});
  if (tracing()) trace(L"fonts: " + describe(all_replacements().back()));
}

/// Without folder; a name without extension is that of a single-stroke font.
std::wstring file_name(std::wstring_view file) {
  std::wstring name(file.substr(file.find_last_of(L"/\\") + 1));
  if (!name.empty() && name.find(L'.') == name.npos) name += L".shx";
  return name;
}

std::unique_ptr<Face> make_face(const FontStyle& style) {
  constexpr std::wstring_view kUnnamed = L".shx";  // what the table's last rows are for
  Wish wish{style.typeface, style.bold, style.italic};
  if (wish.name.empty()) wish.name = file_name(style.file);
  const bool unnamed = wish.name.empty();
  if (unnamed) wish.name = kUnnamed;
  Found main = find(wish);
  if (unnamed) main.wanted.clear();
  note_replacement(main);

  Source::Parts parts{main.wanted, main.file,  nullptr,     main.digit,
                      main.full,   style.bold, style.italic};
  if (!style.big_file.empty()) {
    const Found big = find({file_name(style.big_file), style.bold, style.italic});
    note_replacement(big);
    parts.big = big.file;
    if (big.full > 0.0) parts.full = big.full;
  }
  return std::make_unique<Face>(std::make_unique<Source>(std::move(parts)),
                                main.file ? main.font->name() : "none");
}

}  // namespace

Face::Face(std::unique_ptr<Source> source, std::string name)
    : source_(std::move(source)), name_(std::move(name)), pages_(kCharacters / kPageSize) {
  const double below = -glyph(L'p').ink.bottom;
  descender_ = below > 0.0 ? below : kStrokeDescender;
}

Face::~Face() = default;

const Glyph& Face::make(std::uint32_t code) const {
  if (code >= kCharacters) code = 0xFFFD;
  std::unique_ptr<Page>& page = pages_[code / kPageSize];
  if (!page) page = std::make_unique<Page>();
  std::unique_ptr<const Glyph>& glyph = page->glyphs[code % kPageSize];
  if (!glyph) glyph = std::make_unique<const Glyph>(source_->draw(code));
  return *glyph;
}

const Face& face_for(const FontStyle& style) {
  static auto& faces = *new std::unordered_map<std::wstring, std::unique_ptr<Face>>;
  thread_local std::wstring key;  // kept: its memory is used again
  key.assign(style.typeface.empty() ? style.file : style.typeface);
  key += style.typeface.empty() ? L'\0' : L'\1';
  key += style.big_file;
  key += static_cast<wchar_t>(L'0' + (style.bold ? 1 : 0) + (style.italic ? 2 : 0));
  std::unique_ptr<Face>& face = faces[key];
  if (!face) face = make_face(style);
  return *face;
}

const std::vector<Replacement>& replacements() { return all_replacements(); }

std::wstring describe(const Replacement& replacement) {
  return replacement.wanted + L" -> " + from_utf8(replacement.used);
}

}  // namespace cad::font
