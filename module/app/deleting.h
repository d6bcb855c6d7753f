#pragma once

/// The LISP functions that remove labels or forget them. They read their own arguments, print
/// nothing of their own and answer RTNORM, or RTERROR or 0 for failure.
namespace dim {

/// (dimDel entity type): erases the labels of the type, and their record.
int dimDel();
/// (dimDelAll entity): erases the labels of all types that no other program keeps composed.
int dimDelAll();
/// (dimDelAllInfo entity): forgets all labels, which stay in the drawing.
int dimDelAllInfo();

}  // namespace dim
