// Groups merged into an object: what is not named, or has the value already, keeps its bytes.

#include <algorithm>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/draft.h"
#include "host/db/drawing.h"
#include "host/db/extended_data.h"
#include "host/db/group_tags.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"
#include "host/db/merge_groups.h"
#include "host/db/object_access.h"
#include "host/db/record.h"
#include "host/db/rename_record.h"
#include "host/db/text.h"
#include "host/db/text_start.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

/// A table record that is about to get another name.
struct Renaming {
  const Drawing::Table* table = nullptr;  // null: none
  std::wstring from;
  std::wstring_view to;
};

Renaming renaming_of(Drawing& drawing, const Stub& stub, std::span<const GroupView> fresh) {
  if (stub.section != dxf::Section::kTables || drawing.is_frame(stub)) return {};
  const auto name = std::find_if(fresh.begin(), fresh.end(),
                                 [](const GroupView& group) { return group.code == 2; });
  if (name == fresh.end()) return {};
  Renaming renaming{drawing.table(drawing.kind_name(stub)), {}, name->text};
  dxf::Tag tag;
  for (dxf::TagReader tags(drawing.bytes_of(stub), drawing.dialect()); tags.next(tag);) {
    if (tag.code != 2) continue;
    renaming.from = dxf::text_value(tag, drawing.dialect());
    break;
  }
  return renaming;
}

/// What stands in the way of changing the object at all.
Status check_object(Drawing& drawing, AcDbObjectId id) {
  Stub& stub = *id.stub();
  const std::string kind(drawing.kind_name(stub));
  if (stub.has(Stub::kMissing)) return fail("", "the name leads to no object");
  if (stub.erased()) return fail(kind, "is erased");
  if (stub.object && ObjectAccess::is_open(*stub.object)) return fail(kind, "is open");
  if (stub.section == dxf::Section::kTables && drawing.is_frame(stub))
    return fail(kind, "cannot be changed");
  if (drawing.class_of(stub).entity && drawing.has_locked_layers() &&
      ObjectAccess::on_locked_layer(drawing.object(stub)))
    return fail(kind, "is on a locked layer");
  return {};
}

/// Kind and handle stay as they are.
Status check_identity(Drawing& drawing, const Stub& stub, std::span<const GroupView> groups) {
  for (const GroupView& group : groups) {
    if (group.code == 100 || group.code >= 1000) break;
    if (group.code == 0 && !equal_no_case(group.text, from_utf8(drawing.kind_name(stub))))
      return fail(std::string(drawing.kind_name(stub)), "cannot become another kind (group 0)");
    if ((group.code == 5 || group.code == 105) && parse_handle(group.text) != stub.handle)
      return fail(std::string(drawing.kind_name(stub)), "keeps its handle (group 5)");
  }
  return {};
}

/// What a changed group needs of the drawing: names that exist, a kind and a name that stay.
Status check_change(Drawing& drawing, AcDbObjectId id, const GroupView& group) {
  const std::string kind(drawing.kind_name(*id.stub()));
  if (const std::string fault = group_fault(group); !fault.empty())
    return fail(kind, "group " + std::to_string(group.code) + " " + fault);
  if (kind == "DICTIONARY" && (group.code == 3 || group.code == 350 || group.code == 360))
    return fail(kind, "entries are changed by dictadd and dictremove");
  return check_reference(drawing, kind, group);
}

/// The data of all applications together have a limit.
bool holds_its_data(std::string_view record, const dxf::Dialect& dialect) {
  const std::size_t data = Lens(record, dialect).extended_data();
  return extended_size(record.substr(data), dialect) <= kMostExtendedData;
}

/// Whether the start of a justified text depends on one of the groups, or is one of them.
bool moves_text(std::span<const GroupView> groups) {
  constexpr int kCodes[] = {1, 7, 10, 11, 40, 41, 50, 51, 71, 72, 73};
  return std::any_of(groups.begin(), groups.end(), [&](const GroupView& group) {
    return std::find(std::begin(kCodes), std::end(kCodes), group.code) != std::end(kCodes);
  });
}

}  // namespace

Status change_object(AcDbObjectId id, std::span<const GroupView> groups) {
  if (id.isNull()) return fail("", "there is no object to change");
  Drawing& drawing = StubStore::drawing_of(*id.stub());
  if (Status status = check_object(drawing, id); !status) return status;
  if (Status status = check_identity(drawing, *id.stub(), groups); !status) return status;
  const std::string_view kind = drawing.kind_name(*id.stub());

  GroupMerge merge(id, groups);
  if (Status status = merge.run(); !status)
    return fail(std::string(kind), status.error().message());
  if (!merge.changed()) return {};
  const std::vector<GroupView> fresh = merge.fresh();
  for (const GroupView& group : fresh)
    if (Status status = check_change(drawing, id, group); !status) return status;
  if (Status status = check_extended_data(drawing, merge.fresh_extended_data()); !status)
    return fail(std::string(kind), status.error().message());
  std::string changed = merge.result();
  if (!merge.fresh_extended_data().empty() && !holds_its_data(changed, drawing.dialect()))
    return fail(std::string(kind), "more than 16383 bytes of extended data");
  if (drawing.class_of(*id.stub()).entity) {
    for (const GroupView& group : fresh) {
      if (group.code != 8) continue;
      if (const auto layer = ensure_layer(drawing.database(), group.text); !layer)
        return layer.error();
    }
  }
  const Renaming renaming = renaming_of(drawing, *id.stub(), fresh);
  if (renaming.table) {
    const Status status = check_rename(drawing, *renaming.table, renaming.from, renaming.to);
    if (!status) return status.error();
  }
  AcDbObject& object = drawing.object(*id.stub());
  ObjectAccess::replace_content(object, std::move(changed));
  if (auto* const text = AcDbText::cast(&object); text && moves_text(fresh)) lay_out_text(*text);
  if (!renaming.table) return {};
  rename_references(drawing, *renaming.table, renaming.from, renaming.to);
  drawing.table_changed(renaming.table->name);
  return {};
}

Status change_object(AcDbObjectId id, const GroupList& groups) {
  return change_object(id, views_of(groups));
}

}  // namespace cad
