#include "host/app/prompt/keywords.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using Match = std::optional<std::wstring>;

struct Case {
  const wchar_t* list;
  const wchar_t* typed;
  const wchar_t* keyword;  // null: none
};

class Keywords : public testing::TestWithParam<Case> {};

TEST_P(Keywords, MeansTheKeyword) {
  const Case& row = GetParam();
  const cad::Keywords keywords(row.list);
  EXPECT_EQ(keywords.match(row.typed), row.keyword ? Match(row.keyword) : Match());
}

constexpr Case kCases[] = {
    {L"Close Undo", L"C", L"Close"},
    {L"Close Undo", L"undo", L"Undo"},
    {L"Close Undo", L"Clo", L"Close"},
    {L"Close Undo", L"Closed", nullptr},
    {L"Close Undo", L"X", nullptr},
    {L"Close Undo", L"", nullptr},
    {L"LType LAyer", L"L", nullptr},
    {L"LType LAyer", L"lt", L"LType"},
    {L"LType LAyer", L"LAY", L"LAyer"},
    {L"LTYPE,LT", L"LT", L"LTYPE"},
    {L"LTYPE,LT", L"LTYP", L"LTYPE"},
    {L"LTYPE,LT", L"L", nullptr},
    {L"ON OFF", L"O", nullptr},
    {L"ON OFF", L"ON", L"ON"},
    {L"eXit ltScale", L"X", L"eXit"},
    {L"eXit ltScale", L"xit", L"eXit"},
    {L"eXit ltScale", L"exit", L"eXit"},
    {L"eXit ltScale", L"e", nullptr},
    {L"3P 2P Ttr", L"3p", L"3P"},
    {L"yes no", L"yes", L"yes"},
    {L"yes no", L"y", nullptr},
    {L"YES NO", L"Y", nullptr},
    {L"Close Undo", L"_C", L"Close"},
    {L"Fermer Annuler _Close Undo", L"F", L"Close"},
    {L"Fermer Annuler _Close Undo", L"_C", L"Close"},
    {L"Fermer Annuler _Close Undo", L"C", nullptr},
    {L"X ZAxis Z", L"Z", L"Z"},
    {L"X ZAxis Z", L"ZA", L"ZAxis"},
    {L"\u662f \u5426", L"\u662f", L"\u662f"},
};
INSTANTIATE_TEST_SUITE_P(Rows, Keywords, testing::ValuesIn(kCases));

}  // namespace
