#include "module/draw/layers.h"

#include "module/platform/drawing.h"
#include "module/platform/opened.h"

void dim::make_layer_ready(AcDbObjectId id) {
  const Opened<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
  if (!layer || !(layer->isFrozen() || layer->isLocked() || layer->isOff())) return;
  if (layer->upgradeOpen() != Acad::eOk) return;
  layer->setIsFrozen(false);
  layer->setIsLocked(false);
  layer->setIsOff(false);
}

bool dim::turn_on_and_unlock(AcDbObjectId id) {
  const Opened<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
  if (!layer || !(layer->isOff() || layer->isLocked())) return false;
  if (layer->upgradeOpen() != Acad::eOk) return false;
  layer->setIsOff(false);
  layer->setIsLocked(false);
  return true;
}
