#pragma once

#include "module/platform/foundation.h"

/// One annotation item: what was written where, and of which pieces. An empty text is one that was
/// not given. Names are compared without regard to letter case.
struct StuDim {
  CString name;        ///< key of the item in its record; the handle for a whole entity
  CString handle;      ///< handle text of the annotation entity; empty when there is none
  CString value;       ///< the part of the label that changes
  CString prefix;      ///< written before the value
  CString suffix;      ///< written behind the value
  CString separator;   ///< written behind this piece when the entity holds another one after it
  CString recordKind;  ///< empty, or dim::kNoEntityKind
  CString extra;       ///< kept as it is

  friend bool operator==(const StuDim&, const StuDim&) = default;
};

namespace dim {

/// Kind of an item that stores information only and has no annotation entity.
inline constexpr wchar_t kNoEntityKind[] = L"非实体性记录信息!";

}  // namespace dim
