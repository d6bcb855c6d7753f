// There is no screen: what only changes the picture does nothing and answers as the host does.

#include "host/app/builtin_tables.h"
#include "host/app/session.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Value;

Value fn_nothing(Call&) { return Value(); }

Value fn_first_argument(Call& call) { return call.arg(0); }

/// The one viewport, which fills the screen that is not there.
Value fn_vports(Call& call) {
  lisp::Interpreter& interp = call.interp();
  const Value number = DocumentSession::of(call).variables.get(interp, L"CVPORT");
  const Value zero = Value::real(0), one = Value::real(1);
  return interp.list({interp.list({number.is_integer() ? number : Value::integer(2),
                                   interp.list({zero, zero}), interp.list({one, one})})});
}

/// The text box of the status line shows nothing; the text is the value.
Value fn_grtext(Call& call) { return call.arg(1); }

constexpr lisp::Builtin kDisplayFunctions[] = {
    // name, arguments, function, usage, help
    {"graphscr", 0, 0, fn_nothing, "(graphscr)", "does nothing: there is no screen"},
    {"textscr", 0, 0, fn_nothing, "(textscr)", "does nothing: there is no screen"},
    {"textpage", 0, 0, fn_nothing, "(textpage)", "does nothing: there is no screen"},
    {"redraw", 0, 2, fn_nothing, "(redraw [entity [mode]])", "does nothing: there is no screen"},
    {"grclear", 0, 0, fn_nothing, "(grclear)", "does nothing: there is no screen"},
    {"grdraw", 3, 4, fn_nothing, "(grdraw p q colour [highlight])",
     "does nothing: there is no screen"},
    {"grvecs", 1, 2, fn_nothing, "(grvecs vectors [matrix])", "does nothing: there is no screen"},
    {"grtext", 0, 3, fn_grtext, "(grtext [box text [highlight]])",
     "does nothing: there is no screen; the text"},
    {"setview", 1, 2, fn_first_argument, "(setview view [viewport])",
     "does nothing: there is no screen; the view"},
    {"vports", 0, 0, fn_vports, "(vports)", "the one viewport: number, lower left, upper right"},
    {"tablet", 1, 6, fn_nothing, "(tablet code ...)", "nil: there is no tablet"},
    {"initdia", 0, 1, fn_nothing, "(initdia [flag])", "does nothing: there are no dialog boxes"},
    {"menugroup", 1, 1, fn_nothing, "(menugroup name)", "nil: no menu is loaded"},
    {"setfunhelp", 1, 4, fn_first_argument, "(setfunhelp command [file [topic [call]]])",
     "does nothing: there is no help window; the command"},
};

}  // namespace

std::span<const lisp::Builtin> display_functions() { return kDisplayFunctions; }

}  // namespace cad
