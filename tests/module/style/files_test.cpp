// The readers of the settings files.
#include "network/settings_log.h"
#include "tests/module/style/style_fixture.h"

namespace {

class PlanSettings : public WithStyle {
 protected:
  tdfGdcdpdbz read(const std::string& lines, LocalStyle standard = GB) {
    given_file("install/Is/gdcdpdbz.dat", lines);
    tdfGdcdpdbz settings;
    result = CDimStyle::ReadGdcdpdbz(settings, standard);
    return settings;
  }
  int result = -1;
};

class ProfileSettings : public WithStyle {
 protected:
  tdfZdm_bzsz read(const std::string& lines) {
    given_file("install/User/zdm_bzsz.dat", lines);
    tdfZdm_bzsz settings;
    result = CDimStyle::ReadZdm_bzsz(settings);
    return settings;
  }
  int result = -1;
};

class DiameterSettings : public WithStyle {};
class ElevationSettings : public WithStyle {
 protected:
  std::vector<StuElevDimSet> read(const std::string& lines) {
    given_file("install/Is/bgbzfsk.dat", lines);
    std::vector<StuElevDimSet> settings = {{USUAL, 7, L"before"}};
    result = CDimStyle::ReadElevDimSet(settings);
    return settings;
  }
  int result = -1;
};

TEST_F(PlanSettings, HaveInitialValues) {
  const tdfGdcdpdbz s;
  EXPECT_EQ(std::vector<int>({s.lengthDecimals, s.lengthUnit, s.lengthTrailingZero}),
            std::vector<int>({2, 2, 1}));
  EXPECT_EQ(std::vector<int>({s.slopeDecimals, s.slopeUnit, s.slopeTrailingZero}),
            std::vector<int>({0, 0, 0}));
  EXPECT_EQ(std::vector<int>(
                {s.wellNumberUpperCase, s.hydrant, s.compositeSeparateLines, s.verticalMode}),
            std::vector<int>({1, 0, 0, 1}));
  EXPECT_EQ(Texts({s.lengthPrefix, s.lengthSuffix, s.slopePrefix, s.slopeSuffix}), Texts(4));
  EXPECT_EQ(Texts({s.wellNumberSeparator, s.hydrantPrefix, s.wellNumberExtra}),
            Texts({L"-", L"XH", L"L"}));
  EXPECT_EQ(Texts({s.compositeSeparator, s.compositeSlot1, s.compositeSlot2, s.compositeSlot3,
                   s.compositeSlot4, s.compositeSlot5}),
            Texts({L"-", L"DN", L"LL", L"PD", L"", L""}));
}

TEST_F(PlanSettings, TheFirstLineIsOfLengths) {
  const tdfGdcdpdbz s = read("L= m 2 mm 1\n");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(s.lengthPrefix, L"L=");
  EXPECT_EQ(s.lengthSuffix, L"m");
  EXPECT_EQ(std::vector<int>({s.lengthDecimals, s.lengthUnit, s.lengthTrailingZero}),
            std::vector<int>({2, 1, 1}));
  EXPECT_EQ(read("a b 3 m 0\n").lengthUnit, 0);
  EXPECT_EQ(read("a b 3 M 0\n").lengthUnit, 1) << "anything but m";
  EXPECT_EQ(read("a b 3x m 2\n").lengthDecimals, 3);
  EXPECT_EQ(read("a b 3 m 2\n").lengthTrailingZero, 0) << "1 alone sets a flag";
  EXPECT_EQ(read("\"L = \" \"\" 3 m 2\n").lengthPrefix, L"L = ");
}

TEST_F(PlanSettings, TheSecondLineIsOfSlopes) {
  const tdfGdcdpdbz s = read("x\ni= ‰ 2 ‰ 1\n");
  EXPECT_EQ(s.slopePrefix, L"i=");
  EXPECT_EQ(s.slopeSuffix, L"‰");
  EXPECT_EQ(std::vector<int>({s.slopeDecimals, s.slopeUnit, s.slopeTrailingZero}),
            std::vector<int>({2, 2, 1}));
  EXPECT_EQ(read("x\ni= ‰ 2 % 1\n").slopeUnit, 1);
}

TEST_F(PlanSettings, AnUnknownSlopeUnitStaysAsItWas) {
  EXPECT_EQ(read("x\ni= ‰ 2 permille 1\n").slopeUnit, 0);
  tdfGdcdpdbz settings;
  settings.slopeUnit = 2;
  CDimStyle::ReadGdcdpdbz(settings, GB);
  EXPECT_EQ(settings.slopeUnit, 2);
  given_file("install/Is/gdcdpdbz.dat", "x\ni= ‰ 2 小数 1\n");
  CDimStyle::ReadGdcdpdbz(settings, GB);
  EXPECT_EQ(settings.slopeUnit, 0);
}

TEST_F(PlanSettings, TheThirdLineIsOfWellNumbers) {
  const tdfGdcdpdbz s = read("x\nx\n0 / 1 HY 井\n");
  EXPECT_EQ(s.wellNumberUpperCase, 0);
  EXPECT_EQ(s.wellNumberSeparator, L"/");
  EXPECT_EQ(s.hydrant, 1);
  EXPECT_EQ(s.hydrantPrefix, L"HY");
  EXPECT_EQ(s.wellNumberExtra, L"井");
}

TEST_F(PlanSettings, TheFourthLineIsOfCompositeLabels) {
  const tdfGdcdpdbz s = read("x\nx\nx\n1 / PD DN LL V\n");
  EXPECT_EQ(s.compositeSeparateLines, 1);
  EXPECT_EQ(s.compositeSeparator, L"/");
  EXPECT_EQ(Texts({s.compositeSlot1, s.compositeSlot2, s.compositeSlot3}),
            Texts({L"PD", L"DN", L"LL"}));
  EXPECT_EQ(s.verticalMode, 1);
  EXPECT_EQ(read("x\nx\nx\n1 / PD DN LL H\n").verticalMode, 0);
  EXPECT_EQ(read("x\nx\nx\n1 / PD DN LL v\n").verticalMode, 0);
}

TEST_F(PlanSettings, StandardLYHasTwoMoreSlots) {
  const tdfGdcdpdbz short_line = read("x\nx\nx\n1 / PD DN LL V\n", LY);
  EXPECT_EQ(short_line.compositeSlot4, L"V");
  EXPECT_EQ(short_line.compositeSlot5, L"");
  EXPECT_EQ(short_line.verticalMode, 0);
  const tdfGdcdpdbz whole = read("x\nx\nx\n1 / PD DN LL DH GCDN V\n", LY);
  EXPECT_EQ(whole.compositeSlot4, L"DH");
  EXPECT_EQ(whole.compositeSlot5, L"GCDN");
  EXPECT_EQ(whole.verticalMode, 1);
}

TEST_F(PlanSettings, MissingLinesLeaveTheirFields) {
  const tdfGdcdpdbz s = read("L= m 3 m 1\n");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(s.wellNumberSeparator, L"-");
  EXPECT_EQ(s.compositeSlot1, L"DN");
}

TEST_F(PlanSettings, MissingTokensOfALineAreEmpty) {
  const tdfGdcdpdbz s = read("L=\n");
  EXPECT_EQ(s.lengthPrefix, L"L=");
  EXPECT_EQ(s.lengthSuffix, L"");
  EXPECT_EQ(std::vector<int>({s.lengthDecimals, s.lengthUnit, s.lengthTrailingZero}),
            std::vector<int>({0, 1, 0}));
}

TEST_F(PlanSettings, AFifthLineIsIgnored) {
  EXPECT_EQ(read("a\nb\n1\n0\nz z 9 m 1\n").lengthPrefix, L"a");
}

TEST_F(PlanSettings, AMissingFileIsNamed) {
  tdfGdcdpdbz settings;
  settings.lengthDecimals = 5;
  EXPECT_EQ(CDimStyle::ReadGdcdpdbz(settings, GB), 0);
  EXPECT_EQ(settings.lengthDecimals, 5);
  EXPECT_EQ(error_text(), L"管线标注设置文件:" + path("install") + L"\\Is\\gdcdpdbz.dat不能找到");
}

TEST_F(PlanSettings, AFileWithoutLinesIsAFailure) {
  const CString expected = L"读管线标注设置文件:" + path("install") + L"\\Is\\gdcdpdbz.dat失败!";
  for (const char* content : {"", "\n \n", "; a comment\n"}) {
    CGxData::Instance()->GetErr()->Set(L"");
    read(content);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(error_text(), expected);
  }
}

TEST_F(PlanSettings, CodePage936AndUtf8ReadTheSame) {
  const std::wstring text = L"管长= 米 2 m 1\r\n坡度= ‰ 2 ‰ 1\r\n";
  std::string page936;
  ASSERT_TRUE(cad::encode_append(text, cad::CodePage::k936, page936));
  for (const std::string& bytes :
       {page936, cad::to_utf8(text), "\xEF\xBB\xBF" + cad::to_utf8(text)}) {
    const tdfGdcdpdbz s = read(bytes);
    EXPECT_EQ(s.lengthPrefix, L"管长=");
    EXPECT_EQ(s.lengthSuffix, L"米");
    EXPECT_EQ(s.slopeUnit, 2);
  }
}

TEST_F(PlanSettings, BrokenFilesAreReadAsFarAsTheyGo) {
  for (const std::string& bytes :
       {std::string("(((((\n\"\"\"\n))))\n\"a (\n"), std::string(100000, '('),
        std::string(100000, '\0'), std::string("\xFF\xFE\x00", 3), std::string("\x81")}) {
    read(bytes);
    given_file("install/Is/gdbzfsk.dat", bytes);
    given_file("install/Is/bgbzfsk.dat", bytes);
    given_file("install/User/zdm_bzsz.dat", bytes);
    EXPECT_EQ(style.UpdateData(), 1);
  }
}

TEST_F(PlanSettings, FlagAndVerticalModeAreHandedOut) {
  given_plan_labels("x\nx\nx\n1 / PD DN LL H\n");
  bool apart = false;
  CString separator;
  style.GetFlag(apart, separator);
  EXPECT_TRUE(apart);
  EXPECT_EQ(separator, L"/");
  EXPECT_FALSE(style.IsVerticalDimMode());
}

TEST_F(PlanSettings, AreKeptWhenTheFileIsGoneAtTheNextReading) {
  given_plan_labels("L= m 2 m 0\n");
  std::filesystem::remove(folder / "install/Is/gdcdpdbz.dat");
  style.UpdateData();
  EXPECT_EQ(style.GetPipeLongStr(1.0), L"L=1.00m");
}

TEST_F(ProfileSettings, HaveInitialValues) {
  const tdfZdm_bzsz s;
  EXPECT_EQ(std::vector<int>({s.elevationDecimals, s.depthDecimals, s.diameterNotation,
                              s.wholeStake, s.nodesAboveSection, s.dropLabels}),
            std::vector<int>({3, 2, 0, 0, 1, 0}));
  EXPECT_EQ(s.diameterPrefix + s.diameterSuffix, L"");
  EXPECT_EQ(s.wholeStakeInterval, 20.0);
}

TEST_F(ProfileSettings, AreNamedBySectionAndKey) {
  const tdfZdm_bzsz s = read(
      "标高 ((小数位 1))\n埋深及覆土 ((小数位 4))\n"
      "管径 ((前缀 DN) (后缀 mm) (表示法 公称))\n"
      "整桩号标注 ((标注 Y) (整桩号 50.5))\n断面上方节点标注 ((标注 N))\n跌水标注 ((标注 Y))\n");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(std::vector<int>({s.elevationDecimals, s.depthDecimals, s.diameterNotation,
                              s.wholeStake, s.nodesAboveSection, s.dropLabels}),
            std::vector<int>({1, 4, 1, 1, 0, 1}));
  EXPECT_EQ(s.diameterPrefix, L"DN");
  EXPECT_EQ(s.diameterSuffix, L"mm");
  EXPECT_EQ(s.wholeStakeInterval, 50.5);
}

TEST_F(ProfileSettings, WholeStakesAreOffForN) {
  const tdfZdm_bzsz s = read("整桩号标注 ((标注 N) (整桩号 50))\n");
  EXPECT_EQ(s.wholeStake, 0);
  EXPECT_EQ(s.wholeStakeInterval, 50.0);
  EXPECT_EQ(read("整桩号标注 ((标注 n))\n").wholeStake, 1);
}

TEST_F(ProfileSettings, DropsAreOffForN) {
  EXPECT_EQ(read("跌水标注 ((标注 N))\n").dropLabels, 0);
  for (const char* word : {"Y", "n", "x"})
    EXPECT_EQ(read("跌水标注 ((标注 " + std::string(word) + "))\n").dropLabels, 1) << word;
}

TEST_F(ProfileSettings, NodesAreShownWhenTheValueHasAY) {
  EXPECT_EQ(read("断面上方节点标注 ((标注 aYb))\n").nodesAboveSection, 1);
  EXPECT_EQ(read("断面上方节点标注 ((标注 y))\n").nodesAboveSection, 0);
}

TEST_F(ProfileSettings, TheNotationByMaterialIsZero) {
  EXPECT_EQ(read("管径 ((表示法 随管材))\n").diameterNotation, 0);
  EXPECT_EQ(read("管径 ((表示法 DN))\n").diameterNotation, 1);
}

TEST_F(ProfileSettings, ASeventhLineIsIgnored) {
  const tdfZdm_bzsz s = read("a\nb\nc\nd\ne\n标高 ((小数位 1))\n埋深及覆土 ((小数位 7))\n");
  EXPECT_EQ(s.elevationDecimals, 1);
  EXPECT_EQ(s.depthDecimals, 2);
}

TEST_F(ProfileSettings, ALaterPairOfAKeyCounts) {
  EXPECT_EQ(read("标高 ((小数位 1) (小数位 2))\n标高 ((小数位 4))\n").elevationDecimals, 4);
}

TEST_F(ProfileSettings, PairsEndAtTheFirstEmptyOne) {
  EXPECT_EQ(read("标高 ((x y) \"\" (小数位 1))\n").elevationDecimals, 3);
}

TEST_F(ProfileSettings, PairsWithAnEmptyKeyOrValueAreSkipped) {
  EXPECT_EQ(read("标高 ((\"\" 7) (小数位 \"\") (小数位) (小数位 1))\n").elevationDecimals, 1);
  EXPECT_EQ(read("管径 ((前缀 DN) (前缀 \"\"))\n").diameterPrefix, L"DN");
}

TEST_F(ProfileSettings, UnknownNamesAreIgnoredAndLetterCaseCounts) {
  const tdfZdm_bzsz s = read("标高 ((小数 7))\n高程 ((小数位 7))\n\"\" ((小数位 7))\n标高\n");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(s.elevationDecimals, 3);
}

TEST_F(ProfileSettings, AMissingOrEmptyFileIsNamed) {
  tdfZdm_bzsz settings;
  EXPECT_EQ(CDimStyle::ReadZdm_bzsz(settings), 0);
  const CString file = path("install") + L"\\user\\zdm_bzsz.dat";
  EXPECT_EQ(error_text(), L"管线标注设置文件:" + file + L"不能找到");
  read("");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(error_text(), L"读管线标注设置文件:" + file + L"失败!");
}

TEST_F(ProfileSettings, AMillionPairsAreReadInOnePass) {
  std::string line = "标高 (";
  for (int i = 0; i < 300'000; ++i) line += "(a b)";
  EXPECT_EQ(read(line + "(小数位 1))\n").elevationDecimals, 1);
}

TEST_F(DiameterSettings, EachLineIsAStyle) {
  given_file("install/Is/gdbzfsk.dat", "de OUT × WALL \"\"\n\"\" STD\n");
  std::vector<tdfDnDimTypeItem> styles(5);
  EXPECT_EQ(CDimStyle::ReadGdbzfsk(styles), 1);
  EXPECT_EQ(styles, (std::vector<tdfDnDimTypeItem>{{L"de", L"OUT", L"×", L"WALL", L""},
                                                   {L"", L"STD", L"", L"", L""}}));
}

TEST_F(DiameterSettings, EveryTokenMayBeQuoted) {
  given_file("install/Is/gdbzfsk.dat", R"("d e" "OUT" " × " "WALL" " mm")");
  std::vector<tdfDnDimTypeItem> styles;
  EXPECT_EQ(CDimStyle::ReadGdbzfsk(styles), 1);
  EXPECT_EQ(styles, (std::vector<tdfDnDimTypeItem>{{L"d e", L"OUT", L" × ", L"WALL", L" mm"}}));
}

TEST_F(DiameterSettings, AMissingOrEmptyFileIsNamedAndKeepsTheStyles) {
  std::vector<tdfDnDimTypeItem> styles(5);
  EXPECT_EQ(CDimStyle::ReadGdbzfsk(styles), 0);
  const CString file = path("install") + L"\\Is\\gdbzfsk.dat";
  EXPECT_EQ(error_text(), L"管径标注设置文件:" + file + L"不能找到");
  given_file("install/Is/gdbzfsk.dat", "");
  EXPECT_EQ(CDimStyle::ReadGdbzfsk(styles), 0);
  EXPECT_EQ(error_text(), L"读管径标注设置文件:" + file + L"失败!");
  EXPECT_EQ(styles.size(), 5u);
}

TEST_F(ElevationSettings, EachLineIsARow) {
  using Rows = std::vector<StuElevDimSet>;
  EXPECT_EQ(read("ground x 2 BG1.dwg\nPipeTop x 1 a.dwg\n"),
            (Rows{{GROUND, 2, L"BG1"}, {PIPETOP, 1, L"a"}}));
  EXPECT_EQ(result, 1);
  EXPECT_EQ(read("PIPEBOTTOM x 0 a.dwg\nPIPECENTER x 0 a.dwg\nUSUAL x 0 a.dwg\n"),
            (Rows{{PIPEBOTTOM, 0, L"a"}, {PIPECENTER, 0, L"a"}, {USUAL, 0, L"a"}}));
}

TEST_F(ElevationSettings, DecimalsThatAreNoNumberAreThree) {
  EXPECT_EQ(read("GROUND x b BG1.dwg\n")[0].decimals, 3);
  EXPECT_EQ(read("GROUND x 2b BG1.dwg\n")[0].decimals, 3);
  EXPECT_EQ(read("GROUND x \"\" BG1.dwg\n")[0].decimals, 3);
  EXPECT_EQ(read("GROUND x -1 BG1.dwg\n")[0].decimals, -1);
}

TEST_F(ElevationSettings, ASymbolWithoutExtensionAddsNoRow) {
  EXPECT_TRUE(read("GROUND x 2 BG\n").empty());
  EXPECT_EQ(result, 1);
}

TEST_F(ElevationSettings, TheSymbolEndsAtItsLastPoint) {
  EXPECT_EQ(read("GROUND x 2 a.b.dwg\n")[0].symbolName, L"a.b");
  EXPECT_EQ(read("GROUND x 2 .dwg\n")[0].symbolName, L"");
}

TEST_F(ElevationSettings, AnUnknownKindIsKeptAndNeverFound) {
  EXPECT_EQ(read("ROOF x 2 BG1.dwg\n"),
            (std::vector<StuElevDimSet>{{kUnknownElevation, 2, L"BG1"}}));
  style.UpdateData();
  EXPECT_EQ(style.GetBgFhName(GROUND), L"");
}

TEST_F(ElevationSettings, AMissingOrEmptyFileLeavesTheRowsAndSaysNothing) {
  std::vector<StuElevDimSet> settings = {{USUAL, 7, L"before"}};
  EXPECT_EQ(CDimStyle::ReadElevDimSet(settings), 0);
  EXPECT_EQ(settings.size(), 1u);
  EXPECT_EQ(read("\n").size(), 1u);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(error_text(), L"");
}

class Origins : public WithStyle {
 protected:
  const network::SettingNote& note(const wchar_t* name) const {
    static const network::SettingNote kNone;
    const network::SettingNote* found = &kNone;
    for (const network::SettingNote& each : log.settings)
      if (each.name == name) found = &each;
    return *found;
  }
  void update() {
    const network::SettingsLogScope scope(log);
    style.UpdateData();
  }
  network::SettingsLog log;
};

TEST_F(Origins, TellFileLineAndToken) {
  given_file("install/Is/gdcdpdbz.dat", "; comment\n\nL= m 3 m 0\n");
  given_file("install/User/zdm_bzsz.dat", "; a\n标高 ((小数位 1))\n");
  given_file("install/Is/bgbzfsk.dat", "\nGROUND x 2 BG1.dwg\nGROUND x 9 B.dwg\n");
  given_file("project/ktsysvar.ksv", *network::variable_record(L"A", L"") +
                                         *network::variable_record(L"PLN_STK_SET", L"100 50 1"));
  update();
  const network::SettingNote& decimals = note(L"length decimals");
  EXPECT_EQ(decimals.value, L"3");
  EXPECT_EQ(decimals.origin.line, 3);
  EXPECT_EQ(decimals.origin.place, L"token 2");
  EXPECT_FALSE(decimals.is_default);
  EXPECT_EQ(note(L"profile elevation decimals").origin.line, 2);
  EXPECT_EQ(note(L"profile elevation decimals").origin.place, L"标高 小数位");
  EXPECT_EQ(note(L"elevation GROUND decimals").value, L"2");
  EXPECT_EQ(note(L"elevation GROUND decimals").origin.line, 2);
  EXPECT_EQ(note(L"stake unit").value, L"100");
  EXPECT_EQ(note(L"stake unit").origin.place, L"record 2, token 0");
}

TEST_F(Origins, TellTheLineOfEachDiameterStyle) {
  given_file("install/Is/gdbzfsk.dat", "; c\nDN STD\nde OUT × WALL\n");
  update();
  EXPECT_EQ(note(L"diameter style 1").value, L"de OUT × WALL");
  EXPECT_EQ(note(L"diameter style 1").origin.line, 3);
  EXPECT_EQ(note(L"diameter style 1").origin.place, L"");
  std::filesystem::remove(folder / "install/Is/gdbzfsk.dat");
  update();
  EXPECT_TRUE(note(L"diameter style").is_default);
}

TEST_F(Origins, TellTheTokensOfElevationsAndWhatIsKeptWithoutTheFile) {
  given_file("install/Is/bgbzfsk.dat", "GROUND x 2 BG1.dwg\n");
  update();
  EXPECT_EQ(note(L"elevation GROUND decimals").origin.place, L"token 2");
  EXPECT_EQ(note(L"elevation GROUND symbol").value, L"BG1");
  EXPECT_EQ(note(L"elevation GROUND symbol").origin.place, L"token 3");
  EXPECT_EQ(note(L"elevation USUAL symbol").value, L"");
  EXPECT_TRUE(note(L"elevation USUAL symbol").is_default);
  std::filesystem::remove(folder / "install/Is/bgbzfsk.dat");
  update();
  EXPECT_EQ(note(L"elevation GROUND decimals").value, L"2");
  EXPECT_EQ(note(L"elevation GROUND symbol").value, L"BG1");
  EXPECT_TRUE(note(L"elevation GROUND symbol").is_default);
}

TEST_F(Origins, TellWhatStandsInForWhatNoFileSays) {
  given_file("install/Is/gdcdpdbz.dat", "L= m 3 m 0\n");
  update();
  for (const wchar_t* name :
       {L"slope decimals", L"composite slot 1", L"profile depth decimals",
        L"elevation USUAL decimals", L"stake letter", L"useri4", L"LocalStyle", L"GgDimPre"}) {
    EXPECT_TRUE(note(name).is_default) << cad::to_utf8(name);
  }
  EXPECT_EQ(note(L"composite slot 1").value, L"DN");
  EXPECT_EQ(note(L"elevation USUAL decimals").value, L"3");
  EXPECT_EQ(note(L"stake letter").value, L"K");
  EXPECT_EQ(note(L"useri4").value, L"3");
}

TEST_F(Origins, NameEveryFileThatWasAskedFor) {
  given_file("install/Is/gdcdpdbz.dat", "L= m 3 m 0\n");
  update();
  std::map<CString, CString> problems;
  for (const network::FileNote& file : log.files)
    problems[file.path.substr(file.path.find_last_of(L"\\/") + 1)] = file.problem;
  EXPECT_EQ(problems.at(L"gdcdpdbz.dat"), L"");
  for (const wchar_t* name : {L"zdm_bzsz.dat", L"gdbzfsk.dat", L"bgbzfsk.dat", L"DimStyle.ini",
                              L"QrmvPz.ini", L"ktsysvar.ksv"}) {
    EXPECT_NE(problems.at(name), L"") << cad::to_utf8(name);
  }
}

}  // namespace
