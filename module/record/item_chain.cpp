#include "module/record/item_chain.h"

#include "module/platform/text.h"
#include "module/record/item_layout.h"

namespace dim {
namespace {

using Cursor = CDimRecordIterator;

const resbuf* buffer_at(const resbuf* first, int position) {
  while (first && position-- > 0) first = first->rbnext;
  return first;
}

}  // namespace

bool is_whole_item(const resbuf* first) { return buffer_at(first, Cursor::posExtra) != nullptr; }

std::wstring_view item_field(const resbuf* first, int position) {
  const resbuf* buffer = buffer_at(first, position);
  return buffer ? buffer_text(*buffer) : std::wstring_view(L"");
}

bool read_item(const resbuf* first, StuDim& item) {
  if (!is_whole_item(first)) return false;
  for (CString StuDim::*field : kItemLayout) {
    item.*field = buffer_text(*first);
    first = first->rbnext;
  }
  return true;
}

resbuf* new_item(const StuDim& item) {
  ChainBuilder chain;
  for (CString StuDim::*field : kItemLayout) chain.add(new_text_buffer(kItemGroup, item.*field));
  return chain.release();
}

bool is_text_item(const resbuf* first) {
  return is_whole_item(first) &&
         is_text_item(item_field(first, Cursor::posName), item_field(first, Cursor::posPrefix),
                      item_field(first, Cursor::posValue), item_field(first, Cursor::posSuffix),
                      item_field(first, Cursor::posKind));
}

resbuf*& link_to(resbuf*& first, int position) {
  resbuf** link = &first;
  while (*link && position-- > 0) link = &(*link)->rbnext;
  return *link;
}

ItemPlace find_item(resbuf* head, std::wstring_view name) {
  ItemPlace place;
  for (resbuf* item = head; is_whole_item(item);) {
    resbuf* following = link_to(item, Cursor::posNext);
    if (equal_no_case(buffer_text(*item), name)) {
      place.found = item;
      place.following = following;
      return place;
    }
    place.previous = item;
    item = following;
  }
  return place;
}

}  // namespace dim
