#pragma once

#include "host/db/value_texts.h"

namespace dim {

using cad::ValueTexts;

}  // namespace dim
