#include "host/db/object_groups.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "host/db/entity.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"

namespace cad {
namespace {

/// What an entity has whatever its kind: layer, linetype, colour, weight, scale, visibility.
constexpr int kCommonCodes[] = {8, 6, 62, 370, 420, 430, 440, 48, 60};

bool is_common(int code) {
  return std::find(std::begin(kCommonCodes), std::end(kCommonCodes), code) !=
         std::end(kCommonCodes);
}

/// Groups that say what an object is and where it belongs, not how it is drawn.
bool is_frame(int code) {
  return code == 0 || code == 5 || code == 100 || code == 102 || code == 330 || code == 360 ||
         code == 67 || code == 410;
}

void add_group(GroupList& list, const RecordGroups& record, const Group& group) {
  switch (group.type) {
    case Group::Type::kInteger:
      list.integer(group.code, group.integer);
      break;
    case Group::Type::kReal:
      list.real(group.code, group.numbers[0]);
      break;
    case Group::Type::kPoint:
      if (group.dimensions == 2) {
        list.point2d(group.code, {group.numbers[0], group.numbers[1]});
      } else {
        list.point(group.code, {group.numbers[0], group.numbers[1], group.numbers[2]});
      }
      break;
    case Group::Type::kObject:
      list.object(group.code, group.object);
      break;
    case Group::Type::kText:
    case Group::Type::kHandle:
    case Group::Type::kChunk:
      list.text(group.code, record.text(group));
      break;
  }
}

}  // namespace

GroupList drawn_groups(AcDbObjectId object) {
  GroupList list;
  RecordGroups record;
  record.read(object);
  bool in_braces = false;
  for (const Group& group : record.groups()) {
    if (group.code == 102) in_braces = !group.bytes.empty() && group.bytes.front() == '{';
    if (!in_braces && !is_frame(group.code)) add_group(list, record, group);
  }
  return list;
}

GroupList like(AcDbObjectId source, std::wstring_view kind, Data data) {
  GroupList list(kind);
  RecordGroups record;
  record.read(source);
  for (const Group& group : record.groups()) {
    if (is_common(group.code)) add_group(list, record, group);
  }
  if (data == Data::kLeave) return list;
  for (const Group& group : record.extended_data()) add_group(list, record, group);
  return list;
}

Status drop_groups(AcDbObjectId entity, std::span<const int> codes) {
  AcDbEntity* opened = nullptr;
  if (acdbOpenAcDbEntity(opened, entity, AcDb::kForWrite) != Acad::eOk) {
    return fail(std::string(record_kind(entity)), "cannot be changed");
  }
  std::string text(ObjectAccess::content(*opened));
  const dxf::Dialect& dialect = ObjectAccess::dialect(*opened);
  const std::size_t before = text.size();
  for (const int code : codes) {
    if (const auto tag = Lens(text, dialect).find("AcDbEntity", code)) {
      LensWriter(text, dialect).remove(tag->begin, tag->end);
    }
  }
  if (text.size() != before) ObjectAccess::replace_content(*opened, std::move(text));
  opened->close();
  return {};
}

}  // namespace cad
