// Is\gdbzfsk.dat: forms of diameter labels.
#include "module/platform/pipe_library.h"
#include "module/platform/text.h"
#include "module/style/style.h"

int CDimStyle::ReadGdbzfsk(std::vector<tdfDnDimTypeItem>& styles) {
  const network::SettingsLines file(L"Is\\gdbzfsk.dat");
  if (!file.read_or_complain(L"管径标注设置文件:%s不能找到", L"读管径标注设置文件:%s失败!")) {
    file.note_default(L"diameter style", L"");
    return 0;
  }
  styles.clear();
  for (std::size_t line = 0; line < file.size(); ++line) {
    const CString& text = file[line];
    styles.push_back({KT::Nth(text, 0, true), KT::Nth(text, 1, true), KT::Nth(text, 2, true),
                      KT::Nth(text, 3, true), KT::Nth(text, 4, true)});
    file.note(dim::format_text(L"diameter style %d", static_cast<int>(line)), text, line, L"");
  }
  return 1;
}
