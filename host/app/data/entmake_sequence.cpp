#include "host/app/data/entmake_sequence.h"

#include <utility>

#include "host/app/data/lisp_groups.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/drawing.h"
#include "host/db/kind_table.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"

namespace cad {
namespace {

using lisp::Value;
using Outcome = EntmakeSequence::Outcome;

std::string upper(std::wstring_view text) {
  std::string out = to_utf8(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

bool begins_sequence(const LispGroups& groups, const std::string& kind) {
  return kind == "POLYLINE" || (kind == "INSERT" && groups.integer(66) != 0);
}

Result<Outcome> outcome(const Result<AcDbObjectId>& made) {
  if (!made) return made.error();
  return Outcome{*made};
}

GroupValue value_of(const GroupView& group) {
  switch (group.type) {
    case GroupView::Type::kInteger:
      return {group.code, group.integer};
    case GroupView::Type::kReal:
      return {group.code, group.numbers[0]};
    case GroupView::Type::kObject:
      return {group.code, group.object};
    case GroupView::Type::kPoint:
      if (group.dimensions == 2)
        return {group.code, AcGePoint2d(group.numbers[0], group.numbers[1])};
      return {group.code, AcGePoint3d(group.numbers[0], group.numbers[1], group.numbers[2])};
    case GroupView::Type::kText:
      break;
  }
  return {group.code, std::wstring(group.text)};
}

GroupList list_of(const Value& value) {
  GroupList list;
  const LispGroups groups(value);
  for (const GroupView& group : groups.groups()) list.add(value_of(group));
  return list;
}

std::wstring name_of_block(AcDbObjectId block) {
  const Drawing& drawing = StubStore::drawing_of(*block.stub());
  const Lens lens(drawing.bytes_of(*block.stub()), drawing.dialect());
  const bool is_record = drawing.kind_name(*block.stub()) == "BLOCK_RECORD";
  return lens.text(is_record ? "AcDbBlockTableRecord" : "AcDbBlockBegin", 2);
}

}  // namespace

void EntmakeSequence::cancel() {
  complex_.clear();
  in_block_ = false;
  block_ = Value();
  entities_.clear();
}

Result<Outcome> EntmakeSequence::take(AcDbDatabase& database, const Value& list, bool ownerless) {
  const LispGroups groups(list);
  const std::string kind = upper(groups.kind());
  const bool is_part = kind == "VERTEX" || kind == "ATTRIB" || kind == "SEQEND";
  if (!complex_.empty() && is_part) {
    if (kind == "SEQEND") return end_complex(database);
    if (Status status = check_part(database, groups.groups()); !status) {
      complex_.clear();
      return status.error();
    }
    complex_.push_back(list);
    return Outcome{};
  }
  complex_.clear();  // anything else breaks the sequence off
  if (kind == "BLOCK") return begin_block(list);
  if (kind == "ENDBLK") return end_block(database);
  const KindRow* row = kind_row(kind);
  if (row && row->place == KindPlace::kRecord)
    return outcome(make_record(database, groups.groups()));
  if (row && row->place == KindPlace::kObject) {
    if (!ownerless) return fail(kind, "has no place in the drawing: use entmakex");
    return outcome(make_object(database, groups.groups()));
  }
  if (begins_sequence(groups, kind)) {
    if (Status status = check_main(database, groups.groups()); !status) return status.error();
    complex_.push_back(list);
    return Outcome{};
  }
  return take_entity(database, list);
}

Result<Outcome> EntmakeSequence::take_entity(AcDbDatabase& database, const Value& list) {
  const LispGroups groups(list);
  if (!in_block_) return outcome(make_entity(database, {}, groups.groups()));
  if (Status status = check_entity(database, groups.groups()); !status) return status.error();
  entities_.push_back(list);
  return Outcome{};
}

Result<Outcome> EntmakeSequence::end_complex(AcDbDatabase& database) {
  const std::vector<Value> lists = std::exchange(complex_, {});
  const LispGroups main(lists.front());
  std::vector<std::vector<GroupView>> parts;
  for (std::size_t i = 1; i < lists.size(); ++i) parts.push_back(LispGroups(lists[i]).vector());
  if (in_block_) {
    if (Status status = check_entity(database, main.groups(), parts); !status)
      return status.error();
    entities_.insert(entities_.end(), lists.begin(), lists.end());
    entities_.push_back(Value());  // stands for the SEQEND
    return Outcome{};
  }
  const Result<AcDbObjectId> made = make_entity(database, {}, main.groups(), parts);
  if (!made) return made.error();
  const std::vector<Stub*> all = database.drawing().sub_entities(*made->stub());
  return Outcome{all.empty() ? *made : AcDbObjectId(all.back())};
}

Result<Outcome> EntmakeSequence::begin_block(const Value& list) {
  if (in_block_) {
    cancel();
    return fail("BLOCK", "stands inside another block");
  }
  const LispGroups groups(list);
  const GroupView* base = groups.find(10);
  if (groups.text(2).empty()) return fail("BLOCK", "group 2, the name, is missing");
  if (!base || base->type != GroupView::Type::kPoint) return fail("BLOCK", "group 10 is missing");
  in_block_ = true;
  block_ = list;
  return Outcome{};
}

Result<Outcome> EntmakeSequence::end_block(AcDbDatabase& database) {
  if (!in_block_) return fail("ENDBLK", "there is no BLOCK to end");
  const Value block = std::exchange(block_, Value());
  const std::vector<Value> lists = std::exchange(entities_, {});
  in_block_ = false;
  std::vector<GroupList> entities;
  for (const Value& list : lists)
    entities.push_back(list.is_nil() ? GroupList(L"SEQEND") : list_of(list));
  const LispGroups groups(block);
  const double* base = groups.find(10)->numbers;
  const Result<AcDbObjectId> made =
      make_block(database, groups.text(2), {base[0], base[1], base[2]}, entities);
  if (!made) return made.error();
  return Outcome{{}, name_of_block(*made)};
}

}  // namespace cad
