#include "module/app/updating.h"

#include "module/app/arguments.h"
#include "module/app/failure.h"
#include "module/manager/dim_manager.h"
#include "module/manager/flow_arrows.h"
#include "module/platform/pipe_library.h"

namespace dim {
namespace {

double g_drawing_scale = 0.0;

constexpr TextArgument kNameAndValue[] = {
    {&StuDim::name, L"没有指定标注名!"},
    {&StuDim::value, L"没有指定标注值!"},
};
constexpr TextArgument kPieces[] = {
    {&StuDim::prefix, L"前缀值无效!"},
    {&StuDim::suffix, L"后缀值无效!"},
    {&StuDim::separator, L"分隔符无效!"},
};

/// What dimupdate is given.
struct ItemUpdate {
  const resbuf* entity = nullptr;
  StuDim item;
  int replace_all = 0;
};

int parse_item_update(const resbuf* at, ItemUpdate& update) {
  if (!has_type(at, RTENAME)) return traced_failure(L"没有指定被标注实体名!");
  update.entity = at;
  at = at->rbnext;
  for (const TextArgument& argument : kNameAndValue) {
    if (!has_type(at, RTSTR)) return traced_failure(argument.fault);
    update.item.*argument.field = string_of(*at);
    at = at->rbnext;
  }
  if (!at) return RTNORM;
  update.replace_all = has_type(at, RTT);
  at = at->rbnext;
  for (const TextArgument& argument : kPieces) {
    if (!at) return RTNORM;
    if (!has_type(at, RTSTR) && !has_type(at, RTNIL)) return traced_failure(argument.fault);
    if (has_type(at, RTSTR)) update.item.*argument.field = string_of(*at);
    at = at->rbnext;
  }
  return RTNORM;
}

/// Prints what updatedim is called with, and gives LISP nil; a success all the same.
int wrong_format(const wchar_t* line) {
  acutPrintf(L"%s", line);
  acedRetNil();
  return RTNORM;
}

/// Updates all label types of the entity that is the only argument.
int update_all(Acad::ErrorStatus (CDimManager::*update)(unsigned long)) {
  const resbuf* const entity = acedGetArgs();
  if (!has_type(entity, RTENAME)) return RTERROR;
  CDimManager manager(entity_of(*entity));
  if (manager.openStatus() != Acad::eOk) return RTERROR;
  return (manager.*update)(0) == Acad::eOk ? RTNORM : RTERROR;
}

}  // namespace

int dimupdate() {
  const resbuf* const arguments = acedGetArgs();
  if (!arguments) return printed_failure(L"\n没有指定参数!");
  ItemUpdate update;
  if (parse_item_update(arguments, update) != RTNORM) return RTERROR;
  const AcDbObjectId entity = entity_of(*update.entity);
  if (entity.isNull()) return printed_failure(L"\n转换类型失败!");
  CDimManager manager(entity);
  if (manager.openStatus() != Acad::eOk) return printed_failure(L"\n打开实体失败!");
  if (manager.updateDim(update.item, update.replace_all) != Acad::eOk) {
    return printed_failure(L"\n更新标注失败!");
  }
  trace(L"更新标注成功!");
  return RTNORM;
}

int updatedim() {
  const resbuf* const type = acedGetArgs();
  if (!has_type(type, RTSTR)) return wrong_format(L"\n参数格式错误需要一个RTSTR");
  const resbuf* const entity = type->rbnext;
  if (!has_type(entity, RTENAME)) return wrong_format(L"\n参数格式错误需要一个RTENAME");
  const AcDbObjectId id = entity_of(*entity);
  if (id.isNull()) return RTNORM;
  CDimManager manager(id);
  if (manager.openStatus() != Acad::eOk) {
    trace(L"打开实体失败!");
    return RTNORM;
  }
  const CString type_name = string_of(*type);
  if (manager.updateDim(type_name.c_str()) != Acad::eOk) {
    trace_format(L"%s更新没有成功，可能是没有标注!", type_name.c_str());
  }
  return RTNORM;
}

int updatePipeInfo() { return update_all(&CDimManager::updatePipeDim); }

int updateWellInfo() { return update_all(&CDimManager::updateWellDim); }

int updateJtDirection() {
  const resbuf* const pipe = acedGetArgs();
  if (!has_type(pipe, RTENAME)) return printed_failure(L"\n参数类型错误!");
  g_drawing_scale = WDLGX::GetCTBL();
  const AcDbObjectId id = entity_of(*pipe);
  return id.isNull() ? RTERROR : turn_flow_arrows(id);
}

double drawing_scale() { return g_drawing_scale; }

}  // namespace dim
