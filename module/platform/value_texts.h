#pragma once

#include "host/db/value_texts.h"

namespace dim {

using cad::set_value_texts;
using cad::ValueTexts;

}  // namespace dim
