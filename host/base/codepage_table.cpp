#include "host/base/codepage_table.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

namespace cad {
namespace {

constexpr unsigned kFirstLead = 0x81;
constexpr unsigned kLastLead = 0xFE;
constexpr unsigned kFirstTrail = 0x31;  // of 1361; the others begin at 0x40
constexpr unsigned kLastTrail = 0xFE;

/// 0x80-0x9F of 1252, with the C1 controls in the holes as Windows has them.
constexpr std::array<char16_t, 32> kLatin1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct Converter {
  CodePage page;
  const char* name;  // to iconv; null: built in
  bool double_byte;
};

constexpr Converter kConverters[] = {
    {CodePage::k437, "CP437", false},          {CodePage::k850, "CP850", false},
    {CodePage::k852, "CP852", false},          {CodePage::k855, "CP855", false},
    {CodePage::k857, "CP857", false},          {CodePage::k860, "CP860", false},
    {CodePage::k861, "CP861", false},          {CodePage::k862, "CP862", false},
    {CodePage::k863, "CP863", false},          {CodePage::k864, "CP864", false},
    {CodePage::k865, "CP865", false},          {CodePage::k866, "CP866", false},
    {CodePage::k869, "CP869", false},          {CodePage::k874, "CP874", false},
    {CodePage::k932, "CP932", true},           {CodePage::k936, "CP936", true},
    {CodePage::k949, "CP949", true},           {CodePage::k950, "CP950", true},
    {CodePage::k1250, "CP1250", false},        {CodePage::k1251, "CP1251", false},
    {CodePage::k1252, nullptr, false},         {CodePage::k1253, "CP1253", false},
    {CodePage::k1254, "CP1254", false},        {CodePage::k1255, "CP1255", false},
    {CodePage::k1256, "CP1256", false},        {CodePage::k1257, "CP1257", false},
    {CodePage::k1258, "CP1258", false},        {CodePage::k1361, "CP1361", true},
    {CodePage::kMacRoman, "MACINTOSH", false}, {CodePage::k8859_1, "ISO-8859-1", false},
    {CodePage::k8859_2, "ISO-8859-2", false},  {CodePage::k8859_3, "ISO-8859-3", false},
    {CodePage::k8859_4, "ISO-8859-4", false},  {CodePage::k8859_5, "ISO-8859-5", false},
    {CodePage::k8859_6, "ISO-8859-6", false},  {CodePage::k8859_7, "ISO-8859-7", false},
    {CodePage::k8859_8, "ISO-8859-8", false},  {CodePage::k8859_9, "ISO-8859-9", false},
};

/// Where Windows has a character and the converter none. Cells are numbered row by row from
/// `first`; a cell that is taken already keeps its character but is counted.
struct Area {
  CodePage page;
  unsigned first_lead, last_lead;  // both 0: single bytes
  unsigned first_trail, last_trail;
  unsigned first_gap, last_gap;  // trail bytes that are none
  char16_t first;
};

constexpr Area kAreas[] = {
    {CodePage::k936, 0, 0, 0x80, 0x80, 0, 0, 0x20AC},
    {CodePage::k936, 0, 0, 0xFF, 0xFF, 0, 0, 0xF8F5},
    {CodePage::k936, 0xAA, 0xAF, 0xA1, 0xFE, 0, 0, 0xE000},
    {CodePage::k936, 0xF8, 0xFE, 0xA1, 0xFE, 0, 0, 0xE234},
    {CodePage::k936, 0xA1, 0xA7, 0x40, 0xA0, 0x7F, 0x7F, 0xE4C6},
    {CodePage::k932, 0, 0, 0x80, 0x80, 0, 0, 0x0080},
    {CodePage::k932, 0, 0, 0xA0, 0xA0, 0, 0, 0xF8F0},
    {CodePage::k932, 0, 0, 0xFD, 0xFF, 0, 0, 0xF8F1},
    {CodePage::k932, 0xF0, 0xF9, 0x40, 0xFC, 0x7F, 0x7F, 0xE000},
    {CodePage::k949, 0, 0, 0x80, 0x80, 0, 0, 0x0080},
    {CodePage::k949, 0, 0, 0xFF, 0xFF, 0, 0, 0xF8F7},
    {CodePage::k949, 0xC9, 0xC9, 0xA1, 0xFE, 0, 0, 0xE000},
    {CodePage::k949, 0xFE, 0xFE, 0xA1, 0xFE, 0, 0, 0xE05E},
    {CodePage::k950, 0, 0, 0x80, 0x80, 0, 0, 0x0080},
    {CodePage::k950, 0, 0, 0xFF, 0xFF, 0, 0, 0xF8F8},
    {CodePage::k950, 0xFA, 0xFE, 0x40, 0xFE, 0x7F, 0xA0, 0xE000},
    {CodePage::k950, 0x8E, 0xA0, 0x40, 0xFE, 0x7F, 0xA0, 0xE311},
    {CodePage::k950, 0x81, 0x8D, 0x40, 0xFE, 0x7F, 0xA0, 0xEEB8},
    {CodePage::k950, 0xC6, 0xC6, 0xA1, 0xFE, 0, 0, 0xF6B1},
    {CodePage::k950, 0xC7, 0xC8, 0x40, 0xFE, 0x7F, 0xA0, 0xF70F},
};

/// What 936 has left after the areas above, numbered in the order of codes: the last private
/// characters of Windows, U+E766-U+E864.
constexpr char16_t kFirstLeft936 = 0xE766;
constexpr char16_t kLastLeft936 = 0xE864;

bool is_windows_single_byte(CodePage page) {
  return page == CodePage::k874 || (page >= CodePage::k1250 && page <= CodePage::k1258);
}

class Iconv {
 public:
  Iconv(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;
  ~Iconv() {
    if (*this) iconv_close(handle_);
  }
  explicit operator bool() const { return handle_ != iconv_t(-1); }

  /// All of the input, or nothing when any of it is refused. Some converters (1255, 1258) hold a
  /// letter back until they see that no accent follows, hence the second call.
  template <class In, class Out>
  std::optional<std::size_t> convert(const In* in, std::size_t count, Out* out, std::size_t room) {
    auto* from = const_cast<char*>(reinterpret_cast<const char*>(in));
    auto* to = reinterpret_cast<char*>(out);
    std::size_t from_left = count * sizeof(In), to_left = room * sizeof(Out);
    const bool taken = iconv(handle_, &from, &from_left, &to, &to_left) == 0;
    const bool ended = iconv(handle_, nullptr, nullptr, &to, &to_left) == 0;
    if (!taken || !ended) return std::nullopt;
    return room - to_left / sizeof(Out);
  }

 private:
  iconv_t handle_;
};

/// The character of a code; 0 when there is none or it is more than one.
char16_t character_of(Iconv& to_wide, unsigned code) {
  const unsigned char bytes[2] = {static_cast<unsigned char>(code >> 8),
                                  static_cast<unsigned char>(code)};
  const std::size_t length = code > 0xFF ? 2 : 1;
  std::array<wchar_t, 4> wide{};
  const auto count = to_wide.convert(bytes + 2 - length, length, wide.data(), wide.size());
  const bool in_bmp =
      count == 1 && wide[0] >= 0x80 && wide[0] <= 0xFFFF && (wide[0] < 0xD800 || wide[0] > 0xDFFF);
  return in_bmp ? static_cast<char16_t>(wide[0]) : 0;
}

/// The code the converter itself writes; 0 when it writes none.
unsigned code_of(Iconv& to_bytes, char16_t character) {
  const wchar_t wide = character;
  std::array<unsigned char, 4> bytes{};
  const auto count = to_bytes.convert(&wide, 1, bytes.data(), bytes.size());
  if (count == 1) return bytes[0];
  if (count == 2) return unsigned{bytes[0]} << 8 | bytes[1];
  return 0;
}

/// Adds a character, or drops the spelling of it that is not written.
void add(CodePageTable& table, unsigned code, char16_t character, Iconv& to_bytes) {
  std::uint16_t& known = table.codes[character];
  if (known != 0) {
    if (code_of(to_bytes, character) != code) return;
    table.cell(known) = 0;
  }
  known = static_cast<std::uint16_t>(code);
  table.cell(code) = character;
}

void add_if_free(CodePageTable& table, unsigned code, char16_t character) {
  if (table.cell(code) != 0 || table.codes[character] != 0) return;
  table.codes[character] = static_cast<std::uint16_t>(code);
  table.cell(code) = character;
}

void fill_1252(CodePageTable& table) {
  for (unsigned code = 0x80; code <= 0xFF; ++code) {
    add_if_free(table, code, code < 0xA0 ? kLatin1252[code - 0x80] : static_cast<char16_t>(code));
  }
}

void fill_area(CodePageTable& table, const Area& area) {
  char16_t character = area.first;
  for (unsigned lead = area.first_lead; lead <= area.last_lead; ++lead) {
    for (unsigned trail = area.first_trail; trail <= area.last_trail; ++trail) {
      if (trail >= area.first_gap && trail <= area.last_gap) continue;
      add_if_free(table, lead << 8 | trail, character++);
    }
  }
}

void fill_rest_of_936(CodePageTable& table) {
  char16_t character = kFirstLeft936;
  for (unsigned lead = kFirstLead; lead <= kLastLead; ++lead) {
    for (unsigned trail = 0x40; trail <= kLastTrail; ++trail) {
      const unsigned code = lead << 8 | trail;
      if (trail == 0x7F || table.cell(code) != 0) continue;
      if (character > kLastLeft936) return;
      add_if_free(table, code, character++);
    }
  }
}

void build(CodePageTable& table, const Converter& converter) {
  if (!converter.name) {
    fill_1252(table);
    return;
  }
  Iconv to_wide("WCHAR_T", converter.name);
  Iconv to_bytes(converter.name, "WCHAR_T");
  if (!to_wide || !to_bytes) {
    fill_1252(table);
    return;
  }
  for (unsigned code = 0x80; code <= 0xFF; ++code) {
    if (const char16_t c = character_of(to_wide, code)) add(table, code, c, to_bytes);
  }
  if (converter.double_byte) {
    for (unsigned lead = kFirstLead; lead <= kLastLead; ++lead) {
      if (table.single[lead] != 0) continue;
      for (unsigned trail = kFirstTrail; trail <= kLastTrail; ++trail) {
        const unsigned code = lead << 8 | trail;
        if (const char16_t c = character_of(to_wide, code)) add(table, code, c, to_bytes);
      }
    }
  }
  for (const Area& area : kAreas) {
    if (area.page == converter.page) fill_area(table, area);
  }
  if (converter.page == CodePage::k936) fill_rest_of_936(table);
  if (is_windows_single_byte(converter.page)) {
    for (unsigned code = 0x80; code <= 0x9F; ++code) {
      add_if_free(table, code, static_cast<char16_t>(code));
    }
  }
}

const CodePageTable& find_table(CodePage page) {
  // Never destroyed: text may still be decoded while the program ends.
  static auto& tables = *new std::array<std::unique_ptr<CodePageTable>, std::size(kConverters)>;
  const auto* converter = std::ranges::find(kConverters, page, &Converter::page);
  if (converter == std::end(kConverters)) {
    converter = std::ranges::find(kConverters, CodePage::k1252, &Converter::page);
  }
  auto& table = tables[static_cast<std::size_t>(converter - std::begin(kConverters))];
  if (!table) {
    table = std::make_unique<CodePageTable>();
    build(*table, *converter);
  }
  return *table;
}

}  // namespace

char16_t& CodePageTable::cell(unsigned code) {
  if (code <= 0xFF) return single[code];
  std::uint8_t& row = row_of_lead[code >> 8];
  if (row == 0) {
    rows.emplace_back();
    row = static_cast<std::uint8_t>(rows.size());
  }
  return rows[row - 1][code & 0xFF];
}

const CodePageTable& code_page_table(CodePage page) {
  // A drawing asks for its one page at every character it writes.
  static CodePage last_page;
  static const CodePageTable* last_table = nullptr;
  if (!last_table || page != last_page) {
    last_table = &find_table(page);
    last_page = page;
  }
  return *last_table;
}

}  // namespace cad
