#include "network/scale.h"

#include "network/cad_variables.h"

int WDLGX::GetCTBL() {
  constexpr int kUsual = 500;
  int ratio = 0;
  return KT::GetCADVar(L"USERI5", ratio) && ratio > 0 ? ratio : kUsual;
}
