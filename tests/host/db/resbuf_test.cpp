#include "host/db/resbuf.h"

#include <gmock/gmock.h>

#include <cwchar>

#include "host/base/codepage.h"

#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;

TEST(BuildList, TakesEveryTypeOfValue) {
  const ads_real point[] = {1, 2, 3};
  const ads_name name = {0, 0};
  const cad::ResbufChain chain(acutBuildList(
      RTREAL, 2.5, RTANG, 0.5, RTORINT, 1.5, RTSHORT, -7, RTLONG, 70000, RTSTR, L"text", RTPOINT,
      point, RT3DPOINT, point, RTENAME, name, RTPICKS, name, 1, L"group", 5, L"2F", 10, point, 40,
      0.5, 70, 3, 90, -3, 160, std::int64_t{1} << 40, 290, 1, 330, name, 1000, L"x", 1005, L"3A",
      1010, point, 1040, 1.0, 1070, 7, 1071, 7, -1, name, RTNONE));
  EXPECT_THAT(shown(chain.get()),
              ElementsAre("5001 2.5", "5004 0.5", "5008 1.5", "5003 -7", "5010 70000", "5005 text",
                          "5002 1.0;2.0;0.0;", "5009 1.0;2.0;3.0;", "5006 0", "5007 0", "1 group",
                          "5 2F", "10 1.0;2.0;3.0;", "40 0.5", "70 3", "90 -3", "160 1099511627776",
                          "290 1", "330 0", "1000 x", "1005 3A", "1010 1.0;2.0;3.0;", "1040 1.0",
                          "1070 7", "1071 7", "-1 0"));
}

TEST(BuildList, SomeTypesStandAlone) {
  const cad::ResbufChain chain(
      acutBuildList(RTLB, RTLE, RTDOTE, RTNIL, RTT, RTVOID, -3, RTSTR, L"end", 0));
  EXPECT_THAT(shown(chain.get()),
              ElementsAre("5016 ", "5017 ", "5018 ", "5019 ", "5021 ", "5014 ", "-3 ", "5005 end"));
}

TEST(BuildList, GroupZeroIsWrittenByItsOwnName) {
  const cad::ResbufChain chain(acutBuildList(RTDXF0, L"LINE", 8, L"0", 0));
  EXPECT_THAT(shown(chain.get()), ElementsAre("0 LINE", "8 0"));
}

TEST(BuildList, OperatorsOfAFilterAreTexts) {
  const cad::ResbufChain chain(acutBuildList(-4, L"<OR", RTDXF0, L"LINE", -4, L"OR>", 0));
  EXPECT_THAT(shown(chain.get()), ElementsAre("-4 <OR", "0 LINE", "-4 OR>"));
}

TEST(BuildList, EndsAtZeroOrNone) {
  for (const int end : {0, int{RTNONE}}) {
    const cad::ResbufChain chain(acutBuildList(1, L"a", end, 1, L"b", 0));
    EXPECT_THAT(shown(chain.get()), ElementsAre("1 a"));
    EXPECT_EQ(acutBuildList(end), nullptr);
  }
}

TEST(BuildList, AnUnknownTypeGivesNothing) {
  EXPECT_EQ(acutBuildList(1, L"a", 4999, 3, 0), nullptr);
  EXPECT_EQ(acutBuildList(RTRESBUF, nullptr, 0), nullptr);
}

TEST(BuildList, CopiesTextsAndChunks) {
  wchar_t text[] = L"text";
  char bytes[] = {1, 2};
  const ads_binary chunk = {2, bytes};
  const cad::ResbufChain chain(acutBuildList(1, text, 310, &chunk, 0));
  text[0] = L'X';
  bytes[0] = 9;
  EXPECT_THAT(shown(chain.get()), ElementsAre("1 text", "310 1,2,"));
}

TEST(BuildList, ANullTextIsEmpty) {
  const cad::ResbufChain chain(acutBuildList(RTSTR, static_cast<const ACHAR*>(nullptr), 0));
  EXPECT_STREQ(chain->resval.rstring, L"");
}

TEST(BuildList, LongAndShortTextsAreWhole) {
  for (std::size_t length : {0, 1, 22, 23, 24, 25, 63, 64, 65, 100000}) {
    const std::wstring text(length, L'管');
    const cad::ResbufChain chain(acutBuildList(RTSTR, text.c_str(), 0));
    EXPECT_EQ(chain->resval.rstring, text);
    const cad::ResbufChain copy(cad::copy_chain(chain.get()));
    EXPECT_EQ(copy->resval.rstring, text);
    EXPECT_NE(copy->resval.rstring, chain->resval.rstring);
  }
}

TEST(Buffers, ReleasingNothingIsFine) { EXPECT_EQ(acutRelRb(nullptr), RTNORM); }

TEST(Buffers, ANewOneIsZeroAndAlone) {
  for (const int type : {1, 10, 40, 70, 90, 160, 310, 330, int{RTSTR}, int{RTNONE}}) {
    const cad::ResbufChain buffer(acutNewRb(type));
    EXPECT_EQ(buffer->restype, type);
    EXPECT_EQ(buffer->rbnext, nullptr);
    EXPECT_EQ(buffer->resval.rpoint[0], 0.0);
    EXPECT_EQ(buffer->resval.rpoint[2], 0.0);
    EXPECT_EQ(buffer->resval.rstring, nullptr);
  }
}

TEST(Buffers, AChainMayBeCutAndBothHalvesReleased) {
  const std::wstring longer(100, L'x');
  resbuf* chain = acutBuildList(1, L"a", 1, longer.c_str(), 1, L"c", 1, longer.c_str(), 0);
  resbuf* second = chain->rbnext->rbnext;
  chain->rbnext->rbnext = nullptr;
  EXPECT_EQ(shown(chain).size(), 2u);
  EXPECT_EQ(acutRelRb(chain), RTNORM);
  EXPECT_THAT(shown(second), ElementsAre("1 c", "1 " + std::string(100, 'x')));
  EXPECT_EQ(acutRelRb(second), RTNORM);
}

TEST(Buffers, BuffersMayBeTakenOutOfAChainAndPutIn) {
  const cad::ResbufChain chain(acutBuildList(1, L"a", 1, L"b", 1, L"d", 0));
  resbuf* taken = chain->rbnext;
  chain->rbnext = taken->rbnext;
  taken->rbnext = nullptr;
  acutRelRb(taken);
  resbuf* fresh = acutBuildList(1, L"c", 0);
  fresh->rbnext = chain->rbnext;
  chain->rbnext = fresh;
  EXPECT_THAT(shown(chain.get()), ElementsAre("1 a", "1 c", "1 d"));
}

TEST(Buffers, ATextMayBeReplacedByANewString) {
  const std::wstring longer(100, L'x');
  for (const wchar_t* before : {L"short", longer.c_str()}) {
    for (const wchar_t* after : {L"", L"new", longer.c_str()}) {
      const cad::ResbufChain chain(acutBuildList(1, before, 1, L"next", 0));
      // Callers free a text that was made apart; one that the buffer holds itself goes with it.
      ACHAR* old = chain->resval.rstring;
      chain->resval.rstring = acutNewString(after);
      EXPECT_EQ(cad::to_utf8(chain->resval.rstring), cad::to_utf8(after));
      if (std::wcslen(before) > 50) acutDelString(old);
      EXPECT_STREQ(chain->rbnext->resval.rstring, L"next");
    }
  }
}

TEST(Buffers, TheTextOfABufferMayBeFreedBeforeAnotherIsHungIn) {
  const std::wstring longer(100, L'x');
  for (const wchar_t* before : {L"", L"short", longer.c_str()}) {
    const cad::ResbufChain chain(acutBuildList(1, before, 1, L"next", 0));
    acutDelString(chain->resval.rstring);
    EXPECT_EQ(chain->resval.rstring, nullptr);
    chain->resval.rstring = acutNewString(L"another");
    EXPECT_STREQ(chain->resval.rstring, L"another");
    acutDelString(chain->resval.rstring);
  }
}

TEST(Buffers, ATextHungIntoANewBufferGoesWithIt) {
  const cad::ResbufChain chain(acutNewRb(RTSTR));
  chain->resval.rstring = acutNewString(L"hung in");
  EXPECT_STREQ(chain->resval.rstring, L"hung in");
}

TEST(Strings, AreCopiedAndFreed) {
  ACHAR* text = acutNewString(L"abc");
  EXPECT_STREQ(text, L"abc");
  acutDelString(text);
  EXPECT_EQ(text, nullptr);
  acutDelString(text);
  text = acutNewString(nullptr);
  EXPECT_STREQ(text, L"");
  acutDelString(text);
}

TEST(ChainBuilder, AppendsChainsAndHandsThemOver) {
  cad::ChainBuilder chain;
  EXPECT_EQ(chain.release(), nullptr);
  chain.add(nullptr);
  chain.add(acutBuildList(1, L"a", 1, L"b", 0));
  chain.add(cad::new_string_buffer(1, L"c"));
  EXPECT_THAT(shown(chain.head()), ElementsAre("1 a", "1 b", "1 c"));
  const cad::ResbufChain released(chain.release());
  EXPECT_EQ(chain.head(), nullptr);
  EXPECT_EQ(shown(released.get()).size(), 3u);
}

TEST(Buffers, AReusedOneIsZeroToo) {
  for (int round = 0; round < 3; ++round) {
    cad::ChainBuilder chain;
    for (int i = 0; i < 20000; ++i) chain.add(cad::new_string_buffer(1, L"some text"));
  }
  const cad::ResbufChain buffer(acutNewRb(40));
  EXPECT_EQ(buffer->resval.rreal, 0.0);
}

}  // namespace
