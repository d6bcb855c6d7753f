#pragma once

#include <string>
#include <string_view>

namespace cad {

/// A moment given as days (Julian number, the fraction counts from midnight) by a picture: D DD DDD
/// DDDD M MO MON MONTH YY YYYY H HH MM SS MSEC AM/PM am/pm A/P a/p; everything else stands for
/// itself. With one of the last four, hours count to 12.
std::wstring picture_of_time(double julian, std::wstring_view picture);

}  // namespace cad
