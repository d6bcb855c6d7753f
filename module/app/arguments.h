#pragma once

#include "module/platform/lisp.h"
#include "module/platform/objects.h"
#include "module/record/dim_item.h"

/// Arguments of LISP calls, read off the chain that LISP hands over. What follows the last argument
/// expected is ignored.
namespace dim {

// Single buffers.

/// Whether there is a buffer, and of that type.
inline bool has_type(const resbuf* buffer, short type) { return buffer && buffer->restype == type; }
/// Of a buffer RTSTR.
CString string_of(const resbuf& buffer);
/// Of a buffer RTENAME; null when the name is of no object.
AcDbObjectId entity_of(const resbuf& buffer);

/// A text argument: where it goes, and what is traced when it is not what it must be.
struct TextArgument {
  CString StuDim::*field;
  const wchar_t* fault;
};

// The recording functions:
//     (dimRec (list pipe "pcgb") label "pipe_len" "36.5" "L=" "m" nil)
// The parsers answer RTNORM, or RTERROR and a line of trace at the first fault.

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
