#include "network/gx_data.h"

CGxData* CGxData::Instance() {
  static CGxData data;
  return &data;
}
