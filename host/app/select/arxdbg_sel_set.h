#pragma once

#include "host/app/aced.h"
#include "host/db/object_id.h"

/// A selection set that frees itself, one of the helpers that programs for this host share.
///     ArxDbgSelSet pipes;
///     if (pipes.userSelect(L"\nSelect pipes: ", L"\nRemove pipes: ") == ArxDbgSelSet::kSelected)
///       pipes.asArray(ids);
class ArxDbgSelSet {
 public:
  enum SelSetStatus {
    kSelected,  ///< something was
    kCanceled,  ///< the user broke off, or nobody is there to ask
    kNone,      ///< nothing was selected
    kRejected,  ///< the filter makes no sense
  };

  ArxDbgSelSet() = default;
  ArxDbgSelSet(const ArxDbgSelSet&) = delete;
  ArxDbgSelSet& operator=(const ArxDbgSelSet&) = delete;
  ~ArxDbgSelSet() { clear(); }

  /// Asks the user with these prompts, or the usual ones for null. Unless something was selected
  /// the set is empty.
  SelSetStatus userSelect(const ACHAR* selectPrompt = nullptr, const ACHAR* removePrompt = nullptr,
                          const resbuf* filter = nullptr);
  SelSetStatus lastStatus() const { return status_; }
  std::int32_t length() const;
  /// Appends the members in the order in which they were selected.
  void asArray(AcDbObjectIdArray& ids) const;

 private:
  void clear();

  ads_name set_ = {0, 0};
  SelSetStatus status_ = kNone;
};
