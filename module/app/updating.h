#pragma once

/// The LISP functions that bring labels up to date. They read their own arguments and answer RTNORM
/// or RTERROR; none but those of a wrong `updatedim` sets a result.
namespace dim {

/// (dimupdate entity name value [flag [prefix [suffix [separator]]]]): writes the value into every
/// item of that name. With T for the flag prefix, suffix and separator (a string or nil each) are
/// replaced too, otherwise they stay.
int dimupdate();
/// (updatedim type entity): has the type's handler redraw the entity's labels. Never fails, since
/// programs call it over many entities of which few carry labels of the type; without its
/// arguments it says so and gives nil.
int updatedim();
/// (updatePipeInfo entity), (updateWellInfo entity): as updatedim, for all types of a pipe or well.
int updatePipeInfo();
int updateWellInfo();
/// (updateJtDirection pipe): turns the pipe's flow arrows, see manager/flow_arrows.h.
int updateJtDirection();

/// Scale ratio of the drawing at the last call of updateJtDirection (500 means 1:500); 0 before.
double drawing_scale();

}  // namespace dim
