// Every function, given what it does not take at each position, ends in an error that programs can
// catch, and changes nothing.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/module/app/lisp_host.h"

namespace {

struct Function {
  const char* name;
  std::vector<std::string> arguments;  ///< a call that succeeds
  std::vector<std::string> kinds;      ///< what each position takes: entity text nil list any
};

const std::vector<Function> kFunctions = {
    {"dimRec",
     {"(list pipe \"pcgb\")", "label", "\"pipe_dia\"", "\"300\"", "\"DN\"", "nil", "\"/\""},
     {"list", "entity", "text nil", "text nil", "text nil", "text nil", "text nil"}},
    {"dimGeRec", {"(list pipe \"pcgb\")", "label"}, {"list", "entity"}},
    {"dimUserRec", {"(list pipe \"pcgb\")", "\"xfdh\"", "\"3\""}, {"list", "text", "text"}},
    {"dimupdate",
     {"pipe", "\"pipe_dia\"", "\"400\"", "T", "\"D\"", "nil", "\"/\""},
     {"entity", "text", "text", "any", "text nil", "text nil", "text nil"}},
    {"dimDel", {"pipe", "\"pcgb\""}, {"entity", "text"}},
    {"dimDelAll", {"pipe"}, {"entity"}},
    {"dimDelAllInfo", {"pipe"}, {"entity"}},
    {"jgbzUpInfo", {"pipe"}, {"entity"}},
    {"updateJtDirection", {"pipe"}, {"entity"}},
    {"updatePipeInfo", {"pipe"}, {"entity"}},
    {"updateWellInfo", {"pipe"}, {"entity"}},
};

struct Wrong {
  std::string kind;
  std::string value;
};
const std::vector<Wrong> kValues = {
    {"nil", "nil"},          {"T", "T"},
    {"integer", "7"},        {"real", "7.5"},
    {"text", "\"7\""},       {"entity", "label"},
    {"point", "'(1.0 2.0)"}, {"set", "(ssadd label)"},
    {"pair", "'(1 . 2)"},    {"other list", "(list \"pcgb\" pipe)"},
};

std::string call(const Function& function, const std::vector<std::string>& arguments) {
  std::string text = std::string("(") + function.name;
  for (const std::string& argument : arguments) text += " " + argument;
  return text + ")";
}

class WrongArguments : public LispHost {
 protected:
  void SetUp() override {
    LispHost::SetUp();
    eval(
        "(setq pipe (e \"2F\") label (e \"40\"))"
        "(dimRec (list pipe \"pcgb\") label \"pipe_dia\" \"300\" \"DN\" \"\" \"\")");
    before = document->database()->save_bytes();
  }
  void expect_refused(const std::string& program) {
    EXPECT_EQ(eval("(vl-catch-all-error-p (vl-catch-all-apply '(lambda () " + program + ") nil))"),
              "T")
        << program;
    EXPECT_EQ(document->database()->save_bytes(), before) << program;
  }
  std::string before;
};

TEST_F(WrongArguments, AtEveryPositionAreRefused) {
  for (const Function& function : kFunctions) {
    for (std::size_t position = 0; position < function.arguments.size(); ++position) {
      for (const Wrong& wrong : kValues) {
        const std::string& kinds = function.kinds[position];
        if (kinds == "any" || kinds.find(wrong.kind) != std::string::npos) continue;
        std::vector<std::string> arguments = function.arguments;
        arguments[position] = wrong.value;
        expect_refused(call(function, arguments));
      }
    }
  }
}

TEST_F(WrongArguments, LeftOutAreRefused) {
  for (const Function& function : kFunctions) {
    const std::size_t required =
        std::string(function.name) == "dimupdate" ? 3 : function.arguments.size();
    for (std::size_t given = 0; given < required; ++given) {
      expect_refused(call(function, {function.arguments.begin(),
                                     function.arguments.begin() + static_cast<long>(given)}));
    }
  }
}

TEST_F(WrongArguments, OfDimupdateAreTracedByPosition) {
  struct Row {
    const char* arguments;
    const wchar_t* traced;
  };
  for (const Row& row : {
           Row{"nil", L"没有指定被标注实体名!"},
           Row{"\"2F\" \"pipe_dia\" \"400\"", L"没有指定被标注实体名!"},
           Row{"(list pipe)", L"没有指定被标注实体名!"},
           Row{"pipe", L"没有指定标注名!"},
           Row{"pipe nil \"400\"", L"没有指定标注名!"},
           Row{"pipe \"pipe_dia\"", L"没有指定标注值!"},
           Row{"pipe \"pipe_dia\" nil", L"没有指定标注值!"},
           Row{"pipe \"pipe_dia\" 400", L"没有指定标注值!"},
           Row{"pipe \"pipe_dia\" \"400\" T 1", L"前缀值无效!"},
           Row{"pipe \"pipe_dia\" \"400\" nil T", L"前缀值无效!"},
           Row{"pipe \"pipe_dia\" \"400\" T nil 1.5", L"后缀值无效!"},
           Row{"pipe \"pipe_dia\" \"400\" T nil nil pipe", L"分隔符无效!"},
       }) {
    const TraceLines trace;
    EXPECT_EQ(failure(std::string("(dimupdate ") + row.arguments + ")"), "") << row.arguments;
    EXPECT_EQ(trace.lines(), Texts{row.traced}) << row.arguments;
  }
  EXPECT_EQ(document->database()->save_bytes(), before);
}

TEST_F(WrongArguments, ANameOfNoEntityIsToldInEachFunctionsOwnWay) {
  struct Row {
    const char* call;
    const char* printed;
    Texts traced;
  };
  eval("(setq nobody (cdr (assoc 330 (entget (namedobjdict)))))");  // the owner it does not have
  ASSERT_EQ(eval("(type nobody)"), "ENAME");
  for (const Row& row : {
           Row{"(dimRec (list nobody \"pcgb\") label \"a\" \"1\" nil nil nil)",
               "\n参数格式不对!",
               {L"被标注实体名无效!"}},
           Row{"(dimRec (list pipe \"pcgb\") nobody \"a\" \"1\" nil nil nil)",
               "\n参数格式不对!",
               {L"\n标注实体名到Id失败!"}},
           Row{"(dimGeRec (list nobody \"pcgb\") label)",
               "\n参数格式不对!",
               {L"被标注实体名无效!"}},
           Row{"(dimGeRec (list pipe \"pcgb\") nobody)",
               "\n参数格式不对!",
               {L"\n标注实体名到Id失败!"}},
           Row{"(dimUserRec (list nobody \"pcgb\") \"a\" \"1\")",
               "\n参数格式不对!",
               {L"被标注实体名无效!"}},
           Row{"(dimupdate nobody \"pipe_dia\" \"1\")", "\n转换类型失败!", {}},
           Row{"(dimupdate nobody \"pipe_dia\" \"1\" T 1)", "", {L"前缀值无效!"}},
           Row{"(dimDel nobody \"pcgb\")", "", {}},
           Row{"(dimDel nobody nil)", "", {L"需要指定标注类型名!"}},
           Row{"(dimDelAll nobody)", "", {L"转换实体类型失败!"}},
           Row{"(dimDelAllInfo nobody)", "", {L"转换实体类型失败!"}},
           Row{"(jgbzUpInfo nobody)", "\n检查井实体名无效！", {}},
           Row{"(updateJtDirection nobody)", "", {}},
           Row{"(updatePipeInfo nobody)", "", {}},
           Row{"(updateWellInfo nobody)", "", {}},
       }) {
    const TraceLines trace;
    EXPECT_EQ(failure(row.call), row.printed) << row.call;
    EXPECT_EQ(trace.lines(), row.traced) << row.call;
  }
  const TraceLines trace;
  std::string value;
  EXPECT_EQ(said("(updatedim \"pcgb\" nobody)", value), "");
  EXPECT_EQ(value, "");
  EXPECT_EQ(trace.lines(), Texts{});
  EXPECT_EQ(document->database()->save_bytes(), before);
}

TEST_F(WrongArguments, InAnyMixtureLeaveADrawingThatIsWhole) {
  const std::vector<std::string> values = {"pipe",
                                           "label",
                                           "(e \"30\")",
                                           "(e \"31\")",
                                           "(e \"4A\")",
                                           "(e \"4B\")",
                                           "\"pcgb\"",
                                           "\"bzjg\"",
                                           "\"jt\"",
                                           "\"pipe_len\"",
                                           "\"zh_mc\"",
                                           "\"0\"",
                                           "\"\"",
                                           "\"1e400\"",
                                           "\"\\t标注\\n\"",
                                           "nil",
                                           "T",
                                           "-1",
                                           "1e300",
                                           "'(1.0 2.0 3.0)",
                                           "(ssadd)",
                                           "'(\"a\" . 1)",
                                           "(namedobjdict)",
                                           "(list pipe \"bzjg\")",
                                           "(list (e \"30\") \"pcgb\")",
                                           "(list (list (list nil)))"};
  std::mt19937 random(20);
  const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random() % end); };
  for (int round = 0; round < 4000; ++round) {
    const Function& function = kFunctions[below(kFunctions.size())];
    std::vector<std::string> arguments = function.arguments;
    for (std::string& argument : arguments)
      if (below(4) == 0) argument = values[below(values.size())];
    if (below(8) == 0) arguments.resize(below(arguments.size() + 3), "nil");
    std::string program = call(function, arguments);
    if (below(20) == 0) program = "(entdel " + values[below(6)] + ")";
    if (below(20) == 0) {
      program = "(updatedim " + values[below(values.size())] + " " + values[below(6)] + ")";
    }
    eval(program);
    ASSERT_TRUE(document->database()->open_objects().empty()) << program;
  }
  const Items kept = items();
  const std::string saved = document->database()->save_bytes();
  reopen();
  EXPECT_EQ(items(), kept);
  EXPECT_EQ(document->database()->save_bytes(), saved);
}

TEST_F(WrongArguments, KindsOfEntitiesThatAreNoPipesAreFine) {
  // Any entity can be annotated: a text, a multiline text.
  for (const char* owner : {"41", "4A"}) {
    const std::string list = std::string("(list (e \"") + owner + "\") \"pcgb\")";
    EXPECT_EQ(eval("(dimRec " + list + " label \"pipe_flow\" \"3\" nil nil nil)"), "");
    EXPECT_EQ(eval(std::string("(dimupdate (e \"") + owner + "\") \"pipe_flow\" \"4\")"), "");
    EXPECT_EQ(text("40"), "\"4.00\"");
    EXPECT_EQ(eval(std::string("(dimDelAllInfo (e \"") + owner + "\"))"), "");
  }
}

TEST_F(WrongArguments, AnObjectThatIsNoEntityIsRefused) {
  eval("(setq book (namedobjdict))");
  for (const Function& function : kFunctions) {
    if (function.kinds[0] == "entity") {
      std::vector<std::string> arguments = function.arguments;
      arguments[0] = "book";
      expect_refused(call(function, arguments));
    } else {
      std::vector<std::string> arguments = function.arguments;
      arguments[0] = "(list book \"pcgb\")";
      expect_refused(call(function, arguments));
    }
  }
}

}  // namespace
