#pragma once

#include <memory>

#include "module/platform/foundation.h"
#include "module/registry/registry.h"

class CDimRecFactory;
class CDimRecord;
namespace DimUtility {
struct tdfGdcdpdbz;
struct tdfZdm_bzsz;
struct tagPcBzSz;
}  // namespace DimUtility

/// The way to the registry, the record factory and the label settings of the pipe library. One for
/// the process; what it hands out lives until the module is unloaded.
///     CDimUpdateServ::getInstance().getDimRegServ().isRegisted(L"pcgb");
class CDimUpdateServ : public CObject {
 public:
  ~CDimUpdateServ() override;
  CDimUpdateServ(const CDimUpdateServ&) = delete;
  CDimUpdateServ& operator=(const CDimUpdateServ&) = delete;
  static CDimUpdateServ& getInstance();

  /// Made, with the built-in vocabulary, by the first call.
  CDimupateRegisiter& getDimRegServ();
  /// Made by the first call.
  CDimRecFactory& getDimFactory();

  /// The pipe library's own objects, not copies; null when it has none.
  const DimUtility::tdfGdcdpdbz* getGcGpBzSz() const;   ///< pipe length, slope, diameter labels
  const DimUtility::tdfZdm_bzsz* getZdmGdBzSz() const;  ///< profile labels
  const DimUtility::tagPcBzSz* getPcBzSz() const;       ///< network calculation labels

  /// Traces every item of a record. Nothing is printed, the record is not changed.
  void dumpDimRec(const CDimRecord& record) const;

 private:
  CDimUpdateServ();
  std::unique_ptr<CDimupateRegisiter> registry_;
  std::unique_ptr<CDimRecFactory> factory_;  // behind registry_: goes first
  static CDimUpdateServ m_instance;
};
