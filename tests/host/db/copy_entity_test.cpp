#include "host/db/copy_entity.h"

#include <gmock/gmock.h>

#include "host/base/numbers.h"
#include "host/db/record.h"
#include "host/db/stub.h"
#include "host/db/undo.h"
#include "tests/host/db/plan.h"
#include "tests/host/db/shapes.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class CopyEntity : public DrawingTest {
 protected:
  std::string bytes_of(AcDbObjectId object) { return std::string(cad::record_tags(object).bytes); }
  AcDbObjectId copied(std::uint64_t handle, AcDbObjectId block = {}) {
    const auto made = cad::copy_entity(id(handle), block);
    EXPECT_TRUE(made) << made.error().message();
    return made ? *made : AcDbObjectId();
  }
  std::string error_of(AcDbObjectId source) {
    const auto made = cad::copy_entity(source);
    return made ? "" : made.error().message();
  }
};

/// A LINE with extended data, a reactor that is not copied, and an extension dictionary whose
/// xrecord names the line, another entity and, as text, its own label.
constexpr std::string_view kRecorded = R"(0 LINE
5 100
102 {ACAD_XDICTIONARY
360 200
102 }
102 {ACAD_REACTORS
330 C
102 }
330 1F
100 AcDbEntity
8 PIPES
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 1.0
21 0.0
31 0.0
1001 PN
1000 DN300
1005 100
0 CIRCLE
5 101
330 1F
100 AcDbEntity
8 0
100 AcDbCircle
10 0.0
20 0.0
30 0.0
40 1.0
)";

std::string recorded() {
  std::string bytes = drawing_of(kRecorded);
  const std::string objects = written::ascii(R"(0 DICTIONARY
5 200
330 100
100 AcDbDictionary
280 1
281 1
3 pcgb
360 201
0 XRECORD
5 201
102 {ACAD_REACTORS
330 200
102 }
330 200
100 AcDbXrecord
280 1
1 101
320 100
330 100
340 101
360 202
0 XRECORD
5 202
330 201
100 AcDbXrecord
280 1
1 deep
)");
  bytes.insert(bytes.rfind("  0\nENDSEC"), objects);
  return bytes;
}

TEST_F(CopyEntity, ACopyHasItsOwnHandleAndTheSameTags) {
  given(drawing_of(kRecorded));
  const AcDbObjectId copy = copied(0x101);
  EXPECT_EQ(copy.handle(), 0x1000u);
  std::string wanted = bytes_of(id(0x101));
  wanted.replace(wanted.find("101"), 3, "1000");
  EXPECT_EQ(bytes_of(copy), wanted);
  EXPECT_EQ(database().last_entity(), copy);
  reopened();
  EXPECT_EQ(bytes_of(id(0x1000)), wanted);
}

TEST_F(CopyEntity, WhatAnEntityOwnsIsCopiedWithIt) {
  given(recorded());
  const AcDbObjectId copy = copied(0x100);
  EXPECT_EQ(copy.handle(), 0x1000u);
  const std::string line = bytes_of(copy);
  EXPECT_THAT(line, HasSubstr("102\n{ACAD_XDICTIONARY\n360\n1001\n102\n}\n330\n1F\n"));
  EXPECT_THAT(line, Not(HasSubstr("REACTORS")));
  EXPECT_THAT(line, HasSubstr("1001\nPN\n1000\nDN300\n1005\n1000\n"));
  reopened();
  EXPECT_THAT(
      bytes_of(id(0x1001)),
      HasSubstr(
          "  5\n1001\n330\n1000\n100\nAcDbDictionary\n280\n1\n281\n1\n  3\npcgb\n360\n1002\n"));
  // References to what was copied follow it; others, texts and group 320 stay.
  EXPECT_EQ(bytes_of(id(0x1002)),
            "  0\nXRECORD\n  "
            "5\n1002\n102\n{ACAD_REACTORS\n330\n1001\n102\n}\n330\n1001\n100\nAcDbXrecord\n280\n1\n"
            "  1\n101\n320\n100\n330\n1000\n340\n101\n360\n1003\n");
  EXPECT_THAT(bytes_of(id(0x1003)), HasSubstr("330\n1002\n100\nAcDbXrecord\n280\n1\n  1\ndeep\n"));
  EXPECT_EQ(bytes_of(id(0x201)).find("1002"), std::string::npos);
}

TEST_F(CopyEntity, ReferencesAmongCopiesAreKept) {
  given(recorded());
  const auto copies = cad::copy_entities({id(0x100), id(0x101)});
  ASSERT_TRUE(copies);
  ASSERT_EQ(copies->size(), 2u);
  const std::string circle = cad::to_utf8(cad::handle_text((*copies)[1].handle()));
  reopened();
  EXPECT_THAT(bytes_of(id(0x1003)), HasSubstr("340\n" + circle + "\n"));
}

TEST_F(CopyEntity, PartsComeAlong) {
  given_plan();
  const AcDbObjectId insert = copied(0x37);
  const AcDbObjectId attribute = database().next_entity(insert);
  EXPECT_EQ(cad::record_kind(attribute), "ATTRIB");
  EXPECT_EQ(attribute.stub()->owner, insert.handle());
  const AcDbObjectId end = database().next_entity(attribute);
  EXPECT_EQ(cad::record_kind(end), "SEQEND");
  const AcDbObjectId polyline = copied(0x33);
  EXPECT_EQ(cad::record_kind(database().next_entity(polyline)), "VERTEX");
  const auto handle = insert.handle();
  reopened();
  EXPECT_EQ(cad::record_kind(database().next_entity(id(handle))), "ATTRIB");
}

TEST_F(CopyEntity, CopiesIntoBlocksAndPaperSpace) {
  given(drawing_of(kRecorded));
  const AcDbObjectId in_block = copied(0x101, id(0x1A));
  EXPECT_EQ(entities(0x1A), (std::vector<std::uint64_t>{0x25, 0x26, 0x27, in_block.handle()}));
  const AcDbObjectId on_paper = copied(0x101, id(0x1B));
  EXPECT_THAT(bytes_of(on_paper), HasSubstr("330\n1B\n100\nAcDbEntity\n 67\n     1\n  8\n0\n"));
  const AcDbObjectId back = copied(on_paper.handle(), id(0x1F));
  EXPECT_THAT(bytes_of(back), Not(HasSubstr(" 67\n")));
  const auto in_block_handle = in_block.handle();
  reopened();
  EXPECT_EQ(entities(0x1A), (std::vector<std::uint64_t>{0x25, 0x26, 0x27, in_block_handle}));
}

TEST_F(CopyEntity, TakingBackLeavesTheFileAsItWas) {
  const std::string bytes = recorded();
  given(bytes);
  copied(0x100);
  EXPECT_TRUE(database().is_modified());
  EXPECT_EQ(cad::undo_log(database()).undo(1), 1u);
  EXPECT_EQ(database().save_bytes(), bytes);
}

TEST_F(CopyEntity, WorksInEveryFormOfFile) {
  for (const Form form : {Form::kBinary, Form::kOldBinary, Form::kR12, Form::kChinese}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    const AcDbObjectId copy = copied(0x2F);
    const auto handle = copy.handle();
    reopened();
    auto* line = opened<AcDbLine>(handle);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->startPoint(), AcGePoint3d(1, 2, 0));
    line->close();
  }
}

TEST_F(CopyEntity, WhatCannotBeCopiedIsNamed) {
  given_plan();
  EXPECT_EQ(error_of({}), "there is no entity to copy");
  EXPECT_EQ(error_of(id(0xC)), "DICTIONARY C: is not an entity");
  EXPECT_EQ(error_of(id(0x38)), "ATTRIB 38: is a part of another entity: copy that one");
  erase(0x2F);
  EXPECT_EQ(error_of(id(0x2F)), "LINE 2F: is erased");
}

}  // namespace
