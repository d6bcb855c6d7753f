#include "host/base/quoted.h"

#include <algorithm>

namespace cad {

std::string excerpt(std::string_view text) {
  constexpr std::size_t kShown = 40;
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  std::size_t end = std::min(kShown, text.size());
  while (end < text.size() && end > kShown - 3 && continues(text[end])) --end;
  std::string shown(text.substr(0, end));
  for (char& c : shown)
    if (static_cast<unsigned char>(c) < ' ' || c == 0x7F) c = '?';
  return end < text.size() ? shown + "..." : shown;
}

std::string quoted(std::string_view text) { return '"' + excerpt(text) + '"'; }

}  // namespace cad
