#include "network/cad_variables.h"

#include "tests/host/app/host_test.h"

namespace {

class CadVariables : public WithHost {};

TEST_F(CadVariables, AreThoseOfTheCurrentDrawing) {
  host.new_drawing();
  int value = 7;
  EXPECT_TRUE(KT::GetCADVar(L"useri4", value));
  EXPECT_EQ(value, 0);
  eval("(setvar \"USERI4\" 3)");
  EXPECT_TRUE(KT::GetCADVar(L"UserI4", value));
  EXPECT_EQ(value, 3);
  CString text;
  EXPECT_TRUE(KT::GetCADStrVar(L"clayer", text));
  EXPECT_EQ(text, L"0");
}

TEST_F(CadVariables, AnUnknownOneLeavesTheValue) {
  host.new_drawing();
  int value = 7;
  CString text = L"old";
  EXPECT_FALSE(KT::GetCADVar(L"nothing", value));
  EXPECT_FALSE(KT::GetCADVar(L"clayer", value)) << "a text";
  EXPECT_FALSE(KT::GetCADVar(nullptr, value));
  EXPECT_FALSE(KT::GetCADStrVar(L"useri4", text));
  EXPECT_EQ(value, 7);
  EXPECT_EQ(text, L"old");
}

TEST_F(CadVariables, WithoutADrawingThereAreNone) {
  int value = 7;
  EXPECT_FALSE(KT::GetCADVar(L"useri4", value));
  EXPECT_EQ(value, 7);
}

}  // namespace
