// Every sample drawing: opened and saved it is the same file; with one record stored and one text
// changed, every other record still has its bytes, in the same order.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "host/db/record.h"
#include "tests/host/db/plan.h"
#include "tests/host/dxf/scanned.h"

namespace {

using cad::dxf::RecordMark;
using cad::dxf::Scanned;

std::vector<std::string> sample_drawings() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(PN_FIXTURES "/dxf")) {
    if (entry.path().extension() == ".dxf") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class Lossless : public DrawingTest, public testing::WithParamInterface<std::string> {
 protected:
  static std::string path() { return PN_FIXTURES "/dxf/" + GetParam() + ".dxf"; }
  static std::string file() {
    std::ifstream in(path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  static std::string_view record(const Scanned& drawing, const RecordMark& mark) {
    return std::string_view(drawing.bytes).substr(mark.begin, mark.end - mark.begin);
  }
  /// The first object of that kind that may be written to.
  template <class T>
  AcDbObjectId first_writable() {
    AcDbObjectId found;
    database().for_each_object([&](AcDbObjectId each) {
      if (!found.isNull() || each.handle().isNull()) return;
      if (!each.objectClass()->isDerivedFrom(T::desc())) return;
      if (open_status(each, AcDb::kForWrite) == Acad::eOk) found = each;
    });
    return found;
  }
};

TEST_P(Lossless, SavedUnchangedItIsTheSameFile) {
  const std::string bytes = file();
  given(bytes);
  EXPECT_FALSE(database().is_modified());
  EXPECT_EQ(database().save_bytes(), bytes);
}

TEST_P(Lossless, WhatIsReadWithoutOpeningIsWhatTheOpenObjectSays) {
  given(file());
  database().for_each_object([&](AcDbObjectId each) {
    AcDbObject* object = opened(each);
    std::optional<std::wstring> text;
    ACHAR* shown = nullptr;
    if (const auto* line = AcDbText::cast(object))
      shown = line->textString();
    else if (const auto* lines = AcDbMText::cast(object))
      shown = lines->contents();
    if (shown) text = shown;
    acutDelString(shown);
    EXPECT_EQ(cad::stored_text(each), text) << each.handle().value();
    EXPECT_EQ(cad::extension_dictionary(each), object->extensionDictionary());
    object->close();
  });
}

TEST_P(Lossless, OpeningEveryObjectChangesNothing) {
  const std::string bytes = file();
  given(bytes);
  database().for_each_object([&](AcDbObjectId each) {
    AcDbObject* object = opened(each);
    object->extensionDictionary();
    cad::ResbufChain(object->xData());
    if (auto* xrecord = AcDbXrecord::cast(object)) {
      resbuf* chain = nullptr;
      EXPECT_EQ(xrecord->rbChain(&chain), Acad::eOk);
      acutRelRb(chain);
    }
    if (auto* dictionary = AcDbDictionary::cast(object)) dictionary->numEntries();
    object->close();
  });
  EXPECT_EQ(database().save_bytes(), bytes);
}

TEST_P(Lossless, StoringAndChangingTouchesTheRecordsConcernedOnly) {
  const Scanned before(file());
  ASSERT_EQ(before.error, "");
  given(before.bytes);

  std::set<std::uint64_t> touched;
  const AcDbObjectId text_id = first_writable<AcDbText>();
  if (!text_id.isNull()) {
    auto* text = opened<AcDbText>(text_id, AcDb::kForWrite);
    EXPECT_EQ(text->setTextString(L"管径 DN300 ^J\n"), Acad::eOk);
    text->close();
    touched.insert(text_id.handle());
  }
  AcDbObjectId owner = first_writable<AcDbEntity>();
  ASSERT_FALSE(owner.isNull());
  std::uint64_t new_records = 0;
  if (database().has_dictionaries()) {
    AcDbObject* object = opened(owner);
    const AcDbObjectId present = object->extensionDictionary();
    object->close();
    touched.insert(present.isNull() ? owner.handle() : present.handle());
    new_records = present.isNull() ? 2 : 1;
    file_record(extension(owner), L"PIPENOTE_TEST", L"管 \n");
  }
  const std::uint64_t owner_handle = owner.handle();
  const std::uint64_t text_handle = text_id.isNull() ? 0 : text_id.handle().value();

  const Scanned after(database().save_bytes());
  ASSERT_EQ(after.error, "");
  // Walk both files: records are equal, touched, or new; the header section holds the seed.
  std::size_t j = 0;
  std::uint64_t added = 0;
  for (std::size_t i = 0; i < before.marks.size(); ++i) {
    const RecordMark& old = before.marks[i];
    while (j < after.marks.size() && after.marks[j].handle != old.handle &&
           record(after, after.marks[j]) != record(before, old)) {
      const RecordMark& fresh = after.marks[j++];
      EXPECT_TRUE(fresh.kind == "DICTIONARY" || fresh.kind == "XRECORD") << fresh.kind;
      ++added;
    }
    ASSERT_LT(j, after.marks.size()) << "record " << i << " is missing";
    const bool header = old.kind == "SECTION" && old.section == cad::dxf::Section::kHeader;
    if (!header && !(old.handle != 0 && touched.contains(old.handle))) {
      ASSERT_EQ(record(after, after.marks[j]), record(before, old)) << "record " << i;
    }
    EXPECT_EQ(after.marks[j].kind, old.kind);
    EXPECT_EQ(after.marks[j].owner, old.owner);
    ++j;
  }
  EXPECT_EQ(j, after.marks.size());
  EXPECT_EQ(added, new_records);

  reopened();
  EXPECT_EQ(database().facts().objects, [&] {
    AcDbDatabase fresh(false);
    EXPECT_TRUE(fresh.read_bytes(before.bytes, "before"));
    return fresh.facts().objects + new_records;
  }());
  if (text_handle != 0) {
    EXPECT_EQ(text_of(text_handle), L"管径 DN300 ^J\n");
  }
  if (!database().has_dictionaries()) return;
  AcDbObject* object = opened(owner_handle);
  auto* dictionary = opened<AcDbDictionary>(object->extensionDictionary());
  AcDbObjectId stored;
  EXPECT_EQ(dictionary->getAt(L"pipenote_test", stored), Acad::eOk);
  dictionary->close();
  object->close();
  EXPECT_EQ(record_text(stored), L"管 \n");
}

TEST_P(Lossless, WhatIsErasedIsTheOnlyThingThatIsMissing) {
  const Scanned before(file());
  given(before.bytes);
  std::uint64_t handle = 0;
  for (AcDbObjectId at = database().first_entity(); handle == 0 && !at.isNull();
       at = database().next_entity(at)) {
    const std::string_view kind = cad::record_kind(at);
    if (kind == "POLYLINE" || kind == "INSERT" || at.handle().isNull()) continue;
    AcDbObject* object = opened(at);
    if (object->extensionDictionary().isNull()) handle = at.handle();
    object->close();
  }
  if (handle == 0) GTEST_SKIP() << "its only entity has an extension dictionary";
  erase(handle);
  std::string wanted;
  wanted += before.bytes.substr(0, before.preamble.start);
  for (const RecordMark& mark : before.marks) {
    if (mark.handle != handle) wanted += record(before, mark);
  }
  EXPECT_EQ(database().save_bytes(), wanted);
}

INSTANTIATE_TEST_SUITE_P(Samples, Lossless, testing::ValuesIn(sample_drawings()),
                         [](const auto& sample) { return sample.param; });

}  // namespace
