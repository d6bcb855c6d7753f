#include "network/drawing_layers.h"

#include <string_view>

#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/base/trace.h"
#include "host/db/database.h"
#include "host/db/make_object.h"
#include "host/db/open.h"
#include "host/db/symbol_table.h"
#include "host/lisp/wildcard.h"
#include "network/places.h"
#include "network/profile_file.h"

namespace {

constexpr int kWhite = 7;

/// 0 when the file has no pattern for the name, or a colour that is none.
int color_in(const CString& path, std::wstring_view name) {
  const network::ProfileFile file = network::ProfileFile::read(path);
  for (const std::wstring& pattern : file.keys(L"Layers")) {
    if (!cad::lisp::matches_wildcard(cad::folded(name), cad::folded(pattern))) continue;
    const auto value = file.find(L"Layers", pattern);
    const int color = value ? cad::wtoi(value->text) : 0;
    return color >= 1 && color <= 255 ? color : 0;
  }
  return 0;
}

int color_of(std::wstring_view name) {
  CString folder;
  int color = KT::GetWorkDir(folder, true) ? color_in(folder + L"QrmvPz.ini", name) : 0;
  if (color == 0 && KT::GetInstallDir(folder)) color = color_in(folder + L"sys\\QrmvPz.ini", name);
  return color != 0 ? color : kWhite;
}

}  // namespace

AcDbObjectId Gx::GetLayer(const wchar_t* name) {
  AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
  if (!database || !name || !*name) return {};
  AcDbLayerTable* table = nullptr;
  if (database->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return {};
  AcDbObjectId id;
  const Acad::ErrorStatus found = table->getAt(name, id);
  table->close();
  if (found == Acad::eOk) return id;
  const auto made = cad::ensure_layer(*database, name);
  if (!made) {
    cad::trace(cad::from_utf8(made.error().message()));
    return {};
  }
  AcDbLayerTableRecord* layer = nullptr;
  if (acdbOpenObject(layer, *made, AcDb::kForWrite) != Acad::eOk) return *made;
  layer->setColorIndex(color_of(name));
  layer->close();
  return *made;
}
