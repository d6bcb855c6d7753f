#include <optional>
#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/data/lisp_groups.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/make_object.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"
#include "host/lisp/error.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

enum class Form : std::uint8_t { kPlain, kPoint, kColor, kFlag, kReadOnly };

/// A property and the group that holds it.
struct PropertyRow {
  std::wstring_view name;
  int code;
  Form form = Form::kPlain;
  std::string_view kinds = "";  ///< by blanks; empty: every kind
  const wchar_t* absent = L"";  ///< value without the group: a number, or "=text"
  std::int64_t bit = 0;         ///< kFlag
};

constexpr std::string_view kTexts = "TEXT ATTRIB ATTDEF";
constexpr std::string_view kCurves = "CIRCLE ARC";

constexpr PropertyRow kRows[] = {
    {L"Handle", 5, Form::kReadOnly},
    {L"ClassName", 0, Form::kReadOnly},
    {L"Layer", 8},
    {L"Linetype", 6, Form::kPlain, "", L"=ByLayer"},
    {L"LinetypeScale", 48, Form::kPlain, "", L"1.0"},
    {L"LineWeight", 370, Form::kPlain, "", L"-1"},
    {L"Color", 62, Form::kColor, "", L"256"},
    {L"Thickness", 39, Form::kPlain, "", L"0.0"},
    {L"Normal", 210, Form::kPoint, "", L"0 0 1"},
    {L"TextString", 1, Form::kPlain, kTexts},
    {L"Contents", 1, Form::kPlain, "MTEXT"},
    {L"TextString", 1, Form::kPlain, "MTEXT"},
    {L"Text", 1, Form::kPlain, "MTEXT"},
    {L"Height", 40, Form::kPlain, kTexts},
    {L"TextHeight", 40, Form::kPlain, "MTEXT"},
    {L"Height", 40, Form::kPlain, "MTEXT"},
    {L"Width", 41, Form::kPlain, "MTEXT", L"0.0"},
    {L"Attachment", 71, Form::kPlain, "MTEXT", L"1"},
    {L"WidthFactor", 41, Form::kPlain, kTexts, L"1.0"},
    {L"Oblique", 51, Form::kPlain, kTexts, L"0.0"},
    {L"Rotation", 50, Form::kPlain, "TEXT ATTRIB ATTDEF MTEXT INSERT", L"0.0"},
    {L"StyleName", 7, Form::kPlain, "TEXT ATTRIB ATTDEF MTEXT", L"=Standard"},
    {L"AlignmentPoint", 11, Form::kPoint, kTexts, L"0 0 0"},
    {L"HorizontalMode", 72, Form::kPlain, kTexts, L"0"},
    {L"VerticalMode", 73, Form::kPlain, "TEXT", L"0"},
    {L"Tag", 2, Form::kPlain, "ATTRIB ATTDEF"},
    {L"Prompt", 3, Form::kPlain, "ATTDEF"},
    {L"Position", 10, Form::kPoint, "TEXT ATTRIB ATTDEF INSERT POINT VERTEX"},
    {L"Location", 10, Form::kPoint, "MTEXT"},
    {L"Position", 10, Form::kPoint, "MTEXT"},
    {L"Center", 10, Form::kPoint, "CIRCLE ARC ELLIPSE"},
    {L"Radius", 40, Form::kPlain, kCurves},
    {L"StartAngle", 50, Form::kPlain, "ARC"},
    {L"EndAngle", 51, Form::kPlain, "ARC"},
    {L"StartPoint", 10, Form::kPoint, "LINE"},
    {L"EndPoint", 11, Form::kPoint, "LINE"},
    {L"BasePoint", 10, Form::kPoint, "RAY XLINE"},
    {L"Elevation", 38, Form::kPlain, "LWPOLYLINE", L"0.0"},
    {L"ConstantWidth", 43, Form::kPlain, "LWPOLYLINE", L"0.0"},
    {L"Closed", 70, Form::kFlag, "LWPOLYLINE POLYLINE", L"0", 1},
    {L"BlockName", 2, Form::kPlain, "INSERT"},
    {L"Name", 2, Form::kReadOnly, "INSERT LAYER STYLE LTYPE APPID DIMSTYLE BLOCK_RECORD UCS VIEW"},
    {L"ScaleX", 41, Form::kPlain, "INSERT", L"1.0"},
    {L"ScaleY", 42, Form::kPlain, "INSERT", L"1.0"},
    {L"ScaleZ", 43, Form::kPlain, "INSERT", L"1.0"},
    {L"IsFrozen", 70, Form::kFlag, "LAYER", L"0", 1},
    {L"IsLocked", 70, Form::kFlag, "LAYER", L"0", 4},
    {L"FileName", 3, Form::kPlain, "STYLE"},
    {L"BigFontFileName", 4, Form::kPlain, "STYLE"},
    {L"TextSize", 40, Form::kPlain, "STYLE"},
    {L"XScale", 41, Form::kPlain, "STYLE"},
};

bool is_of_kind(const PropertyRow& row, std::string_view kind) {
  std::string_view kinds = row.kinds;
  if (kinds.empty()) return true;
  while (!kinds.empty()) {
    const std::size_t blank = std::min(kinds.find(' '), kinds.size());
    if (kinds.substr(0, blank) == kind) return true;
    kinds.remove_prefix(std::min(blank + 1, kinds.size()));
  }
  return false;
}

/// A property of an object, and which coordinate of it: "Position/X".
struct Property {
  AcDbObjectId id;
  const PropertyRow* row;
  int axis = -1;
};

Property property_of(Call& call) {
  Property property{id_of_name(call.ename(0)), nullptr};
  std::wstring_view name = call.string(1);
  if (property.id.isNull() || property.id.isErased())
    lisp::raise_bad_type(L"lentityp", call.arg(0));
  if (const std::size_t slash = name.find(L'/'); slash != std::wstring_view::npos) {
    const std::wstring axis = folded(name.substr(slash + 1));
    if (axis.size() == 1 && axis[0] >= L'x' && axis[0] <= L'z') property.axis = axis[0] - L'x';
    if (property.axis < 0) lisp::raise(L"no such property: " + std::wstring(call.string(1)));
    name = name.substr(0, slash);
  }
  const std::string_view kind = record_kind(property.id);
  for (const PropertyRow& row : kRows) {
    if (!equal_no_case(row.name, name) || !is_of_kind(row, kind)) continue;
    if (property.axis >= 0 && row.form != Form::kPoint) continue;
    property.row = &row;
    return property;
  }
  lisp::raise(L"no such property: " + std::wstring(call.string(1)));
}

Value point_value(Interpreter& interp, const double* numbers, int axis) {
  if (axis >= 0) return Value::real(numbers[axis]);
  return interp.list({Value::real(numbers[0]), Value::real(numbers[1]), Value::real(numbers[2])});
}

Value color_value(Interpreter& interp, std::int64_t index) {
  constexpr std::int64_t kByLayer = 256;
  if (index == kByLayer) return interp.string(L"BYLAYER");
  return interp.string(index == 0 ? L"BYBLOCK" : std::to_wstring(index));
}

Value absent_value(Interpreter& interp, const Property& property) {
  const std::wstring_view absent = property.row->absent;
  if (absent.empty()) return Value();
  if (absent.front() == L'=') return interp.string(absent.substr(1));
  const std::string text = to_utf8(absent);
  if (property.row->form == Form::kPoint) {
    const double normal[] = {0, 0, text.back() == '1' ? 1.0 : 0.0};
    return point_value(interp, normal, property.axis);
  }
  const std::int64_t integer = parse_int(text).value_or(0);
  if (property.row->form == Form::kColor) return color_value(interp, integer);
  if (text.find('.') != std::string::npos) return Value::real(parse_real(text).value_or(0));
  return Value::integer(static_cast<std::int32_t>(integer));
}

/// The text of a MTEXT, which may stand in pieces.
Value whole_text(Interpreter& interp, const RecordGroups& record) {
  std::wstring text;
  for (const Group& group : record.groups())
    if (group.code == 3 || group.code == 1) text += record.text(group);
  return interp.string(text);
}

Value fn_getpropertyvalue(Call& call) {
  const Property property = property_of(call);
  Interpreter& interp = call.interp();
  RecordGroups record;
  record.read(property.id);
  const Group* group = record.find(property.row->code);
  if (!group) return absent_value(interp, property);
  switch (property.row->form) {
    case Form::kPoint:
      return point_value(interp, group->numbers, property.axis);
    case Form::kColor:
      return color_value(interp, group->integer);
    case Form::kFlag:
      return Value::integer((group->integer & property.row->bit) != 0 ? 1 : 0);
    default:
      break;
  }
  if (property.row->code == 1 && record_kind(property.id) == "MTEXT")
    return whole_text(interp, record);
  return group_pair(interp, record, *group).cdr();
}

[[noreturn]] void refuse(Call& call, const std::string& reason) {
  lisp::raise(L"property " + std::wstring(call.string(1)) + L" cannot be set: " +
              from_utf8(reason));
}

GroupView new_color(Call& call) {
  GroupView group;
  group.code = 62;
  group.type = GroupView::Type::kInteger;
  const Value& value = call.arg(2);
  if (value.is_integer()) {
    group.integer = value.integer();
    return group;
  }
  const std::wstring name = folded(call.string(2));
  const auto index = parse_int(to_utf8(name));
  if (name != L"bylayer" && name != L"byblock" && !index) refuse(call, "it is no colour");
  group.integer = name == L"bylayer" ? 256 : index.value_or(0);
  return group;
}

GroupView new_group(Call& call, const Property& property) {
  const PropertyRow& row = *property.row;
  RecordGroups record;
  record.read(property.id);
  const Group* old = record.find(row.code);
  if (row.form == Form::kColor) return new_color(call);
  if (row.form == Form::kFlag) {
    GroupView group;
    group.code = row.code;
    group.type = GroupView::Type::kInteger;
    const std::int64_t flags = old ? old->integer : 0;
    group.integer = call.integer(2) != 0 ? flags | row.bit : flags & ~row.bit;
    return group;
  }
  if (property.axis >= 0) {
    GroupView group;
    group.code = row.code;
    group.type = GroupView::Type::kPoint;
    group.dimensions = old ? old->dimensions : 3;
    if (old) std::copy(old->numbers, old->numbers + 3, group.numbers);
    group.numbers[property.axis] = call.real(2);
    return group;
  }
  return group_of(call.interp().cons(Value::integer(row.code), call.arg(2)));
}

Value fn_setpropertyvalue(Call& call) {
  const Property property = property_of(call);
  if (property.row->form == Form::kReadOnly) refuse(call, "it can only be read");
  const GroupView group = new_group(call, property);
  const Status status = change_object(property.id, std::span(&group, 1));
  if (!status) refuse(call, status.error().message());
  return Value();
}

constexpr lisp::Builtin kPropertyFunctions[] = {
    // name, arguments, function, usage, help
    {"getpropertyvalue", 2, 2, fn_getpropertyvalue, "(getpropertyvalue ename property)",
     "a property of an object: Layer, Color, Linetype, LineWeight, TextString, Height, Position, "
     "Position/X, Radius, StartPoint, ..."},
    {"setpropertyvalue", 3, 3, fn_setpropertyvalue, "(setpropertyvalue ename property value)",
     "sets a property of an object; nil"},
};

}  // namespace

std::span<const lisp::Builtin> property_functions() { return kPropertyFunctions; }

}  // namespace cad
