#include "module/app/local_style.h"

#include "module/platform/lisp.h"
#include "module/style/style.h"

namespace dim {
namespace {

struct StyleName {
  LocalStyle style;
  const wchar_t* name;
};
constexpr StyleName kStyleNames[] = {{CD, L"CD"}, {GB, L"GB"}, {TJ, L"TJ"}, {BJ, L"BJ"}};

}  // namespace

int getDimLocalStyle() {
  const LocalStyle style = CDimStyle::Instance().GetLocalStyle();
  for (const StyleName& row : kStyleNames) {
    if (row.style == style) return acedRetStr(row.name);
  }
  return RTERROR;
}

}  // namespace dim
