#include "tests/module/plan.h"

#include <memory>

#include "host/app/console.h"
#include "host/base/codepage.h"
#include "module/platform/opened.h"
#include "module/record/item_chain.h"

namespace {

struct Group {
  int code;
  std::string value;
};
using Groups = std::vector<Group>;

void add(Groups& out, std::initializer_list<Group> groups) {
  out.insert(out.end(), groups.begin(), groups.end());
}

void add_line(Groups& out, const std::string& handle, const std::string& layer) {
  add(out, {{0, "LINE"},
            {5, handle},
            {330, "1F"},
            {100, "AcDbEntity"},
            {8, layer},
            {100, "AcDbLine"},
            {10, "0.0"},
            {20, "0.0"},
            {30, "0.0"},
            {11, "36.5"},
            {21, "0.0"},
            {31, "0.0"}});
}

void add_text(Groups& out, const std::string& handle, const std::string& layer) {
  add(out, {{0, "TEXT"},
            {5, handle},
            {330, "1F"},
            {100, "AcDbEntity"},
            {8, layer},
            {100, "AcDbText"},
            {10, "1.0"},
            {20, "2.0"},
            {30, "0.0"},
            {40, "3.5"},
            {1, "label " + handle},
            {100, "AcDbText"}});
}

void add_block(Groups& out, const std::string& name, const std::string& record,
               const std::string& begin, const std::string& end) {
  add(out, {{0, "BLOCK"},
            {5, begin},
            {330, record},
            {100, "AcDbEntity"},
            {8, "0"},
            {100, "AcDbBlockBegin"},
            {2, name},
            {70, "0"},
            {10, "0.0"},
            {20, "0.0"},
            {30, "0.0"},
            {3, name},
            {1, ""},
            {0, "ENDBLK"},
            {5, end},
            {330, record},
            {100, "AcDbEntity"},
            {8, "0"},
            {100, "AcDbBlockEnd"}});
}

void add_table(Groups& out, const std::string& name, const std::string& handle) {
  add(out, {{0, "TABLE"}, {2, name}, {5, handle}, {330, "0"}, {100, "AcDbSymbolTable"}, {70, "1"}});
}

void add_layer(Groups& out, const std::string& name, const std::string& handle, int flags) {
  add(out, {{0, "LAYER"},
            {5, handle},
            {330, "2"},
            {100, "AcDbSymbolTableRecord"},
            {100, "AcDbLayerTableRecord"},
            {2, name},
            {70, std::to_string(flags)},
            {62, "7"},
            {6, "Continuous"}});
}

void add_block_record(Groups& out, const std::string& name, const std::string& handle) {
  add(out, {{0, "BLOCK_RECORD"},
            {5, handle},
            {330, "1"},
            {100, "AcDbSymbolTableRecord"},
            {100, "AcDbBlockTableRecord"},
            {2, name}});
}

Groups plan_groups() {
  Groups out;
  add(out, {{0, "SECTION"},
            {2, "HEADER"},
            {9, "$ACADVER"},
            {1, "AC1027"},
            {9, "$HANDSEED"},
            {5, "100"},
            {9, "$CLAYER"},
            {8, "0"},
            {9, "$TILEMODE"},
            {70, "1"},
            {0, "ENDSEC"}});
  add(out, {{0, "SECTION"}, {2, "TABLES"}});
  add_table(out, "LAYER", "2");
  add_layer(out, "0", "10", 0);
  add_layer(out, "LOCKED", "11", 4);
  add(out, {{0, "ENDTAB"}});
  add_table(out, "BLOCK_RECORD", "1");
  add_block_record(out, "*Model_Space", "1F");
  add_block_record(out, "*Paper_Space", "1B");
  add(out, {{0, "ENDTAB"}, {0, "ENDSEC"}, {0, "SECTION"}, {2, "BLOCKS"}});
  add_block(out, "*Model_Space", "1F", "20", "21");
  add_block(out, "*Paper_Space", "1B", "1C", "1D");
  add(out, {{0, "ENDSEC"}, {0, "SECTION"}, {2, "ENTITIES"}});
  add_line(out, "2F", "0");
  add_line(out, "30", "0");
  add_line(out, "31", "LOCKED");
  for (const char digit : std::string("0123456789")) add_text(out, std::string("4") + digit, "0");
  add(out, {{0, "MTEXT"},
            {5, "4A"},
            {330, "1F"},
            {100, "AcDbEntity"},
            {8, "0"},
            {100, "AcDbMText"},
            {10, "1.0"},
            {20, "2.0"},
            {30, "0.0"},
            {40, "3.5"},
            {71, "1"},
            {1, "label 4A"}});
  add_text(out, "4B", "LOCKED");
  add(out, {{0, "ENDSEC"},
            {0, "SECTION"},
            {2, "OBJECTS"},
            {0, "DICTIONARY"},
            {5, "C"},
            {330, "0"},
            {100, "AcDbDictionary"},
            {281, "1"},
            {3, "ACAD_GROUP"},
            {350, "D"},
            {0, "DICTIONARY"},
            {5, "D"},
            {330, "C"},
            {100, "AcDbDictionary"},
            {281, "1"},
            {0, "ENDSEC"},
            {0, "EOF"}});
  return out;
}

}  // namespace

std::string Plan::bytes() {
  std::string text;
  for (const Group& group : plan_groups()) {
    text += std::to_string(group.code) + "\n" + group.value + "\n";
  }
  return text;
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
