#include "network/gx_error.h"

#include <utility>

#include "host/app/console.h"

void CGxError::Report2Pp(int /*icon*/, const CString& text) {
  const CString held = std::exchange(text_, {});
  for (const CString* line : {&held, &text})
    if (!line->empty()) acutPrintf(L"\n%s", line->c_str());
}

void CGxError::Report(const CString& text) {
  if (!text.empty()) acutPrintf(L"\n%s", text.c_str());
}

void CGxError::Report2Cmd(const CString& text) {
  if (!text.empty()) acutPrintf(L"%s", text.c_str());
}
