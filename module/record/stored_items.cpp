#include "module/record/stored_items.h"

#include "module/record/item_chain.h"
#include "module/record/item_layout.h"

namespace dim {

Acad::ErrorStatus StoredItems::read(AcDbObjectId record) { return texts_.read(record); }

bool StoredItems::is_text(std::size_t item) const {
  return is_text_item(field(item, Field::posName), field(item, Field::posPrefix),
                      field(item, Field::posValue), field(item, Field::posSuffix),
                      field(item, Field::posKind));
}

StuDim StoredItems::item(std::size_t item) const {
  StuDim read;
  for (int position = 0; position < CDimRecordIterator::posNext; ++position)
    read.*kItemLayout[position] = field(item, static_cast<Field>(position));
  return read;
}

}  // namespace dim
