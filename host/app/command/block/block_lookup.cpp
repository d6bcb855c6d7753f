#include "host/app/command/block/block_lookup.h"

#include "host/app/command/settings/records.h"
#include "host/db/drawing.h"

namespace cad {
namespace {

Drawing::Block* block_behind(AcDbDatabase& database, AcDbObjectId block) {
  Drawing& drawing = database.drawing();
  if (block.isNull()) return nullptr;
  Stub& stub = *block.stub();
  return drawing.kind_name(stub) == "BLOCK" ? drawing.block_at(stub)
                                            : drawing.block_of(stub.handle);
}

}  // namespace

AcDbObjectId find_block(AcDbDatabase& database, std::wstring_view name) {
  Drawing& drawing = database.drawing();
  if (drawing.table("BLOCK_RECORD")) return find_record(database, "BLOCK_RECORD", name);
  const Drawing::Block* const block = drawing.block_named(name);
  return block ? AcDbObjectId(&drawing.stub_at(block->begin)) : AcDbObjectId();
}

AcDbObjectId block_head(AcDbDatabase& database, AcDbObjectId block) {
  const Drawing::Block* const found = block_behind(database, block);
  return found ? AcDbObjectId(&database.drawing().stub_at(found->begin)) : AcDbObjectId();
}

std::vector<AcDbObjectId> block_contents(AcDbDatabase& database, AcDbObjectId block) {
  std::vector<AcDbObjectId> contents;
  const Drawing::Block* const found = block_behind(database, block);
  if (!found) return contents;
  const auto add = [&](std::size_t index) {
    const AcDbObjectId id(&database.drawing().stub_at(index));
    if (!id.isErased()) contents.push_back(id);
  };
  for (std::size_t i = found->begin + 1; i < found->end; ++i) add(i);
  for (const std::size_t index : found->added) add(index);
  return contents;
}

std::vector<std::wstring> block_names(AcDbDatabase& database) {
  std::vector<std::wstring> names;
  database.for_each_object([&](AcDbObjectId id) {
    if (database.drawing().kind_name(*id.stub()) != "BLOCK") return;
    std::wstring name = group_text(id, 2);
    if (!name.starts_with(L"*") && !name.starts_with(L"$")) names.push_back(std::move(name));
  });
  return names;
}

}  // namespace cad
