#pragma once

/// The LISP functions that record annotations. They read their own arguments, print what went
/// wrong, and answer RTNORM or RTERROR.
namespace dim {

/// (dimRec (entity type) annotation name value prefix suffix separator), the last five strings or
/// nil: a text, or a piece of one.
int dimRec();
/// (dimGeRec (entity type) annotation): an entity without text.
int dimGeRec();
/// (dimUserRec (entity type) name value): information without annotation entity.
int dimUserRec();

}  // namespace dim
