// Draws one of everything and saves it, for a reader that shares no code with the host.
//     draw_sample INSTALL-DIR OUT.dxf

#include <cstdio>

#include "host/app/console.h"
#include "host/app/host.h"
#include "module/draw/draw.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  cad::host_settings().install_dir = argv[1];
  cad::Host host;
  AcApDocument* const document = host.new_drawing();
  CDimDraw draw(500, L"ZY-标注");
  for (int across = 0; across < 3; ++across)
    for (int up = 0; up < 4; ++up)
      draw.DrawTextW(L"DN300-管 " + std::to_wstring(across) + std::to_wstring(up),
                     {100.0 * across, 100.0 * up, 0}, static_cast<AcDb::TextHorzMode>(across),
                     static_cast<AcDb::TextVertMode>(up), 0.5, 0, -1);
  draw.SetDrawColor(1);
  draw.DrawLine({0, -10, 0}, {50, -10, 0}, -1);
  draw.DrawLine({0, -20, 0}, {50, -20, 0}, 0.5);
  draw.DrawPl({{0, -30, 0}, {20, -30, 0}, {20, -40, 0}}, -1);
  draw.Arrow({10, -50, 0}, {1, 1, 0});
  draw.SetDrawColor(256);
  draw.SetReferenceDirection({0, 0, 0}, 3.14159265358979, 0);
  draw.DrawMBText(L"flipped", {10, 60, 0}, 0, 0, 1);
  draw.LeftInsertArrow({10, 70, 0}, {1, 0, 0}, false, nullptr);
  draw.MidInsertArrow({10, 80, 0}, {0, 1, 0}, true, L"ZY-箭头", 0);
  draw.InsertArrowONline({10, 90, 0}, {1, 0, 0}, false, nullptr, 2);
  const cad::Status saved = host.save(document, argv[2]);
  if (!saved) std::fprintf(stderr, "%s\n", saved.error().message().c_str());
  return saved && draw.GetAllDimEntityId().length() == 20 ? 0 : 1;
}
