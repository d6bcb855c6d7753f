#include "host/app/prompt/picking.h"

#include "host/app/select/plan_selection.h"
#include "host/app/select/selection.h"
#include "host/app/session.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/curve.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"

namespace cad {

AcDbObjectId entity_at(DocumentSession& session, const AcGePoint3d& point) {
  return pick_at(session, point);
}

std::optional<AcDbObjectId> named_entity(DocumentSession& session, std::wstring_view typed) {
  if (typed.starts_with(L"_")) typed.remove_prefix(1);
  if (equal_no_case(typed, L"L") || equal_no_case(typed, L"LAST")) {
    const std::vector<AcDbObjectId> last = select(session, L"L", SelectionFilter());
    return last.empty() ? std::nullopt : std::optional(last.front());
  }
  constexpr std::wstring_view kHandle = L"handle:";
  if (typed.size() <= kHandle.size() || !equal_no_case(typed.substr(0, kHandle.size()), kHandle))
    return std::nullopt;
  const auto handle = parse_handle(typed.substr(kHandle.size()));
  AcDbObjectId id;
  if (!handle || session.database().getAcDbObjectId(id, false, AcDbHandle(*handle)) != Acad::eOk ||
      id.isErased() || !is_entity(id))
    return std::nullopt;
  return id;
}

AcGePoint3d place_of(AcDbObjectId entity) {
  if (const auto curve = curve_of(entity)) {
    if (curve->is_bounded()) return curve->point_at(curve->param_at_distance(curve->length() / 2));
    return curve->start_point();
  }
  RecordGroups record;
  const Group* const place = record.read(entity) ? record.find(10) : nullptr;
  if (!place || place->type != Group::Type::kPoint) return {};
  return {place->numbers[0], place->numbers[1], place->numbers[2]};
}

}  // namespace cad
