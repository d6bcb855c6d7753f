#include "host/db/dictionary.h"

#include <gmock/gmock.h>

#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::uint64_t kDictionary = 0x50;

class Dictionary : public DrawingTest {
 protected:
  Dictionary() { given_plan(); }

  Acad::ErrorStatus get(const wchar_t* key, AcDbObjectId& entry) {
    auto* dictionary = opened<AcDbDictionary>(kDictionary);
    const Acad::ErrorStatus status = dictionary->getAt(key, entry);
    dictionary->close();
    return status;
  }
  Acad::ErrorStatus set(const wchar_t* key) {
    auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
    auto record = std::make_unique<AcDbXrecord>();
    AcDbObjectId made;
    const Acad::ErrorStatus status = dictionary->setAt(key, record.get(), made);
    EXPECT_EQ(made.isNull(), status != Acad::eOk);
    if (status == Acad::eOk) record.release()->close();
    dictionary->close();
    return status;
  }
  Acad::ErrorStatus remove(const wchar_t* key) {
    auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
    const Acad::ErrorStatus status = dictionary->remove(key);
    dictionary->close();
    return status;
  }
  std::vector<std::wstring> found() { return keys(id(kDictionary)); }

  /// The dictionary 50 with these entries in the file.
  void given_entries(std::string_view entries) {
    std::string note(plan_note());
    const std::string from = "3 zeta\n350 51\n3 Alpha\n350 52\n3 beta\n350 53\n";
    note.replace(note.find(from), from.size(), entries);
    given(spelled(note, Form::kUtf8));
  }
};

// Keys

TEST_F(Dictionary, OfAKeyThatIsThereTwiceTheFirstEntryThatIsThereCounts) {
  given_entries("3 beta\n350 5FF\n3 BETA\n350 52\n3 beta\n350 53\n");
  AcDbObjectId entry;
  EXPECT_EQ(get(L"beta", entry), Acad::eOk);
  EXPECT_EQ(entry, id(0x52));
}

TEST_F(Dictionary, KeysAreFoundWhateverTheirLetterCase) {
  for (const wchar_t* key : {L"Alpha", L"alpha", L"ALPHA"}) {
    AcDbObjectId entry;
    EXPECT_EQ(get(key, entry), Acad::eOk);
    EXPECT_EQ(entry, id(0x52));
  }
  AcDbObjectId entry = id(0x2F);
  EXPECT_EQ(get(L"gamma", entry), Acad::eKeyNotFound);
  EXPECT_TRUE(entry.isNull());
  EXPECT_EQ(int{Acad::eKeyNotFound}, 22);
  EXPECT_EQ(get(nullptr, entry), Acad::eInvalidInput);
}

TEST_F(Dictionary, OnlyAsciiLettersHaveTwoCases) {
  file_record(id(kDictionary), L"\u00C4", L"x");
  AcDbObjectId entry;
  EXPECT_EQ(get(L"\u00E4", entry), Acad::eKeyNotFound);
  EXPECT_EQ(get(L"\u00C4", entry), Acad::eOk);
}

TEST_F(Dictionary, TheFirstSpellingOfAKeyStays) {
  file_record(id(kDictionary), L"ALPHA", L"new");
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"beta", L"zeta"));
  reopened();
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"beta", L"zeta"));
  AcDbObjectId entry;
  EXPECT_EQ(get(L"alpha", entry), Acad::eOk);
  EXPECT_EQ(record_text(entry), L"new");
}

TEST_F(Dictionary, SomeKeysAreRefused) {
  for (const wchar_t* key : {L"", L"a<b", L"a>b", L"a/b", L"a\\b", L"a\"b", L"a:b", L"a;b", L"a?b",
                             L"a*b", L"**", L"*a/b", L"a|b", L"a,b", L"a=b", L"a`b"}) {
    EXPECT_EQ(set(key), Acad::eInvalidKey) << key;
  }
  EXPECT_EQ(set(nullptr), Acad::eInvalidKey);
  EXPECT_EQ(found().size(), 3u);
}

TEST_F(Dictionary, AStarAsksForAKeyThatNobodyHas) {
  file_record(id(kDictionary), L"*", L"one");
  file_record(id(kDictionary), L"*U9", L"two");
  EXPECT_THAT(found(), ElementsAre(L"*A1", L"*A2", L"Alpha", L"beta", L"zeta"));
  reopened();
  file_record(id(kDictionary), L"*A1", L"three");
  AcDbObjectId entry;
  for (const auto& [key, text] :
       {std::pair(L"*A1", L"one"), {L"*A2", L"two"}, {L"*a3", L"three"}}) {
    ASSERT_EQ(get(key, entry), Acad::eOk) << key;
    EXPECT_EQ(record_text(entry), text);
  }
}

TEST_F(Dictionary, AStarFindsAKeyBehindTheLargestNumber) {
  given_entries("3 *a2147483647\n350 51\n3 *A7\n350 52\n");
  file_record(id(kDictionary), L"*", L"x");
  file_record(id(kDictionary), L"*", L"y");
  EXPECT_THAT(found(), ElementsAre(L"*a2147483647", L"*A2147483648", L"*A2147483649", L"*A7"));
}

TEST_F(Dictionary, OtherKeysComeBackInEveryForm) {
  const std::wstring keys_in_order[] = {
      L" blank ", L"$x", L"+", L"^", L"^J", L"管线标注", std::wstring(500, L'键')};
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    for (const std::wstring& key : keys_in_order) {
      file_record(id(kDictionary), key.c_str(), key.c_str());
    }
    reopened();
    for (const std::wstring& key : keys_in_order) {
      AcDbObjectId entry;
      ASSERT_EQ(get(key.c_str(), entry), Acad::eOk);
      EXPECT_EQ(record_text(entry), key);
    }
  }
}

// Iterating

TEST_F(Dictionary, IteratesByKeyWhateverTheOrderInTheFile) {
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"beta", L"zeta"));
  file_record(id(kDictionary), L"_1", L"");
  file_record(id(kDictionary), L"Beta2", L"");
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"beta", L"Beta2", L"zeta", L"_1"))
      << "by upper-case letters, so _ stands behind Z";
}

TEST_F(Dictionary, NewEntriesGoInFrontOfTheirSuccessorInTheFile) {
  given_entries("3 a\n350 51\n3 c\n350 52\n");
  file_record(id(kDictionary), L"b", L"");
  file_record(id(kDictionary), L"d", L"");
  EXPECT_THAT(
      database().save_bytes(),
      HasSubstr("281\n1\n  3\na\n350\n51\n  3\nb\n350\n200\n  3\nc\n350\n52\n  3\nd\n350\n201\n"));
}

TEST_F(Dictionary, TheIteratorHandsOutTheEntries) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary);
  const std::unique_ptr<AcDbDictionaryIterator> at(dictionary->newIterator());
  EXPECT_FALSE(at->done());
  EXPECT_STREQ(at->name(), L"Alpha");
  EXPECT_EQ(at->objectId(), id(0x52));
  AcDbObject* object = nullptr;
  EXPECT_EQ(at->getObject(object, AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(object->objectId(), id(0x52));
  object->close();
  EXPECT_TRUE(at->next());
  EXPECT_TRUE(at->next());
  EXPECT_FALSE(at->next());
  EXPECT_TRUE(at->done());
  EXPECT_FALSE(at->next());
  EXPECT_EQ(at->name(), nullptr);
  EXPECT_TRUE(at->objectId().isNull());
  EXPECT_EQ(at->getObject(object, AcDb::kForRead), Acad::eIteratorDone);
  EXPECT_EQ(object, nullptr);
  dictionary->close();
}

TEST_F(Dictionary, ErasingTheCurrentEntryNeitherStopsNorSkips) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary);
  std::vector<std::wstring> seen;
  const std::unique_ptr<AcDbDictionaryIterator> at(dictionary->newIterator());
  for (; !at->done(); at->next()) {
    seen.emplace_back(at->name());
    AcDbObject* entry = nullptr;
    ASSERT_EQ(at->getObject(entry, AcDb::kForWrite), Acad::eOk);
    entry->erase();
    entry->close();
    EXPECT_EQ(seen.back(), at->name()) << "the name stays";
  }
  EXPECT_THAT(seen, ElementsAre(L"Alpha", L"beta", L"zeta"));
  EXPECT_EQ(dictionary->numEntries(), 0);
  dictionary->close();
}

TEST_F(Dictionary, ErasingOthersDuringAWalkLeavesThemOut) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary);
  const std::unique_ptr<AcDbDictionaryIterator> at(dictionary->newIterator());
  erase(0x53);  // beta, the next
  EXPECT_TRUE(at->next());
  EXPECT_STREQ(at->name(), L"zeta");
  erase(0x52);  // Alpha, behind us
  EXPECT_STREQ(at->name(), L"zeta");
  EXPECT_FALSE(at->next());
  dictionary->close();
}

TEST_F(Dictionary, EntriesAddedDuringAWalkAreMetInTheirPlace) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
  const std::unique_ptr<AcDbDictionaryIterator> at(dictionary->newIterator());
  auto* record = new AcDbXrecord;
  AcDbObjectId made;
  EXPECT_EQ(dictionary->setAt(L"AZ", record, made), Acad::eOk);
  record->close();
  EXPECT_TRUE(at->next());
  EXPECT_STREQ(at->name(), L"AZ");
  dictionary->close();
}

// Filing and taking out

TEST_F(Dictionary, AFiledEntryBelongsToTheDictionary) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
  auto* record = new AcDbXrecord;
  AcDbObjectId made;
  EXPECT_EQ(dictionary->setAt(L"new", record, made), Acad::eOk);
  EXPECT_TRUE(record->isWriteEnabled()) << "it stays open";
  EXPECT_EQ(record->ownerId(), id(kDictionary));
  EXPECT_TRUE(record->hasPersistentReactor(id(kDictionary)));
  EXPECT_EQ(dictionary->numEntries(), 4);
  std::wstring key;
  EXPECT_EQ(dictionary->nameAt(made, key), Acad::eOk);
  EXPECT_EQ(key, L"new");
  EXPECT_TRUE(dictionary->has(made));
  EXPECT_TRUE(dictionary->has(L"NEW"));
  AcDbObjectId again;
  EXPECT_EQ(dictionary->setAt(L"other", record, again), Acad::eAlreadyInDb);
  record->close();
  dictionary->close();
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("  0\nXRECORD\n  5\n200\n102\n{ACAD_REACTORS\n330\n50\n102\n}\n330\n50\n"
                        "100\nAcDbXrecord\n280\n     1\n"));
}

TEST_F(Dictionary, FilingUnderATakenKeyErasesTheEntryBefore) {
  file_record(id(kDictionary), L"beta", L"new");
  EXPECT_TRUE(id(0x53).isErased());
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"beta", L"zeta"));
  reopened();
  EXPECT_TRUE(id(0x53).isNull());
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"beta", L"zeta"));
}

TEST_F(Dictionary, NeedsAWriterToFile) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary);
  const auto record = std::make_unique<AcDbXrecord>();
  AcDbObjectId made;
  EXPECT_EQ(dictionary->setAt(L"new", record.get(), made), Acad::eNotOpenForWrite);
  EXPECT_TRUE(record->objectId().isNull()) << "the caller still owns it";
  EXPECT_EQ(dictionary->remove(L"beta"), Acad::eNotOpenForWrite);
  EXPECT_EQ(dictionary->remove(id(0x53)), Acad::eNotOpenForWrite);
  EXPECT_EQ(dictionary->setTreatElementsAsHard(true), Acad::eNotOpenForWrite);
  dictionary->close();
  AcDbObjectId entry;
  EXPECT_EQ(dictionary->getAt(L"beta", entry), Acad::eNotOpenForRead);
  std::wstring key;
  EXPECT_EQ(dictionary->nameAt(id(0x53), key), Acad::eNotOpenForRead);
}

TEST_F(Dictionary, NothingCannotBeFiled) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
  AcDbObjectId made;
  EXPECT_EQ(dictionary->setAt(L"new", nullptr, made), Acad::eNullObjectPointer);
  dictionary->close();
  AcDbDictionary homeless;
  const auto record = std::make_unique<AcDbXrecord>();
  EXPECT_EQ(homeless.setAt(L"new", record.get(), made), Acad::eNotInDatabase);
}

TEST_F(Dictionary, AnOwnerlessObjectOfTheDrawingCanBeFiled) {
  auto* record = new AcDbXrecord;
  AcDbObjectId made;
  EXPECT_EQ(database().addAcDbObject(made, record), Acad::eOk);
  auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
  AcDbObjectId filed;
  EXPECT_EQ(dictionary->setAt(L"new", record, filed), Acad::eOk);
  EXPECT_EQ(filed, made);
  EXPECT_EQ(record->ownerId(), id(kDictionary));
  record->close();
  dictionary->close();
  const std::uint64_t handle = made.handle();
  reopened();
  AcDbObject* read = opened(handle);
  EXPECT_EQ(read->ownerId(), id(kDictionary));
  EXPECT_TRUE(read->hasPersistentReactor(id(kDictionary)));
  read->close();
}

TEST_F(Dictionary, RemovingTakesTheEntryOutAlive) {
  EXPECT_EQ(remove(L"BETA"), Acad::eOk);
  EXPECT_EQ(remove(L"beta"), Acad::eKeyNotFound);
  EXPECT_EQ(remove(nullptr), Acad::eKeyNotFound);
  EXPECT_FALSE(id(0x53).isErased());
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"zeta"));
  auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
  EXPECT_EQ(dictionary->remove(id(0x51)), Acad::eOk);
  EXPECT_EQ(dictionary->remove(id(0x51)), Acad::eKeyNotFound);
  dictionary->close();
  reopened();
  EXPECT_THAT(found(), ElementsAre(L"Alpha"));
}

TEST_F(Dictionary, AnErasedEntryLeavesAndDoesNotComeBackByItself) {
  erase(0x53);
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"zeta"));
  AcDbObject* record = opened(id(0x53), AcDb::kForWrite, true);
  EXPECT_EQ(record->erase(false), Acad::eOk);
  record->close();
  EXPECT_THAT(found(), ElementsAre(L"Alpha", L"zeta"));
  AcDbObjectId entry;
  EXPECT_EQ(get(L"beta", entry), Acad::eKeyNotFound);
}

TEST_F(Dictionary, EntriesOpenThroughTheDictionary) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary);
  AcDbObject* entry = nullptr;
  EXPECT_EQ(dictionary->getAt(L"zeta", entry, AcDb::kForWrite), Acad::eOk);
  AcDbObject* second = nullptr;
  EXPECT_EQ(dictionary->getAt(L"zeta", second, AcDb::kForRead), Acad::eWasOpenForWrite);
  EXPECT_EQ(second, nullptr);
  EXPECT_EQ(dictionary->getAt(L"omega", second, AcDb::kForRead), Acad::eKeyNotFound);
  entry->close();
  dictionary->close();
}

TEST_F(Dictionary, OwnershipOfItsEntriesIsKeptAsRead) {
  auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
  EXPECT_FALSE(dictionary->isTreatElementsAsHard());
  EXPECT_EQ(dictionary->setTreatElementsAsHard(true), Acad::eOk);
  EXPECT_TRUE(dictionary->isTreatElementsAsHard());
  dictionary->close();
  file_record(id(kDictionary), L"new", L"");
  const std::string bytes = database().save_bytes();
  EXPECT_THAT(bytes, HasSubstr("100\nAcDbDictionary\n280\n     1\n281\n1\n"));
  EXPECT_THAT(bytes, HasSubstr("  3\nnew\n360\n200\n"));
  EXPECT_THAT(bytes, HasSubstr("  3\nzeta\n350\n51\n"));
}

// Damaged dictionaries

TEST_F(Dictionary, EntriesThatLeadNowhereAreNotDelivered) {
  given_entries("3 a\n350 FFFF\n3 b\n350 52\n3 c\n350 0\n3 d\n350 x\n3 e\n3 f\n350 51\n3 g\n");
  EXPECT_THAT(found(), ElementsAre(L"b", L"f"));
  auto* dictionary = opened<AcDbDictionary>(kDictionary);
  EXPECT_EQ(dictionary->numEntries(), 2);
  EXPECT_FALSE(dictionary->has(L"a"));
  dictionary->close();
  const std::string before = database().save_bytes();
  file_record(id(kDictionary), L"a", L"new");
  EXPECT_THAT(found(), ElementsAre(L"a", L"b", L"f"));
  EXPECT_EQ(database().save_bytes().find("FFFF"), std::string::npos) << "its place is taken";
}

TEST_F(Dictionary, OfTwoEqualKeysTheFirstAnswers) {
  given_entries("3 same\n350 51\n3 SAME\n350 52\n3 other\n350 53\n");
  AcDbObjectId entry;
  EXPECT_EQ(get(L"Same", entry), Acad::eOk);
  EXPECT_EQ(entry, id(0x51));
  EXPECT_THAT(found(), ElementsAre(L"other", L"same"));
}

TEST_F(Dictionary, ErasingOneOfTwoEqualKeysLeavesTheOther) {
  for (const std::uint64_t erased : {0x51, 0x52}) {
    given_entries("3 same\n350 51\n3 same\n350 52\n3 other\n350 53\n");
    erase(erased);
    const std::uint64_t left = 0x51 + 0x52 - erased;
    for (int round = 0; round < 2; ++round) {
      AcDbObjectId entry;
      EXPECT_EQ(get(L"same", entry), Acad::eOk);
      EXPECT_EQ(entry, id(left));
      EXPECT_THAT(found(), ElementsAre(L"other", L"same"));
      reopened();
    }
  }
}

TEST_F(Dictionary, FilingAnObjectUnderItsOwnKeyDoesNotEraseIt) {
  std::string note(plan_note());
  const std::string from = "0 XRECORD\n5 53\n330 50\n";
  note.replace(note.find(from), from.size(), "0 XRECORD\n5 53\n330 0\n");
  given(spelled(note, Form::kUtf8));
  auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
  AcDbObject* record = opened(0x53, AcDb::kForWrite);
  AcDbObjectId filed;
  EXPECT_EQ(dictionary->setAt(L"beta", record, filed), Acad::eOk);
  EXPECT_FALSE(record->isErased());
  record->close();
  dictionary->close();
}

TEST_F(Dictionary, WithoutItsClassMarkerItStillKeepsWhatIsFiled) {
  std::string note(plan_note());
  const std::string from = "5 50\n330 C\n100 AcDbDictionary\n";
  note.replace(note.find(from), from.size(), "5 50\n330 C\n");
  given(spelled(note, Form::kUtf8));
  EXPECT_TRUE(found().empty());
  file_record(id(kDictionary), L"b", L"x");
  file_record(id(kDictionary), L"a", L"y");
  EXPECT_THAT(found(), ElementsAre(L"a", L"b"));
  reopened();
  EXPECT_THAT(found(), ElementsAre(L"a", L"b"));
}

TEST_F(Dictionary, ManyEntriesStayQuick) {
  given_entries("");
  auto* dictionary = opened<AcDbDictionary>(kDictionary, AcDb::kForWrite);
  for (int i = 0; i < 500; ++i) {
    auto* record = new AcDbXrecord;
    AcDbObjectId made;
    ASSERT_EQ(dictionary->setAt(std::to_wstring(i * 7919 % 1000).c_str(), record, made), Acad::eOk);
    record->close();
  }
  EXPECT_EQ(dictionary->numEntries(), 500);
  dictionary->close();
  reopened();
  EXPECT_EQ(found().size(), 500u);
}

}  // namespace
