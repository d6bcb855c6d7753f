#include "host/app/command/block/block_file.h"

#include "host/app/host.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/insert_drawing.h"

namespace cad {
namespace {

bool is_drawing_name(std::wstring_view name) {
  const std::wstring own = folded(name);
  return own.ends_with(L".dwg") || own.ends_with(L".dxf");
}

/// As named, else with the extension of a drawing.
std::optional<std::string> find_drawing(std::wstring_view named) {
  const std::string name = to_utf8(named);
  if (is_drawing_name(named)) {
    if (auto file = find_support_file(name)) return file;
    const std::string other = folded(named).ends_with(L".dwg") ? ".dxf" : ".dwg";
    return find_support_file(name.substr(0, name.size() - 4) + other);
  }
  for (const char* extension : {".dwg", ".dxf"})
    if (auto file = find_support_file(name + extension)) return file;
  return std::nullopt;
}

/// Without folder and extension.
std::wstring base_name(std::wstring_view file) {
  const std::size_t slash = file.find_last_of(L"/\\");
  if (slash != std::wstring_view::npos) file.remove_prefix(slash + 1);
  if (is_drawing_name(file)) file.remove_suffix(4);
  return std::wstring(file);
}

}  // namespace

BlockSource block_source(std::wstring_view typed) {
  BlockSource source;
  const std::size_t equals = typed.find(L'=');
  if (equals != std::wstring_view::npos) {
    source.wants_file = true;
    source.name = typed.substr(0, equals);
    const std::wstring_view file = typed.substr(equals + 1);
    source.file = find_drawing(file.empty() ? std::wstring_view(source.name) : file);
    return source;
  }
  source.wants_file =
      typed.find_first_of(L"/\\") != std::wstring_view::npos || is_drawing_name(typed);
  source.name = source.wants_file ? base_name(typed) : std::wstring(typed);
  if (!typed.empty()) source.file = find_drawing(typed);
  return source;
}

Result<AcDbObjectId> block_from_file(AcDbDatabase& database, std::wstring_view name,
                                     const std::string& file) {
  AcDbDatabase side(false);
  if (Status read = side.read_file(file); !read) return read.error();
  Acad::ErrorStatus status = Acad::eOk;
  return insert_drawing(database, name, side, status);
}

}  // namespace cad
