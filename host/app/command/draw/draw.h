#pragma once

#include <optional>
#include <span>
#include <vector>

#include "host/app/command/command_line.h"
#include "host/db/group_list.h"

namespace cad {

/// The plane the user works in: what is flat lies in it, or parallel to it.
class WorkPlane {
 public:
  explicit WorkPlane(const CommandLine& line);

  /// A point of the world in the user's coordinates, and back.
  AcGePoint3d user(const AcGePoint3d& world) const { return to_user_ * world; }
  AcGePoint3d world(const AcGePoint3d& user) const { return to_world_ * user; }
  /// A point in the user's coordinates as a flat object stores it.
  AcGePoint3d stored(const AcGePoint3d& user) const { return to_stored_ * user; }
  /// A direction of the user's X, Y plane as a flat object stores it.
  double stored_angle(double user) const;
  /// Adds what all flat objects have: normal and thickness.
  GroupList& flat(GroupList& groups) const;
  bool is_world() const { return normal_.isEqualTo(AcGeVector3d::kZAxis); }
  const AcGeVector3d& normal() const { return normal_; }

 private:
  AcGeMatrix3d to_world_;
  AcGeMatrix3d to_user_;
  AcGeMatrix3d to_stored_;
  AcGeVector3d normal_;
  double thickness_;
};

/// A vertex of a polyline in the user's coordinates.
struct DrawnVertex {
  AcGePoint3d point;
  double start_width = 0.0;
  double end_width = 0.0;
  double bulge = 0.0;
};

/// Draws an entity in the current space. Null, and the command has refused, when that failed.
AcDbObjectId draw(CommandLine& line, const GroupList& groups,
                  std::span<const GroupList> parts = {});
AcDbObjectId draw_line(CommandLine& line, const AcGePoint3d& from, const AcGePoint3d& to);
/// A flat polyline, of the kind that PLINETYPE and the drawing's release ask for.
AcDbObjectId draw_polyline(CommandLine& line, std::span<const DrawnVertex> vertices, bool closed);
/// Takes back the last thing a command has drawn.
void erase_last(std::vector<AcDbObjectId>& drawn);

/// A number as prompts show it.
std::wstring shown(const CommandLine& line, double number);
std::wstring shown_angle(const CommandLine& line, double radians);

// Plane geometry in the user's coordinates; Z is left alone.
double direction(const AcGePoint3d& from, const AcGePoint3d& to);
double flat_distance(const AcGePoint3d& from, const AcGePoint3d& to);
AcGePoint3d polar(const AcGePoint3d& from, double angle, double distance);
/// The centre of the circle through three points; nothing when they are on one line.
std::optional<AcGePoint3d> circle_centre(const AcGePoint3d& a, const AcGePoint3d& b,
                                         const AcGePoint3d& c);
/// Counter-clockwise from one direction to another, above 0 and at most a full turn.
double sweep(double from, double to);

}  // namespace cad
