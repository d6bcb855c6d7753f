#pragma once

/// Drawing standards. The numbers are stored by callers.
enum LocalStyle : int {
  CD = 0,
  GB = 1,  ///< also for every unknown text
  TJ = 2,
  BJ = 3,
  kLocalStyleNotRead = 4,
  LY = 6,
};

namespace network {

/// The file of the drawing standard, below the installation's folder.
inline constexpr wchar_t kStyleFile[] = L"sys\\DimStyle.ini";

/// The installation's drawing standard: section GxBz, key LocalStyle, in any letter case.
LocalStyle read_local_style();

}  // namespace network
