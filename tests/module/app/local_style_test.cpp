#include "module/app/local_style.h"

#include <gtest/gtest.h>

#include "tests/network/settings_folder.h"

namespace {

/// A host whose module was loaded over an installation of this drawing standard.
class LocalStandard : public WithSettingsFolders {
 protected:
  std::string of(const std::string& standard, const std::string& arguments = "") {
    given_file("install/sys/DimStyle.ini", "[GxBz]\nLocalStyle=" + standard + "\n");
    cad::Host host;  // the end of the one before forgot the folders
    cad::host_settings().install_dir = (folder / "install").string();
    EXPECT_TRUE(host.load_module("pipenote.arx"));
    const auto value = host.eval_string(host.new_drawing(), "(getDimLocalStyle " + arguments + ")");
    return value ? cad::Host::printed(*value) : "error";
  }
};

TEST_F(LocalStandard, IsToldByItsLetters) {
  EXPECT_EQ(of("CD"), "\"CD\"");
  EXPECT_EQ(of("GB"), "\"GB\"");
  EXPECT_EQ(of("TJ"), "\"TJ\"");
  EXPECT_EQ(of("BJ"), "\"BJ\"");
}

TEST_F(LocalStandard, ThatIsUnknownCountsAsTheNationalOne) { EXPECT_EQ(of("XX"), "\"GB\""); }

TEST_F(LocalStandard, WithoutLettersIsAFailure) { EXPECT_EQ(of("LY"), "error"); }

TEST_F(LocalStandard, IsToldWhateverTheArguments) {
  EXPECT_EQ(of("BJ", "nil 1 \"GB\" '(2 3)"), "\"BJ\"");
}

}  // namespace
