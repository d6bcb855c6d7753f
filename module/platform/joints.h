#pragma once

#include "network/joints.h"
