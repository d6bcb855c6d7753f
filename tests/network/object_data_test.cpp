#include "network/object_data.h"

#include <gmock/gmock.h>

#include "host/db/entity.h"
#include "host/db/open.h"
#include "tests/network/network_drawing.h"

namespace {

using namespace network_drawing;
using network::DataFault;
using network::Key;
using network::Kind;
using network::ObjectData;
using testing::ElementsAre;
using testing::IsEmpty;
using What = DataFault::What;

class PipeData : public WithNetwork {
 protected:
  /// What is read from a line with that data.
  ObjectData read(const std::string& pairs) {
    given_network(line("A1", 0, 0, 10, 0, pairs));
    const std::optional<ObjectData> data = ObjectData::read(id(0xA1));
    EXPECT_TRUE(data) << "no data";
    return data.value_or(ObjectData());
  }
  static std::vector<std::string> messages(const ObjectData& data) {
    std::vector<std::string> messages;
    for (const DataFault& fault : data.faults()) messages.push_back(fault.message());
    return messages;
  }
};

TEST_F(PipeData, EveryKeyHasItsGroup) {
  const ObjectData data =
      read(kind("water-pipe") + node("start_node", "1F") + node("end_node", "20") +
           real("diameter", "300.0") + whole("material", "     2") + real("width", "2000.0") +
           real("height", "1500.0") + real("ratio", "0.75") + whole("parallel", "2") +
           text("code", "W1") + real("length", "35.25") + real("flow", "12.5") +
           real("speed", "1.1") + real("head_loss", "0.3") + real("start_invert", "3.5") +
           real("end_invert", "3.4") + whole("head_case", "6") + real("start_head_1", "30.0") +
           real("start_head_6", "36.0") + real("end_head_1", "29.0") + real("end_head_6", "35.0"));
  EXPECT_THAT(messages(data), IsEmpty());
  EXPECT_EQ(data.kind(), Kind::kWaterPipe);
  EXPECT_EQ(data.handle(Key::kStartNode), 0x1Fu);
  EXPECT_EQ(data.handle(Key::kEndNode), 0x20u);
  EXPECT_EQ(data.real(Key::kDiameter), 300.0);
  EXPECT_EQ(data.integer(Key::kMaterial), 2);
  EXPECT_EQ(data.real(Key::kWidth), 2000.0);
  EXPECT_EQ(data.real(Key::kHeight), 1500.0);
  EXPECT_EQ(data.real(Key::kRatio), 0.75);
  EXPECT_EQ(data.integer(Key::kParallel), 2);
  EXPECT_EQ(data.text(Key::kCode), L"W1");
  EXPECT_EQ(data.real(Key::kLength), 35.25);
  EXPECT_EQ(data.real(Key::kFlow), 12.5);
  EXPECT_EQ(data.real(Key::kSpeed), 1.1);
  EXPECT_EQ(data.real(Key::kHeadLoss), 0.3);
  EXPECT_EQ(data.real(Key::kStartInvert), 3.5);
  EXPECT_EQ(data.real(Key::kEndInvert), 3.4);
  EXPECT_EQ(data.integer(Key::kHeadCase), 6);
  EXPECT_EQ(data.real(network::start_head(1)), 30.0);
  EXPECT_EQ(data.real(network::start_head(6)), 36.0);
  EXPECT_EQ(data.real(network::end_head(1)), 29.0);
  EXPECT_EQ(data.real(network::end_head(6)), 35.0);
  EXPECT_FALSE(data.has(network::start_head(2)));
}

TEST_F(PipeData, NodesHaveNumbersAndElevations) {
  const ObjectData data = read(kind("storm-well") + text("number", "12") + text("prefix", "Y") +
                               real("ground", "5.2") + real("natural", "5.0") +
                               real("bottom", "2.1") + real("flow", "1.5") + real("head", "24.0"));
  EXPECT_THAT(messages(data), IsEmpty());
  EXPECT_EQ(data.kind(), Kind::kStormWell);
  EXPECT_EQ(data.text(Key::kNumber), L"12");
  EXPECT_EQ(data.text(Key::kPrefix), L"Y");
  EXPECT_EQ(data.real(Key::kGround), 5.2);
  EXPECT_EQ(data.real(Key::kNatural), 5.0);
  EXPECT_EQ(data.real(Key::kBottom), 2.1);
  EXPECT_EQ(data.real(Key::kFlow), 1.5);
  EXPECT_EQ(data.real(Key::kHead), 24.0);
}

TEST_F(PipeData, EveryNameOfAKeyLeadsToItsRow) {
  for (int i = 0; i < network::kKeyCount; ++i) {
    const network::KeyRow& row = network::row_of(static_cast<Key>(i));
    EXPECT_EQ(network::find_key(row.name), &row);
  }
  EXPECT_EQ(network::row_of(network::start_head(3)).name, "start_head_3");
  EXPECT_EQ(network::row_of(network::end_head(6)).name, "end_head_6");
  EXPECT_EQ(network::row_of(Key::kNumber).name, "number");
  EXPECT_EQ(network::row_of(Key::kHead).name, "head");
}

TEST_F(PipeData, KindsAreWords) {
  for (const Kind kind : {Kind::kWaterPipe, Kind::kDrainagePipe, Kind::kStormPipe, Kind::kWaterNode,
                          Kind::kHydrant, Kind::kDrainageWell, Kind::kStormWell}) {
    const std::string_view name = network::kind_name(kind);
    EXPECT_EQ(network::kind_named(std::wstring(name.begin(), name.end())), kind);
    EXPECT_NE(network::is_pipe(kind), network::is_node(kind)) << name;
  }
  EXPECT_EQ(network::kind_named(L"gas-pipe"), Kind::kNone);
  EXPECT_EQ(network::kind_named(L"Water-pipe"), Kind::kNone) << "letter case counts";
  EXPECT_EQ(network::kind_named(L""), Kind::kNone);
}

TEST_F(PipeData, AKindSpelledWithEscapesIsThatKind) {
  EXPECT_EQ(read(kind("storm\\U+002Dpipe")).kind(), Kind::kStormPipe);
  EXPECT_EQ(network::kind_of(id(0xA1)), Kind::kStormPipe);
}

TEST_F(PipeData, TheKindFollowsItsText) {
  ObjectData data = read(kind("storm-pipe"));
  EXPECT_EQ(data.text(Key::kKind), L"storm-pipe");
  data.put_text(Key::kKind, L"tunnel");
  EXPECT_EQ(data.kind(), Kind::kNone);
  EXPECT_EQ(data.text(Key::kKind), L"tunnel");
  data.put_text(Key::kKind, L"hydrant");
  EXPECT_EQ(data.kind(), Kind::kHydrant);
  EXPECT_EQ(data.text(Key::kKind), L"hydrant");
  data.remove(Key::kKind);
  EXPECT_EQ(data.kind(), Kind::kNone);
  EXPECT_EQ(data.text(Key::kKind), L"");
}

TEST_F(PipeData, StandInAnyOrder) {
  const ObjectData data = read(real("diameter", "300.0") + kind("water-pipe"));
  EXPECT_EQ(data.kind(), Kind::kWaterPipe);
  EXPECT_EQ(data.real(Key::kDiameter), 300.0);
}

TEST_F(PipeData, AnEntityWithoutDataOfTheApplicationHasNone) {
  given_network(line("A1", 0, 0, 10, 0, "") + "1001 OTHER\n1000 kind\n1000 water-pipe\n");
  EXPECT_FALSE(ObjectData::read(id(0xA1)));
  EXPECT_FALSE(ObjectData::read(AcDbObjectId()));
}

TEST_F(PipeData, TheApplicationsNameHasAnyLetterCase) {
  given_network(line("A1", 0, 0, 10, 0, "") + "1001 PipeNote\n" + kind("water-pipe"));
  EXPECT_EQ(ObjectData::read(id(0xA1))->kind(), Kind::kWaterPipe);
}

TEST_F(PipeData, DataOfOtherApplicationsAreNotRead) {
  const ObjectData data = read(kind("water-pipe") + "1001 OTHER\n" + real("diameter", "100.0"));
  EXPECT_EQ(data.kind(), Kind::kWaterPipe);
  EXPECT_FALSE(data.has(Key::kDiameter));
  EXPECT_THAT(messages(data), IsEmpty());
}

TEST_F(PipeData, AValueOfTheWrongGroupCountsAsAbsent) {
  const ObjectData data =
      read(whole("diameter", "300") + real("material", "2.0") + "1000 start_node\n1000 1F\n" +
           "1000 code\n1040 1.0\n" + real("length", "12.0"));
  EXPECT_FALSE(data.has(Key::kDiameter));
  EXPECT_FALSE(data.has(Key::kMaterial));
  EXPECT_FALSE(data.has(Key::kStartNode));
  EXPECT_FALSE(data.has(Key::kCode));
  EXPECT_EQ(data.real(Key::kLength), 12.0) << "the pairs behind it are read";
  EXPECT_THAT(messages(data), ElementsAre("diameter has a value of group 1070 instead of 1040",
                                          "material has a value of group 1040 instead of 1070",
                                          "start_node has a value of group 1000 instead of 1005",
                                          "code has a value of group 1040 instead of 1000"));
}

TEST_F(PipeData, AValueThatIsNoNumberCountsAsAbsent) {
  const ObjectData data = read(real("diameter", "wide") + whole("material", "2.5") +
                               node("start_node", "XYZ") + whole("parallel", "99999999999"));
  for (const Key key : {Key::kDiameter, Key::kMaterial, Key::kStartNode, Key::kParallel})
    EXPECT_FALSE(data.has(key));
  EXPECT_THAT(
      messages(data),
      ElementsAre("diameter is no number: \"wide\"", "material is no number: \"2.5\"",
                  "start_node is no handle: \"XYZ\"", "parallel is no number: \"99999999999\""));
}

TEST_F(PipeData, AValueIsOfItsOwnTypeOnly) {
  const ObjectData data = read(kind("water-pipe") + node("start_node", "1F") +
                               real("diameter", "300.0") + whole("material", "2"));
  EXPECT_EQ(data.handle(Key::kKind), 0u);
  EXPECT_EQ(data.real(Key::kKind), std::nullopt);
  EXPECT_EQ(data.real(Key::kMaterial), std::nullopt);
  EXPECT_EQ(data.integer(Key::kDiameter), std::nullopt);
  EXPECT_EQ(data.text(Key::kStartNode), L"");
}

TEST_F(PipeData, TheNullHandleIsNoReference) {
  const ObjectData data = read(kind("water-pipe") + node("start_node", "0"));
  EXPECT_FALSE(data.has(Key::kStartNode));
  EXPECT_THAT(messages(data), IsEmpty());
}

TEST_F(PipeData, OfAKeyThatIsThereTwiceTheFirstCounts) {
  const ObjectData data = read(real("diameter", "300.0") + real("diameter", "400.0"));
  EXPECT_EQ(data.real(Key::kDiameter), 300.0);
  EXPECT_THAT(messages(data), ElementsAre("diameter is there more than once, the first counts"));
}

TEST_F(PipeData, TheFirstCountsEvenWhenItIsWrong) {
  const ObjectData data = read(whole("diameter", "300") + real("diameter", "400.0"));
  EXPECT_FALSE(data.has(Key::kDiameter));
  EXPECT_EQ(data.faults().size(), 2u);
}

TEST_F(PipeData, AKeyAtTheEndHasNoValue) {
  const ObjectData data = read(kind("water-pipe") + "1000 diameter\n");
  EXPECT_EQ(data.kind(), Kind::kWaterPipe);
  EXPECT_FALSE(data.has(Key::kDiameter));
  EXPECT_THAT(messages(data), ElementsAre("diameter has no value"));
}

TEST_F(PipeData, AMissingNumberDoesNotTakeTheNextKeyWithIt) {
  const ObjectData data = read("1000 diameter\n" + whole("material", "2") + kind("water-pipe"));
  EXPECT_FALSE(data.has(Key::kDiameter));
  EXPECT_EQ(data.integer(Key::kMaterial), 2);
  EXPECT_EQ(data.kind(), Kind::kWaterPipe);
  EXPECT_THAT(messages(data), ElementsAre("diameter has no value"));
}

TEST_F(PipeData, AGroupThatIsNoKeyIsLeftOut) {
  const ObjectData data =
      read("1040 1.5\n" + kind("water-pipe") + "1070 3\n" + real("diameter", "300.0"));
  EXPECT_EQ(data.kind(), Kind::kWaterPipe);
  EXPECT_EQ(data.real(Key::kDiameter), 300.0);
  EXPECT_THAT(messages(data), ElementsAre("group 1040 (1.5) stands where a key is wanted",
                                          "group 1070 (3) stands where a key is wanted"));
}

TEST_F(PipeData, UnknownKeysAreNoFault) {
  const ObjectData data =
      read(kind("water-pipe") + text("colour", "diameter") +
           "1000 place\n1010 1.0\n1020 2.0\n1030 3.0\n" + real("diameter", "300.0"));
  EXPECT_EQ(data.real(Key::kDiameter), 300.0);
  EXPECT_THAT(messages(data), IsEmpty());
}

TEST_F(PipeData, AKeyInOtherLettersIsToldApart) {
  const ObjectData data = read(kind("water-pipe") + real("Diameter", "300.0"));
  EXPECT_FALSE(data.has(Key::kDiameter));
  EXPECT_THAT(messages(data),
              ElementsAre("key \"Diameter\" is unknown, \"diameter\" is not: letter case counts"));
}

TEST_F(PipeData, PairsMayStandInBraces) {
  const ObjectData data =
      read("1002 {\n" + kind("water-pipe") + "1002 {\n" + real("diameter", "300.0") +
           "1002 }\n1002 }\n" + real("length", "12.0"));
  EXPECT_EQ(data.kind(), Kind::kWaterPipe);
  EXPECT_EQ(data.real(Key::kDiameter), 300.0);
  EXPECT_EQ(data.real(Key::kLength), 12.0);
  EXPECT_THAT(messages(data), IsEmpty());
}

TEST_F(PipeData, AListInBracesIsOneValue) {
  const ObjectData data = read("1000 history\n1002 {\n" + real("diameter", "100.0") +
                               "1002 {\n1002 }\n1002 }\n" + real("diameter", "300.0"));
  EXPECT_EQ(data.real(Key::kDiameter), 300.0);
  EXPECT_THAT(messages(data), IsEmpty());
}

TEST_F(PipeData, BracesThatDoNotMatchAreTold) {
  EXPECT_THAT(messages(read("1002 {\n" + kind("water-pipe"))),
              ElementsAre("braces (group 1002) do not match"));
  EXPECT_THAT(messages(read(kind("water-pipe") + "1002 }\n")),
              ElementsAre("braces (group 1002) do not match"));
  EXPECT_THAT(messages(read("1000 history\n1002 {\n" + real("diameter", "100.0"))),
              ElementsAre("braces (group 1002) do not match"));
}

TEST_F(PipeData, AClosingBraceIsNoValue) {
  const ObjectData data = read("1002 {\n1000 diameter\n1002 }\n" + real("length", "12.0"));
  EXPECT_THAT(messages(data), ElementsAre("diameter has no value"));
  EXPECT_EQ(data.real(Key::kLength), 12.0);
}

TEST_F(PipeData, TheKindIsKnownWithoutTheRest) {
  given_network(line("A1", 0, 0, 1, 0, real("diameter", "1.0") + kind("storm-pipe") + kind("x")) +
                line("A2", 0, 0, 1, 0, real("diameter", "1.0")) + line("A3", 0, 0, 1, 0, "") +
                line("A4", 0, 0, 1, 0, "1000 kind\n1040 1.0\n" + kind("storm-pipe")));
  EXPECT_EQ(network::kind_of(id(0xA1)), Kind::kStormPipe);
  EXPECT_EQ(network::kind_of(id(0xA2)), Kind::kNone);
  EXPECT_EQ(network::kind_of(id(0xA3)), std::nullopt);
  EXPECT_EQ(network::kind_of(id(0xA4)), Kind::kNone) << "the first counts";
  EXPECT_EQ(network::kind_of(AcDbObjectId()), std::nullopt);
}

TEST_F(PipeData, WritingAValuePatchesItsPairOnly) {
  const std::string before = "1000 remark\n1000 as built\n" + kind("water-pipe") +
                             "1000 diameter\n1040 3e2\n" + real("length", "12.50") +
                             "1001 OTHER\n1040 1.50\n";
  given_network(line("A1", 0, 0, 10, 0, before));
  const std::string file = database->save_bytes();
  ASSERT_EQ(network::write_real(id(0xA1), Key::kDiameter, 400.0), Acad::eOk);
  std::string wanted = file;
  wanted.replace(wanted.find("3e2"), 3, "400.0");
  EXPECT_EQ(database->save_bytes(), wanted);
  EXPECT_EQ(ObjectData::read(id(0xA1))->real(Key::kDiameter), 400.0);
}

TEST_F(PipeData, ANewValueGoesBehindTheRest) {
  given_network(line("A1", 0, 0, 10, 0, kind("water-pipe") + "1001 OTHER\n1040 1.50\n"));
  const std::string file = database->save_bytes();
  ASSERT_EQ(network::write_integer(id(0xA1), Key::kMaterial, 2), Acad::eOk);
  std::string wanted = file;
  wanted.insert(wanted.find("1001\nOTHER"), "1000\nmaterial\n1070\n     2\n");
  EXPECT_EQ(database->save_bytes(), wanted);
}

TEST_F(PipeData, ANewValueIsNotTakenForAnothersValue) {
  for (const std::string& odd :
       {std::string("1000 code\n"), std::string("1000 remark\n"),
        std::string("1000 history\n1002 {\n1000 entry\n"), std::string("1002 {\n")}) {
    for (const std::string& before : {std::string(), kind("storm-pipe")}) {
      given_network(line("A1", 0, 0, 10, 0, before + odd));
      ASSERT_EQ(network::write_real(id(0xA1), Key::kDiameter, 300.0), Acad::eOk);
      const std::optional<ObjectData> data = ObjectData::read(id(0xA1));
      EXPECT_EQ(data->real(Key::kDiameter), 300.0) << before << odd;
      EXPECT_EQ(data->text(Key::kCode), L"");
      EXPECT_EQ(data->kind(), before.empty() ? Kind::kNone : Kind::kStormPipe);
    }
  }
}

TEST_F(PipeData, DataThatAreEmptyAreFilled) {
  given_network(line("A1", 0, 0, 10, 0, "") + "1001 PIPENOTE\n1001 OTHER\n1040 1.0\n");
  ASSERT_EQ(network::write_text(id(0xA1), Key::kKind, L"storm-pipe"), Acad::eOk);
  EXPECT_EQ(network::kind_of(id(0xA1)), Kind::kStormPipe);
}

TEST_F(PipeData, AValueOfTheWrongGroupIsReplaced) {
  given_network(line("A1", 0, 0, 10, 0, whole("diameter", "300") + kind("water-pipe")));
  ASSERT_EQ(network::write_real(id(0xA1), Key::kDiameter, 300.0), Acad::eOk);
  const std::optional<ObjectData> data = ObjectData::read(id(0xA1));
  EXPECT_EQ(data->real(Key::kDiameter), 300.0);
  EXPECT_EQ(data->kind(), Kind::kWaterPipe);
  EXPECT_THAT(messages(*data), IsEmpty());
}

TEST_F(PipeData, AMissingValueIsFilledIn) {
  given_network(line("A1", 0, 0, 10, 0, "1000 diameter\n" + whole("material", "2")));
  ASSERT_EQ(network::write_real(id(0xA1), Key::kDiameter, 300.0), Acad::eOk);
  const std::optional<ObjectData> data = ObjectData::read(id(0xA1));
  EXPECT_EQ(data->real(Key::kDiameter), 300.0);
  EXPECT_EQ(data->integer(Key::kMaterial), 2);
  EXPECT_THAT(messages(*data), IsEmpty());
}

TEST_F(PipeData, AListInTheValuesPlaceIsReplacedAsAWhole) {
  given_network(
      line("A1", 0, 0, 10, 0, "1000 diameter\n1002 {\n1040 1.0\n1002 }\n" + kind("storm-pipe")));
  ASSERT_EQ(network::write_real(id(0xA1), Key::kDiameter, 300.0), Acad::eOk);
  const std::optional<ObjectData> data = ObjectData::read(id(0xA1));
  EXPECT_EQ(data->real(Key::kDiameter), 300.0);
  EXPECT_EQ(data->kind(), Kind::kStormPipe);
  EXPECT_THAT(messages(*data), IsEmpty());
}

TEST_F(PipeData, TextsAndReferencesAreWrittenToo) {
  given_network(line("A1", 0, 0, 10, 0, kind("storm-pipe")));
  ASSERT_EQ(network::write_text(id(0xA1), Key::kCode, L"雨1"), Acad::eOk);
  ASSERT_EQ(network::write_handle(id(0xA1), Key::kEndNode, 0x2AF), Acad::eOk);
  const std::optional<ObjectData> data = ObjectData::read(id(0xA1));
  EXPECT_EQ(data->text(Key::kCode), L"雨1");
  EXPECT_EQ(data->handle(Key::kEndNode), 0x2AFu);
}

TEST_F(PipeData, RemovingTakesEveryPairOfTheKey) {
  given_network(line("A1", 0, 0, 10, 0,
                     real("diameter", "1.0") + kind("storm-pipe") + real("diameter", "2.0")));
  ASSERT_EQ(network::remove_value(id(0xA1), Key::kDiameter), Acad::eOk);
  const std::optional<ObjectData> data = ObjectData::read(id(0xA1));
  EXPECT_FALSE(data->has(Key::kDiameter));
  EXPECT_EQ(data->kind(), Kind::kStormPipe);
  EXPECT_EQ(network::remove_value(id(0xA1), Key::kDiameter), Acad::eOk) << "there is none";
}

TEST_F(PipeData, WhatCannotBeWrittenChangesNothing) {
  given_network(line("A1", 0, 0, 10, 0, kind("storm-pipe")) + line("A2", 0, 0, 10, 0, ""));
  const std::string file = database->save_bytes();
  EXPECT_EQ(network::write_real(id(0xA1), Key::kDiameter, NAN), Acad::eInvalidInput);
  EXPECT_EQ(network::write_real(id(0xA1), Key::kMaterial, 1.0), Acad::eInvalidInput);
  EXPECT_EQ(network::write_integer(id(0xA1), Key::kMaterial, 40000), Acad::eInvalidInput);
  EXPECT_EQ(network::write_text(id(0xA1), Key::kCode, std::wstring(256, L'x')),
            Acad::eStringTooLong);
  EXPECT_EQ(network::write_text(id(0xA1), Key::kCode, std::wstring(86, L'管')),
            Acad::eStringTooLong)
      << "bytes count";
  EXPECT_EQ(network::write_real(id(0xA2), Key::kDiameter, 1.0), Acad::eKeyNotFound);
  EXPECT_EQ(network::write_real(AcDbObjectId(), Key::kDiameter, 1.0), Acad::eNullObjectId);
  EXPECT_EQ(database->save_bytes(), file);
}

TEST_F(PipeData, AnEntityOpenElsewhereIsReadButNotWritten) {
  given_network(line("A1", 0, 0, 10, 0, kind("storm-pipe")));
  AcDbEntity* held = nullptr;
  ASSERT_EQ(acdbOpenAcDbEntity(held, id(0xA1), AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(ObjectData::read(id(0xA1))->kind(), Kind::kStormPipe);
  EXPECT_EQ(network::write_real(id(0xA1), Key::kDiameter, 1.0), Acad::eWasOpenForRead);
  held->close();
}

}  // namespace
