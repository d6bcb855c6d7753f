#include "labeler/owner.h"

#include <utility>

#include "module/platform/drawing.h"

namespace labeler {

std::optional<Owner> network_part(AcDbObjectId id) {
  if (id.isNull() || id.isErased()) return std::nullopt;
  std::optional<network::ObjectData> data = network::ObjectData::read(id);
  if (!data) return std::nullopt;
  std::optional<Owner> owner(std::in_place);
  owner->id = id;
  if ((owner->pipe = network::open_pipe(id, *data))) {
    owner->kind = OwnerKind::kPipe;
    owner->curve = owner->pipe->centre_line();
    return owner;
  }
  if ((owner->node = network::open_node(id, *data))) {
    owner->kind = OwnerKind::kNode;
    const std::optional<AcGePoint3d> position = owner->node->position();
    if (!position) return std::nullopt;
    owner->position = *position;
    return owner;
  }
  return std::nullopt;
}

std::optional<Owner> owner_of(AcDbObjectId id) {
  if (std::optional<Owner> part = network_part(id)) return part;
  if (id.isNull() || id.isErased()) return std::nullopt;
  Owner owner;
  owner.id = id;
  owner.curve = cad::curve_of(id);
  if (!owner.curve || !owner.curve->is_bounded()) return std::nullopt;
  return owner;
}

CString handle_of(AcDbObjectId id) {
  wchar_t text[17] = {};
  id.handle().getIntoAsciiBuffer(text);
  return text;
}

CString describe(const Owner& owner) {
  constexpr const wchar_t* kWords[] = {L"pipe ", L"node ", L"route "};
  return kWords[static_cast<std::size_t>(owner.kind)] + handle_of(owner.id);
}

}  // namespace labeler
