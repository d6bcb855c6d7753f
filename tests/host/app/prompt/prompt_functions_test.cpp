#include "host/app/prompt/user_input.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

namespace {

class Prompt : public WithHost {
 protected:
  Prompt() { host.new_drawing(); }

  /// The value of the expression when the user types these lines.
  std::string answered(const std::string& lines, const std::string& expression) {
    cad::user_input() = cad::scripted_input(lines, "answers.txt");
    printed.clear();
    return eval(expression);
  }
  bool told(const std::string& text) const { return printed.find(text) != std::string::npos; }
};

struct Case {
  const char* answers;
  const char* expression;
  const char* value;
};
class PromptCase : public Prompt, public testing::WithParamInterface<Case> {};

TEST_P(PromptCase, GivesTheValue) {
  EXPECT_EQ(answered(GetParam().answers, GetParam().expression), GetParam().value);
}

constexpr Case kSimple[] = {
    {"10,20", "(getpoint)", "(10.0 20.0 0.0)"},
    {"@1,1", "(getpoint '(5 5) \"to\")", "(6.0 6.0 0.0)"},
    {"1,2\n@1,1", "(progn (getpoint) (getpoint))", "(2.0 3.0 0.0)"},
    {"\n", "(getpoint \"p\")", "nil"},
    {"5,6", "(getcorner '(0 0) \"other\")", "(5.0 6.0 0.0)"},
    {"12.5", "(getdist)", "12.5"},
    {"0,0\n3,4", "(getdist \"d\")", "5.0"},
    {"3,4", "(getdist '(0 0))", "5.0"},
    {"3,4,12", "(progn (initget 64) (getdist '(0 0)))", "5.0"},
    {"90", "(getangle)", "1.5708"},
    {"-90", "(getangle)", "4.71239"},
    {"0,5", "(getangle '(0 0) \"a\")", "1.5708"},
    {"0,0\n5,5", "(getorient)", "0.785398"},
    {"1.5", "(getreal)", "1.5"},
    {"7", "(getreal)", "7.0"},
    {"-3", "(getint)", "-3"},
    {"\n", "(getint)", "nil"},
    {"hello world", "(getstring)", "\"hello\""},
    {"hello world", "(getstring T \"text\")", "\"hello world\""},
    {"\n", "(getstring \"text\")", "\"\""},
    {"a b", "(getstring nil \"text\")", "\"a\""},
    {"y", "(progn (initget \"Yes No\") (getkword))", "\"Yes\""},
    {"\n", "(progn (initget \"Yes No\") (getkword \"really?\"))", "nil"},
    {"c", "(progn (initget \"Close Undo\") (getpoint))", "\"Close\""},
    {"\nx", "(progn (initget 128 \"Close\") (list (getpoint) (progn (initget 128) (getpoint))))",
     "(nil \"x\")"},
    {"all", "(progn (initget \"All\") (getint))", "\"All\""},
    {"!p", "(progn (setq p '(1.0 2.0 3.0)) (getpoint))", "(1.0 2.0 3.0)"},
    {"1'6\"", "(progn (setvar \"LUNITS\" 4) (getdist))", "18.0"},
    {"45d30'", "(getangle)", "0.794125"},
    {"_non\n3,4", "(getpoint)", "(3.0 4.0 0.0)"},
};
INSTANTIATE_TEST_SUITE_P(Simple, PromptCase, testing::ValuesIn(kSimple));

// What the host's documentation lists for ANGBASE north and ANGDIR clockwise.
constexpr Case kAngles[] = {
    {"0", "(getangle)", "0.0"},       {"0", "(getorient)", "1.5708"},
    {"-90", "(getangle)", "1.5708"},  {"-90", "(getorient)", "3.14159"},
    {"180", "(getangle)", "3.14159"}, {"180", "(getorient)", "4.71239"},
    {"90", "(getangle)", "4.71239"},  {"90", "(getorient)", "0.0"},
};
class PromptAngle : public PromptCase {
 protected:
  PromptAngle() { eval("(setvar \"ANGBASE\" (/ pi 2)) (setvar \"ANGDIR\" 1)"); }
};
TEST_P(PromptAngle, CountsFromTheBase) {
  EXPECT_EQ(answered(GetParam().answers, GetParam().expression), GetParam().value);
}
INSTANTIATE_TEST_SUITE_P(Table, PromptAngle, testing::ValuesIn(kAngles));

struct Refusal {
  const char* answers;  // the first is wrong, the second right
  const char* expression;
  const char* message;
};
class PromptRefusal : public Prompt, public testing::WithParamInterface<Refusal> {};

TEST_P(PromptRefusal, IsToldAndAskedAgain) {
  const std::string value = answered(GetParam().answers, GetParam().expression);
  EXPECT_FALSE(value.starts_with("error")) << value;
  EXPECT_TRUE(told(GetParam().message)) << printed;
}

constexpr Refusal kRefusals[] = {
    {"x\n1,2", "(getpoint)", "Invalid point."},
    {"5\n1,2", "(getpoint)", "Invalid point."},
    {"x\nC", "(progn (initget \"Close\") (getpoint))", "Point or option keyword required."},
    {"x\n1", "(getdist)", "Requires numeric distance or two points."},
    {"x\n1", "(progn (initget \"All\") (getdist))",
     "Requires numeric distance, two points, or option keyword."},
    {"x\n1", "(getangle)", "Requires valid numeric angle or two points."},
    {"x\n1", "(getint)", "Requires an integer value."},
    {"1.5\n1", "(getint)", "Requires an integer value."},
    {"40000\n1", "(getint)", "Requires an integer value between -32768 and 32767."},
    {"x\n1", "(getreal)", "Requires numeric value."},
    {"x\ny", "(progn (initget \"Yes No\") (getkword))", "Invalid option keyword."},
    {"\ny", "(progn (initget 1 \"Yes No\") (getkword))", "Invalid option keyword."},
    {"\n1,2", "(progn (initget 1) (getpoint))", "Invalid point."},
    {"0\n1", "(progn (initget 2) (getint))", "Value must be nonzero."},
    {"-1\n1", "(progn (initget 4) (getreal))", "Value must be positive."},
    {"-1\n1", "(progn (initget 6) (getdist))", "Value must be positive and nonzero."},
    {".xy\n1,2", "(getpoint)", "Point filters"},
};
INSTANTIATE_TEST_SUITE_P(Rows, PromptRefusal, testing::ValuesIn(kRefusals));

TEST_F(Prompt, InitgetHoldsForOnePrompt) {
  EXPECT_EQ(answered("\n\n", "(progn (initget 1 \"Yes\") (getstring) (getpoint))"), "nil");
}

TEST_F(Prompt, TheLogReadsLikeASession) {
  answered("10,20\n", "(getpoint \"\\nFirst point: \")");
  EXPECT_EQ(printed, "\nFirst point: 10,20\n");
}

TEST_F(Prompt, RunningOutOfAnswersCancels) {
  EXPECT_EQ(answered("1,2\n", "(progn (getpoint \"\\nFirst: \") (getpoint \"\\nSecond: \"))"),
            "error: Function cancelled");
  EXPECT_TRUE(told("no answer left for \"Second: \" (line 1 of answers.txt was the last)"));
  EXPECT_EQ(answered("", "(vl-catch-all-error-message (vl-catch-all-apply 'getpoint '()))"),
            "\"Function cancelled\"");
}

TEST_F(Prompt, AProgramCannotGoOnAskingForEver) {
  EXPECT_EQ(answered("", "(while (vl-catch-all-error-p (vl-catch-all-apply 'getpoint '())))"),
            "error: Function cancelled");
}

TEST_F(Prompt, RefusedPromptsSayWhy) {
  host.set_input([] { return std::optional<std::wstring>(L"typed"); });
  host.refuse_prompts("give the answers with --answers FILE");
  EXPECT_EQ(eval("(getstring \"Name: \")"), "error: Function cancelled");
  EXPECT_TRUE(told("no answer left for \"Name: \" (give the answers with --answers FILE)"));
}

TEST_F(Prompt, AnswersMayBeInTheChineseCodePage) {
  EXPECT_EQ(answered("\xB1\xEA\xD7\xA2\r\n", "(getstring)"), "\"标注\"");
}

TEST_F(Prompt, ErrnoTellsEnterFromAMiss) {
  EXPECT_EQ(answered("\n", "(list (entsel) (getvar \"ERRNO\"))"), "(nil 52)");
  EXPECT_EQ(answered("500,500\n", "(list (entsel) (getvar \"ERRNO\"))"), "(nil 7)");
}

TEST_F(Prompt, WrongArgumentsAreErrors) {
  EXPECT_EQ(answered("", "(getpoint 5)").substr(0, 5), "error");
  EXPECT_EQ(answered("", "(getkword \"which\")").substr(0, 5), "error");
  EXPECT_EQ(answered("", "(initget \"a\" 5)").substr(0, 5), "error");
}

class PromptInDrawing : public Prompt {
 protected:
  PromptInDrawing() { given_drawing(small_drawing()); }
};

TEST_F(PromptInDrawing, AnEntityIsPickedByPointAndNamedByHandle) {
  EXPECT_EQ(answered("12,16\n", "(cdr (assoc 5 (entget (car (entsel)))))"), "\"2A\"");
  EXPECT_EQ(answered("handle:2D\n", "(cdr (assoc 5 (entget (car (entsel)))))"), "\"2D\"");
  EXPECT_EQ(answered("L\n", "(cdr (assoc 0 (entget (car (entsel)))))"), "\"INSERT\"");
  EXPECT_EQ(answered("handle:2A\n", "(cadr (entsel))"), "(15.0 20.0 0.0)");
}

TEST_F(PromptInDrawing, EntselTakesKeywords) {
  EXPECT_EQ(answered("s\n", "(progn (initget \"Settings\") (entsel \"pick\"))"), "\"Settings\"");
}

TEST_F(PromptInDrawing, NentselGivesThePartOfABlock) {
  EXPECT_EQ(answered("6.5,6\n", "(cdr (assoc 0 (entget (car (setq n (nentsel))))))"), "\"CIRCLE\"");
  EXPECT_EQ(eval("(length n)"), "4");
  EXPECT_EQ(eval("(mapcar '(lambda (e) (cdr (assoc 5 (entget e)))) (last n))"), "(\"2D\")");
  EXPECT_EQ(answered("12,16\n", "(length (nentsel))"), "2");
}

TEST_F(PromptInDrawing, ObjectSnapsFindTheirPoints) {
  EXPECT_EQ(eval("(osnap '(1 1.3 0) \"_end\")"), "(0.0 0.0 0.0)");
  EXPECT_EQ(eval("(osnap '(1 1.3 0) \"mid\")"), "(15.0 20.0 0.0)");
  EXPECT_EQ(eval("(osnap '(500 500 0) \"end\")"), "nil");
  EXPECT_EQ(answered("_mid\n12,16\n", "(getpoint)"), "(15.0 20.0 0.0)");
}

TEST_F(PromptInDrawing, AFileNameIsAskedFor) {
  EXPECT_EQ(answered("report\n", "(getfiled \"Report\" \"\" \"csv\" 1)"), "\"report.csv\"");
  EXPECT_EQ(answered("\n", "(getfiled \"Report\" \"out.csv\" \"csv\" 1)"), "\"out.csv\"");
  EXPECT_EQ(answered("\n", "(getfiled \"Report\" \"\" \"csv\" 1)"), "nil");
  EXPECT_EQ(answered("/none/such\n\n", "(getfiled \"Report\" \"\" \"csv\" 0)"), "nil");
  EXPECT_TRUE(told("there is no such file"));
}

}  // namespace
