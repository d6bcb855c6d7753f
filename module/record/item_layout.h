#pragma once

#include <iterator>

#include "module/record/dim_item.h"
#include "module/record/record_cursor.h"

namespace dim {

// Stored order of an item's fields, one text buffer each: prefix before value, so that the label
// reads in order. Reader and writer both walk this table.
inline constexpr CString StuDim::*kItemLayout[] = {
    &StuDim::name,   &StuDim::handle,    &StuDim::prefix,     &StuDim::value,
    &StuDim::suffix, &StuDim::separator, &StuDim::recordKind, &StuDim::extra};
static_assert(std::size(kItemLayout) == CDimRecordIterator::posNext);
static_assert(kItemLayout[CDimRecordIterator::posPrefix] == &StuDim::prefix);
static_assert(kItemLayout[CDimRecordIterator::posValue] == &StuDim::value);

inline constexpr short kItemGroup = 1;  // group code of every field

}  // namespace dim
