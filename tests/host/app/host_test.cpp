#include "tests/host/app/host_test.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "host/base/file.h"
#include "tests/comma_locale.h"
#include "tests/host/app/small_drawing.h"

namespace {

class Host : public WithHost {
 protected:
  Host() {
    std::string pattern = (std::filesystem::temp_directory_path() / "pipenoteXXXXXX").string();
    folder = mkdtemp(pattern.data());
    std::ofstream(path("plan.dxf"), std::ios::binary) << small_drawing();
  }
  ~Host() override { std::filesystem::remove_all(folder); }

  std::string path(const std::string& name) const { return folder + "/" + name; }
  std::string content(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string folder;
};

TEST_F(Host, SavingAnUnchangedDrawingGivesTheSameBytes) {
  auto drawing = host.open_drawing(path("plan.dxf"));
  ASSERT_TRUE(drawing);
  ASSERT_TRUE(host.save(*drawing, path("copy.dxf")));
  EXPECT_EQ(content("copy.dxf"), small_drawing());
}

TEST_F(Host, NumbersKeepTheirPointWhereOthersHaveCommas) {
  const CommaLocale locale;
  if (!locale) GTEST_SKIP() << "localedef cannot make a locale";
  given_drawing(small_drawing());
  EXPECT_EQ(eval("(list (rtos 1.5 2 2) (atof \"1.5\") (distof \"2.5\") 2.25 (angtos 0.5 0 3))"),
            "(\"1.5\" 1.5 2.5 2.25 \"298.648\")");
  EXPECT_EQ(eval("(car (assoc 10 (entmake '((0 . \"CIRCLE\") (10 1.5 0 0) (40 . 7.125)))))"), "10");
  EXPECT_EQ(eval("(assoc 40 (entget (entlast)))"), "(40 . 7.125)");
  EXPECT_NE(acDocManager->curDocument()->database()->save_bytes().find("\n7.125\n"),
            std::string::npos);
}

TEST_F(Host, SavingInPlaceKeepsTheLockAndTheBackup) {
  auto drawing = host.open_drawing(path("plan.dxf"), {.for_writing = true});
  ASSERT_TRUE(drawing);
  EXPECT_EQ(eval(*drawing, "(entdel (handent \"2C\")) 'done"), "DONE");
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(host.save(*drawing, path("plan.dxf"), true));
    const auto other = cad::FileLock::acquire(path("plan.dxf"));
    ASSERT_FALSE(other);
    EXPECT_NE(other.error().what.find("in use by another program"), std::string::npos);
  }
  EXPECT_EQ(content("plan.dxf").find("LWPOLYLINE"), std::string::npos);
}

TEST_F(Host, ADrawingInUseIsNotOpenedForWriting) {
  const auto other = cad::FileLock::acquire(path("plan.dxf"));
  ASSERT_TRUE(other);
  const auto drawing = host.open_drawing(path("plan.dxf"), {.for_writing = true});
  ASSERT_FALSE(drawing);
  EXPECT_EQ(acDocManager->documentCount(), 0);
  EXPECT_TRUE(host.open_drawing(path("plan.dxf")));
}

TEST_F(Host, AFileInUseIsNotReplaced) {
  std::ofstream(path("busy.dxf")) << "busy";
  const auto other = cad::FileLock::acquire(path("busy.dxf"));
  auto drawing = host.open_drawing(path("plan.dxf"));
  EXPECT_FALSE(host.save(*drawing, path("busy.dxf")));
  EXPECT_EQ(content("busy.dxf"), "busy");
}

TEST_F(Host, AMissingDrawingIsAnError) {
  const auto drawing = host.open_drawing(path("none.dxf"));
  ASSERT_FALSE(drawing);
  EXPECT_EQ(drawing.error().where, path("none.dxf"));
}

TEST_F(Host, TheStepLimitHoldsForEveryDrawing) {
  AcApDocument* first = host.new_drawing();
  host.set_step_limit(1000);
  AcApDocument* second = host.new_drawing();
  EXPECT_TRUE(eval(first, "(while T)").starts_with("error: "));
  EXPECT_TRUE(eval(second, "(while T)").starts_with("error: "));
  host.set_step_limit(0);
  EXPECT_EQ(eval(first, "(repeat 5000 (+ 1 1))"), "2");
}

TEST_F(Host, LispErrorsArePrintedAndAnswered) {
  host.new_drawing();
  const auto value = host.eval_string(acDocManager->curDocument(), "(car 1)\n", "-e");
  ASSERT_FALSE(value);
  EXPECT_EQ(value.error().what, "bad argument type: consp: 1");
  EXPECT_NE(printed.find("bad argument type: consp: 1"), std::string::npos);
}

TEST_F(Host, AlertsAreToldOncePerDrawing) {
  host.new_drawing();
  acdbHostApplicationServices()->alert(L"R12 holds no dictionaries");
  acdbHostApplicationServices()->alert(L"R12 holds no dictionaries");
  EXPECT_EQ(alerts.size(), 1U);
  host.new_drawing();
  acdbHostApplicationServices()->alert(L"R12 holds no dictionaries");
  EXPECT_EQ(alerts.size(), 2U);
}

TEST_F(Host, FilesAreFoundByTheirWindowsNames) {
  std::filesystem::create_directories(path("install/Sys"));
  std::ofstream(path("install/Sys/DimStyle.ini")) << "x";
  cad::host_settings().install_dir = path("install");
  EXPECT_EQ(cad::find_support_file("sys\\dimstyle.INI"), path("install/Sys/DimStyle.ini"));
  EXPECT_EQ(cad::find_support_file("sys\\none.ini"), std::nullopt);
  ASSERT_TRUE(host.open_drawing(path("plan.dxf")));
  EXPECT_EQ(cad::find_support_file("PLAN.DXF"), path("plan.dxf"));
  EXPECT_EQ(eval("(getvar \"DWGTITLED\")"), "1");
}

}  // namespace
