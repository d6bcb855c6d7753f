#include "module/manager/flow_arrows.h"

#include <memory>
#include <numbers>
#include <optional>
#include <utility>

#include "module/manager/dim_manager.h"
#include "module/platform/geometry.h"
#include "module/platform/lisp.h"
#include "module/platform/opened.h"
#include "module/platform/pipe_library.h"
#include "module/platform/trace.h"
#include "module/record/record.h"
#include "module/record/record_table.h"
#include "module/registry/update_service.h"

namespace dim {
namespace {

constexpr wchar_t kArrowItem[] = L"jt";

/// The values of which the higher marks the upstream end of the pipe. A water supply's heads count
/// between nodes of a water supply only.
bool comparison_values(const CGxGd& pipe, const CGxJd& start_node, const CGxJd& end_node,
                       double& start, double& end) {
  if (pipe.IsKindOf(CGxJsGd::GetThisClass())) {
    const CRuntimeClass* const water_node = CGxJsJd::GetThisClass();
    if (!start_node.IsKindOf(water_node) || !end_node.IsKindOf(water_node)) return false;
  }
  return network::flow_ends(pipe, start, end);
}

/// Angle of the flow in the XY plane, where the pipe passes nearest to the place.
std::optional<double> flow_angle(AcDbObjectId pipe_id, const AcGePoint3d& place) {
  const std::unique_ptr<CGxGd> pipe = network::open_pipe(pipe_id);
  if (!pipe) return std::nullopt;
  std::pair<AcDbObjectId, AcDbObjectId> wells;
  if (Gx::getWellAtGx(pipe_id, wells) != Acad::eOk) {
    trace(L"取检查井失败!");
    return std::nullopt;
  }
  const std::unique_ptr<CGxJd> start_node = network::open_node(wells.first);
  const std::unique_ptr<CGxJd> end_node = network::open_node(wells.second);
  if (!start_node || !end_node) return std::nullopt;
  double start = 0.0;
  double end = 0.0;
  AcGeVector3d along;
  if (!comparison_values(*pipe, *start_node, *end_node, start, end)) return std::nullopt;
  if (!Gx::GetCurFirstDeriv(pipe_id, place, along)) return std::nullopt;
  const double angle = along.angleOnPlane(AcGePlane::kXYPlane);
  return start > end ? angle : angle + std::numbers::pi;
}

/// Where the arrow stands; nothing when it does not open as a block reference.
std::optional<AcGePoint3d> place_of(AcDbObjectId arrow) {
  const Opened<AcDbBlockReference> opened(arrow, AcDb::kForRead);
  return opened ? std::optional(opened->position()) : std::nullopt;
}

/// Turns the arrow of one record, if it has one.
int turn_arrow_of_record(const AcDbObjectId& record_id, AcDbObjectId pipe) {
  CDimRecord record;
  if (record.open(record_id, AcDb::kForRead, false) != Acad::eOk) {
    trace(L"打开实体失败!");
    return RTERROR;
  }
  StuDim item;
  if (record.getAt(kArrowItem, item) != Acad::eOk) return RTNORM;
  const AcDbObjectId arrow = object_of_handle(item.handle.c_str());
  if (arrow.isNull()) {
    trace(L"箭头已经被删除，打开实体失败!");
    return RTERROR;
  }
  const std::optional<AcGePoint3d> place = place_of(arrow);
  if (!place) return RTERROR;
  const std::optional<double> angle = flow_angle(pipe, *place);
  if (!angle) {
    trace(L"计算流量切向角失败!");
    return RTNORM;
  }
  const Opened<AcDbBlockReference> opened(arrow, AcDb::kForWrite);
  if (!opened) return RTERROR;
  opened->setRotation(*angle);  // refuses what is no number, and the arrow stays as it is
  return RTNORM;
}

}  // namespace

int turn_flow_arrows(AcDbObjectId pipe) {
  CDimManager manager(pipe);
  if (manager.openStatus() != Acad::eOk) return RTERROR;
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  CDimupateRegisiter& registry = CDimUpdateServ::getInstance().getDimRegServ();
  const AcDbObjectId dictionary = manager.getExtensionDictionaryId();
  if (table.open(&registry, dictionary, AcDb::kForRead, 0) != Acad::eOk) return RTERROR;
  if (table.newIterator(walk) != Acad::eOk) return RTERROR;
  for (walk.start(); !walk.done(); walk.step()) {
    AcDbObjectId record_id;
    walk.GetObjectId(record_id);
    if (turn_arrow_of_record(record_id, pipe) != RTNORM) return RTERROR;
  }
  return RTNORM;
}

}  // namespace dim
