#include <cstdio>
#include <cstdlib>
#include <string>

#include "fuzz/settings/settings_readers.h"
#include "network/gx_data.h"
#include "network/list_text.h"
#include "network/pipe_materials.h"
#include "network/places.h"
#include "network/profile_file.h"
#include "network/settings_store.h"
#include "network/text_file.h"
#include "network/variable_file.h"
#include "network/words.h"

namespace {

void demand(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", law);
  std::abort();
}

CString in_installation(const wchar_t* name) {
  CString folder;
  KT::GetInstallDir(folder);
  return folder + name;
}

void read_lists(std::string_view) {
  CStringArray lines, words;
  std::vector<int> numbers;
  KT::ReadTextFileToStringArray(in_installation(L"Is\\gdcdpdbz.dat"), lines, true, &numbers,
                                nullptr);
  demand(lines.size() == numbers.size(), "every line has its number");
  for (const CString& line : lines) {
    network::ListReader list(line, true);
    network::ListReader counter(line, true);
    for (int i = 0; i < 8 && counter.skip(); ++i)
      demand(list.next() == KT::Nth(line, i, true), "Nth gives the elements in order");
    const int count = KTOLD::DisSpaceString(line, words);
    demand(KT::GetWordFromStr(line, count, L' ').empty(), "no word behind the last");
    if (count > 0)
      demand(KT::GetWordFromStr(line, count - 1, L'\t') == words.back(), "words are split alike");
    for (const CString& word : words) KT::IsNum(word);
  }
}

void read_profile(std::string_view bytes) {
  using network::ProfileFile;
  ProfileFile file{std::string(bytes)};
  demand(file.bytes() == bytes, "an unchanged profile file keeps its bytes");
  for (const std::wstring& section : file.sections())
    for (const std::wstring& key : file.keys(section))
      demand(file.find(section, key).has_value(), "a key that is listed is found");
  file.set(L"GxBz", L"LocalStyle", L"LY");
  demand(file.find(L"gxbz", L"localstyle")->text == L"LY", "what is set is found");
  file.remove_section(L"GxBz");
  const ProfileFile again(file.bytes());
  demand(again.bytes() == file.bytes(), "a changed profile file reads again");

  wchar_t buffer[260];
  const unsigned length = GetPrivateProfileStringW(L"GxBz", L"SwBzGd", L"default", buffer, 260,
                                                   in_installation(L"sys\\DimStyle.ini").c_str());
  demand(length < 260 && buffer[length] == 0, "a value ends inside its buffer");
  Gx::getQrmvPz(L"GgDimPre", L"BxH", L"WDLDIM");
}

void read_variables(std::string_view bytes) {
  network::VariableFile file{std::string(bytes)};
  while (const auto record = file.next()) {
    demand(record->name.size() <= 32 && record->value.size() <= 127, "texts fit their fields");
  }
  demand(file.number() == static_cast<int>((bytes.size() + 159) / 160), "all records are read");
  network::find_variable(in_installation(L"using\\ktsysvar.ksv"), L"PLN_STK_SET");
}

void read_materials(std::string_view) {
  network::forget_pipe_materials();
  WDLGX::GetDimH(L"1");
  WDLGX::GetGCNL2(L"1", 300);
  WDLGX::GetGCHBH(L"1", 300);
}

void read_labels(std::string_view) {
  CGxData& data = *CGxData::Instance();
  data.Update();
  const DimUtility::tagPcBzSz* const labels = data.getPcBzSz();
  demand((labels == nullptr) == (data.getGcGpBzSz() == nullptr), "the files are one file");
  demand((labels == nullptr) == (data.getZdmGdBzSz() == nullptr), "the files are one file");
  if (!labels) return;
  for (const int decimals : labels->decimals) demand(decimals >= -1, "-1 is no setting");
}

constexpr SettingsReader kReaders[] = {
    {"lists", read_lists},         {"profile", read_profile}, {"variables", read_variables},
    {"materials", read_materials}, {"labels", read_labels},
};

}  // namespace

std::span<const SettingsReader> network_readers() { return kReaders; }
