#include "host/app/prompt/ucs.h"

#include "host/app/prompt/values.h"
#include "host/app/session.h"

namespace cad {
namespace {

AcGePoint3d variable(DocumentSession& session, std::wstring_view name, AcGePoint3d absent) {
  const lisp::Value value = session.variables.get(session.interpreter(), name);
  return point_of(value).value_or(absent);
}

}  // namespace

AcGeMatrix3d ucs_to_world(DocumentSession& session) {
  const AcGePoint3d origin = variable(session, L"UCSORG", {0, 0, 0});
  const AcGeVector3d x = variable(session, L"UCSXDIR", {1, 0, 0}).asVector();
  const AcGeVector3d y = variable(session, L"UCSYDIR", {0, 1, 0}).asVector();
  const AcGeVector3d z = x.crossProduct(y);
  AcGeMatrix3d matrix;
  if (z.length() > 1e-9) matrix.setCoordSystem(origin, x.normal(), y.normal(), z.normal());
  return matrix;
}

void set_ucs(DocumentSession& session, const AcGeMatrix3d& ucs, std::wstring_view name) {
  lisp::Interpreter& interp = session.interpreter();
  const auto put = [&](std::wstring_view variable, const AcGeVector3d& v) {
    session.variables.put(variable, list_of(interp, AcGePoint3d::kOrigin + v));
  };
  put(L"UCSORG", ucs.translation());
  put(L"UCSXDIR", ucs.column(0));
  put(L"UCSYDIR", ucs.column(1));
  const bool is_world = ucs.isEqualTo(AcGeMatrix3d::kIdentity);
  session.variables.put(L"WORLDUCS", lisp::Value::integer(is_world ? 1 : 0));
  session.variables.put(L"UCSNAME", interp.string(name));
}

AcGeMatrix3d world_to_ucs(DocumentSession& session) { return ucs_to_world(session).inverse(); }

}  // namespace cad
