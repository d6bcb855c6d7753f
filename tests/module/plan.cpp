#include "tests/module/plan.h"

#include <memory>

#include "host/app/console.h"
#include "host/base/codepage.h"
#include "module/platform/opened.h"
#include "module/record/item_chain.h"
#include "tests/host/dxf/drawing_parts.h"
#include "tests/host/dxf/written.h"

namespace {

constexpr std::string_view kModelSpace = "1F";

std::string line(std::string_view handle, std::string_view layer) {
  return noted::entity("LINE", handle, kModelSpace, layer, "AcDbLine",
                       "10 0.0\n20 0.0\n30 0.0\n11 36.5\n21 0.0\n31 0.0\n");
}

std::string text(std::string_view handle, std::string_view layer) {
  return noted::entity(
      "TEXT", handle, kModelSpace, layer, "AcDbText",
      noted::join("10 1.0\n20 2.0\n30 0.0\n40 3.5\n1 label ", handle, "\n100 AcDbText\n"));
}

std::string numbered_well() {
  const std::string part = "10 3.0\n20 3.0\n30 0.0\n";
  return noted::entity("INSERT", "32", kModelSpace, "0", "AcDbBlockReference",
                       "66 1\n2 WELL\n" + part) +
         noted::entity("ATTRIB", "33", "32", "0", "AcDbText",
                       part + "40 3.5\n1 label 33\n100 AcDbAttribute\n2 NO\n70 0\n") +
         "0 SEQEND\n5 34\n330 32\n100 AcDbEntity\n8 0\n";
}

std::string entities() {
  std::string all = line("2F", "0") + line("30", "0") + line("31", "LOCKED") + numbered_well();
  for (const char digit : std::string("0123456789")) all += text(std::string("4") + digit, "0");
  all += noted::entity("MTEXT", "4A", kModelSpace, "0", "AcDbMText",
                       "10 1.0\n20 2.0\n30 0.0\n40 3.5\n71 1\n1 label 4A\n");
  return all + text("4B", "LOCKED");
}

}  // namespace

std::string Plan::bytes() {
  constexpr std::string_view kHeader =
      "9 $ACADVER\n1 AC1027\n9 $HANDSEED\n5 100\n9 $CLAYER\n8 0\n9 $TILEMODE\n70 1\n";
  constexpr std::string_view kObjects =
      "0 DICTIONARY\n5 C\n330 0\n100 AcDbDictionary\n281 1\n3 ACAD_GROUP\n350 D\n"
      "0 DICTIONARY\n5 D\n330 C\n100 AcDbDictionary\n281 1\n";
  const std::string layers = noted::layer("10", "0") + noted::layer("11", "LOCKED", 4);
  const std::string block_records = noted::block_record("1F", "*Model_Space") +
                                    noted::block_record("1B", "*Paper_Space") +
                                    noted::block_record("12", "WELL");
  const std::string blocks =
      noted::block({.name = "*Model_Space", .record = "1F", .begin = "20", .end = "21"}) +
      noted::block({.name = "*Paper_Space", .record = "1B", .begin = "1C", .end = "1D"}) +
      noted::block({.name = "WELL", .record = "12", .begin = "13", .end = "14"});
  return written::ascii(
      noted::join(noted::section("HEADER", kHeader),
                  noted::section("TABLES", noted::table("LAYER", "2", 2, layers) +
                                               noted::table("BLOCK_RECORD", "1", 3, block_records)),
                  noted::section("BLOCKS", blocks), noted::section("ENTITIES", entities()),
                  noted::section("OBJECTS", kObjects), "0 EOF\n"));
}

namespace {

/// The drawing of these bytes, as the working drawing.
std::unique_ptr<AcDbDatabase> opened(std::string bytes) {
  auto database = std::make_unique<AcDbDatabase>(false);
  const cad::Status read = database->read_bytes(std::move(bytes), "plan");
  EXPECT_TRUE(read) << (read ? "" : read.error().message());
  acdbHostApplicationServices()->setWorkingDatabase(database.get());
  return database;
}

}  // namespace

Plan::Plan() : database_(opened(bytes())) {}

Plan::~Plan() {
  EXPECT_TRUE(database_->open_objects().empty());
  acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

void Plan::reopen() {
  EXPECT_TRUE(database_->open_objects().empty());
  auto again = opened(database_->save_bytes());
  database_ = std::move(again);
}

AcDbObjectId Plan::id(const wchar_t* handle) {
  AcDbObjectId found;
  EXPECT_EQ(database_->getAcDbObjectId(found, false, AcDbHandle(handle)), Acad::eOk);
  return found;
}

void Plan::erase(const wchar_t* handle) {
  dim::Opened<AcDbEntity> entity(id(handle), AcDb::kForWrite);
  ASSERT_TRUE(entity);
  EXPECT_EQ(entity->erase(), Acad::eOk);
}

void Plan::bring_back(const wchar_t* handle) {
  dim::Opened<AcDbEntity> entity(id(handle), AcDb::kForWrite, /*open_erased=*/true);
  ASSERT_TRUE(entity);
  EXPECT_EQ(entity->erase(false), Acad::eOk);
}

std::wstring Plan::text(const wchar_t* handle) {
  const dim::Opened<AcDbEntity> entity(id(handle), AcDb::kForRead, /*open_erased=*/true);
  if (!entity) return L"(does not open)";
  const auto* line = AcDbText::cast(&*entity);
  const auto* lines = AcDbMText::cast(&*entity);
  ACHAR* shown = line ? line->textString() : lines ? lines->contents() : nullptr;
  const std::wstring text = shown ? shown : L"(no text)";
  acutDelString(shown);
  return text;
}

AcDbObjectId Plan::extension_dictionary(const wchar_t* owner) {
  dim::Opened<AcDbEntity> entity(id(owner), AcDb::kForWrite);
  if (!entity) return {};
  if (entity->extensionDictionary().isNull()) {
    EXPECT_EQ(entity->createExtensionDictionary(), Acad::eOk);
  }
  return entity->extensionDictionary();
}

AcDbObjectId Plan::entry(const wchar_t* owner, const wchar_t* key) {
  dim::Opened<AcDbDictionary> dictionary(extension_dictionary(owner), AcDb::kForRead);
  AcDbObjectId found;
  if (dictionary) dictionary->getAt(key, found);
  return found;
}

std::vector<std::wstring> Plan::keys(const wchar_t* owner) {
  std::vector<std::wstring> found;
  dim::Opened<AcDbDictionary> dictionary(extension_dictionary(owner), AcDb::kForRead);
  if (!dictionary) return found;
  const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
  for (; !walk->done(); walk->next()) found.emplace_back(walk->name());
  return found;
}

AcDbObjectId Plan::store_chain(const wchar_t* owner, const wchar_t* key, const resbuf* chain) {
  dim::Opened<AcDbDictionary> dictionary(extension_dictionary(owner), AcDb::kForWrite);
  AcDbObjectId id;
  auto record = std::make_unique<AcDbXrecord>();
  EXPECT_EQ(dim::store_chain(*record, chain), Acad::eOk);
  EXPECT_EQ(dictionary->setAt(key, record.get(), id), Acad::eOk);
  record.release()->close();
  return id;
}

AcDbObjectId Plan::store_items(const wchar_t* owner, const wchar_t* key,
                               const std::vector<StuDim>& items) {
  dim::ChainBuilder chain;
  for (const StuDim& item : items) chain.add(dim::new_item(item));
  return store_chain(owner, key, chain.head());
}

std::vector<std::pair<short, std::wstring>> Plan::buffers(AcDbObjectId xrecord) {
  std::vector<std::pair<short, std::wstring>> found;
  dim::Opened<AcDbXrecord> record(xrecord, AcDb::kForRead);
  if (!record) return found;
  resbuf* chain = nullptr;
  EXPECT_EQ(record->rbChain(&chain), Acad::eOk);
  const dim::ResbufChain owned(chain);
  for (const resbuf* at = chain; at; at = at->rbnext) {
    found.emplace_back(at->restype, std::wstring(dim::buffer_text(*at)));
  }
  return found;
}

std::vector<StuDim> Plan::items(AcDbObjectId xrecord) {
  std::vector<StuDim> found;
  dim::Opened<AcDbXrecord> record(xrecord, AcDb::kForRead);
  if (!record) return found;
  resbuf* chain = nullptr;
  EXPECT_EQ(record->rbChain(&chain), Acad::eOk);
  const dim::ResbufChain owned(chain);
  StuDim item;
  for (resbuf* at = chain; dim::read_item(at, item); at = dim::link_to(at, 8)) {
    found.push_back(item);
  }
  return found;
}

Names names_of(const Items& items) {
  Names names;
  for (const StuDim& item : items) names.push_back(item.name);
  return names;
}

dim::ResbufChain text_chain(const std::vector<std::wstring>& texts) {
  dim::ChainBuilder chain;
  for (const std::wstring& text : texts) chain.add(dim::new_text_buffer(1, text));
  return dim::ResbufChain(chain.release());
}

Printed::Printed() {
  cad::set_console([this](std::string_view text) { text_ += text; });
}

Printed::~Printed() { cad::set_console({}); }
