#pragma once

#include "host/db/object.h"

/// A list of typed values filed in a dictionary. In DXF: 100 AcDbXrecord, the cloning flag 280,
/// then one tag per value.
class AcDbXrecord : public AcDbObject {
  PN_RX_MEMBERS(AcDbXrecord)
 public:
  AcDbXrecord();

  /// A copy of the values, freed by the caller; null when there are none. `database` resolves
  /// references and defaults to the record's own drawing. Returns eOk; eNotOpenForRead.
  Acad::ErrorStatus rbChain(resbuf** chain, AcDbDatabase* database = nullptr) const;
  /// Replaces all values by a copy of `chain`; a chain that begins with RTNONE stores no values.
  /// eNotOpenForWrite; eInvalidDxfCode, and nothing changed, for the groups 0 and 5 and any code
  /// outside 1..369.
  Acad::ErrorStatus setFromRbChain(const resbuf& chain, AcDbDatabase* database = nullptr);

 private:
  friend class cad::ObjectAccess;
  explicit AcDbXrecord(std::string_view record);
};
