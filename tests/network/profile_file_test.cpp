#include "network/profile_file.h"

#include <gtest/gtest.h>

#include "network/settings_log.h"
#include "tests/network/settings_folder.h"

namespace {

using network::ProfileFile;
using network::TextEncoding;

/// The value of [s] k.
std::wstring value(const std::string& bytes, const wchar_t* key = L"k") {
  const std::optional<ProfileFile::Value> found = ProfileFile(bytes).find(L"s", key);
  return found ? found->text : L"(none)";
}

struct Row {
  const char* bytes;
  const wchar_t* value;
};

TEST(ProfileFile, SectionsAndKeysMatchInAnyLetterCase) {
  EXPECT_EQ(value("[S]\nK=1\n"), L"1");
  EXPECT_EQ(value("[s]\nk=1\n"), L"1");
  EXPECT_EQ(ProfileFile("[管]\nk=1").find(L"管", L"K")->text, L"1");
}

TEST(ProfileFile, TheFirstSectionAndTheFirstKeyCount) {
  EXPECT_EQ(value("[s]\na=1\n[t]\n[s]\nk=2\n"), L"(none)");
  EXPECT_EQ(value("[s]\nk=1\nK=2\n"), L"1");
}

TEST(ProfileFile, BlanksRoundNamesAndValuesAreDropped) {
  EXPECT_EQ(value(" \t[ s\t]\n \tk \t= \t1 2\t \n"), L"1 2");
}

TEST(ProfileFile, OnePairOfQuotesRoundAValueIsDropped) {
  for (const Row& row :
       {Row{"[s]\nk=\"a b\"", L"a b"}, Row{"[s]\nk='a'", L"a"}, Row{"[s]\nk=\"'a'\"", L"'a'"},
        Row{"[s]\nk=\"\"a\"\"", L"\"a\""}, Row{"[s]\nk=\"  a  \"", L"  a  "},
        Row{"[s]\nk=\"a", L"\"a"}, Row{"[s]\nk=\"a'", L"\"a'"}, Row{"[s]\nk=\"", L"\""},
        Row{"[s]\nk=\"\"", L""}, Row{"[s]\nk=(\"a\" \"b\")", L"(\"a\" \"b\")"}}) {
    EXPECT_EQ(value(row.bytes), row.value) << row.bytes;
  }
  EXPECT_EQ(value("[s]\n\"k\"=1\n"), L"(none)") << "not round keys";
  EXPECT_EQ(value("[\"s\"]\nk=1\n"), L"(none)") << "nor sections";
}

TEST(ProfileFile, ACommentIsALineThatBeginsWithASemicolon) {
  EXPECT_EQ(value("[s]\n;k=1\n"), L"(none)");
  EXPECT_EQ(value("[s]\n  ;k=1\n"), L"(none)");
  EXPECT_EQ(value("[s]\nk=1;2\n"), L"1;2");
  EXPECT_EQ(value("[s]\n#k=1\n", L"#k"), L"1") << "\"#\" begins no comment";
}

TEST(ProfileFile, HeadersMayBeOddlyWritten) {
  EXPECT_EQ(value("[s] ; behind\nk=1\n"), L"1");
  EXPECT_EQ(value("[s\nk=1\n"), L"1");
  EXPECT_EQ(value("k=0\n[s]\nk=1\n"), L"1");
  EXPECT_FALSE(ProfileFile("k=0\n").find(L"", L"k"));
}

TEST(ProfileFile, AnEmptyValueIsThere) {
  EXPECT_EQ(value("[s]\nk=\n"), L"");
  EXPECT_EQ(value("[s]\nk\n"), L"(none)");
  EXPECT_EQ(value("[s]\n=1\n", L""), L"(none)");
  EXPECT_EQ(value("[s]\nk==1\n"), L"=1");
}

TEST(ProfileFile, TellsTheLine) {
  EXPECT_EQ(ProfileFile("; one\r\n\r\n[s]\r\nk=1").find(L"s", L"k")->line, 4);
  EXPECT_EQ(ProfileFile("[s]\rk=1").find(L"s", L"k")->line, 2);
}

TEST(ProfileFile, ReadsEveryEncodingRight) {
  const std::wstring text = L"[GxBz]\r\n图层=管{管类型}‰\r\n";
  for (const TextEncoding encoding : {TextEncoding::kAnsi936, TextEncoding::kUtf8}) {
    const ProfileFile file(network::encode_settings(text, encoding));
    EXPECT_EQ(file.encoding(), encoding);
    EXPECT_EQ(file.find(L"gxbz", L"图层")->text, L"管{管类型}‰");
  }
  EXPECT_EQ(ProfileFile("\xEF\xBB\xBF[s]\nk=标高").find(L"s", L"k")->text, L"标高")
      << "the mark does not spoil the first line";
  const std::string utf16 =
      "\xFF\xFE" + network::encode_settings(text, TextEncoding::kUtf16WithMark);
  EXPECT_EQ(ProfileFile(utf16).find(L"GxBz", L"图层")->text, L"管{管类型}‰");
}

/// The bytes after one call.
template <class Change>
std::string changed(const std::string& bytes, Change&& change) {
  ProfileFile file(bytes);
  change(file);
  return file.bytes();
}

std::string after_set(const std::string& bytes, const wchar_t* value = L"9") {
  return changed(bytes, [=](ProfileFile& file) { file.set(L"s", L"k", value); });
}

TEST(ProfileFile, AnUnchangedFileKeepsItsBytes) {
  for (const std::string& bytes :
       {std::string("\xEF\xBB\xBF[s]\n\rk = 1\r\n\n;c"), std::string("\xFF\xFE[\0s\0]\0\n\0x", 9),
        std::string("\0\xFF[[=]\x81", 6), std::string()})
    EXPECT_EQ(ProfileFile(bytes).bytes(), bytes);
}

TEST(ProfileFile, WritingKeepsSpellingPositionAndEveryOtherByte) {
  EXPECT_EQ(after_set(" [S] x\n; c\n K = \"1\"\n\nj=2"), " [S] x\n; c\nK=9\r\n\nj=2");
  EXPECT_EQ(after_set("[s]\nk=1"), "[s]\nk=9\r\n");
}

TEST(ProfileFile, AValueIsWrittenAsGiven) {
  EXPECT_EQ(after_set("[s]\nk=1\n", L" a b "), "[s]\nk= a b \r\n");
  EXPECT_EQ(after_set("[s]\nk=1\n", L"\"a\""), "[s]\nk=\"a\"\r\n");
}

TEST(ProfileFile, ANewKeyGoesToTheEndOfItsSection) {
  EXPECT_EQ(after_set("[s]\r\na=1\r\n\r\n[t]\r\n"), "[s]\r\na=1\r\nk=9\r\n\r\n[t]\r\n");
  EXPECT_EQ(after_set("[s]"), "[s]\r\nk=9\r\n");
  EXPECT_EQ(after_set("[s]\n\n"), "[s]\nk=9\r\n\n");
  EXPECT_EQ(after_set("[s]\na=1"), "[s]\na=1\r\nk=9\r\n");
}

TEST(ProfileFile, ANewSectionGoesToTheEndOfTheFile) {
  EXPECT_EQ(after_set(""), "[s]\r\nk=9\r\n");
  EXPECT_EQ(after_set("[t]\nk=1"), "[t]\nk=1\r\n[s]\r\nk=9\r\n");
  EXPECT_EQ(after_set("\xEF\xBB\xBF"), "\xEF\xBB\xBF[s]\r\nk=9\r\n");
}

TEST(ProfileFile, TheEncodingOfTheFileIsKept) {
  EXPECT_EQ(after_set("[s]\nk=1\n", L"标"), "[s]\nk=\xB1\xEA\r\n") << "plain ASCII is 936";
  EXPECT_EQ(after_set("; 标\n[s]\nk=1\n", L"标"), "; 标\n[s]\nk=标\r\n");
  EXPECT_EQ(after_set("\xEF\xBB\xBF[s]\nk=1", L"标"), "\xEF\xBB\xBF[s]\nk=标\r\n");
  const auto utf16 = [](const std::wstring& text) {
    return "\xFF\xFE" + network::encode_settings(text, TextEncoding::kUtf16WithMark);
  };
  EXPECT_EQ(after_set(utf16(L"[s]\nk=1"), L"标"), utf16(L"[s]\nk=标\r\n"));
  EXPECT_EQ(after_set(utf16(L"[s]\na=1"), L"标"), utf16(L"[s]\na=1\r\nk=标\r\n"));
  EXPECT_EQ(after_set(utf16(L"[s]\na=1") + "x", L"标"), utf16(L"[s]\na=1\r\nk=标\r\n"))
      << "half a unit at the end cannot stay in front of more text";
  EXPECT_EQ(after_set("[s]\nk=1\n", L"\U0001F600"), "[s]\nk=?\r\n");
}

TEST(ProfileFile, RemovingAKeyTakesItsLine) {
  EXPECT_EQ(changed("[s]\na=1\nk=2\nb=3", [](ProfileFile& f) { f.remove_key(L"S", L"K"); }),
            "[s]\na=1\nb=3");
  EXPECT_EQ(changed("[s]\na=1", [](ProfileFile& f) { f.remove_key(L"s", L"k"); }), "[s]\na=1");
  EXPECT_EQ(changed("[t]\nk=1", [](ProfileFile& f) { f.remove_key(L"s", L"k"); }), "[t]\nk=1");
}

TEST(ProfileFile, RemovingASectionLeavesItsComments) {
  EXPECT_EQ(changed("[r]\nx=1\n[s]\n; c\na=1\n\nb=2\n[t]\nk=1\n",
                    [](ProfileFile& f) { f.remove_section(L"S"); }),
            "[r]\nx=1\n; c\n\n[t]\nk=1\n");
  EXPECT_EQ(changed("[r]\n", [](ProfileFile& f) { f.remove_section(L"s"); }), "[r]\n");
}

class ProfileStrings : public WithSettingsFolders {
 protected:
  std::wstring get(const wchar_t* key, const wchar_t* default_text, unsigned size = 260) const {
    std::vector<wchar_t> buffer(size, L'#');
    const unsigned length = GetPrivateProfileStringW(L"s", key, default_text, buffer.data(), size,
                                                     path("a.ini").c_str());
    return {buffer.data(), length};
  }
  int set(const wchar_t* section, const wchar_t* key, const wchar_t* value) const {
    return WritePrivateProfileStringW(section, key, value, path("a.ini").c_str());
  }
};

TEST_F(ProfileStrings, WhatIsMissingGivesTheDefaultWithoutTrailingBlanks) {
  EXPECT_EQ(get(L"k", L" d \t"), L" d");
  given_file("a.ini", "[t]\nk=1\n");
  EXPECT_EQ(get(L"k", L"d"), L"d");
  given_file("a.ini", "[s]\nj=1\n");
  EXPECT_EQ(get(L"k", L"d"), L"d");
  EXPECT_EQ(get(L"k", nullptr), L"");
}

TEST_F(ProfileStrings, AnEmptyKeyIsNotMissing) {
  given_file("a.ini", "[s]\nk=\n");
  EXPECT_EQ(get(L"k", L"d"), L"");
}

TEST_F(ProfileStrings, AreCutAtTheBuffer) {
  given_file("a.ini", "[s]\nk=123456\n");
  EXPECT_EQ(get(L"k", L"", 4), L"123");
  EXPECT_EQ(get(L"x", L"abcdef", 4), L"abc");
  EXPECT_EQ(get(L"k", L"", 1), L"");
  EXPECT_EQ(get(L"k", L"", 7), L"123456");
  EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"", nullptr, 10, path("a.ini").c_str()), 0u);
}

TEST_F(ProfileStrings, CountTheHostsUnits) {
  given_file("a.ini", "[s]\nk=标\U00020000\U00020000x\n");
  EXPECT_EQ(get(L"k", L"", 5), L"标\U00020000");
  EXPECT_EQ(get(L"k", L"", 7), L"标\U00020000\U00020000x");
}

TEST_F(ProfileStrings, EndAtANull) {
  given_file("a.ini", std::string("[s]\nk=ab\0cd\n", 12));
  EXPECT_EQ(get(L"k", L""), L"ab");
}

TEST_F(ProfileStrings, ListNamesForANullKeyOrSection) {
  given_file("a.ini", "[s]\na=1\nb=2\n[t]\n");
  const CString file = path("a.ini");
  wchar_t buffer[16];
  EXPECT_EQ(GetPrivateProfileStringW(L"s", nullptr, L"", buffer, 16, file.c_str()), 4u);
  EXPECT_EQ(std::wstring(buffer, 5), std::wstring(L"a\0b\0\0", 5));
  EXPECT_EQ(GetPrivateProfileStringW(nullptr, nullptr, L"", buffer, 16, file.c_str()), 4u);
  EXPECT_EQ(std::wstring(buffer, 5), std::wstring(L"s\0t\0\0", 5));
  EXPECT_EQ(GetPrivateProfileStringW(L"s", nullptr, L"", buffer, 4, file.c_str()), 2u);
  EXPECT_EQ(std::wstring(buffer, 4), std::wstring(L"a\0\0\0", 4));
}

TEST_F(ProfileStrings, AreWrittenAndReadBack) {
  EXPECT_NE(set(L"s", L"k", L"标高"), 0);
  EXPECT_EQ(content("a.ini"), "[s]\r\nk=\xB1\xEA\xB8\xDF\r\n") << "a new file is of page 936";
  EXPECT_EQ(get(L"k", L""), L"标高");
  EXPECT_NE(set(L"s", L"k", nullptr), 0);
  EXPECT_EQ(content("a.ini"), "[s]\r\n");
  EXPECT_NE(set(L"s", nullptr, nullptr), 0);
  EXPECT_EQ(content("a.ini"), "");
  EXPECT_EQ(set(nullptr, nullptr, nullptr), 0);
}

TEST_F(ProfileStrings, AreWrittenIntoTheFileOfAnotherSpelling) {
  given_file("A.ini", "[s]\nk=1\n");
  EXPECT_NE(set(L"s", L"k", L"2"), 0);
  EXPECT_EQ(content("A.ini"), "[s]\nk=2\r\n");
  EXPECT_FALSE(std::filesystem::exists(folder / "a.ini"));
}

TEST_F(ProfileStrings, CannotBeWrittenWhereThereIsNoFolder) {
  EXPECT_EQ(WritePrivateProfileStringW(L"s", L"k", L"1", path("none/a.ini").c_str()), 0);
  EXPECT_EQ(WritePrivateProfileStringW(L"s", L"k", L"1", path("install").c_str()), 0);
  EXPECT_EQ(WritePrivateProfileStringW(L"s", L"k", L"1", nullptr), 0);
}

TEST_F(ProfileStrings, TheLogIsToldFileLineAndKey) {
  given_file("a.ini", "; c\n[S]\nk=1\n");
  network::SettingsLog log;
  const network::SettingsLogScope scope(log);
  get(L"k", L"d");
  get(L"x", L"d");
  ASSERT_EQ(log.settings.size(), 2u);
  EXPECT_EQ(log.settings[0].name, L"k");
  EXPECT_EQ(log.settings[0].value, L"1");
  EXPECT_EQ(log.settings[0].origin.file, path("a.ini"));
  EXPECT_EQ(log.settings[0].origin.line, 3);
  EXPECT_EQ(log.settings[0].origin.place, L"[s] k");
  EXPECT_FALSE(log.settings[0].is_default);
  EXPECT_EQ(log.settings[1].value, L"d");
  EXPECT_EQ(log.settings[1].origin.line, 0);
  EXPECT_TRUE(log.settings[1].is_default);
  EXPECT_EQ(log.files.size(), 1u);
}

}  // namespace
