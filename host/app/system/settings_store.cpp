#include "host/app/system/settings_store.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <utility>

#include "host/base/codepage.h"
#include "host/base/file.h"
#include "host/base/numbers.h"

namespace cad {
namespace {

/// One spelling of the separators; none at the ends.
std::wstring plain_key(std::wstring_view key) {
  std::wstring plain(key);
  std::replace(plain.begin(), plain.end(), L'/', L'\\');
  const std::size_t first = plain.find_first_not_of(L'\\');
  if (first == plain.npos) return {};
  return plain.substr(first, plain.find_last_not_of(L'\\') + 1 - first);
}

std::wstring in_quotes(std::wstring_view text) {
  std::wstring out = L"\"";
  for (const wchar_t c : text) {
    if (c == L'\n' || c == L'\r') {
      out += c == L'\n' ? L"\\n" : L"\\r";
      continue;
    }
    if (c == L'"' || c == L'\\') out += L'\\';
    out += c;
  }
  return out + L'"';
}

/// Takes a quoted text from the front of a line; empty when there is none.
std::optional<std::wstring> take_quoted(std::wstring_view& line) {
  if (line.empty() || line.front() != L'"') return std::nullopt;
  std::wstring text;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == L'"') {
      line.remove_prefix(i + 1);
      return text;
    }
    if (line[i] != L'\\') {
      text += line[i];
    } else if (++i < line.size()) {
      text += line[i] == L'n' ? L'\n' : line[i] == L'r' ? L'\r' : line[i];
    }
  }
  return std::nullopt;
}

std::optional<SettingsStore::Value> value_of(std::wstring_view text) {
  if (std::optional<std::wstring> quoted_text = take_quoted(text))
    return text.empty() ? std::optional<SettingsStore::Value>(*std::move(quoted_text))
                        : std::nullopt;
  const auto number = parse_int(to_utf8(text));
  if (!number || *number < INT32_MIN || *number > INT32_MAX) return std::nullopt;
  return static_cast<std::int32_t>(*number);
}

bool is_below(std::wstring_view key, std::wstring_view parent) {
  return key.size() > parent.size() + 1 && key[parent.size()] == L'\\' &&
         equal_no_case(key.substr(0, parent.size()), parent);
}

}  // namespace

std::string SettingsStore::user_file() {
  const char* const configuration = std::getenv("XDG_CONFIG_HOME");
  if (configuration && *configuration == '/')
    return std::string(configuration) + "/pipenote/lisp-settings";
  const char* const home = std::getenv("HOME");
  return home && *home ? std::string(home) + "/.config/pipenote/lisp-settings" : std::string();
}

Result<SettingsStore> SettingsStore::read(const std::string& path) {
  SettingsStore store;
  std::error_code unknown;
  if (!std::filesystem::exists(path, unknown)) return store;
  const Result<MappedFile> file = MappedFile::open(path);
  if (!file) return file.error();
  const std::wstring text = from_utf8(file->bytes());
  std::wstring_view rest = text;
  std::wstring key;
  for (std::size_t number = 1; !rest.empty(); ++number) {
    const std::size_t end = std::min(rest.find(L'\n'), rest.size());
    std::wstring_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.empty()) continue;
    if (line.front() == L'[' && line.back() == L']') {
      key = plain_key(line.substr(1, line.size() - 2));
      store.sections_[key];
      continue;
    }
    std::optional<std::wstring> name = std::wstring();
    if (line.front() == L'@') {
      line.remove_prefix(1);
    } else {
      name = take_quoted(line);
    }
    const bool complete = name && !line.empty() && line.front() == L'=';
    std::optional<Value> value = complete ? value_of(line.substr(1)) : std::nullopt;
    if (!value)
      return fail(path + ":" + std::to_string(number),
                  "is no setting: [key], \"name\"=\"text\" or \"name\"=number is expected");
    store.sections_[key].insert_or_assign(*std::move(name), *std::move(value));
  }
  return store;
}

Status SettingsStore::write(const std::string& path) const {
  std::error_code failed;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), failed);
  if (failed) return fail(path, "its folder cannot be made: " + failed.message());
  Result<AtomicFile> file = AtomicFile::create(path);
  if (!file) return file.error();
  for (const auto& [key, section] : sections_) {
    std::wstring text = L"[" + key + L"]\n";
    for (const auto& [name, value] : section) {
      text += name.empty() ? L"@" : in_quotes(name);
      text += L"=";
      text +=
          value.index() == 0 ? in_quotes(std::get<0>(value)) : std::to_wstring(std::get<1>(value));
      text += L"\n";
    }
    if (Status status = file->append(to_utf8(text)); !status) return status;
  }
  return file->commit(/*keep_backup=*/false);
}

bool SettingsStore::has_key(std::wstring_view key) const {
  const std::wstring plain = plain_key(key);
  if (sections_.contains(plain)) return true;
  return std::ranges::any_of(sections_,
                             [&](const auto& section) { return is_below(section.first, plain); });
}

const SettingsStore::Value* SettingsStore::find(std::wstring_view key,
                                                std::wstring_view name) const {
  const auto section = sections_.find(plain_key(key));
  if (section == sections_.end()) return nullptr;
  const auto value = section->second.find(name);
  return value == section->second.end() ? nullptr : &value->second;
}

void SettingsStore::set_key(std::wstring_view key) { sections_[plain_key(key)]; }

void SettingsStore::set(std::wstring_view key, std::wstring_view name, Value value) {
  sections_[plain_key(key)].insert_or_assign(std::wstring(name), std::move(value));
}

bool SettingsStore::remove_key(std::wstring_view key) {
  return keys_below(key).empty() && sections_.erase(plain_key(key)) > 0;
}

bool SettingsStore::remove(std::wstring_view key, std::wstring_view name) {
  const auto section = sections_.find(plain_key(key));
  return section != sections_.end() && section->second.erase(std::wstring(name)) > 0;
}

std::vector<std::wstring> SettingsStore::keys_below(std::wstring_view key) const {
  const std::wstring parent = plain_key(key);
  std::vector<std::wstring> parts;
  for (const auto& [child, section] : sections_) {
    if (!is_below(child, parent)) continue;
    const std::size_t from = parent.size() + 1;
    std::wstring part = child.substr(from, child.find(L'\\', from) - from);
    const bool known =
        std::ranges::any_of(parts, [&](const auto& other) { return equal_no_case(other, part); });
    if (!known) parts.push_back(std::move(part));
  }
  return parts;
}

std::vector<std::wstring> SettingsStore::names(std::wstring_view key) const {
  std::vector<std::wstring> names;
  const auto section = sections_.find(plain_key(key));
  if (section == sections_.end()) return names;
  for (const auto& [name, value] : section->second) names.push_back(name);
  return names;
}

}  // namespace cad
