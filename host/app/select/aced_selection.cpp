// Selection sets as modules use them.

#include <algorithm>

#include "host/app/aced.h"
#include "host/app/prompt/ucs.h"
#include "host/app/select/selection.h"
#include "host/lisp/error.h"

namespace cad {
namespace {

/// The set a module names, in the session it is working in.
struct NamedSet {
  DocumentSession* session = DocumentSession::current();
  const lisp::Value* value = nullptr;

  explicit NamedSet(const std::int64_t* name) {
    if (session && name) value = session->selection_sets.find(name[0]);
  }
  explicit operator bool() const { return value != nullptr; }
  lisp::Pickset* operator->() const { return value->pickset(); }
  lisp::Pickset& operator*() const { return *value->pickset(); }
};

bool give_set(DocumentSession& session, Selection selection, ads_name set) {
  const std::int64_t number =
      session.selection_sets.keep(pickset_of(session.interpreter(), std::move(selection)));
  set[0] = number;
  return number != 0;
}

AcGePoint3d point_of(const ads_real* p) { return {p[0], p[1], p[2]}; }

/// Two points, or for polygons and fences the buffers of a list; from the user's coordinates.
std::vector<AcGePoint3d> points_of(DocumentSession& session, std::wstring_view mode,
                                   const void* point1, const void* point2) {
  std::vector<AcGePoint3d> points;
  if (point1 && takes_point_list(mode)) {
    for (const auto* buffer = static_cast<const resbuf*>(point1); buffer; buffer = buffer->rbnext)
      if (buffer->restype == RTPOINT || buffer->restype == RT3DPOINT)
        points.push_back(point_of(buffer->resval.rpoint));
  } else {
    for (const void* point : {point1, point2})
      if (point) points.push_back(point_of(static_cast<const ads_real*>(point)));
  }
  const AcGeMatrix3d to_world = ucs_to_world(session);
  for (AcGePoint3d& point : points) point.transformBy(to_world);
  return points;
}

/// Whether the first point is a pair of prompts instead.
bool has_prompts(std::wstring_view mode) { return mode.find(L":$") != std::wstring_view::npos; }

std::wstring_view prompt_of(const void* prompts, std::size_t which) {
  const ACHAR* const text = prompts ? static_cast<const ACHAR* const*>(prompts)[which] : nullptr;
  return text ? text : std::wstring_view();
}

/// What a selection that ended in a LISP error answers.
int failure(const lisp::LispError& error) {
  const bool cancelled = !error.catchable || error.message == L"Function cancelled";
  return cancelled ? RTCAN : RTREJ;
}

}  // namespace
}  // namespace cad

using cad::NamedSet;

int acedSSGet(const ACHAR* how, const void* point1, const void* point2, const resbuf* filter,
              ads_name set) {
  if (!set) return RTREJ;
  set[0] = set[1] = 0;
  cad::DocumentSession* const session = cad::DocumentSession::current();
  if (!session) return RTREJ;
  cad::Result<cad::SelectionFilter> compiled = cad::SelectionFilter::from_chain(filter);
  if (!compiled) return RTREJ;
  try {
    const std::wstring_view mode = how ? how : L"";
    cad::SelectionRequest request{mode, {}};
    std::vector<AcGePoint3d> points;
    if (cad::has_prompts(mode)) {
      request.prompt = cad::prompt_of(point1, 0);
      request.remove_prompt = cad::prompt_of(point1, 1);
    } else {
      points = cad::points_of(*session, mode, point1, point2);
      request.points = points;
    }
    cad::Selection found = cad::select(*session, request, *compiled);
    if (found.empty()) return RTERROR;
    return cad::give_set(*session, std::move(found), set) ? RTNORM : RTERROR;
  } catch (const cad::lisp::LispError& error) {
    return cad::failure(error);
  }
}

int acedSSFree(const ads_name set) {
  cad::DocumentSession* const session = cad::DocumentSession::current();
  return session && set && session->selection_sets.free(set[0]) ? RTNORM : RTERROR;
}

int acedSSLength(const ads_name set, std::int32_t* length) {
  const NamedSet named(set);
  if (!named || !length) return RTERROR;
  *length = static_cast<std::int32_t>(named->enames.size());
  return RTNORM;
}

int acedSSName(const ads_name set, std::int32_t index, ads_name entity) {
  const NamedSet named(set);
  if (!named || !entity || index < 0 || static_cast<std::size_t>(index) >= named->enames.size())
    return RTERROR;
  entity[0] = static_cast<std::int64_t>(named->enames[static_cast<std::size_t>(index)]);
  entity[1] = 0;
  return RTNORM;
}

int acedSSAdd(const ads_name entity, const ads_name set, ads_name result) {
  cad::DocumentSession* const session = cad::DocumentSession::current();
  if (!session || !result) return RTERROR;
  AcDbObjectId id;
  if (entity && acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
  if (set) {
    const NamedSet named(set);
    if (!named || id.isNull()) return RTERROR;
    cad::add_member(*named, id);
    result[0] = set[0];
    result[1] = 0;
    return RTNORM;
  }
  result[1] = 0;
  try {
    cad::Selection members;
    members.add(id);
    return cad::give_set(*session, std::move(members), result) ? RTNORM : RTERROR;
  } catch (const cad::lisp::LispError&) {
    return RTERROR;
  }
}

int acedSSDel(const ads_name entity, const ads_name set) {
  const NamedSet named(set);
  AcDbObjectId id;
  if (!named || !entity || acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
  return cad::remove_member(*named, id) ? RTNORM : RTERROR;
}

int acedSSMemb(const ads_name entity, const ads_name set) {
  const NamedSet named(set);
  AcDbObjectId id;
  if (!named || !entity || acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
  return cad::contains(*named, id) ? RTNORM : RTERROR;
}
