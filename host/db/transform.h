#pragma once

#include <functional>

#include "host/db/object_id.h"
#include "host/geometry/ge.h"

class AcDbEntity;

namespace cad {

/// What a mirroring map does to texts: draws them mirrored, or puts them readable into the place
/// of the mirrored text.
enum class MirroredText { kMirrored, kReadable };

/// Maps an entity, its vertices or attributes, and the points of its extended data. Only numbers
/// that change are respelled; the identity changes nothing. A dimension takes its block along when
/// no other uses it.
///
/// eCannotScaleNonUniformly: circles, arcs, texts and all that has no shape for the result;
/// eNotApplicable: a kind whose geometry is not known; eInvalidInput: a map that is not finite or
/// flattens space, or a result that is not finite; eWasErased; eOnLockedLayer. Then nothing is
/// changed.
Acad::ErrorStatus transform_object(AcDbObjectId entity, const AcGeMatrix3d& map,
                                   MirroredText text = MirroredText::kMirrored);

/// The same for an entity that was just made: its layer may be locked.
Acad::ErrorStatus transform_copy(AcDbObjectId entity, const AcGeMatrix3d& map,
                                 MirroredText text = MirroredText::kMirrored);

/// The same for an entity that is open for write.
Acad::ErrorStatus transform_entity(AcDbEntity& entity, const AcGeMatrix3d& map, MirroredText text);

/// Moves those defining points (ends, vertices, corners, insertion points; world coordinates) for
/// which `chosen` holds. An entity without points to pull one by one (a circle, a text, a block
/// reference) moves as a whole or stays. eOk also when nothing was chosen; eNotApplicable also for
/// a dimension of which only some points are chosen.
Acad::ErrorStatus stretch_object(AcDbObjectId entity, const AcGeVector3d& by,
                                 const std::function<bool(const AcGePoint3d&)>& chosen);

}  // namespace cad
