#pragma once

#include <optional>

#include "host/app/argument_chain.h"
#include "host/app/session.h"

namespace cad {

/// One call of a module's function by LISP, while it lasts: what the aced calls read and fill.
class Invocation {
 public:
  Invocation(DocumentSession& session, short code);
  ~Invocation();
  Invocation(const Invocation&) = delete;
  Invocation& operator=(const Invocation&) = delete;
  /// The innermost call under way; null when there is none.
  static Invocation* current();

  DocumentSession& session;
  const short code;
  ArgumentChain& arguments;
  lisp::Value result;         // the last acedRet call wins
  std::optional<int> status;  // of set_invoke_result()

 private:
  Invocation* const outer_;
};

}  // namespace cad
