// Laws of host/dxf/text.h over random texts and bytes. The seed is fixed: a failure repeats.

#include <gtest/gtest.h>

#include <random>

#include "host/dxf/text.h"

namespace cad::dxf {
namespace {

struct Page {
  const char* name;
  Dialect dialect;
};

const Page kPages[] = {
    {"UTF-8", {}},
    {"936", {.release = Release::kR2000, .code_page = CodePage::k936}},
    {"932", {.release = Release::kR2000, .code_page = CodePage::k932}},
    {"950", {.release = Release::kR2000, .code_page = CodePage::k950}},
    {"949", {.release = Release::kR2000, .code_page = CodePage::k949}},
    {"1252", {.release = Release::kR2000, .code_page = CodePage::k1252}},
    {"437", {.release = Release::kR12, .code_page = CodePage::k437}},
};

std::wstring decoded(std::string_view bytes, const Dialect& dialect) {
  std::wstring text;
  append_decoded(bytes, dialect, text);
  return text;
}

std::string encoded(std::wstring_view text, const Dialect& dialect) {
  std::string bytes;
  append_encoded(text, dialect, bytes);
  return bytes;
}

class Random {
 public:
  unsigned below(unsigned end) { return static_cast<unsigned>(generator_() % end); }

  /// Texts as drawings have them, heavy on what the escapes could trip over.
  std::wstring text() {
    static constexpr std::wstring_view kTricky[] = {
        L"^",  L"\\", L"\\U+", L"\\M+", L"\\U+0041", L"\\U+D83D", L"\\M+5B9DC", L"^J",
        L" ",  L"J",  L"管",   L"乗",   L"\u20BF",   L"\n",       L"\t",        L"\U0001F600",
        L"U+", L"5",  L"41",   L"\x7F", L"\x01",     L"\u00E9"};
    std::wstring text;
    for (unsigned pieces = below(12); pieces > 0; --pieces) {
      if (below(3) != 0) {
        text += kTricky[below(std::size(kTricky))];
        continue;
      }
      const unsigned character = below(2) != 0 ? 1 + below(0xD7FF) : 0xE000 + below(0x2000);
      text.push_back(static_cast<wchar_t>(character));
    }
    return text;
  }

  std::string bytes() {
    static constexpr std::string_view kTricky[] = {
        "^",  "\\",        "\\U+",     "\\M+5",     "\\U+7BA1",
        "^J", "\\M+5B9DC", "\\U+DC81", "\\M+5FFFF", "\\U+D83D\\U+DE00",
        "^ ", "\\u+00e9"};
    std::string bytes;
    for (unsigned pieces = below(12); pieces > 0; --pieces) {
      if (below(2) != 0) {
        bytes += kTricky[below(std::size(kTricky))];
        continue;
      }
      const char c = static_cast<char>(1 + below(255));
      if (c != '\n' && c != '\r') bytes.push_back(c);
    }
    return bytes;
  }

 private:
  std::mt19937 generator_{20120607};
};

TEST(TextLaw, EveryTextReadsBackAsItWas) {
  Random random;
  for (int round = 0; round < 20000; ++round) {
    const std::wstring text = random.text();
    for (const Page& page : kPages) {
      const std::string bytes = encoded(text, page.dialect);
      ASSERT_EQ(decoded(bytes, page.dialect), text) << page.name << ": " << bytes;
    }
  }
}

TEST(TextLaw, WrittenTextIsOneLineWithoutANull) {
  Random random;
  for (int round = 0; round < 20000; ++round) {
    const std::wstring text = random.text();
    for (const Page& page : kPages) {
      const std::string bytes = encoded(text, page.dialect);
      ASSERT_EQ(bytes.find_first_of(std::string("\n\r\0", 3)), std::string::npos) << page.name;
    }
  }
}

TEST(TextLaw, RewritingAFilesTextKeepsWhatItSays) {
  Random random;
  for (int round = 0; round < 50000; ++round) {
    const std::string bytes = random.bytes();
    for (const Page& page : kPages) {
      const std::wstring text = decoded(bytes, page.dialect);
      ASSERT_EQ(decoded(encoded(text, page.dialect), page.dialect), text)
          << page.name << ": " << testing::PrintToString(bytes);
    }
  }
}

TEST(TextLaw, BytesWithoutEscapesAreWrittenBackAsTheyWere) {
  Random random;
  for (int round = 0; round < 50000; ++round) {
    std::string bytes;
    for (unsigned size = random.below(12); size > 0; --size) {
      const char c = static_cast<char>(0x20 + random.below(0xE0));
      if (c != '^' && c != '\\') bytes.push_back(c);
    }
    for (const Page& page : kPages) {
      ASSERT_EQ(encoded(decoded(bytes, page.dialect), page.dialect), bytes) << page.name;
    }
  }
}

}  // namespace
}  // namespace cad::dxf
