// Variables that take more than a check of their bounds to set.

#include <charconv>

#include "host/app/documents.h"
#include "host/app/variables/variable_facts.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/drawing.h"
#include "host/db/layouts.h"
#include "host/db/lens.h"

namespace cad {
namespace {

using lisp::Value;

AcDbDatabase& drawing_of(FactSource& source) { return *source.document.database(); }

bool set_current_layer(FactSource& source, const Value& value) {
  constexpr std::string_view kPart = "AcDbLayerTableRecord";
  constexpr std::int64_t kFrozen = 1;
  if (!value.is_string()) return false;
  Drawing& drawing = drawing_of(source).drawing();
  const Stub* layer = drawing.table_record("LAYER", value.text());
  if (!layer) return false;
  const Lens lens(drawing.bytes_of(*layer), drawing.dialect());
  if ((lens.integer(kPart, 70, 0) & kFrozen) != 0) return false;
  return bool(drawing_of(source).set_header_variable("$CLAYER", lens.text(kPart, 2)));
}

/// 0 ByBlock to 256 ByLayer, by number or name.
std::optional<std::int64_t> color_index(std::wstring_view text) {
  constexpr std::pair<std::wstring_view, std::int64_t> kNames[] = {
      {L"BYBLOCK", 0}, {L"RED", 1},     {L"YELLOW", 2}, {L"GREEN", 3},     {L"CYAN", 4},
      {L"BLUE", 5},    {L"MAGENTA", 6}, {L"WHITE", 7},  {L"BYLAYER", 256},
  };
  for (const auto& [name, index] : kNames)
    if (equal_no_case(name, text)) return index;
  const std::optional<std::int64_t> index = parse_int(to_utf8(text));
  return index && *index >= 0 && *index <= 256 ? index : std::nullopt;
}

/// "RGB:255,128,0".
std::optional<std::int32_t> true_color(std::wstring_view text) {
  constexpr std::wstring_view kPrefix = L"RGB:";
  if (!equal_no_case(text.substr(0, kPrefix.size()), kPrefix)) return std::nullopt;
  const std::string numbers = to_utf8(text.substr(kPrefix.size()));
  const char* at = numbers.data();
  const char* const end = at + numbers.size();
  std::int32_t color = 0;
  for (int i = 0; i < 3; ++i) {
    int part = -1;
    if (i > 0 && (at == end || *at++ != ',')) return std::nullopt;
    at = std::from_chars(at, end, part).ptr;
    if (part < 0 || part > 255) return std::nullopt;
    color = color << 8 | part;
  }
  return at == end ? std::optional(color) : std::nullopt;
}

bool set_current_color(FactSource& source, const Value& value) {
  if (!value.is_string()) return false;
  AcDbDatabase& database = drawing_of(source);
  if (const auto rgb = true_color(value.text())) {
    if (database.drawing().dialect().release < dxf::Release::kR2004) return false;
    database.set_current_true_color(rgb);
    return true;
  }
  const std::optional<std::int64_t> index = color_index(value.text());
  if (!index || !database.set_header_variable("$CECOLOR", *index)) return false;
  database.set_current_true_color(std::nullopt);
  return true;
}

bool set_tile_mode(AcDbDatabase& database, bool tiled) {
  return bool(database.set_header_variable("$TILEMODE", std::int64_t{tiled ? 1 : 0}));
}

bool set_current_layout(FactSource& source, const Value& value) {
  if (!value.is_string()) return false;
  AcDbDatabase& database = drawing_of(source);
  if (equal_no_case(value.text(), L"Model")) return set_tile_mode(database, true);
  const AcDbObjectId space = layout_space(database, value.text());
  if (space.isNull() || !set_tile_mode(database, false)) return false;
  database.set_current_paper(space);
  return true;
}

constexpr VariableSetter kSetters[] = {
    {"CECOLOR", set_current_color},
    {"CLAYER", set_current_layer},
    {"CTAB", set_current_layout},
};

}  // namespace

const VariableSetter* find_variable_setter(std::string_view name) {
  for (const VariableSetter& setter : kSetters)
    if (setter.name == name) return &setter;
  return nullptr;
}

}  // namespace cad
