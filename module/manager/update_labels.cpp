#include "module/manager/dim_manager.h"

#include <exception>

#include "module/manager/families.h"
#include "module/manager/flow_arrows.h"
#include "module/manager/precision.h"
#include "module/platform/lisp.h"
#include "module/platform/text.h"
#include "module/platform/trace.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "module/record/record_table.h"
#include "module/registry/dim_facade.h"
#include "module/registry/update_service.h"

namespace {

// Types with a handler that redraws them when the item of a pipe or a well changes, in this order.
constexpr const wchar_t* kPipeTypes[] = {L"xzgj",         L"xdgj",     L"xdbg_st",
                                         L"xdbg_ed",      L"GroupDim", L"Zh_Xd_Dim",
                                         L"Ymg_NoJd_Dim", L"JCDim",    L"OnLine_PipeDim"};
constexpr const wchar_t* kWellTypes[] = {L"bjbh", L"bzjg"};

bool begins_with_no_case(const CString& name, std::wstring_view beginning) {
  return dim::equal_no_case(std::wstring_view(name).substr(0, beginning.size()), beginning);
}

/// A handler is another module's code: one that throws has failed, and that is all.
bool redraws(CDimFacade& handler, DimUpdateRequest& request) {
  try {
    return handler.update(request) != 0;
  } catch (const std::exception& error) {
    dim::trace(dim::from_utf8(error.what()));
  } catch (...) {
  }
  return false;
}

}  // namespace

Acad::ErrorStatus CDimManager::updateDim(StuDim item, int replaceAll) {
  CDimUpdateServ& service = CDimUpdateServ::getInstance();
  if (open_status_ != Acad::eOk) return dim::kFailed;
  if (!service.getDimRegServ().isDimName(item.name.c_str())) return dim::kNotRegistered;
  if (dispatchDimFamily(item) != Acad::eOk) {
    dim::trace(L"更新标注家族失败!");
    return dim::kFailed;
  }
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  if (open_table(table, AcDb::kForWrite) != Acad::eOk) return dim::kFailed;
  if (table.newIterator(walk) != Acad::eOk) return dim::kFailed;
  for (walk.start(); !walk.done(); walk.step()) {
    AcDbObjectId id;
    CDimRecord record;
    walk.GetObjectId(id);
    if (record.open(id, AcDb::kForWrite, false) != Acad::eOk) return dim::kFailed;
    if (update_in(record, item, replaceAll) != Acad::eOk) return dim::kFailed;
  }
  return Acad::eOk;
}

/// Gives the record's item of that name, if it has one, its new value. `item` becomes what was
/// written.
Acad::ErrorStatus CDimManager::update_in(CDimRecord& record, StuDim& item, int replaceAll) {
  StuDim stored;
  CDimRecordIterator cursor;
  if (record.newIterator(cursor) != Acad::eOk) return Acad::eOk;
  if (record.get_at(cursor, item.name.c_str(), stored) != Acad::eOk) return Acad::eOk;
  if (stored.recordKind == dim::kNoEntityKind) {
    stored.value = item.value;
    // Kept: information that cannot be stored fails nothing.
    // Test: UpdateItem.InformationThatCannotBeStoredFailsNothing
    record.set_at(cursor, stored);
    return Acad::eOk;
  }
  item.handle = stored.handle;
  updateDimPrecision(item);  // without settings the value is stored as it came
  if (!replaceAll) {
    item.prefix = stored.prefix;
    item.suffix = stored.suffix;
    item.separator = stored.separator;
  }
  if (record.set_at(cursor, item) != Acad::eOk) return dim::kFailed;
  return record.update_texts(cursor);
}

Acad::ErrorStatus CDimManager::updateDim(const wchar_t* dimName, const wchar_t* value) {
  StuDim item;
  item.name = dim::text_of(dimName);
  item.value = dim::text_of(value);
  return updateDim(std::move(item), 0);
}

Acad::ErrorStatus CDimManager::updateDim(const wchar_t* dimTypeName) {
  if (open_status_ != Acad::eOk) return dim::kFailed;
  const std::wstring_view type = dim::text_of(dimTypeName);
  CDimFacade* handler = CDimUpdateServ::getInstance().getDimRegServ().handler_of(type);
  if (!handler) {
    dim::trace_format(L"标注类型名: %s 还没有注册到标注自动更新!", type.data());
    return dim::kNotFound;
  }
  int existing = 0;
  int missing = 0;
  if (isDimExisted(dimTypeName, existing, missing) != Acad::eOk) {
    dim::trace(L"分析标注是否存在失败，标注自动更新取消!");
    return dim::kFailed;
  }
  if (!existing) {
    dim::trace(L"用户删除了整个标注，这样的标注无需在更新!");
    return Acad::eOk;
  }
  if (missing) dim::trace(L"发现残缺标注，程序被设置为强制更新!");
  DimUpdateRequest request;
  request.dimTypeName = type;
  request.entityIds.append(entity_id_);
  return redraws(*handler, request) ? Acad::eOk : dim::kFailed;
}

Acad::ErrorStatus CDimManager::updatePipeDim(unsigned long) {
  for (const wchar_t* type : kPipeTypes) updateDim(type);
  return Acad::eOk;
}

Acad::ErrorStatus CDimManager::updateWellDim(unsigned long) {
  for (const wchar_t* type : kWellTypes) updateDim(type);
  return Acad::eOk;
}

Acad::ErrorStatus CDimManager::updateJtDirection() {
  return dim::turn_flow_arrows(entity_id_) == RTNORM ? Acad::eOk : dim::kFailed;
}

Acad::ErrorStatus CDimManager::dispatchDimFamily(const StuDim& item) {
  // Kept: each member of a family comes through here again and has the types redrawn once more.
  // Test: Families.EveryMemberHasTheTypesRedrawnAgain
  if (begins_with_no_case(item.name, L"well")) updateWellDim(0);
  if (begins_with_no_case(item.name, L"pipe")) updatePipeDim(0);

  struct Family {
    std::wstring_view head;
    Acad::ErrorStatus (CDimManager::*update)(double);
  };
  static constexpr Family kFamilies[] = {
      {L"pipe_len", &CDimManager::updatePipeLenFamily},
      {L"pipe_i", &CDimManager::updateGradientFamily},
      {L"well_bgdm", &CDimManager::updateDmBgFamily},
  };
  for (const Family& family : kFamilies) {
    if (dim::equal_no_case(item.name, family.head)) {
      return (this->*family.update)(_wtof(item.value.c_str()));
    }
  }
  return Acad::eOk;
}

Acad::ErrorStatus CDimManager::updatePipeLenFamily(double length) {
  if (length == 0.0) return dim::kFailed;  // a length that is not known must not spread
  return updateDimFamily(dim::family_of(L"pipe_len", length));
}

Acad::ErrorStatus CDimManager::updateGradientFamily(double slope) {
  return updateDimFamily(dim::family_of(L"pipe_i", slope));
}

Acad::ErrorStatus CDimManager::updateDmBgFamily(double elevation) {
  return updateDimFamily(dim::family_of(L"well_bgdm", elevation));
}

Acad::ErrorStatus CDimManager::updateDimFamily(const std::vector<StuDim>& members) {
  for (const StuDim& member : members) {
    if (updateDim(member, 0) == Acad::eOk) continue;
    dim::trace(L"更新标注家族的时候发生错误!");
    return dim::kFailed;
  }
  return Acad::eOk;
}

Acad::ErrorStatus CDimManager::updateDimPrecision(StuDim& item) const {
  const auto missing = [](const wchar_t* warning) {
    acutPrintf(warning);
    return dim::kFailed;
  };
  const CDimUpdateServ& service = CDimUpdateServ::getInstance();
  const dim::PrecisionSettings settings{service.getGcGpBzSz(), service.getZdmGdBzSz(),
                                        service.getPcBzSz()};
  if (!settings.plan) return missing(L"\n警告:无法获取管道管长标注设置!");
  if (!settings.profile) return missing(L"\n警告:无法获取管道标高标注设置!");
  if (!settings.calculation) return missing(L"\n警告:无法获取给水管线平差标注设置!");
  item.value = dim::rounded_value(item.name, item.value, settings);
  return Acad::eOk;
}
