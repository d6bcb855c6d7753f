#pragma once

#include <string>

/// Settings of pipe labels as the pipe library keeps them. The initial values hold until a settings
/// file has been read; decimals count digits behind the point.
namespace DimUtility {

/// Labels of pipes in plan: length, slope, well numbers, composite labels.
struct tdfGdcdpdbz {
  std::wstring lengthPrefix;
  std::wstring lengthSuffix;
  int lengthDecimals = 2;
  int lengthUnit = 2;  ///< 0 metres, 1 millimetres, anything else unscaled
  int lengthTrailingZero = 1;
  std::wstring slopePrefix;
  std::wstring slopeSuffix;
  int slopeDecimals = 0;
  int slopeUnit = 0;  ///< 0 plain ratio, 1 per cent, 2 per mille
  int slopeTrailingZero = 0;
  int wellNumberUpperCase = 1;
  std::wstring wellNumberSeparator = L"-";
  int hydrant = 0;  ///< 0 gives hydrants the hydrant prefix
  std::wstring hydrantPrefix = L"XH";
  std::wstring wellNumberExtra = L"L";
  int compositeSeparateLines = 0;
  std::wstring compositeSeparator = L"-";
  std::wstring compositeSlot1 = L"DN";  ///< DN diameter, LL length, PD slope
  std::wstring compositeSlot2 = L"LL";
  std::wstring compositeSlot3 = L"PD";
  std::wstring compositeSlot4;
  std::wstring compositeSlot5;
  int verticalMode = 1;
};

/// Labels of the profile (longitudinal section).
struct tdfZdm_bzsz {
  int elevationDecimals = 3;
  int depthDecimals = 2;
  std::wstring diameterPrefix;
  std::wstring diameterSuffix;
  int diameterNotation = 0;  ///< 0 by pipe material, 1 prefix and suffix
  int wholeStake = 0;
  double wholeStakeInterval = 20.0;  ///< metres
  int nodesAboveSection = 1;
  int dropLabels = 0;
};

/// Labels of the network calculation: decimals per quantity, -1 where none is set.
struct tagPcBzSz {
  static constexpr int kCount = 10;
  enum Position {
    kPipeLength = 0,
    kPipeSpeed = 2,
    kPipeFlow = 3,
    kHeadLossPerKilometre = 4,
    kHeadLoss = 5,
    kFreeHeadElevation = 6,
    kFreeHead = 8,
    kLossFromSource = 9,
  };
  int decimals[kCount] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
};

}  // namespace DimUtility
