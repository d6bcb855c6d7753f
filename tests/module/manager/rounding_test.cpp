// Updating rounds by the settings of the installation, and families follow.

#include <algorithm>

#include "module/manager/dim_manager.h"
#include "network/gx_data.h"
#include "tests/module/handlers.h"
#include "tests/module/plan.h"
#include "tests/network/settings_folder.h"

namespace {

/// A plan and an installation whose settings round lengths to 2 decimals, slopes to 1, elevations
/// to 3, and set nothing for the calculation.
class Rounding : public WithSettingsFolders {
 protected:
  Rounding() {
    given_lengths("\"L=\" m 2 m 0");
    given_file("install/User/zdm_bzsz.dat", "标高 ((小数位 3))\n");
    given_calculation("-1 -1 -1 -1 -1 -1 -1 -1 -1 -1");
  }
  ~Rounding() override { CGxData::Instance()->Update(); }

  void given_lengths(const std::string& line) {
    given_file("install/Is/gdcdpdbz.dat", line + "\n\"i=\" \"\" 1 小数 0\n");
    CGxData::Instance()->Update();
  }
  void given_calculation(const std::string& line) {
    given_file("install/Is/pcbzsz.dat", line + "\n");
    CGxData::Instance()->Update();
  }
  void take_away(const char* file) {
    std::filesystem::remove(folder / "install" / file);
    CGxData::Instance()->Update();
  }

  CDimManager pipe() { return CDimManager(plan.id(L"2F")); }
  /// A record of items of these names, each the text of a TEXT of its own from 40 on.
  void given_items(const Names& names, const wchar_t* type = L"pcgb") {
    Items items;
    wchar_t handle[] = L"40";
    for (const std::wstring& name : names) {
      items.push_back(item_of(name, L"old", handle));
      ++handle[1];
    }
    plan.store_items(L"2F", type, items);
  }
  Texts values(const wchar_t* type = L"pcgb") {
    Texts found;
    for (const StuDim& item : plan.items(plan.entry(L"2F", type))) found.push_back(item.value);
    return found;
  }

  Plan plan;
  Printed printed;
};

TEST_F(Rounding, AValueIsStoredAndDrawnRounded) {
  given_items({L"pipe_bgnd"});
  EXPECT_EQ(pipe().updateDim(L"pipe_bgnd", L"4.56789"), Acad::eOk);
  EXPECT_EQ(values(), Texts{L"4.568"});
  EXPECT_EQ(plan.text(L"40"), L"4.568");
}

TEST_F(Rounding, ALengthTakesItsFamilyAlong) {
  given_items({L"pipe_len", L"pipe_len_mm", L"pipe_len_pc"});
  EXPECT_EQ(pipe().updateDim(L"pipe_len", L"12.3456"), Acad::eOk);
  EXPECT_EQ(values(), (Texts{L"12.35", L"12345.60", L"12.35"}));
  EXPECT_EQ(plan.text(L"41"), L"12345.60");
}

TEST_F(Rounding, AFamilyDropsZerosWhenTheSwitchIsOn) {
  given_lengths("\"L=\" m 2 m 1");
  given_calculation("4");
  given_items({L"pipe_len", L"pipe_len_mm", L"pipe_len_pc"});
  EXPECT_EQ(pipe().updateDim(L"pipe_len", L"12.3456"), Acad::eOk);
  EXPECT_EQ(values(), (Texts{L"12.35", L"12345.6", L"12.3456"}));
}

TEST_F(Rounding, ALengthOfZeroChangesNothing) {
  given_items({L"pipe_len", L"pipe_len_mm", L"pipe_len_pc"});
  const TraceLines trace;
  for (const wchar_t* zero : {L"0", L"0.000", L"-0", L"not a number", L""}) {
    EXPECT_EQ(pipe().updateDim(L"pipe_len", zero), 1);
  }
  EXPECT_EQ(values(), (Texts{L"old", L"old", L"old"}));
  EXPECT_EQ(plan.text(L"40"), L"label 40");
  EXPECT_EQ(trace.lines().back(), L"更新标注家族失败!");
  EXPECT_EQ(pipe().updatePipeLenFamily(0.0), 1);
}

TEST_F(Rounding, ASlopeTakesItsFamilyAlong) {
  given_items({L"pipe_i", L"pipe_ii", L"pipe_iii"});
  EXPECT_EQ(pipe().updateDim(L"pipe_i", L"0.003"), Acad::eOk);
  EXPECT_EQ(values(), (Texts{L"0.0", L"0.3", L"3.0"}));
}

TEST_F(Rounding, ASlopeOrElevationOfZeroIsASlopeOrElevation) {
  given_items({L"pipe_i", L"pipe_ii", L"well_bgdm", L"well_bgdm_pc"});
  EXPECT_EQ(pipe().updateDim(L"pipe_i", L"0"), Acad::eOk);
  EXPECT_EQ(pipe().updateDim(L"well_bgdm", L"0"), Acad::eOk);
  EXPECT_EQ(values(), (Texts{L"0.0", L"0.0", L"0.000", L"0.000"}));
}

TEST_F(Rounding, AFamilyKeepsItsPrefixesAndSuffixes) {
  plan.store_items(L"2F", L"pcgb", {{L"pipe_ii", L"40", L"old", L"i=", L"%", L"/", L"", L""}});
  EXPECT_EQ(pipe().updateDim(L"pipe_i", L"0.003"), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"i=0.3%");
}

TEST_F(Rounding, AGroundElevationTakesItsFamilyAlong) {
  given_items({L"well_bgdm", L"well_bgdm_pc"});
  EXPECT_EQ(pipe().updateDim(L"well_bgdm", L"4.5"), Acad::eOk);
  EXPECT_EQ(values(), (Texts{L"4.500", L"4.500"}));
}

TEST_F(Rounding, FamiliesAreUpdatedOnTheirOwnToo) {
  given_items(
      {L"pipe_len", L"pipe_len_mm", L"pipe_len_pc", L"pipe_ii", L"pipe_iii", L"well_bgdm_pc"});
  EXPECT_EQ(pipe().updatePipeLenFamily(1.5), Acad::eOk);
  EXPECT_EQ(pipe().updateGradientFamily(0.01), Acad::eOk);
  EXPECT_EQ(pipe().updateDmBgFamily(2.0), Acad::eOk);
  EXPECT_EQ(values(), (Texts{L"old", L"1500.00", L"1.50", L"1.0", L"10.0", L"2.000"}));
}

TEST_F(Rounding, AMemberThatFailsStopsItsFamilyAndTheItemIsNotTouched) {
  given_items({L"pipe_len", L"pipe_len_pc"});
  Texts texts = {L"pipe_len_mm", L"49", L"", L"1", L"", L"", L"", L"", L"cut short"};
  plan.store_chain(L"2F", L"xzgj", text_chain(texts).get());
  const TraceLines trace;
  EXPECT_EQ(pipe().updateDim(L"pipe_len", L"12.3456"), 1);
  EXPECT_EQ(values(), (Texts{L"old", L"old"}));
  const Texts& lines = trace.lines();
  EXPECT_NE(std::find(lines.begin(), lines.end(), L"更新标注家族的时候发生错误!"), lines.end());
  EXPECT_EQ(lines.back(), L"更新标注家族失败!");
}

TEST_F(Rounding, TheFamilyIsUpdatedThoughTheItemItselfIsNowhere) {
  given_items({L"pipe_len_mm"});
  EXPECT_EQ(pipe().updateDim(L"pipe_len", L"2"), Acad::eOk);
  EXPECT_EQ(values(), Texts{L"2000.00"});
}

TEST_F(Rounding, EveryMemberHasTheTypesRedrawnAgain) {
  Handlers handlers;
  handlers.regist(L"xzgj");
  handlers.regist(L"bjbh");
  given_items({L"pipe_len"}, L"xzgj");
  given_items({L"pipe_len"}, L"bjbh");
  EXPECT_EQ(pipe().updateDim(L"pipe_len", L"2"), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), (Names{L"xzgj", L"xzgj", L"xzgj"}));
  EXPECT_EQ(pipe().updateDim(L"pipe_i", L"2"), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), (Names{L"xzgj", L"xzgj", L"xzgj"}));
  EXPECT_EQ(pipe().updateDim(L"pipe_dia", L"2"), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), Names{L"xzgj"});
  EXPECT_EQ(pipe().updateDim(L"well_bgdm", L"2"), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), (Names{L"bjbh", L"bjbh"}));
  EXPECT_EQ(pipe().updateDim(L"well_bh", L"2"), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), Names{L"bjbh"});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), Acad::eOk);
  EXPECT_EQ(pipe().updateDim(L"北@pipe_len", L"2"), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), Names{});
}

TEST_F(Rounding, TypesAreRedrawnBeforeTheItemIsStored) {
  Handlers handlers;
  handlers.regist(L"xzgj");
  given_items({L"pipe_dia"}, L"xzgj");
  Texts seen;
  handlers.when_called([&](DimUpdateRequest&) { seen = values(L"xzgj"); });
  EXPECT_EQ(pipe().updateDim(L"pipe_dia", L"300"), Acad::eOk);
  EXPECT_EQ(seen, Texts{L"old"});
  EXPECT_EQ(values(L"xzgj"), Texts{L"300"});
}

TEST_F(Rounding, TheRoundedValueGoesOnToTheNextRecord) {
  given_items({L"pipe_bgnd"}, L"bzjg");
  given_items({L"pipe_bgnd"}, L"pcgb");
  EXPECT_EQ(pipe().updateDim(L"pipe_bgnd", L"1.2345"), Acad::eOk);
  EXPECT_EQ(values(L"bzjg"), Texts{L"1.234"});
  EXPECT_EQ(values(L"pcgb"), Texts{L"1.234"});
}

TEST_F(Rounding, InformationIsNotRoundedUnlessARecordBeforeItRoundedTheValue) {
  StuDim information = item_of(L"pipe_bgnd", L"old");
  information.recordKind = dim::kNoEntityKind;
  plan.store_items(L"2F", L"bzjg", {information});
  given_items({L"pipe_bgnd"}, L"pcgb");
  plan.store_items(L"2F", L"xzgj", {information});
  EXPECT_EQ(pipe().updateDim(L"pipe_bgnd", L"1.23456"), Acad::eOk);
  EXPECT_EQ(values(L"bzjg"), Texts{L"1.23456"});
  EXPECT_EQ(values(L"pcgb"), Texts{L"1.235"});
  EXPECT_EQ(values(L"xzgj"), Texts{L"1.235"});
}

TEST_F(Rounding, WithoutASettingsFileAWarningIsPrintedAndTheValueStaysAsItCame) {
  const std::pair<const char*, const char*> files[] = {
      {"Is/pcbzsz.dat", "\n警告:无法获取给水管线平差标注设置!"},
      {"User/zdm_bzsz.dat", "\n警告:无法获取管道标高标注设置!"},
      {"Is/gdcdpdbz.dat", "\n警告:无法获取管道管长标注设置!"},
  };
  given_items({L"pipe_bgnd"});
  for (const auto& [file, warning] : files) {
    take_away(file);
    EXPECT_EQ(pipe().updateDim(L"pipe_bgnd", L"1.23456"), Acad::eOk);
    EXPECT_EQ(printed.take(), warning);
    EXPECT_EQ(values(), Texts{L"1.23456"});
    EXPECT_EQ(plan.text(L"40"), L"1.23456");
  }
}

TEST_F(Rounding, WithoutSettingsAWarningIsPrintedForEveryItemWritten) {
  take_away("Is/gdcdpdbz.dat");
  given_items({L"pipe_len", L"pipe_len_mm", L"pipe_len_pc"});
  EXPECT_EQ(pipe().updateDim(L"pipe_len", L"12.3456"), Acad::eOk);
  EXPECT_EQ(values(), (Texts{L"12.3456", L"12345.600000", L"12.345600"}));
  const std::string warning = "\n警告:无法获取管道管长标注设置!";
  EXPECT_EQ(printed.take(), warning + warning + warning);
}

TEST_F(Rounding, NothingIsPrintedWhenNothingIsWritten) {
  take_away("Is/gdcdpdbz.dat");
  EXPECT_EQ(pipe().updateDim(L"pipe_len", L"12.3456"), Acad::eOk);
  EXPECT_EQ(printed.take(), "");
}

TEST_F(Rounding, SpeedsAreRoundedByTheFilesPositions) {
  given_calculation("-1 -1 1 -1");
  given_items({L"pipe_speed"});
  EXPECT_EQ(pipe().updateDim(L"pipe_speed", L"1.23456"), Acad::eOk);
  EXPECT_EQ(values(), Texts{L"1.23"});
  given_calculation("-1 -1 1 4");
  EXPECT_EQ(pipe().updateDim(L"pipe_speed", L"1.23456"), Acad::eOk);
  EXPECT_EQ(values(), Texts{L"1.2"});
}

}  // namespace
