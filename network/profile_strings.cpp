#include <algorithm>

#include "host/base/file.h"
#include "network/places.h"
#include "network/profile_file.h"
#include "network/settings_log.h"

namespace {

using network::ProfileFile;

std::wstring_view text_of(const wchar_t* text) { return text ? text : L""; }

/// How many units the host's 16-bit text needs for the character.
unsigned units(wchar_t c) { return static_cast<char32_t>(c) > 0xFFFF ? 2 : 1; }

/// Copies what fits into `room` units; returns how many were copied.
unsigned copy_units(std::wstring_view text, wchar_t* buffer, unsigned room) {
  unsigned used = 0, written = 0;
  for (const wchar_t c : text) {
    used += units(c);
    if (used > room) break;
    buffer[written++] = c;
  }
  return written;
}

unsigned copy_text(std::wstring_view text, wchar_t* buffer, unsigned size) {
  text = text.substr(0, text.find(L'\0'));
  const unsigned length = copy_units(text, buffer, size - 1);
  buffer[length] = 0;
  return length;
}

unsigned copy_names(const std::vector<std::wstring>& names, wchar_t* buffer, unsigned size) {
  if (size == 1) {
    buffer[0] = 0;
    return 0;
  }
  std::wstring list;
  for (const std::wstring& name : names) {
    list += std::wstring_view(name).substr(0, name.find(L'\0'));
    list += L'\0';
  }
  const unsigned length = copy_units(list, buffer, size - 1);
  buffer[length] = 0;
  if (length == list.size()) return length;
  // Cut: two nulls end the buffer.
  buffer[size - 2] = buffer[size - 1] = 0;
  return size - 2;
}

std::wstring_view without_trailing_blanks(std::wstring_view text) {
  while (!text.empty() && (text.back() == L' ' || text.back() == L'\t')) text.remove_suffix(1);
  return text;
}

}  // namespace

unsigned GetPrivateProfileStringW(const wchar_t* section, const wchar_t* key,
                                  const wchar_t* default_text, wchar_t* buffer, unsigned size,
                                  const wchar_t* path) {
  if (!buffer || size == 0) return 0;
  const ProfileFile file = ProfileFile::read(CString(text_of(path)));
  if (!section) return copy_names(file.sections(), buffer, size);
  if (!key) return copy_names(file.keys(section), buffer, size);
  const std::optional<ProfileFile::Value> value = file.find(section, key);
  const unsigned length = copy_text(
      value ? std::wstring_view(value->text) : without_trailing_blanks(text_of(default_text)),
      buffer, size);
  if (network::SettingsLog* log = network::settings_log())
    log->add(network::note_of(file, section, key, value, {buffer, length}));
  return length;
}

int WritePrivateProfileStringW(const wchar_t* section, const wchar_t* key, const wchar_t* value,
                               const wchar_t* path) {
  if (!section) return 0;
  const std::optional<std::string> place = network::place_settings_file(CString(text_of(path)));
  if (!place) return 0;
  ProfileFile file;
  const bool exists = network::find_settings_file(CString(text_of(path))).has_value();
  if (exists) {
    cad::Result<std::string> bytes = network::read_settings_file(*place);
    if (!bytes) return 0;
    file = ProfileFile(*std::move(bytes));
  }
  const std::string before = file.bytes();
  if (!key) {
    file.remove_section(section);
  } else if (!value) {
    file.remove_key(section, key);
  } else {
    file.set(section, key, value);
  }
  const std::string after = file.bytes();
  if (after == before) return 1;
  cad::Result<cad::AtomicFile> out = cad::AtomicFile::create(*place);
  return out && out->append(after) && out->commit(/*keep_backup=*/false) ? 1 : 0;
}
