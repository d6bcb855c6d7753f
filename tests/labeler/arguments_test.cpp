// What the LISP functions take and refuse.

#include "tests/labeler/labelling.h"

namespace {

class LabelArguments : public Labelling {};

TEST_F(LabelArguments, OwnersAreAnEntityAListOrASelectionSet) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  for (const std::string& owners :
       {ename(pipe), "(list " + ename(pipe) + ")", "(ssadd " + ename(pipe) + ")"}) {
    eval("(labelpipe " + owners + ")");
    EXPECT_EQ(texts_of(pipe).size(), 1u) << owners;
    eval("(dimDelAll " + ename(pipe) + ")");
  }
}

TEST_F(LabelArguments, WrongOnesAreAnsweredWithTheUsage) {
  for (const char* call : {"(labelpipe)", "(labelpipe 5)", "(labelpipe '(1 2))",
                           "(labelwell \"x\")", "(labelnetwork 5)", "(labelroute)", "(dimhandler)",
                           "(dimhandler \"\")", "(labelstale 5)", "(labelupdate \"all\")"}) {
    printed.clear();
    EXPECT_EQ(eval(call).rfind("error:", 0), 0u) << call;
    EXPECT_NE(printed.find("\nusage: ("), std::string::npos) << call << printed;
  }
}

TEST_F(LabelArguments, ATypeThatIsNotDrawnIsNamed) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  eval("(labelpipe " + ename(pipe) + " \"GroupDim\")");
  EXPECT_NE(printed.find("\"GroupDim\" is no type of label that can be drawn here"),
            std::string::npos);
  printed.clear();
  eval("(labelpipe " + ename(pipe) + " \"bjbh\")");
  EXPECT_NE(printed.find("\"bjbh\" is no type"), std::string::npos) << "a type of wells";
}

TEST_F(LabelArguments, StakesWithoutIntervalAreRefused) {
  const std::string route = made("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 120.0 0.0 0.0)");
  eval("(labelroute " + ename(route) + " 0)");
  EXPECT_NE(printed.find("has stakes of no interval"), std::string::npos);
  printed.clear();
  eval("(labelroute " + ename(route) + " 0.0001)");
  EXPECT_NE(printed.find("more than 10000 stakes"), std::string::npos);
}

TEST_F(LabelArguments, AnEmptyDrawingHasNothingToLabelOrUpdate) {
  EXPECT_EQ(eval("(labelnetwork)"),
            "((\"drawn\" 0) (\"updated\" 0) (\"crowded\" 0) (\"skipped\" 0))");
  EXPECT_EQ(stale(), "nil");
  EXPECT_EQ(update(), "nil");
}

}  // namespace
