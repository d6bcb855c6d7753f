#pragma once

#include <string_view>

#include "network/strings.h"

namespace Gx {

/// A value of the pipe library's settings store, the default when there is none. The store is two
/// private profile files: QrmvPz.ini in the project's folder, and sys\QrmvPz.ini in the
/// installation for what the project does not set.
CString getQrmvPz(const wchar_t* key, const wchar_t* default_text, const wchar_t* section);

}  // namespace Gx
