#include "network/text_file.h"

#include <gtest/gtest.h>

#include "network/settings_log.h"
#include "tests/network/settings_folder.h"

namespace {

using network::TextEncoding;

class TextFile : public WithSettingsFolders {
 protected:
  int read(const std::string& bytes, bool skip = true) {
    return KT::ReadTextFileToStringArray(wide(given_file("a.dat", bytes)), lines, skip, nullptr,
                                         nullptr);
  }
  CStringArray lines = {L"old"};
};

TEST_F(TextFile, LinesEndInAnyOfTheThreeWays) {
  EXPECT_EQ(read("a\r\nb\nc\rd"), 0);
  EXPECT_EQ(lines, (CStringArray{L"a", L"b", L"c", L"d"}));
  EXPECT_EQ(read("a\r\n"), 0);
  EXPECT_EQ(lines, (CStringArray{L"a"}));
}

TEST_F(TextFile, BlankLinesAndCommentsAreLeftOutOnRequest) {
  const std::string bytes = "\n; comment\n  \t\n a ; b\n\t;c\nd\n";
  EXPECT_EQ(read(bytes), 0);
  EXPECT_EQ(lines, (CStringArray{L" a ; b", L"d"}));
  EXPECT_EQ(read(bytes, false), 0);
  EXPECT_EQ(lines.size(), 6u);
}

TEST_F(TextFile, TellsTheNumbersOfTheLinesAndTheEncoding) {
  std::vector<int> numbers;
  TextEncoding encoding{};
  const CString file = wide(given_file("a.dat", "; 标高\n\na\r\n\rb"));
  EXPECT_EQ(KT::ReadTextFileToStringArray(file, lines, true, &numbers, &encoding), 0);
  EXPECT_EQ(numbers, (std::vector<int>{3, 5}));
  EXPECT_EQ(encoding, TextEncoding::kUtf8);
}

TEST_F(TextFile, ReadsEveryEncodingRight) {
  const CStringArray wanted = {L"标高 ‰"};
  for (const TextEncoding encoding : {TextEncoding::kAnsi936, TextEncoding::kUtf8})
    EXPECT_TRUE(read(network::encode_settings(wanted[0], encoding)) == 0 && lines == wanted);
  EXPECT_TRUE(read("\xEF\xBB\xBF标高 ‰\n") == 0 && lines == wanted) << "the mark is no text";
  const std::string utf16 =
      "\xFF\xFE" + network::encode_settings(L"标高 ‰\r\n", TextEncoding::kUtf16WithMark);
  EXPECT_TRUE(read(utf16) == 0 && lines == wanted);
}

TEST_F(TextFile, AnEmptyFileHasNoLines) {
  EXPECT_EQ(read(""), 0);
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(read("\xEF\xBB\xBF"), 0);
  EXPECT_TRUE(lines.empty());
}

TEST_F(TextFile, AFileThatIsNotThereGivesOneAndNoLines) {
  EXPECT_EQ(KT::ReadTextFileToStringArray(path("none.dat"), lines, true, nullptr, nullptr), 1);
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(KT::ReadTextFileToStringArray(path("install"), lines, true, nullptr, nullptr), 1);
  EXPECT_EQ(KT::ReadTextFileToStringArray(L"", lines, true, nullptr, nullptr), 1);
}

TEST_F(TextFile, ReadsBytesThatAreNoText) {
  std::string bytes;
  for (int i = 0; i < 4096; ++i) bytes += static_cast<char>(i * 7 + i / 256);
  EXPECT_EQ(read(bytes, false), 0);
  EXPECT_FALSE(lines.empty());
}

TEST_F(TextFile, TheLogIsToldHowItWentOncePerFile) {
  network::SettingsLog log;
  {
    const network::SettingsLogScope scope(log);
    read("标高");
    read("标高");
    KT::ReadTextFileToStringArray(path("none.dat"), lines, true, nullptr, nullptr);
  }
  read("a");  // nobody listens any more
  ASSERT_EQ(log.files.size(), 2u);
  EXPECT_EQ(log.files[0].path, path("a.dat"));
  EXPECT_EQ(log.files[0].encoding, L"UTF-8");
  EXPECT_EQ(log.files[0].problem, L"");
  EXPECT_EQ(log.files[1].path, path("none.dat"));
  EXPECT_EQ(log.files[1].problem, L"no such file");
}

TEST(SettingsLog, AnInnerScopeTakesOver) {
  network::SettingsLog outer, inner;
  EXPECT_EQ(network::settings_log(), nullptr);
  const network::SettingsLogScope scope(outer);
  {
    const network::SettingsLogScope inside(inner);
    EXPECT_EQ(network::settings_log(), &inner);
  }
  EXPECT_EQ(network::settings_log(), &outer);
}

}  // namespace
