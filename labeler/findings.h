#pragma once

#include <cstdint>
#include <vector>

#include "module/platform/objects.h"

/// What is wrong with labels, and what was done about it.
namespace labeler {

enum class Reason : std::uint8_t {
  kDataChanged,  ///< the owner's data or the settings give another text
  kMoved,        ///< the owner has moved
  kIncomplete,   ///< a part of the label was erased
  kEdited,       ///< the text shown is not the one recorded: somebody has edited it
  kNoData,       ///< the owner has no data any more that make such a label
  kOwnerGone,    ///< nothing records the label: its owner was erased
  kUnreadable,   ///< the record cannot be read
};
/// "data changed", "moved", ...
const wchar_t* reason_text(Reason reason);

enum class Action : std::uint8_t {
  kNone,      ///< nothing was to be done, or only asked
  kUpdated,   ///< its texts were written anew
  kFollowed,  ///< it was moved with its owner as it stands
  kRedrawn,   ///< it was drawn anew
  kKept,      ///< it was left as it is on purpose
  kFailed,    ///< it could not be written
};
/// "stale", "updated", ... ; "stale" for kNone.
const wchar_t* action_text(Action action);

struct Finding {
  AcDbObjectId owner;  ///< of kOwnerGone the label's own entity
  CString type;        ///< annotation type
  CString item;        ///< empty: the whole label
  CString was;         ///< text, place or angle as recorded, of kEdited as shown
  CString now;         ///< as it should be
  Reason reason = Reason::kDataChanged;
  Action action = Action::kNone;
  CString trouble;  ///< of kFailed why: "its layer is locked"
};
using Findings = std::vector<Finding>;

}  // namespace labeler
