#include "module/app/lisp_functions.h"

#include <iterator>

#include "module/app/deleting.h"
#include "module/app/label_placement.h"
#include "module/app/local_style.h"
#include "module/app/recording.h"
#include "module/app/trial.h"
#include "module/app/updating.h"
#include "module/platform/lisp.h"

namespace dim {
namespace {

// The row is the code: grep for numbers before moving one.
// `dimupdate` (items of one name) and `updatedim` (all of one type) are two functions.
constexpr LispFunction kLispFunctions[] = {
    {L"", nullptr, 0},
    {L"dimRec", dimRec, 0},
    {L"dimGeRec", dimGeRec, 0},
    {L"dimupdate", dimupdate, 0},
    {L"updatedim", updatedim, 0},
    {L"dimDel", dimDel, 0},
    {L"t1", t1, 0},
    {L"jgbzUpInfo", jgbzUpInfo, 0},
    {L"updateJtDirection", updateJtDirection, 0},
    {L"dimDelAll", dimDelAll, 0},
    {L"dimUserRec", dimUserRec, 0},
    {L"dimDelAllInfo", dimDelAllInfo, 0},
    {L"getDimLocalStyle", getDimLocalStyle, 0},
    {L"updatePipeInfo", updatePipeInfo, 0},
    {L"updateWellInfo", updateWellInfo, 0},
};
static_assert(std::size(kLispFunctions) == 15);

constexpr short kFirstCode = 1;
constexpr short kEndCode = static_cast<short>(std::size(kLispFunctions));

}  // namespace

std::span<const LispFunction> lisp_functions() { return kLispFunctions; }

int loadLispFunctions() {
  for (short code = kFirstCode; code < kEndCode; ++code) {
    const LispFunction& function = kLispFunctions[code];
    if (acedDefun(function.name, code) != RTNORM) return RTERROR;
    if (function.register_as_function) acedRegFunc(function.handler, code);
  }
  return RTNORM;
}

int unloadLispFunctions() {
  for (short code = kFirstCode; code < kEndCode; ++code) {
    acedUndef(kLispFunctions[code].name, code);  // a user's defun may have taken the name
  }
  return RTNORM;
}

int invokeLispFunction() {
  acedRetVoid();
  const int code = acedGetFunCode();
  if (code < kFirstCode || code >= kEndCode) return RTERROR;
  return kLispFunctions[code].handler() == RTNORM ? RSRSLT : RSERR;
}

}  // namespace dim
