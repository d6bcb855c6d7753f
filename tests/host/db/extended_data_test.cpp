#include <gmock/gmock.h>

#include "host/db/extended_data.h"
#include "host/db/record.h"
#include "host/db/symbol_table.h"
#include "host/dxf/tag_writer.h"
#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ExtendedData : public DrawingTest {
 protected:
  ExtendedData() { given_plan(); }

  std::vector<std::string> data(std::uint64_t handle, const wchar_t* application = nullptr) {
    AcDbObject* object = opened(handle);
    const cad::ResbufChain chain(object->xData(application));
    object->close();
    return shown(chain.get());
  }
  template <class... Values>
  Acad::ErrorStatus set(std::uint64_t handle, Values... values) {
    const cad::ResbufChain chain(acutBuildList(values..., 0));
    AcDbObject* object = opened(handle, AcDb::kForWrite);
    const Acad::ErrorStatus status = object->setXData(chain.get());
    object->close();
    return status;
  }
  void given_application(const wchar_t* name) {
    AcDbRegAppTable* table = nullptr;
    ASSERT_EQ(database().getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
    auto* const record = new AcDbRegAppTableRecord;
    record->setName(name);
    AcDbObjectId made;
    EXPECT_EQ(table->add(made, record), Acad::eOk);
    record->close();
    table->close();
  }
};

TEST_F(ExtendedData, IsReadPerApplicationOrWhole) {
  EXPECT_THAT(data(0x3A, L"ACAD"), ElementsAre("1001 ACAD", "1000 other"));
  EXPECT_THAT(data(0x3A, L"pn"),
              ElementsAre("1001 PN", "1002 {", "1000 well", "1070 7", "1071 70000", "1040 36.5",
                          "1005 2F", "1010 1.0;2.0;3.0;", "1004 0,255,", "1002 }"));
  EXPECT_EQ(data(0x3A).size(), 12u);
  EXPECT_THAT(data(0x3A, L"NONE"), IsEmpty());
  EXPECT_THAT(data(0x2F), IsEmpty());
}

TEST_F(ExtendedData, TagsOfAnApplicationAreWalkedOneByOne) {
  for (const Form form : kFormsWithDictionaries) {
    given_plan(form);
    const cad::RecordTags record = cad::record_tags(id(0x3A));
    cad::ExtendedTags tags(record.bytes, *record.dialect, L"pn");
    std::vector<int> codes;
    for (cad::dxf::Tag tag; tags.next(tag);) codes.push_back(tag.code);
    EXPECT_THAT(codes,
                ElementsAre(1002, 1000, 1070, 1071, 1040, 1005, 1010, 1020, 1030, 1004, 1002))
        << form_name(form);
    EXPECT_TRUE(tags.found());
    cad::ExtendedTags none(record.bytes, *record.dialect, L"NONE");
    cad::dxf::Tag tag;
    EXPECT_FALSE(none.next(tag));
    EXPECT_FALSE(none.found());
  }
}

TEST_F(ExtendedData, ATagIsReplacedAndTheOthersKeepTheirBytes) {
  const std::string before = database().save_bytes();
  const cad::RecordTags record = cad::record_tags(id(0x3A));
  cad::ExtendedTags tags(record.bytes, *record.dialect, L"PN");
  cad::dxf::Tag tag;
  while (tags.next(tag) && tag.code != 1040) {
  }
  const std::string old(record.bytes.substr(tag.begin, tag.end - tag.begin));
  AcDbObject* object = opened(0x3A, AcDb::kForWrite);
  EXPECT_EQ(cad::replace_extended_tags(*object, 0, 4, "1040\n7.0\n"), Acad::eInvalidInput)
      << "not extended data";
  EXPECT_EQ(cad::replace_extended_tags(*object, tag.begin, 1 << 20, ""), Acad::eInvalidInput);
  EXPECT_EQ(cad::replace_extended_tags(*object, tag.begin, tag.end, "1040\n7.0\n"), Acad::eOk);
  object->close();
  std::string wanted = before;
  wanted.replace(wanted.find(old), old.size(), "1040\n7.0\n");
  EXPECT_EQ(database().save_bytes(), wanted);
  AcDbObject* const reading = opened(0x3A);
  EXPECT_EQ(cad::replace_extended_tags(*reading, tag.begin, tag.end, ""), Acad::eNotOpenForWrite);
  reading->close();
}

TEST_F(ExtendedData, ReadsTheSameInEveryForm) {
  const auto wanted = data(0x3A);
  for (const Form form : kFormsWithDictionaries) {
    given_plan(form);
    EXPECT_EQ(data(0x3A), wanted) << form_name(form);
  }
}

TEST_F(ExtendedData, EveryKindOfValueComesBackInEveryForm) {
  const ads_real point[] = {1.5, -2, 3};
  unsigned char bytes[127];
  for (int i = 0; i < 127; ++i) bytes[i] = static_cast<unsigned char>(2 * i);
  const ads_binary chunk = {127, reinterpret_cast<char*>(bytes)};
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    EXPECT_EQ(set(0x2F, 1001, L"PN", 1000, L"管 ^J\n ", 1002, L"{", 1003, L"0", 1004, &chunk, 1005,
                  L"3A", 1010, point, 1011, point, 1013, point, 1040, 36.5, 1041, -0.0, 1042, 1e-9,
                  1070, -7, 1071, -70000, 1002, L"}", 1000, L""),
              Acad::eOk);
    const auto before = data(0x2F);
    EXPECT_EQ(before.size(), 16u);
    reopened();
    EXPECT_EQ(data(0x2F), before);
  }
}

TEST_F(ExtendedData, AnApplicationIsReplacedWithoutTouchingOthers) {
  EXPECT_EQ(set(0x3A, 1001, L"pn", 1000, L"new"), Acad::eOk);
  EXPECT_THAT(data(0x3A), ElementsAre("1001 ACAD", "1000 other", "1001 pn", "1000 new"));
  given_application(L"A");
  given_application(L"B");
  EXPECT_EQ(set(0x3A, 1001, L"A", 1000, L"1", 1001, L"B", 1000, L"2", 1001, L"ACAD"), Acad::eOk);
  EXPECT_THAT(data(0x3A),
              ElementsAre("1001 pn", "1000 new", "1001 A", "1000 1", "1001 B", "1000 2"))
      << "an application followed by nothing loses its data";
}

TEST_F(ExtendedData, RemovingAllLeavesTheRecordWithoutAny) {
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1001, L"ACAD"), Acad::eOk);
  EXPECT_THAT(data(0x3A), IsEmpty());
  EXPECT_EQ(database().save_bytes().find("1001\n"), std::string::npos);
  EXPECT_EQ(set(0x3A, 1001, L"PN"), Acad::eOk) << "nothing to remove";
  EXPECT_THAT(data(0x3A), IsEmpty());
}

TEST_F(ExtendedData, RefusedDataChangesNothing) {
  const auto before = data(0x3A);
  EXPECT_EQ(set(0x3A, 1000, L"no application"), Acad::eInvalidResBuf);
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1, L"no such group"), Acad::eInvalidResBuf);
  EXPECT_EQ(set(0x3A, 1001, L"PN", RTSTR, L"no such group"), Acad::eInvalidResBuf);
  EXPECT_EQ(set(0x3A, 1001, L""), Acad::eInvalidResBuf);
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1040, 1.0 / 0.0), Acad::eInvalidResBuf);
  char bytes[128] = {};
  const ads_binary chunk = {128, bytes};
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1004, &chunk), Acad::eInvalidResBuf);
  AcDbObject* object = opened(0x3A, AcDb::kForWrite);
  EXPECT_EQ(object->setXData(nullptr), Acad::eInvalidResBuf);
  object->close();
  EXPECT_EQ(data(0x3A), before);
  EXPECT_FALSE(database().is_modified());
}

TEST_F(ExtendedData, AnApplicationMustBeRegistered) {
  EXPECT_EQ(set(0x2F, 1001, L"NEW", 1000, L"x"), Acad::eRegappIdNotFound);
  EXPECT_EQ(int{Acad::eRegappIdNotFound}, 126);
  EXPECT_EQ(set(0x2F, 1001, L"NEW"), Acad::eOk) << "there is nothing to be carried";
  EXPECT_THAT(data(0x2F), IsEmpty());
  EXPECT_FALSE(database().is_modified());
  given_application(L"NEW");
  EXPECT_EQ(set(0x2F, 1001, L"new", 1000, L"x"), Acad::eOk);
  EXPECT_THAT(data(0x2F), ElementsAre("1001 new", "1000 x"));
}

TEST_F(ExtendedData, TextsHaveAtMost255Bytes) {
  const std::wstring longest(255, L'x'), chinese(85, L'管');
  EXPECT_EQ(set(0x2F, 1001, L"PN", 1000, longest.c_str(), 1000, chinese.c_str()), Acad::eOk);
  const auto before = data(0x2F);
  EXPECT_EQ(set(0x2F, 1001, L"PN", 1000, (longest + L"x").c_str()), Acad::eStringTooLong);
  EXPECT_EQ(set(0x2F, 1001, L"PN", 1000, (chinese + L"x").c_str()), Acad::eStringTooLong);
  EXPECT_EQ(data(0x2F), before);
}

TEST_F(ExtendedData, AnObjectCarriesAtMost16383Bytes) {
  // 3 bytes a number behind the 9 of the application.
  const auto fill = [&](std::uint64_t handle, const wchar_t* application, int numbers) {
    cad::ChainBuilder chain;
    chain.add(acutBuildList(1001, application, 0));
    for (int i = 0; i < numbers; ++i) chain.add(acutBuildList(1070, 32767, 0));
    AcDbObject* object = opened(handle, AcDb::kForWrite);
    const Acad::ErrorStatus status = object->setXData(chain.head());
    object->close();
    return status;
  };
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    EXPECT_EQ(fill(0x2F, L"PN", 5458), Acad::eOk);
    EXPECT_EQ(fill(0x2F, L"PN", 5459), Acad::eXdataSizeExceeded);
    EXPECT_EQ(fill(0x2F, L"ACAD", 1), Acad::eXdataSizeExceeded) << "all applications together";
    EXPECT_EQ(data(0x2F).size(), 5459u) << "a refusal changes nothing";
    const cad::RecordTags record = cad::record_tags(id(0x2F));
    const std::size_t end = record.bytes.size();
    std::string tags;
    cad::dxf::TagWriter(tags, *record.dialect).text(1000, L"0123456789");
    AcDbObject* object = opened(0x2F, AcDb::kForWrite);
    EXPECT_EQ(cad::replace_extended_tags(*object, end, end, tags), Acad::eXdataSizeExceeded);
    object->close();
    EXPECT_EQ(fill(0x2F, L"PN", 1), Acad::eOk);
  }
}

TEST_F(ExtendedData, BytesAreCountedByKind) {
  const auto size = [](auto write) {
    const cad::dxf::Dialect ascii{}, binary{.binary = true};
    std::string text, bytes;
    cad::dxf::TagWriter text_writer(text, ascii), byte_writer(bytes, binary);
    write(text_writer);
    write(byte_writer);
    EXPECT_EQ(cad::extended_size(text, ascii), cad::extended_size(bytes, binary));
    return cad::extended_size(text, ascii);
  };
  const unsigned char chunk[] = {1, 2, 3};
  EXPECT_EQ(size([](auto& tags) { tags.raw(1000, "abcd"); }), 7u);
  EXPECT_EQ(size([](auto& tags) { tags.raw(1001, "abcd"); }), 9u);
  EXPECT_EQ(size([](auto& tags) { tags.raw(1002, "{"); }), 2u);
  EXPECT_EQ(size([&](auto& tags) { tags.chunk(1004, chunk); }), 5u);
  EXPECT_EQ(size([](auto& tags) { tags.handle(1005, 0x3A); }), 9u);
  EXPECT_EQ(size([](auto& tags) { tags.point(1011, 1, 2, 3); }), 25u);
  EXPECT_EQ(size([](auto& tags) { tags.real(1040, 36.5); }), 9u);
  EXPECT_EQ(size([](auto& tags) { tags.integer(1070, 7); }), 3u);
  EXPECT_EQ(size([](auto& tags) { tags.integer(1071, 7); }), 5u);
}

TEST_F(ExtendedData, BracesMustMatch) {
  const auto before = data(0x3A);
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1002, L"{"), Acad::eInvalidResBuf);
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1002, L"}", 1002, L"{"), Acad::eInvalidResBuf);
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1002, L"("), Acad::eInvalidResBuf);
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1002, L"{", 1002, L")"), Acad::eInvalidResBuf);
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1002, L"{", 1001, L"ACAD", 1002, L"}"), Acad::eInvalidResBuf);
  EXPECT_EQ(data(0x3A), before);
  EXPECT_EQ(set(0x3A, 1001, L"PN", 1002, L"{", 1002, L"{", 1002, L"}", 1002, L"}"), Acad::eOk);
}

TEST_F(ExtendedData, NeedsAWriter) {
  const cad::ResbufChain chain(acutBuildList(1001, L"PN", 1000, L"x", 0));
  AcDbObject* object = opened(0x3A);
  EXPECT_EQ(object->setXData(chain.get()), Acad::eNotOpenForWrite);
  object->close();
}

TEST_F(ExtendedData, ANewEntityMayCarryDataBeforeItIsAdded) {
  const cad::ResbufChain chain(acutBuildList(1001, L"PN", 1000, L"管", 1005, L"2F", 0));
  for (const Form form : kFormsWithDictionaries) {
    given_plan(form);
    auto* line = new AcDbLine;
    EXPECT_EQ(line->setXData(chain.get()), Acad::eOk);
    const auto handle = append(line).handle();
    reopened();
    EXPECT_THAT(data(handle), ElementsAre("1001 PN", "1000 管", "1005 2F")) << form_name(form);
  }
}

TEST_F(ExtendedData, TagsSetLaterStandInFrontOfIt) {
  std::string note(plan_note());
  const std::string from = "1 A1\n100 AcDbText\n";
  note.insert(note.find(from) + from.size(), "1001 PN\n1000 x\n1040 2.5\n");
  given(spelled(note, Form::kUtf8));
  auto* text = opened<AcDbText>(0x3C, AcDb::kForWrite);
  text->setRotation(1);
  text->setColorIndex(2);
  text->close();
  reopened();
  EXPECT_THAT(data(0x3C), ElementsAre("1001 PN", "1000 x", "1040 2.5"));
  text = opened<AcDbText>(0x3C);
  EXPECT_NEAR(text->rotation(), 1, 1e-12);
  EXPECT_EQ(text->colorIndex(), 2);
  text->close();
}

// Persistent reactors

class Reactors : public DrawingTest {
 protected:
  Reactors() { given_plan(); }
};

TEST_F(Reactors, AreListedInTheirGroup) {
  AcDbObject* text = opened(0x30, AcDb::kForWrite);
  EXPECT_TRUE(text->hasPersistentReactor(id(0xC)));
  EXPECT_FALSE(text->hasPersistentReactor(id(0x50)));
  EXPECT_FALSE(text->hasPersistentReactor(AcDbObjectId()));
  EXPECT_EQ(text->addPersistentReactor(id(0x50)), Acad::eOk);
  EXPECT_EQ(text->addPersistentReactor(id(0x50)), Acad::eOk) << "once is enough";
  EXPECT_EQ(text->addPersistentReactor(AcDbObjectId()), Acad::eNullObjectId);
  text->close();
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("  5\n30\n102\n{ACAD_REACTORS\n330\nC\n330\n50\n102\n}\n330\n18\n"));
}

TEST_F(Reactors, TheLastOneTakesTheGroupAlong) {
  const std::string before = database().save_bytes();
  AcDbObject* line = opened(0x2F, AcDb::kForWrite);
  EXPECT_EQ(line->removePersistentReactor(id(0xC)), Acad::eKeyNotFound);
  EXPECT_EQ(line->addPersistentReactor(id(0xC)), Acad::eOk);
  EXPECT_EQ(line->addPersistentReactor(id(0x50)), Acad::eOk);
  EXPECT_EQ(line->removePersistentReactor(id(0xC)), Acad::eOk);
  EXPECT_FALSE(line->hasPersistentReactor(id(0xC)));
  EXPECT_TRUE(line->hasPersistentReactor(id(0x50)));
  EXPECT_EQ(line->removePersistentReactor(id(0x50)), Acad::eOk);
  line->close();
  EXPECT_EQ(database().save_bytes(), before);
}

TEST_F(Reactors, StandBehindTheExtensionDictionary) {
  extension(id(0x2F));
  AcDbObject* line = opened(0x2F, AcDb::kForWrite);
  line->addPersistentReactor(id(0xC));
  line->close();
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("  5\n2F\n102\n{ACAD_XDICTIONARY\n360\n200\n102\n}\n"
                        "102\n{ACAD_REACTORS\n330\nC\n102\n}\n330\n18\n"));
}

}  // namespace
