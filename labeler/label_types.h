#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "labeler/draft.h"
#include "labeler/node_drafts.h"
#include "labeler/route_drafts.h"

/// The annotation types this module draws.
namespace labeler {

/// What a draft is made of besides the owner and the settings.
struct DraftContext {
  LeaderPlacement leader;  ///< of a well/pipe label
  StakePlan stakes;        ///< of a route
};

struct LabelType {
  const wchar_t* name;
  OwnerKind owner;
  CString (*layer)(const Owner& owner);
  Drafted (*draft)(const Owner& owner, DraftContext& context);
};

std::span<const LabelType> label_types();
/// Letter case ignored, as records are keyed; null for a type this module does not draw.
const LabelType* find_type(std::wstring_view name);

/// Stakes along a route.
inline constexpr wchar_t kStakeType[] = L"Zh_Xd_Dim";
inline constexpr wchar_t kWellPipeType[] = L"bzjg";

}  // namespace labeler
