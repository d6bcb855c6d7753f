#pragma once

#include "module/platform/lisp.h"
#include "module/platform/objects.h"
#include "module/record/dim_item.h"

/// Arguments of the recording functions, read off the chain that LISP hands over:
///     (dimRec (list pipe "pcgb") label "pipe_len" "36.5" "L=" "m" nil)
/// The parsers answer RTNORM, or RTERROR and a line of trace at the first fault. What follows the
/// last argument expected is ignored.
namespace dim {

/// The annotation environment of a call: what is annotated, and under which type.
struct DimEnvironment {
  AcDbObjectId entity;
  CString type_name;
};

/// (entity type-name) annotation-entity. `item.handle` becomes the annotation entity's handle; it
/// keeps the annotated entity's when the other cannot be opened for reading. `rest` is what
/// follows.
int parseDimEnvironment(const resbuf* arguments, StuDim& item, DimEnvironment& environment,
                        const resbuf*& rest);

/// name value prefix suffix separator, each a string or nil.
int parseDimTexts(const resbuf* arguments, StuDim& item);

/// (entity type-name) name value, the last two strings, of an item without annotation entity.
int parseDimUserItem(const resbuf* arguments, StuDim& item, DimEnvironment& environment);

}  // namespace dim
