#include "module/app/label_placement.h"

#include "module/app/arguments.h"
#include "module/app/failure.h"
#include "module/platform/opened.h"
#include "module/platform/resbuf.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "module/record/record_table.h"
#include "module/registry/update_service.h"

namespace dim {
namespace {

constexpr wchar_t kLabelType[] = L"bzjg";

enum class Form { kText, kReal };

struct PlacementItem {
  const wchar_t* name;
  Form form;
  bool may_be_nil;         ///< for the value "NULL", in any letter case
  const wchar_t* missing;  ///< printed when the record lacks the item; null: it counts as "NULL"
};
// In the order of the result.
constexpr PlacementItem kItems[] = {
    {L"zh_mc", Form::kText, true, nullptr},
    {L"ang_yx", Form::kReal, false, L"\n获取ang_yx失败!"},
    {L"dist_jgbz", Form::kReal, false, L"\n获取dist_jgbz失败!"},
    {L"ang_wz", Form::kReal, false, L"\n获取ang_wz失败!"},
    {L"czfx_jgbz", Form::kText, true, L"\n获取czfx_jgbz失败!"},
    {L"xfdh", Form::kText, false, L"\n获取xfdh失败!"},
};

resbuf* new_value(const PlacementItem& row, const CString& value) {
  if (row.form == Form::kReal) return acutBuildList(RTREAL, _wtof(value.c_str()), RTNONE);
  if (row.may_be_nil && equal_no_case(value, L"NULL")) return acutNewRb(RTNIL);
  return new_text_buffer(RTSTR, value);
}

bool is_label_record(const CDimRecordTableIterator& walk) {
  return equal_no_case(text_of(walk.getDimTypeName()), kLabelType);
}

/// Whether an entity of the record is still in the drawing: RTNORM when one is.
int check_label_entities(const AcDbObjectId& id) {
  CDimRecord record;
  CDimRecordIterator cursor;
  if (record.open(id, AcDb::kForRead, false) != Acad::eOk) return traced_failure(L"打开实体失败!");
  if (record.newIterator(cursor) != Acad::eOk) return traced_failure(L"创建迭代器失败!");
  int items = 0;
  int gone = 0;
  for (cursor.start(); cursor.stands_on_item(); cursor.step()) {
    ++items;
    const std::wstring_view handle = cursor.field(CDimRecordIterator::posHandle);
    if (!Opened<AcDbEntity>(object_of_handle(handle.data()), AcDb::kForRead)) ++gone;
  }
  return items == gone ? RTERROR : RTNORM;
}

int return_placement(const AcDbObjectId& id) {
  CDimRecord record;
  if (record.open(id, AcDb::kForRead, false) != Acad::eOk) {
    return printed_failure(L"\n打开实体失败!");
  }
  ChainBuilder list;
  list.add(acutNewRb(RTLB));
  for (const PlacementItem& row : kItems) {
    StuDim item;
    if (record.getAt(row.name, item) != Acad::eOk) {
      if (row.missing) return printed_failure(row.missing);
      item.value = L"NULL";
    }
    list.add(acutNewRb(RTLB));
    list.add(new_text_buffer(RTSTR, row.name));
    list.add(new_value(row, item.value));
    list.add(acutNewRb(RTLE));
  }
  list.add(acutNewRb(RTLE));
  if (acedRetList(list.head()) != RTNORM) {
    return printed_failure(L"\n返回井管标注更新信息表失败!");
  }
  return RTNORM;
}

/// The well's extension dictionary, null when it has none; false when the well does not open.
bool read_extension_dictionary(AcDbObjectId well, AcDbObjectId& dictionary) {
  const Opened<AcDbEntity> entity(well, AcDb::kForRead);
  if (entity) dictionary = entity->extensionDictionary();
  return static_cast<bool>(entity);
}

}  // namespace

int jgbzUpInfo() {
  const resbuf* const well = acedGetArgs();
  if (!has_type(well, RTENAME)) return traced_failure(L"没有指定检查井的实体名!");
  const AcDbObjectId id = entity_of(*well);
  if (id.isNull()) return printed_failure(L"\n检查井实体名无效！");
  AcDbObjectId dictionary;
  if (!read_extension_dictionary(id, dictionary)) return printed_failure(L"\n打开实体失败!");
  if (dictionary.isNull()) return printed_failure(L"\n目标检查井不包括标注信息!");
  CDimRecordTable table;
  CDimupateRegisiter& registry = CDimUpdateServ::getInstance().getDimRegServ();
  if (table.open(&registry, dictionary, AcDb::kForRead, 0) != Acad::eOk) {
    return printed_failure(L"\n打开实体失败!");
  }
  AcDbObjectId record;
  if (table.getAt(kLabelType, record) != Acad::eOk) return RTNORM;
  CDimRecordTableIterator walk;
  if (table.newIterator(walk) != Acad::eOk) acutPrintf(L"\n创建迭代器失败");  // it walks nothing
  for (walk.start(); !walk.done(); walk.step()) {
    if (!is_label_record(walk)) continue;
    walk.GetObjectId(record);
    if (check_label_entities(record) != RTNORM) return RTERROR;
  }
  for (walk.start(); !walk.done() && !is_label_record(walk); walk.step()) {
  }
  if (walk.done()) return RTNORM;
  walk.GetObjectId(record);
  return return_placement(record);
}

}  // namespace dim
