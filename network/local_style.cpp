#include "network/local_style.h"

#include <algorithm>
#include <array>

#include "host/base/fold.h"
#include "network/profile_file.h"
#include "network/settings_lines.h"

LocalStyle network::read_local_style() {
  struct Row {
    const wchar_t* text;
    LocalStyle style;
  };
  static constexpr Row kRows[] = {{L"GB", GB}, {L"CD", CD}, {L"TJ", TJ}, {L"BJ", BJ}, {L"LY", LY}};
  constexpr unsigned kRoom = 260;  // characters, the null at the end included
  std::array<wchar_t, kRoom> text{};
  GetPrivateProfileStringW(L"GxBz", L"LocalStyle", L"GB", text.data(), kRoom,
                           in_install_dir(kStyleFile).c_str());
  const auto row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& r) {
    return cad::equal_no_case(std::wstring_view(r.text), std::wstring_view(text.data()));
  });
  return row == std::end(kRows) ? GB : row->style;
}
