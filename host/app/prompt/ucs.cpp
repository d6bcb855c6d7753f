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

AcGeMatrix3d world_to_ucs(DocumentSession& session) { return ucs_to_world(session).inverse(); }

}  // namespace cad
