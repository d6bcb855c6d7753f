#pragma once

#include "host/geometry/ge.h"
