#include "network/variable_file.h"

#include <gtest/gtest.h>

#include "network/places.h"
#include "network/settings_log.h"
#include "tests/network/settings_folder.h"

namespace {

using network::find_variable;
using network::variable_record;
using network::VariableFile;

/// A record of raw bytes, filled up with `fill`.
std::string raw_record(std::string name, std::string value, char fill = '\0') {
  name.resize(32, fill);
  value.resize(128, fill);
  return name + value;
}

class Variables : public WithSettingsFolders {
 protected:
  std::optional<CString> find(const std::string& bytes, const wchar_t* name) const {
    return find_variable(wide(given_file("ktsysvar.ksv", bytes)), name);
  }
};

TEST_F(Variables, TheFirstRecordOfTheNameCounts) {
  const std::string bytes =
      *variable_record(L"A", L"1") + *variable_record(L"B", L"2") + *variable_record(L"B", L"3");
  EXPECT_EQ(find(bytes, L"A"), L"1");
  EXPECT_EQ(find(bytes, L"B"), L"2");
  EXPECT_EQ(find(bytes, L"C"), std::nullopt);
}

TEST_F(Variables, LetterCaseCounts) {
  EXPECT_EQ(find(*variable_record(L"Pln", L"1"), L"PLN"), std::nullopt);
}

TEST_F(Variables, AreChineseInPage936) {
  EXPECT_EQ(find(*variable_record(L"桩号", L"K 0‰"), L"桩号"), L"K 0‰");
  EXPECT_EQ(find(raw_record("桩号", "里程", '\0'), L"桩号"), L"里程") << "UTF-8 reads too";
}

TEST_F(Variables, WhatFollowsTheNullIsNobodysText) {
  std::string bytes = raw_record(std::string("A\0", 2), std::string("1\0", 2), '\xCD');
  EXPECT_EQ(find(bytes, L"A"), L"1");
  bytes = raw_record(std::string("A\0", 2), std::string("里程\0", 7), '\xCD');
  EXPECT_EQ(find(bytes, L"A"), L"里程") << "nor does it decide the encoding";
}

TEST_F(Variables, ANameLongerThan31BytesNeverMatches) {
  const std::string name32(32, 'N');
  const std::string name31(31, 'N');
  EXPECT_EQ(find(raw_record(name32, "1"), std::wstring(32, L'N').c_str()), std::nullopt);
  EXPECT_EQ(find(raw_record(name32, "1"), std::wstring(31, L'N').c_str()), std::nullopt);
  EXPECT_EQ(find(raw_record(name31, "1"), std::wstring(31, L'N').c_str()), L"1");
}

TEST_F(Variables, AValueHasAtMost127Characters) {
  EXPECT_EQ(find(raw_record("A", std::string(128, 'x')), L"A"), std::wstring(127, L'x'));
}

TEST_F(Variables, AFileCutAnywhereIsReadUpToItsEnd) {
  const std::string bytes = *variable_record(L"A", L"123") + *variable_record(L"B", L"456");
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    VariableFile file(bytes.substr(0, size));
    int records = 0;
    while (file.next()) ++records;
    EXPECT_EQ(records, static_cast<int>((size + 159) / 160)) << size;
    EXPECT_EQ(file.number(), records);
  }
  EXPECT_EQ(find(bytes.substr(0, 34), L"A"), L"12");
  EXPECT_EQ(find(bytes.substr(0, 20), L"A"), L"");
  EXPECT_EQ(find(bytes.substr(0, 1), L"A"), L"") << "with nulls for the rest of its name";
}

TEST_F(Variables, AFileThatCannotBeReadHasNone) {
  EXPECT_EQ(find_variable(path("none.ksv"), L"A"), std::nullopt);
  EXPECT_EQ(find_variable(path("install"), L"A"), std::nullopt);
  EXPECT_EQ(find("", L"A"), std::nullopt);
}

TEST_F(Variables, TheLogIsToldTheRecord) {
  network::SettingsLog log;
  const network::SettingsLogScope scope(log);
  find(*variable_record(L"A", L"1") + *variable_record(L"B", L"2"), L"B");
  find_variable(path("none.ksv"), L"B");
  ASSERT_EQ(log.settings.size(), 2u);
  EXPECT_EQ(log.settings[0].origin.place, L"record 2");
  EXPECT_EQ(log.settings[0].value, L"2");
  EXPECT_FALSE(log.settings[0].is_default);
  EXPECT_TRUE(log.settings[1].is_default);
  ASSERT_EQ(log.files.size(), 2u);
  EXPECT_EQ(log.files[0].encoding, L"records");
  EXPECT_EQ(log.files[1].problem, L"no such file");
}

TEST(VariableRecord, TakesWhatFitsItsFields) {
  EXPECT_EQ(variable_record(L"A", L"1")->size(), 160u);
  EXPECT_TRUE(variable_record(std::wstring(31, L'n'), std::wstring(127, L'v')));
  EXPECT_FALSE(variable_record(std::wstring(32, L'n'), L""));
  EXPECT_FALSE(variable_record(L"A", std::wstring(128, L'v')));
  EXPECT_FALSE(variable_record(std::wstring(16, L'桩'), L"")) << "two bytes each";
  EXPECT_FALSE(variable_record(L"A", L"\U0001F600"));
  EXPECT_FALSE(variable_record(std::wstring(L"A\0B", 3), L""));
}

TEST(DefaultInstallation, StakeSettingsAreAsDocumented) {
  struct Row {
    const wchar_t* name;
    const wchar_t* value;
  };
  const CString file = cad::from_utf8(network::default_install_dir()) + L"\\using\\ktsysvar.ksv";
  for (const Row& row :
       {Row{L"PLN_STK_SET", L"1000 50 1 0 1 0 1 1 K 0 0 0 0 0"},
        Row{L"PLN_STKDIM_M0", L"1 5.0 2.0"}, Row{L"PLN_STKDIM_M1", L"1 10.0 2.0 5.0 2.0"},
        Row{L"PLN_STKDIM_M2", L"2 10.0 2.0 5.0 2.0"}, Row{L"PLN_STKDIM_M3", L"1 20.0 2.0 5.0 2.0"},
        Row{L"PLN_STKDIM_M4", L"2 20.0 2.0 5.0 2.0"}, Row{L"PLN_STKDIM_M5", L"1 50.0"},
        Row{L"PLN_STKDIM_M6", L"2 50.0"}})
    EXPECT_EQ(find_variable(file, row.name), row.value);
}

}  // namespace
