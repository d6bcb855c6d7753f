#pragma once

#include "host/app/aced.h"
#include "host/app/console.h"

namespace dim {

using cad::set_invoke_result;

}  // namespace dim
