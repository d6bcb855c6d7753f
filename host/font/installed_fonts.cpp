#include "host/font/installed_fonts.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstdlib>
#include <tuple>

#include "host/base/fold.h"

namespace cad::font {
namespace {

struct Release {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  void operator()(FcObjectSet* set) const { FcObjectSetDestroy(set); }
  void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
  void operator()(FcCharSet* set) const { FcCharSetDestroy(set); }
};
template <class T>
using Held = std::unique_ptr<T, Release>;

int integer(const FcPattern* pattern, const char* object, int absent) {
  double value = 0.0;  // fontconfig turns integers into it; a range has no one value
  return FcPatternGetDouble(pattern, object, 0, &value) == FcResultMatch ? static_cast<int>(value)
                                                                         : absent;
}

bool is_true(const FcPattern* pattern, const char* object) {
  FcBool value = FcFalse;
  return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch && value == FcTrue;
}

bool read(const FcPattern* pattern, InstalledFont& font) {
  FcChar8* text = nullptr;
  if (!is_true(pattern, FC_OUTLINE) || is_true(pattern, FC_COLOR)) return false;
  if (FcPatternGetString(pattern, FC_FILE, 0, &text) != FcResultMatch) return false;
  font.path = reinterpret_cast<const char*>(text);
  FcPatternGetInteger(pattern, FC_INDEX, 0, &font.index);
  for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &text) == FcResultMatch; ++i)
    font.families.emplace_back(reinterpret_cast<const char*>(text));
  font.weight = integer(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR);
  font.slanted = integer(pattern, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN;
  font.condensed = integer(pattern, FC_WIDTH, FC_WIDTH_NORMAL) != FC_WIDTH_NORMAL;
  return !font.families.empty();
}

std::string_view file_name(std::string_view path) { return path.substr(path.rfind('/') + 1); }

}  // namespace

struct InstalledFonts::Coverage {
  const InstalledFont* font;
  Held<FcCharSet> characters;
};

InstalledFonts::InstalledFonts() {
  const Held<FcPattern> any(FcPatternCreate());
  const Held<FcObjectSet> wanted(FcObjectSetBuild(FC_FILE, FC_INDEX, FC_FAMILY, FC_WEIGHT, FC_SLANT,
                                                  FC_WIDTH, FC_OUTLINE, FC_COLOR, nullptr));
  if (const Held<FcFontSet> list(FcFontList(nullptr, any.get(), wanted.get())); list) {
    for (int i = 0; i < list->nfont; ++i)
      if (InstalledFont font; read(list->fonts[i], font)) fonts_.push_back(std::move(font));
  }
  // Fontconfig promises no order; who comes first decides between equals.
  std::sort(fonts_.begin(), fonts_.end(), [](const InstalledFont& a, const InstalledFont& b) {
    return std::tie(a.path, a.index) < std::tie(b.path, b.index);
  });

  // The usual font and the substitutes of a character: a Chinese reader's choice, in any locale.
  FcPatternAddString(any.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>("sans-serif"));
  FcPatternAddString(any.get(), FC_LANG, reinterpret_cast<const FcChar8*>("zh-cn"));
  FcConfigSubstitute(nullptr, any.get(), FcMatchPattern);
  FcDefaultSubstitute(any.get());
  FcResult result = FcResultMatch;
  const Held<FcFontSet> sorted(FcFontSort(nullptr, any.get(), FcFalse, nullptr, &result));
  for (int i = 0; sorted && i < sorted->nfont; ++i) {
    InstalledFont font;
    FcCharSet* characters = nullptr;
    if (!read(sorted->fonts[i], font) ||
        FcPatternGetCharSet(sorted->fonts[i], FC_CHARSET, 0, &characters) != FcResultMatch)
      continue;
    const auto known = std::find_if(fonts_.begin(), fonts_.end(), [&](const InstalledFont& each) {
      return each.path == font.path && each.index == font.index;
    });
    if (known == fonts_.end()) continue;
    by_preference_.push_back({&*known, Held<FcCharSet>(FcCharSetCopy(characters))});
  }
}

const InstalledFonts& InstalledFonts::instance() {
  static const InstalledFonts* const instance = new InstalledFonts;
  return *instance;
}

const InstalledFont* InstalledFonts::of_family(const Family& family) const {
  const InstalledFont* best = nullptr;
  int best_distance = 0;
  for (const InstalledFont& font : fonts_) {
    const bool named =
        std::any_of(font.families.begin(), font.families.end(), [&](const std::string& name) {
          return equal_no_case(name, std::string_view(family.name));
        });
    if (!named) continue;
    constexpr int kOtherSlant = 1000, kOtherWidth = 10'000;
    const int weight = family.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR;
    const int distance = std::abs(font.weight - weight) +
                         (font.slanted != family.italic ? kOtherSlant : 0) +
                         (font.condensed ? kOtherWidth : 0);
    if (!best || distance < best_distance) best = &font, best_distance = distance;
  }
  return best;
}

const InstalledFont* InstalledFonts::of_file(std::string_view name) const {
  for (const InstalledFont& font : fonts_)
    if (equal_no_case(file_name(font.path), name)) return &font;
  return nullptr;
}

const InstalledFont* InstalledFonts::with_character(std::uint32_t character) const {
  for (const Coverage& each : by_preference_)
    if (FcCharSetHasChar(each.characters.get(), character)) return each.font;
  return nullptr;
}

const InstalledFont* InstalledFonts::usual() const {
  return by_preference_.empty() ? nullptr : by_preference_.front().font;
}

}  // namespace cad::font
