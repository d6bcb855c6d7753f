#pragma once

#include <cstddef>
#include <map>

#include "module/platform/application.h"

/// Keeps a value of type T for each open document and forgets it when the document goes.
template <class T>
class AsdkDataManager : public AcApDocManagerReactor {
 public:
  AsdkDataManager() { acDocManagerPtr()->addReactor(this); }
  AsdkDataManager(const AsdkDataManager&) = delete;
  AsdkDataManager& operator=(const AsdkDataManager&) = delete;
  ~AsdkDataManager() override { acDocManagerPtr()->removeReactor(this); }

  void documentToBeDestroyed(AcApDocument* document) override { data_.erase(document); }

  /// The document's value, made when it has none; valid until the document goes.
  T& of(AcApDocument* document) { return data_[document]; }
  std::size_t size() const { return data_.size(); }

 private:
  std::map<AcApDocument*, T> data_;
};

/// What the module keeps for each document: nothing so far.
struct CDocData {};
