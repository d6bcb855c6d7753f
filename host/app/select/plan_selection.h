#pragma once

#include <span>
#include <vector>

#include "host/app/session.h"
#include "host/geometry/plan_area.h"

/// Selecting by geometry among the entities of the current space that are drawn: not erased, not
/// invisible, on layers that are on and thawed. All points are those of the world, as seen along
/// its Z axis; what counts is the true shape, see host/db/entity_shape.h.
namespace cad {

/// What lies entirely in the area, or, with `crossing`, in or across its border; newest first.
std::vector<AcDbObjectId> select_area(DocumentSession& session, const PlanArea& area,
                                      bool crossing);
std::vector<AcDbObjectId> select_window(DocumentSession& session, const AcGePoint3d& p1,
                                        const AcGePoint3d& p2, bool crossing);
std::vector<AcDbObjectId> select_polygon(DocumentSession& session,
                                         std::span<const AcGePoint3d> corners, bool crossing);

/// What a line through the points meets, in the order in which it is met.
struct FenceHit {
  AcDbObjectId entity;
  std::vector<AcGePoint3d> places;  ///< where, in order along the fence
};
std::vector<FenceHit> select_fence(DocumentSession& session, std::span<const AcGePoint3d> points);

/// Half the side of the pick box in drawing units: PICKBOX pixels of a screen that shows VIEWSIZE.
double pick_aperture(DocumentSession& session);
/// The entity nearest to the point within the pick box, of several equally near ones the newest;
/// null when there is none.
AcDbObjectId pick_at(DocumentSession& session, const AcGePoint3d& point);
/// All within the pick box, the nearest first.
std::vector<AcDbObjectId> pick_all_at(DocumentSession& session, const AcGePoint3d& point);

/// What nentsel answers with.
struct NestedPick {
  AcDbObjectId picked;                   ///< the entity of the space; null when nothing was hit
  AcDbObjectId entity;                   ///< what was hit in it: a part of a block, an attribute, a
                                         ///< vertex of an old polyline, or `picked` itself
  AcGeMatrix3d map;                      ///< from the entity's own block to the world
  std::vector<AcDbObjectId> references;  ///< block references around it, the innermost first
};
NestedPick nested_pick_at(DocumentSession& session, const AcGePoint3d& point);

}  // namespace cad
