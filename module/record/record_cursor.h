#pragma once

#include <string_view>

#include "module/platform/objects.h"
#include "module/platform/resbuf.h"
#include "module/record/dim_item.h"
#include "module/registry/dim_iterator.h"

/// Walks the items of one annotation record on a private copy of its buffer chain. Edits change the
/// copy; the drawing changes at commit(), for which the record must still be open. Filled by
/// CDimRecord::newIterator().
///     for (cursor.start(); !cursor.done(); cursor.step()) cursor.getDim(item);
/// A chain from a damaged drawing may end within an item. The cursor stands on such a rest once, at
/// the end; it cannot be read or replaced, and is kept when the chain is committed.
/// Statuses are 0 for success and 1 for failure.
class CDimRecordIterator : public CDimIterator {
 public:
  /// Position of a field among an item's buffers, in the order of the label: prefix before value.
  enum EnDimPos {
    posName = 0,
    posHandle = 1,
    posPrefix = 2,
    posValue = 3,
    posSuffix = 4,
    posSeparator = 5,
    posKind = 6,
    posExtra = 7,
    posNext = 8,  ///< no field: the link to the item behind
  };

  CDimRecordIterator() = default;
  CDimRecordIterator(const CDimRecordIterator&) = delete;
  ~CDimRecordIterator() override;
  /// Takes the other cursor's chain, which this one frees from then on. The other may still read
  /// it while this one lives. A chain held before stays readable as long as this cursor.
  void operator=(CDimRecordIterator& other);

  int done() override { return current_ == nullptr; }
  /// Nothing when done().
  void step() override;
  void start() override { current_ = head_; }

  /// Reads the current item; 1 when done() or the item is not whole, and `item` is unchanged.
  Acad::ErrorStatus getDim(StuDim& item);
  /// Name of the current item, null when done(). Points into the chain: valid until the next edit.
  const wchar_t* getDimName();
  /// One field of the current item; empty when done(). Valid until the next edit.
  std::wstring_view field(EnDimPos position) const;
  /// Whether there is a current item and it is whole.
  bool stands_on_item() const;
  /// Whether the current item is a piece of a text that is regenerated; 0 when done().
  int isText();

  /// Replaces the item of the same name (letter case ignored) in place, or appends. A replaced
  /// first item becomes the current item; otherwise the cursor stays where it is.
  /// Returns 1 and changes nothing when done(), so an empty record stays empty.
  Acad::ErrorStatus setDim(const StuDim& item);
  /// Removes the first item that has the current item's name and stands on the one behind it: do
  /// not step() after success. 0 when done(); 1 on an item that is not whole.
  Acad::ErrorStatus deleteThis();
  /// Writes the chain to the record. 1 without a record that is open for write, else the status of
  /// AcDbXrecord::setFromRbChain().
  Acad::ErrorStatus commit();

 protected:
  friend class CDimRecord;

  /// The link that leads to the buffer of a position in the current item, or in the item at
  /// `itemStart` (the current one when that is null). In a chain that ends within the item at most
  /// its last link, which is null.
  resbuf*& nth(EnDimPos position) { return nth(position, current_); }
  resbuf*& nth(EnDimPos position, resbuf*& itemStart);
  /// The first item of that name: 1, and its neighbours (null at the ends). Otherwise 0 and
  /// `previous` is the last item.
  int find(resbuf*& previous, const wchar_t* name, resbuf*& following);

 private:
  void take_chain(resbuf* chain, AcDbXrecord* record);
  void retire_chain();

  resbuf* head_ = nullptr;
  resbuf* current_ = nullptr;             // first buffer of an item, null when done
  AcDbXrecord* record_object_ = nullptr;  // not owned
  int owns_chain_ = 1;
  int written_ = 0;
  resbuf* retired_ = nullptr;  // chains held before: names handed out point into them
};
