#include "host/app/invocation.h"

#include <memory>
#include <utility>
#include <vector>

#include "host/app/aced.h"
#include "host/app/buffer_values.h"
#include "host/lisp/error.h"

namespace cad {
namespace {

Invocation* innermost = nullptr;

/// One chain per depth of calls within calls, kept for the next call of that depth.
ArgumentChain& chain_at(std::size_t depth) {
  static std::vector<std::unique_ptr<ArgumentChain>> chains;
  while (chains.size() <= depth) chains.push_back(std::make_unique<ArgumentChain>());
  return *chains[depth];
}

std::size_t depth = 0;

}  // namespace

Invocation::Invocation(DocumentSession& document_session, short function_code)
    : session(document_session),
      code(function_code),
      arguments(chain_at(depth)),
      outer_(innermost) {
  arguments.clear();
  innermost = this;
  ++depth;
}

Invocation::~Invocation() {
  --depth;
  innermost = outer_;
  if (!outer_) session.selection_sets.end_loans();
}

Invocation* Invocation::current() { return innermost; }

void set_invoke_result(int result) {
  if (innermost) innermost->status = result;
}

namespace {

/// Leaves a result. `make` gives the value, or nothing when there is none to give; a LISP heap that
/// is full ends the same way, for no exception may pass through the module's frames.
template <class Make>
int leave_result(Make&& make) {
  if (!innermost) return RTERROR;
  try {
    std::optional<lisp::Value> value = make(innermost->session.interpreter());
    if (!value) return RTERROR;
    innermost->result = std::move(*value);
    return RTNORM;
  } catch (const lisp::LispError&) {
    return RTERROR;
  }
}

using Made = std::optional<lisp::Value>;

}  // namespace
}  // namespace cad

using cad::lisp::Interpreter;
using cad::lisp::Value;

int acedGetFunCode() {
  const cad::Invocation* call = cad::Invocation::current();
  return call ? call->code : RTERROR;
}

resbuf* acedGetArgs() {
  const cad::Invocation* call = cad::Invocation::current();
  return call ? call->arguments.head() : nullptr;
}

int acedRetVoid() {
  return cad::leave_result([](Interpreter&) { return cad::Made(Value::blank()); });
}

int acedRetNil() {
  return cad::leave_result([](Interpreter&) { return cad::Made(Value()); });
}

int acedRetT() {
  return cad::leave_result([](Interpreter& interp) { return cad::Made(interp.truth(true)); });
}

int acedRetInt(int value) {
  return cad::leave_result([&](Interpreter&) { return cad::Made(Value::integer(value)); });
}

int acedRetReal(ads_real value) {
  return cad::leave_result([&](Interpreter&) { return cad::Made(Value::real(value)); });
}

int acedRetStr(const ACHAR* text) {
  return cad::leave_result(
      [&](Interpreter& interp) { return text ? cad::Made(interp.string(text)) : cad::Made(); });
}

int acedRetPoint(const ads_point point) {
  if (!point) return RTERROR;
  return cad::leave_result([&](Interpreter& interp) {
    return cad::Made(
        interp.list({Value::real(point[0]), Value::real(point[1]), Value::real(point[2])}));
  });
}

int acedRetVal(const resbuf* value) {
  if (!value) return RTERROR;
  return cad::leave_result([&](Interpreter& interp) {
    return cad::value_of_buffer(interp, *value, cad::Invocation::current()->session.selection_sets);
  });
}

int acedRetName(const ads_name name, int type) {
  if (!name || (type != RTENAME && type != RTPICKS)) return RTERROR;
  resbuf buffer{};
  buffer.restype = static_cast<short>(type);
  buffer.resval.rlname[0] = name[0];
  buffer.resval.rlname[1] = name[1];
  return acedRetVal(&buffer);
}

int acedRetList(const resbuf* chain) {
  return cad::leave_result([&](Interpreter& interp) {
    return cad::value_of_chain(interp, chain, cad::Invocation::current()->session.selection_sets);
  });
}
