#include "host/dxf/plain_text.h"

#include <gtest/gtest.h>

#include <string>

namespace cad::dxf {
namespace {

constexpr std::size_t kLongest = 40;  // several steps of every width

/// A text of blanks but for one character.
std::wstring with(wchar_t c, std::size_t at, std::size_t size) {
  std::wstring text(size, L' ');
  text[at] = c;
  return text;
}

TEST(PlainText, CharactersAreTheirOwnBytesWhereverTheyStand) {
  for (wchar_t c = L' '; c < 0x7F; ++c) {
    if (c == L'^' || c == L'\\') continue;
    ASSERT_TRUE(is_plain_character(c));
    for (std::size_t size = 1; size <= kLongest; ++size) {
      const std::size_t at = static_cast<std::size_t>(c) % size;
      const std::wstring text = with(c, at, size);
      std::string bytes(size, '#');
      ASSERT_TRUE(narrow_plain_text(text, bytes.data()))
          << static_cast<long>(c) << " at " << at << " of " << size;
      ASSERT_EQ(std::wstring(bytes.begin(), bytes.end()), text);
      std::wstring back(size, L'#');
      ASSERT_TRUE(widen_plain_bytes(bytes, back.data()));
      ASSERT_EQ(back, text);
    }
  }
}

TEST(PlainText, ACharacterThatIsSpelledOtherwiseIsFoundWhereverItStands) {
  const wchar_t others[] = {L'\0',
                            L'\n',
                            L'\x1F',
                            L'^',
                            L'\\',
                            0x7F,
                            0x80,
                            0x9F,
                            0xA5,
                            0xFF,
                            0x100,
                            0x120,
                            0x7FFF,
                            0x8000,
                            0x8020,
                            L'管',
                            0xFFFF,
                            0x10020,
                            0x10FFFF,
                            0x7FFFFFFF,
                            static_cast<wchar_t>(0x80000041),
                            static_cast<wchar_t>(-1)};
  for (const wchar_t c : others) {
    EXPECT_FALSE(is_plain_character(c)) << static_cast<long>(c);
    for (std::size_t size = 1; size <= kLongest; ++size) {
      for (std::size_t at = 0; at < size; ++at) {
        std::string bytes(size, '#');
        ASSERT_FALSE(narrow_plain_text(with(c, at, size), bytes.data()))
            << static_cast<long>(c) << " at " << at << " of " << size;
      }
    }
  }
}

TEST(PlainText, BytesThatAreSpelledOtherwiseAreFoundWhereverTheyStand) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool plain = byte < 0x80 && byte != '^' && byte != '\\';
    for (std::size_t size = 1; size <= kLongest; ++size) {
      for (std::size_t at = 0; at < size; ++at) {
        std::string bytes(size, ' ');
        bytes[at] = static_cast<char>(byte);
        std::wstring text(size, L'#');
        ASSERT_EQ(widen_plain_bytes(bytes, text.data()), plain) << byte << " at " << at;
        if (plain) {
          ASSERT_EQ(text, std::wstring(bytes.begin(), bytes.end()));
        }
      }
    }
  }
}

TEST(PlainText, NothingIsWrittenBehindTheEnd) {
  for (std::size_t size = 0; size <= kLongest; ++size) {
    std::string bytes(size + 1, '#');
    ASSERT_TRUE(narrow_plain_text(std::wstring(size, L'a'), bytes.data()));
    EXPECT_EQ(bytes, std::string(size, 'a') + '#');
    std::wstring text(size + 1, L'#');
    ASSERT_TRUE(widen_plain_bytes(std::string(size, 'a'), text.data()));
    EXPECT_EQ(text, std::wstring(size, L'a') + L'#');
  }
}

}  // namespace
}  // namespace cad::dxf
