#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

Value fn_doc_set(Call& call) {
  call.symbol(0).value = call.arg(1);
  return call.arg(1);
}
Value fn_doc_ref(Call& call) { return call.symbol(0).value; }

// Programs are not compiled into applications here, so there is nothing to import or export and
// all their functions are the document's already.
Value fn_nothing(Call&) { return Value(); }

// clang-format off
constexpr Builtin kNamespaceFunctions[] = {
    {"vl-doc-set",        2, 2,     fn_doc_set, "(vl-doc-set symbol value)", "sets a variable of the document; the value"},
    {"vl-doc-ref",        1, 1,     fn_doc_ref, "(vl-doc-ref symbol)",       "the value of a variable of the document"},
    {"vl-doc-export",     1, 1,     fn_nothing, "(vl-doc-export symbol)",    "does nothing: the document has every function"},
    {"vl-doc-import",     1, kMany, fn_nothing, "(vl-doc-import from [symbol ...])", "does nothing: the document has every function"},
    {"vl-arx-import",     1, kMany, fn_nothing, "(vl-arx-import from ...)",  "does nothing: functions of modules are there once loaded"},
    {"vl-list-loaded-vlx", 0, 0,    fn_nothing, "(vl-list-loaded-vlx)",      "nil: there are no compiled applications"},
    {"vl-list-exported-functions", 0, 1, fn_nothing, "(vl-list-exported-functions [name])", "nil: there are no compiled applications"},
    {"vl-vlx-loaded-p",   1, 1,     fn_nothing, "(vl-vlx-loaded-p name)",    "nil: there are no compiled applications"},
};
// clang-format on

}  // namespace

std::span<const Builtin> namespace_functions() { return kNamespaceFunctions; }

}  // namespace cad::lisp
