// What the module asks of the host, call by call. The calls defined here stand before the host's
// own for this whole program, so no drawing is open and no LISP runs.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "module/app/entry.h"
#include "module/app/lisp_functions.h"
#include "module/platform/lisp.h"
#include "tests/module/plan.h"

namespace {

using Definitions = std::vector<std::pair<std::wstring, int>>;

/// The host as the test wants it, and what it was asked.
struct FakeHost {
  int refused_code = 0;   ///< acedDefun() refuses it
  int function_code = 0;  ///< of the call to serve
  Definitions defined;
  Definitions undefined;
  int registered = 0;
  std::vector<std::string> calls;
};
FakeHost g_host;

const Definitions kAll = {
    {L"dimRec", 1},          {L"dimGeRec", 2},
    {L"dimupdate", 3},       {L"updatedim", 4},
    {L"dimDel", 5},          {L"t1", 6},
    {L"jgbzUpInfo", 7},      {L"updateJtDirection", 8},
    {L"dimDelAll", 9},       {L"dimUserRec", 10},
    {L"dimDelAllInfo", 11},  {L"getDimLocalStyle", 12},
    {L"updatePipeInfo", 13}, {L"updateWellInfo", 14},
};

}  // namespace

int acedDefun(const ACHAR* name, short code) {
  g_host.defined.emplace_back(name, code);
  return code == g_host.refused_code ? RTERROR : RTNORM;
}

int acedUndef(const ACHAR* name, short code) {
  g_host.undefined.emplace_back(name, code);
  return RTERROR;  // as when a program has taken the name
}

int acedRegFunc(int (*)(), short) {
  ++g_host.registered;
  return RTNORM;
}

int acedGetFunCode() {
  g_host.calls.push_back("code");
  return g_host.function_code;
}

resbuf* acedGetArgs() {
  g_host.calls.push_back("arguments");
  return nullptr;
}

int acedRetVoid() {
  g_host.calls.push_back("void");
  return RTNORM;
}

int acedRetNil() {
  g_host.calls.push_back("nil");
  return RTNORM;
}

namespace {

using Calls = std::vector<std::string>;

class HostCalls : public ::testing::Test {
 protected:
  HostCalls() { g_host = {}; }
  static int invoke(int code) {
    g_host.calls.clear();
    g_host.function_code = code;
    return dim::invokeLispFunction();
  }
  Printed printed;
};

TEST_F(HostCalls, FunctionsAreDefinedUnderTheirCodesInOrder) {
  EXPECT_EQ(dim::loadLispFunctions(), RTNORM);
  EXPECT_EQ(g_host.defined, kAll);
  EXPECT_EQ(g_host.registered, 0) << "every call comes by message";
}

TEST_F(HostCalls, TheFirstThatIsRefusedIsTheLastThatIsTried) {
  for (const int refused : {1, 5, 14}) {
    g_host = {};
    g_host.refused_code = refused;
    EXPECT_EQ(dim::loadLispFunctions(), RTERROR);
    EXPECT_EQ(g_host.defined, Definitions(kAll.begin(), kAll.begin() + refused));
  }
}

TEST_F(HostCalls, EveryFunctionIsUndefinedWhateverTheHostAnswers) {
  EXPECT_EQ(dim::unloadLispFunctions(), RTNORM);
  EXPECT_EQ(g_host.undefined, kAll);
}

TEST_F(HostCalls, ACallFirstGetsNoValueThenIsServed) {
  EXPECT_EQ(invoke(5), RSERR);  // dimDel without arguments
  EXPECT_EQ(g_host.calls, (Calls{"void", "code", "arguments"}));
  EXPECT_EQ(invoke(4), RSRSLT);  // updatedim, which never fails
  EXPECT_EQ(g_host.calls, (Calls{"void", "code", "arguments", "nil"}));
}

TEST_F(HostCalls, CodesThatAreNoneOfOursCallNothing) {
  for (const int code : {-5001, -1, 0, 15, 16, 32767, 65537}) {
    EXPECT_EQ(invoke(code), RTERROR) << code;
    EXPECT_EQ(g_host.calls, (Calls{"void", "code"})) << code;
  }
}

TEST_F(HostCalls, EachMessageHasItsOwnWork) {
  for (int message = AcRx::kNullMsg; message <= AcRx::kEndTabGroupMsg; ++message) {
    g_host = {};
    g_host.refused_code = 3;  // what becomes of the work does not matter
    EXPECT_EQ(acrxEntryPoint(static_cast<AcRx::AppMsgCode>(message), nullptr), AcRx::kRetOK);
    EXPECT_EQ(!g_host.defined.empty(), message == AcRx::kLoadDwgMsg) << message;
    EXPECT_EQ(!g_host.undefined.empty(), message == AcRx::kUnloadDwgMsg) << message;
    EXPECT_EQ(!g_host.calls.empty(), message == AcRx::kInvkSubrMsg) << message;
  }
}

}  // namespace
