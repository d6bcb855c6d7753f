#include "host/base/codepage.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>

namespace cad {
namespace {

std::string encode(std::wstring_view text, CodePage page) {
  std::string out;
  EXPECT_TRUE(encode_append(text, page, out));
  return out;
}

std::wstring marks(std::string_view bytes) {
  std::wstring out;
  for (const char c : bytes) out += static_cast<wchar_t>(0xDC00 + static_cast<unsigned char>(c));
  return out;
}

std::string shown(std::string_view bytes) {
  std::string out;
  for (const unsigned char c : bytes) {
    out += "0123456789ABCDEF"[c >> 4];
    out += "0123456789ABCDEF"[c & 15];
    out += ' ';
  }
  return out;
}

/// One character of each page whose bytes no other page gives to it.
struct Sample {
  CodePage page;
  std::string_view name;
  std::string_view bytes;
  wchar_t character;
};
constexpr Sample kSamples[] = {
    {CodePage::k437, "dos437", "\xE4", L'Σ'},
    {CodePage::k850, "dos850", "\x9B", L'ø'},
    {CodePage::k852, "dos852", "\x88", L'ł'},
    {CodePage::k855, "dos855", "\xEA", L'Ж'},
    {CodePage::k857, "dos857", "\x9F", L'ş'},
    {CodePage::k860, "dos860", "\x84", L'ã'},
    {CodePage::k861, "dos861", "\x95", L'þ'},
    {CodePage::k862, "dos862", "\x80", L'א'},
    {CodePage::k863, "dos863", "\x88", L'ê'},
    {CodePage::k864, "dos864", "\xC7", L'ﺍ'},
    {CodePage::k865, "dos865", "\x9B", L'ø'},
    {CodePage::k866, "dos866", "\x86", L'Ж'},
    {CodePage::k869, "dos869", "\xD5", L'Ω'},
    {CodePage::k874, "ANSI_874", "\xA1", L'ก'},
    {CodePage::k932, "ANSI_932", "\x95\x5C", L'表'},
    {CodePage::k936, "ANSI_936", "\xB9\xDC", L'管'},
    {CodePage::k949, "ANSI_949", "\xC7\xD1", L'한'},
    {CodePage::k950, "ANSI_950", "\xB3\x5C", L'許'},
    {CodePage::k1250, "ANSI_1250", "\xB3", L'ł'},
    {CodePage::k1251, "ANSI_1251", "\xC6", L'Ж'},
    {CodePage::k1252, "ANSI_1252", "\x85", L'…'},
    {CodePage::k1253, "ANSI_1253", "\xD9", L'Ω'},
    {CodePage::k1254, "ANSI_1254", "\xFE", L'ş'},
    {CodePage::k1255, "ANSI_1255", "\xE0", L'א'},
    {CodePage::k1256, "ANSI_1256", "\xC7", L'ا'},
    {CodePage::k1257, "ANSI_1257", "\xEB", L'ė'},
    {CodePage::k1258, "ANSI_1258", "\xFE", L'₫'},
    {CodePage::k1361, "ANSI_1361", "\xD0\x65", L'한'},
    {CodePage::kMacRoman, "mac-roman", "\x8E", L'é'},
    {CodePage::k8859_1, "ISO8859-1", "\xE9", L'é'},
    {CodePage::k8859_2, "ISO8859-2", "\xB3", L'ł'},
    {CodePage::k8859_3, "ISO8859-3", "\xA1", L'Ħ'},
    {CodePage::k8859_4, "ISO8859-4", "\xB3", L'ŗ'},
    {CodePage::k8859_5, "ISO8859-5", "\xB6", L'Ж'},
    {CodePage::k8859_6, "ISO8859-6", "\xC7", L'ا'},
    {CodePage::k8859_7, "ISO8859-7", "\xD9", L'Ω'},
    {CodePage::k8859_8, "ISO8859-8", "\xE0", L'א'},
    {CodePage::k8859_9, "ISO8859-9", "\xFE", L'ş'},
    {CodePage::kUtf8, "UTF-8", "\xE7\xAE\xA1", L'管'},
};

TEST(CodePage, EveryPageReadsAndWritesACharacterOfItsOwn) {
  for (const Sample& sample : kSamples) {
    SCOPED_TRACE(sample.name);
    EXPECT_EQ(decode(sample.bytes, sample.page), std::wstring(1, sample.character));
    EXPECT_EQ(encode({&sample.character, 1}, sample.page), sample.bytes);
  }
}

TEST(CodePage, EveryPageHasANameThatIsReadBack) {
  for (const Sample& sample : kSamples) {
    EXPECT_EQ(code_page_name(sample.page), sample.name);
    EXPECT_EQ(code_page_from_name(sample.name), sample.page) << sample.name;
  }
}

TEST(CodePage, OldNamesAndAnyLetterCaseAreUnderstood) {
  EXPECT_EQ(code_page_from_name("ansi_936"), CodePage::k936);
  EXPECT_EQ(code_page_from_name("GB2312"), CodePage::k936);
  EXPECT_EQ(code_page_from_name("gb2312"), CodePage::k936);
  EXPECT_EQ(code_page_from_name("DOS437"), CodePage::k437);
  EXPECT_EQ(code_page_from_name("Big5"), CodePage::k950);
  EXPECT_EQ(code_page_from_name("ksc5601"), CodePage::k949);
  EXPECT_EQ(code_page_from_name("johab"), CodePage::k1361);
  EXPECT_EQ(code_page_from_name("ascii"), CodePage::k1252);
  EXPECT_EQ(code_page_from_name("  ANSI_1252\r"), CodePage::k1252);
}

TEST(CodePage, AnUnknownNameIsNoPage) {
  for (const char* name : {"", "  ", "ANSI_93", "ANSI_9366", "936", "klingon"}) {
    EXPECT_EQ(code_page_from_name(name), std::nullopt) << name;
  }
}

TEST(CodePage, AsciiIsAsciiOnEveryPage) {
  std::string ascii;
  for (int c = 0; c < 0x80; ++c) ascii += static_cast<char>(c);
  const std::wstring wide(ascii.begin(), ascii.end());
  for (const Sample& sample : kSamples) {
    SCOPED_TRACE(sample.name);
    EXPECT_EQ(decode(ascii, sample.page), wide);
    EXPECT_EQ(encode(wide, sample.page), ascii);
  }
}

TEST(CodePage, DecodingAppends) {
  std::wstring text = L"DN";
  decode_append("300", CodePage::k936, text);
  decode_append("", CodePage::k936, text);
  decode_append("\xB9\xDC", CodePage::k936, text);
  EXPECT_EQ(text, L"DN300管");
}

TEST(CodePage, TextMixesFreelyWithAsciiAtEveryOffset) {
  for (std::size_t offset = 0; offset < 20; ++offset) {
    const std::string before(offset, 'x'), after(20 - offset, 'y');
    const std::wstring wide =
        std::wstring(offset, L'x') + L"管径" + std::wstring(20 - offset, L'y');
    EXPECT_EQ(decode(before + "\xB9\xDC\xBE\xB6" + after, CodePage::k936), wide) << offset;
    EXPECT_EQ(from_utf8(before + "管径" + after), wide) << offset;
  }
}

// 936 as Windows has it

TEST(CodePage936, ASingle80IsTheEuroSign) {
  EXPECT_EQ(decode("\x80", CodePage::k936), L"€");
  EXPECT_EQ(encode(L"€", CodePage::k936), "\x80");
}

TEST(CodePage936, DotAndDashAreThoseOfWindows) {
  EXPECT_EQ(decode("\xA1\xA4\xA1\xAA", CodePage::k936), L"\u00B7\u2014");
}

struct PrivateCell {
  std::string_view bytes;
  wchar_t character;
};
constexpr PrivateCell kPrivateCells[] = {
    {"\xAA\xA1", 0xE000}, {"\xAF\xFE", 0xE233},  // first user area
    {"\xF8\xA1", 0xE234}, {"\xFE\xFE", 0xE4C5},  // second
    {"\xA1\x40", 0xE4C6}, {"\xA2\x40", 0xE526},  // third
    {"\xA7\xA0", 0xE765},                        //
    {"\xA2\xAB", 0xE766}, {"\xA6\xD9", 0xE78D},  // holes of the symbol rows
    {"\xA8\xBF", 0xE7C8}, {"\xA9\x89", 0xE7E7},  //
    {"\xD7\xFA", 0xE810}, {"\xFE\x50", 0xE815},  // holes of the character rows
    {"\xFE\xA0", 0xE864}, {"\xFF", 0xF8F5},
};

TEST(CodePage936, CellsWithoutACharacterArePrivateCharacters) {
  for (const auto& [bytes, character] : kPrivateCells) {
    EXPECT_EQ(decode(bytes, CodePage::k936), std::wstring(1, character)) << shown(bytes);
    EXPECT_EQ(encode({&character, 1}, CodePage::k936), bytes) << shown(bytes);
  }
}

TEST(CodePage936, EveryPairOfLeadAndTrailIsOneCharacter) {
  for (int lead = 0x81; lead <= 0xFE; ++lead) {
    for (int trail = 0x40; trail <= 0xFE; ++trail) {
      const std::string pair{static_cast<char>(lead), static_cast<char>(trail)};
      const std::wstring text = decode(pair, CodePage::k936);
      EXPECT_EQ(text.size(), trail == 0x7F ? 2u : 1u) << shown(pair);
    }
  }
}

TEST(CodePage, UserDefinedAreasOfTheOtherEastAsianPagesArePrivateCharacters) {
  EXPECT_EQ(decode("\xF0\x40\xF9\xFC", CodePage::k932), L"\uE000\uE757");
  EXPECT_EQ(decode("\xC9\xA1\xFE\xFE", CodePage::k949), L"\uE000\uE0BB");
  EXPECT_EQ(decode("\xFA\x40\x8E\x40\x81\x40\xC6\xA1\xC7\x40", CodePage::k950),
            L"\uE000\uE311\uEEB8\uF6B1\uF70F");
}

TEST(CodePage, HolesOfTheWindowsPagesAreControls) {
  EXPECT_EQ(decode("\x81\x8D", CodePage::k1252), L"\u0081\u008D");
  EXPECT_EQ(decode("\x90", CodePage::k1253), L"\u0090");
}

// what is no character

TEST(CodePage, AHalfCharacterAtTheEndBecomesOneMark) {
  EXPECT_EQ(decode("\xB9\xDC\xBE", CodePage::k936), L"管" + marks("\xBE"));
  EXPECT_EQ(decode("\x95", CodePage::k932), marks("\x95"));
}

TEST(CodePage, ALeadByteBeforeAnImpossibleTrailIsMarkedAlone) {
  EXPECT_EQ(decode("\xB9\x20\xBE\xB6", CodePage::k936), marks("\xB9") + L" 径");
  EXPECT_EQ(decode("\xB9\x7F", CodePage::k936), marks("\xB9") + L"\x7F");
  EXPECT_EQ(decode("\xB9\xFF", CodePage::k936), marks("\xB9") + L"\uF8F5");
}

TEST(CodePage, MarksAreWrittenAsTheirBytes) {
  EXPECT_EQ(encode(marks("\xB9") + L" 径", CodePage::k936), "\xB9 \xBE\xB6");
  std::string out = "x";
  EXPECT_TRUE(encode_char(0xDCFF, CodePage::k1252, out));
  EXPECT_EQ(out, "x\xFF");
}

TEST(CodePage, ASecondSpellingOfACharacterReadsAsMarks) {
  EXPECT_EQ(decode("\x81\xE0", CodePage::k932), L"≒");
  EXPECT_EQ(decode("\x87\x90", CodePage::k932), marks("\x87\x90"));
  EXPECT_EQ(decode("\xA4\x51", CodePage::k950), L"十");
  EXPECT_EQ(decode("\xA2\xCC", CodePage::k950), marks("\xA2\xCC"));
}

TEST(CodePage, WhatThePageCannotHoldIsRefusedAndNothingIsWritten) {
  std::string out = "x";
  EXPECT_FALSE(encode_char(U'管', CodePage::k1252, out));
  EXPECT_FALSE(encode_char(U'Ω', CodePage::k8859_1, out));
  EXPECT_FALSE(encode_char(U'😀', CodePage::k936, out));
  EXPECT_FALSE(encode_char(0xD800, CodePage::k936, out));
  EXPECT_FALSE(encode_char(0x110000, CodePage::k936, out));
  EXPECT_FALSE(encode_char(0xD83D, CodePage::kUtf8, out));
  EXPECT_FALSE(encode_char(0xDC7F, CodePage::kUtf8, out)) << "ASCII needs no mark";
  EXPECT_FALSE(encode_char(0xDD00, CodePage::kUtf8, out));
  EXPECT_FALSE(encode_char(0x110000, CodePage::kUtf8, out));
  EXPECT_FALSE(encode_char(0xFFFFFFFF, CodePage::kUtf8, out));
  EXPECT_EQ(out, "x");
}

TEST(CodePage, AWholeTextHasQuestionMarksForWhatThePageCannotHold) {
  std::string out;
  EXPECT_FALSE(encode_append(L"Ø300 管é", CodePage::k1252, out));
  EXPECT_EQ(out,
            "\xD8"
            "300 ?\xE9");
}

TEST(CodePage, ANumberThatIsNoPageReadsAs1252) {
  EXPECT_EQ(decode("\x85", static_cast<CodePage>(4711)), L"…");
  EXPECT_EQ(code_page_name(static_cast<CodePage>(4711)), "ANSI_1252");
}

// UTF-8

TEST(Utf8, ReadsOneToFourBytes) {
  EXPECT_EQ(from_utf8("a\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"),
            (std::wstring{L'a', 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x10FFFF}));
}

TEST(Utf8, WritesOneToFourBytes) {
  EXPECT_EQ(to_utf8(std::wstring{L'a', 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x10FFFF}),
            "a\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(Utf8, EveryCodePointSurvives) {
  for (wchar_t c = 0; c <= 0x10FFFF; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    const std::wstring text(1, c);
    if (from_utf8(to_utf8(text)) != text) ADD_FAILURE() << static_cast<unsigned>(c);
  }
}

TEST(Utf8, BytesThatAreNoCharacterAreMarkedOneByOne) {
  constexpr std::string_view kBad[] = {
      "\x80",
      "\xBF",  // continuation without a lead
      "\xC0\x80",
      "\xC1\xBF",  // overlong
      "\xE0\x9F\xBF",
      "\xF0\x8F\xBF\xBF",  //
      "\xED\xA0\x80",
      "\xED\xBF\xBF",  // surrogates
      "\xF4\x90\x80\x80",
      "\xF5\x80\x80\x80",
      "\xFE",
      "\xFF",  // never
      "\xC3",
      "\xE7\xAE",  // cut
      "\xF0\x9F\x98",
      "\xE7\xAE\xE7",
  };
  for (const std::string_view bytes : kBad) {
    EXPECT_EQ(from_utf8(bytes), marks(bytes)) << shown(bytes);
  }
}

TEST(Utf8, ACutCharacterDoesNotSwallowTheNext) {
  EXPECT_EQ(from_utf8("\xE7\xAE|\xE7管"), marks("\xE7\xAE") + L"|" + marks("\xE7") + L"管");
}

TEST(Utf8, WhatIsNoCharacterIsWrittenAsTheReplacement) {
  EXPECT_EQ(to_utf8(std::wstring{0xD83D, 0x110000, static_cast<wchar_t>(-1)}),
            "\uFFFD\uFFFD\uFFFD");
}

// the promise

/// Bytes in which text, lead bytes, trail bytes and rubbish all are likely.
std::string random_bytes(std::mt19937& random) {
  std::string bytes(random() % 48, '\0');
  for (char& c : bytes) {
    const unsigned bits = random();
    c = static_cast<char>(bits >> 8 & 3 ? bits | 0x80 : bits & 0x7F);
  }
  return bytes;
}

TEST(CodePage, EncodingWhatWasDecodedGivesTheSameBytes) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (const Sample& sample : kSamples) {
    for (int i = 0; i < 2000; ++i) {
      const std::string bytes = random_bytes(random);
      const std::wstring text = decode(bytes, sample.page);
      ASSERT_EQ(encode(text, sample.page), bytes) << sample.name << ": " << shown(bytes);
    }
  }
}

TEST(CodePage, EveryPairOfBytesSurvives) {
  for (const Sample& sample : kSamples) {
    for (int pair = 0x8000; pair < 0x10000; ++pair) {
      const std::string bytes{static_cast<char>(pair >> 8), static_cast<char>(pair)};
      std::string out;
      encode_append(decode(bytes, sample.page), sample.page, out);
      if (out != bytes) ADD_FAILURE() << sample.name << ": " << shown(bytes);
    }
  }
}

TEST(CodePage, NoTwoSpellingsReadAsTheSameCharacter) {
  for (const Sample& sample : kSamples) {
    for (char32_t c = 0x80; c <= 0xFFFF; ++c) {
      std::string bytes;
      if (!encode_char(c, sample.page, bytes)) continue;
      const std::wstring back = decode(bytes, sample.page);
      const bool mark = c >= 0xDC80 && c <= 0xDCFF;
      if (!mark && back != std::wstring(1, static_cast<wchar_t>(c))) {
        ADD_FAILURE() << sample.name << ": " << std::hex << static_cast<unsigned>(c);
      }
    }
  }
}

}  // namespace
}  // namespace cad
