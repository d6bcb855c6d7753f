#include "host/db/layouts.h"

#include <algorithm>

#include "host/base/fold.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/dxf/text.h"

namespace cad {

std::vector<Layout> layouts_of(AcDbDatabase& database) {
  constexpr std::string_view kPart = "AcDbLayout";
  std::vector<Layout> layouts;
  Drawing& drawing = database.drawing();
  database.for_each_object([&](AcDbObjectId id) {
    if (drawing.kind_name(*id.stub()) != "LAYOUT") return;
    const Lens lens(drawing.bytes_of(*id.stub()), drawing.dialect());
    Layout layout;
    layout.name = lens.text(kPart, 1);
    layout.id = id;
    layout.tab = static_cast<int>(lens.integer(kPart, 71, 0));
    if (const auto block = lens.find(kPart, 330))
      layout.block = AcDbObjectId(drawing.find(dxf::handle_value(*block)));
    layouts.push_back(std::move(layout));
  });
  std::stable_sort(layouts.begin(), layouts.end(),
                   [](const Layout& a, const Layout& b) { return a.tab < b.tab; });
  return layouts;
}

AcDbObjectId layout_space(AcDbDatabase& database, std::wstring_view name) {
  if (equal_no_case(name, L"Model")) return database.modelSpaceId();
  for (const Layout& layout : layouts_of(database))
    if (equal_no_case(layout.name, name)) return layout.block;
  return {};
}

}  // namespace cad
