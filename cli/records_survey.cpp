#include "cli/records_survey.h"

#include <nlohmann/json.hpp>

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/db/record.h"
#include "module/platform/opened.h"

namespace cli {

RecordOwner record_owner(AcDbObjectId entity) {
  const dim::Opened<AcDbEntity> opened(entity, AcDb::kForRead);
  return {entity, opened ? opened->extensionDictionary() : AcDbObjectId()};
}

void for_each_record_owner(AcDbDatabase& database,
                           const std::function<void(const RecordOwner&)>& visit) {
  database.for_each_object([&](AcDbObjectId id) {
    if (!cad::is_entity(id)) return;
    const RecordOwner owner = record_owner(id);
    if (!owner.dictionary.isNull()) visit(owner);
  });
}

std::string kind_of(AcDbObjectId object) { return std::string(cad::record_kind(object)); }

std::string handle_of(AcDbObjectId object) {
  return cad::to_utf8(cad::handle_text(object.handle()));
}

AnnotationState annotation_state(const StuDim& item) {
  if (item.handle.empty() || item.recordKind == dim::kNoEntityKind) return AnnotationState::kNone;
  const dim::Opened<AcDbEntity> entity(dim::object_of_handle(item.handle.c_str()), AcDb::kForRead);
  return entity ? AnnotationState::kPresent : AnnotationState::kMissing;
}

const char* name_of(AnnotationState state) {
  switch (state) {
    case AnnotationState::kPresent:
      return "present";
    case AnnotationState::kMissing:
      return "missing";
    case AnnotationState::kNone:
      break;
  }
  return "none";
}

std::string in_quotes(std::wstring_view text) {
  return nlohmann::json(cad::to_utf8(text))
      .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace cli
