#include "host/db/database.h"

#include <cassert>

#include "host/base/numbers.h"
#include "host/db/block.h"
#include "host/db/default_drawing.h"
#include "host/db/dictionary.h"
#include "host/db/drawing.h"
#include "host/db/object_access.h"
#include "host/db/open.h"

PN_RX_DEFINE(AcDbDatabase, AcRxObject, L"")

AcDbHostApplicationServices* acdbHostApplicationServices() {
  static AcDbHostApplicationServices services;
  return &services;
}

AcDbDatabase::AcDbDatabase(bool buildDefaultDrawing)
    : drawing_(std::make_unique<cad::Drawing>(*this)) {
  if (!buildDefaultDrawing) return;
  [[maybe_unused]] const cad::Status status = read_bytes(cad::default_drawing(), "new drawing");
  assert(status);
}

AcDbDatabase::~AcDbDatabase() {
  AcDbHostApplicationServices* services = acdbHostApplicationServices();
  if (services->workingDatabase() == this) services->setWorkingDatabase(nullptr);
}

cad::Status AcDbDatabase::read_bytes(std::string bytes, const std::string& name) {
  return drawing_->read(std::move(bytes), name);
}

cad::Status AcDbDatabase::save_file(const std::string& path, bool keep_backup,
                                    cad::FileLock* lock) const {
  return drawing_->save(path, keep_backup, lock);
}

std::string AcDbDatabase::save_bytes() const { return drawing_->save_bytes(); }
bool AcDbDatabase::is_modified() const { return drawing_->is_modified(); }

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool, const AcDbHandle& handle) {
  id.setNull();
  if (handle.isNull()) return Acad::eNullHandle;
  id = AcDbObjectId(drawing_->find(handle));
  return id.isNull() ? Acad::eUnknownHandle : Acad::eOk;
}

namespace {

AcDbObjectId table_id(cad::Drawing& drawing, std::string_view name) {
  const cad::Drawing::Table* table = drawing.table(name);
  return AcDbObjectId(table ? &drawing.stub_at(table->stub) : nullptr);
}

template <class T>
Acad::ErrorStatus open_table(cad::Drawing& drawing, std::string_view name, T*& table,
                             AcDb::OpenMode mode) {
  return acdbOpenObject(table, table_id(drawing, name), mode);
}

}  // namespace

AcDbObjectId AcDbDatabase::namedObjectsDictionaryId() const {
  return AcDbObjectId(drawing_->root_dictionary());
}

AcDbObjectId AcDbDatabase::blockTableId() const { return table_id(*drawing_, "BLOCK_RECORD"); }
AcDbObjectId AcDbDatabase::layerTableId() const { return table_id(*drawing_, "LAYER"); }
AcDbObjectId AcDbDatabase::textStyleTableId() const { return table_id(*drawing_, "STYLE"); }
AcDbObjectId AcDbDatabase::linetypeTableId() const { return table_id(*drawing_, "LTYPE"); }
AcDbObjectId AcDbDatabase::regAppTableId() const { return table_id(*drawing_, "APPID"); }

AcDbObjectId AcDbDatabase::modelSpaceId() const {
  return AcDbObjectId(drawing_->find(drawing_->model_space()));
}

bool AcDbDatabase::tile_mode() const { return drawing_->current_properties().tile_mode; }

AcDbObjectId AcDbDatabase::currentSpaceId() const {
  if (tile_mode()) return modelSpaceId();
  if (!current_paper_.isNull() && !current_paper_.isErased()) return current_paper_;
  return AcDbObjectId(drawing_->table_record("BLOCK_RECORD", L"*Paper_Space"));
}

AcDbObjectId AcDbDatabase::clayer() const {
  return AcDbObjectId(drawing_->current_properties().layer);
}

AcDbHandle AcDbDatabase::handseed() const { return AcDbHandle(drawing_->next_handle()); }

Acad::ErrorStatus AcDbDatabase::getNamedObjectsDictionary(AcDbDictionary*& dictionary,
                                                          AcDb::OpenMode mode) {
  return acdbOpenObject(dictionary, namedObjectsDictionaryId(), mode);
}

Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode) {
  return open_table(*drawing_, "BLOCK_RECORD", table, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbLayerTable*& table, AcDb::OpenMode mode) {
  return open_table(*drawing_, "LAYER", table, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbRegAppTable*& table, AcDb::OpenMode mode) {
  return open_table(*drawing_, "APPID", table, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbTextStyleTable*& table, AcDb::OpenMode mode) {
  return open_table(*drawing_, "STYLE", table, mode);
}

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObjectId& id, AcDbObject* object) {
  id.setNull();
  if (!object) return Acad::eNullObjectPointer;
  if (!object->objectId().isNull()) return Acad::eAlreadyInDb;
  if (!drawing_->dialect().has_dictionaries()) return Acad::eNotApplicable;
  const auto section = cad::dxf::Section::kObjects;
  drawing_->add(*object, 0, section, drawing_->section_end(section), 0);
  drawing_->opened();
  id = object->objectId();
  return Acad::eOk;
}

const cad::DrawingFacts& AcDbDatabase::facts() const { return drawing_->facts(); }
bool AcDbDatabase::has_dictionaries() const { return drawing_->dialect().has_dictionaries(); }

std::vector<AcDbObjectId> AcDbDatabase::open_objects() const {
  std::vector<AcDbObjectId> open;
  if (drawing_->open_count() == 0) return open;
  for (std::size_t i = 0; i < drawing_->stub_count(); ++i) {
    cad::Stub& stub = drawing_->stub_at(i);
    if (stub.object && cad::ObjectAccess::is_open(*stub.object)) {
      open.push_back(AcDbObjectId(&stub));
    }
  }
  return open;
}

AcDbObjectId AcDbDatabase::first_entity() const { return AcDbObjectId(drawing_->first_entity()); }
AcDbObjectId AcDbDatabase::last_entity() const { return AcDbObjectId(drawing_->last_entity()); }

AcDbObjectId AcDbDatabase::next_entity(AcDbObjectId id) const {
  return id.isNull() ? id : AcDbObjectId(drawing_->entity_behind(*id.stub()));
}

void AcDbDatabase::for_each_object(const std::function<void(AcDbObjectId)>& visit) const {
  const std::size_t count = drawing_->stub_count();
  for (std::size_t i = 0; i < count; ++i) {
    cad::Stub& stub = drawing_->stub_at(i);
    if (!stub.erased()) visit(AcDbObjectId(&stub));
  }
}
