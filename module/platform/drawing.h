#pragma once

#include "host/db/block.h"
#include "host/db/block_reference.h"
#include "host/db/line.h"
#include "host/db/polyline.h"
#include "host/db/symbol_table.h"
#include "host/db/text.h"
#include "host/gi/world_draw.h"
#include "module/platform/geometry.h"
#include "module/platform/objects.h"
