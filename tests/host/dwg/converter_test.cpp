#include "host/dwg/converter.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// Converters of our own making stand in for the real one.
class DwgConverter : public testing::Test {
 protected:
  DwgConverter() {
    folder_ = fs::temp_directory_path() / ("dwg_test_" + std::to_string(::getpid()));
    fs::create_directories(folder_ / "bin");
    fs::create_directories(folder_ / "tmp");
    set("PATH", (folder_ / "bin").string());
    set("TMPDIR", (folder_ / "tmp").string());
    set("XDG_DATA_HOME", (folder_ / "data").string());
    set("XDG_DATA_DIRS", (folder_ / "shared").string());
    drawing_ = file("plan drawing.dwg", "AC1027 and so on");
  }
  ~DwgConverter() override {
    for (const auto& [name, value] : before_) {
      if (value.empty()) {
        ::unsetenv(name.c_str());
      } else {
        ::setenv(name.c_str(), value.c_str(), 1);
      }
    }
    fs::remove_all(folder_);
  }

  void set(const char* name, const std::string& value) {
    const char* const old = std::getenv(name);
    before_.emplace(name, old ? old : "");
    ::setenv(name, value.c_str(), 1);
  }
  std::string file(const std::string& name, std::string_view bytes) {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
    return (folder_ / name).string();
  }
  /// A program on the PATH: $3 is the DXF file, $4 the DWG file, as dwg2dxf is called.
  void given_program(const std::string& name, const std::string& lines) {
    const std::string path = file("bin/" + name, "#!/bin/sh\n" + lines);
    fs::permissions(path, fs::perms::owner_all);
  }
  void given_converter(const std::string& lines) { given_program("dwg2dxf", lines); }

  std::string converted(const cad::dwg::Limits& limits = {}) {
    const auto result = cad::dwg::to_dxf(drawing_, limits);
    EXPECT_TRUE(fs::is_empty(folder_ / "tmp")) << "temporary files are left";
    return result ? std::string(result->dxf.bytes()) : result.error().message();
  }
  std::string message(const std::string& what) {
    return drawing_ + ": is a DWG file (R2013)" + what;
  }

  fs::path folder_;
  std::string drawing_;

 private:
  std::map<std::string, std::string> before_;
};

TEST_F(DwgConverter, FilesAreKnownByTheirContents) {
  EXPECT_TRUE(cad::dwg::is_dwg("AC1032 and so on"));
  EXPECT_TRUE(cad::dwg::is_dwg("AC1.50"));
  EXPECT_FALSE(cad::dwg::is_dwg("AC10"));
  EXPECT_FALSE(cad::dwg::is_dwg("ACADEMY of arts"));
  EXPECT_FALSE(cad::dwg::is_dwg("  0\nSECTION\n"));
  EXPECT_TRUE(cad::dwg::is_dwg_file(drawing_));
  EXPECT_FALSE(cad::dwg::is_dwg_file(file("plan.dxf", "  0\nSECTION\n")));
  EXPECT_FALSE(cad::dwg::is_dwg_file(folder_.string()));
  EXPECT_FALSE(cad::dwg::is_dwg_file("/nowhere/plan.dwg"));
  EXPECT_EQ(cad::dwg::release_name("AC1015"), "R2000");
  EXPECT_EQ(cad::dwg::release_name("AC1099 x"), "AC1099");
}

TEST_F(DwgConverter, WithoutOneTheErrorSaysWhatToInstall) {
  EXPECT_EQ(converted(),
            message("; reading DWG files needs a converter: run script/setup --dwg, or put dwg2dxf "
                    "of LibreDWG on the PATH; or save the drawing as DXF"));
}

TEST_F(DwgConverter, TheProgramOnThePathGetsBothFiles) {
  given_converter(
      "[ \"$1\" = -y ] && [ \"$2\" = -o ] && [ $# = 4 ] || exit 9\n"
      "/bin/cat \"$4\" \"$4\" > \"$3\"\necho chatter\necho more >&2\n");
  EXPECT_EQ(converted(), "AC1027 and so onAC1027 and so on");
}

TEST_F(DwgConverter, NodeRunsTheLibrary) {
  given_program("node", "[ \"$1\" = --liftoff-only ] || exit 9\necho \"$2 $3\" > \"$5\"\n");
  const fs::path data = folder_ / "data/pipenote/dwg";
  const fs::path library = data / "node_modules/@mlightcad/libredwg-web";
  fs::create_directories(library);
  EXPECT_THAT(converted(), HasSubstr("run script/setup --dwg"));
  std::ofstream(library / "package.json") << "{}";
  std::ofstream(data / "dwg_to_dxf.mjs") << "";
  EXPECT_EQ(converted(), (data / "dwg_to_dxf.mjs").string() + " " + library.string() + "\n");
  fs::remove(folder_ / "bin/node");
  EXPECT_EQ(converted(), message("; Node (node) is needed to read DWG files: install it"));
}

TEST_F(DwgConverter, AFailureShowsTheLastLineOfTheConverter) {
  given_converter("echo first >&2\necho 'ERROR: no such section' >&2\necho >&2\nexit 1\n");
  EXPECT_EQ(converted(), message(", but its converter dwg2dxf failed: ERROR: no such section"));
  given_converter("exit 3\n");
  EXPECT_EQ(converted(), message(", but its converter dwg2dxf failed with status 3"));
  given_converter("kill -SEGV $$\n");
  EXPECT_THAT(converted(), HasSubstr("failed: Segmentation fault"));
  given_converter(
      "i=0; while [ $i -lt 3000 ]; do echo xxxxxxxxxxxxxxxx; i=$((i+1)); done >&2\n"
      "printf 'a\\tb%0300d' 7 >&2; exit 1\n");
  EXPECT_EQ(converted().size(), message(", but its converter dwg2dxf failed: ").size() + 200);
}

TEST_F(DwgConverter, ASlowConverterIsStoppedWithAllItStarted) {
  given_converter("/bin/sleep 600 & echo $! > '" + (folder_ / "child").string() +
                  "'\n/bin/sleep 600\n");
  cad::dwg::Limits limits;
  limits.time = 900ms;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(converted(limits),
            message(", but its converter dwg2dxf took more than 900 ms and was stopped"));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 60s);
  pid_t child = 0;
  std::ifstream(folder_ / "child") >> child;
  if (child == 0) GTEST_SKIP() << "the machine was too busy to start the program in time";
  // Whoever inherits the killed process may take a moment to bury it.
  std::string state = "?";
  for (int i = 0; i < 200 && !state.empty() && state != "Z"; ++i) {
    std::this_thread::sleep_for(10ms);
    std::ifstream in("/proc/" + std::to_string(child) + "/stat");
    std::string word;
    state.clear();
    if (in >> word >> word) in >> state;
  }
  EXPECT_TRUE(state.empty() || state == "Z") << state;
}

TEST_F(DwgConverter, HugeOutputIsCutOff) {
  cad::dwg::Limits limits;
  limits.file_bytes = 1 << 16;
  given_converter("exec /bin/cat /dev/zero > \"$3\"\n");
  EXPECT_EQ(converted(limits), message(", but its converter dwg2dxf wrote more than 65536 bytes"));
  given_converter("/bin/cat /dev/zero > \"$3\"\nexit 1\n");
  EXPECT_THAT(converted(limits), StartsWith(message(", but its converter dwg2dxf failed")));
}

TEST_F(DwgConverter, NoOutputIsAFailure) {
  for (const char* lines : {"exit 0\n", ": > \"$3\"\n", "/bin/mkdir \"$3\"\n"}) {
    given_converter(lines);
    EXPECT_EQ(converted(), message(", but its converter dwg2dxf wrote nothing"));
  }
}

TEST_F(DwgConverter, NamesReachTheConverterAsTheyAre) {
  given_converter("printf '%s' \"$4\" > \"$3\"\n");
  drawing_ = file("a;$(touch x) 'b' -o.dwg", "AC1015");
  EXPECT_THAT(converted(), EndsWith("/a;$(touch x) 'b' -o.dwg"));
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  drawing_ = "plan drawing.dwg";
  EXPECT_EQ(converted(), (fs::canonical(folder_) / "plan drawing.dwg").string());
  fs::current_path(before);
}

TEST_F(DwgConverter, WhatCannotBeOpenedSaysSo) {
  drawing_ = "/nowhere/plan.dwg";
  EXPECT_EQ(converted(), "/nowhere/plan.dwg: cannot be opened: No such file or directory");
  drawing_ = file("plan.dwg", "AC1027");
  fs::remove_all(folder_ / "tmp");
  given_converter("exit 0\n");
  const auto result = cad::dwg::to_dxf(drawing_);
  ASSERT_FALSE(result);
  EXPECT_THAT(result.error().message(), HasSubstr("no temporary folder can be made"));
}

}  // namespace
