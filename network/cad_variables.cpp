#include "network/cad_variables.h"

#include <optional>

#include "host/app/session.h"
#include "host/lisp/error.h"
#include "host/lisp/value.h"

namespace {

std::optional<cad::lisp::Value> variable(const wchar_t* name) {
  cad::DocumentSession* const session = cad::DocumentSession::current();
  if (!session || !name) return std::nullopt;
  try {
    return session->variables.get(session->interpreter(), name);
  } catch (const cad::lisp::LispError&) {  // no memory for the value
    return std::nullopt;
  }
}

}  // namespace

bool KT::GetCADVar(const wchar_t* name, int& value) {
  const std::optional<cad::lisp::Value> held = variable(name);
  if (!held || !held->is_integer()) return false;
  value = held->integer();
  return true;
}

bool KT::GetCADStrVar(const wchar_t* name, CString& value) {
  const std::optional<cad::lisp::Value> held = variable(name);
  if (!held || !held->is_string()) return false;
  value = held->text();
  return true;
}
