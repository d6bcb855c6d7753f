#include "module/app/trial.h"

#include "module/app/failure.h"
#include "module/manager/dim_manager.h"
#include "module/platform/selection.h"

namespace dim {

int t1() {
  ArxDbgSelSet selected;
  selected.userSelect(L"\n请选择一个实体:", L"完毕");
  AcDbObjectIdArray entities;
  selected.asArray(entities);
  StuDim item;
  item.name = L"pipe_flow";
  item.value = L"1234567890";
  for (int i = 0; i < entities.length(); ++i) {
    CDimManager manager(entities[i]);
    if (manager.openStatus() != Acad::eOk) return printed_failure(L"\n打开实体失败!");
    if (manager.dimRecEx(L"pcgb", item) != Acad::eOk) return printed_failure(L"\n添加失败!");
    if (manager.updateDim(L"pipe_flow", L"12345678") != Acad::eOk) {
      return printed_failure(L"\n更新实体信息失败!");
    }
  }
  return RTNORM;
}

}  // namespace dim
