#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <random>
#include <string>
#include <utility>

#include "host/base/file.h"
#include "tests/host/base/temporary_folder.h"

namespace {

bool without_hard_links = false;
bool without_kernel_copies = false;

}  // namespace

// In the place of the C library's, for the whole test program.
extern "C" int link(const char* from, const char* to) noexcept {
  if (!without_hard_links) return static_cast<int>(syscall(SYS_link, from, to));
  errno = EPERM;
  return -1;
}
extern "C" ssize_t copy_file_range(int from, off64_t* from_offset, int to, off64_t* to_offset,
                                   size_t length, unsigned flags) {
  if (!without_kernel_copies) {
    return syscall(SYS_copy_file_range, from, from_offset, to, to_offset, length, flags);
  }
  errno = EXDEV;
  return -1;
}

namespace cad {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class AtomicFileTest : public TemporaryFolder {
 protected:
  ~AtomicFileTest() override {
    without_hard_links = false;
    without_kernel_copies = false;
  }

  Status save(std::string_view name, std::string_view text, bool keep_backup = false) {
    Result<AtomicFile> file = AtomicFile::create(path(name));
    if (!file) return file.error();
    if (Status status = file->append(text); !status) return status;
    return file->commit(keep_backup);
  }

  static std::string why(const Status& status) {
    return status ? "saved" : status.error().message();
  }
};

/// No file of this program grows beyond the limit while this lives, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_limit_);
    const rlimit limit{bytes, old_limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &old_limit_);
    std::signal(SIGXFSZ, old_handler_);
  }

 private:
  rlimit old_limit_{};
  void (*old_handler_)(int);
};

TEST_F(AtomicFileTest, ReplacesTheTargetAtCommitAndNotBefore) {
  given_file("plan.dxf", "old");
  Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  ASSERT_TRUE(file->append("new "));
  ASSERT_TRUE(file->append("drawing"));
  EXPECT_EQ(content("plan.dxf"), "old");
  ASSERT_TRUE(file->commit(false));
  EXPECT_EQ(content("plan.dxf"), "new drawing");
  EXPECT_THAT(names(), ElementsAre("plan.dxf"));
}

TEST_F(AtomicFileTest, MakesATargetThatWasNotThere) {
  EXPECT_EQ(why(save("plan.dxf", "new", true)), "saved");
  EXPECT_EQ(content("plan.dxf"), "new");
  EXPECT_THAT(names(), ElementsAre("plan.dxf"));
}

TEST_F(AtomicFileTest, AnEmptyFileCanBeSaved) {
  given_file("plan.dxf", "old");
  EXPECT_EQ(why(save("plan.dxf", "")), "saved");
  EXPECT_EQ(content("plan.dxf"), "");
}

TEST_F(AtomicFileTest, DestroyedWithoutCommitLeavesTheOldFileAndNothingElse) {
  given_file("plan.dxf", "old");
  {
    Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->append(std::string(1 << 20, 'x')));
    EXPECT_EQ(names().size(), 2u) << "the temporary lies in the same folder";
  }
  EXPECT_EQ(content("plan.dxf"), "old");
  EXPECT_THAT(names(), ElementsAre("plan.dxf"));
}

TEST_F(AtomicFileTest, AProgramKilledBeforeCommitLeavesTheOldFileWhole) {
  given_file("plan.dxf", "old");
  const pid_t child = fork();
  if (child == 0) {
    Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
    if (file && file->append(std::string(1 << 20, 'x'))) raise(SIGKILL);
    _exit(1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(content("plan.dxf"), "old");
  EXPECT_EQ(why(save("plan.dxf", "new")), "saved") << "what it left is in nobody's way";
}

TEST_F(AtomicFileTest, TheTemporaryIsHiddenAndNamedAfterTheTarget) {
  const Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  ASSERT_EQ(names().size(), 1u);
  EXPECT_THAT(names()[0], testing::MatchesRegex("\\.plan\\.dxf\\.[0-9a-v]+\\.tmp"));
}

TEST_F(AtomicFileTest, ALongNameStillHasRoomForTheTemporary) {
  const std::string name = std::string(251, 'n') + ".dxf";
  EXPECT_EQ(why(save(name, "new")), "saved");
  EXPECT_EQ(content(name), "new");
}

TEST_F(AtomicFileTest, KeepsTheModeOfTheTarget) {
  given_file("plan.dxf", "old");
  for (const unsigned bits : {0600u, 0640u, 0664u, 0777u}) {
    chmod(path("plan.dxf").c_str(), bits);
    ASSERT_EQ(why(save("plan.dxf", "new")), "saved");
    EXPECT_EQ(mode("plan.dxf"), bits);
  }
}

TEST_F(AtomicFileTest, ANewFileFollowsTheUmask) {
  const mode_t old = umask(027);
  EXPECT_EQ(why(save("plan.dxf", "new")), "saved");
  umask(old);
  EXPECT_EQ(mode("plan.dxf"), 0640u);
}

TEST_F(AtomicFileTest, TheBackupIsTheFileThatWasReplaced) {
  given_file("plan.dxf", "first");
  chmod(path("plan.dxf").c_str(), 0600);
  ASSERT_EQ(why(save("plan.dxf", "second", true)), "saved");
  EXPECT_EQ(content("plan.dxf.bak"), "first");
  EXPECT_EQ(mode("plan.dxf.bak"), 0600u);
  ASSERT_EQ(why(save("plan.dxf", "third", true)), "saved");
  EXPECT_EQ(content("plan.dxf.bak"), "second");
  EXPECT_EQ(content("plan.dxf"), "third");
  EXPECT_THAT(names(), ElementsAre("plan.dxf", "plan.dxf.bak"));
}

TEST_F(AtomicFileTest, WithoutHardLinksTheBackupIsACopy) {
  given_file("plan.dxf", "first");
  chmod(path("plan.dxf").c_str(), 0640);
  without_hard_links = true;
  ASSERT_EQ(why(save("plan.dxf", "second", true)), "saved");
  ASSERT_EQ(why(save("plan.dxf", "third", true)), "saved");
  EXPECT_EQ(content("plan.dxf.bak"), "second");
  EXPECT_EQ(content("plan.dxf"), "third");
  EXPECT_THAT(names(), ElementsAre("plan.dxf", "plan.dxf.bak"));
}

TEST_F(AtomicFileTest, WhatTheKernelCannotCopyIsWritten) {
  const std::string old = std::string(100'000, 'a') + std::string(100'000, 'b');
  const Result<MappedFile> source = MappedFile::open(given_file("source.dxf", old));
  ASSERT_TRUE(source);
  without_kernel_copies = true;
  Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  ASSERT_TRUE(file->append("x"));
  ASSERT_TRUE(file->copy_range(*source, 1, 199'998));
  ASSERT_TRUE(file->commit(false));
  EXPECT_EQ(content("plan.dxf"), "x" + old.substr(1, 199'998));
}

TEST_F(AtomicFileTest, ASourceThatWasShortenedIsAnErrorNotACrash) {
  const Result<MappedFile> source =
      MappedFile::open(given_file("source.dxf", std::string(200'000, 's')));
  ASSERT_TRUE(source);
  std::filesystem::resize_file(path("source.dxf"), 0);
  Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->copy_range(*source, 0, 200'000));
  EXPECT_EQ(why(file->commit(false)),
            path("plan.dxf") + ": cannot write: the source was shortened");
}

TEST_F(AtomicFileTest, ABackupThatIsALinkToTheDrawingItselfIsNoObstacle) {
  given_file("plan.dxf", "first");
  std::filesystem::create_hard_link(path("plan.dxf"), path("plan.dxf.bak"));
  ASSERT_EQ(why(save("plan.dxf", "second", true)), "saved");
  EXPECT_EQ(content("plan.dxf.bak"), "first");
  EXPECT_EQ(content("plan.dxf"), "second");
  EXPECT_THAT(names(), ElementsAre("plan.dxf", "plan.dxf.bak"));
}

TEST_F(AtomicFileTest, WithoutABackupTheOldOneStays) {
  given_file("plan.dxf", "first");
  given_file("plan.dxf.bak", "zeroth");
  ASSERT_EQ(why(save("plan.dxf", "second", false)), "saved");
  EXPECT_EQ(content("plan.dxf.bak"), "zeroth");
}

TEST_F(AtomicFileTest, WhenNoBackupCanBeKeptTheOldFileStays) {
  given_file("plan.dxf", "old");
  std::filesystem::create_directory(path("plan.dxf.bak"));
  EXPECT_EQ(why(save("plan.dxf", "new", true)),
            path("plan.dxf") + ": cannot keep a backup: Is a directory");
  EXPECT_EQ(content("plan.dxf"), "old");
  EXPECT_THAT(names(), ElementsAre("plan.dxf", "plan.dxf.bak"));
}

TEST_F(AtomicFileTest, ALinkStaysALinkAndItsFileIsReplaced) {
  std::filesystem::create_directory(path("store"));
  given_file("store/real.dxf", "old");
  std::filesystem::create_symlink("store/real.dxf", path("plan.dxf"));
  ASSERT_EQ(why(save("plan.dxf", "new", true)), "saved");
  EXPECT_TRUE(std::filesystem::is_symlink(path("plan.dxf")));
  EXPECT_EQ(content("store/real.dxf"), "new");
  EXPECT_EQ(content("store/real.dxf.bak"), "old");
  EXPECT_THAT(names(), ElementsAre("plan.dxf", "store"));
}

TEST_F(AtomicFileTest, ALinkToNothingMakesTheFileItLeadsTo) {
  std::filesystem::create_directory(path("store"));
  std::filesystem::create_symlink("store/real.dxf", path("plan.dxf"));
  ASSERT_EQ(why(save("plan.dxf", "new")), "saved");
  EXPECT_TRUE(std::filesystem::is_symlink(path("plan.dxf")));
  EXPECT_EQ(content("store/real.dxf"), "new");
}

TEST_F(AtomicFileTest, LinksInARingAreRefused) {
  std::filesystem::create_symlink("b.dxf", path("a.dxf"));
  std::filesystem::create_symlink("a.dxf", path("b.dxf"));
  EXPECT_EQ(why(save("a.dxf", "new")),
            path("a.dxf") + ": cannot write: Too many levels of symbolic links");
}

TEST_F(AtomicFileTest, ARelativePathWritesBesideItself) {
  const auto old = std::filesystem::current_path();
  std::filesystem::current_path(folder());
  Result<AtomicFile> file = AtomicFile::create("plan.dxf");
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->append("new"));
  EXPECT_TRUE(file->commit(true));
  std::filesystem::current_path(old);
  EXPECT_EQ(content("plan.dxf"), "new");
}

TEST_F(AtomicFileTest, BadTargetsAreNamed) {
  std::filesystem::create_directory(path("folder"));
  EXPECT_EQ(why(save("folder", "x")), path("folder") + ": cannot write: Is a directory");
  EXPECT_EQ(why(save("none/plan.dxf", "x")),
            path("none/plan.dxf") + ": cannot write: No such file or directory");
  EXPECT_EQ(why(save("none/", "x")), path("none/") + ": cannot write: No such file or directory");
  EXPECT_FALSE(AtomicFile::create(""));
  EXPECT_FALSE(AtomicFile::create("/dev/full"));
  EXPECT_THAT(names(), ElementsAre("folder"));
}

TEST_F(AtomicFileTest, AFolderThatMayNotBeWrittenSaysSo) {
  given_file("plan.dxf", "old");
  chmod(path("plan.dxf").c_str(), 0666);
  chmod(folder().c_str(), 0555);
  {
    const AsOrdinaryUser user;
    EXPECT_EQ(why(save("plan.dxf", "new")), path("plan.dxf") + ": cannot write: Permission denied");
  }
  chmod(folder().c_str(), 0755);
  EXPECT_EQ(content("plan.dxf"), "old");
}

TEST_F(AtomicFileTest, AFileThatMayNotBeWrittenIsNotReplaced) {
  given_file("plan.dxf", "old");
  chmod(path("plan.dxf").c_str(), 0444);
  chmod(folder().c_str(), 0777);
  {
    const AsOrdinaryUser user;
    EXPECT_EQ(why(save("plan.dxf", "new")), path("plan.dxf") + ": cannot write: Permission denied");
  }
  EXPECT_EQ(content("plan.dxf"), "old");
  EXPECT_THAT(names(), ElementsAre("plan.dxf"));
}

TEST_F(AtomicFileTest, AFullDiskIsReportedAndTheOldFileStays) {
  given_file("plan.dxf", "old");
  {
    const FullDisk disk(100'000);
    EXPECT_EQ(why(save("plan.dxf", std::string(1 << 20, 'x'))),
              path("plan.dxf") + ": cannot write: File too large");
  }
  EXPECT_EQ(content("plan.dxf"), "old");
  EXPECT_THAT(names(), ElementsAre("plan.dxf"));
}

TEST_F(AtomicFileTest, AFullDiskIsReportedAtCommitWhenThePiecesWereSmall) {
  given_file("plan.dxf", "old");
  {
    const FullDisk disk(10);
    Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->append("more than ten bytes"));
    EXPECT_FALSE(file->commit(true));
  }
  EXPECT_EQ(content("plan.dxf"), "old");
  EXPECT_THAT(names(), ElementsAre("plan.dxf")) << "no backup of a save that failed";
}

TEST_F(AtomicFileTest, AfterAFailureNothingCanBeCommitted) {
  given_file("plan.dxf", "old");
  Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  std::string first;
  {
    const FullDisk disk(100'000);
    first = why(file->append(std::string(1 << 20, 'x')));
  }
  EXPECT_NE(first, "saved");
  EXPECT_EQ(why(file->append("y")), first);
  EXPECT_EQ(why(file->commit(false)), first);
  EXPECT_EQ(content("plan.dxf"), "old");
}

TEST_F(AtomicFileTest, AFullDiskWhileCopyingASpanIsReported) {
  const Result<MappedFile> source =
      MappedFile::open(given_file("source.dxf", std::string(1 << 20, 's')));
  ASSERT_TRUE(source);
  const FullDisk disk(200'000);
  Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->copy_range(*source, 0, 1 << 20));
  EXPECT_EQ(why(file->commit(false)), path("plan.dxf") + ": cannot write: File too large");
}

TEST_F(AtomicFileTest, PiecesOfEverySizeArriveInOrder) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::string text(3 << 20, '\0');
  for (char& c : text) c = static_cast<char>(random());
  const Result<MappedFile> source = MappedFile::open(given_file("source.dxf", text));
  ASSERT_TRUE(source);

  constexpr std::size_t kSizes[] = {0, 1, 7, 1000, 65535, 65536, 70000, 262144, 262145, 400000};
  std::string expected;
  Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  std::size_t follows = 0;  // where the last span ended
  for (int i = 0; i < 60; ++i) {
    const std::size_t size = kSizes[random() % std::size(kSizes)];
    const bool joined = random() % 2 == 0 && follows + size <= text.size();
    const std::size_t offset = joined ? follows : random() % (text.size() - size);
    const std::string_view piece = std::string_view(text).substr(offset, size);
    if (random() % 3 == 0) {
      ASSERT_TRUE(file->append(piece));
    } else {
      ASSERT_TRUE(file->copy_range(*source, offset, size));
      follows = offset + size;
    }
    expected += piece;
  }
  ASSERT_TRUE(file->commit(false));
  EXPECT_TRUE(content("plan.dxf") == expected);
}

TEST_F(AtomicFileTest, AListOfPiecesIsAppendedAsOne) {
  Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  const std::string large(300'000, 'L');
  const std::array<std::string_view, 4> pieces{"  0\n", "", large, "EOF\n"};
  ASSERT_TRUE(file->append(pieces));
  ASSERT_TRUE(file->commit(false));
  EXPECT_EQ(content("plan.dxf"), "  0\n" + large + "EOF\n");
}

TEST_F(AtomicFileTest, ADrawingIsSavedOntoTheFileItIsMappedFrom) {
  const std::string old = std::string(100'000, 'a') + "label" + std::string(100'000, 'b');
  const Result<MappedFile> source = MappedFile::open(given_file("plan.dxf", old));
  ASSERT_TRUE(source);
  Result<AtomicFile> file = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(file);
  ASSERT_TRUE(file->copy_range(*source, 0, 100'000));
  ASSERT_TRUE(file->append("LABEL"));
  ASSERT_TRUE(file->copy_range(*source, 100'005, 100'000));
  ASSERT_TRUE(file->commit(true));
  EXPECT_EQ(content("plan.dxf"), std::string(100'000, 'a') + "LABEL" + std::string(100'000, 'b'));
  EXPECT_EQ(source->bytes(), old) << "the mapping is of the old file";
}

TEST_F(AtomicFileTest, AMovedFileIsCommittedByItsNewOwner) {
  Result<AtomicFile> created = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(created);
  AtomicFile file = std::move(*created);
  ASSERT_TRUE(file.append("new"));
  ASSERT_TRUE(file.commit(false));
  EXPECT_EQ(content("plan.dxf"), "new");
}

TEST_F(AtomicFileTest, AssigningAnotherGivesUpTheFirst) {
  Result<AtomicFile> first = AtomicFile::create(path("first.dxf"));
  Result<AtomicFile> second = AtomicFile::create(path("second.dxf"));
  ASSERT_TRUE(first && second);
  ASSERT_TRUE(second->append("two"));
  *first = std::move(*second);
  ASSERT_TRUE(first->commit(false));
  EXPECT_THAT(names(), ElementsAre("second.dxf"));
}

TEST_F(AtomicFileTest, TwoWritersOfOneTargetDoNotMix) {
  Result<AtomicFile> first = AtomicFile::create(path("plan.dxf"));
  Result<AtomicFile> second = AtomicFile::create(path("plan.dxf"));
  ASSERT_TRUE(first && second);
  ASSERT_TRUE(first->append("first"));
  ASSERT_TRUE(second->append("second"));
  ASSERT_TRUE(second->commit(false));
  ASSERT_TRUE(first->commit(false));
  EXPECT_EQ(content("plan.dxf"), "first");
  EXPECT_THAT(names(), ElementsAre("plan.dxf"));
}

}  // namespace
}  // namespace cad
