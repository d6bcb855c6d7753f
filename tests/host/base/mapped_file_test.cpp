#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>

#include "host/base/file.h"
#include "tests/host/base/temporary_folder.h"

namespace cad {
namespace {

using std::string_literals::operator""s;

class MappedFileTest : public TemporaryFolder {};

std::string why(const Result<MappedFile>& file) { return file ? "opened" : file.error().message(); }

TEST_F(MappedFileTest, ShowsAllBytes) {
  const std::string text = "0\r\nSECTION\r\n\0end"s + std::string(100000, 'x');
  const Result<MappedFile> file = MappedFile::open(given_file("plan.dxf", text));
  ASSERT_TRUE(file);
  EXPECT_EQ(file->bytes(), text);
}

TEST_F(MappedFileTest, AnEmptyFileIsEmpty) {
  const Result<MappedFile> file = MappedFile::open(given_file("plan.dxf", ""));
  ASSERT_TRUE(file) << why(file);
  EXPECT_TRUE(file->bytes().empty());
}

TEST_F(MappedFileTest, AMissingFileIsNamed) {
  EXPECT_EQ(why(MappedFile::open(path("plan.dxf"))),
            path("plan.dxf") + ": cannot be opened: No such file or directory");
}

TEST_F(MappedFileTest, AFolderIsNoFile) {
  EXPECT_EQ(why(MappedFile::open(folder())), folder() + ": cannot be opened: Is a directory");
}

TEST_F(MappedFileTest, APipeIsNoFileAndIsNotWaitedFor) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0666), 0);
  EXPECT_EQ(why(MappedFile::open(path("pipe"))),
            path("pipe") + ": cannot be opened: Not a regular file");
}

TEST_F(MappedFileTest, AFileNobodyMayReadSaysSo) {
  const std::string secret = given_file("plan.dxf", "secret");
  chmod(secret.c_str(), 0000);
  const AsOrdinaryUser user;
  EXPECT_EQ(why(MappedFile::open(secret)), secret + ": cannot be opened: Permission denied");
}

TEST_F(MappedFileTest, TheViewSurvivesMovingTheFile) {
  Result<MappedFile> opened = MappedFile::open(given_file("plan.dxf", "first"));
  ASSERT_TRUE(opened);
  const std::string_view view = opened->bytes();
  MappedFile file = std::move(*opened);
  EXPECT_EQ(file.bytes().data(), view.data());
  EXPECT_EQ(view, "first");

  Result<MappedFile> second = MappedFile::open(given_file("other.dxf", "second"));
  ASSERT_TRUE(second);
  file = std::move(*second);
  EXPECT_EQ(file.bytes(), "second");
  EXPECT_TRUE(second->bytes().empty());
}

TEST_F(MappedFileTest, TheViewSurvivesRemovingTheFile) {
  const Result<MappedFile> file = MappedFile::open(given_file("plan.dxf", "old"));
  ASSERT_TRUE(file);
  unlink(path("plan.dxf").c_str());
  EXPECT_EQ(file->bytes(), "old");
}

}  // namespace
}  // namespace cad
