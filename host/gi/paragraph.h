#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/font/mtext_layout.h"
#include "host/gi/entity_drawer.h"

namespace cad {

/// A text of several lines with formatting codes, as MTEXT and MULTILEADER hold it, and where.
struct Paragraph {
  AcGePoint3d origin;  ///< its insertion point
  AcGeVector3d x;      ///< along its lines, a unit vector
  AcGeVector3d y;      ///< upwards
  std::wstring contents;
  font::MTextShape shape;

  struct Background {
    int flags = 0;  ///< 1 filled with `color`, 2 with the colour of the window, 16 framed
    int color = 7;
    std::optional<std::uint32_t> true_color;
    double scale = 1.5;  ///< the box is larger than the text by so many heights less one
  } background;
};

void draw_paragraph(const Paragraph& paragraph, const TextStyle& style, EntityDrawer& drawer);

}  // namespace cad
