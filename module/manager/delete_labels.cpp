#include <algorithm>
#include <iterator>

#include "module/manager/dim_manager.h"
#include "module/platform/lisp.h"
#include "module/platform/text.h"
#include "module/record/record.h"
#include "module/record/record_table.h"

namespace {

// Labels that several entities share: who drew them deletes them.
constexpr const wchar_t* kSharedTypes[] = {L"GroupDim", L"JCDim", L"OnLine_PipeDim"};

bool is_shared(const wchar_t* type) {
  return std::any_of(std::begin(kSharedTypes), std::end(kSharedTypes),
                     [type](const wchar_t* shared) { return dim::equal_no_case(type, shared); });
}

}  // namespace

/// Does something to the record of every type concerned; one that does not open is told to the user
/// and left.
template <class IsConcerned>
Acad::ErrorStatus CDimManager::for_records(IsConcerned is_concerned,
                                           Acad::ErrorStatus (CDimRecord::*act)()) {
  if (open_status_ != Acad::eOk) return dim::kFailed;
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  if (open_table(table, AcDb::kForWrite) != Acad::eOk) return dim::kFailed;
  if (table.newIterator(walk) != Acad::eOk) return dim::kFailed;
  for (walk.start(); !walk.done(); walk.step()) {
    if (!is_concerned(walk.getDimTypeName())) continue;
    AcDbObjectId id;
    CDimRecord record;
    walk.GetObjectId(id);
    if (record.open(id, AcDb::kForWrite, false) == Acad::eOk) {
      (record.*act)();
    } else {
      acutPrintf(L"\n警告:清除某个标注失败!");
    }
  }
  return Acad::eOk;
}

Acad::ErrorStatus CDimManager::deleteDim(const wchar_t* dimTypeName) {
  if (!dimTypeName) return dim::kFailed;
  return for_records(
      [dimTypeName](const wchar_t* type) { return dim::equal_no_case(type, dimTypeName); },
      &CDimRecord::deleteDim);
}

Acad::ErrorStatus CDimManager::deleteAllDim() {
  return for_records([](const wchar_t* type) { return !is_shared(type); }, &CDimRecord::deleteDim);
}

Acad::ErrorStatus CDimManager::deleteAllDimInfo() {
  return for_records([](const wchar_t*) { return true; }, &CDimRecord::deleteDimInfo);
}
