#include "network/settings_store.h"

#include <gtest/gtest.h>

#include "network/settings_log.h"
#include "tests/network/settings_folder.h"

namespace {

class SettingsStore : public WithSettingsFolders {};

TEST_F(SettingsStore, WithoutAFileTheDefaultStandsIn) {
  EXPECT_EQ(Gx::getQrmvPz(L"Unit_Jcjsd", L"m", L"Swjcj"), L"m");
  EXPECT_EQ(Gx::getQrmvPz(L"Unit_Jcjsd", nullptr, L"Swjcj"), L"");
}

TEST_F(SettingsStore, TheProjectGoesBeforeTheInstallation) {
  given_file("install/sys/QrmvPz.ini", "[Swjcj]\nUnit_Jcjsd=mm\nHigh-CnjDown=500\n");
  EXPECT_EQ(Gx::getQrmvPz(L"Unit_Jcjsd", L"m", L"Swjcj"), L"mm");
  given_file("project/qrmvpz.INI", "[swjcj]\nunit_jcjsd=m\n");
  EXPECT_EQ(Gx::getQrmvPz(L"Unit_Jcjsd", L"x", L"Swjcj"), L"m");
  EXPECT_EQ(Gx::getQrmvPz(L"High-CnjDown", L"0.5", L"Swjcj"), L"500");
  cad::host_settings().project_dir.clear();
  EXPECT_EQ(Gx::getQrmvPz(L"Unit_Jcjsd", L"x", L"Swjcj"), L"mm");
}

TEST_F(SettingsStore, ALongValueIsWhole) {
  given_file("install/sys/QrmvPz.ini", "[a]\nk=" + std::string(1000, 'x'));
  EXPECT_EQ(Gx::getQrmvPz(L"k", L"", L"a").size(), 1000u);
}

TEST_F(SettingsStore, TheLogIsToldWhichFileDecided) {
  given_file("install/sys/QrmvPz.ini", "[a]\nk=1\n");
  network::SettingsLog log;
  const network::SettingsLogScope scope(log);
  Gx::getQrmvPz(L"k", L"0", L"a");
  Gx::getQrmvPz(L"x", L"0", L"a");
  ASSERT_EQ(log.settings.size(), 2u);
  EXPECT_EQ(log.settings[0].origin.line, 2);
  EXPECT_EQ(log.settings[0].origin.place, L"[a] k");
  EXPECT_TRUE(log.settings[1].is_default);
  ASSERT_EQ(log.files.size(), 2u);
  EXPECT_EQ(log.files[0].problem, L"no such file") << "the project's";
  EXPECT_EQ(log.files[1].problem, L"");
}

}  // namespace
