#pragma once

#include "host/app/select/arxdbg_sel_set.h"
