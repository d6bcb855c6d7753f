#pragma once

#include <string>
#include <vector>

/// The framework's string and string array, under their own names.
using CString = std::wstring;
using CStringArray = std::vector<CString>;
