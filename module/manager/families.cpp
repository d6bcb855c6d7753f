#include "module/manager/families.h"

#include "module/platform/text.h"

namespace dim {
namespace {

struct Member {
  std::wstring_view head;
  const wchar_t* name;
  double factor;
};

// No member heads a family itself: updating a member ends there.
constexpr Member kMembers[] = {
    {L"pipe_len", L"pipe_len_mm", 1000.0},  // metres to millimetres
    {L"pipe_len", L"pipe_len_pc", 1.0},
    {L"pipe_i", L"pipe_ii", 100.0},    // a fraction to per cent
    {L"pipe_i", L"pipe_iii", 1000.0},  // and to per mille
    {L"well_bgdm", L"well_bgdm_pc", 1.0},
};

}  // namespace

std::vector<StuDim> family_of(std::wstring_view head, double value) {
  std::vector<StuDim> family;
  for (const Member& member : kMembers) {
    if (member.head != head) continue;
    StuDim& item = family.emplace_back();
    item.name = member.name;
    item.value = format_text(L"%f", value * member.factor);
  }
  return family;
}

}  // namespace dim
