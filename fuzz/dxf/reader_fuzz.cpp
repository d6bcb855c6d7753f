// Any bytes are refused with an error or are a drawing. Of a drawing:
//   - saved unchanged it is the same bytes, also after everything in it was looked at;
//   - changed (a text, erased objects, a record stored on the first entity that takes one) it is
//     saved as bytes that read again, with the record and the text in it.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "host/db/block.h"
#include "host/db/database.h"
#include "host/db/dictionary.h"
#include "host/db/line.h"
#include "host/db/open.h"
#include "host/db/text.h"
#include "host/db/xrecord.h"

namespace {

constexpr wchar_t kText[] = L"管 \U0001F600 ^J\n\\U+0041 ";

void require(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", law);
  std::abort();
}

std::wstring taken(ACHAR* text) {
  std::wstring copy = text;
  acutDelString(text);
  return copy;
}

void look_at(AcDbObject& object) {
  object.extensionDictionary();
  object.ownerId();
  cad::ResbufChain(object.xData());
  if (const auto* entity = AcDbEntity::cast(&object)) {
    taken(entity->layer());
    entity->layerId();
    entity->colorIndex();
  }
  if (const auto* text = AcDbText::cast(&object)) taken(text->textString());
  if (const auto* text = AcDbMText::cast(&object)) taken(text->contents());
  if (const auto* line = AcDbLine::cast(&object)) line->startPoint();
  if (const auto* xrecord = AcDbXrecord::cast(&object)) {
    resbuf* chain = nullptr;
    xrecord->rbChain(&chain);
    acutRelRb(chain);
  }
  if (const auto* dictionary = AcDbDictionary::cast(&object)) {
    const std::unique_ptr<AcDbDictionaryIterator> at(dictionary->newIterator());
    int entries = 0;
    for (; !at->done(); at->next()) ++entries;
    require(entries <= dictionary->numEntries(), "a dictionary delivers its entries once");
  }
  if (const auto* block = AcDbBlockTableRecord::cast(&object)) {
    AcDbBlockTableRecordIterator* made = nullptr;
    block->newIterator(made);
    const std::unique_ptr<AcDbBlockTableRecordIterator> at(made);
    while (!at->done()) at->step();
  }
}

void look_at_everything(AcDbDatabase& database) {
  database.for_each_object([&](AcDbObjectId id) {
    AcDbObject* object = nullptr;
    require(acdbOpenAcDbObject(object, id, AcDb::kForRead) == Acad::eOk, "a live object opens");
    look_at(*object);
    object->close();
  });
  for (AcDbObjectId at = database.first_entity(); !at.isNull();) at = database.next_entity(at);
  database.last_entity();
  database.namedObjectsDictionaryId();
  database.currentSpaceId();
  database.clayer();
}

std::vector<AcDbObjectId> objects_of(const AcDbDatabase& database) {
  std::vector<AcDbObjectId> all;
  database.for_each_object([&](AcDbObjectId id) { all.push_back(id); });
  return all;
}

void erase_some(AcDbDatabase& database) {
  const std::vector<AcDbObjectId> all = objects_of(database);
  for (std::size_t i = 2; i < all.size(); i += 5) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, all[i], AcDb::kForWrite) != Acad::eOk) continue;
    object->erase();
    if (i % 2 == 0 && object->isErased()) object->erase(false);
    object->close();
  }
}

/// The handle of the first text that could be changed; 0 when there is none.
std::uint64_t change_a_text(AcDbDatabase& database) {
  for (const AcDbObjectId id : objects_of(database)) {
    AcDbObjectId by_handle;
    database.getAcDbObjectId(by_handle, false, id.handle());
    AcDbText* text = nullptr;
    if (by_handle != id || acdbOpenObject(text, id, AcDb::kForWrite) != Acad::eOk) continue;
    require(text->setTextString(kText) == Acad::eOk, "a text takes a string");
    require(taken(text->textString()) == kText, "a text reads what was set");
    text->setHeight(2.5);
    text->setRotation(1);
    text->setColorIndex(3);
    text->close();
    return id.handle();
  }
  return 0;
}

/// The handle of the first entity that took a record; 0 when none did.
std::uint64_t store_a_record(AcDbDatabase& database) {
  for (AcDbObjectId at = database.first_entity(); !at.isNull(); at = database.next_entity(at)) {
    AcDbObject* owner = nullptr;
    if (acdbOpenAcDbObject(owner, at, AcDb::kForWrite) != Acad::eOk) continue;
    const Acad::ErrorStatus made = owner->createExtensionDictionary();
    const AcDbObjectId extension = owner->extensionDictionary();
    owner->close();
    if (made != Acad::eOk) continue;
    AcDbDictionary* dictionary = nullptr;
    require(acdbOpenObject(dictionary, extension, AcDb::kForWrite) == Acad::eOk,
            "a new extension dictionary opens");
    auto* record = new AcDbXrecord;
    AcDbObjectId filed;
    require(dictionary->setAt(L"PIPE", record, filed) == Acad::eOk, "a dictionary takes an entry");
    const cad::ResbufChain chain(acutBuildList(1, kText, 90, 7, 0));
    require(record->setFromRbChain(*chain) == Acad::eOk, "an xrecord takes values");
    record->close();
    dictionary->close();
    return at.handle();
  }
  return 0;
}

void expect_text(AcDbDatabase& database, std::uint64_t handle) {
  AcDbObjectId id;
  database.getAcDbObjectId(id, false, AcDbHandle(handle));
  AcDbText* text = nullptr;
  require(acdbOpenObject(text, id, AcDb::kForRead) == Acad::eOk, "the changed text is there");
  require(taken(text->textString()) == kText, "the changed text reads back");
  text->close();
}

void expect_record(AcDbDatabase& database, std::uint64_t handle) {
  AcDbObjectId id;
  database.getAcDbObjectId(id, false, AcDbHandle(handle));
  AcDbObject* owner = nullptr;
  require(acdbOpenAcDbObject(owner, id, AcDb::kForRead) == Acad::eOk, "the owner is there");
  AcDbDictionary* dictionary = nullptr;
  require(acdbOpenObject(dictionary, owner->extensionDictionary(), AcDb::kForRead) == Acad::eOk,
          "the extension dictionary is there");
  AcDbObject* entry = nullptr;
  require(dictionary->getAt(L"pipe", entry, AcDb::kForRead) == Acad::eOk, "the record is there");
  const auto* record = AcDbXrecord::cast(entry);
  require(record != nullptr, "the record is an xrecord");
  resbuf* chain = nullptr;
  record->rbChain(&chain);
  require(chain && chain->restype == 1 && std::wstring(chain->resval.rstring) == kText &&
              chain->rbnext && chain->rbnext->resval.rlong == 7 && !chain->rbnext->rbnext,
          "the record holds what was stored");
  acutRelRb(chain);
  entry->close();
  dictionary->close();
  owner->close();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  AcDbDatabase database(false);
  if (!database.read_bytes(bytes, "fuzz.dxf")) return 0;
  require(database.save_bytes() == bytes, "an unchanged drawing is saved as it was");
  look_at_everything(database);
  require(database.save_bytes() == bytes, "looking changes nothing");

  erase_some(database);
  const std::uint64_t text = change_a_text(database);
  const std::uint64_t owner = store_a_record(database);
  require(database.open_objects().empty(), "everything was closed");

  AcDbDatabase again(false);
  const cad::Status status = again.read_bytes(database.save_bytes(), "saved.dxf");
  require(static_cast<bool>(status), "a saved drawing reads again");
  if (text != 0) expect_text(again, text);
  if (owner != 0) expect_record(again, owner);
  look_at_everything(again);
  return 0;
}
