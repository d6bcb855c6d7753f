#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/base/file.h"
#include "tests/host/base/temporary_folder.h"

namespace {

/// Runs once, between the moment the library has opened a file and the moment it locks it.
std::function<void()> before_locking;

}  // namespace

// In the place of the C library's, for the whole test program.
extern "C" int flock(int fd, int operation) noexcept {
  if (const auto step = std::exchange(before_locking, {})) step();
  return static_cast<int>(syscall(SYS_flock, fd, operation));
}

namespace cad {
namespace {

class FileLockTest : public TemporaryFolder {
 protected:
  /// The answer another program gets.
  std::string other_program(const std::string& file) const {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
      const Result<FileLock> lock = FileLock::acquire(file);
      const std::string answer = lock ? "granted" : lock.error().message();
      const bool told = write(ends[1], answer.data(), answer.size()) >= 0;
      _exit(told ? 0 : 1);
    }
    close(ends[1]);
    std::string answer(1000, '\0');
    const ssize_t length = read(ends[0], answer.data(), answer.size());
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    answer.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return answer;
  }

  static std::string in_use(const std::string& file) {
    return file + ": the drawing is in use by another program";
  }
};

TEST_F(FileLockTest, KeepsASecondProgramAwayUntilItEnds) {
  const std::string plan = given_file("plan.dxf", "old");
  {
    const Result<FileLock> lock = FileLock::acquire(plan);
    ASSERT_TRUE(lock);
    EXPECT_EQ(other_program(plan), in_use(plan));
  }
  EXPECT_EQ(other_program(plan), "granted");
}

TEST_F(FileLockTest, KeepsTheSameProgramFromOpeningTheDrawingTwice) {
  const std::string plan = given_file("plan.dxf", "old");
  const Result<FileLock> lock = FileLock::acquire(plan);
  ASSERT_TRUE(lock);
  const Result<FileLock> second = FileLock::acquire(plan);
  ASSERT_FALSE(second);
  EXPECT_EQ(second.error().message(), in_use(plan));
}

TEST_F(FileLockTest, OtherDrawingsAreFree) {
  const std::string plan = given_file("plan.dxf", "old");
  const Result<FileLock> lock = FileLock::acquire(plan);
  ASSERT_TRUE(lock);
  EXPECT_EQ(other_program(given_file("other.dxf", "")), "granted");
}

TEST_F(FileLockTest, AMissingDrawingCannotBeLocked) {
  const Result<FileLock> lock = FileLock::acquire(path("plan.dxf"));
  ASSERT_FALSE(lock);
  EXPECT_EQ(lock.error().message(),
            path("plan.dxf") + ": cannot be opened: No such file or directory");
}

TEST_F(FileLockTest, ADrawingThatMayOnlyBeReadCanBeLocked) {
  const std::string plan = given_file("plan.dxf", "old");
  chmod(plan.c_str(), 0444);
  const AsOrdinaryUser user;
  EXPECT_TRUE(FileLock::acquire(plan));
}

TEST_F(FileLockTest, KnowsWhenTheNameLeadsToAnotherFile) {
  const std::string plan = given_file("plan.dxf", "old");
  const Result<FileLock> lock = FileLock::acquire(plan);
  ASSERT_TRUE(lock);
  EXPECT_TRUE(lock->holds(plan));
  ASSERT_EQ(std::rename(given_file("new.dxf", "new").c_str(), plan.c_str()), 0);
  EXPECT_FALSE(lock->holds(plan));
  EXPECT_EQ(other_program(plan), "granted") << "the lock is on the file that was replaced";
}

TEST_F(FileLockTest, MovesToTheNewFileWhenTheDrawingIsSaved) {
  const std::string plan = given_file("plan.dxf", "old");
  std::optional<FileLock> lock;
  {
    Result<FileLock> acquired = FileLock::acquire(plan);
    ASSERT_TRUE(acquired);
    lock.emplace(std::move(*acquired));
  }
  for (const char* text : {"new", "newer"}) {
    Result<AtomicFile> file = AtomicFile::create(plan);
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->append(text));
    ASSERT_TRUE(file->commit(false, &*lock));
    EXPECT_TRUE(lock->holds(plan));
    EXPECT_EQ(other_program(plan), in_use(plan));
  }
  lock.reset();
  EXPECT_EQ(other_program(plan), "granted");
}

TEST_F(FileLockTest, ADrawingSavedJustBeforeItIsLockedIsLockedAnew) {
  const std::string plan = given_file("plan.dxf", "old"), fresh = given_file("new.dxf", "new");
  before_locking = [&] { ASSERT_EQ(std::rename(fresh.c_str(), plan.c_str()), 0); };
  const Result<FileLock> lock = FileLock::acquire(plan);
  ASSERT_TRUE(lock);
  EXPECT_TRUE(lock->holds(plan));
  EXPECT_EQ(other_program(plan), in_use(plan));
}

TEST_F(FileLockTest, ADrawingRemovedJustBeforeItIsLockedIsMissing) {
  const std::string plan = given_file("plan.dxf", "old");
  before_locking = [&] { ASSERT_EQ(unlink(plan.c_str()), 0); };
  const Result<FileLock> lock = FileLock::acquire(plan);
  ASSERT_FALSE(lock);
  EXPECT_EQ(lock.error().message(), plan + ": cannot be opened: No such file or directory");
}

/// Reads a number from the file and saves the next one, as soon as nobody else has it.
bool count_up(const std::string& path) {
  Result<FileLock> lock = FileLock::acquire(path);
  while (!lock) {
    usleep(100);
    lock = FileLock::acquire(path);
  }
  const Result<MappedFile> old = MappedFile::open(path);
  if (!old) return false;
  Result<AtomicFile> file = AtomicFile::create(path);
  if (!file || !file->append(std::to_string(std::stoi(std::string(old->bytes())) + 1)))
    return false;
  return static_cast<bool>(file->commit(false, &*lock));
}

TEST_F(FileLockTest, ProgramsThatTakeTurnsLoseNoSave) {
  constexpr int kPrograms = 3, kTurns = 15;
  const std::string plan = given_file("plan.dxf", "0");
  std::vector<pid_t> programs;
  for (int i = 0; i < kPrograms; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      bool fine = true;
      for (int turn = 0; turn < kTurns && fine; ++turn) fine = count_up(plan);
      _exit(fine ? 0 : 1);
    }
    programs.push_back(child);
  }
  for (const pid_t child : programs) {
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(content("plan.dxf"), std::to_string(kPrograms * kTurns));
}

}  // namespace
}  // namespace cad
