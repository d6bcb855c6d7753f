#include "host/base/write_behind.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace cad {
namespace {

class WrittenBehind : public testing::Test {
 protected:
  WrittenBehind() : file_(::mkstemp(path_)) {}
  ~WrittenBehind() override {
    ::close(file_);
    ::unlink(path_);
  }
  std::string content() const {
    std::ifstream in(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  char path_[32] = "/tmp/written_behind_XXXXXX";
  int file_;
};

std::string piece_of(int number) {
  return std::string(1000 + static_cast<std::size_t>(number), static_cast<char>('a' + number % 26));
}

TEST_F(WrittenBehind, PiecesArriveInTheirOrder) {
  std::string expected;
  WriteBehind behind(file_);
  for (int i = 0; i < 500; ++i) {
    std::string piece = piece_of(i);
    expected += piece;
    ASSERT_EQ(behind.write(piece), 0);
    ASSERT_TRUE(piece.empty());
  }
  ASSERT_EQ(behind.wait(), 0);
  EXPECT_TRUE(content() == expected);
}

TEST_F(WrittenBehind, WhatWasTakenIsWrittenAtTheLatestAtTheEnd) {
  std::string expected;
  {
    WriteBehind behind(file_);
    for (int i = 0; i < 30; ++i) {
      std::string piece = piece_of(i);
      expected += piece;
      behind.write(piece);
    }
  }
  EXPECT_TRUE(content() == expected);
}

TEST_F(WrittenBehind, AFewPiecesAreWrittenAtOnce) {
  WriteBehind behind(file_);
  std::string piece = "first";
  behind.write(piece);
  EXPECT_EQ(content(), "first");
}

TEST_F(WrittenBehind, ManyMegabytesArriveWhole) {
  std::string expected;
  WriteBehind behind(file_);
  for (int i = 0; i < 100; ++i) {
    std::string piece(256 * 1024, static_cast<char>('a' + i % 26));
    expected += piece;
    ASSERT_EQ(behind.write(piece), 0);
  }
  ASSERT_EQ(behind.wait(), 0);
  EXPECT_TRUE(content() == expected);
}

TEST(WriteBehindFailure, IsAnsweredByEveryLaterCall) {
  const int full = ::open("/dev/full", O_WRONLY);
  ASSERT_GE(full, 0);
  {
    WriteBehind behind(full);
    std::string piece = "text";
    EXPECT_EQ(behind.write(piece), ENOSPC);
    piece = "text";
    EXPECT_EQ(behind.write(piece), ENOSPC);
    EXPECT_EQ(behind.wait(), ENOSPC);
  }
  ::close(full);
}

TEST(WriteBehindFailure, OfThePieceOnItsWayIsAnsweredLater) {
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_NONBLOCK), 0);
  {
    WriteBehind behind(ends[1]);
    int error = 0;
    for (int i = 0; i < 200 && error == 0; ++i) {  // until the pipe holds no more
      std::string piece(4096, 'x');
      error = behind.write(piece);
    }
    EXPECT_EQ(error, EAGAIN);
    EXPECT_EQ(behind.wait(), EAGAIN);
  }
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
}  // namespace cad
