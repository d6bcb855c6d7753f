#include "network/pipe_materials.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/host.h"
#include "host/base/numbers.h"
#include "network/list_text.h"
#include "network/places.h"
#include "network/text_file.h"
#include "network/words.h"

namespace {

constexpr double kUnknown = -1.0;

struct Size {
  double inner = kUnknown;
  double wall = kUnknown;
};

struct Material {
  int label_style = -1;
  std::map<int, Size> sizes;  // by nominal diameter
};

using Materials = std::map<std::wstring, Material, std::less<>>;  // by code

double number_or_unknown(const std::wstring& token) {
  return KT::IsNum(token) ? cad::wtof(token) : kUnknown;
}

/// One line of the table: "管材 CODE NAME STYLE ..." or "规格 CODE NOMINAL INNER WALL".
void read_line(std::wstring_view line, Materials& materials) {
  const std::wstring kind = KT::Nth(line, 0, true);
  const std::wstring code = KT::Nth(line, 1, true);
  if (code.empty()) return;
  if (kind == L"管材") {
    const std::wstring style = KT::Nth(line, 3, true);
    materials[code].label_style = KT::IsNum(style) ? cad::wtoi(style) : -1;
  } else if (kind == L"规格") {
    const std::wstring nominal = KT::Nth(line, 2, true);
    if (!KT::IsNum(nominal)) return;
    materials[code].sizes[cad::wtoi(nominal)] = {number_or_unknown(KT::Nth(line, 3, true)),
                                                 number_or_unknown(KT::Nth(line, 4, true))};
  }
}

Materials read_materials() {
  Materials materials;
  CString folder;
  KT::GetInstallDir(folder);
  CStringArray lines;
  KT::ReadTextFileToStringArray(folder + L"using\\PipeMaterials.dat", lines, true, nullptr,
                                nullptr);
  for (const CString& line : lines) read_line(line, materials);
  return materials;
}

/// The table that was read, and the folder it was read for.
struct Held {
  std::string install_dir;
  Materials materials;
};

std::optional<Held>& held() {
  static std::optional<Held> table;
  return table;
}

const Material* material(const wchar_t* code) {
  if (!code) return nullptr;
  const std::string& folder = cad::host_settings().install_dir;
  if (!held() || held()->install_dir != folder) held() = Held{folder, read_materials()};
  const auto found = held()->materials.find(std::wstring_view(code));
  return found == held()->materials.end() ? nullptr : &found->second;
}

Size size_of(const wchar_t* code, int nominal) {
  const Material* const made = material(code);
  if (!made) return {};
  const auto found = made->sizes.find(nominal);
  return found == made->sizes.end() ? Size() : found->second;
}

}  // namespace

int WDLGX::GetDimH(const wchar_t* code) {
  const Material* const made = material(code);
  return made ? made->label_style : -1;
}

double WDLGX::GetGCNL2(const wchar_t* code, int nominal) { return size_of(code, nominal).inner; }

double WDLGX::GetGCHBH(const wchar_t* code, int nominal) { return size_of(code, nominal).wall; }

void network::forget_pipe_materials() { held().reset(); }
