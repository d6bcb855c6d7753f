#pragma once

#include "host/db/entity.h"

class AcDbSymbolTableIterator;

/// A row of a symbol table: a layer, text style, block, registered application...
class AcDbSymbolTableRecord : public AcDbObject {
  PN_RX_MEMBERS(AcDbSymbolTableRecord)
 public:
  /// The name, newly made: free it with acutDelString().
  Acad::ErrorStatus getName(ACHAR*& name) const;
  std::wstring name() const;
  Acad::ErrorStatus setName(const ACHAR* name);

 protected:
  explicit AcDbSymbolTableRecord(std::string_view record) : AcDbObject(record) {}

 private:
  friend class cad::ObjectAccess;
};

/// A symbol table. Names are compared without regard to the case of ASCII letters.
class AcDbSymbolTable : public AcDbObject {
  PN_RX_MEMBERS(AcDbSymbolTable)
 public:
  Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& record, bool getErased = false) const;
  bool has(const ACHAR* name) const;
  /// Adds a new record, which stays open for write. A block gets its place for entities; the names
  /// *U, *D, *X... ask for the next free anonymous name. eDuplicateRecordName, eNotOpenForWrite,
  /// eWrongObjectType when the record is of another table.
  Acad::ErrorStatus add(AcDbObjectId& id, AcDbSymbolTableRecord* record);
  /// The caller deletes the iterator. It stands on the first record, in file order.
  Acad::ErrorStatus newIterator(AcDbSymbolTableIterator*& iterator) const;

 protected:
  explicit AcDbSymbolTable(std::string_view record) : AcDbObject(record) {}

 private:
  friend class cad::ObjectAccess;
};

class AcDbSymbolTableIterator {
 public:
  bool done() const { return position_ >= records_.size(); }
  void start() { position_ = 0; }
  void step() { ++position_; }
  Acad::ErrorStatus getRecordId(AcDbObjectId& id) const;

 private:
  friend class AcDbSymbolTable;
  std::vector<AcDbObjectId> records_;
  std::size_t position_ = 0;
};

/// Declares a table class and its record class side by side.
class AcDbLayerTableRecord : public AcDbSymbolTableRecord {
  PN_RX_MEMBERS(AcDbLayerTableRecord)
 public:
  AcDbLayerTableRecord();
  bool isFrozen() const;
  bool isLocked() const;
  bool isOff() const;
  Acad::ErrorStatus setIsFrozen(bool frozen);  ///< eInvalidLayer: the current one stays thawed
  Acad::ErrorStatus setIsLocked(bool locked);
  Acad::ErrorStatus setIsOff(bool off);
  int colorIndex() const;  ///< 1 to 255, whether the layer is on or off
  Acad::ErrorStatus setColorIndex(int color);

 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTableRecord::AcDbSymbolTableRecord;
};

class AcDbLayerTable : public AcDbSymbolTable {
  PN_RX_MEMBERS(AcDbLayerTable)
 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTable::AcDbSymbolTable;
};

/// How texts look: their font and shape. Angles are radians.
class AcDbTextStyleTableRecord : public AcDbSymbolTableRecord {
  PN_RX_MEMBERS(AcDbTextStyleTableRecord)
 public:
  AcDbTextStyleTableRecord();
  double textSize() const;  ///< of all texts of the style; 0: each has its own
  Acad::ErrorStatus setTextSize(double size);
  double xScale() const;
  Acad::ErrorStatus setXScale(double scale);
  double obliquingAngle() const;
  Acad::ErrorStatus setObliquingAngle(double angle);
  /// Names of the font files, newly made: free them with acutDelString().
  Acad::ErrorStatus fileName(ACHAR*& name) const;
  Acad::ErrorStatus setFileName(const ACHAR* name);
  Acad::ErrorStatus bigFontFileName(ACHAR*& name) const;
  Acad::ErrorStatus setBigFontFileName(const ACHAR* name);

 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTableRecord::AcDbSymbolTableRecord;
  double real(int code, double absent) const;
  Acad::ErrorStatus set_real(int code, double value);
};

class AcDbTextStyleTable : public AcDbSymbolTable {
  PN_RX_MEMBERS(AcDbTextStyleTable)
 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTable::AcDbSymbolTable;
};

class AcDbLinetypeTable : public AcDbSymbolTable {
  PN_RX_MEMBERS(AcDbLinetypeTable)
 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTable::AcDbSymbolTable;
};

class AcDbRegAppTable : public AcDbSymbolTable {
  PN_RX_MEMBERS(AcDbRegAppTable)
 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTable::AcDbSymbolTable;
};

class AcDbRegAppTableRecord : public AcDbSymbolTableRecord {
  PN_RX_MEMBERS(AcDbRegAppTableRecord)
 public:
  AcDbRegAppTableRecord();

 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTableRecord::AcDbSymbolTableRecord;
};
