#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/base/fold.h"
#include "host/db/object_id.h"
#include "host/geometry/point3d.h"

namespace cad {

/// What a prompt does and does not take: the bits of initget.
enum AskBit : unsigned {
  kNoEnter = 1,
  kNoZero = 2,
  kNoNegative = 4,
  kNoLimits = 8,
  kDashed = 32,
  kFlat = 64,      ///< a distance between points leaves Z out
  kAnyText = 128,  ///< a text that is no answer otherwise is an answer as it is
  kMayEnd = 256,   ///< the name of a command ends this one, as Enter would
  kAtOnce = 512,   ///< a selection is complete with its first part
};

/// A prompt. The texts need to live only until the call that takes it returns.
struct Ask {
  std::wstring_view text;             ///< shown as it stands: "Specify next point or [Undo]: "
  std::wstring_view keywords = {};    ///< as initget takes them: "Close Undo"
  unsigned bits = 0;                  ///< of AskBit
  const AcGePoint3d* from = nullptr;  ///< the point distances, angles and "@" are measured from
};

/// What the user answered.
struct Answer {
  enum class Kind {
    kNone,     ///< Enter
    kKeyword,  ///< `text`, spelled in full
    kPoint,
    kNumber,  ///< a distance, an angle in radians, a real or an integer
    kText,
    kEntity,  ///< `entity`, picked at `point`
    kSelection,
  };
  Kind kind = Kind::kNone;
  AcGePoint3d point;
  double number = 0.0;
  std::wstring text;
  AcDbObjectId entity;
  std::vector<AcDbObjectId> selection;
  std::vector<AcGePoint3d> crossing;  ///< corners of the last window or polygon that crossed it

  bool from_points = false;  ///< a distance or an angle shown by points, an entity picked

  bool none() const { return kind == Kind::kNone; }
  bool is_point() const { return kind == Kind::kPoint; }
  bool is_number() const { return kind == Kind::kNumber; }
  bool is_text() const { return kind == Kind::kText; }
  bool is_entity() const { return kind == Kind::kEntity; }
  bool is_keyword() const { return kind == Kind::kKeyword; }
  bool is(std::wstring_view keyword) const { return is_keyword() && equal_no_case(text, keyword); }
  int integer() const { return static_cast<int>(number); }
};

}  // namespace cad
