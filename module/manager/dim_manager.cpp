#include "module/manager/dim_manager.h"

#include "module/manager/draw_value.h"
#include "module/platform/lisp.h"
#include "module/platform/opened.h"
#include "module/platform/trace.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "module/record/record_table.h"
#include "module/record/stored_items.h"
#include "module/registry/update_service.h"

namespace {

CDimupateRegisiter& registry() { return CDimUpdateServ::getInstance().getDimRegServ(); }

/// Whether a value may be filed under the type and key.
bool is_addressable(const wchar_t* type, const wchar_t* key) {
  if (!registry().isRegisted(type)) {
    dim::trace_format(L"dimTypeName: %s is not a registed dimTypeName!", dim::text_of(type).data());
    return false;
  }
  if (dim::text_of(key).empty()) {
    dim::trace(L"dimName can not be empty!");
    return false;
  }
  return true;
}

/// Appends the annotation entities of every item of the record; false when it cannot be read.
bool collect_entities(const AcDbObjectId& record_id, AcDbObjectIdArray& found) {
  CDimRecord record;
  CDimRecordIterator cursor;
  if (record.open(record_id, AcDb::kForRead, false) != Acad::eOk) return false;
  if (record.newIterator(cursor) != Acad::eOk) return false;
  for (cursor.start(); !cursor.done(); cursor.step()) {
    if (!cursor.stands_on_item()) continue;
    const std::wstring_view handle = cursor.field(CDimRecordIterator::posHandle);
    const AcDbObjectId id = dim::object_of_handle(handle.data());
    if (!id.isNull()) found.append(id);
  }
  return true;
}

bool collect_entities(CDimRecordTable& table, AcDbObjectIdArray& found) {
  CDimRecordTableIterator walk;
  if (table.newIterator(walk) != Acad::eOk) return false;
  for (walk.start(); !walk.done(); walk.step()) {
    AcDbObjectId record_id;
    walk.GetObjectId(record_id);
    if (!collect_entities(record_id, found)) return false;
  }
  return true;
}

}  // namespace

CDimManager::CDimManager(AcDbEntity* entity) {
  if (!entity) {
    open_status_ = Acad::eNullEntityPointer;
    return;
  }
  if (!entity->isWriteEnabled()) entity->upgradeOpen();  // a refusal shows in what follows
  adopt(*entity);
}

CDimManager::CDimManager(AcDbObjectId entityId) {
  dim::Opened<AcDbEntity> entity(entityId, AcDb::kForWrite);
  open_status_ = entity.status();
  if (entity) adopt(*entity);
}

void CDimManager::adopt(AcDbEntity& entity) {
  AcDbObjectId dictionary = entity.extensionDictionary();
  if (dictionary.isNull()) {
    if (entity.createExtensionDictionary() != Acad::eOk) {
      dim::trace(L"创建扩展字典失败!");
      open_status_ = dim::kNotOpen;
      return;
    }
    dictionary = entity.extensionDictionary();
  }
  extension_dictionary_ = dictionary;
  entity_id_ = entity.objectId();
  open_status_ = Acad::eOk;
}

Acad::ErrorStatus CDimManager::open_table(CDimRecordTable& table, AcDb::OpenMode mode) const {
  const Acad::ErrorStatus status = table.open(&registry(), extension_dictionary_, mode, 0);
  if (status != Acad::eOk) dim::trace(L"打开记录字典失败!");
  return status;
}

Acad::ErrorStatus CDimManager::open_record(const wchar_t* type, CDimRecordTable& table,
                                           CDimRecord& record) const {
  AcDbObjectId id;
  if (open_table(table, AcDb::kForRead) != Acad::eOk) return dim::kFailed;
  if (table.getAt(type, id) != Acad::eOk) return dim::kFailed;
  return record.open(id, AcDb::kForRead, false) == Acad::eOk ? Acad::eOk : dim::kFailed;
}

Acad::ErrorStatus CDimManager::dimRecEx(const wchar_t* dimTypeName, const StuDim& item) {
  if (item.value.empty() && !dim::equal_no_case(item.name, item.handle)) return Acad::eOk;
  if (open_status_ != Acad::eOk) return dim::kFailed;
  if (!registry().isRegisted(dimTypeName)) {
    dim::trace_format(L"%s不是合法的标注类型名!", dim::text_of(dimTypeName).data());
    return dim::kNotRegistered;
  }
  CDimRecordTable table;
  if (open_table(table, AcDb::kForWrite) != Acad::eOk) return dim::kFailed;
  return table.add_item(dimTypeName, item);
}

Acad::ErrorStatus CDimManager::dimTxtRec(const wchar_t* dimTypeName, const wchar_t* dimName,
                                         AcDbObjectId textId, const wchar_t* value,
                                         const wchar_t* suffix, const wchar_t* prefix,
                                         const wchar_t* separator) {
  if (open_status_ != Acad::eOk) return dim::kFailed;
  StuDim item;
  item.handle = dim::handle_text(textId);
  if (item.handle.empty()) {
    dim::trace(L"句柄转换失败!");
    return dim::kFailed;
  }
  item.name = dim::text_of(dimName);
  item.value = dim::text_of(value);
  item.suffix = dim::text_of(suffix);
  item.prefix = dim::text_of(prefix);
  item.separator = dim::text_of(separator);
  return dimRecEx(dimTypeName, item);
}

Acad::ErrorStatus CDimManager::dimEntRec(const wchar_t* dimTypeName, AcDbObjectId entityId) {
  if (open_status_ != Acad::eOk) return dim::kFailed;
  if (!registry().isRegisted(dimTypeName)) {
    dim::trace_format(L"%s不是合法的类型名!", dim::text_of(dimTypeName).data());
    return dim::kNotRegistered;
  }
  StuDim item;
  item.handle = dim::handle_text(entityId);
  if (item.handle.empty()) {
    dim::trace(L"句柄转换失败!");
    return dim::kFailed;
  }
  item.name = item.handle;
  return dimRecEx(dimTypeName, item);
}

Acad::ErrorStatus CDimManager::dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                          const AcGeVector3d& value) {
  return dimDrawRec(dimTypeName, key, dim::value_text(value));
}

Acad::ErrorStatus CDimManager::dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                          const AcGePoint3d& value) {
  return dimDrawRec(dimTypeName, key, dim::value_text(value));
}

Acad::ErrorStatus CDimManager::dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                          double value) {
  return dimDrawRec(dimTypeName, key, dim::value_text(value));
}

Acad::ErrorStatus CDimManager::dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                          const long& value) {
  return dimDrawRec(dimTypeName, key, dim::value_text(value));
}

Acad::ErrorStatus CDimManager::dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                          AcDbObjectId value) {
  return dimDrawRec(dimTypeName, key, dim::value_text(value));
}

Acad::ErrorStatus CDimManager::dimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                          const CString& value) {
  if (!is_addressable(dimTypeName, key)) return dim::kBadInput;
  StuDim item;
  item.name = key;
  item.value = value;
  return dimRecEx(dimTypeName, item);
}

Acad::ErrorStatus CDimManager::getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                             CString& value) {
  if (!is_addressable(dimTypeName, key)) return dim::kBadInput;
  CDimRecordTable table;
  CDimRecord record;
  if (open_record(dimTypeName, table, record) != Acad::eOk) return dim::kFailed;
  StuDim item;
  if (record.getAt(key, item) != Acad::eOk) {
    dim::trace_format(L"没有找到对应的记录%s::%s!", dimTypeName, key);
    return dim::kNotFound;
  }
  value = item.value;
  return Acad::eOk;
}

/// The value behind the key as `decode` makes it of the text; every failure is the same one.
template <class T, class Decode>
Acad::ErrorStatus CDimManager::read_value(const wchar_t* type, const wchar_t* key, T& value,
                                          Decode decode) {
  CString text;
  if (getDimDrawRec(type, key, text) != Acad::eOk) {
    dim::trace_format(L"获取标注自动更新记录信息%s，下属标注记录:%s没有成功!",
                      dim::text_of(type).data(), dim::text_of(key).data());
    return dim::kFailed;
  }
  value = decode(text);
  return Acad::eOk;
}

Acad::ErrorStatus CDimManager::getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                             AcGeVector3d& value) {
  return read_value(dimTypeName, key, value,
                    [](const CString& text) { return dim::point_of(text).asVector(); });
}

Acad::ErrorStatus CDimManager::getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                             AcGePoint3d& value) {
  return read_value(dimTypeName, key, value, dim::point_of);
}

Acad::ErrorStatus CDimManager::getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                             double& value) {
  return read_value(dimTypeName, key, value, dim::real_of);
}

Acad::ErrorStatus CDimManager::getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                             long& value) {
  return read_value(dimTypeName, key, value, dim::long_of);
}

Acad::ErrorStatus CDimManager::getDimDrawRec(const wchar_t* dimTypeName, const wchar_t* key,
                                             AcDbObjectId& value) {
  AcDbObjectId object;
  const Acad::ErrorStatus status = read_value(dimTypeName, key, object, dim::object_of);
  if (status != Acad::eOk) return status;
  if (object.isNull()) return dim::kBadInput;
  value = object;
  return Acad::eOk;
}

Acad::ErrorStatus CDimManager::isDimExisted(const wchar_t* dimTypeName, int& existing,
                                            int& missing) {
  existing = missing = 0;
  CDimRecordTable table;
  AcDbObjectId record;
  dim::StoredItems items;
  if (open_table(table, AcDb::kForRead) != Acad::eOk) return dim::kFailed;
  if (table.getAt(dimTypeName, record) != Acad::eOk) return dim::kFailed;
  if (items.read(record) != Acad::eOk) return dim::kFailed;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const std::wstring_view handle = items.field(i, CDimRecordIterator::posHandle);
    if (handle.empty()) continue;
    const AcDbObjectId id = dim::object_of_handle(handle.data());
    const bool opens = static_cast<bool>(dim::Opened<AcDbEntity>(id, AcDb::kForRead));
    (opens ? existing : missing) = 1;
  }
  return items.is_cut_short() ? dim::kFailed : Acad::eOk;
}

Acad::ErrorStatus CDimManager::getDimEnt(AcDbObjectIdArray& entities) {
  if (open_status_ != Acad::eOk) return dim::kFailed;
  CDimRecordTable table;
  AcDbObjectIdArray found;
  if (open_table(table, AcDb::kForRead) != Acad::eOk || !collect_entities(table, found)) {
    acutPrintf(L"提取标注实体的ID失败!");
    return dim::kFailed;
  }
  entities.append(found);
  return Acad::eOk;
}
