#include <gtest/gtest.h>

#include <algorithm>

#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "tests/cli/records/saved_plan.h"

namespace {

class RecordsCommand : public SavedPlan {
 protected:
  void given_records() {
    plan->store_items(L"30", L"pcgb", {item_of(L"a", L"1", L"40")});
    plan->store_items(L"2F", L"pcgb",
                      {{L"pipe_len", L"41", L"36.5", L"长=", L"m", L"/", L"", L"x"},
                       item_of(L"gone", L"1", L"FFF"),
                       item_of(L"4A", L"", L"4A")});
    StuDim information = item_of(L"zh_mc", L"K1");
    information.recordKind = dim::kNoEntityKind;
    plan->store_items(L"2F", L"bzjg", {information});
    plan->store_items(L"2F", L"OtherApp", {item_of(L"hidden", L"1")});
    save();
  }
  std::string list(cli::RecordsOptions options = {}) {
    options.drawing = path;
    return output_of([&] { return cli::records_command(options); });
  }
  nlohmann::json list_json(cli::RecordsOptions options = {}) {
    options.json = true;
    return nlohmann::json::parse(list(options));
  }
};

TEST_F(RecordsCommand, ListsEntityTypeItemsAndWhetherTheyAreThere) {
  given_records();
  EXPECT_EQ(list(),
            "2F LINE\n"
            "  bzjg\n"
            "    \"zh_mc\" = \"K1\", no entity\n"
            "  pcgb\n"
            "    \"pipe_len\" = \"长=36.5m\" in 41, present\n"
            "    \"gone\" = \"1\" in FFF, missing\n"
            "    \"4A\" in 4A, present\n"
            "30 LINE\n"
            "  pcgb\n"
            "    \"a\" = \"1\" in 40, present\n");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(complaint, "");
}

TEST_F(RecordsCommand, JsonHoldsEveryField) {
  given_records();
  const nlohmann::json all = list_json();
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[1], nlohmann::json::parse(R"({
    "owner": "2F", "ownerKind": "LINE", "type": "pcgb", "items": [
      {"name": "pipe_len", "handle": "41", "value": "36.5", "prefix": "长=", "suffix": "m",
       "separator": "/", "recordKind": "", "extra": "x", "state": "present"},
      {"name": "gone", "handle": "FFF", "value": "1", "prefix": "", "suffix": "",
       "separator": "", "recordKind": "", "extra": "", "state": "missing"},
      {"name": "4A", "handle": "4A", "value": "", "prefix": "", "suffix": "",
       "separator": "", "recordKind": "", "extra": "", "state": "present"}]})"));
  EXPECT_EQ(all[0]["items"][0]["recordKind"], "非实体性记录信息!");
  EXPECT_EQ(all[0]["items"][0]["state"], "none");
}

TEST_F(RecordsCommand, OneOwnerOrTypeCanBeAskedFor) {
  given_records();
  cli::RecordsOptions owner, type, both;
  owner.owner = both.owner = "2f";
  type.type = both.type = "pcgb";
  EXPECT_EQ(list_json(owner).size(), 2u);
  EXPECT_EQ(list_json(type).size(), 2u);
  EXPECT_EQ(list_json(both).size(), 1u);
  owner.owner = "31";
  EXPECT_EQ(list_json(owner), nlohmann::json::array());
  EXPECT_EQ(status, 0);
}

TEST_F(RecordsCommand, WrongOwnersAndTypesAreTold) {
  given_records();
  cli::RecordsOptions options;
  options.owner = "no handle";
  EXPECT_EQ(list(options), "");
  EXPECT_EQ(status, 2);
  EXPECT_EQ(complaint, "pipenote: \"no handle\" is no handle\n");
  for (const char* handle : {"FFF", "C", "0"}) {
    options.owner = handle;
    EXPECT_EQ(list(options), "");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(complaint, std::string("pipenote: no entity has the handle ") + handle + "\n");
  }
  options = {};
  options.type = "PCGB";
  EXPECT_EQ(list(options), "");
  EXPECT_EQ(status, 2);
  EXPECT_EQ(complaint, "pipenote: \"PCGB\" is no annotation type\n");
}

TEST_F(RecordsCommand, ADrawingWithoutRecordsListsNothing) {
  save();
  EXPECT_EQ(list(), "");
  EXPECT_EQ(list_json(), nlohmann::json::array());
  EXPECT_EQ(status, 0);
}

TEST_F(RecordsCommand, ADrawingThatCannotBeReadIsOneLine) {
  path = testing::TempDir() + "absent.dxf";
  EXPECT_EQ(list(), "");
  EXPECT_EQ(status, 3);
  EXPECT_EQ(std::count(complaint.begin(), complaint.end(), '\n'), 1);
}

TEST_F(RecordsCommand, APartOfAnItemIsMentioned) {
  plan->store_chain(L"2F", L"pcgb",
                    text_chain({L"a", L"40", L"", L"1", L"", L"", L"", L"", L"b"}).get());
  save();
  EXPECT_EQ(list(),
            "2F LINE\n  pcgb\n    \"a\" = \"1\" in 40, present\n"
            "    and a part of an item: see pipenote check\n");
  EXPECT_EQ(list_json()[0]["items"].size(), 1u);
}

TEST_F(RecordsCommand, WhatIsNoRecordIsToldAndLeftOut) {
  plan->store_items(L"2F", L"pcgb", {});
  plan->store_items(L"2F", L"bzjg", {item_of(L"a", L"1")});
  write(replaced(plan->database().save_bytes(), "\nXRECORD\n", "\nSUN\n"));
  EXPECT_NE(list_json(), nlohmann::json());
  EXPECT_EQ(status, 0);
  EXPECT_NE(complaint.find("is no record: see pipenote check"), std::string::npos);
}

TEST_F(RecordsCommand, ListingChangesNothing) {
  given_records();
  std::ifstream before_file(path, std::ios::binary);
  const std::string before((std::istreambuf_iterator<char>(before_file)), {});
  list();
  std::ifstream after_file(path, std::ios::binary);
  const std::string after((std::istreambuf_iterator<char>(after_file)), {});
  EXPECT_EQ(before, after);
}

}  // namespace
