#pragma once

#include <optional>
#include <string_view>

#include "module/platform/pipe_library.h"

namespace dim {

/// CDimStyle::KT_getSysVar() that also tells where the record stands; empty when it is not found.
std::optional<network::SettingOrigin> find_project_variable(std::wstring_view name, wchar_t* value);

}  // namespace dim
