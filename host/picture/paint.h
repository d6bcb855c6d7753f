#pragma once

#include "host/picture/frame.h"
#include "host/picture/painter.h"

namespace cad::picture {

/// Paints a scene. `background` rules what colour 7 and masks look like. False when nothing of the
/// scene is in the view.
bool paint(const Scene& scene, const View& view, std::uint32_t background, Painter& painter);

}  // namespace cad::picture
