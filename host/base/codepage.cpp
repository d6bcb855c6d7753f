#include "host/base/codepage.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string>

#include "host/base/codepage_table.h"
#include "host/base/fold.h"

namespace cad {
namespace {

struct PageName {
  std::string_view name;
  CodePage page;
};

/// The names drawings use; the first of a page is the one written.
constexpr PageName kPageNames[] = {
    {"ANSI_936", CodePage::k936},
    {"ANSI_1252", CodePage::k1252},
    {"UTF-8", CodePage::kUtf8},
    {"ANSI_932", CodePage::k932},
    {"ANSI_949", CodePage::k949},
    {"ANSI_950", CodePage::k950},
    {"ANSI_1361", CodePage::k1361},
    {"ANSI_874", CodePage::k874},
    {"ANSI_1250", CodePage::k1250},
    {"ANSI_1251", CodePage::k1251},
    {"ANSI_1253", CodePage::k1253},
    {"ANSI_1254", CodePage::k1254},
    {"ANSI_1255", CodePage::k1255},
    {"ANSI_1256", CodePage::k1256},
    {"ANSI_1257", CodePage::k1257},
    {"ANSI_1258", CodePage::k1258},
    {"dos437", CodePage::k437},
    {"dos850", CodePage::k850},
    {"dos852", CodePage::k852},
    {"dos855", CodePage::k855},
    {"dos857", CodePage::k857},
    {"dos860", CodePage::k860},
    {"dos861", CodePage::k861},
    {"dos862", CodePage::k862},
    {"dos863", CodePage::k863},
    {"dos864", CodePage::k864},
    {"dos865", CodePage::k865},
    {"dos866", CodePage::k866},
    {"dos869", CodePage::k869},
    {"mac-roman", CodePage::kMacRoman},
    {"ISO8859-1", CodePage::k8859_1},
    {"ISO8859-2", CodePage::k8859_2},
    {"ISO8859-3", CodePage::k8859_3},
    {"ISO8859-4", CodePage::k8859_4},
    {"ISO8859-5", CodePage::k8859_5},
    {"ISO8859-6", CodePage::k8859_6},
    {"ISO8859-7", CodePage::k8859_7},
    {"ISO8859-8", CodePage::k8859_8},
    {"ISO8859-9", CodePage::k8859_9},
    // read only
    {"gb2312", CodePage::k936},
    {"gbk", CodePage::k936},
    {"dos936", CodePage::k936},
    {"big5", CodePage::k950},
    {"dos950", CodePage::k950},
    {"dos932", CodePage::k932},
    {"ksc5601", CodePage::k949},
    {"dos949", CodePage::k949},
    {"johab", CodePage::k1361},
    {"dos874", CodePage::k874},
    {"mac_roman", CodePage::kMacRoman},
    {"utf8", CodePage::kUtf8},
    {"ascii", CodePage::k1252},  // for the bytes that should not be there
    {"8859_1", CodePage::k8859_1},
    {"8859_2", CodePage::k8859_2},
    {"8859_3", CodePage::k8859_3},
    {"8859_4", CodePage::k8859_4},
    {"8859_5", CodePage::k8859_5},
    {"8859_6", CodePage::k8859_6},
    {"8859_7", CodePage::k8859_7},
    {"8859_8", CodePage::k8859_8},
    {"8859_9", CodePage::k8859_9},
};

constexpr wchar_t kMarks = 0xDC00;  // U+DC00 + byte marks a byte that is no character
constexpr wchar_t kReplacement = 0xFFFD;

unsigned byte(char c) { return static_cast<unsigned char>(c); }

/// Copies the run of ASCII at the front; answers its length.
std::size_t copy_ascii(const char* from, std::size_t count, wchar_t* to) {
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    std::uint64_t eight;
    std::memcpy(&eight, from + i, 8);
    if (eight & 0x8080808080808080u) break;
    for (std::size_t k = 0; k < 8; ++k) to[i + k] = static_cast<wchar_t>(byte(from[i + k]));
  }
  for (; i < count && byte(from[i]) < 0x80; ++i) to[i] = static_cast<wchar_t>(byte(from[i]));
  return i;
}

struct Character {
  wchar_t value;
  std::size_t length;  // bytes it takes; never 0
};

Character marked(char c) { return {static_cast<wchar_t>(kMarks + byte(c)), 1}; }

/// What may follow a lead byte of UTF-8. The range of the second byte keeps out overlong forms,
/// surrogates and numbers beyond U+10FFFF.
struct Utf8Lead {
  unsigned char length;     // of the sequence; 0: no lead byte
  unsigned char low, high;  // range of the second byte
};
struct Utf8LeadRange {
  unsigned char first, last;
  Utf8Lead lead;
};
constexpr Utf8LeadRange kUtf8LeadRanges[] = {
    {0xC2, 0xDF, {2, 0x80, 0xBF}}, {0xE0, 0xE0, {3, 0xA0, 0xBF}}, {0xE1, 0xEC, {3, 0x80, 0xBF}},
    {0xED, 0xED, {3, 0x80, 0x9F}}, {0xEE, 0xEF, {3, 0x80, 0xBF}}, {0xF0, 0xF0, {4, 0x90, 0xBF}},
    {0xF1, 0xF3, {4, 0x80, 0xBF}}, {0xF4, 0xF4, {4, 0x80, 0x8F}},
};
constexpr auto kUtf8Leads = [] {
  std::array<Utf8Lead, 256> leads{};
  for (const Utf8LeadRange& range : kUtf8LeadRanges) {
    for (unsigned c = range.first; c <= range.last; ++c) leads[c] = range.lead;
  }
  return leads;
}();

/// First character of bytes that do not begin with ASCII.
Character utf8_character(std::string_view bytes) {
  const auto [length, low, high] = kUtf8Leads[byte(bytes[0])];
  if (length == 0 || bytes.size() < length) return marked(bytes[0]);
  if (byte(bytes[1]) < low || byte(bytes[1]) > high) return marked(bytes[0]);
  unsigned value = byte(bytes[0]) & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(bytes[i]) & 0xC0) != 0x80) return marked(bytes[0]);
    value = value << 6 | (byte(bytes[i]) & 0x3F);
  }
  return {static_cast<wchar_t>(value), length};
}

Character table_character(const CodePageTable& table, std::string_view bytes) {
  const unsigned lead = byte(bytes[0]);
  if (const char16_t c = table.single[lead]) return {static_cast<wchar_t>(c), 1};
  const unsigned row = table.row_of_lead[lead];
  if (row != 0 && bytes.size() > 1) {
    if (const char16_t c = table.rows[row - 1][byte(bytes[1])]) return {static_cast<wchar_t>(c), 2};
  }
  return marked(bytes[0]);
}

/// The shape of every decoder: ASCII in runs, the rest by `character`.
template <class CharacterAt>
void decode_runs(std::string_view bytes, std::wstring& out, CharacterAt character) {
  const std::size_t old_size = out.size();
  out.resize(old_size + bytes.size());  // never more characters than bytes
  wchar_t* to = out.data() + old_size;
  while (!bytes.empty()) {
    const std::size_t ascii = copy_ascii(bytes.data(), bytes.size(), to);
    to += ascii;
    bytes.remove_prefix(ascii);
    while (!bytes.empty() && byte(bytes[0]) >= 0x80) {
      const Character next = character(bytes);
      *to++ = next.value;
      bytes.remove_prefix(next.length);
    }
  }
  out.resize(static_cast<std::size_t>(to - out.data()));
}

bool is_mark(char32_t c) { return c >= kMarks + 0x80 && c <= kMarks + 0xFF; }

void append_byte(std::string& out, unsigned value) { out += static_cast<char>(value); }

bool encode_utf8(char32_t c, std::string& out) {
  if (c < 0x800) {
    append_byte(out, 0xC0 | c >> 6);
  } else if (c < 0x10000) {
    if (c >= 0xD800 && c <= 0xDFFF) return false;
    append_byte(out, 0xE0 | c >> 12);
    append_byte(out, 0x80 | (c >> 6 & 0x3F));
  } else {
    if (c > 0x10FFFF) return false;
    append_byte(out, 0xF0 | c >> 18);
    append_byte(out, 0x80 | (c >> 12 & 0x3F));
    append_byte(out, 0x80 | (c >> 6 & 0x3F));
  }
  append_byte(out, 0x80 | (c & 0x3F));
  return true;
}

bool encode_by_table(char32_t c, const CodePageTable& table, std::string& out) {
  const unsigned code = c <= 0xFFFF ? table.codes[c] : 0;
  if (code == 0) return false;
  if (code > 0xFF) append_byte(out, code >> 8);
  append_byte(out, code & 0xFF);
  return true;
}

/// One character; table is null for UTF-8.
bool encode_one(char32_t c, const CodePageTable* table, std::string& out) {
  if (c < 0x80 || is_mark(c)) {
    append_byte(out, c & 0xFF);
    return true;
  }
  return table ? encode_by_table(c, *table, out) : encode_utf8(c, out);
}

const CodePageTable* table_of(CodePage page) {
  return page == CodePage::kUtf8 ? nullptr : &code_page_table(page);
}

}  // namespace

std::optional<CodePage> code_page_from_name(std::string_view dxf_name) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = dxf_name.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return std::nullopt;
  dxf_name = dxf_name.substr(first, dxf_name.find_last_not_of(kBlanks) + 1 - first);
  for (const PageName& row : kPageNames) {
    if (equal_no_case(row.name, dxf_name)) return row.page;
  }
  return std::nullopt;
}

std::string_view code_page_name(CodePage page) {
  for (const PageName& row : kPageNames) {
    if (row.page == page) return row.name;
  }
  return "ANSI_1252";  // how decode reads a number that is no page
}

void decode_append(std::string_view bytes, CodePage page, std::wstring& out) {
  if (const CodePageTable* table = table_of(page)) {
    decode_runs(bytes, out,
                [table](std::string_view rest) { return table_character(*table, rest); });
  } else {
    decode_runs(bytes, out, utf8_character);
  }
}

std::wstring decode(std::string_view bytes, CodePage page) {
  std::wstring out;
  decode_append(bytes, page, out);
  return out;
}

bool encode_char(char32_t c, CodePage page, std::string& out) {
  return encode_one(c, c < 0x80 ? nullptr : table_of(page), out);
}

bool encode_append(std::wstring_view text, CodePage page, std::string& out) {
  const CodePageTable* table = table_of(page);
  bool all = true;
  for (const wchar_t c : text) {
    if (encode_one(static_cast<char32_t>(c), table, out)) continue;
    out += '?';
    all = false;
  }
  return all;
}

std::string to_utf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (const wchar_t c : text) {
    if (!encode_one(static_cast<char32_t>(c), nullptr, out)) encode_utf8(kReplacement, out);
  }
  return out;
}

std::wstring from_utf8(std::string_view bytes) { return decode(bytes, CodePage::kUtf8); }

}  // namespace cad
