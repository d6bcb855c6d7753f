#pragma once

#include <string>
#include <string_view>

namespace cad {

/// What a message shows of a text that came from a file: at most its first 40 bytes, "..." for the
/// rest, and '?' for control characters. UTF-8 is not cut within a character.
std::string excerpt(std::string_view text);

/// The same in double quotes.
std::string quoted(std::string_view text);

}  // namespace cad
