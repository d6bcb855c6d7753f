// Coordinate systems, and the box of a text.

#include <cmath>
#include <optional>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/prompt/ucs.h"
#include "host/app/prompt/values.h"
#include "host/app/session.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/db/text_box.h"
#include "host/db/text_style.h"
#include "host/geometry/ocs.h"
#include "host/lisp/error.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

enum SystemCode { kWorld, kUser, kDisplay, kPaper };

/// Kinds whose points are stored in the coordinate system of their normal; all others store those
/// of the world.
constexpr std::string_view kFlatKinds[] = {"TEXT",   "ATTRIB",     "ATTDEF", "ARC",
                                           "CIRCLE", "INSERT",     "SOLID",  "TRACE",
                                           "SHAPE",  "LWPOLYLINE", "HATCH"};

AcGeMatrix3d entity_axes(AcDbObjectId id) {
  const Drawing& drawing = StubStore::drawing_of(*id.stub());
  const std::string_view kind = drawing.kind_name(*id.stub());
  const EntityFields fields(drawing.bytes_of(*id.stub()), drawing.dialect());
  constexpr int kSpatial = 8 | 16 | 64;  // polylines in space and meshes
  bool flat = kind == "POLYLINE" && !(fields.integer(70) & kSpatial);
  for (const std::string_view each : kFlatKinds) flat = flat || each == kind;
  return flat ? ocs_to_wcs(fields.normal()) : AcGeMatrix3d();
}

/// From what is seen to the world: X to the right, Z towards the eye, the origin at the target.
AcGeMatrix3d display_axes(DocumentSession& session) {
  Interpreter& interp = session.interpreter();
  const auto variable = [&](std::wstring_view name, const AcGePoint3d& absent) {
    return point_of(session.variables.get(interp, name)).value_or(absent);
  };
  const AcGeMatrix3d ucs = ucs_to_world(session);
  const AcGeVector3d direction = ucs * variable(L"VIEWDIR", {0, 0, 1}).asVector();
  const Value twist = session.variables.get(interp, L"VIEWTWIST");
  AcGeMatrix3d axes = ocs_to_wcs(direction);
  if (twist.is_number() && twist.number() != 0.0)
    axes *= AcGeMatrix3d::rotation(-twist.number(), AcGeVector3d::kZAxis);
  return axes.setTranslation((ucs * variable(L"TARGET", {0, 0, 0})).asVector());
}

/// From the coordinate system that an argument names to the world.
AcGeMatrix3d to_world(Call& call, std::size_t i) {
  DocumentSession& session = DocumentSession::of(call);
  const Value& argument = call.arg(i);
  if (argument.is_ename()) return entity_axes(id_of_name(argument.ename()));
  if (argument.is_cons()) {
    const std::optional<AcGePoint3d> normal = point_of(argument);
    if (!normal || normal->asVector().isZeroLength())
      lisp::raise_bad_type(L"2D/3D point", argument);
    return ocs_to_wcs(normal->asVector());
  }
  switch (call.integer(i)) {
    case kWorld:
      return {};
    case kUser:
      return ucs_to_world(session);
    case kDisplay:
      return display_axes(session);
    case kPaper:
      lisp::raise(L"trans: there is no paper space viewport to take coordinate system 3 from");
    default:
      lisp::raise_bad_value(L"coordinate system 0 to 3", argument);
  }
}

Value fn_trans(Call& call) {
  const std::optional<AcGePoint3d> given = point_of(call.arg(0));
  if (!given) lisp::raise_bad_type(L"2D/3D point", call.arg(0));
  const AcGeMatrix3d map = to_world(call, 2).inverse() * to_world(call, 1);
  if (call.arg(3)) return list_of(call.interp(), AcGePoint3d::kOrigin + map * given->asVector());
  return list_of(call.interp(), map * *given);
}

/// The groups of a text as textbox is given them; what is missing is its style's.
class TextGroups {
 public:
  TextGroups(Call& call, DocumentSession& session) : list_(call.list(0)), session_(session) {
    const Value& style = find(7);
    std::wstring name = L"Standard";
    if (style.is_string()) {
      name = style.text();
    } else {
      const Value current = session.variables.get(session.interpreter(), L"TEXTSTYLE");
      if (current.is_string()) name = current.text();
    }
    style_ = session.database().drawing().table_record("STYLE", name);
  }

  const Value& find(int code) const {
    for (const Value& pair : list_)
      if (pair.car().is_integer() && pair.car().integer() == code) return pair.cdr();
    return lisp::kNil;
  }

  double real(int code, double absent) const {
    const Value& value = find(code);
    return value.is_number() ? value.number() : absent;
  }

  double height() const {
    if (find(40).is_number()) return find(40).number();
    if (const double fixed = of_style(40, 0.0); fixed > 0.0) return fixed;
    const Value size = session_.variables.get(session_.interpreter(), L"TEXTSIZE");
    return size.is_number() ? size.number() : 1.0;
  }

  TextStyleRef style() const { return text_style(AcDbObjectId(style_)); }

  double of_style(int code, double absent) const {
    if (!style_) return absent;
    const Drawing& drawing = session_.database().drawing();
    return EntityFields(drawing.bytes_of(*style_), drawing.dialect()).real(code, absent);
  }

 private:
  lisp::List list_;
  DocumentSession& session_;
  Stub* style_ = nullptr;
};

/// As if the text stood at the origin, unturned.
Value fn_textbox(Call& call) {
  const TextGroups text(call, DocumentSession::of(call));
  const Value& content = text.find(1);
  if (!content.is_string()) return Value();
  constexpr double kDegree = 3.14159265358979323846 / 180;
  const TextBox box = line_box(content.text(), text.height(), text.real(41, text.of_style(41, 1.0)),
                               text.real(51, text.of_style(50, 0.0) * kDegree), text.style());
  Interpreter& interp = call.interp();
  return interp.list(
      {list_of(interp, {box.left, box.bottom, 0.0}), list_of(interp, {box.right, box.top, 0.0})});
}

constexpr lisp::Builtin kCoordinateFunctions[] = {
    {"trans", 3, 4, fn_trans, "(trans point from to [displacement])",
     "a point in another coordinate system: 0 world, 1 user, 2 display, an entity's own by its "
     "name, "
     "or that of a normal; with displacement as a vector"},
    {"textbox", 1, 1, fn_textbox, "(textbox groups)",
     "two corners of the box around a text, as if it stood at the origin, unturned"},
};

}  // namespace

std::span<const lisp::Builtin> coordinate_functions() { return kCoordinateFunctions; }

}  // namespace cad
