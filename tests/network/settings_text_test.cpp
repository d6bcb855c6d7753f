#include "network/settings_text.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/network/settings_folder.h"

namespace {

using network::detect_encoding;
using network::TextEncoding;

struct Row {
  const char* what;
  std::string bytes;
  TextEncoding encoding;
};

TEST(SettingsText, TheEncodingIsSeenFromTheBytes) {
  const Row rows[] = {
      {"nothing", "", TextEncoding::kAnsi936},
      {"plain ASCII", "L= m 2", TextEncoding::kAnsi936},
      {"UTF-8 mark", "\xEF\xBB\xBFL=", TextEncoding::kUtf8WithMark},
      {"UTF-16 mark", std::string("\xFF\xFEL\0", 4), TextEncoding::kUtf16WithMark},
      {"Chinese in UTF-8", "标高", TextEncoding::kUtf8},
      {"Chinese in 936", "\xB1\xEA\xB8\xDF", TextEncoding::kAnsi936},
      {"per mille in UTF-8", "‰", TextEncoding::kUtf8},
      {"per mille in 936", "\xA1\xEB", TextEncoding::kAnsi936},
      {"a sign of Latin-1", "2×3", TextEncoding::kUtf8},
      {"a Greek letter", "Φ110", TextEncoding::kUtf8},
      {"Chinese in 936 that is valid UTF-8", "\xD2\xBB", TextEncoding::kAnsi936},
      {"the same beside UTF-8", "一\xD2\xBB", TextEncoding::kUtf8},
      {"UTF-8 cut inside a character", "标高\xE7\xAE", TextEncoding::kUtf8},
      {"one byte of nothing", "\xE7", TextEncoding::kAnsi936},
      {"an overlong form", "\xE0\x80\x80", TextEncoding::kAnsi936},
      {"an encoded surrogate", "\xED\xA0\x80", TextEncoding::kAnsi936},
      {"beyond Unicode", "\xF4\x90\x80\x80", TextEncoding::kAnsi936},
      {"a character of four bytes", "\xF0\xA0\x80\x80", TextEncoding::kUtf8},
  };
  for (const Row& row : rows) EXPECT_EQ(detect_encoding(row.bytes), row.encoding) << row.what;
}

TEST(SettingsText, EveryEncodingReadsAndWritesTheSameText) {
  const std::wstring text = L"标高 ((小数位 3))‰×";
  for (const TextEncoding encoding : {TextEncoding::kAnsi936, TextEncoding::kUtf8,
                                      TextEncoding::kUtf8WithMark, TextEncoding::kUtf16WithMark}) {
    const std::string bytes = network::encode_settings(text, encoding);
    EXPECT_EQ(network::decode_settings(bytes, encoding), text) << network::encoding_name(encoding);
  }
}

TEST(SettingsText, Utf16HoldsCharactersBeyondItsUnits) {
  const std::wstring text = L"\U00020000a";
  const std::string bytes = network::encode_settings(text, TextEncoding::kUtf16WithMark);
  EXPECT_EQ(bytes.size(), 6u);
  EXPECT_EQ(network::decode_settings(bytes, TextEncoding::kUtf16WithMark), text);
  EXPECT_EQ(network::decode_settings(bytes.substr(0, 5), TextEncoding::kUtf16WithMark).size(), 1u)
      << "half a unit at the end is left out";
}

TEST(SettingsText, WhatThePageCannotHoldBecomesAQuestionMark) {
  EXPECT_EQ(network::encode_settings(L"a\U0001F600b", TextEncoding::kAnsi936), "a?b");
}

class SettingsFile : public WithSettingsFolders {};

TEST_F(SettingsFile, OnlyRegularFilesOfSensibleSizeAreRead) {
  EXPECT_EQ(network::read_settings_file(given_file("a.dat", "abc").string()).value(), "abc");
  EXPECT_EQ(network::read_settings_file(given_file("empty.dat", "").string()).value(), "");
  EXPECT_FALSE(network::read_settings_file((folder / "none.dat").string()));
  EXPECT_FALSE(network::read_settings_file(folder.string()));
  const std::filesystem::path pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_FALSE(network::read_settings_file(pipe.string())) << "nobody writes into it";
}

TEST_F(SettingsFile, AFileOfAHundredMegabytesIsRefusedAtOnce) {
  const std::filesystem::path huge = given_file("huge.dat", "x");
  std::filesystem::resize_file(huge, 100 << 20);
  const cad::Result<std::string> bytes = network::read_settings_file(huge.string());
  ASSERT_FALSE(bytes);
  EXPECT_NE(bytes.error().what.find("too large"), std::string::npos);
}

}  // namespace
