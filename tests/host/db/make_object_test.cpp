#include "host/db/make_object.h"

#include <gmock/gmock.h>

#include "host/db/layouts.h"
#include "host/db/record_groups.h"
#include "host/db/undo.h"
#include "tests/host/db/plan.h"

namespace {

using cad::GroupList;
using testing::HasSubstr;

class MakeObject : public DrawingTest {
 protected:
  /// Makes what must be made.
  AcDbObjectId made(const GroupList& groups, std::vector<GroupList> parts = {}) {
    const cad::Result<AcDbObjectId> id = cad::make_entity(database(), {}, groups, parts);
    if (id) return *id;
    ADD_FAILURE() << id.error().message();
    return {};
  }
  std::string refusal(const GroupList& groups) {
    const cad::Result<AcDbObjectId> id = cad::make_entity(database(), {}, groups);
    return id ? "" : id.error().message();
  }
  /// "0 LINE|8 0|10 1 2 3|": groups of an object, frame, space and markers left out.
  std::string shown_groups(AcDbObjectId object) {
    std::string out;
    cad::RecordGroups record;
    record.read(object);
    for (const cad::Group& group : record.groups()) {
      const bool frame = group.code == 5 || group.code == 330 || group.code == 100 ||
                         group.code == 67 || group.code == 410;
      if (frame) continue;
      out += std::to_string(group.code) + " ";
      using Type = cad::Group::Type;
      if (group.type == Type::kInteger) {
        out += std::to_string(group.integer);
      } else if (group.type == Type::kReal || group.type == Type::kPoint) {
        const int count = group.type == Type::kReal ? 1 : group.dimensions;
        for (int i = 0; i < count; ++i) {
          if (i > 0) out += " ";
          char number[32];
          std::snprintf(number, sizeof number, "%g", group.numbers[i]);
          out += number;
        }
      } else {
        out += cad::to_utf8(record.text(group));
      }
      out += "|";
    }
    return out;
  }
};

TEST_F(MakeObject, ALineNeedsItsEndsOnly) {
  given_plan();
  const AcDbObjectId line = made(GroupList(L"LINE").point(10, {1, 2, 3}).point(11, {4, 5, 6}));
  EXPECT_EQ(shown_groups(line), "0 LINE|8 0|10 1 2 3|11 4 5 6|");
  EXPECT_EQ(database().last_entity(), line);
  const std::uint64_t handle = line.handle();
  reopened();
  EXPECT_EQ(shown_groups(id(handle)), "0 LINE|8 0|10 1 2 3|11 4 5 6|");
}

TEST_F(MakeObject, InEveryFormOfDrawing) {
  for (const Form form :
       {Form::kUtf8, Form::kChinese, Form::kBinary, Form::kOldBinary, Form::kR12}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    const AcDbObjectId text = made(GroupList(L"TEXT")
                                       .text(8, L"新图层")
                                       .point(10, {1, 2, 0})
                                       .real(40, 2.5)
                                       .text(1, L"管径 ΔÄ")
                                       .real(50, 0.5)
                                       .integer(72, 1)
                                       .point(11, {3, 4, 0}));
    const std::string groups = shown_groups(text);
    const std::uint64_t handle = text.handle();
    reopened();
    EXPECT_EQ(shown_groups(id(handle)), groups);
    EXPECT_THAT(groups, HasSubstr("50 0.5|"));
    EXPECT_THAT(groups, HasSubstr("1 管径 ΔÄ|"));
    AcDbLayerTable* layers = opened<AcDbLayerTable>(database().layerTableId());
    EXPECT_TRUE(layers->has(L"新图层"));
    layers->close();
  }
}

TEST_F(MakeObject, ErrorsNameTheGroup) {
  given_plan();
  const std::string before = database().save_bytes();
  EXPECT_EQ(refusal(GroupList(L"LINE").point(10, {})), "LINE: group 11 is missing");
  EXPECT_EQ(refusal(GroupList(L"CIRCLE").point(10, {}).text(40, L"x")),
            "CIRCLE: group 40 wants a number");
  EXPECT_EQ(refusal(GroupList(L"CIRCLE").real(10, 1).real(40, NAN)),
            "CIRCLE: group 40 wants a finite number");
  EXPECT_EQ(refusal(GroupList(L"LINE").point(10, {}).point(11, {}).real(40, 1)),
            "LINE: group 40 does not belong to this kind of object");
  EXPECT_EQ(refusal(GroupList(L"LINE").point(10, {}).point(11, {}).integer(62, 99999)),
            "LINE: group 62 wants a number from -32768 to 32767");
  EXPECT_EQ(refusal(GroupList(L"INSERT").text(2, L"NONE").point(10, {})),
            "INSERT: the drawing has no block NONE (group 2)");
  EXPECT_EQ(refusal(GroupList(L"TEXT").point(10, {}).real(40, 1).text(1, L"x").text(7, L"NONE")),
            "TEXT: the drawing has no text style NONE (group 7)");
  EXPECT_EQ(refusal(GroupList(L"LINE").point(10, {}).point(11, {}).text(6, L"NONE")),
            "LINE: the drawing has no linetype NONE (group 6)");
  EXPECT_EQ(refusal(GroupList(L"LINE").point(10, {}).point(11, {}).text(1001, L"NONE")),
            "LINE: the application NONE is not registered");
  EXPECT_EQ(refusal(GroupList(L"LINE").point(10, {}).point(11, {}).text(8, L"a*b")),
            "LAYER: \"a*b\" cannot be the name of a layer");
  EXPECT_EQ(refusal(GroupList(L"NOTHING").point(10, {})),
            "NOTHING: is a kind the host does not know: its class markers (100) are missing");
  EXPECT_EQ(refusal(GroupList(L"VERTEX").point(10, {})), "VERTEX: is no entity of its own");
  EXPECT_EQ(refusal(GroupList(L"POLYLINE")),
            "POLYLINE: needs its parts: at least one VERTEX or ATTRIB");
  EXPECT_EQ(refusal(GroupList().point(10, {})), "group 0, the kind of object, is missing");
  EXPECT_EQ(database().save_bytes(), before);
}

TEST_F(MakeObject, R12HasNoLightweightPolylines) {
  given_plan(Form::kR12);
  EXPECT_EQ(refusal(GroupList(L"LWPOLYLINE").point2d(10, {0, 0})),
            "LWPOLYLINE: needs a drawing of release R14 or newer; this one is R12");
  EXPECT_EQ(refusal(GroupList(L"MTEXT").point(10, {}).text(1, L"x")),
            "MTEXT: needs a drawing of release R13 or newer; this one is R12");
}

TEST_F(MakeObject, VerticesOfALightweightPolylineAreCounted) {
  given_plan();
  const AcDbObjectId polyline = made(GroupList(L"LWPOLYLINE")
                                         .point2d(10, {0, 0})
                                         .real(42, 0.5)
                                         .point(10, {1, 2, 3})
                                         .integer(70, 1));
  EXPECT_EQ(shown_groups(polyline), "0 LWPOLYLINE|8 0|90 2|70 1|10 0 0|42 0.5|10 1 2|");
}

TEST_F(MakeObject, APolylineTakesItsVerticesAlong) {
  given_plan();
  const AcDbObjectId polyline =
      made(GroupList(L"POLYLINE").integer(70, 8).text(8, L"PIPES"),
           {GroupList(L"VERTEX").point(10, {1, 1, 1}), GroupList(L"VERTEX").point(10, {2, 2, 2})});
  EXPECT_EQ(database().last_entity(), polyline) << "vertices are no entities of their own";
  std::vector<std::string> parts;
  for (AcDbObjectId part = database().next_entity(polyline); !part.isNull();
       part = database().next_entity(part))
    parts.push_back(shown_groups(part));
  EXPECT_EQ(parts,
            (std::vector<std::string>{"0 VERTEX|8 PIPES|10 1 1 1|70 32|",
                                      "0 VERTEX|8 PIPES|10 2 2 2|70 32|", "0 SEQEND|8 PIPES|"}));
  const std::uint64_t handle = polyline.handle();
  reopened();
  erase(handle);
  EXPECT_TRUE(id(handle + 1).isErased()) << "the vertices go with it";
}

TEST_F(MakeObject, MarkersOfTheCallerMayStandAnywhere) {
  given_plan();
  const AcDbObjectId polyline = made(GroupList(L"LWPOLYLINE")
                                         .text(100, L"AcDbEntity")
                                         .text(100, L"AcDbPolyline")
                                         .text(8, L"0")
                                         .integer(90, 7)
                                         .point2d(10, {0, 0}));
  EXPECT_EQ(shown_groups(polyline), "0 LWPOLYLINE|8 0|90 1|70 0|10 0 0|");
}

TEST_F(MakeObject, UnknownKindsAreTakenWithTheirMarkers) {
  given_plan();
  const AcDbObjectId helix = made(GroupList(L"HELIX")
                                      .text(100, L"AcDbEntity")
                                      .text(8, L"0")
                                      .text(100, L"AcDbHelix")
                                      .integer(90, 29)
                                      .point(10, {1, 2, 3}));
  EXPECT_EQ(shown_groups(helix), "0 HELIX|8 0|90 29|10 1 2 3|");
}

TEST_F(MakeObject, WhatIsCurrentIsTaken) {
  given_plan();
  ASSERT_TRUE(database().set_header_variable("$CLAYER", L"frozen"));
  ASSERT_TRUE(database().set_header_variable("$CECOLOR", std::int64_t{3}));
  const AcDbObjectId point = made(GroupList(L"POINT").point(10, {}));
  EXPECT_EQ(shown_groups(point), "0 POINT|8 frozen|62 3|10 0 0 0|");
  EXPECT_EQ(shown_groups(made(GroupList(L"POINT").point(10, {}).integer(62, 256).text(8, L"0"))),
            "0 POINT|8 0|62 256|10 0 0 0|");
}

TEST_F(MakeObject, LongTextsOfSeveralLinesArePartedAt250) {
  given_plan();
  const std::wstring text(600, L'x');
  const AcDbObjectId mtext = made(GroupList(L"MTEXT").point(10, {}).text(1, text));
  AcDbMText* object = opened<AcDbMText>(mtext);
  wchar_t* contents = object->contents();
  EXPECT_EQ(contents, text);
  acutDelString(contents);
  object->close();
  EXPECT_THAT(shown_groups(mtext),
              HasSubstr("|3 " + std::string(250, 'x') + "|3 " + std::string(250, 'x') + "|1 " +
                        std::string(100, 'x')));
}

TEST_F(MakeObject, TheGroupsOfOneEntityMakeAnother) {
  given_plan();
  GroupList groups(L"CIRCLE");
  groups.text(102, L"{ACAD_REACTORS").object(330, id(0xC)).text(102, L"}").object(330, id(0x18));
  groups.text(5, L"3A").text(100, L"AcDbEntity").integer(67, 0).text(410, L"Model").text(8, L"0");
  groups.text(100, L"AcDbCircle").point(10, {1, 2, 3}).real(40, 4);
  const AcDbObjectId circle = made(groups);
  EXPECT_NE(circle.handle(), AcDbHandle(0x3A));
  EXPECT_EQ(shown_groups(circle), "0 CIRCLE|8 0|10 1 2 3|40 4|");
}

TEST_F(MakeObject, ALineBreakInAKindOrMarkerIsRefused) {
  given_plan();
  const std::string before = database().save_bytes();
  const auto message = [&](const wchar_t* kind, const wchar_t* marker) {
    const auto made = cad::make_entity(
        database(), {},
        GroupList(kind).text(100, L"AcDbEntity").text(8, L"0").text(100, marker).text(1, L"x"));
    return made ? std::string() : made.error().message();
  };
  EXPECT_EQ(message(L"FO\nO", L"AcDbFoo"), "group 0: holds a control character");
  EXPECT_EQ(message(L"FOO", L"Ac\nDbFoo"), "group 100: holds a control character");
  EXPECT_EQ(database().save_bytes(), before);
}

TEST_F(MakeObject, AJustifiedTextStartsWhereItsAlignmentPointTells) {
  given_plan();
  const AcDbObjectId id = made(GroupList(L"TEXT")
                                   .point(10, {})
                                   .real(40, 2.5)
                                   .text(1, L"DN300")
                                   .integer(72, 2)
                                   .point(11, {50, 7, 0}));
  AcDbText* text = opened<AcDbText>(id, AcDb::kForWrite);
  const AcGePoint3d start = text->position();
  EXPECT_EQ(start.y, 7.0);
  EXPECT_GT(start.x, 30.0);
  EXPECT_LT(start.x, 47.5);
  EXPECT_EQ(text->adjustAlignment(), Acad::eOk);
  EXPECT_EQ(text->position(), start);
  text->close();
}

TEST_F(MakeObject, ExtendedDataStandsLast) {
  given_plan();
  const AcDbObjectId point =
      made(GroupList(L"POINT").point(10, {}).text(1001, L"PN").text(1000, L"x").integer(1070, 7));
  AcDbEntity* entity = opened<AcDbEntity>(point);
  resbuf* data = entity->xData(L"PN");
  EXPECT_EQ(shown(data).size(), 3u);
  acutRelRb(data);
  entity->close();
}

TEST_F(MakeObject, RecordsGoIntoTheirTables) {
  for (const Form form : {Form::kUtf8, Form::kBinary, Form::kR12}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    const auto layer = cad::make_record(
        database(), GroupList(L"LAYER").text(2, L"PIPES").integer(62, 5).integer(70, 0));
    ASSERT_TRUE(layer) << layer.error().message();
    EXPECT_EQ(shown_groups(*layer), "0 LAYER|2 PIPES|70 0|62 5|6 Continuous|");
    const auto again = cad::make_record(database(), GroupList(L"LAYER").text(2, L"pipes"));
    ASSERT_FALSE(again);
    EXPECT_EQ(again.error().message(), "LAYER: the drawing has a record pipes already");
    const auto style = cad::make_record(database(), GroupList(L"STYLE").text(2, L"HZ"));
    ASSERT_TRUE(style) << style.error().message();
    EXPECT_EQ(shown_groups(*style), "0 STYLE|2 HZ|70 0|40 0|41 1|50 0|71 0|42 2.5|3 txt|4 |");
    reopened();
    AcDbTextStyleTable* styles = opened<AcDbTextStyleTable>(database().textStyleTableId());
    EXPECT_TRUE(styles->has(L"hz"));
    styles->close();
  }
}

TEST_F(MakeObject, BadNamesAreRefused) {
  given_plan();
  for (const wchar_t* name : {L"", L"a<b", L"a|b", L" a", L"a "}) {
    EXPECT_FALSE(cad::make_record(database(), GroupList(L"LAYER").text(2, name)));
  }
  EXPECT_TRUE(cad::is_symbol_name(L"管线 1"));
  EXPECT_FALSE(cad::is_symbol_name(L"a b", false));
  EXPECT_FALSE(cad::is_symbol_name(std::wstring(32, L'a'), false));
  EXPECT_FALSE(cad::is_symbol_name(std::wstring(256, L'a')));
}

TEST_F(MakeObject, ABlockHoldsItsEntities) {
  for (const Form form :
       {Form::kUtf8, Form::kChinese, Form::kBinary, Form::kOldBinary, Form::kR12}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    const GroupList entities[] = {
        GroupList(L"LINE").point(10, {}).point(11, {1, 0, 0}),
        GroupList(L"POLYLINE").integer(66, 1),
        GroupList(L"VERTEX").point(10, {1, 1, 0}),
        GroupList(L"VERTEX").point(10, {2, 2, 0}),
        GroupList(L"SEQEND"),
        GroupList(L"CIRCLE").point(10, {}).real(40, 1),
    };
    const auto block = cad::make_block(database(), L"VALVE", {1, 2, 3}, entities);
    ASSERT_TRUE(block) << block.error().message();
    made(GroupList(L"INSERT").text(2, L"valve").point(10, {}));
    // Entities that come later stand in front of the block's end too.
    ASSERT_TRUE(cad::make_entity(database(), *block, GroupList(L"POINT").point(10, {})));
    const std::uint64_t handle = block->handle();
    reopened();
    if (form == Form::kR12) continue;
    std::vector<std::string> kinds;
    for (const std::uint64_t entity : this->entities(handle))
      kinds.emplace_back(shown_groups(id(entity)).substr(0, 8));
    EXPECT_EQ(kinds, (std::vector<std::string>{"0 LINE|8", "0 POLYLI", "0 CIRCLE", "0 POINT|"}));
  }
}

TEST_F(MakeObject, ABlockThatIsThereGetsNewContents) {
  given_plan();
  const GroupList circle[] = {GroupList(L"CIRCLE").point(10, {}).real(40, 7)};
  const auto block = cad::make_block(database(), L"well", {9, 9, 9}, circle);
  ASSERT_TRUE(block);
  EXPECT_EQ(block->handle(), AcDbHandle(0x1A));
  EXPECT_EQ(entities(0x1A).size(), 1u);
  reopened();
  EXPECT_EQ(entities(0x1A).size(), 1u);
  EXPECT_THAT(shown_groups(id(0x1F)), HasSubstr("10 9 9 9|"));
}

TEST_F(MakeObject, AnonymousBlocksAreNumbered) {
  given_plan();
  const auto first = cad::make_block(database(), L"*U", {});
  const auto second = cad::make_block(database(), L"*U", {});
  ASSERT_TRUE(first && second);
  EXPECT_THAT(shown_groups(*first), HasSubstr("2 *U1|"));
  EXPECT_THAT(shown_groups(*second), HasSubstr("2 *U2|"));
}

TEST_F(MakeObject, ABadEntityLeavesNoBlock) {
  given_plan();
  const std::string before = database().save_bytes();
  const GroupList entities[] = {GroupList(L"LINE").point(10, {}).point(11, {}),
                                GroupList(L"LINE").point(10, {})};
  EXPECT_FALSE(cad::make_block(database(), L"VALVE", {}, entities));
  const GroupList itself[] = {GroupList(L"INSERT").text(2, L"WELL").point(10, {})};
  EXPECT_FALSE(cad::make_block(database(), L"well", {}, itself)) << "it would contain itself";
  EXPECT_FALSE(cad::make_block(database(), L"*Model_Space", {}));
  EXPECT_FALSE(cad::make_block(database(), L"a<b", {}));
  EXPECT_EQ(database().save_bytes(), before);
}

TEST_F(MakeObject, ObjectsForDictionariesHaveNoOwnerYet) {
  given_plan();
  const auto record = cad::make_object(
      database(), GroupList(L"XRECORD").text(100, L"AcDbXrecord").text(1, L"x").integer(90, 7));
  ASSERT_TRUE(record) << record.error().message();
  EXPECT_EQ(shown_groups(*record), "0 XRECORD|280 1|1 x|90 7|");
  AcDbDictionary* root =
      opened<AcDbDictionary>(database().namedObjectsDictionaryId(), AcDb::kForWrite);
  AcDbObject* object = opened(*record, AcDb::kForWrite);
  AcDbObjectId filed;
  EXPECT_EQ(root->setAt(L"MINE", object, filed), Acad::eOk);
  object->close();
  root->close();
  reopened();
  EXPECT_EQ(keys(database().namedObjectsDictionaryId()).size(), 3u);
}

}  // namespace
