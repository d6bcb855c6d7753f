// Drawings that do not read, and those that do though something in them is wrong: the latter are
// written back byte for byte, and take records all the same.

#include <gmock/gmock.h>

#include <random>

#include "tests/host/db/plan.h"
#include "tests/host/dxf/written.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string read_error(std::string bytes) {
  AcDbDatabase database(false);
  const cad::Status status = database.read_bytes(std::move(bytes), "plan.dxf");
  return status ? "" : status.error().message();
}

std::string ascii_error(std::string_view note) { return read_error(written::ascii(note)); }

TEST(DamagedDrawing, IsToldByLine) {
  struct Row {
    const char* note;
    const char* error;
  };
  const Row rows[] = {
      {"0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n0 ENDSEC\n0 EOF\n",
       "plan.dxf:9: the last table is not closed by ENDTAB"},
      {"0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n0 TABLE\n2 LTYPE\n0 ENDTAB\n0 ENDSEC\n0 EOF\n",
       "plan.dxf:9: a table begins inside another"},
      {"0 SECTION\n2 TABLES\n0 ENDTAB\n0 ENDSEC\n0 EOF\n",
       "plan.dxf:5: ENDTAB stands outside any table"},
      {"0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n0 ENDTAB\n0 ENDTAB\n0 ENDSEC\n0 EOF\n",
       "plan.dxf:11: ENDTAB stands outside any table"},
      {"0 SECTION\n2 BLOCKS\n0 BLOCK\n2 A\n0 ENDSEC\n0 EOF\n",
       "plan.dxf:9: the last block is not closed by ENDBLK"},
      {"0 SECTION\n2 BLOCKS\n0 BLOCK\n2 A\n0 BLOCK\n2 B\n0 ENDBLK\n0 ENDSEC\n0 EOF\n",
       "plan.dxf:9: a block begins inside another"},
      {"0 SECTION\n2 BLOCKS\n0 ENDBLK\n0 ENDSEC\n0 EOF\n",
       "plan.dxf:5: ENDBLK stands outside any block"},
      {"0 ENDSEC\n0 EOF\n", "plan.dxf:1: ENDSEC stands outside any section"},
      {"0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 ENDSEC\n0 EOF\n",
       "plan.dxf:7: ENDSEC stands outside any section"},
      {"0 SECTION\n2 ENTITIES\n0 LINE\n0 EOF\n",
       "plan.dxf:7: the drawing ends inside section ENTITIES, whose ENDSEC is missing"},
      {"0 SECTION\n2 ENTITIES\n0 ENDSEC\n",
       "plan.dxf:7: the drawing is cut off: it ends without EOF"},
  };
  for (const Row& row : rows) EXPECT_EQ(ascii_error(row.note), row.error) << row.note;
}

TEST(DamagedDrawing, ACutAtEveryByteIsAnErrorOrTheWholeDrawing) {
  for (const Form form :
       {Form::kUtf8, Form::kChinese, Form::kBinary, Form::kOldBinary, Form::kR12}) {
    const std::string whole = spelled(plan_note(), form);
    const bool ascii = form != Form::kBinary && form != Form::kOldBinary;
    const std::size_t whole_from = ascii ? whole.find_last_not_of("\r\n") + 1 : whole.size();
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const std::string error = read_error(whole.substr(0, size));
      EXPECT_EQ(error.empty(), size >= whole_from) << form_name(form) << " " << size << error;
    }
  }
}

TEST(DamagedDrawing, ThatWasNotReadHoldsNothing) {
  AcDbDatabase database(false);
  EXPECT_FALSE(database.read_file("/nowhere/plan.dxf"));
  EXPECT_TRUE(database.first_entity().isNull());
  EXPECT_TRUE(database.namedObjectsDictionaryId().isNull());
}

// Damaged, but readable

class Damaged : public DrawingTest {
 protected:
  /// Reads `bytes`, wants them back, stores a record on every entity that opens, and wants it and
  /// every other record back.
  void expect_usable(const std::string& bytes, std::size_t at_least = 1) {
    given(bytes);
    if (HasFailure()) return;
    ASSERT_EQ(database().save_bytes(), bytes);
    std::vector<std::uint64_t> owners;
    for (AcDbObjectId at = database().first_entity(); !at.isNull();
         at = database().next_entity(at)) {
      AcDbObject* object = nullptr;
      if (acdbOpenAcDbObject(object, at, AcDb::kForWrite) != Acad::eOk) continue;
      const Acad::ErrorStatus status = object->createExtensionDictionary();
      const AcDbObjectId dictionary = object->extensionDictionary();
      object->close();
      if (status != Acad::eOk) continue;
      file_record(dictionary, L"PIPE", L"x");
      owners.push_back(at.handle());
    }
    ASSERT_GE(owners.size(), at_least);
    const std::uint64_t objects = database().facts().objects;
    reopened();
    EXPECT_GE(database().facts().objects, objects + 2 * owners.size());
    for (const std::uint64_t owner : owners) {
      AcDbObject* object = opened(owner);
      EXPECT_THAT(keys(object->extensionDictionary()), ElementsAre(L"PIPE")) << std::hex << owner;
      object->close();
    }
  }
  static std::string replaced(std::string_view from, std::string_view to) {
    std::string note(plan_note());
    note.replace(note.find(from), from.size(), to);
    return note;
  }
};

TEST_F(Damaged, OddSpacingOfCodesStays) {
  std::mt19937 random(1);
  std::string bytes;
  written::for_each_tag(plan_note(), [&](int code, std::string_view value) {
    static constexpr const char* kFronts[] = {"", "  ", "\t", "   ", "0", "      "};
    static constexpr const char* kTails[] = {"", " ", "\t", "  "};
    const std::string_view version = value == "@" ? "AC1027" : value;
    bytes += kFronts[random() % 6] + std::to_string(code) + kTails[random() % 4] + "\n";
    bytes.append(version).append(code == 0 && random() % 2 ? " \n" : "\n");
  });
  expect_usable(bytes);
}

TEST_F(Damaged, MixedLineEndsStay) {
  std::mt19937 random(1);
  std::string bytes;
  for (const char c : spelled(plan_note(), Form::kUtf8)) {
    if (c == '\n' && random() % 2) bytes += '\r';
    bytes += c;
  }
  expect_usable(bytes);
}

TEST_F(Damaged, BytesBehindEofStay) {
  for (const std::string& tail : {std::string("\x1A"), std::string("0\nSECTION\nrubbish"),
                                  std::string(100, '\0'), std::string("\n\n\n")}) {
    expect_usable(spelled(plan_note(), Form::kUtf8) + tail);
    expect_usable(spelled(plan_note(), Form::kBinary) + tail);
  }
}

TEST_F(Damaged, ALastLineWithoutEndStays) {
  std::string bytes = spelled(plan_note(), Form::kUtf8);
  bytes.pop_back();
  expect_usable(bytes);
}

TEST_F(Damaged, AByteOrderMarkAndCommentsStay) {
  expect_usable("\xEF\xBB\xBF" + spelled(plan_note(), Form::kUtf8));
  expect_usable("999\nmade by hand\n" + spelled(plan_note(), Form::kUtf8));
  expect_usable(
      spelled(replaced("0 LINE\n5 2F\n", "0 LINE\n999 comment\n5 2F\n999 again\n"), Form::kUtf8));
}

TEST_F(Damaged, DuplicateAndMissingHandlesStay) {
  expect_usable(spelled(replaced("0 LINE\n5 3D\n", "0 LINE\n5 2F\n"), Form::kUtf8));
  expect_usable(spelled(replaced("0 XRECORD\n5 52\n", "0 XRECORD\n5 2F\n"), Form::kUtf8));
  expect_usable(spelled(replaced("0 LINE\n5 2F\n", "0 LINE\n"), Form::kUtf8));
  expect_usable(spelled(replaced("0 LINE\n5 2F\n", "0 LINE\n5 0\n"), Form::kUtf8));
  expect_usable(spelled(replaced("0 LINE\n5 2F\n", "0 LINE\n5 \n"), Form::kUtf8));
}

TEST_F(Damaged, OwnersThatLeadNowhereOrInACircleStay) {
  expect_usable(
      spelled(replaced("0 LINE\n5 2F\n330 18\n", "0 LINE\n5 2F\n330 FFFF\n"), Form::kUtf8));
  expect_usable(spelled(replaced("0 LINE\n5 2F\n330 18\n", "0 LINE\n5 2F\n330 2F\n"), Form::kUtf8));
  expect_usable(
      spelled(replaced("0 DICTIONARY\n5 C\n330 0\n", "0 DICTIONARY\n5 C\n330 50\n"), Form::kUtf8));
}

TEST_F(Damaged, GroupsOfTheFrameThatAreNotClosedStay) {
  expect_usable(spelled(replaced("0 LINE\n5 2F\n", "0 LINE\n5 2F\n102 {ACAD_REACTORS\n330 C\n"),
                        Form::kUtf8));
  expect_usable(spelled(replaced("0 LINE\n5 2F\n", "0 LINE\n5 2F\n102 }\n"), Form::kUtf8));
  expect_usable(
      spelled(replaced("0 LINE\n5 2F\n", "0 LINE\n5 2F\n102 {PRIVATE\n1 x\n102 }\n"), Form::kUtf8));
}

TEST_F(Damaged, UnknownRecordsAndSectionsStay) {
  expect_usable(
      spelled(replaced("0 LINE\n5 2F\n", "0 GX_PIPE\n5 A0\n330 18\n100 CGxPipe\n0 LINE\n5 2F\n"),
              Form::kUtf8));
  expect_usable(spelled(replaced("0 SECTION\n2 OBJECTS\n",
                                 "0 STRAY\n5 A1\n0 SECTION\n2 GX\n0 GXREC\n5 A2\n0 ENDSEC\n"
                                 "0 SECTION\n2 OBJECTS\n"),
                        Form::kUtf8));
}

TEST_F(Damaged, SectionsInAnotherOrderOrTwiceStay) {
  std::string note(plan_note());
  const std::size_t entities_at = note.find("0 SECTION\n2 ENTITIES");
  const std::size_t objects_at = note.find("0 SECTION\n2 OBJECTS");
  const std::size_t end = note.find("0 EOF");
  const std::string before = note.substr(0, entities_at);
  const std::string entity_section = note.substr(entities_at, objects_at - entities_at);
  const std::string object_section = note.substr(objects_at, end - objects_at);
  expect_usable(spelled(before + object_section + entity_section + "0 EOF\n", Form::kUtf8));
  expect_usable(spelled(note.substr(0, end) + "0 SECTION\n2 ENTITIES\n0 LINE\n5 A0\n8 0\n0 ENDSEC\n"
                                              "0 SECTION\n2 OBJECTS\n0 ENDSEC\n0 EOF\n",
                        Form::kUtf8));
}

TEST_F(Damaged, AnEmptyRecordStays) {
  expect_usable(spelled(replaced("0 LINE\n5 2F\n", "0 \n0 LINE\n5 2F\n"), Form::kUtf8));
}

TEST_F(Damaged, RandomChangesEitherFailOrAreUsable) {
  std::mt19937 random(20120607);
  for (const Form form : {Form::kUtf8, Form::kBinary, Form::kOldBinary}) {
    const std::string sound = spelled(plan_note(), form);
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
      std::string bytes = sound;
      for (int changes = 1 + static_cast<int>(random() % 3); changes > 0; --changes) {
        const std::size_t at = random() % bytes.size();
        if (random() % 2) {
          bytes[at] =
              form == Form::kUtf8 ? "0123459ABF{} \n"[random() % 14] : static_cast<char>(random());
        } else {
          bytes.erase(at, 1 + random() % 3);
        }
      }
      SCOPED_TRACE(std::string(form_name(form)) + " " + std::to_string(round));
      AcDbDatabase probe(false);
      if (!probe.read_bytes(bytes, "plan.dxf") || !probe.has_dictionaries()) continue;
      expect_usable(bytes, 0);  // even ENTITIES may have got another name
    }
  }
}

}  // namespace
