// A machine without a single font.

#include <gmock/gmock.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/base/trace.h"
#include "host/font/face.h"
#include "host/font/installed_fonts.h"
#include "host/font/line_layout.h"
#include "host/font/mtext_layout.h"

namespace {

using namespace cad::font;
using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;

class NoFonts : public testing::Environment {
 public:
  void SetUp() override {
    const std::string name = "pipenote-no-fonts-" + std::to_string(::getpid()) + ".conf";
    file_ = std::filesystem::temp_directory_path() / name;
    std::ofstream(file_) << "<?xml version=\"1.0\"?>\n<fontconfig></fontconfig>\n";
    ::setenv("FONTCONFIG_FILE", file_.c_str(), 1);
  }
  void TearDown() override { std::filesystem::remove(file_); }

 private:
  std::filesystem::path file_;
};
const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new NoFonts);

constexpr double kDigit = 0.952, kI = kDigit * 8 / 20;

LineExtent measured(std::wstring_view text, double height = 1.0) {
  return measure_line(text, face_for({.file = L"simplex.shx"}), {height});
}

TEST(MissingFonts, ThereAreNone) {
  EXPECT_EQ(InstalledFonts::instance().usual(), nullptr);
  EXPECT_EQ(InstalledFonts::instance().with_character(L'A'), nullptr);
  EXPECT_EQ(face_for({.file = L"simplex.shx"}).name(), "none");
}

TEST(MissingFonts, CharactersAreAsWideAsInTheUsualStrokeFont) {
  EXPECT_NEAR(measured(L"I0", 2.1).advance, 2.1 * (kI + kDigit), 1e-9);
  EXPECT_NEAR(measured(L"标注", 2.5).advance, 5, 1e-9);
  EXPECT_NEAR(measured(L"标", 2).advance, 2, 1e-9);
  const Face& face = face_for({.file = L"txt.shx"});
  EXPECT_NEAR(measure_line(L"0", face, {}).advance, 1.0, 1e-9);
}

TEST(MissingFonts, BoxesStandForLetters) {
  const Box small = measured(L"xg", 3).ink;
  EXPECT_NEAR(small.top, 2, 1e-9);
  EXPECT_NEAR(small.bottom, -1, 1e-9);
  EXPECT_NEAR(measured(L"H", 3).ink.top, 3, 1e-9);
  const LineLayout line = layout_line(L"A 标", face_for({}), {});
  ASSERT_THAT(line.glyphs, SizeIs(2));
  EXPECT_THAT(line.glyphs[0].glyph->outline.points, SizeIs(8));  // a frame
  EXPECT_NEAR(face_for({}).descender(), 1.0 / 3, 1e-9);
}

TEST(MissingFonts, ParagraphsBreakAsEver) {
  const MTextLayout layout = layout_mtext(L"00 00 00", {}, {.reference_width = 5});
  EXPECT_THAT(layout.lines, SizeIs(2));
}

TEST(MissingFonts, AreToldOf) {
  std::vector<std::wstring> traced;
  cad::set_trace_sink([&](std::wstring_view line) { traced.emplace_back(line); });
  face_for({.file = L"romans.shx", .big_file = L"gbcbig.shx"});
  cad::set_trace_sink({});
  EXPECT_THAT(traced, Contains(L"fonts: romans.shx -> none"));
  EXPECT_THAT(traced, Contains(L"fonts: gbcbig.shx -> none"));
}

}  // namespace
