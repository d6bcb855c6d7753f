#include "host/app/system/picture_time.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>

namespace cad {
namespace {

constexpr std::wstring_view kMonths[] = {L"January",   L"February", L"March",    L"April",
                                         L"May",       L"June",     L"July",     L"August",
                                         L"September", L"October",  L"November", L"December"};
constexpr std::wstring_view kDays[] = {L"Sunday",   L"Monday", L"Tuesday", L"Wednesday",
                                       L"Thursday", L"Friday", L"Saturday"};

struct Moment {
  int year, month, day, weekday;  // month from 1, weekday from Sunday 0
  int hour, minute, second, millisecond;
  bool halves = false;  // hours to 12
};

std::wstring digits(int number, std::size_t width = 1) {
  std::wstring text = std::to_wstring(number);
  if (text.size() < width) text.insert(0, width - text.size(), L'0');
  return text;
}

int shown_hour(const Moment& at) {
  return at.halves ? (at.hour % 12 == 0 ? 12 : at.hour % 12) : at.hour;
}

struct Row {
  std::wstring_view mark;
  std::wstring (*text)(const Moment&);
};
// Longer marks stand before those they start with.
constexpr Row kMarks[] = {
    {L"DDDD", [](const Moment& at) { return std::wstring(kDays[at.weekday]); }},
    {L"DDD", [](const Moment& at) { return std::wstring(kDays[at.weekday].substr(0, 3)); }},
    {L"DD", [](const Moment& at) { return digits(at.day, 2); }},
    {L"D", [](const Moment& at) { return digits(at.day); }},
    {L"MONTH", [](const Moment& at) { return std::wstring(kMonths[at.month - 1]); }},
    {L"MON", [](const Moment& at) { return std::wstring(kMonths[at.month - 1].substr(0, 3)); }},
    {L"MO", [](const Moment& at) { return digits(at.month, 2); }},
    {L"MSEC", [](const Moment& at) { return digits(at.millisecond, 3); }},
    {L"MM", [](const Moment& at) { return digits(at.minute, 2); }},
    {L"M", [](const Moment& at) { return digits(at.month); }},
    {L"YYYY", [](const Moment& at) { return digits(at.year, 4); }},
    {L"YY", [](const Moment& at) { return digits(at.year % 100, 2); }},
    {L"HH", [](const Moment& at) { return digits(shown_hour(at), 2); }},
    {L"H", [](const Moment& at) { return digits(shown_hour(at)); }},
    {L"SS", [](const Moment& at) { return digits(at.second, 2); }},
};
struct HalfRow {
  std::wstring_view mark;
  std::wstring_view morning;
  std::wstring_view afternoon;
};
// These are told apart by letter case.
constexpr HalfRow kHalves[] = {
    {L"AM/PM", L"AM", L"PM"}, {L"am/pm", L"am", L"pm"}, {L"A/P", L"A", L"P"}, {L"a/p", L"a", L"p"}};

constexpr wchar_t upper(wchar_t c) { return c >= L'a' && c <= L'z' ? c - (L'a' - L'A') : c; }

bool starts_with_mark(std::wstring_view text, std::wstring_view mark) {
  return text.size() >= mark.size() &&
         std::equal(mark.begin(), mark.end(), text.begin(),
                    [](wchar_t a, wchar_t b) { return a == upper(b); });
}

Moment moment_of(double julian) {
  using namespace std::chrono;
  constexpr double kUnixDay = 2440588;  // of 1 January 1970
  const double whole = std::floor(julian);
  auto milliseconds = static_cast<std::int64_t>(std::llround((julian - whole) * 86400000.0));
  auto day = static_cast<int>(whole - kUnixDay);
  if (milliseconds >= 86400000) {
    milliseconds -= 86400000;
    ++day;
  }
  const sys_days date{days{day}};
  const year_month_day ymd{date};
  Moment at{};
  at.year = static_cast<int>(ymd.year());
  at.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
  at.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
  at.weekday = static_cast<int>(weekday{date}.c_encoding());
  at.hour = static_cast<int>(milliseconds / 3600000);
  at.minute = static_cast<int>(milliseconds / 60000 % 60);
  at.second = static_cast<int>(milliseconds / 1000 % 60);
  at.millisecond = static_cast<int>(milliseconds % 1000);
  return at;
}

}  // namespace

std::wstring picture_of_time(double julian, std::wstring_view picture) {
  constexpr double kFirst = 1721060, kLast = 5373484;  // the years 0 to 9999
  if (!(julian >= kFirst && julian <= kLast)) return {};
  Moment at = moment_of(julian);
  at.halves = std::ranges::any_of(
      kHalves, [&](const HalfRow& row) { return picture.find(row.mark) != picture.npos; });
  std::wstring out;
  while (!picture.empty()) {
    const HalfRow* const half = std::ranges::find_if(
        kHalves, [&](const HalfRow& row) { return picture.starts_with(row.mark); });
    if (half != std::end(kHalves)) {
      out += at.hour < 12 ? half->morning : half->afternoon;
      picture.remove_prefix(half->mark.size());
      continue;
    }
    const Row* const row = std::ranges::find_if(
        kMarks, [&](const Row& candidate) { return starts_with_mark(picture, candidate.mark); });
    if (row != std::end(kMarks)) {
      out += row->text(at);
      picture.remove_prefix(row->mark.size());
      continue;
    }
    out += picture.front();
    picture.remove_prefix(1);
  }
  return out;
}

}  // namespace cad
