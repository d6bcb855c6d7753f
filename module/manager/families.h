#pragma once

#include <string_view>
#include <vector>

#include "module/record/dim_item.h"

/// Items of one entity that show the same quantity in other units or for other purposes.
namespace dim {

/// The items that follow when the item `head` becomes `value`: names and values, six decimals each,
/// in the order in which they are updated. None for an item that heads no family.
std::vector<StuDim> family_of(std::wstring_view head, double value);

}  // namespace dim
