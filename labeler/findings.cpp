#include "labeler/findings.h"

#include <cstddef>
#include <iterator>

namespace labeler {
namespace {

constexpr const wchar_t* kReasons[] = {L"data changed",   L"moved",   L"incomplete",
                                       L"edited by hand", L"no data", L"owner gone",
                                       L"unreadable"};
static_assert(std::size(kReasons) == static_cast<std::size_t>(Reason::kUnreadable) + 1);
constexpr const wchar_t* kActions[] = {L"stale",   L"updated", L"followed",
                                       L"redrawn", L"kept",    L"failed"};
static_assert(std::size(kActions) == static_cast<std::size_t>(Action::kFailed) + 1);

}  // namespace

const wchar_t* reason_text(Reason reason) { return kReasons[static_cast<std::size_t>(reason)]; }
const wchar_t* action_text(Action action) { return kActions[static_cast<std::size_t>(action)]; }

}  // namespace labeler
