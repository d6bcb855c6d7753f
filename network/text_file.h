#pragma once

#include <vector>

#include "network/settings_text.h"
#include "network/strings.h"

namespace KT {

/// Reads a text file into its lines, without their ends (CR LF, LF or CR). Returns 0 on success, 1
/// when the file is not there or cannot be read; `lines` is empty then. The path is found as
/// network::find_settings_file() finds it, the bytes are read as network::detect_encoding() says.
///
/// With `skip`, lines that are blank or begin with ";" behind their blanks are left out, so that a
/// settings file may carry comments. `numbers` receives the number in the file, from 1, of each
/// line that was kept, `encoding` how the file was read.
int ReadTextFileToStringArray(const CString& path, CStringArray& lines, bool skip,
                              std::vector<int>* numbers, network::TextEncoding* encoding);

}  // namespace KT
