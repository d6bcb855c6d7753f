#pragma once

#include <string>

namespace cad {

/// What initget has laid down for the next prompt, which uses it up.
struct Initget {
  unsigned bits = 0;
  std::wstring keywords;
};

}  // namespace cad
