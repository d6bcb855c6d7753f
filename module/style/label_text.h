#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <memory_resource>
#include <string>
#include <string_view>

#include "module/platform/text.h"

namespace dim {

/// Drops the zeros at the end of a text that holds a point, and the point if they reached it. The
/// point is looked for in the whole text, a prefix included; the first character stays.
template <class String>
void drop_zeros(String& text) {
  if (text.find(L'.') == String::npos) return;
  std::size_t size = text.size();
  while (size > 1 && text[size - 1] == L'0') --size;
  if (size > 1 && text[size - 1] == L'.') --size;
  text.resize(size);
}

/// Turns a-z into A-Z; every other character stays.
template <class String>
void make_upper_case(String& text) {
  for (auto& c : text)
    if (c >= L'a' && c <= L'z') c -= L'a' - L'A';
}

/// A label while it is put together, on the stack: only str() makes a string of its own.
///     LabelText label;
///     label.text(prefix).fixed(length, 2).drop_zeros();
///     return label.str();
class LabelText {
 public:
  LabelText() { text_.reserve(kRoom - 1); }
  LabelText(const LabelText&) = delete;
  LabelText& operator=(const LabelText&) = delete;

  LabelText& text(std::wstring_view more) {
    text_ += more;
    return *this;
  }
  LabelText& ascii(std::string_view more) {
    append_ascii(text_, more);
    return *this;
  }
  LabelText& fixed(double value, int decimals) {  ///< "%.*lf"
    append_fixed(text_, value, decimals);
    return *this;
  }
  LabelText& whole(int value) {  ///< "%d"
    std::array<char, 12> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    append_ascii(text_, {digits.data(), end});
    return *this;
  }
  LabelText& drop_zeros() {
    dim::drop_zeros(text_);
    return *this;
  }
  void to_upper_case() { make_upper_case(text_); }

  std::wstring_view view() const { return text_; }
  const wchar_t* c_str() const { return text_.c_str(); }
  CString str() const { return CString(text_); }

 private:
  static constexpr std::size_t kRoom = 128;

  alignas(wchar_t) std::array<std::byte, kRoom * sizeof(wchar_t)> room_;
  std::pmr::monotonic_buffer_resource memory_{room_.data(), room_.size()};
  std::pmr::wstring text_{&memory_};
};

/// The value without its fraction. Out of the range of int: the lowest one, as the host's processor
/// has it.
inline int whole_part(double value) {
  const bool fits = value > -2147483649.0 && value < 2147483648.0;
  return fits ? static_cast<int>(value) : std::numeric_limits<int>::min();
}

}  // namespace dim
