#include "host/dxf/text.h"

#include <gtest/gtest.h>

#include <cstring>

namespace cad::dxf {
namespace {

const Dialect kNew{};
const Dialect kChinese{.release = Release::kR2000, .code_page = CodePage::k936};
const Dialect kWestern{.release = Release::kR2000, .code_page = CodePage::k1252};

std::wstring decoded(std::string_view bytes, const Dialect& dialect = kNew) {
  std::wstring text;
  append_decoded(bytes, dialect, text);
  return text;
}

std::string encoded(std::wstring_view text, const Dialect& dialect = kNew) {
  std::string bytes;
  append_encoded(text, dialect, bytes);
  return bytes;
}

struct BothWays {
  const char* name;
  std::string bytes;
  std::wstring text;
  const Dialect& dialect;
};

TEST(Text, ReadsAndWritesTheseSpellings) {
  const BothWays rows[] = {
      {"nothing", "", L"", kNew},
      {"ASCII", "DN300 L=36.5", L"DN300 L=36.5", kNew},
      {"blanks", "  a  ", L"  a  ", kNew},
      {"UTF-8", "管径 DN300", L"管径 DN300", kNew},
      {"UTF-8 beyond the BMP", "\xF0\xA0\x80\x80", L"\U00020000", kNew},
      {"936", "\xB9\xDC\xBE\xB6", L"管径", kChinese},
      {"936, second byte 5C", "\x81\x5C\xD5\x5C", L"\u4E57\u8AA0", kChinese},
      {"936, second byte 5E",
       "\x81\x5E"
       "A",
       L"\u4E5B"
       L"A",
       kChinese},
      {"936, second byte 5C in front of U+0041", "\x81\x5CU+0041", L"\u4E57U+0041", kChinese},
      {"936, what it lacks", "\\U+20BF", L"\u20BF", kChinese},
      {"936, beyond the BMP", "\\U+D840\\U+DC00", L"\U00020000", kChinese},
      {"1252, what it lacks", "\\U+7BA1", L"管", kWestern},
      {"1252", "\xB0", L"\u00B0", kWestern},
      {"line feed", "a^Jb", L"a\nb", kNew},
      {"tab", "^I", L"\t", kNew},
      {"return", "^M^J", L"\r\n", kNew},
      {"caret", "2^ 3", L"2^3", kNew},
      {"caret and J", "^ J", L"^J", kNew},
      {"caret at the end", "a^ ", L"a^", kNew},
      {"caret and blank", "^  x", L"^ x", kNew},
      {"the last control character", "^_", L"\x1F", kNew},
      {"backslash", "\\P{\\H2;x}", L"\\P{\\H2;x}", kNew},
      {"two backslashes", "a\\\\b", L"a\\\\b", kNew},
      {"percent codes", "%%c300 %%176", L"%%c300 %%176", kNew},
      {"a literal escape", "\\U+005CU+0041", L"\\U+0041", kNew},
      {"a literal escape in small letters", "\\U+005Cu+00e9", L"\\u+00e9", kNew},
      {"a literal multibyte escape", "\\U+005CM+5B9DC", L"\\M+5B9DC", kNew},
      {"what only looks like an escape", "\\U+004 \\U0041 \\M+6B9DC \\X",
       L"\\U+004 \\U0041 \\M+6B9DC \\X", kNew},
      {"delete", "\x7F", L"\x7F", kNew},
      {"a byte that is no UTF-8", "a\xFFz", L"a\xDCFFz", kNew},
      {"half a UTF-8 character", "\xE7\xAE", L"\xDCE7\xDCAE", kNew},
      {"half a 936 character", "a\xB9", L"a\xDCB9", kChinese},
  };
  for (const BothWays& row : rows) {
    EXPECT_EQ(decoded(row.bytes, row.dialect), row.text) << row.name;
    EXPECT_EQ(encoded(row.text, row.dialect), row.bytes) << row.name;
  }
}

struct ReadOnly {
  const char* name;
  std::string bytes;
  std::wstring text;
  const Dialect& dialect;
};

TEST(Text, ReadsSpellingsItDoesNotWrite) {
  const ReadOnly rows[] = {
      {"an escape the page does not need", "\\U+7BA1", L"管", kNew},
      {"small hexadecimal digits", "\\U+7ba1", L"管", kNew},
      {"a small u", "\\u+7BA1", L"管", kNew},
      {"surrogates in UTF-8 files", "\\U+D840\\U+DC00", L"\U00020000", kNew},
      {"932", "\\M+18ABC", L"款", kNew},
      {"950", "\\M+2BADE", L"管", kNew},
      {"949", "\\M+3CEB7", L"\u7BA1", kNew},
      {"936", "\\M+5B9DC", L"管", kNew},
      {"936 in 1252", "\\M+5B9DCx", L"管x", kWestern},
      {"a caret without meaning", "a^b", L"a^b", kNew},
      {"a caret at the end", "a^", L"a^", kNew},
      {"a lone high surrogate", "\\U+D840x", L"\xD840x", kNew},
      {"raw control characters", "a\tb\x01", L"a\tb\x01", kNew},
  };
  for (const ReadOnly& row : rows) {
    EXPECT_EQ(decoded(row.bytes, row.dialect), row.text) << row.name;
    EXPECT_EQ(decoded(encoded(row.text, row.dialect), row.dialect), row.text) << row.name;
  }
}

// Texts end at a null in the published interface: a null made by an escape would cut them.
TEST(Text, EscapesThatNameTheNullStayAsTheyAre) {
  for (const char* bytes : {"a^@b", "a\\U+0000b", "a\\M+50041b"}) {
    const std::wstring text = decoded(bytes);
    EXPECT_EQ(text, std::wstring(bytes, bytes + std::strlen(bytes)));
    EXPECT_EQ(decoded(encoded(text)), text);
  }
}

TEST(Text, AStrayByteThatWouldJoinItsNeighbourIsWrittenAsAnEscape) {
  EXPECT_EQ(encoded(L"\xDC81 ", kChinese), "\x81 ");
  EXPECT_EQ(encoded(L"\xDC81"
                    L"A",
                    kChinese),
            "\\U+DC81A");
  EXPECT_EQ(encoded(L"\xDC81\n", kChinese), "\\U+DC81^J");
  EXPECT_EQ(encoded(L"\xDC81\u20BF", kChinese), "\\U+DC81\\U+20BF");
  for (const char* bytes : {"\\U+DC81A", "\xE8\x1C", "\\M+5B9FF"}) {
    const std::wstring text = decoded(bytes, kChinese);
    EXPECT_EQ(decoded(encoded(text, kChinese), kChinese), text) << bytes;
  }
}

TEST(Text, NumbersThatAreNoCharacterBecomeTheReplacement) {
  EXPECT_EQ(encoded(std::wstring(1, static_cast<wchar_t>(0x110000))), "\\U+FFFD");
  EXPECT_EQ(encoded(std::wstring(1, static_cast<wchar_t>(-1))), "\\U+FFFD");
}

}  // namespace
}  // namespace cad::dxf
