#include "module/record/record_cursor.h"

#include "module/platform/trace.h"
#include "module/record/item_chain.h"
#include "module/record/record_factory.h"
#include "module/registry/update_service.h"

CDimRecordIterator::~CDimRecordIterator() {
  if (owns_chain_) acutRelRb(head_);
  acutRelRb(retired_);
}

void CDimRecordIterator::operator=(CDimRecordIterator& other) {
  if (&other == this) return;
  if (head_ != other.head_) retire_chain();
  head_ = other.head_;
  current_ = other.current_;
  record_object_ = other.record_object_;
  written_ = other.written_;
  other.owns_chain_ = 0;
  owns_chain_ = 1;
}

void CDimRecordIterator::take_chain(resbuf* chain, AcDbXrecord* record) {
  retire_chain();
  head_ = current_ = chain;
  record_object_ = record;
  owns_chain_ = 1;
}

void CDimRecordIterator::retire_chain() {
  if (!owns_chain_ || !head_) return;
  resbuf** end = &retired_;
  while (*end) end = &(*end)->rbnext;
  *end = head_;
}

void CDimRecordIterator::step() {
  if (current_) current_ = nth(posNext);
}

Acad::ErrorStatus CDimRecordIterator::getDim(StuDim& item) {
  return dim::read_item(current_, item) ? Acad::eOk : dim::kFailed;
}

const wchar_t* CDimRecordIterator::getDimName() {
  return done() ? nullptr : dim::buffer_text(*current_).data();
}

std::wstring_view CDimRecordIterator::field(EnDimPos position) const {
  return dim::item_field(current_, position);
}

bool CDimRecordIterator::stands_on_item() const { return dim::is_whole_item(current_); }

int CDimRecordIterator::isText() { return dim::is_text_item(current_); }

resbuf*& CDimRecordIterator::nth(EnDimPos position, resbuf*& itemStart) {
  return itemStart ? dim::link_to(itemStart, position) : current_;
}

int CDimRecordIterator::find(resbuf*& previous, const wchar_t* name, resbuf*& following) {
  const dim::ItemPlace place = dim::find_item(head_, dim::text_of(name));
  previous = place.previous;
  following = place.following;
  return place.found != nullptr;
}

Acad::ErrorStatus CDimRecordIterator::setDim(const StuDim& item) {
  if (done()) return dim::kFailed;
  resbuf* added = CDimUpdateServ::getInstance().getDimFactory().CreateDimResbuf(item);
  if (!added) {
    dim::trace(L"创建实体失败!");
    return dim::kFailed;
  }
  dim::ItemPlace place = dim::find_item(head_, item.name.c_str());
  // What stands there is the old item, the rest of a damaged chain, or nothing.
  resbuf*& link = place.previous ? dim::link_to(place.previous, posNext) : head_;
  dim::link_to(added, posNext) = place.found ? place.following : link;
  link = added;
  if (!place.found) return Acad::eOk;
  if (!place.previous || current_ == place.found) current_ = added;
  dim::link_to(place.found, posNext) = nullptr;
  acutRelRb(place.found);
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecordIterator::deleteThis() {
  if (done()) return Acad::eOk;
  dim::ItemPlace place;
  if (dim::is_whole_item(current_)) place = dim::find_item(head_, dim::buffer_text(*current_));
  if (!place.found) {
    dim::trace(L"没有定位到要删除的元素!");
    return dim::kFailed;
  }
  (place.previous ? dim::link_to(place.previous, posNext) : head_) = place.following;
  current_ = place.following;
  dim::link_to(place.found, posNext) = nullptr;
  return acutRelRb(place.found) == RTNORM ? Acad::eOk : dim::kFailed;
}

Acad::ErrorStatus CDimRecordIterator::commit() {
  if (!record_object_ || !record_object_->isWriteEnabled()) {
    dim::trace(L"扩展记录指针失效,无法写入!");
    return dim::kFailed;
  }
  written_ = 1;
  return dim::store_chain(*record_object_, head_);
}
