#include "host/base/fold.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace cad {
namespace {

TEST(Fold, LatinLettersAreEqualInEitherCase) {
  EXPECT_TRUE(equal_no_case(L"PIPE_LEN", L"pipe_Len"));
  EXPECT_TRUE(equal_no_case("AcDbText", "ACDBTEXT"));
}

TEST(Fold, AHashedTableFindsNamesByViewInEitherCase) {
  std::unordered_map<std::wstring, int, HashNoCase, EqualNoCase> names;
  names.emplace(L"Standard", 1);
  names.emplace(L"管线", 2);
  EXPECT_FALSE(names.emplace(L"STANDARD", 3).second);
  const auto found = [&](std::wstring_view name) {
    const auto at = names.find(name);
    return at == names.end() ? 0 : at->second;
  };
  EXPECT_EQ(found(L"sTANDARD"), 1);
  EXPECT_EQ(found(L"管线"), 2);
  EXPECT_EQ(found(L"Standar"), 0);
  EXPECT_EQ(found(L"Standard "), 0);
}

TEST(Fold, NothingElseIsFolded) {
  EXPECT_FALSE(equal_no_case(L"É", L"é"));
  EXPECT_FALSE(equal_no_case(L"Ａ", L"ａ"));  // full width
  EXPECT_FALSE(equal_no_case(L"Ж", L"ж"));
  EXPECT_TRUE(equal_no_case(L"管径A", L"管径a"));
  EXPECT_EQ(fold_ascii(L'@'), L'@');
  EXPECT_EQ(fold_ascii(L'['), L'[');
  EXPECT_EQ(fold_ascii('Z'), 'z');
}

TEST(Fold, OrderIsThatOfTheFoldedCharacters) {
  EXPECT_LT(compare_no_case(L"ALPHA", L"beta"), 0);
  EXPECT_GT(compare_no_case(L"b", L"ALPHA"), 0);
  EXPECT_EQ(compare_no_case(L"Dn", L"dN"), 0);
  EXPECT_GT(compare_no_case(L"a", L"_"), 0) << "folding is to lower case";
  EXPECT_GT(compare_no_case("\xC4", "z"), 0) << "bytes count as unsigned";
}

TEST(Fold, APrefixComesBeforeTheLongerText) {
  EXPECT_LT(compare_no_case(L"pipe", L"PIPE_LEN"), 0);
  EXPECT_GT(compare_no_case(L"PIPE_LEN", L"pipe"), 0);
  EXPECT_LT(compare_no_case(L"", L"a"), 0);
  EXPECT_EQ(compare_no_case(L"", L""), 0);
  EXPECT_FALSE(equal_no_case(L"pipe", L"pipe_len"));
}

TEST(Fold, AMapByFoldedKeyFindsEitherSpelling) {
  std::map<std::wstring, int, LessNoCase> layers{{L"ZY-Label", 1}};
  EXPECT_NE(layers.find(std::wstring_view(L"zy-LABEL")), layers.end());
  EXPECT_EQ(layers.find(std::wstring_view(L"ZY")), layers.end());
}

TEST(Fold, FoldedTextKeepsItsLength) {
  EXPECT_EQ(folded(L"ZY-标注"), L"zy-标注");
  EXPECT_EQ(folded("ANSI_936"), "ansi_936");
}

}  // namespace
}  // namespace cad
