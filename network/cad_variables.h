#pragma once

#include "network/strings.h"

/// System variables of the current drawing. Names have any letter case.
namespace KT {

/// False, and `value` as it was, when no drawing is open or it has no integer variable of the name.
bool GetCADVar(const wchar_t* name, int& value);

/// The same for a text variable.
bool GetCADStrVar(const wchar_t* name, CString& value);

}  // namespace KT
