#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "host/app/system/settings_store.h"
#include "tests/host/app/host_test.h"

namespace {

namespace fs = std::filesystem;

/// A user's folder of settings of its own.
class Settings : public WithHost {
 protected:
  Settings() {
    char name[] = "/tmp/settings-XXXXXX";
    folder = ::mkdtemp(name);
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    host.new_drawing();
  }
  ~Settings() override {
    ::unsetenv("XDG_CONFIG_HOME");
    fs::remove_all(folder);
  }
  std::string file() const { return folder + "/pipenote/lisp-settings"; }
  std::string content() const {
    std::ifstream in(file(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void given_content(const std::string& text) {
    fs::create_directories(folder + "/pipenote");
    std::ofstream(file(), std::ios::binary) << text;
  }

  std::string folder;
};

TEST_F(Settings, AreMadeOnTheFirstWrite) {
  EXPECT_EQ(eval("(getcfg \"AppData/Tools/Scale\")"), "nil");
  EXPECT_FALSE(fs::exists(file()));
  EXPECT_EQ(eval("(setcfg \"AppData/Tools/Scale\" \"500\")"), "\"500\"");
  EXPECT_EQ(content(), "[AppData\\Tools]\n\"Scale\"=\"500\"\n");
  EXPECT_EQ(eval("(getcfg \"appdata/tools/scale\")"), "\"500\"");
}

TEST_F(Settings, OfProgramsLieBelowAppData) {
  EXPECT_EQ(eval("(setcfg \"Other/Tools/Scale\" \"500\")"), "nil");
  EXPECT_EQ(eval("(setcfg \"AppData/Scale\" \"500\")"), "nil");
  EXPECT_EQ(eval("(getcfg \"CfgData/Menu\")"), "nil");
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(Settings, RegistryValuesAreTextsAndIntegers) {
  const std::string key = "\"HKEY_CURRENT_USER\\\\Software\\\\Tools\"";
  EXPECT_EQ(eval("(vl-registry-read " + key + " \"Size\")"), "nil");
  EXPECT_EQ(eval("(vl-registry-write " + key + " \"Size\" 7)"), "7");
  EXPECT_EQ(eval("(vl-registry-write " + key + " \"Name\" \"a \\\"b\\\" \\\\ \\n 管\")"),
            "\"a \\\"b\\\" \\\\ \\n 管\"");
  EXPECT_EQ(eval("(vl-registry-write " + key + " nil \"default\")"), "\"default\"");
  EXPECT_EQ(eval("(vl-registry-read " + key + " \"size\")"), "7");
  EXPECT_EQ(eval("(vl-registry-read " + key + " \"Name\")"), "\"a \\\"b\\\" \\\\ \\n 管\"");
  EXPECT_EQ(eval("(vl-registry-read " + key + ")"), "\"default\"");
  EXPECT_EQ(eval("(vl-registry-write " + key + " \"Real\" 1.5)"),
            "error: bad argument type: stringp: 1.5");
}

TEST_F(Settings, RegistryKeysAreListedAndRemoved) {
  eval("(vl-registry-write \"HKEY_CURRENT_USER\\\\A\\\\B\\\\C\" \"x\" 1)");
  eval("(vl-registry-write \"HKEY_CURRENT_USER\\\\A\\\\D\" \"y\" 2)");
  eval("(vl-registry-write \"HKEY_CURRENT_USER\\\\A\\\\D\" \"z\" 3)");
  eval("(vl-registry-write \"HKEY_CURRENT_USER\\\\Alone\")");
  EXPECT_EQ(eval("(vl-registry-descendents \"HKEY_CURRENT_USER\\\\A\")"), "(\"B\" \"D\")");
  EXPECT_EQ(eval("(vl-registry-descendents \"HKEY_CURRENT_USER\\\\A\\\\D\" T)"), "(\"y\" \"z\")");
  EXPECT_EQ(eval("(vl-registry-descendents \"HKEY_CURRENT_USER\\\\A\\\\D\")"), "nil");
  EXPECT_EQ(eval("(vl-registry-delete \"HKEY_CURRENT_USER\\\\A\\\\D\" \"y\")"), "T");
  EXPECT_EQ(eval("(vl-registry-delete \"HKEY_CURRENT_USER\\\\A\\\\D\" \"y\")"), "nil");
  EXPECT_EQ(eval("(vl-registry-delete \"HKEY_CURRENT_USER\\\\A\\\\B\")"), "nil");
  EXPECT_EQ(eval("(vl-registry-delete \"HKEY_CURRENT_USER\\\\A\\\\D\")"), "T");
  EXPECT_EQ(eval("(vl-registry-descendents \"HKEY_CURRENT_USER\")"), "(\"A\" \"Alone\")");
}

TEST_F(Settings, ThatCannotBeReadAreToldAndKept) {
  const std::string damaged = "[AppData\\Tools]\nScale=500\n";
  given_content(damaged);
  const std::string message = eval("(getcfg \"AppData/Tools/Scale\")");
  EXPECT_EQ(message,
            "error: getcfg: " + file() +
                ":2: is no setting: [key], \"name\"=\"text\" or \"name\"=number is expected");
  eval("(setcfg \"AppData/Tools/Scale\" \"1\")");
  EXPECT_EQ(content(), damaged);
}

TEST_F(Settings, ReadBackWhatTheyWrote) {
  cad::SettingsStore store;
  store.set(L"A\\b", L"", std::wstring(L"d\r\n"));
  store.set(L"A/b", L"]=\"@", -5);
  store.set_key(L"Empty");
  ASSERT_TRUE(store.write(file()));
  const auto again = cad::SettingsStore::read(file());
  ASSERT_TRUE(again) << again.error().message();
  EXPECT_EQ(std::get<std::wstring>(*again->find(L"a\\B", L"")), L"d\r\n");
  EXPECT_EQ(std::get<std::int32_t>(*again->find(L"a\\B", L"]=\"@")), -5);
  EXPECT_TRUE(again->has_key(L"empty"));
  EXPECT_TRUE(again->has_key(L"A"));
  EXPECT_FALSE(again->has_key(L"B"));
}

TEST_F(Settings, EnvironmentVariablesAreOfTheProcess) {
  ::setenv("PN_TEST_VALUE", "outside", 1);
  EXPECT_EQ(eval("(getenv \"PN_TEST_VALUE\")"), "\"outside\"");
  EXPECT_EQ(eval("(setenv \"PN_TEST_VALUE\" \"inside\")"), "\"inside\"");
  EXPECT_EQ(eval("(getenv \"PN_TEST_VALUE\")"), "\"inside\"");
  EXPECT_STREQ(::getenv("PN_TEST_VALUE"), "outside");
  EXPECT_EQ(eval("(getenv \"PN_TEST_NONE\")"), "nil");
  EXPECT_EQ(eval("(= (type (getenv \"TEMP\")) 'STR)"), "T");
  ::unsetenv("PN_TEST_VALUE");
}

}  // namespace
