#include "host/base/install_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(InstalledFolder, IsFoundBesideTheLibraries) {
  for (const char* name : {"install", "fonts"}) {
    const std::string folder = cad::installed_folder(name);
    EXPECT_TRUE(std::filesystem::is_directory(folder)) << name;
  }
}

TEST(InstalledFolder, OfNothingIsEmpty) { EXPECT_EQ(cad::installed_folder("nothing"), ""); }

TEST(InstalledFolder, TheLibraryItselfIsInAFolderThatIsThere) {
  EXPECT_TRUE(std::filesystem::is_directory(cad::library_folder()));
}

}  // namespace
