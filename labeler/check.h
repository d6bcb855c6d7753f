#pragma once

#include <cstdint>

#include "labeler/findings.h"
#include "labeler/label_types.h"
#include "labeler/stored_label.h"

namespace labeler {

/// A label compared with what its owner's data give now.
struct Check {
  enum class State : std::uint8_t {
    kNone,  ///< there is no label, or the user has erased all of it
    kUpToDate,
    kStaleText,  ///< other values in the same pieces
    kStaleForm,  ///< other pieces, or parts are missing
    kNoData,
  };
  State state = State::kNone;
  bool edited = false;         ///< somebody has written other text; beside any state
  bool moved = false;          ///< the owner has moved; beside any state
  bool turned = false;         ///< the arrow points the wrong way; beside any state
  bool moved_by_hand = false;  ///< asked when there are findings
  Findings findings;           ///< empty when there is nothing to do
  StoredLabel stored;
  Draft draft;
  Place place;  ///< where it belongs now
};

/// Makes a check: of a label that is recorded. `reading` is for the label's own reference
/// direction; `draft` what the owner's data give, or why they give nothing.
Check compare(const Owner& owner, const LabelType& type, StoredLabel stored, Drafted drafted,
              const ReadingAngle& reading);

/// The label's place as it is recorded: of the anchor, the angle and the first text.
DrawnPlace drawn_place(const Draft& draft, const Place& place, const Shape& shape,
                       double reference);

/// The text of a piece.
CString text_of(const Piece& piece);

}  // namespace labeler
