#include <gtest/gtest.h>

#include <algorithm>

#include "cli/commands.h"
#include "host/base/codepage.h"
#include "module/record/item_chain.h"
#include "tests/cli/records/saved_plan.h"

namespace {

class CheckCommand : public SavedPlan {
 protected:
  std::string check() {
    return output_of([&] { return cli::check_command({path, {}}); });
  }
  static Texts item(const wchar_t* name) { return {name, L"", L"", L"1", L"", L"", L"", L""}; }
  std::string at(const wchar_t* type) { return "2F " + cad::to_utf8(type) + " "; }
  std::string handle(AcDbObjectId id) { return cad::to_utf8(dim::handle_text(id)); }
};

TEST_F(CheckCommand, SoundRecordsAreCounted) {
  plan->store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"40"), item_of(L"b", L"1")});
  plan->store_items(L"30", L"bzjg", {});
  plan->store_items(L"2F", L"OtherApp", {});
  save();
  EXPECT_EQ(check(), "2 records are sound\n");
  EXPECT_EQ(status, 0);
}

TEST_F(CheckCommand, ADrawingWithoutRecordsIsSound) {
  save();
  EXPECT_EQ(check(), "0 records are sound\n");
  EXPECT_EQ(status, 0);
}

TEST_F(CheckCommand, ARecordThatEndsWithinAnItemIsTold) {
  Texts texts = item(L"a");
  texts.push_back(L"b");
  const std::string place =
      at(L"pcgb") + handle(plan->store_chain(L"2F", L"pcgb", text_chain(texts).get()));
  plan->store_items(L"30", L"pcgb", {});
  save();
  EXPECT_EQ(check(), place +
                         ": 9 values are no multiple of 8, the last 1 belong to no item\n"
                         "1 of 2 records is not sound\n");
  EXPECT_EQ(status, 1);
}

TEST_F(CheckCommand, ValuesThatAreNoTextsOfGroup1AreTold) {
  dim::ChainBuilder chain;
  chain.add(text_chain({L"a", L"", L"", L"1", L"", L""}).release());
  chain.add(acutNewRb(40));
  chain.add(dim::new_text_buffer(300, L"x"));
  const std::string place = at(L"pcgb") + handle(plan->store_chain(L"2F", L"pcgb", chain.head()));
  save();
  EXPECT_EQ(check(), place + ": the kind of item 1 has group 40, which holds no text\n" + place +
                         ": the extra text of item 1 has group 300 instead of 1\n"
                         "1 of 1 records is not sound\n");
}

TEST_F(CheckCommand, ValuesThatCadProgramsDoNotReadAreTold) {
  const std::string place =
      at(L"pcgb") + handle(plan->store_items(L"2F", L"pcgb",
                                             {item_of(L"a", std::wstring(2049, L'x')),
                                              item_of(L"b", std::wstring(2050, L'x'))}));
  save();
  EXPECT_EQ(check(), place +
                         ": the value of item 2 has 2050 bytes, CAD programs read 2049\n"
                         "1 of 1 records is not sound\n");
  EXPECT_EQ(status, 1);
}

TEST_F(CheckCommand, BeforeRelease2000LinesAreShorter) {
  const std::string place =
      at(L"pcgb") + handle(plan->store_items(L"2F", L"pcgb",
                                             {item_of(L"a", std::wstring(255, L'x')),
                                              item_of(L"b", std::wstring(256, L'x'))}));
  std::string bytes = plan->database().save_bytes();
  bytes.replace(bytes.find("AC10"), 6, "AC1014");
  write(replaced(bytes, "AcDbXrecord\n280\n     1\n", "AcDbXrecord\n"));
  EXPECT_EQ(check(), place +
                         ": the value of item 2 has 256 bytes, CAD programs read 255\n"
                         "1 of 1 records is not sound\n");
}

TEST_F(CheckCommand, NamesThatStandTwiceAreToldOnce) {
  const std::string place =
      at(L"pcgb") + handle(plan->store_items(L"2F", L"pcgb",
                                             {item_of(L"a", L"1"), item_of(L"A", L"1"),
                                              item_of(L"b", L"1"), item_of(L"a", L"1")}));
  save();
  EXPECT_EQ(check(), place + ": more than one item is named \"A\"\n1 of 1 records is not sound\n");
}

TEST_F(CheckCommand, HandlesOfNoEntityAreTold) {
  StuDim information = item_of(L"c", L"1", L"FFF");
  information.recordKind = dim::kNoEntityKind;
  const std::string place =
      at(L"pcgb") +
      handle(plan->store_items(L"2F", L"pcgb",
                               {item_of(L"a", L"1", L"FFF"), item_of(L"b", L"1", L"C"), information,
                                item_of(L"d", L"1", L"4B")}));
  save();
  EXPECT_EQ(check(), place + ": item \"a\": no entity has the handle \"FFF\"\n" + place +
                         ": item \"b\": no entity has the handle \"C\"\n"
                         "1 of 1 records is not sound\n");
}

TEST_F(CheckCommand, ATypeInOtherLetterCaseIsTold) {
  const std::string place = at(L"PcGb") + handle(plan->store_items(L"2F", L"PcGb", {}));
  save();
  EXPECT_EQ(check(), place +
                         ": the type is spelled \"pcgb\", letter case counts\n"
                         "1 of 1 records is not sound\n");
}

TEST_F(CheckCommand, WhatLooksLikeARecordOfAnUnknownTypeIsTold) {
  const std::string place =
      at(L"Unknown") + handle(plan->store_items(L"2F", L"Unknown", {item_of(L"a", L"1", L"40")}));
  plan->store_items(L"2F", L"Empty", {});
  plan->store_items(L"2F", L"Nameless", {item_of(L"", L"1")});
  plan->store_items(L"2F", L"NoHandle", {item_of(L"a", L"1", L"xyz")});
  plan->store_chain(L"2F", L"Short", text_chain({L"a"}).get());
  save();
  EXPECT_EQ(check(), place +
                         ": looks like a record, but its type is not registered\n"
                         "1 of 1 records is not sound\n");
}

TEST_F(CheckCommand, AnEntryThatIsNoXrecordIsTold) {
  const std::string place = at(L"pcgb") + handle(plan->store_items(L"2F", L"pcgb", {}));
  write(replaced(plan->database().save_bytes(), "\nXRECORD\n", "\nSUN\n"));
  EXPECT_EQ(check(), place + ": filed as a record, but is a SUN\n1 of 1 records is not sound\n");
}

TEST_F(CheckCommand, EntriesOfOtherApplicationsAreLeftAlone) {
  plan->store_items(L"2F", L"OtherApp", {});
  write(replaced(plan->database().save_bytes(), "\nXRECORD\n", "\nSUN\n"));
  EXPECT_EQ(check(), "0 records are sound\n");
}

TEST_F(CheckCommand, ADrawingThatCannotBeReadIsOneLine) {
  path = testing::TempDir() + "absent.dxf";
  EXPECT_EQ(check(), "");
  EXPECT_EQ(status, 3);
  EXPECT_EQ(std::count(complaint.begin(), complaint.end(), '\n'), 1);
}

/// Drawings somebody bent by hand: both commands must come to an end.
class HostileDrawing : public CheckCommand {
 protected:
  void SetUp() override { plan->store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"40")}); }
  void given_bent(const std::string& from, const std::string& to) {
    write(replaced(plan->database().save_bytes(), from, to));
  }
  std::string dictionary() { return handle(plan->extension_dictionary(L"2F")); }
  std::string record() { return handle(plan->entry(L"2F", L"pcgb")); }
  void both_commands_end() {
    check();
    EXPECT_TRUE(status == 0 || status == 1 || status == 3) << status;
    cli::RecordsOptions options;
    options.drawing = path;
    output_of([&] { return cli::records_command(options); });
    EXPECT_TRUE(status == 0 || status == 3) << status;
  }
};

TEST_F(HostileDrawing, ADictionaryThatHoldsItself) {
  const std::string own = dictionary();
  given_bent("\n360\n" + record() + "\n", "\n360\n" + own + "\n");
  both_commands_end();
}

TEST_F(HostileDrawing, ADictionaryWhoseEntryIsItsOwner) {
  given_bent("\n360\n" + record() + "\n", "\n360\n2F\n");
  both_commands_end();
}

TEST_F(HostileDrawing, ADictionaryEntryThatLeadsNowhere) {
  given_bent("\n360\n" + record() + "\n", "\n360\nFFFFFF\n");
  both_commands_end();
}

TEST_F(HostileDrawing, AnExtensionDictionaryThatIsTheEntityItself) {
  given_bent("\n360\n" + dictionary() + "\n", "\n360\n2F\n");
  both_commands_end();
}

TEST_F(HostileDrawing, AnExtensionDictionaryThatLeadsNowhere) {
  given_bent("\n360\n" + dictionary() + "\n", "\n360\nFFFFFF\n");
  both_commands_end();
}

TEST_F(HostileDrawing, AnExtensionDictionaryThatIsTheRootDictionary) {
  given_bent("\n360\n" + dictionary() + "\n", "\n360\nC\n");
  both_commands_end();
}

TEST_F(HostileDrawing, AnItemAnnotatedByItsOwnOwner) {
  plan->store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"2F")});
  save();
  EXPECT_EQ(check(), "1 record is sound\n");
  both_commands_end();
}

}  // namespace
