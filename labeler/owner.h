#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "module/platform/objects.h"
#include "module/platform/pipe_library.h"

namespace labeler {

/// What labels belong to.
enum class OwnerKind : std::uint8_t { kPipe, kNode, kRoute };

/// An entity to label, with its data as they were when it was looked at.
struct Owner {
  AcDbObjectId id;
  OwnerKind kind = OwnerKind::kRoute;
  std::unique_ptr<CGxGd> pipe;      ///< of a pipe
  std::unique_ptr<CGxJd> node;      ///< of a node
  std::optional<cad::Curve> curve;  ///< of pipes and routes that have a centre line
  AcGePoint3d position;             ///< of a node
};

/// A pipe, a node, or a curve without data, which may be a route. Nothing for anything else, erased
/// entities included.
std::optional<Owner> owner_of(AcDbObjectId id);
/// A pipe or a node.
std::optional<Owner> network_part(AcDbObjectId id);

/// "pipe 2F3", "node 1A", "route 5C".
CString describe(const Owner& owner);
/// The handle, in upper-case hexadecimal; of erased objects too.
CString handle_of(AcDbObjectId id);

}  // namespace labeler
