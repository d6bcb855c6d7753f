// A table of the user's own, named in the environment from the start of the program on.

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/font/face.h"
#include "host/font/installed_fonts.h"

namespace {

using namespace cad::font;

class OwnTable : public testing::Environment {
 public:
  void SetUp() override {
    const std::string name = "pipenote-own-fonts-" + std::to_string(::getpid()) + ".txt";
    file_ = std::filesystem::temp_directory_path() / name;
    const InstalledFont* const usual = InstalledFonts::instance().usual();
    if (!usual) GTEST_SKIP() << "no fonts are installed";
    // The last row takes an installed font's own name away from it.
    std::ofstream(file_) << "simplex.shx | nobody has this, " << usual->name() << " | 2.0 | 3.0\n"
                         << usual->name() << " | " << usual->name() << " | 1.5 | -\n";
    ::setenv("PIPENOTE_FONTS", file_.c_str(), 1);
  }
  void TearDown() override { std::filesystem::remove(file_); }

 private:
  std::filesystem::path file_;
};
const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new OwnTable);

TEST(UserTable, GoesBeforeTheInstalledOne) {
  const Face& face = face_for({.file = L"SIMPLEX.SHX"});
  EXPECT_NEAR(face.glyph(L'0').advance, 2.0, 1e-9);
  EXPECT_NEAR(face.glyph(L'标').advance, 3.0, 1e-9);
  EXPECT_EQ(face.name(), InstalledFonts::instance().usual()->name());
}

TEST(UserTable, GoesBeforeTheFontItself) {
  const std::string& name = InstalledFonts::instance().usual()->name();
  const Face& face = face_for({.typeface = std::wstring(name.begin(), name.end())});
  EXPECT_NEAR(face.glyph(L'0').advance, 1.5, 1e-9);
}

TEST(UserTable, LeavesOtherFontsToTheInstalledOne) {
  EXPECT_NEAR(face_for({.file = L"txt.shx"}).glyph(L'0').advance, 1.0, 1e-9);
}

}  // namespace
