#include "network/model/model_symbols.h"

#include <iterator>
#include <vector>

#include "host/db/block.h"
#include "host/db/database.h"
#include "host/db/make_object.h"

namespace network {
namespace {

/// A circle when `radius` is not 0, else a polygon of as many corners as there are.
struct SymbolPart {
  double radius;
  bool closed;
  std::vector<AcGePoint2d> corners;
};

struct Symbol {
  const wchar_t* block;
  std::vector<SymbolPart> parts;
};

const Symbol kSymbols[] = {
    {kNodeBlock, {{1.0, false, {}}}},
    {kReservoirBlock,
     {{0.0, true, {{-2.5, 1.5}, {2.5, 1.5}, {1.5, -1.5}, {-1.5, -1.5}}},
      {0.0, false, {{-2.0, 0.5}, {2.0, 0.5}}}}},
    {kTankBlock,
     {{0.0, true, {{-2.0, -2.0}, {2.0, -2.0}, {2.0, 2.0}, {-2.0, 2.0}}},
      {0.0, false, {{-2.0, 0.8}, {2.0, 0.8}}}}},
    {kOutfallBlock, {{0.0, true, {{-1.75, 1.5}, {1.75, 1.5}, {0.0, -1.75}}}}},
    {kPumpBlock, {{2.0, false, {}}, {0.0, true, {{-1.0, 1.732}, {2.0, 0.0}, {-1.0, -1.732}}}}},
    {kValveBlock, {{0.0, true, {{-2.0, 1.0}, {2.0, -1.0}, {2.0, 1.0}, {-2.0, -1.0}}}}},
    {kWeirBlock, {{0.0, false, {{0.0, -2.0}, {0.0, 2.0}}}, {1.0, false, {}}}},
};

cad::GroupList entity_of(const SymbolPart& part) {
  if (part.radius > 0.0)
    return cad::GroupList(L"CIRCLE").text(8, L"0").integer(62, 0).point(10, {}).real(40,
                                                                                     part.radius);
  cad::GroupList groups(L"LWPOLYLINE");
  groups.text(8, L"0").integer(62, 0);
  groups.integer(90, static_cast<std::int64_t>(part.corners.size())).integer(70, part.closed);
  for (const AcGePoint2d& corner : part.corners) groups.point2d(10, corner);
  return groups;
}

bool has_block(AcDbDatabase& database, const wchar_t* name) {
  AcDbBlockTable* table = nullptr;
  if (database.getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return false;
  const bool has = table->has(name);
  table->close();
  return has;
}

}  // namespace

cad::Status make_symbols(AcDbDatabase& database) {
  for (const Symbol& symbol : kSymbols) {
    if (has_block(database, symbol.block)) continue;
    std::vector<cad::GroupList> entities;
    for (const SymbolPart& part : symbol.parts) entities.push_back(entity_of(part));
    if (auto made = cad::make_block(database, symbol.block, {}, entities); !made)
      return made.error();
  }
  return {};
}

}  // namespace network
