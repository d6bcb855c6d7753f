#pragma once

#include <vector>

#include "module/platform/resbuf.h"
#include "module/record/dim_item.h"
#include "module/record/item_texts.h"

class CDimRecord;

/// Turns annotation items into their stored form: the only writer of the item layout. One for the
/// process: CDimUpdateServ::getDimFactory().
class CDimRecFactory : public CObject {
 public:
  /// The eight buffers of an item; the caller frees them with acutRelRb(). Null when the host
  /// cannot build them.
  resbuf* CreateDimResbuf(const StuDim& item);
  /// A record that holds the items in their order, open for write and not filed in any drawing.
  /// The caller deletes it, sets its type name and files it with CDimRecordTable::add(). Items of
  /// equal names are all stored. Null on failure.
  CDimRecord* CreateDimRec(const std::vector<StuDim>& items);
  CDimRecord* CreateDimRec(const StuDim& item);
  /// The same of items that others own.
  CDimRecord* create(const dim::ItemTexts& items);
};
