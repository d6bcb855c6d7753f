#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/lisp/files.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"
#include "host/lisp/wildcard.h"

namespace cad::lisp {
namespace {

namespace fs = std::filesystem;

// Programs write the separators of the host.
std::string as_path(std::wstring_view name) {
  std::string path = to_utf8(name);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

// A name taken apart: directory with its last separator, base, extension with its dot.
struct NameParts {
  std::wstring_view directory;
  std::wstring_view base;
  std::wstring_view extension;
};

NameParts take_apart(std::wstring_view name) {
  NameParts parts;
  const std::size_t file = name.find_last_of(L"/\\:") + 1;  // npos + 1 is 0
  parts.directory = name.substr(0, file);
  const std::size_t dot = name.rfind(L'.');
  const std::size_t end = dot == name.npos || dot < file ? name.size() : dot;
  parts.base = name.substr(file, end - file);
  parts.extension = name.substr(end);
  return parts;
}

Value fn_filename_base(Call& call) { return call.interp().string(take_apart(call.string(0)).base); }

// Without the last separator, unless it is all there is.
Value fn_filename_directory(Call& call) {
  std::wstring_view directory = take_apart(call.string(0)).directory;
  if (directory.size() > 1 && (directory.back() == L'/' || directory.back() == L'\\')) {
    directory.remove_suffix(1);
  }
  return call.interp().string(directory);
}

Value fn_filename_extension(Call& call) {
  const std::wstring_view extension = take_apart(call.string(0)).extension;
  return extension.empty() ? Value() : call.interp().string(extension);
}

Value fn_fnsplitl(Call& call) {
  const NameParts parts = take_apart(call.string(0));
  Interpreter& interp = call.interp();
  return interp.list(
      {interp.string(parts.directory), interp.string(parts.base), interp.string(parts.extension)});
}

// A name no file has: pattern, directory and extension may each be nil.
Value fn_filename_mktemp(Call& call) {
  const auto text = [&](std::size_t i) {
    return call.arg(i) ? std::wstring(call.string(i)) : std::wstring();
  };
  const std::wstring pattern = text(0);
  const NameParts parts = take_apart(pattern);
  std::wstring directory = call.arg(1) ? text(1) : std::wstring(parts.directory);
  if (directory.empty()) {
    std::error_code ignored;
    directory = from_utf8(fs::temp_directory_path(ignored).string());
  }
  if (!directory.empty() && directory.back() != L'/' && directory.back() != L'\\') {
    directory += L'/';
  }
  const std::wstring base = parts.base.empty() ? L"$VL~~" : std::wstring(parts.base);
  const std::wstring extension = call.arg(2) ? text(2) : std::wstring(parts.extension);
  for (int i = 1;; ++i) {
    const std::wstring name = directory + base + std::to_wstring(i) + extension;
    std::error_code ignored;
    if (!fs::exists(as_path(name), ignored)) return call.interp().string(name);
  }
}

Value fn_file_size(Call& call) {
  const auto path = find_file(call.interp(), call.string(0));
  std::error_code failed;
  const auto size = path ? fs::file_size(*path, failed) : 0;
  if (!path || failed) return Value();
  return size <= INT32_MAX ? Value::integer(static_cast<std::int32_t>(size))
                           : Value::real(static_cast<double>(size));
}

// Year, month, day of the week from Sunday 0, day, hour, minute, second, millisecond.
Value fn_file_systime(Call& call) {
  const auto path = find_file(call.interp(), call.string(0));
  struct stat facts;
  std::tm at{};
  if (!path || ::stat(path->c_str(), &facts) != 0) return Value();
  if (::localtime_r(&facts.st_mtim.tv_sec, &at) == nullptr) return Value();
  const auto item = [](long n) { return Value::integer(static_cast<std::int32_t>(n)); };
  return call.interp().list({item(at.tm_year + 1900), item(at.tm_mon + 1), item(at.tm_wday),
                             item(at.tm_mday), item(at.tm_hour), item(at.tm_min), item(at.tm_sec),
                             item(facts.st_mtim.tv_nsec / 1000000)});
}

Value fn_file_directory_p(Call& call) {
  std::error_code ignored;
  return call.truth(fs::is_directory(place_file(call.interp(), call.string(0)), ignored));
}

Value fn_file_delete(Call& call) {
  const auto path = find_file(call.interp(), call.string(0));
  std::error_code failed;
  return call.truth(path && !fs::is_directory(*path, failed) && fs::remove(*path, failed));
}

Value fn_file_rename(Call& call) {
  const auto from = find_file(call.interp(), call.string(0));
  const std::string to = place_file(call.interp(), call.string(1));
  std::error_code failed;
  if (!from || fs::exists(to, failed)) return Value();
  fs::rename(*from, to, failed);
  return call.truth(!failed);
}

// The number of bytes copied; nil when the target exists and is not appended to.
Value fn_file_copy(Call& call) {
  const auto from = find_file(call.interp(), call.string(0));
  const std::string to = place_file(call.interp(), call.string(1));
  std::error_code failed;
  if (!from) return Value();
  const auto size = fs::file_size(*from, failed);
  if (failed) return Value();
  if (!fs::exists(to, failed)) {
    if (!fs::copy_file(*from, to, failed)) return Value();
  } else {
    if (!call.arg(2) || fs::equivalent(*from, to, failed)) return Value();
    std::ifstream in(*from, std::ios::binary);
    std::ofstream out(to, std::ios::binary | std::ios::app);
    if (size > 0) out << in.rdbuf();
    out.close();
    if (!in || !out) return Value();
  }
  return Value::integer(static_cast<std::int32_t>(std::min<std::uintmax_t>(size, INT32_MAX)));
}

Value fn_mkdir(Call& call) {
  std::error_code failed;
  return call.truth(fs::create_directory(place_file(call.interp(), call.string(0)), failed));
}

// 0 files and directories, 1 files, -1 directories; names in order of their characters.
Value fn_directory_files(Call& call) {
  const std::string directory =
      call.arg(0) ? place_file(call.interp(), call.string(0)) : std::string(".");
  const std::wstring pattern = call.arg(1) ? folded(call.string(1)) : std::wstring(L"*.*");
  const std::int32_t which = call.arg(2) ? call.integer(2) : 0;
  // In the host *.* means every file, also one without a dot.
  const bool all = pattern == L"*.*" || pattern == L"*";
  std::vector<std::wstring> names;
  const auto add = [&](const std::string& file_name, bool is_directory) {
    std::wstring name = from_utf8(file_name);
    if ((which == 1 && is_directory) || (which == -1 && !is_directory)) return;
    if (all || matches_wildcard(folded(name), pattern)) names.push_back(std::move(name));
  };
  std::error_code failed;
  fs::directory_iterator entries(directory, failed);
  if (failed) return Value();
  add(".", true);
  add("..", true);
  for (; entries != fs::directory_iterator(); entries.increment(failed)) {
    if (failed) break;
    std::error_code ignored;
    add(entries->path().filename().string(), entries->is_directory(ignored));
  }
  std::sort(names.begin(), names.end());
  ListBuilder builder(call.interp().heap());
  for (const std::wstring& name : names) builder.append(call.interp().string(name));
  return builder.finish();
}

// clang-format off
constexpr Builtin kPathFunctions[] = {
    {"vl-filename-base",      1, 1, fn_filename_base,      "(vl-filename-base name)",      "the name without directory and extension"},
    {"vl-filename-directory", 1, 1, fn_filename_directory, "(vl-filename-directory name)", "the directory of a file name"},
    {"vl-filename-extension", 1, 1, fn_filename_extension, "(vl-filename-extension name)", "the extension with its dot; nil when there is none"},
    {"vl-filename-mktemp",    0, 3, fn_filename_mktemp,    "(vl-filename-mktemp [pattern [directory [extension]]])", "a name no file has yet"},
    {"fnsplitl",              1, 1, fn_fnsplitl,           "(fnsplitl name)",              "directory, base and extension in a list"},
    {"vl-file-size",          1, 1, fn_file_size,          "(vl-file-size name)",          "the number of bytes; nil when there is no such file"},
    {"vl-file-systime",       1, 1, fn_file_systime,       "(vl-file-systime name)",       "when the file was changed: year, month, day of the week, day, hour, minute, second, millisecond"},
    {"vl-file-directory-p",   1, 1, fn_file_directory_p,   "(vl-file-directory-p name)",   "T for a directory"},
    {"vl-file-delete",        1, 1, fn_file_delete,        "(vl-file-delete name)",        "removes a file; T when it is gone"},
    {"vl-file-rename",        2, 2, fn_file_rename,        "(vl-file-rename from to)",     "renames a file; nil when to exists"},
    {"vl-file-copy",          2, 3, fn_file_copy,          "(vl-file-copy from to [append])", "copies a file; the number of bytes, nil on failure"},
    {"vl-mkdir",              1, 1, fn_mkdir,              "(vl-mkdir name)",              "makes a directory; T when it is new"},
    {"vl-directory-files",    0, 3, fn_directory_files,    "(vl-directory-files [directory [pattern [kind]]])", "the names in a directory; kind 1 files, -1 directories"},
};
// clang-format on

}  // namespace

std::optional<std::string> find_file(Interpreter& interp, std::wstring_view name) {
  if (interp.services().find_file) return interp.services().find_file(name);
  std::string path = as_path(name);
  std::error_code ignored;
  if (!fs::is_regular_file(path, ignored)) return std::nullopt;
  return path;
}

std::string place_file(Interpreter& interp, std::wstring_view name) {
  return interp.services().place_file ? interp.services().place_file(name) : as_path(name);
}

std::span<const Builtin> path_functions() { return kPathFunctions; }

}  // namespace cad::lisp
