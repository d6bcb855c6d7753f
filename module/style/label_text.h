#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

#include "module/platform/text.h"

namespace dim {

/// How much is left of a text that holds a point when the zeros at its end are dropped, and the
/// point if they reached it. The point is looked for in the whole text, a prefix included; the
/// first character stays.
inline std::size_t size_without_zeros(std::wstring_view text) {
  std::size_t size = text.size();
  if (text.find(L'.') == text.npos) return size;
  while (size > 1 && text[size - 1] == L'0') --size;
  if (size > 1 && text[size - 1] == L'.') --size;
  return size;
}

/// The capital letter of a-z; every other character as it is.
constexpr wchar_t upper_case(wchar_t c) { return c >= L'a' && c <= L'z' ? c - (L'a' - L'A') : c; }
inline void make_upper_case(CString& text) {
  std::transform(text.begin(), text.end(), text.begin(), upper_case);
}

/// The value without its fraction. Out of the range of int: the lowest one, as the host's processor
/// has it.
inline int whole_part(double value) {
  const bool fits = value > -2147483649.0 && value < 2147483648.0;
  return fits ? static_cast<int>(value) : std::numeric_limits<int>::min();
}

/// A label while it is put together, on the stack unless it is very long: str() makes the string.
///     LabelText label;
///     label.text(prefix).fixed(length, 2).drop_zeros();
///     return label.str();
class LabelText {
 public:
  LabelText() = default;
  LabelText(const LabelText&) = delete;
  LabelText& operator=(const LabelText&) = delete;

  LabelText& text(std::wstring_view more) {
    more.copy(behind(more.size()), more.size());
    size_ += more.size();
    return *this;
  }
  LabelText& ascii(std::string_view more) {
    std::copy(more.begin(), more.end(), behind(more.size()));
    size_ += more.size();
    return *this;
  }
  LabelText& fixed(double value, int decimals) {  ///< "%.*lf"
    return ascii(DecimalText::fixed(value, decimals).view());
  }
  LabelText& whole(int value) {  ///< "%d"
    std::array<char, 12> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return ascii({digits.data(), end});
  }
  LabelText& drop_zeros() {
    size_ = size_without_zeros(view());
    return *this;
  }
  void to_upper_case() { std::transform(begin_, begin_ + size_, begin_, upper_case); }

  std::wstring_view view() const { return {begin_, size_}; }
  CString str() const { return CString(view()); }

 private:
  static constexpr std::size_t kRoom = 128;

  /// Where so many more characters may be written.
  wchar_t* behind(std::size_t more) {
    if (more > capacity_ - size_) grow(more);
    return begin_ + size_;
  }
  void grow(std::size_t more) {
    const std::size_t capacity = 2 * (size_ + more);
    std::unique_ptr<wchar_t[]> wider(new wchar_t[capacity]);
    std::copy_n(begin_, size_, wider.get());
    spilled_ = std::move(wider);
    begin_ = spilled_.get();
    capacity_ = capacity;
  }

  std::array<wchar_t, kRoom> room_;
  wchar_t* begin_ = room_.data();
  std::size_t size_ = 0;
  std::size_t capacity_ = kRoom;
  std::unique_ptr<wchar_t[]> spilled_;
};

}  // namespace dim
