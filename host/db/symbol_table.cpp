#include "host/db/symbol_table.h"

#include <cmath>
#include <numbers>

#include "host/base/fold.h"
#include "host/db/block.h"
#include "host/db/block_frame.h"
#include "host/db/drawing.h"
#include "host/db/kind_table.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/db/open.h"

PN_RX_DEFINE(AcDbSymbolTable, AcDbObject, L"TABLE")
PN_RX_DEFINE(AcDbSymbolTableRecord, AcDbObject, L"")
PN_RX_DEFINE(AcDbLayerTable, AcDbSymbolTable, L"TABLE")
PN_RX_DEFINE(AcDbLayerTableRecord, AcDbSymbolTableRecord, L"LAYER")
PN_RX_DEFINE(AcDbTextStyleTable, AcDbSymbolTable, L"TABLE")
PN_RX_DEFINE(AcDbTextStyleTableRecord, AcDbSymbolTableRecord, L"STYLE")
PN_RX_DEFINE(AcDbLinetypeTable, AcDbSymbolTable, L"TABLE")
PN_RX_DEFINE(AcDbRegAppTable, AcDbSymbolTable, L"TABLE")
PN_RX_DEFINE(AcDbRegAppTableRecord, AcDbSymbolTableRecord, L"APPID")
PN_RX_DEFINE(AcDbBlockTable, AcDbSymbolTable, L"TABLE")
PN_RX_DEFINE(AcDbBlockTableRecord, AcDbSymbolTableRecord, L"BLOCK_RECORD")

namespace {

using cad::Drawing;
using cad::Lens;
using cad::LensWriter;
using cad::NewTags;
using cad::ObjectAccess;
using cad::Stub;
using cad::StubStore;

constexpr std::string_view kLayerPart = "AcDbLayerTableRecord";
constexpr std::int64_t kFrozen = 1;
constexpr std::int64_t kLocked = 4;
constexpr std::int64_t kWhite = 7;

constexpr std::string_view kNewLayer =
    "  0\nLAYER\n  5\n0\n330\n0\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n"
    "  2\n\n 70\n     0\n 62\n     7\n  6\nContinuous\n";
constexpr std::string_view kNewBlock =
    "  0\nBLOCK_RECORD\n  5\n0\n330\n0\n100\nAcDbSymbolTableRecord\n100\nAcDbBlockTableRecord\n"
    "  2\n\n340\n0\n";
constexpr std::string_view kStylePart = "AcDbTextStyleTableRecord";
constexpr std::string_view kNewStyle =
    "  0\nSTYLE\n  5\n0\n330\n0\n100\nAcDbSymbolTableRecord\n100\nAcDbTextStyleTableRecord\n"
    "  2\n\n 70\n     0\n 40\n0.0\n 41\n1.0\n 50\n0.0\n 71\n     0\n 42\n2.5\n  3\ntxt\n"
    "  4\n\n";
constexpr double kDegree = std::numbers::pi / 180;
constexpr std::string_view kNewRegApp =
    "  0\nAPPID\n  5\n0\n330\n0\n100\nAcDbSymbolTableRecord\n100\nAcDbRegAppTableRecord\n"
    "  2\n\n 70\n     0\n";

/// The class part in which a record of a kind keeps its name.
std::string_view name_part(std::string_view kind) {
  constexpr std::pair<std::string_view, std::string_view> kParts[] = {
      {"LAYER", kLayerPart},
      {"STYLE", kStylePart},
      {"LTYPE", "AcDbLinetypeTableRecord"},
      {"APPID", "AcDbRegAppTableRecord"},
      {"BLOCK_RECORD", "AcDbBlockTableRecord"},
      {"DIMSTYLE", "AcDbDimStyleTableRecord"},
      {"UCS", "AcDbUCSTableRecord"},
      {"VIEW", "AcDbViewTableRecord"},
      {"VPORT", "AcDbViewportTableRecord"},
  };
  for (const auto& [candidate, part] : kParts) {
    if (candidate == kind) return part;
  }
  return "AcDbSymbolTableRecord";
}

std::string_view kind_of(std::string_view content, const cad::dxf::Dialect& dialect) {
  cad::dxf::TagReader tags(content, dialect);
  cad::dxf::Tag tag;
  return tags.next(tag) ? tag.value : std::string_view();
}

}  // namespace

std::wstring AcDbSymbolTableRecord::name() const {
  return Lens(content(), dialect()).text(name_part(kind_of(content(), dialect())), 2);
}

Acad::ErrorStatus AcDbSymbolTableRecord::getName(ACHAR*& name) const {
  name = acutNewString(this->name().c_str());
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::setName(const ACHAR* name) {
  if (!name || !*name) return Acad::eInvalidInput;
  const std::string_view kind = kind_of(content(), dialect());
  const std::string_view part = name_part(kind);
  const Acad::ErrorStatus status = patch([&](LensWriter& tags) { tags.set_text(part, 2, name); });
  if (const Stub* own = ObjectAccess::stub(*this)) StubStore::drawing_of(*own).record_turned(*own);
  return status;
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbObjectId& record,
                                         bool getErased) const {
  record.setNull();
  const Stub* own = ObjectAccess::stub(*this);
  if (!own || !name) return Acad::eInvalidInput;
  Drawing& drawing = StubStore::drawing_of(*own);
  const Drawing::Table* table = drawing.table_of(*own);
  if (!table) return Acad::eKeyNotFound;
  record = AcDbObjectId(drawing.table_record(table->name, name));
  if (record.isNull() && getErased) record = AcDbObjectId(drawing.erased_record(*table, name));
  return record.isNull() ? Acad::eKeyNotFound : Acad::eOk;
}

bool AcDbSymbolTable::has(const ACHAR* name) const {
  AcDbObjectId record;
  return getAt(name, record) == Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbObjectId& id, AcDbSymbolTableRecord* record) {
  id.setNull();
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (!record) return Acad::eNullObjectPointer;
  if (ObjectAccess::stub(*record)) return Acad::eAlreadyInDb;
  const Stub* own = ObjectAccess::stub(*this);
  if (!own) return Acad::eNotInDatabase;
  Drawing& drawing = StubStore::drawing_of(*own);
  Drawing::Table* table = drawing.table_of(*own);
  if (!table) return Acad::eNotInDatabase;
  if (kind_of(ObjectAccess::content(*record), ObjectAccess::dialect(*record)) != table->name) {
    return Acad::eWrongObjectType;
  }
  std::wstring name = record->name();
  if (name.empty()) return Acad::eInvalidInput;
  const bool is_block = table->name == "BLOCK_RECORD";
  if (is_block && name.size() == 2 && cad::is_anonymous_block(name)) {
    std::uint64_t number = 1;
    name = cad::anonymous_block_name(drawing, name[1], number);
    record->setName(name.c_str());
  }
  if (drawing.table_record(table->name, name)) return Acad::eDuplicateRecordName;
  Stub& stub = drawing.add(*record, own->handle, cad::dxf::Section::kTables, table->end, 0);
  drawing.opened();
  drawing.add_to_table(*table, stub, name);
  if (is_block)
    cad::add_block_frame(drawing, stub.handle, name, AcGePoint3d::kOrigin,
                         cad::is_anonymous_block(name) ? cad::kAnonymousBlock : 0);
  id = record->objectId();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::newIterator(AcDbSymbolTableIterator*& iterator) const {
  iterator = new AcDbSymbolTableIterator;
  const Stub* own = ObjectAccess::stub(*this);
  if (!own) return Acad::eOk;
  Drawing& drawing = StubStore::drawing_of(*own);
  const Drawing::Table* table = drawing.table_of(*own);
  if (!table) return Acad::eOk;
  for (const std::size_t index : drawing.table_records(*table)) {
    iterator->records_.push_back(AcDbObjectId(&drawing.stub_at(index)));
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableIterator::getRecordId(AcDbObjectId& id) const {
  if (done()) return Acad::eIteratorDone;
  id = records_[position_];
  return Acad::eOk;
}

AcDbLayerTableRecord::AcDbLayerTableRecord() : AcDbSymbolTableRecord(kNewLayer) {}
AcDbBlockTableRecord::AcDbBlockTableRecord() : AcDbSymbolTableRecord(kNewBlock) {}
AcDbRegAppTableRecord::AcDbRegAppTableRecord() : AcDbSymbolTableRecord(kNewRegApp) {}

namespace {

std::int64_t layer_flags(const Lens& lens) { return lens.integer(kLayerPart, 70, 0); }
std::int64_t layer_color(const Lens& lens) { return lens.integer(kLayerPart, 62, kWhite); }

}  // namespace

bool AcDbLayerTableRecord::isFrozen() const {
  return (layer_flags(Lens(content(), dialect())) & kFrozen) != 0;
}

bool AcDbLayerTableRecord::isLocked() const {
  return (layer_flags(Lens(content(), dialect())) & kLocked) != 0;
}

bool AcDbLayerTableRecord::isOff() const { return layer_color(Lens(content(), dialect())) < 0; }

Acad::ErrorStatus AcDbLayerTableRecord::setIsFrozen(bool frozen) {
  if (isWriteEnabled() && isFrozen() == frozen) return Acad::eOk;
  const Stub* const own = frozen ? ObjectAccess::stub(*this) : nullptr;
  if (isWriteEnabled() && own && StubStore::drawing_of(*own).current_properties().layer == own)
    return Acad::eInvalidLayer;
  const std::int64_t flags = layer_flags(Lens(content(), dialect()));
  return patch([&](LensWriter& tags) {
    tags.set_integer(kLayerPart, 70, frozen ? flags | kFrozen : flags & ~kFrozen);
  });
}

Acad::ErrorStatus AcDbLayerTableRecord::setIsLocked(bool locked) {
  if (isWriteEnabled() && isLocked() == locked) return Acad::eOk;
  const std::int64_t flags = layer_flags(Lens(content(), dialect()));
  return patch([&](LensWriter& tags) {
    tags.set_integer(kLayerPart, 70, locked ? flags | kLocked : flags & ~kLocked);
  });
}

Acad::ErrorStatus AcDbLayerTableRecord::setIsOff(bool off) {
  if (isWriteEnabled() && isOff() == off) return Acad::eOk;
  const std::int64_t color = colorIndex();
  return patch([&](LensWriter& tags) { tags.set_integer(kLayerPart, 62, off ? -color : color); });
}

int AcDbLayerTableRecord::colorIndex() const {
  const std::int64_t color = layer_color(Lens(content(), dialect()));
  return static_cast<int>(color < 0 ? -color : color);
}

Acad::ErrorStatus AcDbLayerTableRecord::setColorIndex(int color) {
  if (color < 1 || color > 255) return Acad::eOutOfRange;
  const bool off = isOff();
  return patch([&](LensWriter& tags) { tags.set_integer(kLayerPart, 62, off ? -color : color); });
}

AcDbTextStyleTableRecord::AcDbTextStyleTableRecord() : AcDbSymbolTableRecord(kNewStyle) {}

double AcDbTextStyleTableRecord::real(int code, double absent) const {
  return Lens(content(), dialect()).real(kStylePart, code, absent);
}

Acad::ErrorStatus AcDbTextStyleTableRecord::set_real(int code, double value) {
  if (!std::isfinite(value)) return Acad::eInvalidInput;
  return patch([&](LensWriter& tags) { tags.set_real(kStylePart, code, value); });
}

double AcDbTextStyleTableRecord::textSize() const { return real(40, 0.0); }
Acad::ErrorStatus AcDbTextStyleTableRecord::setTextSize(double size) {
  return size < 0.0 ? Acad::eInvalidInput : set_real(40, size);
}
double AcDbTextStyleTableRecord::xScale() const { return real(41, 1.0); }
Acad::ErrorStatus AcDbTextStyleTableRecord::setXScale(double scale) {
  return scale > 0.0 ? set_real(41, scale) : Acad::eInvalidInput;
}
double AcDbTextStyleTableRecord::obliquingAngle() const { return real(50, 0.0) * kDegree; }
Acad::ErrorStatus AcDbTextStyleTableRecord::setObliquingAngle(double angle) {
  return set_real(50, angle / kDegree);
}

namespace {

std::wstring style_text(std::string_view bytes, const cad::dxf::Dialect& dialect, int code) {
  return Lens(bytes, dialect).text(kStylePart, code);
}

}  // namespace

Acad::ErrorStatus AcDbTextStyleTableRecord::fileName(ACHAR*& name) const {
  name = acutNewString(style_text(content(), dialect(), 3).c_str());
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setFileName(const ACHAR* name) {
  return patch([&](LensWriter& tags) { tags.set_text(kStylePart, 3, name ? name : L""); });
}
Acad::ErrorStatus AcDbTextStyleTableRecord::bigFontFileName(ACHAR*& name) const {
  name = acutNewString(style_text(content(), dialect(), 4).c_str());
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setBigFontFileName(const ACHAR* name) {
  return patch([&](LensWriter& tags) { tags.set_text(kStylePart, 4, name ? name : L""); });
}

namespace {

constexpr std::string_view kEntityPart = "AcDbEntity";
constexpr int kPaper = 67, kLayer = 8, kLinetype = 6, kColor = 62, kStyle = 7;

bool is_paper(Drawing& drawing, const Stub& block) {
  if (block.handle == drawing.model_space()) return false;
  constexpr std::wstring_view kName = L"*paper_space";
  const Lens lens(drawing.bytes_of(block), drawing.dialect());
  return cad::folded(lens.text("AcDbBlockTableRecord", 2)).starts_with(kName);
}

/// What was not set explicitly, for values that are not spelled yet.
Acad::ErrorStatus take_current_properties(NewTags& values, Drawing& drawing) {
  const Drawing::CurrentProperties& current = drawing.current_properties();
  const Stub* layer = values.record(kLayer);
  if (!values.is_set(kLayer)) {
    if (current.layer) {
      values.set_record(kLayer, *current.layer);
    } else {
      values.set_text(kLayer, L"0");
    }
  } else if (layer && &StubStore::drawing_of(*layer) != &drawing) {
    return Acad::eWrongDatabase;
  } else if (!layer && !drawing.table_record("LAYER", values.text(kLayer))) {
    return Acad::eKeyNotFound;
  }
  if (!values.is_set(kColor)) values.set_integer(kColor, current.color);
  if (!values.is_set(kLinetype) && current.linetype)
    values.set_record(kLinetype, *current.linetype);
  if (values.has(kStyle) && !values.is_set(kStyle) && current.style)
    values.set_record(kStyle, *current.style);
  for (const int code : {kStyle, kLinetype, 2}) {
    const Stub* record = values.has(code) ? values.record(code) : nullptr;
    if (record && &StubStore::drawing_of(*record) != &drawing) return Acad::eWrongDatabase;
  }
  return Acad::eOk;
}

Acad::ErrorStatus take_current_properties(AcDbEntity& entity, Drawing& drawing, const Stub& block) {
  const bool paper = is_paper(drawing, block);
  if (NewTags* values = ObjectAccess::fresh(entity)) {
    const Acad::ErrorStatus status = take_current_properties(*values, drawing);
    if (status == Acad::eOk && paper) values->set_integer(kPaper, 1);
    return status;
  }
  LensWriter tags(ObjectAccess::writable(entity), ObjectAccess::dialect(entity));
  const Lens lens(ObjectAccess::writable(entity), ObjectAccess::dialect(entity));
  const std::wstring layer = lens.text(kEntityPart, kLayer);
  const bool has_color = lens.find(kEntityPart, kColor).has_value();  // before anything is written
  const Drawing::CurrentProperties& current = drawing.current_properties();
  if (!layer.empty() && !drawing.table_record("LAYER", layer)) return Acad::eKeyNotFound;
  if (layer.empty()) {
    const auto name = [&] {
      return Lens(drawing.bytes_of(*current.layer), drawing.dialect()).text(kLayerPart, 2);
    };
    tags.set_text(kEntityPart, kLayer, current.layer ? name() : L"0");
  }
  if (current.color != 256 && !has_color) tags.set_integer(kEntityPart, kColor, current.color);
  if (paper) tags.set_integer(kEntityPart, kPaper, 1);
  ObjectAccess::changed(entity);
  return Acad::eOk;
}

/// Whether the drawing's release has entities of that kind.
bool fits_release(const AcDbEntity& entity, const Drawing& drawing) {
  if (drawing.dialect().release >= cad::dxf::Release::kR2000)
    return true;  // has all there are here
  const NewTags* values = ObjectAccess::fresh(entity);
  const std::string_view kind =
      values ? values->layout().kind
             : kind_of(ObjectAccess::content(entity), ObjectAccess::dialect(entity));
  const cad::KindRow* row = cad::kind_row(kind, 0);
  return !row || drawing.dialect().release >= row->since;
}

}  // namespace

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity) {
  id.setNull();
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (!entity) return Acad::eNullEntityPointer;
  if (ObjectAccess::stub(*entity)) return Acad::eAlreadyInDb;
  const Stub* own = ObjectAccess::stub(*this);
  if (!own) return Acad::eNotInDatabase;
  Drawing& drawing = StubStore::drawing_of(*own);
  if (!fits_release(*entity, drawing)) return Acad::eNotApplicable;
  const Acad::ErrorStatus status = take_current_properties(*entity, drawing, *own);
  if (status != Acad::eOk) return status;

  using cad::dxf::Section;
  if (drawing.is_space(own->handle)) {
    Stub& stub = drawing.add(*entity, own->handle, Section::kEntities,
                             drawing.section_end(Section::kEntities), 0);
    drawing.add_to_space(StubStore::index_of(stub));
  } else {
    Drawing::Block* block = drawing.block_of(own->handle);
    if (!block) return Acad::eInvalidBlockName;
    Stub& stub = drawing.add(*entity, own->handle, Section::kBlocks, block->end_offset, 0);
    block->added.push_back(StubStore::index_of(stub));
  }
  drawing.opened();
  id = entity->objectId();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator) const {
  iterator = new AcDbBlockTableRecordIterator(objectId());
  return Acad::eOk;
}

void AcDbBlockTableRecordIterator::start() {
  current_.setNull();
  if (block_.isNull()) return;
  Drawing& drawing = StubStore::drawing_of(*block_.stub());
  current_ = AcDbObjectId(drawing.first_in_block(block_.stub()->handle));
}

void AcDbBlockTableRecordIterator::step() {
  if (done()) return;
  Drawing& drawing = StubStore::drawing_of(*block_.stub());
  current_ = AcDbObjectId(drawing.next_in_block(block_.stub()->handle, *current_.stub()));
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& id) const {
  id = current_;
  return done() ? Acad::eIteratorDone : Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntity(AcDbEntity*& entity,
                                                          AcDb::OpenMode mode) const {
  entity = nullptr;
  return done() ? Acad::eIteratorDone : acdbOpenAcDbEntity(entity, current_, mode);
}
