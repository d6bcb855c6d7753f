#include "host/base/trace.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace cad {
namespace {

class Trace : public testing::Test {
 protected:
  ~Trace() override { set_trace_sink({}); }
  void listen() {
    set_trace_sink([this](std::wstring_view line) { lines.emplace_back(line); });
  }
  std::vector<std::wstring> lines;
};

TEST_F(Trace, IsSilentUntilSomebodyListens) {
  EXPECT_FALSE(tracing());
  trace(L"opened 2F3");
  listen();
  EXPECT_TRUE(tracing());
  EXPECT_TRUE(lines.empty());
}

TEST_F(Trace, HandsEachLineToTheListener) {
  listen();
  trace(L"opened 2F3");
  trace(L"closed 2F3");
  EXPECT_EQ(lines, (std::vector<std::wstring>{L"opened 2F3", L"closed 2F3"}));
}

TEST_F(Trace, AnEmptyListenerSilencesIt) {
  listen();
  set_trace_sink({});
  EXPECT_FALSE(tracing());
  trace(L"opened 2F3");
  EXPECT_TRUE(lines.empty());
}

TEST_F(Trace, AListenerThatTracesDoesNotCallItself) {
  set_trace_sink([this](std::wstring_view line) {
    lines.emplace_back(line);
    trace(L"again");
  });
  trace(L"first");
  trace(L"second");
  EXPECT_EQ(lines, (std::vector<std::wstring>{L"first", L"second"}));
}

TEST_F(Trace, AListenerMayReplaceItself) {
  set_trace_sink([this](std::wstring_view line) {
    lines.emplace_back(line);
    set_trace_sink({});
  });
  trace(L"first");
  trace(L"second");
  EXPECT_EQ(lines, (std::vector<std::wstring>{L"first"}));
}

}  // namespace
}  // namespace cad
