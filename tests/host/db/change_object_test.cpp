#include <gmock/gmock.h>

#include <deque>

#include "host/db/make_object.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"
#include "host/db/undo.h"
#include "tests/host/db/plan.h"

namespace {

using cad::Group;
using cad::GroupList;
using cad::GroupView;
using testing::HasSubstr;

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line.substr(std::min(line.find_first_not_of(' '), line.size())));
    at = end + 1;
  }
  return lines;
}

/// What differs between two texts, line by line: "-old +new ".
std::string difference(const std::string& before, const std::string& after) {
  const std::vector<std::string> a = lines_of(before), b = lines_of(after);
  // common[i][j]: how many lines the texts have in common from lines i and j on.
  std::vector<std::vector<int>> common(a.size() + 1, std::vector<int>(b.size() + 1, 0));
  for (std::size_t i = a.size(); i-- > 0;)
    for (std::size_t j = b.size(); j-- > 0;)
      common[i][j] =
          a[i] == b[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
  std::string out;
  std::size_t i = 0, j = 0;
  while (i < a.size() || j < b.size()) {
    if (i < a.size() && j < b.size() && a[i] == b[j]) {
      ++i, ++j;
    } else if (i < a.size() && (j == b.size() || common[i + 1][j] >= common[i][j + 1])) {
      out += "-" + a[i++] + " ";
    } else {
      out += "+" + b[j++] + " ";
    }
  }
  return out;
}

class ChangeObject : public DrawingTest {
 protected:
  /// Changes what must change; what differs in the saved drawing.
  std::string changed(std::uint64_t handle, const GroupList& groups) {
    const std::string before = database().save_bytes();
    const cad::Status status = cad::change_object(id(handle), groups);
    if (!status) return status.error().message();
    return difference(before, database().save_bytes());
  }
  std::string refusal(std::uint64_t handle, const GroupList& groups) {
    const std::string before = database().save_bytes();
    const cad::Status status = cad::change_object(id(handle), groups);
    EXPECT_EQ(database().save_bytes(), before);
    return status ? "" : status.error().message();
  }
  AcDbObjectId made(const GroupList& groups) {
    const cad::Result<AcDbObjectId> made_id = cad::make_entity(database(), {}, groups);
    if (made_id) return *made_id;
    ADD_FAILURE() << made_id.error().message();
    return {};
  }
  std::string record(AcDbObjectId object) const {
    return std::string(cad::record_tags(object).bytes);
  }
  /// All groups of an object, as entget gives them, with the texts they show.
  struct Listed {
    std::deque<std::wstring> texts;
    std::vector<GroupView> groups;
  };
  Listed listed(AcDbObjectId object) {
    Listed list;
    cad::RecordGroups groups;
    groups.read(object);
    for (const auto& part : {groups.groups(), groups.extended_data()}) {
      for (const Group& group : part) {
        GroupView view;
        view.code = group.code;
        switch (group.type) {
          case Group::Type::kInteger:
            view.type = GroupView::Type::kInteger;
            view.integer = group.integer;
            break;
          case Group::Type::kReal:
          case Group::Type::kPoint:
            view.type =
                group.type == Group::Type::kReal ? GroupView::Type::kReal : GroupView::Type::kPoint;
            view.dimensions = group.dimensions;
            std::copy(group.numbers, group.numbers + 3, view.numbers);
            break;
          case Group::Type::kObject:
            view.type = GroupView::Type::kObject;
            view.object = group.object;
            break;
          default:
            view.text = list.texts.emplace_back(groups.text(group));
        }
        list.groups.push_back(view);
      }
    }
    return list;
  }
};

TEST_F(ChangeObject, OnlyTheGroupsNamedChange) {
  for (const Form form : {Form::kUtf8, Form::kChinese}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    EXPECT_EQ(changed(0x3C, GroupList().text(1, L"DN400")), "-A1 +DN400 ");
    EXPECT_EQ(changed(0x3C, GroupList().real(40, 3)), "-2.5 +3.0 ");
    EXPECT_EQ(changed(0x3C, GroupList().point(10, {10, 21, 0})), "-0.0 +10.0 -0.0 +21.0 ");
    EXPECT_EQ(changed(0x2F, GroupList().integer(62, 4)), "-3 +4 ");
    EXPECT_THAT(changed(0x30, GroupList().real(50, 0)), HasSubstr("-90.0 +0.0 "));
  }
}

TEST_F(ChangeObject, WhatHasTheValueAlreadyIsNoChange) {
  for (const Form form :
       {Form::kUtf8, Form::kChinese, Form::kBinary, Form::kOldBinary, Form::kR12}) {
    SCOPED_TRACE(form_name(form));
    const std::string bytes = spelled(plan_note(), form);
    given(bytes);
    database().for_each_object([&](AcDbObjectId object) {
      const std::string_view kind = cad::record_kind(object);
      const bool frame = kind == "TABLE" || kind == "BLOCK" || kind == "ENDBLK";
      if (frame || object == id(0x31)) return;
      const Listed groups = listed(object);
      const cad::Status status = cad::change_object(object, groups.groups);
      EXPECT_TRUE(status) << kind << ": " << status.error().message();
    });
    EXPECT_FALSE(database().is_modified());
    EXPECT_EQ(database().save_bytes(), bytes);
  }
}

TEST_F(ChangeObject, AListWithOneOtherValueChangesThatValue) {
  for (const Form form :
       {Form::kUtf8, Form::kChinese, Form::kBinary, Form::kOldBinary, Form::kR12}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    Listed groups = listed(id(0x30));
    for (GroupView& group : groups.groups) {
      if (group.code == 1) group.text = L"管径 ΔÄ";
      if (group.code == 11) group.numbers[1] = 0.1;
      if (group.code == 73) group.integer = 3;
    }
    ASSERT_TRUE(cad::change_object(id(0x30), groups.groups));
    reopened();
    const Listed after = listed(id(0x30));
    ASSERT_EQ(after.groups.size(), groups.groups.size());
    for (std::size_t i = 0; i < groups.groups.size(); ++i) {
      EXPECT_EQ(after.groups[i].code, groups.groups[i].code);
      if (groups.groups[i].code == 10) continue;  // follows from the others
      EXPECT_EQ(after.groups[i].text, groups.groups[i].text);
      EXPECT_EQ(after.groups[i].integer, groups.groups[i].integer);
      EXPECT_EQ(after.groups[i].numbers[0], groups.groups[i].numbers[0]);
      EXPECT_EQ(after.groups[i].numbers[1], groups.groups[i].numbers[1]);
    }
  }
}

TEST_F(ChangeObject, WhatIsNewGoesWhereItBelongs) {
  given_plan();
  EXPECT_EQ(changed(0x3D, GroupList().integer(62, 1)), "+62 +1 ");
  EXPECT_THAT(record(id(0x3D)), HasSubstr("  8\n0\n 62\n     1\n100\nAcDbLine"));
  EXPECT_EQ(changed(0x3D, GroupList().real(39, 2)), "+39 +2.0 ");
  EXPECT_THAT(record(id(0x3D)), HasSubstr("AcDbLine\n 39\n2.0\n 10\n"));
  EXPECT_EQ(changed(0x3D, GroupList().point(210, {0, 0, 1})), "+210 +0.0 +220 +0.0 +230 +1.0 ");
  EXPECT_EQ(changed(0x3C, GroupList().integer(73, 2)), "+73 +2 ");
  EXPECT_THAT(record(id(0x3C)), testing::EndsWith("100\nAcDbText\n 73\n     2\n"));
}

TEST_F(ChangeObject, InBinaryDrawingsToo) {
  given_plan(Form::kBinary);
  ASSERT_TRUE(
      cad::change_object(id(0x3D), GroupList().integer(62, 1).point(11, {7, 8, 9}).text(8, L"新")));
  reopened();
  Listed groups = listed(id(0x3D));
  std::wstring layer;
  for (const GroupView& group : groups.groups) {
    if (group.code == 8) layer = group.text;
    if (group.code == 62) {
      EXPECT_EQ(group.integer, 1);
    }
    if (group.code == 11) {
      EXPECT_EQ(group.numbers[2], 9);
    }
  }
  EXPECT_EQ(layer, L"新");
}

TEST_F(ChangeObject, ALayerThatIsNewIsMade) {
  given_plan();
  ASSERT_TRUE(cad::change_object(id(0x3D), GroupList().text(8, L"NEW")));
  AcDbLayerTable* layers = opened<AcDbLayerTable>(database().layerTableId());
  EXPECT_TRUE(layers->has(L"new"));
  layers->close();
}

TEST_F(ChangeObject, RefusalsChangeNothing) {
  given_plan();
  EXPECT_EQ(refusal(0x31, GroupList().integer(62, 1)), "LINE: is on a locked layer");
  EXPECT_EQ(refusal(0x3D, GroupList(L"CIRCLE")), "LINE: cannot become another kind (group 0)");
  EXPECT_EQ(refusal(0x3D, GroupList().text(5, L"99")), "LINE: keeps its handle (group 5)");
  EXPECT_EQ(refusal(0x3D, GroupList().text(62, L"red")), "LINE: group 62 wants a whole number");
  EXPECT_EQ(refusal(0x3D, GroupList().text(6, L"NONE")),
            "LINE: the drawing has no linetype NONE (group 6)");
  EXPECT_EQ(refusal(0x3D, GroupList().real(40, 1)),
            "LINE: group 40 does not belong to this kind of object");
  EXPECT_EQ(refusal(0x37, GroupList().text(2, L"NONE")),
            "INSERT: the drawing has no block NONE (group 2)");
  EXPECT_EQ(refusal(0x3D, GroupList().text(1001, L"NONE").text(1000, L"x")),
            "LINE: the application NONE is not registered");
  EXPECT_EQ(refusal(0x3D, GroupList().text(1001, L"PN").text(1002, L"{")),
            "LINE: group 1002: braces do not match");
  EXPECT_EQ(refusal(0x3D, GroupList().text(1001, L"PN").text(1000, std::wstring(86, L'管'))),
            "LINE: group 1000: holds at most 255 bytes");
  GroupList numbers;
  numbers.text(1001, L"PN");
  for (int i = 0; i < 5459; ++i) numbers.integer(1070, i);
  EXPECT_EQ(refusal(0x3D, numbers), "LINE: more than 16383 bytes of extended data");
  EXPECT_EQ(refusal(0x50, GroupList().text(3, L"x")),
            "DICTIONARY: entries are changed by dictadd and dictremove");
  EXPECT_EQ(cad::change_object({}, GroupList()).error().message(), "there is no object to change");
  erase(0x3D);
  EXPECT_EQ(refusal(0x3D, GroupList().integer(62, 1)), "LINE: is erased");
  AcDbText* text = opened<AcDbText>(0x30);
  EXPECT_EQ(refusal(0x30, GroupList().text(1, L"x")), "TEXT: is open");
  text->close();
}

TEST_F(ChangeObject, AJustifiedTextStartsWhereItsGroupsTell) {
  for (const Form form : {Form::kUtf8, Form::kBinary, Form::kR12}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    AcDbText* text = opened<AcDbText>(0x30, AcDb::kForWrite);
    EXPECT_EQ(text->setTextString(L"a longer text"), Acad::eOk);
    text->close();
    const std::string wanted(record(id(0x30)));
    given_plan(form);
    ASSERT_TRUE(cad::change_object(id(0x30), GroupList().text(1, L"a longer text")));
    EXPECT_EQ(record(id(0x30)), wanted);
    ASSERT_TRUE(cad::change_object(id(0x30), GroupList().point(10, {99, 99, 0})));
    EXPECT_EQ(record(id(0x30)), wanted) << "where it starts is no choice";
  }
}

TEST_F(ChangeObject, ATextBetweenTwoPointsOrWithoutTheSecondKeepsItsStart) {
  given_plan();
  const AcDbObjectId fitted = made(GroupList(L"TEXT")
                                       .point(10, {1, 2, 0})
                                       .real(40, 2.5)
                                       .text(1, L"A")
                                       .integer(72, 5)
                                       .point(11, {9, 2, 0}));
  ASSERT_TRUE(cad::change_object(fitted, GroupList().text(1, L"AB")));
  EXPECT_THAT(record(fitted), HasSubstr(" 10\n1.0\n 20\n2.0\n"));
  const AcDbObjectId lame =
      made(GroupList(L"TEXT").point(10, {1, 2, 0}).real(40, 2.5).text(1, L"A").integer(72, 1));
  ASSERT_TRUE(cad::change_object(lame, GroupList().text(1, L"AB")));
  EXPECT_THAT(record(lame), HasSubstr(" 10\n1.0\n 20\n2.0\n"));
}

TEST_F(ChangeObject, ExtendedDataIsReplacedPerApplication) {
  given_plan();
  const std::string bytes = database().save_bytes();
  EXPECT_EQ(changed(0x3A, GroupList().text(1001, L"ACAD").text(1000, L"new")), "-other +new ");
  EXPECT_EQ(changed(0x3A, GroupList().text(1001, L"acad")), "-ACAD -1000 -new -1001 ");
  EXPECT_EQ(changed(0x3A, GroupList().text(1001, L"ACAD").text(1000, L"end")),
            "+1001 +ACAD +1000 +end ");
  EXPECT_THAT(record(id(0x3A)), testing::EndsWith("1002\n}\n1001\nACAD\n1000\nend\n"));
  EXPECT_EQ(changed(0x3D, GroupList().integer(62, 2).text(1001, L"PN").point(1010, {1, 2, 3})),
            "+62 +2 +1001 +PN +1010 +1.0 +1020 +2.0 +1030 +3.0 ");
  EXPECT_EQ(database().save_bytes().find(bytes.substr(0, 200)), 0u);
}

TEST_F(ChangeObject, ExtendedDataOfAllApplicationsAreLimitedTogether) {
  given_plan();
  const auto texts = [](const wchar_t* application, int count) {
    GroupList groups;
    groups.text(1001, application);
    for (; count > 0; --count) groups.text(1000, std::wstring(250, L'x'));
    return groups;
  };
  ASSERT_TRUE(cad::change_object(id(0x3D), texts(L"ACAD", 60)));
  EXPECT_EQ(refusal(0x3D, texts(L"PN", 6)), "LINE: more than 16383 bytes of extended data");
  EXPECT_TRUE(cad::change_object(id(0x3D), texts(L"PN", 4)));
  EXPECT_TRUE(cad::change_object(id(0x3D), GroupList().integer(62, 2)));
}

TEST_F(ChangeObject, ExtendedDataAndGroupsAtOnce) {
  given_plan();
  ASSERT_TRUE(cad::change_object(
      id(0x3D), GroupList().integer(62, 2).text(1001, L"PN").point(1010, {1, 2, 3})));
  EXPECT_THAT(record(id(0x3D)), HasSubstr(" 62\n     2\n"));
  EXPECT_THAT(record(id(0x3D)),
              testing::EndsWith(" 31\n0.0\n1001\nPN\n1010\n1.0\n1020\n2.0\n1030\n3.0\n"));
}

TEST_F(ChangeObject, VerticesAreReplacedTogether) {
  given_plan();
  const AcDbObjectId polyline = made(GroupList(L"LWPOLYLINE")
                                         .point2d(10, {0, 0})
                                         .real(42, 0.5)
                                         .point2d(10, {1, 1})
                                         .point2d(10, {2, 2}));
  const std::uint64_t handle = polyline.handle();
  EXPECT_EQ(
      changed(handle, GroupList().point2d(10, {0, 0}).point2d(10, {1, 5}).point2d(10, {2, 2})),
      "-1.0 +5.0 ")
      << "as many as before: bulges stay";
  EXPECT_EQ(changed(handle, GroupList()
                                .point2d(10, {0, 0})
                                .real(42, 0.5)
                                .point2d(10, {1, 5})
                                .point2d(10, {2, 2})
                                .point2d(10, {3, 3})),
            "-3 +4 +10 +3.0 +20 +3.0 ");
  changed(handle, GroupList().point2d(10, {1, 5}).real(42, 1).point2d(10, {3, 3}));
  EXPECT_THAT(record(polyline), testing::EndsWith("AcDbPolyline\n 90\n        2\n 70\n     0\n"
                                                  " 10\n1.0\n 20\n5.0\n 42\n1.0\n"
                                                  " 10\n3.0\n 20\n3.0\n"))
      << "bulges and widths go with the vertices";
}

TEST_F(ChangeObject, ABulgeMovesToAnotherVertex) {
  given_plan();
  const AcDbObjectId polyline =
      made(GroupList(L"LWPOLYLINE").point2d(10, {0, 0}).real(42, 0.5).point2d(10, {1, 1}));
  EXPECT_EQ(
      changed(polyline.handle(), GroupList().point2d(10, {0, 0}).point2d(10, {1, 1}).real(42, 0.5)),
      "-42 -0.5 +42 +0.5 ");
}

TEST_F(ChangeObject, PiecesOfATextAreReplacedTogether) {
  given_plan();
  EXPECT_EQ(changed(0x32, GroupList().text(1, L"short")), "-L=36.5\\P{\\H2;m} +short ");
  changed(0x32, GroupList().text(1, std::wstring(260, L'x')));
  EXPECT_THAT(record(id(0x32)), HasSubstr("  3\n" + std::string(250, 'x') + "\n  1\nxxxxxxxxxx\n"));
  changed(0x32, GroupList().text(1, L"y"));
  EXPECT_THAT(record(id(0x32)), HasSubstr(" 71\n1\n  1\ny\n  7\nStandard\n"));
}

TEST_F(ChangeObject, DataOfAnXrecordIsReplacedAsAWhole) {
  given_plan();
  AcDbXrecord* object = opened<AcDbXrecord>(0x51, AcDb::kForWrite);
  resbuf* chain = acutBuildList(1, L"one", 70, 5, 1, L"two", 0);
  EXPECT_EQ(object->setFromRbChain(*chain), Acad::eOk);
  acutRelRb(chain);
  object->close();
  const GroupList same =
      GroupList().text(100, L"AcDbXrecord").text(1, L"one").integer(70, 5).text(1, L"two");
  EXPECT_EQ(changed(0x51, same), "");
  GroupList other = GroupList().text(100, L"AcDbXrecord").text(1, L"one").text(1, L"two");
  EXPECT_EQ(changed(0x51, other), "-70 -5 ");
  other.point(10, {1, 2, 3}).text(102, L"{data").object(330, id(0x2F)).text(102, L"}");
  EXPECT_EQ(changed(0x51, other), "+10 +1.0 +20 +2.0 +30 +3.0 +102 +{data +330 +2F +102 +} ");
}

TEST_F(ChangeObject, PartsOfEntitiesChange) {
  given_plan();
  EXPECT_EQ(changed(0x38, GroupList().text(1, L"W2")), "-W1 +W2 ");
  EXPECT_EQ(changed(0x35, GroupList().point(10, {9, 5, 0})), "-0.0 +5.0 ");
  EXPECT_EQ(changed(0x33, GroupList().integer(70, 1)), "+70 +1 ");
}

TEST_F(ChangeObject, RecordsOfTablesChange) {
  given_plan();
  EXPECT_EQ(changed(0x13, GroupList().integer(62, 5)), "--5 +5 ");
  EXPECT_EQ(changed(0x11, GroupList().integer(70, 0)), "-4 +0 ");
  EXPECT_EQ(changed(0x31, GroupList().integer(62, 1)), "+62 +1 ") << "no longer on a locked layer";
}

TEST_F(ChangeObject, ARenamedRecordIsFollowed) {
  for (const Form form : {Form::kUtf8, Form::kBinary, Form::kR12}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    const std::string bytes = database().save_bytes();
    ASSERT_TRUE(cad::change_object(id(0x12), GroupList().text(2, L"冷")));
    ASSERT_TRUE(cad::change_object(id(0x3D), GroupList().text(8, L"冷")));
    ASSERT_TRUE(database().set_header_variable("$CLAYER", L"冷"));
    ASSERT_TRUE(cad::change_object(id(0x12), GroupList().text(2, L"COLD")));
    EXPECT_EQ(database().header_value("$CLAYER"), L"COLD");
    AcDbEntity* entity = opened<AcDbEntity>(0x3D);
    EXPECT_EQ(entity->layerId(), id(0x12));
    entity->close();
    cad::undo_log(database()).undo(9);
    EXPECT_EQ(database().save_bytes(), bytes);
  }
}

TEST_F(ChangeObject, ARenamedBlockIsFollowedByItsReferences) {
  given_plan();
  ASSERT_TRUE(cad::change_object(id(0x1A), GroupList().text(2, L"PIT")));
  EXPECT_THAT(record(id(0x37)), HasSubstr("  2\nPIT\n"));
  EXPECT_THAT(record(id(0x1F)), HasSubstr("  2\nPIT\n"));
}

TEST_F(ChangeObject, SomeNamesStay) {
  given_plan();
  EXPECT_EQ(refusal(0x10, GroupList().text(2, L"ZERO")), "LAYER: 0 keeps its name");
  EXPECT_EQ(refusal(0x12, GroupList().text(2, L"off")),
            "LAYER: the drawing has a record off already");
  EXPECT_EQ(refusal(0x12, GroupList().text(2, L"a<b")),
            "LAYER: \"a<b\" cannot be a name (group 2)");
  EXPECT_EQ(refusal(0x18, GroupList().text(2, L"MODEL")),
            "BLOCK_RECORD: *Model_Space keeps its name");
}

TEST_F(ChangeObject, UnknownKindsChangeByTheirOwnTags) {
  given_plan();
  EXPECT_EQ(changed(0x3B, GroupList().integer(90, 499)), "-498 +499 ");
}

TEST_F(ChangeObject, AChangeIsTakenBackToTheByte) {
  const std::string bytes = spelled(plan_note(), Form::kChinese);
  given(bytes);
  ASSERT_TRUE(cad::change_object(id(0x30), GroupList().text(1, L"x")));
  cad::undo_log(database()).next_step();
  ASSERT_TRUE(cad::change_object(id(0x30), GroupList().text(1, L"y")));
  ASSERT_TRUE(cad::change_object(id(0x30), GroupList().text(1, L"z")));
  cad::undo_log(database()).undo(1);
  EXPECT_EQ(text_of(0x30), L"x");
  cad::undo_log(database()).undo(1);
  EXPECT_EQ(database().save_bytes(), bytes);
}

}  // namespace
