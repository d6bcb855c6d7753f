#pragma once

#include "network/gx_data.h"
#include "network/list_text.h"
