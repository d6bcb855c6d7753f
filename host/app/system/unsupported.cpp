#include "host/app/system/unsupported.h"

#include "host/app/builtin_tables.h"
#include "host/lisp/error.h"
#include "host/lisp/names.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Value;

/// The middle of a message: NAME needs ..., which this host does not have.
struct Need {
  std::wstring_view prefix;
  std::wstring_view what;
};
constexpr Need kPrefixes[] = {
    {L"VLA-", L"ActiveX"},
    {L"VLAX-", L"ActiveX"},
    {L"VLR-", L"reactors"},
    {L"ACET-", L"the Express Tools"},
    {L"DOS_", L"an extension of the operating system's functions"},
};

std::wstring message(const std::wstring& name, std::wstring_view what) {
  return name + L" needs " + std::wstring(what) + L", which this host does not have";
}

[[noreturn]] Value refuse(Call& call, std::wstring_view what) {
  lisp::raise(message(lisp::symbol_name(std::string_view(call.row().name)), what));
}

Value fn_dialog(Call& call) { refuse(call, L"dialog boxes"); }
Value fn_pointer(Call& call) { refuse(call, L"a screen and a pointing device"); }
Value fn_program(Call& call) { refuse(call, L"the right to start programs"); }
Value fn_browser(Call& call) { refuse(call, L"a browser window"); }

constexpr char kNoDialog[] = "fails: there are no dialog boxes";

// clang-format off
constexpr lisp::Builtin kUnsupportedFunctions[] = {
    {"load_dialog",    1, 1, fn_dialog, "(load_dialog file)",                kNoDialog},
    {"unload_dialog",  1, 1, fn_dialog, "(unload_dialog id)",                kNoDialog},
    {"new_dialog",     2, 4, fn_dialog, "(new_dialog name id [action [point]])", kNoDialog},
    {"start_dialog",   0, 0, fn_dialog, "(start_dialog)",                    kNoDialog},
    {"done_dialog",    0, 1, fn_dialog, "(done_dialog [status])",            kNoDialog},
    {"term_dialog",    0, 0, fn_dialog, "(term_dialog)",                     kNoDialog},
    {"action_tile",    2, 2, fn_dialog, "(action_tile key action)",          kNoDialog},
    {"get_tile",       1, 1, fn_dialog, "(get_tile key)",                    kNoDialog},
    {"set_tile",       2, 2, fn_dialog, "(set_tile key value)",              kNoDialog},
    {"get_attr",       2, 2, fn_dialog, "(get_attr key attribute)",          kNoDialog},
    {"mode_tile",      2, 2, fn_dialog, "(mode_tile key mode)",              kNoDialog},
    {"client_data_tile", 2, 2, fn_dialog, "(client_data_tile key data)",     kNoDialog},
    {"start_list",     1, 3, fn_dialog, "(start_list key [operation [index]])", kNoDialog},
    {"add_list",       1, 1, fn_dialog, "(add_list text)",                   kNoDialog},
    {"end_list",       0, 0, fn_dialog, "(end_list)",                        kNoDialog},
    {"start_image",    1, 1, fn_dialog, "(start_image key)",                 kNoDialog},
    {"end_image",      0, 0, fn_dialog, "(end_image)",                       kNoDialog},
    {"fill_image",     5, 5, fn_dialog, "(fill_image x y width height colour)", kNoDialog},
    {"vector_image",   5, 5, fn_dialog, "(vector_image x1 y1 x2 y2 colour)", kNoDialog},
    {"slide_image",    5, 5, fn_dialog, "(slide_image x y width height slide)", kNoDialog},
    {"dimx_tile",      1, 1, fn_dialog, "(dimx_tile key)",                   kNoDialog},
    {"dimy_tile",      1, 1, fn_dialog, "(dimy_tile key)",                   kNoDialog},
    {"acad_colordlg",  1, 2, fn_dialog, "(acad_colordlg colour [flag])",     kNoDialog},
    {"acad_truecolordlg", 1, 3, fn_dialog, "(acad_truecolordlg colour [flag [bylayer]])", kNoDialog},
    {"acad_helpdlg",   2, 2, fn_dialog, "(acad_helpdlg file topic)",         kNoDialog},
    {"grread",         0, 3, fn_pointer, "(grread [track [bits [cursor]]])", "fails: there is no pointing device"},
    {"startapp",       1, 2, fn_program, "(startapp program [file])",        "fails: no programs are started"},
    {"showhtmlmodalwindow", 1, 1, fn_browser, "(showhtmlmodalwindow address)", "fails: there is no browser window"},
};
// clang-format on

}  // namespace

std::wstring reason_of_missing(std::wstring_view name) {
  for (const Need& row : kPrefixes)
    if (name.starts_with(row.prefix)) return message(std::wstring(name), row.what);
  return {};
}

std::span<const lisp::Builtin> unsupported_functions() { return kUnsupportedFunctions; }

}  // namespace cad
