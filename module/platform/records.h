#pragma once

// What an object stores, read as it stands: for walks through a whole drawing, where opening one
// object after the other would cost more than what is asked of it. Several threads may read.
#include "host/db/entity_fields.h"
#include "host/db/extended_data.h"
#include "host/db/id_set.h"
#include "host/db/record.h"
#include "host/geometry/ocs.h"
