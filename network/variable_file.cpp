#include "network/variable_file.h"

#include <algorithm>
#include <utility>

#include "host/base/codepage.h"
#include "network/places.h"
#include "network/settings_log.h"

namespace network {
namespace {

constexpr std::wstring_view kRecords = L"records";

/// The bytes of a field up to its null; `ends` tells whether there is one.
std::string_view field_text(std::string_view field, bool& ends) {
  const std::size_t null = field.find('\0');
  ends = null != field.npos;
  return field.substr(0, null);
}

/// A field the file's end cuts short counts as filled up with nulls.
std::string_view field_bytes(std::string_view bytes, std::size_t at, std::size_t size) {
  return at < bytes.size() ? bytes.substr(at, size) : std::string_view();
}

/// What follows a text inside its field is nobody's; it must not decide how texts are read.
TextEncoding encoding_of_texts(std::string_view bytes) {
  std::string texts;
  bool ends;
  for (std::size_t at = 0; at < bytes.size(); at += VariableRecord::kBytes) {
    texts += field_text(field_bytes(bytes, at, VariableRecord::kNameBytes), ends);
    texts += '\n';
    texts += field_text(
        field_bytes(bytes, at + VariableRecord::kNameBytes, VariableRecord::kValueBytes), ends);
    texts += '\n';
  }
  return detect_encoding(texts) == TextEncoding::kUtf8 ? TextEncoding::kUtf8
                                                       : TextEncoding::kAnsi936;
}

void note_variable(const FileNote& file, std::wstring_view name, const CString* value, int number) {
  SettingsLog* const log = settings_log();
  if (!log) return;
  log->add(file);
  SettingNote note;
  note.name = name;
  if (value) note.value = *value;
  note.origin.file = file.path;
  if (value) note.origin.place = L"record " + std::to_wstring(number);
  note.is_default = !value;
  log->add(std::move(note));
}

}  // namespace

VariableFile::VariableFile(std::string bytes)
    : bytes_(std::move(bytes)), encoding_(encoding_of_texts(bytes_)) {}

std::optional<VariableFile> VariableFile::open(const CString& path) {
  const std::optional<std::string> found = find_settings_file(path);
  if (!found) return std::nullopt;
  cad::Result<std::string> bytes = read_settings_file(*found);
  if (!bytes) return std::nullopt;
  VariableFile file(*std::move(bytes));
  file.path_ = cad::from_utf8(*found);
  return file;
}

std::optional<VariableRecord> VariableFile::next() {
  if (at_ >= bytes_.size()) return std::nullopt;
  const std::string_view bytes = bytes_;
  std::string_view name = field_bytes(bytes, at_, VariableRecord::kNameBytes);
  const bool whole = name.size() == VariableRecord::kNameBytes;
  VariableRecord record;
  name = field_text(name, record.name_ends);
  record.name_ends |= !whole;
  bool value_ends;
  std::string_view value =
      field_text(field_bytes(bytes, at_ + VariableRecord::kNameBytes, VariableRecord::kValueBytes),
                 value_ends);
  value = value.substr(0, VariableRecord::kValueBytes - 1);
  record.name = decode_settings(name, encoding_);
  record.value = decode_settings(value, encoding_);
  at_ += VariableRecord::kBytes;
  ++number_;
  return record;
}

std::optional<CString> find_variable(const CString& path, std::wstring_view name) {
  std::optional<VariableFile> file = VariableFile::open(path);
  if (!file) {
    const bool there = find_settings_file(path).has_value();
    note_variable({path, {}, there ? L"cannot be read" : L"no such file"}, name, nullptr, 0);
    return std::nullopt;
  }
  const FileNote note{file->path(), CString(kRecords), {}};
  while (std::optional<VariableRecord> record = file->next()) {
    if (!record->is(name)) continue;
    note_variable(note, name, &record->value, file->number());
    return std::move(record->value);
  }
  note_variable(note, name, nullptr, 0);
  return std::nullopt;
}

cad::Result<std::string> variable_record(std::wstring_view name, std::wstring_view value) {
  std::string bytes;
  struct Field {
    std::wstring_view text;
    std::size_t size;
  };
  for (const Field& field :
       {Field{name, VariableRecord::kNameBytes}, Field{value, VariableRecord::kValueBytes}}) {
    std::string encoded;
    const bool held = cad::encode_append(field.text, cad::CodePage::k936, encoded);
    if (!held || encoded.size() >= field.size || encoded.find('\0') != encoded.npos)
      return cad::fail(
          cad::to_utf8(field.text),
          "does not fit a field of " + std::to_string(field.size) + " bytes in code page 936");
    encoded.resize(field.size);
    bytes += encoded;
  }
  return bytes;
}

}  // namespace network
