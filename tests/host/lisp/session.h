#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "host/base/codepage.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"

namespace cad::lisp {

/// An interpreter whose output is collected. Values appear as prin1 prints them, errors as
/// "!message".
class Session : public ::testing::Test {
 protected:
  std::string value_of(std::string_view source) {
    const Result<Value> result = interp.eval_string(source);
    return result ? shown(*result) : "!" + result.error().what;
  }
  static std::string shown(const Value& value) { return to_utf8(to_text(value, Quoting::kPrin1)); }
  std::string taken_output() { return std::exchange(output, {}); }

  static Services collecting(std::string& to) {
    Services services;
    services.output = [&to](std::wstring_view text) { to += to_utf8(text); };
    return services;
  }

  std::string output;
  Interpreter interp{collecting(output)};
};

}  // namespace cad::lisp
