// The places where settings are kept, and the readers of their common formats.
#include <algorithm>
#include <array>
#include <optional>

#include "module/platform/text.h"
#include "module/style/project_variable.h"
#include "module/style/style.h"

namespace {

constexpr std::size_t kProfileRoom = 260;  // characters, the null at the end included
constexpr std::size_t kValueRoom = 128;
constexpr wchar_t kVariableFile[] = L"ktsysvar.ksv";

void copy_value(const CString& value, wchar_t* buffer) {
  if (!buffer) return;
  const std::size_t size = std::min(value.size(), kValueRoom - 1);
  buffer[value.copy(buffer, size)] = 0;
}

}  // namespace

const wchar_t* const CDimStyle::kBzParamSetFileName = network::kStyleFile;

CString CDimStyle::GetProfileStringW(const wchar_t* section, const wchar_t* key,
                                     const wchar_t* defaultValue) const {
  std::array<wchar_t, kProfileRoom> buffer{};
  GetPrivateProfileStringW(section, key, defaultValue, buffer.data(), kProfileRoom,
                           network::in_install_dir(kBzParamSetFileName).c_str());
  return buffer.data();
}

int CDimStyle::WriteProfileStringW(const wchar_t* section, const wchar_t* key,
                                   const wchar_t* value) const {
  return WritePrivateProfileStringW(section, key, value,
                                    network::in_install_dir(kBzParamSetFileName).c_str());
}

bool CDimStyle::GetVal(const wchar_t* path, const wchar_t* name, CString& value) const {
  std::optional<CString> found =
      network::find_variable(CString(dim::text_of(path)), dim::text_of(name));
  if (!found) return false;
  value = *std::move(found);
  return true;
}

bool CDimStyle::GetPrjVal(const wchar_t* name, CString& value) const {
  const CString path = network::in_install_dir(L"using\\") + kVariableFile;
  return GetVal(path.c_str(), name, value);
}

int CDimStyle::KT_getCurPrjpath(CString& path) {
  const bool known = KT::GetWorkDir(path, false);
  while (!path.empty() && path.back() == L'\\') path.pop_back();
  return known ? 1 : 0;
}

int CDimStyle::KT_getSysVar(const wchar_t* name, wchar_t* value) {
  return dim::find_project_variable(dim::text_of(name), value) ? 1 : 0;
}

std::optional<network::SettingOrigin> dim::find_project_variable(std::wstring_view name,
                                                                 wchar_t* value) {
  CString path;
  if (CDimStyle::KT_getCurPrjpath(path) == 0) return std::nullopt;
  path = path + L"\\" + kVariableFile;
  const auto note_file = [&](const wchar_t* encoding, const wchar_t* problem) {
    if (network::SettingsLog* log = network::settings_log())
      log->add(network::FileNote{path, encoding, problem});
  };
  std::optional<network::VariableFile> file = network::VariableFile::open(path);
  if (!file) {
    note_file(L"", network::find_settings_file(path) ? L"cannot be read" : L"no such file");
    return std::nullopt;
  }
  path = file->path();
  note_file(L"records", L"");
  while (const std::optional<network::VariableRecord> record = file->next()) {
    copy_value(record->value, value);
    if (record->is(name))
      return network::SettingOrigin{path, 0, format_text(L"record %d", file->number())};
  }
  return std::nullopt;
}
