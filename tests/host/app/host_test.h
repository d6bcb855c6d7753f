#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/app/console.h"
#include "host/app/host.h"
#include "host/base/trace.h"

/// A host whose command line and alerts are kept. Objects left open fail the test.
class WithHost : public testing::Test {
 protected:
  WithHost() {
    cad::set_console([this](std::string_view text) { printed += text; });
    host.set_alerts([this](std::string_view line) { alerts.emplace_back(line); });
    cad::set_trace_sink([](std::wstring_view line) {
      EXPECT_EQ(line.find(L"objects left open"), std::wstring_view::npos);
    });
  }
  ~WithHost() override {
    // A document that is closed by the test's end is closed while the trace is still heard.
    while (acDocManager->curDocument()) host.close(acDocManager->curDocument());
    cad::set_trace_sink({});
    cad::set_console({});
  }

  AcApDocument* given_drawing(const std::string& dxf, const std::string& name = "plan.dxf") {
    cad::Result<AcApDocument*> opened = host.open_bytes(dxf, name);
    if (!opened) {
      ADD_FAILURE() << opened.error().message();
      return host.new_drawing();
    }
    return *opened;
  }

  /// The value in prin1 form; an error as "error: message".
  std::string eval(const std::string& text) { return eval(acDocManager->curDocument(), text); }
  std::string eval(AcApDocument* document, const std::string& text) {
    const cad::Result<cad::lisp::Value> value = host.eval_string(document, text);
    return value ? cad::Host::printed(*value) : "error: " + value.error().what;
  }

  std::string printed;
  std::vector<std::string> alerts;
  cad::Host host;
};
