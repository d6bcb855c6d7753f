#include "module/app/arguments.h"

#include "module/app/failure.h"
#include "module/registry/update_service.h"

namespace dim {
namespace {

/// The list (entity type-name); the annotated entity's handle goes into `handle`.
int parse_environment_list(const resbuf*& at, CString& handle, DimEnvironment& environment) {
  if (!at) return traced_failure(L"\n标注参数不能为空!");
  if (!has_type(at, RTLB)) return traced_failure(L"\n没有指定标注环境表!");
  at = at->rbnext;
  if (!has_type(at, RTENAME)) return traced_failure(L"\n没有指定被标注实体名!");
  environment.entity = entity_of(*at);
  handle = handle_text(environment.entity);
  if (handle.empty()) return traced_failure(L"被标注实体名无效!");
  at = at->rbnext;
  if (!has_type(at, RTSTR)) return traced_failure(L"\n标注类型名错误!");
  environment.type_name = string_of(*at);
  if (!CDimUpdateServ::getInstance().getDimRegServ().isRegisted(environment.type_name.c_str())) {
    return traced_failure(L"\n标注类型名无效!");
  }
  at = at->rbnext;
  if (!has_type(at, RTLE)) return traced_failure(L"参数格式有错误!");
  at = at->rbnext;
  return RTNORM;
}

constexpr TextArgument kTextArguments[] = {
    {&StuDim::name, L"标注名没有指定!"},      {&StuDim::value, L"标注值没有指定!"},
    {&StuDim::prefix, L"标注前缀没有指定!"},  {&StuDim::suffix, L"后缀没有指定!"},
    {&StuDim::separator, L"分隔符没有指定!"},
};

}  // namespace

CString string_of(const resbuf& buffer) { return CString(text_of(buffer.resval.rstring)); }

AcDbObjectId entity_of(const resbuf& buffer) {
  AcDbObjectId id;
  const Acad::ErrorStatus status = ArxDbgUtils::enameToObjId(buffer.resval.rlname, id);
  return status == Acad::eOk ? id : AcDbObjectId();
}

int parseDimEnvironment(const resbuf* arguments, StuDim& item, DimEnvironment& environment,
                        const resbuf*& rest) {
  const resbuf* at = arguments;
  if (parse_environment_list(at, item.handle, environment) != RTNORM) return RTERROR;
  if (!has_type(at, RTENAME)) return traced_failure(L"没有指定标注实体名!");
  const AcDbObjectId annotation = entity_of(*at);
  if (annotation.isNull()) return traced_failure(L"\n标注实体名到Id失败!");
  if (CString handle = handle_text(annotation); !handle.empty()) item.handle = std::move(handle);
  rest = at->rbnext;
  return RTNORM;
}

int parseDimTexts(const resbuf* arguments, StuDim& item) {
  if (!arguments) return traced_failure(L"不存在扩展参数部分!");
  const resbuf* at = arguments;
  for (const TextArgument& argument : kTextArguments) {
    if (!has_type(at, RTSTR) && !has_type(at, RTNIL)) return traced_failure(argument.fault);
    item.*argument.field = has_type(at, RTSTR) ? string_of(*at) : CString();
    at = at->rbnext;
  }
  return RTNORM;
}

int parseDimUserItem(const resbuf* arguments, StuDim& item, DimEnvironment& environment) {
  const resbuf* at = arguments;
  StuDim parsed;
  if (parse_environment_list(at, parsed.handle, environment) != RTNORM) return RTERROR;
  parsed.handle.clear();
  if (!has_type(at, RTSTR)) return traced_failure(L"标注类型名类型错误!");
  parsed.name = string_of(*at);
  at = at->rbnext;
  if (!has_type(at, RTSTR)) return traced_failure(L"标注信息类型错误!");
  parsed.value = string_of(*at);
  parsed.recordKind = kNoEntityKind;
  item = std::move(parsed);
  return RTNORM;
}

}  // namespace dim
