// Is\bgbzfsk.dat: elevation labels.
#include <algorithm>

#include "module/platform/pipe_library.h"
#include "module/platform/text.h"
#include "module/style/style.h"

namespace {

struct Keyword {
  const wchar_t* word;
  ElevType type;
};
constexpr Keyword kKeywords[] = {
    {L"GROUND", GROUND},         {L"PIPETOP", PIPETOP}, {L"PIPEBOTTOM", PIPEBOTTOM},
    {L"PIPECENTER", PIPECENTER}, {L"USUAL", USUAL},
};

ElevType type_of(const CString& word) {
  for (const Keyword& keyword : kKeywords)
    if (dim::equal_no_case(word, keyword.word)) return keyword.type;
  return kUnknownElevation;
}

CString setting_name(const wchar_t* keyword, const wchar_t* what) {
  return dim::format_text(L"elevation %s %s", keyword, what);
}

/// Tells where the settings of each type come from: its first row counts.
void note_all(const network::SettingsLines& file, const std::vector<StuElevDimSet>& rows,
              const std::vector<std::size_t>& lines) {
  if (!network::settings_log()) return;
  for (const Keyword& keyword : kKeywords) {
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const StuElevDimSet& r) { return r.type == keyword.type; });
    const CString decimals = setting_name(keyword.word, L"decimals");
    const CString symbol = setting_name(keyword.word, L"symbol");
    const auto index = static_cast<std::size_t>(row - rows.begin());
    if (row == rows.end() || index >= lines.size()) {
      const StuElevDimSet by_default = row == rows.end() ? StuElevDimSet() : *row;
      file.note_default(decimals, dim::format_text(L"%d", by_default.decimals));
      file.note_default(symbol, by_default.symbolName);
    } else {
      file.note(decimals, dim::format_text(L"%d", row->decimals), lines[index], L"token 2");
      file.note(symbol, row->symbolName, lines[index], L"token 3");
    }
  }
}

}  // namespace

int CDimStyle::ReadElevDimSet(std::vector<StuElevDimSet>& settings) {
  const network::SettingsLines file(L"Is\\bgbzfsk.dat");
  if (!file.read()) {
    note_all(file, settings, {});
    return 0;
  }
  settings.clear();
  std::vector<std::size_t> lines;  // of the rows
  for (std::size_t line = 0; line < file.size(); ++line) {
    const CString& text = file[line];
    const CString decimals = KT::Nth(text, 2, true);
    const CString symbol = KT::Nth(text, 3, true);
    const std::size_t point = symbol.rfind(L'.');
    if (point == symbol.npos) continue;
    settings.push_back({type_of(KT::Nth(text, 0, true)),
                        KT::IsNum(decimals) ? _wtoi(decimals.c_str()) : 3,
                        symbol.substr(0, point)});
    lines.push_back(line);
  }
  note_all(file, settings, lines);
  return 1;
}
