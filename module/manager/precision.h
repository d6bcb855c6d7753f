#pragma once

#include <string_view>

#include "module/platform/foundation.h"
#include "module/platform/pipe_library.h"

namespace dim {

/// The settings that say how many decimals a label has; all must be there.
struct PrecisionSettings {
  const DimUtility::tdfGdcdpdbz* plan;
  const DimUtility::tdfZdm_bzsz* profile;
  const DimUtility::tagPcBzSz* calculation;
};

/// The value of the item `name` with the decimals the settings ask for. A name that no setting is
/// about keeps its text, unless that is a number with a point: then at most three decimals.
CString rounded_value(std::wstring_view name, const CString& value,
                      const PrecisionSettings& settings);

}  // namespace dim
