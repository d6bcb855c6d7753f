#pragma once

#include <cstdint>

#include "host/db/resbuf.h"

/// LISP functions served by modules.
///
/// A module defines functions with acedDefun() while it serves kLoadDwgMsg; they belong to the
/// current document. When LISP calls one, the module's entry gets kInvkSubrMsg (or the function
/// given to acedRegFunc() is called); it asks acedGetFunCode() for the code, acedGetArgs() for the
/// arguments, and leaves a result with one of the acedRet calls, of which the last one counts.
///
/// Every call returns RTNORM or RTERROR unless it says otherwise.

/// Defines a function of the current document, in place of whatever the name meant. The name may
/// have any letter case; "C:NAME" is a command. Codes are 0 to 32767. RTERROR without a current
/// document, outside a module's messages, for an empty name or a code out of range.
int acedDefun(const ACHAR* name, short code);
/// Removes the name. RTERROR when it is not, or no longer, this module's function of that code.
int acedUndef(const ACHAR* name, short code);
/// From now on calls `function` for the code instead of sending kInvkSubrMsg; with a null function
/// the message again. Counts for every document. The function's result is the call's result:
/// RTNORM or RSRSLT for success.
int acedRegFunc(int (*function)(), short code);

/// Code of the function being served; RTERROR when none is.
int acedGetFunCode();
/// Its arguments, null when it was called without any. The top level is a bare sequence, a list is
/// wrapped in RTLB ... RTLE, a list of 2 or 3 reals is an RTPOINT or RT3DPOINT. The host owns the
/// chain: it is valid until the function returns, and acutRelRb() on it has no effect.
resbuf* acedGetArgs();

/// The result of the function being served. Values are copied. RTERROR outside of an invocation.
/// Without any of these calls the result is nil.
int acedRetVoid();  ///< the blank value: nothing is echoed, yet it is not nil
int acedRetNil();
int acedRetT();
int acedRetInt(int value);
int acedRetReal(ads_real value);
int acedRetStr(const ACHAR* text);
int acedRetPoint(const ads_point point);
/// `type` is RTENAME or RTPICKS.
int acedRetName(const ads_name name, int type);
/// The value of one buffer.
int acedRetVal(const resbuf* value);
/// A chain that is one bracketed list gives that list; several items become one list. RTERROR for
/// null, unbalanced brackets or a type LISP cannot hold, and the result stays what it was.
int acedRetList(const resbuf* chain);

/// The value of a LISP symbol of the current document as a new chain, freed by the caller. RTNORM
/// and a null chain for a symbol that is unset or nil; RTERROR for what buffers cannot hold
/// (functions), and outside of an invocation.
int acedGetSym(const ACHAR* name, resbuf** value);
/// Sets a LISP symbol of the current document; null unsets it.
int acedPutSym(const ACHAR* name, const resbuf* value);

/// Calls a LISP function of the current document: `arguments` is a chain that begins with its name
/// (RTSTR), then come the arguments as acedGetArgs() has them. RTNORM and the value as a new chain,
/// freed by the caller, null for nil and for what buffers cannot hold. RTERROR when there is no
/// such function and for arguments LISP cannot hold; for an error of the function, too, which is
/// printed on the command line then: *error* does not run. May be called outside of an invocation.
int acedInvoke(const resbuf* arguments, resbuf** result);

/// Selection sets. A set made by these calls lives until acedSSFree() or the end of its document;
/// at most 128 live at a time (RTERROR beyond).
///
/// `how` is "X" or "_X" for the whole drawing; null, "I" and the other modes ask the user, whose
/// answer is given beforehand (cad::Host::set_selection). `filter` is a chain of groups as ssget
/// knows it, or null. With ":$" in `how` the user is asked with two prompts of the caller, an array
/// `const ACHAR* [2]` given as `point1`: for selecting and for removing, null for the usual one.
/// RTNORM; RTERROR and a null set when nothing was selected; RTCAN when the user broke off or
/// cannot be asked; RTREJ for a filter or mode that makes no sense.
int acedSSGet(const ACHAR* how, const void* point1, const void* point2, const resbuf* filter,
              ads_name set);
int acedSSFree(const ads_name set);
int acedSSLength(const ads_name set, std::int32_t* length);
/// Member `index` from 0. RTERROR past the end.
int acedSSName(const ads_name set, std::int32_t index, ads_name entity);
/// Adds the entity; with both null a new, empty set is made, with a null `set` one of the entity
/// alone. `result` is the set, which may be the same variable.
int acedSSAdd(const ads_name entity, const ads_name set, ads_name result);
/// RTERROR when the entity is no member.
int acedSSDel(const ads_name entity, const ads_name set);
/// RTNORM when the entity is a member.
int acedSSMemb(const ads_name entity, const ads_name set);

namespace cad {

/// What the entry made of kInvkSubrMsg, beside the status it returns: RSRSLT for success; RSERR,
/// RTERROR and everything else end the calling LISP program with an error. An entry that does not
/// call this is judged by its status: kRetOK or RSRSLT is success.
void set_invoke_result(int result);

}  // namespace cad
