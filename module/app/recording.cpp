#include "module/app/recording.h"

#include "module/app/arguments.h"
#include "module/app/failure.h"
#include "module/manager/dim_manager.h"

namespace dim {
namespace {

int record(const DimEnvironment& environment, const StuDim& item) {
  CDimManager manager(environment.entity);
  if (manager.openStatus() != Acad::eOk) return printed_failure(L"\n打开实体失败!");
  if (manager.dimRecEx(environment.type_name.c_str(), item) != Acad::eOk) {
    return printed_failure(L"\n记录实体信息失败!");
  }
  return RTNORM;
}

}  // namespace

int dimRec() {
  StuDim item;
  DimEnvironment environment;
  const resbuf* rest = nullptr;
  if (parseDimEnvironment(acedGetArgs(), item, environment, rest) != RTNORM) {
    return printed_failure(L"\n参数格式不对!");
  }
  if (parseDimTexts(rest, item) != RTNORM) return printed_failure(L"\n参数格式非法!");
  return record(environment, item);
}

int dimGeRec() {
  StuDim item;
  DimEnvironment environment;
  const resbuf* rest = nullptr;
  if (parseDimEnvironment(acedGetArgs(), item, environment, rest) != RTNORM) {
    return printed_failure(L"\n参数格式不对!");
  }
  item.name = item.handle;
  return record(environment, item);
}

int dimUserRec() {
  StuDim item;
  DimEnvironment environment;
  if (parseDimUserItem(acedGetArgs(), item, environment) != RTNORM) {
    return printed_failure(L"\n参数格式不对!");
  }
  return record(environment, item);
}

}  // namespace dim
