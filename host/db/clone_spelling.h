#pragma once

#include <string>

#include "host/db/clone_references.h"
#include "host/db/drawing.h"

/// The tags of copies.
namespace cad {

/// Of a copy in the same drawing: what does not change keeps its bytes, references to objects that
/// are not copied stay.
std::string spell_copy(Drawing& drawing, const Stub& source, const Stub& copy, std::uint64_t owner,
                       const CloneReferences& references);

/// What is copied: a record of the drawing, or one that stands in for it.
struct CloneSource {
  std::string_view kind;
  std::string_view bytes;
};

/// Of a copy in another drawing, in that one's release and code page; R12 records get their class
/// markers. A reference that nothing stands for becomes 0, or is left out where that is allowed.
/// With `reactor` the object is filed in that dictionary.
std::string respell_copy(Drawing& from, const CloneSource& source, Drawing& to, const Stub& copy,
                         std::uint64_t owner, std::uint64_t reactor,
                         const CloneReferences& references);

/// The kind a record of that kind becomes: R12's 3DLINE is a LINE by now.
std::string_view kind_now(std::string_view kind);

}  // namespace cad
