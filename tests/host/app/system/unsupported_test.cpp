#include <cstdio>
#include <fstream>

#include "tests/host/app/host_test.h"

namespace {

using Unsupported = WithHost;

TEST_F(Unsupported, NamesTheFunctionAndWhatItNeeds) {
  host.new_drawing();
  EXPECT_EQ(eval("(vla-get-layers doc)"),
            "error: VLA-GET-LAYERS needs ActiveX, which this host does not have");
  EXPECT_EQ(eval("(vlax-get-acad-object)"),
            "error: VLAX-GET-ACAD-OBJECT needs ActiveX, which this host does not have");
  EXPECT_EQ(eval("(vlr-object-reactor nil nil nil)"),
            "error: VLR-OBJECT-REACTOR needs reactors, which this host does not have");
  EXPECT_EQ(eval("(load_dialog \"a.dcl\")"),
            "error: LOAD_DIALOG needs dialog boxes, which this host does not have");
  EXPECT_EQ(eval("(grread T)"),
            "error: GRREAD needs a screen and a pointing device, which this host does not have");
  EXPECT_EQ(eval("(startapp \"notepad\")"),
            "error: STARTAPP needs the right to start programs, which this host does not have");
  EXPECT_EQ(eval("(mapcar 'vlax-ename->vla-object nil)"),
            "error: VLAX-ENAME->VLA-OBJECT needs ActiveX, which this host does not have");
  EXPECT_EQ(eval("(other-function)"), "error: no function definition: OTHER-FUNCTION");
}

TEST_F(Unsupported, MayBeCaughtAndDefined) {
  host.new_drawing();
  EXPECT_EQ(eval("(vl-load-com)"), "nil");
  EXPECT_EQ(eval("(vl-catch-all-error-p (vl-catch-all-apply 'vlax-get-acad-object nil))"), "T");
  EXPECT_EQ(eval("(defun vlax-add (a b) (+ a b)) (vlax-add 1 2)"), "3");
}

using Display = WithHost;

TEST_F(Display, DoesNothingAndAnswersAsTheHost) {
  host.new_drawing();
  EXPECT_EQ(eval("(list (graphscr) (textscr) (textpage) (redraw) (grclear) (initdia))"),
            "(nil nil nil nil nil nil)");
  EXPECT_EQ(eval("(list (grdraw '(0 0) '(1 1) 1) (grvecs '(1 (0 0) (1 1))) (grtext -1 \"a\"))"),
            "(nil nil \"a\")");
  EXPECT_EQ(eval("(cdr (car (vports)))"), "((0.0 0.0) (1.0 1.0))");
}

using StepLimit = WithHost;

TEST_F(StepLimit, SaysHowToRaiseIt) {
  host.set_step_limit(1000);
  host.new_drawing();
  EXPECT_EQ(eval("(while T)"), "error: step limit of 1000 reached; raise it with --step-limit");
}

using Autoload = WithHost;

TEST_F(Autoload, LoadsTheFileWhenACommandIsFirstUsed) {
  const std::string file = testing::TempDir() + "autoloaded.lsp";
  std::ofstream(file)
      << "(setq loads (1+ (cond (loads) (T 0)))) (defun c:first () (list 'first loads))";
  host.new_drawing();
  EXPECT_EQ(eval("(autoload \"" + file + "\" '(\"first\" \"second\"))"), "nil");
  EXPECT_EQ(eval("loads"), "nil");
  EXPECT_EQ(eval("(c:first)"), "(FIRST 1)");
  std::remove(file.c_str());
}

TEST_F(Autoload, AFileWithoutTheCommandIsAnError) {
  const std::string file = testing::TempDir() + "autoloaded_other.lsp";
  std::ofstream(file) << "(defun c:other () 1)";
  host.new_drawing();
  eval("(autoload \"" + file + "\" '(\"first\"))");
  EXPECT_EQ(eval("(c:first)"), "error: no function definition: C:FIRST");
  EXPECT_EQ(eval("(autoload \"nosuch\" '(\"lost\")) (c:lost)"), "error: LOAD failed: \"nosuch\"");
  std::remove(file.c_str());
}

}  // namespace
