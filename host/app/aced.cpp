#include "host/app/aced.h"

#include <memory>
#include <string_view>

#include "host/app/argument_chain.h"
#include "host/app/buffer_values.h"
#include "host/app/invocation.h"
#include "host/app/modules.h"
#include "host/app/session.h"
#include "host/lisp/error.h"

using cad::DocumentSession;
using cad::Invocation;
using cad::Module;
using cad::Modules;
using cad::lisp::Interpreter;
using cad::lisp::Value;

namespace {

bool is_function(const ACHAR* name, short code) { return name && *name && code >= 0; }

}  // namespace

int acedDefun(const ACHAR* name, short code) {
  const Module* const module = Modules::instance().serving();
  DocumentSession* const session = DocumentSession::current();
  if (!module || !session || !is_function(name, code)) return RTERROR;
  try {
    session->interpreter().define_external(name, code, module->number);
  } catch (const cad::lisp::LispError&) {  // no memory for one more symbol
    return RTERROR;
  }
  return RTNORM;
}

int acedUndef(const ACHAR* name, short code) {
  const Module* const module = Modules::instance().serving();
  DocumentSession* const session = DocumentSession::current();
  if (!module || !session || !is_function(name, code)) return RTERROR;
  return session->interpreter().undefine_external(name, code, module->number) ? RTNORM : RTERROR;
}

int acedRegFunc(int (*function)(), short code) {
  Module* const module = Modules::instance().serving();
  if (!module || code < 0) return RTERROR;
  if (function)
    module->functions.insert_or_assign(code, function);
  else
    module->functions.erase(code);
  return RTNORM;
}

int acedGetSym(const ACHAR* name, resbuf** value) {
  if (!value) return RTERROR;
  *value = nullptr;
  Invocation* const call = Invocation::current();
  if (!call || !name || !*name) return RTERROR;
  const Value held = call->session.interpreter().variable(name);
  if (held.is_nil()) return RTNORM;
  cad::ArgumentChain chain;
  if (chain.append(held, call->session.selection_sets)) return RTERROR;
  *value = cad::copy_chain(chain.head());
  return RTNORM;
}

int acedPutSym(const ACHAR* name, const resbuf* value) {
  Invocation* const call = Invocation::current();
  if (!call || !name || !*name) return RTERROR;
  Interpreter& interp = call->session.interpreter();
  const cad::SelectionSets& sets = call->session.selection_sets;
  try {
    std::optional<Value> held;
    if (!value)
      held = Value();
    else if (value->rbnext)
      held = cad::value_of_chain(interp, value, sets);
    else
      held = cad::value_of_buffer(interp, *value, sets);
    if (!held) return RTERROR;
    interp.set_variable(name, std::move(*held));
  } catch (const cad::lisp::LispError&) {
    return RTERROR;
  }
  return RTNORM;
}
