#include "network/places.h"

#include <gtest/gtest.h>

#include "tests/network/settings_folder.h"

namespace {

class Places : public WithSettingsFolders {};

TEST_F(Places, TheInstallationEndsWithABackslash) {
  CString where;
  EXPECT_TRUE(KT::GetInstallDir(where));
  EXPECT_EQ(where, path("install") + L"\\");
  cad::host_settings().install_dir += "//";
  EXPECT_TRUE(KT::GetInstallDir(where));
  EXPECT_EQ(where, path("install") + L"\\");
}

TEST_F(Places, AnUnknownFolderIsTheEmptyText) {
  cad::host_settings().install_dir.clear();
  cad::host_settings().project_dir.clear();
  CString where = L"old";
  EXPECT_FALSE(KT::GetInstallDir(where));
  EXPECT_EQ(where, L"");
  where = L"old";
  EXPECT_FALSE(KT::GetWorkDir(where, true));
  EXPECT_EQ(where, L"");
}

TEST_F(Places, TheProjectHasASeparatorOnRequest) {
  CString where;
  EXPECT_TRUE(KT::GetWorkDir(where, false));
  EXPECT_EQ(where, path("project"));
  EXPECT_TRUE(KT::GetWorkDir(where, true));
  EXPECT_EQ(where, path("project") + L"\\");
}

TEST_F(Places, FilesAreFoundInAnyLetterCaseWithEitherSlash) {
  const std::string file = given_file("install/User/zdm_BZSZ.dat", "").string();
  for (const wchar_t* name : {L"User/zdm_BZSZ.dat", L"user\\zdm_bzsz.dat", L"USER\\ZDM_bzsz.DAT",
                              L"\\user//zdm_bzsz.dat"}) {
    const std::optional<std::string> found =
        network::find_settings_file(path("install") + L"\\" + name);
    ASSERT_TRUE(found) << testing::PrintToString(name);
    EXPECT_TRUE(std::filesystem::equivalent(*found, file));
  }
}

TEST_F(Places, TheExactNameGoesBeforeOthers) {
  given_file("install/A.dat", "");
  const std::string file = given_file("install/a.dat", "").string();
  EXPECT_EQ(network::find_settings_file(path("install/a.dat")), file);
}

TEST_F(Places, AFolderIsNoFile) {
  EXPECT_FALSE(network::find_settings_file(path("install")));
  EXPECT_FALSE(network::find_settings_file(path("install/none.dat")));
  EXPECT_FALSE(network::find_settings_file(path("none/none.dat")));
  EXPECT_FALSE(network::find_settings_file(L""));
}

TEST_F(Places, ARelativePathStartsAtTheCurrentFolder) {
  const std::filesystem::path at_start = std::filesystem::current_path();
  given_file("here/Sys/a.ini", "");
  given_file("install/sys/b.ini", "");
  std::filesystem::current_path(folder / "here");
  EXPECT_TRUE(network::find_settings_file(L"sys\\A.INI"));
  EXPECT_FALSE(network::find_settings_file(L"sys\\b.ini")) << "not in the installation";
  std::filesystem::current_path(at_start);
}

TEST_F(Places, ANewFileIsPlacedInTheFolderThatExists) {
  std::filesystem::create_directories(folder / "install/Sys");
  EXPECT_EQ(network::place_settings_file(path("install") + L"\\sys\\New.ini"),
            (folder / "install/Sys/New.ini").string());
  EXPECT_FALSE(network::place_settings_file(path("install") + L"\\none\\new.ini"));
  EXPECT_FALSE(network::place_settings_file(L""));
}

TEST(DefaultInstallation, IsThereAndHoldsTheSettings) {
  const std::string folder = network::default_install_dir();
  ASSERT_FALSE(folder.empty());
  for (const wchar_t* name :
       {L"sys\\DimStyle.ini", L"sys\\QrmvPz.ini", L"User\\KtGxBz.ini", L"using\\ktsysvar.ksv",
        L"using\\PipeMaterials.dat", L"Is\\gdcdpdbz.dat", L"user\\zdm_bzsz.dat", L"Is\\gdbzfsk.dat",
        L"Is\\bgbzfsk.dat"})
    EXPECT_TRUE(network::find_settings_file(cad::from_utf8(folder) + L"\\" + name))
        << testing::PrintToString(name);
}

}  // namespace
