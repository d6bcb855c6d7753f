#include "module/app/lisp_functions.h"

#include <cstddef>
#include <iterator>

#include "module/app/recording.h"
#include "module/platform/lisp.h"

namespace dim {
namespace {

/// Stands in a row whose function does not exist yet: says so and fails.
template <std::size_t kCode>
int not_built() {
  acutPrintf(L"\n%s: not built yet", lisp_functions()[kCode].name);
  return RTERROR;
}

// The row is the code: grep for numbers before moving one.
// `dimupdate` (items of one name) and `updatedim` (all of one type) are two functions.
constexpr LispFunction kLispFunctions[] = {
    {L"", nullptr, 0},
    {L"dimRec", dimRec, 0},
    {L"dimGeRec", dimGeRec, 0},
    {L"dimupdate", not_built<3>, 0},
    {L"updatedim", not_built<4>, 0},
    {L"dimDel", not_built<5>, 0},
    {L"t1", not_built<6>, 0},
    {L"jgbzUpInfo", not_built<7>, 0},
    {L"updateJtDirection", not_built<8>, 0},
    {L"dimDelAll", not_built<9>, 0},
    {L"dimUserRec", dimUserRec, 0},
    {L"dimDelAllInfo", not_built<11>, 0},
    {L"getDimLocalStyle", not_built<12>, 0},
    {L"updatePipeInfo", not_built<13>, 0},
    {L"updateWellInfo", not_built<14>, 0},
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
