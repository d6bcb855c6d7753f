#include "network/settings_store.h"

#include <optional>

#include "network/places.h"
#include "network/profile_file.h"
#include "network/settings_log.h"

namespace {

using network::ProfileFile;

void note(const ProfileFile& file, const wchar_t* section, const wchar_t* key,
          const std::optional<ProfileFile::Value>& value, const CString& text) {
  if (network::SettingsLog* log = network::settings_log())
    log->add(network::note_of(file, section, key, value, text));
}

}  // namespace

CString Gx::getQrmvPz(const wchar_t* key, const wchar_t* default_text, const wchar_t* section) {
  if (!key || !section) return default_text ? default_text : L"";
  CString folder;
  if (KT::GetWorkDir(folder, true)) {
    const ProfileFile file = ProfileFile::read(folder + L"QrmvPz.ini");
    if (const auto value = file.find(section, key)) {
      note(file, section, key, value, value->text);
      return value->text;
    }
  }
  KT::GetInstallDir(folder);
  const ProfileFile file = ProfileFile::read(folder + L"sys\\QrmvPz.ini");
  const auto value = file.find(section, key);
  CString text = value ? value->text : CString(default_text ? default_text : L"");
  note(file, section, key, value, text);
  return text;
}
