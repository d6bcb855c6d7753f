// Where settings are kept, and the object itself.
#include "host/app/host.h"
#include "host/app/invocation.h"
#include "tests/module/style/style_fixture.h"

namespace {

using network::variable_record;

class StyleFile : public WithStyle {};
class VariableFiles : public WithStyle {};
class DrawingStandard : public WithStyle {};
class Spacing : public WithStyle {};
class LayerNames : public WithStyle {};
class DropWell : public WithStyle {};
class ReferenceStake : public WithStyle {};
class Style : public WithStyle {};

TEST_F(StyleFile, AMissingFileSectionOrKeyGivesTheDefault) {
  EXPECT_EQ(style.GetProfileStringW(L"GxBz", L"Key", L"default"), L"default");
  given_file("install/sys/DimStyle.ini", "[Other]\nKey=x\n");
  EXPECT_EQ(style.GetProfileStringW(L"GxBz", L"Key", L"default"), L"default");
  EXPECT_EQ(style.GetProfileStringW(L"other", L"KEY", L"default"), L"x");
}

TEST_F(StyleFile, AValueIsCutTo259Characters) {
  given_file("install/SYS/dimstyle.INI", "[GxBz]\nKey=" + std::string(400, 'a') + "\n");
  EXPECT_EQ(style.GetProfileStringW(L"GxBz", L"Key", L""), CString(259, L'a'));
}

TEST_F(StyleFile, WhatIsWrittenIsReadBack) {
  given_file("install/sys/DimStyle.ini", "[GxBz]\r\nLocalStyle=GB\r\n");
  EXPECT_NE(style.WriteProfileStringW(L"GxBz", L"LocalStyle", L"津"), 0);
  EXPECT_EQ(style.GetProfileStringW(L"GxBz", L"LocalStyle", L""), L"津");
}

TEST_F(StyleFile, WritingWithoutTheFolderFails) {
  EXPECT_EQ(style.WriteProfileStringW(L"GxBz", L"LocalStyle", L"GB"), 0);
}

TEST_F(StyleFile, ItsPathIsPublished) {
  EXPECT_STREQ(CDimStyle::kBzParamSetFileName, L"sys\\DimStyle.ini");
}

TEST_F(StyleFile, WithoutAnInstallationFilesAreLookedForInTheCurrentFolder) {
  given_file("sys/DimStyle.ini", "[GxBz]\nKey=here\n");
  cad::host_settings().install_dir.clear();
  const std::filesystem::path started_in = std::filesystem::current_path();
  std::filesystem::current_path(folder);
  const CString value = style.GetProfileStringW(L"GxBz", L"Key", L"default");
  std::filesystem::current_path(started_in);
  EXPECT_EQ(value, L"here");
}

TEST_F(VariableFiles, TheFirstRecordOfTheVeryNameCounts) {
  const CString file =
      wide(given_file("a.ksv", *variable_record(L"a", L"0") + *variable_record(L"A", L"1 管") +
                                   *variable_record(L"A", L"2")));
  CString value = L"before";
  EXPECT_TRUE(style.GetVal(file.c_str(), L"A", value));
  EXPECT_EQ(value, L"1 管");
}

TEST_F(VariableFiles, WhatIsNotFoundLeavesTheValue) {
  const CString file = wide(given_file("a.ksv", *variable_record(L"A", L"1")));
  CString value = L"before";
  EXPECT_FALSE(style.GetVal(file.c_str(), L"B", value));
  EXPECT_FALSE(style.GetVal(path("none.ksv").c_str(), L"A", value));
  EXPECT_FALSE(style.GetVal(nullptr, nullptr, value));
  EXPECT_EQ(value, L"before");
}

TEST_F(VariableFiles, ANameLongerThan31BytesNeverMatches) {
  const std::string name(32, 'N');
  const CString file = wide(given_file("a.ksv", name + "1" + std::string(127, '\0')));
  CString value;
  EXPECT_FALSE(style.GetVal(file.c_str(), CString(32, L'N').c_str(), value));
  const CString fits =
      wide(given_file("b.ksv", name.substr(1) + '\0' + "1" + std::string(127, '\0')));
  EXPECT_TRUE(style.GetVal(fits.c_str(), CString(31, L'N').c_str(), value));
}

TEST_F(VariableFiles, TheInstallationHasItsOwn) {
  given_installation_variables(*variable_record(L"A", L"1"));
  CString value;
  EXPECT_TRUE(style.GetPrjVal(L"A", value));
  EXPECT_EQ(value, L"1");
}

TEST_F(VariableFiles, TheProjectPathHasNoBackslashAtItsEnd) {
  CString project;
  EXPECT_EQ(CDimStyle::KT_getCurPrjpath(project), 1);
  EXPECT_EQ(project, path("project"));
  cad::host_settings().project_dir += "\\\\";
  EXPECT_EQ(CDimStyle::KT_getCurPrjpath(project), 1);
  EXPECT_EQ(project, path("project"));
  cad::host_settings().project_dir.clear();
  EXPECT_EQ(CDimStyle::KT_getCurPrjpath(project), 0);
}

TEST_F(VariableFiles, ASearchOfTheProjectLeavesTheLastValueItPassed) {
  given_file("project/ktsysvar.ksv", *variable_record(L"A", L"1") + *variable_record(L"B", L"2") +
                                         *variable_record(L"C", L"3"));
  wchar_t value[128] = L"before";
  EXPECT_EQ(CDimStyle::KT_getSysVar(L"B", value), 1);
  EXPECT_STREQ(value, L"2");
  EXPECT_EQ(CDimStyle::KT_getSysVar(L"D", value), 0);
  EXPECT_STREQ(value, L"3");
  EXPECT_EQ(CDimStyle::KT_getSysVar(L"B", nullptr), 1) << "whether it is there";
}

TEST_F(VariableFiles, AnUnknownProjectOrFileLeavesTheBuffer) {
  wchar_t value[128] = L"before";
  EXPECT_EQ(CDimStyle::KT_getSysVar(L"A", value), 0);
  cad::host_settings().project_dir.clear();
  EXPECT_EQ(CDimStyle::KT_getSysVar(L"A", value), 0);
  EXPECT_STREQ(value, L"before");
}

TEST_F(DrawingStandard, IsReadFromTheStyleFile) {
  const std::pair<const char*, LocalStyle> rows[] = {
      {"CD", CD}, {"GB", GB}, {"TJ", TJ}, {"BJ", BJ}, {"LY", LY},
      {"ly", LY}, {"XX", GB}, {"", GB},   {"5", GB},
  };
  for (const auto& [text, expected] : rows) {
    given_style_keys("LocalStyle=" + std::string(text) + "\n");
    EXPECT_EQ(style.GetLocalStyle(), expected) << text;
  }
}

TEST_F(DrawingStandard, AnAbsentKeyGivesGB) { EXPECT_EQ(style.GetLocalStyle(), GB); }

TEST_F(DrawingStandard, IsRememberedUntilSettingsAreReadAgain) {
  given_file("install/sys/DimStyle.ini", "[GxBz]\nLocalStyle=LY\n");
  EXPECT_EQ(style.GetLocalStyle(), LY);
  given_file("install/sys/DimStyle.ini", "[GxBz]\nLocalStyle=TJ\n");
  EXPECT_EQ(style.GetLocalStyle(), LY);
  style.UpdateData();
  EXPECT_EQ(style.GetLocalStyle(), TJ);
}

TEST_F(DrawingStandard, ItsNumbersAreFixed) {
  EXPECT_EQ(std::vector<int>({CD, GB, TJ, BJ, LY}), std::vector<int>({0, 1, 2, 3, 6}));
}

TEST_F(Spacing, HasDefaults) {
  EXPECT_EQ(style.SwBzTxtLineSpace(), 1.0);
  EXPECT_EQ(style.SwBzTxtTxtSpace(), 2.0);
}

TEST_F(Spacing, IsRememberedUntilSettingsAreReadAgain) {
  given_style_keys("SwBzTxtLineSpace=1.5\nSwBzTxtTxtSpace=3\n");
  EXPECT_EQ(style.SwBzTxtLineSpace(), 1.5);
  EXPECT_EQ(style.SwBzTxtTxtSpace(), 3.0);
  given_file("install/sys/DimStyle.ini", "[GxBz]\nSwBzTxtLineSpace=9\nSwBzTxtTxtSpace=9\n");
  EXPECT_EQ(style.SwBzTxtLineSpace(), 1.5);
  EXPECT_EQ(style.SwBzTxtTxtSpace(), 3.0);
  style.UpdateData();
  EXPECT_EQ(style.SwBzTxtLineSpace(), 9.0);
  EXPECT_EQ(style.SwBzTxtTxtSpace(), 9.0);
}

TEST_F(Spacing, ATextThatIsNoNumberIsARememberedZero) {
  given_style_keys("SwBzTxtLineSpace=abc\n");
  EXPECT_EQ(style.SwBzTxtLineSpace(), 0.0);
  given_file("install/sys/DimStyle.ini", "[GxBz]\nSwBzTxtLineSpace=9\n");
  EXPECT_EQ(style.SwBzTxtLineSpace(), 0.0);
}

TEST_F(Spacing, TheNoValueMarkerIsReadAgainAtEveryCall) {
  given_style_keys("SwBzTxtTxtSpace=-999999999\n");
  EXPECT_EQ(style.SwBzTxtTxtSpace(), kNoValue);
  given_file("install/sys/DimStyle.ini", "[GxBz]\nSwBzTxtTxtSpace=4\n");
  EXPECT_EQ(style.SwBzTxtTxtSpace(), 4.0);
}

TEST_F(LayerNames, FillTheDefaultTemplates) {
  EXPECT_EQ(style.SwBzGxLayer(L"W", L"1"), L"SwBzW1Pipe");
  EXPECT_EQ(style.SwBzJdBhLayer(L"污水", L"W"), L"SwBz污水WJdBh");
  EXPECT_EQ(style.SwBzJgBzLayer(L"", L""), L"SwBzJgBz");
}

TEST_F(LayerNames, FillEveryPlaceholderTypeBeforeCode) {
  given_style_keys("SwBzGxLayer={管代号}{管类型}{管代号}{管类型}-{x}\n");
  EXPECT_EQ(style.SwBzGxLayer(L"W", L"1"), L"1W1W-{x}");
  EXPECT_EQ(style.SwBzGxLayer(L"{管代号}", L"1"), L"1111-{x}");
  EXPECT_EQ(style.SwBzGxLayer(L"W", L"{管代号}"), L"{管代号}W{管代号}W-{x}");
}

TEST_F(LayerNames, HaveATemplateEach) {
  given_style_keys("SwBzJdBhLayer=a{管类型}\nSwBzJgBzLayer=b{管类型}\nSwBzGxLayer=c{管类型}\n");
  EXPECT_EQ(style.SwBzJdBhLayer(L"W", L"1"), L"aW");
  EXPECT_EQ(style.SwBzJgBzLayer(L"W", L"1"), L"bW");
  EXPECT_EQ(style.SwBzGxLayer(L"W", L"1"), L"cW");
}

TEST_F(LayerNames, ATemplateWithoutPlaceholdersStays) {
  given_style_keys("SwBzJdBhLayer=0\n");
  EXPECT_EQ(style.SwBzJdBhLayer(L"W", L"1"), L"0");
}

TEST_F(DropWell, HasAHeightOfHalfAMetre) {
  style.UpdateData();
  EXPECT_EQ(style.CnjHeight(), 0.5);
}

TEST_F(DropWell, MillimetresOfAnyLetterCaseBecomeMetres) {
  given_library_settings("[Swjcj]\nUnit_Jcjsd=MM\nHigh-CnjDown=500\n");
  EXPECT_EQ(style.CnjHeight(), 0.5);
}

TEST_F(DropWell, AnyOtherUnitIsMetres) {
  given_library_settings("[Swjcj]\nUnit_Jcjsd=cm\nHigh-CnjDown=0.75\n");
  EXPECT_EQ(style.CnjHeight(), 0.75);
}

TEST_F(ReferenceStake, ASymbolSaysSo) {
  EXPECT_EQ(style.GetIsRefStake(), 1) << "outside of LISP";
  cad::Host host;
  AcApDocument* const drawing = host.new_drawing();
  cad::Invocation call(*cad::DocumentSession::current(), 1);
  const std::pair<const char*, int> rows[] = {
      {"nil", 1},    {"\"X\"", 1}, {"\"x\"", 1}, {"\"Z\"", 0},    {"\"z\"", 0},
      {"\"zz\"", 1}, {"\"\"", 1},  {"0", 1},     {"'(\"Z\")", 1},
  };
  for (const auto& [value, expected] : rows) {
    ASSERT_TRUE(host.eval_string(drawing, "(setq global_isAccordZh " + std::string(value) + ")"));
    EXPECT_EQ(style.GetIsRefStake(), expected) << value;
  }
}

TEST_F(Style, TheSingletonIsOne) { EXPECT_EQ(&CDimStyle::Instance(), &CDimStyle::Instance()); }

TEST_F(Style, CopiesAreEqualAndApart) {
  given_library_settings("[Swjcj]\nHigh-CnjDown=0.75\n");
  given_elevations("GROUND x 2 BG1.dwg\n");
  CDimStyle copy = style;
  CDimStyle assigned;
  assigned = style;
  given_elevations("GROUND x 1 BG2.dwg\n");
  for (const CDimStyle* other : {&copy, &assigned}) {
    EXPECT_EQ(other->CnjHeight(), 0.75);
    EXPECT_EQ(other->GetBgFhName(GROUND), L"BG1");
    EXPECT_EQ(other->GetBgStr(GROUND, 1.0), L"1.00");
  }
  EXPECT_EQ(style.GetBgFhName(GROUND), L"BG2");
}

TEST_F(Style, BeforeAnythingIsReadBuiltInSettingsHold) {
  EXPECT_EQ(style.GetPipeLongStr(12.5), L"12.5");
  EXPECT_EQ(style.GetPipeLongStr(12.0), L"12");
  bool apart = true;
  CString separator;
  style.GetFlag(apart, separator);
  EXPECT_FALSE(apart);
  EXPECT_EQ(separator, L"-");
  EXPECT_TRUE(style.IsVerticalDimMode());
  EXPECT_EQ(style.GetGxBzPath(), L"");
  EXPECT_EQ(style.GetZhStr(1234.5, L""), L"K1+234.5");
}

TEST_F(Style, ReadingAnswersOneAndReportsEachMissingFileOnce) {
  EXPECT_EQ(style.UpdateData(), 1);
  const std::string install = (folder / "install").string() + "\\";
  EXPECT_EQ(printed, "\n管线标注设置文件:" + install + "Is\\gdcdpdbz.dat不能找到" +
                         "\n管线标注设置文件:" + install + "user\\zdm_bzsz.dat不能找到" +
                         "\n管径标注设置文件:" + install + "Is\\gdbzfsk.dat不能找到" +
                         "\n读取桩号标风格失败!");
  EXPECT_EQ(error_text(), L"");
}

TEST_F(Style, AMissingStakeStyleAloneIsNotReported) {
  for (const char* file : {"Is/gdcdpdbz.dat", "User/zdm_bzsz.dat", "Is/gdbzfsk.dat"})
    given_file(std::string("install/") + file, "x\n");
  given_file("install/Is/bgbzfsk.dat", "GROUND x 2 BG1.dwg\n");
  style.UpdateData();
  EXPECT_EQ(printed, "");
  EXPECT_EQ(error_text(), L"读取桩号标风格失败!");
}

TEST_F(Style, ReadingMakesThePipeLibraryReadItsFilesAgain) {
  CGxData& library = *CGxData::Instance();
  given_plan_labels("L= m 3 m 0\n");
  ASSERT_NE(library.getGcGpBzSz(), nullptr);
  EXPECT_EQ(library.getGcGpBzSz()->lengthDecimals, 3);
  given_file("install/Is/gdcdpdbz.dat", "L= m 1 m 0\n");
  EXPECT_EQ(library.getGcGpBzSz()->lengthDecimals, 3);
  style.UpdateData();
  EXPECT_EQ(library.getGcGpBzSz()->lengthDecimals, 1);
}

TEST_F(Style, AFaultyFileDoesNotKeepTheOthersFromBeingRead) {
  given_file("install/Is/gdbzfsk.dat", "");
  given_elevations("GROUND x 2 BG1.dwg\n");
  EXPECT_EQ(style.GetBgFhName(GROUND), L"BG1");
  EXPECT_NE(printed.find("读管径标注设置文件:"), std::string::npos);
}

TEST_F(Style, ThePipeLabelFileIsInTheInstallation) {
  style.UpdateData();
  EXPECT_EQ(style.GetGxBzPath(), path("install") + L"\\User\\KtGxBz.ini");
}

TEST_F(Style, UserInteger4OfTheDrawingGivesTheDecimalsOfStakes) {
  style.UpdateData();
  EXPECT_EQ(style.GetZhStr(1234.5, L""), L"K1+234.5") << "3 without a drawing";
  cad::Host host;
  AcApDocument* const drawing = host.new_drawing();
  style.UpdateData();
  EXPECT_EQ(style.GetZhStr(1234.5, L""), L"K1+235.00") << "0 in a new drawing";
  ASSERT_TRUE(host.eval_string(drawing, "(setvar \"USERI4\" 2)"));
  style.UpdateData();
  EXPECT_EQ(style.GetZhStr(1234.567, L""), L"K1+234.57");
}

}  // namespace
