// Is\pcbzsz.dat: labels of the network calculation.
#include <algorithm>

#include "host/base/numbers.h"
#include "network/label_files.h"
#include "network/list_text.h"
#include "network/values.h"

namespace {

using Settings = DimUtility::tagPcBzSz;

/// By position in the row; null for those that nobody uses.
constexpr const wchar_t* kNames[] = {
    L"calculated pipe length decimals",
    nullptr,
    L"calculated speed decimals",
    L"calculated flow decimals",
    L"calculated head loss per kilometre decimals",
    L"calculated head loss decimals",
    L"calculated free head elevation decimals",
    nullptr,
    L"calculated free head decimals",
    L"calculated loss from the source decimals",
};
static_assert(std::size(kNames) == Settings::kCount);

}  // namespace

void network::fill_calculation_labels(const SettingsLines& file, Settings& settings) {
  constexpr int kNotSet = -1;
  for (int i = 0; i < Settings::kCount; ++i) {
    int& decimals = settings.decimals[i];
    const CString token = file.read() ? KT::Nth(L"(" + file[0] + L")", i, true) : CString();
    if (!token.empty()) decimals = std::max(cad::wtoi(token), kNotSet);
    if (!kNames[i]) continue;
    const CString shown = Gx::Format(L"%d", decimals);
    if (token.empty())
      file.note_default(kNames[i], shown);
    else
      file.note(kNames[i], shown, 0, Gx::Format(L"token %d", i));
  }
}
