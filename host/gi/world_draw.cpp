#include "host/gi/world_draw.h"

#include "host/db/database.h"
#include "host/db/entity.h"
#include "host/gi/entity_drawer.h"

Adesk::Boolean AcDbEntity::worldDraw(AcGiWorldDraw* draw) {
  if (!draw) return Adesk::kFalse;
  const AcDbObjectId id = objectId();
  AcDbDatabase* const database =
      id.isNull() ? acdbHostApplicationServices()->workingDatabase() : id.database();
  cad::dxf::Tag kind;
  if (!cad::dxf::TagReader(content(), dialect()).next(kind)) return Adesk::kFalse;
  const cad::EntityTags tags{
      kind.value, content(), dialect(), database ? &database->drawing() : nullptr, id.stub(), this};
  return cad::EntityDrawer(*draw).draw_under_traits(tags);
}
