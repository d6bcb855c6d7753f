#pragma once

#include <span>
#include <vector>

#include "labeler/labeler.h"

/// Labels of many owners.
namespace labeler {

/// Labels all pipes and nodes of the working drawing with the types that fit them.
LabelCounts label_network(Labeler& labeler, std::span<const LabelType* const> types,
                          const LabelOptions& options);

struct UpdateOptions {
  bool dry_run = false;           ///< only find out
  bool overwrite_edited = false;  ///< also labels whose text somebody has changed
};
/// Compares the labels of the owners with their data and, unless that is all, brings them up to
/// date. What is in order is not named. Labels drawn anew keep clear of what is in the drawing.
Findings update_labels(Labeler& labeler, std::span<const AcDbObjectId> owners,
                       const UpdateOptions& options);
/// The same for every entity of the drawing; labels whose owner is gone are named and left alone.
Findings update_all_labels(Labeler& labeler, const UpdateOptions& options);

}  // namespace labeler
