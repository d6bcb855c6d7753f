#include "host/base/quoted.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Quoted, AShortTextIsShownAsItIs) {
  EXPECT_EQ(cad::quoted("P 12"), "\"P 12\"");
  EXPECT_EQ(cad::quoted(""), "\"\"");
  EXPECT_EQ(cad::quoted(std::string(40, 'x')), '"' + std::string(40, 'x') + '"');
}

TEST(Quoted, ALongTextIsCut) {
  EXPECT_EQ(cad::quoted(std::string(1 << 20, 'x')), '"' + std::string(40, 'x') + "...\"");
}

TEST(Quoted, ACharacterIsNotCutThrough) {
  EXPECT_EQ(cad::excerpt(std::string(39, 'x') + "管道"), std::string(39, 'x') + "...");
  EXPECT_EQ(cad::excerpt(std::string(37, 'x') + "管道"), std::string(37, 'x') + "管...");
}

TEST(Quoted, BytesThatAreNoUtf8AreStillCut) {
  EXPECT_EQ(cad::excerpt(std::string(100, '\x80')).size(), 37 + 3);
}

TEST(Quoted, ControlCharactersKeepOffTheTerminal) {
  EXPECT_EQ(cad::quoted("a\x1B[31m\r\nb\x7F"), "\"a?[31m??b?\"");
}

}  // namespace
