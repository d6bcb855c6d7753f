#pragma once

#include <vector>

#include "module/platform/geometry.h"
#include "module/platform/objects.h"
#include "module/record/dim_item.h"

class CDimRecord;
class CDimRecordTable;

/// Records, reads, updates and deletes the annotations of one entity. A short-lived value: make one
/// for the entity, call it, drop it. Between calls it holds nothing open.
///     CDimManager pipe(pipe_id);
///     if (pipe.openStatus() == Acad::eOk) pipe.dimTxtRec(L"pcgb", L"pipe_len", text_id, L"36.5",
///                                                        L"m", L"L=", L"");
/// Statuses: 0 success; 1 failure; 3 bad input; 22 no such item; 374 the entity can hold no
/// extension dictionary; 20022 the annotation type is not registered. A manager whose construction
/// failed answers 1. Null texts count as empty.
class CDimManager {
 public:
  /// For an entity that the caller has open, and keeps open; it is upgraded to write. An extension
  /// dictionary is made when the entity has none.
  explicit CDimManager(AcDbEntity* entity);
  /// Opens the entity for write meanwhile.
  explicit CDimManager(AcDbObjectId entityId);

  /// 0 when the manager is usable, else why not.
  Acad::ErrorStatus openStatus() const { return open_status_; }
  AcDbObjectId getExtensionDictionaryId() const { return extension_dictionary_; }

  /// Records an item under the type: replaces the item of its name there or appends. An item that
  /// is neither an entity (name and handle alike) nor has a value is not recorded, and that is a
  /// success. 20022 for a type that is not registered.
  Acad::ErrorStatus dimRecEx(const wchar_t* dimTypeName, const StuDim& item);
  /// Records a text entity, or a piece of one. Suffix comes before prefix.
  Acad::ErrorStatus dimTxtRec(const wchar_t* dimTypeName, const wchar_t* dimName,
                              AcDbObjectId textId, const wchar_t* value, const wchar_t* suffix,
                              const wchar_t* prefix, const wchar_t* separator);
  /// Records an entity that has no text: an arrow, a leader.
  Acad::ErrorStatus dimEntRec(const wchar_t* dimTypeName, AcDbObjectId entityId);

  /// Keeps a value under a key of the type. Reals, points and vectors keep six decimals, longs 32
  /// bits. 3 for a type that is not registered or an empty key; an empty text is not recorded.
  Acad::ErrorStatus dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                               const AcGeVector3d& value);
  Acad::ErrorStatus dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                               const AcGePoint3d& value);
  Acad::ErrorStatus dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key, double value);
  Acad::ErrorStatus dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key, const long& value);
  Acad::ErrorStatus dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                               const CString& value);
  Acad::ErrorStatus dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key, AcDbObjectId value);

  /// Reads the value back. On failure it is unchanged: 3 as above, 1 without such a record, and
  /// 22, for the text only, when the record lacks the key; the others answer 1 to every failure,
  /// the object id 3 when its handle is of no object.
  Acad::ErrorStatus getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                  AcGeVector3d& value);
  Acad::ErrorStatus getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                  AcGePoint3d& value);
  Acad::ErrorStatus getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key, double& value);
  Acad::ErrorStatus getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key, long& value);
  Acad::ErrorStatus getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key, CString& value);
  Acad::ErrorStatus getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                  AcDbObjectId& value);

  /// Whether annotation entities of the type are there, and whether some are erased or absent.
  /// Items without entity count for neither. 1, and both flags as found so far, when the record
  /// cannot be read.
  Acad::ErrorStatus isDimExisted(const wchar_t* dimTypeName, int& existing, int& missing);
  /// Appends the annotation entities of all types, erased ones included, once per item. On failure
  /// prints a line, answers 1 and leaves `entities` alone.
  Acad::ErrorStatus getDimEnt(AcDbObjectIdArray& entities);

  /// Gives the item a new value wherever the entity has one of that name, in every type, and writes
  /// its texts anew. First the handlers of the pipe or well types redraw (updatePipeDim(),
  /// updateWellDim(): by the first four letters of the name) and the items of its family follow;
  /// the value is then rounded as the settings ask for that name. The handle stored stays; prefix,
  /// suffix and separator too, unless `replaceAll` is nonzero: then the item's replace them.
  /// Information items get the value as it is. 20022 for an item name that is not known; 1 when the
  /// family cannot be updated (a "pipe_len" of 0), and then nothing was stored; 1 for a record that
  /// cannot be written, and then the records before it are updated already. 0 also when no record
  /// has the item.
  Acad::ErrorStatus updateDim(StuDim item, int replaceAll);
  Acad::ErrorStatus updateDim(const wchar_t* dimName, const wchar_t* value);
  /// Has the handler of the type redraw the entity's labels of that type. 22 when the type has no
  /// handler; 1 when the entity has no such record or the handler answers 0; 0, and the handler is
  /// not called, when the user has erased every label of the type.
  Acad::ErrorStatus updateDim(const wchar_t* dimTypeName);
  /// The same for each type of a pipe, or of a well, that may have a handler. Always 0; the flags
  /// are not used.
  Acad::ErrorStatus updatePipeDim(unsigned long flags);
  Acad::ErrorStatus updateWellDim(unsigned long flags);
  /// Updates the items that follow another: the pipe's length in metres (1, and nothing is done,
  /// for 0), its slope as a fraction, the well's ground elevation in metres. 1 at the first member
  /// that fails.
  Acad::ErrorStatus updatePipeLenFamily(double length);
  Acad::ErrorStatus updateGradientFamily(double slope);
  Acad::ErrorStatus updateDmBgFamily(double elevation);

  /// Turns the pipe's flow arrows to the direction of flow: dim::turn_flow_arrows(). 1 when that
  /// fails.
  Acad::ErrorStatus updateJtDirection();

  /// Erases the labels of the type, letter case ignored, and its record. 0 also without such a
  /// record, and when one cannot be opened: that prints a line and stays. 1 for a null name.
  Acad::ErrorStatus deleteDim(const wchar_t* dimTypeName);
  /// The same for every type but "GroupDim", "JCDim" and "OnLine_PipeDim", whose labels several
  /// entities share.
  Acad::ErrorStatus deleteAllDim();
  /// Erases every record and leaves the labels drawn.
  Acad::ErrorStatus deleteAllDimInfo();

 private:
  void adopt(AcDbEntity& entity);
  Acad::ErrorStatus open_table(CDimRecordTable& table, AcDb::OpenMode mode) const;
  Acad::ErrorStatus open_record(const wchar_t* type, CDimRecordTable& table,
                                CDimRecord& record) const;
  Acad::ErrorStatus update_in(CDimRecord& record, StuDim& item, int replaceAll);
  Acad::ErrorStatus dispatchDimFamily(const StuDim& item);
  Acad::ErrorStatus updateDimFamily(const std::vector<StuDim>& members);
  Acad::ErrorStatus updateDimPrecision(StuDim& item) const;
  template <class IsConcerned>
  Acad::ErrorStatus for_records(IsConcerned is_concerned, Acad::ErrorStatus (CDimRecord::*act)());
  template <class T, class Decode>
  Acad::ErrorStatus read_value(const wchar_t* type, const wchar_t* key, T& value, Decode decode);

  AcDbObjectId extension_dictionary_;
  Acad::ErrorStatus open_status_ = Acad::eOk;
  AcDbObjectId entity_id_;
};
