#include "host/app/aced.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/app/argument_chain.h"
#include "host/app/buffer_values.h"
#include "host/app/console.h"
#include "host/app/invocation.h"
#include "host/app/modules.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
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

int acedInvoke(const resbuf* arguments, resbuf** result) {
  if (!result) return RTERROR;
  *result = nullptr;
  DocumentSession* const session = DocumentSession::current();
  if (!session || !arguments || arguments->restype != RTSTR || !arguments->resval.rstring)
    return RTERROR;
  Interpreter& interp = session->interpreter();
  try {
    const Value function = interp.variable(arguments->resval.rstring);
    if (function.is_nil()) return RTERROR;
    // In brackets of its own a chain is a list, whatever it holds.
    cad::ChainBuilder bracketed;
    bracketed.add(acutNewRb(RTLB));
    bracketed.add(cad::copy_chain(arguments->rbnext));
    bracketed.add(acutNewRb(RTLE));
    const std::optional<Value> list =
        cad::value_of_chain(interp, bracketed.head(), session->selection_sets);
    if (!list) return RTERROR;
    std::vector<Value> values;
    for (const Value* rest = &*list; rest->is_cons(); rest = &rest->cdr())
      values.push_back(rest->car());
    const cad::Result<Value> value = interp.try_apply(function, values);
    if (!value) {
      cad::print_console(L"\n; error: " + cad::from_utf8(value.error().message()));
      return RTERROR;
    }
    cad::ArgumentChain chain;
    if (!value->is_nil() && !chain.append(*value, session->selection_sets))
      *result = cad::copy_chain(chain.head());
  } catch (const cad::lisp::LispError&) {  // no memory for the arguments
    return RTERROR;
  }
  return RTNORM;
}
