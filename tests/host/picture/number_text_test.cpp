#include "host/picture/number_text.h"

#include <gtest/gtest.h>

namespace {

std::string thousandths(long long value) {
  std::string out;
  cad::picture::append_thousandths(value, out);
  return out;
}

std::string factor(double value) {
  std::string out;
  cad::picture::append_factor(value, out);
  return out;
}

TEST(NumberText, ThousandthsAreAsShortAsCanBe) {
  EXPECT_EQ(thousandths(0), "0");
  EXPECT_EQ(thousandths(1000), "1");
  EXPECT_EQ(thousandths(-1000), "-1");
  EXPECT_EQ(thousandths(12500), "12.5");
  EXPECT_EQ(thousandths(250), ".25");
  EXPECT_EQ(thousandths(-1), "-.001");
  EXPECT_EQ(thousandths(100001), "100.001");
  EXPECT_EQ(thousandths(10010), "10.01");
}

TEST(NumberText, FactorsHaveSixDigitsAndNoExponent) {
  EXPECT_EQ(factor(0.0), "0");
  EXPECT_EQ(factor(1.0), "1");
  EXPECT_EQ(factor(-0.00123456789), "-0.00123457");
  EXPECT_EQ(factor(1234567.0), "1234567");
  EXPECT_EQ(factor(0.5), "0.5");
}

TEST(NumberText, PixelsFarOutsideStayNumbers) {
  std::string out;
  cad::picture::append_pixels(1e300, out);
  EXPECT_EQ(out, "1000000000");
}

}  // namespace
