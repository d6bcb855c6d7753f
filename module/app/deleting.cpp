#include "module/app/deleting.h"

#include "module/app/arguments.h"
#include "module/app/failure.h"
#include "module/manager/dim_manager.h"

namespace dim {
namespace {

/// Runs a deletion of all types on the entity that is the only argument.
int delete_all(Acad::ErrorStatus (CDimManager::*remove)(), const wchar_t* no_entity,
               int not_opened) {
  const resbuf* const entity = acedGetArgs();
  if (!has_type(entity, RTENAME)) return traced_failure(no_entity);
  const AcDbObjectId id = entity_of(*entity);
  if (id.isNull()) return traced_failure(L"转换实体类型失败!");
  CDimManager manager(id);
  if (manager.openStatus() != Acad::eOk) {
    trace(L"打开实体失败!");
    return not_opened;
  }
  return (manager.*remove)() == Acad::eOk ? RTNORM : RTERROR;
}

}  // namespace

int dimDel() {
  const resbuf* const entity = acedGetArgs();
  if (!has_type(entity, RTENAME)) return traced_failure(L"需要指定被标注实体名!");
  const resbuf* const type = entity->rbnext;
  if (!has_type(type, RTSTR)) return traced_failure(L"需要指定标注类型名!");
  CDimManager manager(entity_of(*entity));
  if (manager.openStatus() != Acad::eOk) return RTERROR;
  return manager.deleteDim(string_of(*type).c_str()) == Acad::eOk ? RTNORM : RTERROR;
}

int dimDelAll() {
  return delete_all(&CDimManager::deleteAllDim, L"参数格式不正确,需要一个实体名!", RTERROR);
}

// Kept: the comma in full width, and 0 for a failed open, which is a failure like RTERROR.
// Test: DeletingCalls.ForgettingDiffersInItsCommaAlone
int dimDelAllInfo() {
  return delete_all(&CDimManager::deleteAllDimInfo, L"参数格式不正确，需要一个实体名!", 0);
}

}  // namespace dim
