// Which items composite labels show, and templates of labels.
#include <algorithm>
#include <span>
#include <utility>

#include "module/style/composite_pieces.h"
#include "module/style/style.h"

namespace {

constexpr wchar_t kKey[] = L"SwBzGd";
constexpr wchar_t kAllItems[] = LR"((("管径" "Y") ("管长" "Y") ("坡度" "Y") ("水流方向" "Y")))";
constexpr wchar_t kFlowDirection[] = L"水流方向";

void trim(CString& text) {
  constexpr wchar_t kBlanks[] = L" \t\r\n\v\f\u3000";
  text.erase(std::min(text.find_last_not_of(kBlanks) + 1, text.size()));
  text.erase(0, text.find_first_not_of(kBlanks));
}

}  // namespace

int CDimStyle::ReadDnDimSet(std::vector<CString>& items, const CString& key) {
  items.clear();
  if (key.empty()) return 0;
  const CString value = Instance().GetProfileStringW(L"GxBz", key.c_str(), kAllItems);
  network::ListReader list(value, true);
  for (CString item = list.next(); !item.empty(); item = list.next()) {
    CString name = KT::Nth(item, 0, true);
    if (!name.empty() && KT::Nth(item, 1, true) == L"Y") items.push_back(std::move(name));
  }
  return items.empty() ? 0 : 1;
}

int CDimStyle::GetDnOrderDims(CStringArray& items, const CString& prefix) const {
  items.clear();
  CString key = prefix;
  dim::make_upper_case(key);
  if (!key.empty()) key += L"_";
  const auto order = m_itemOrders.find(key + kKey);
  if (order == m_itemOrders.end()) return 0;
  const std::vector<CString>& shown = order->second;
  const bool ly = GetLocalStyle() == LY;
  const tdfGdcdpdbz& s = m_pipeLabels;
  const CString* const words[] = {&s.compositeSlot1, &s.compositeSlot2, &s.compositeSlot3,
                                  &s.compositeSlot4, &s.compositeSlot5};
  for (const CString* const word : std::span(words).first(ly ? 5 : 3)) {
    const dim::Slot slot = dim::slot_of(*word, ly);
    if (dim::names_item(shown, slot)) items.emplace_back(dim::kSlotWords[slot].item);
  }
  if (std::find(shown.begin(), shown.end(), kFlowDirection) != shown.end())
    items.emplace_back(kFlowDirection);
  return 1;
}

void CDimStyle::AnalyseSettingStr(CString& text, std::vector<CString>& pieces) {
  trim(text);
  std::size_t at = 0;
  for (;;) {
    const std::size_t open = text.find(L'{', at);
    const std::size_t close = open == text.npos ? text.npos : text.find(L'}', open);
    if (close == text.npos) break;  // no further field; one that does not end is text
    // Kept: `at` is the brace before, so at the start the first character of the text is lost.
    // Test: Template.TheFirstCharacterIsLostUnlessItIsABrace
    if (open > at + 1) pieces.push_back(text.substr(at + 1, open - at - 1));
    pieces.push_back(text.substr(open + 1, close - open - 1));
    at = close;
  }
  if (at != text.size()) pieces.push_back(text.substr(at + 1));
}
