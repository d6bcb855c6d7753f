#include "host/picture/picture.h"

#include "host/base/fold.h"
#include "host/base/progress.h"
#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/gi/draw_order.h"
#include "host/picture/paint.h"
#include "host/picture/scene_draw.h"

namespace cad::picture {
namespace {

constexpr std::uint32_t kPaper = 0xFFFFFF, kScreen = 0x1B1F24;

/// Calls `visit` for every entity of a space. Drawings without block records keep both spaces in
/// one section.
template <class Visit>
void for_each_entity(Drawing& drawing, AcDbObjectId space, Visit&& visit) {
  const std::uint64_t record =
      space.isNull() ? drawing.model_space() : static_cast<std::uint64_t>(space.handle());
  if (record != 0) {
    const std::vector<AcDbObjectId> entities = entities_in_draw_order(drawing, record);
    ProgressMeter meter("drawing", entities.size());
    for (const AcDbObjectId entity : entities) {
      meter.step();
      visit(entity);
    }
    return;
  }
  constexpr int kInPaper = 67;
  for (Stub* stub = drawing.first_entity(); stub; stub = drawing.entity_behind(*stub))
    if (!drawing.is_sub_entity(*stub) &&
        EntityFields(drawing.bytes_of(*stub), drawing.dialect()).integer(kInPaper) == 0)
      visit(AcDbObjectId(stub));
}

std::unique_ptr<Painter> painter_for(Format format, const Sheet& sheet) {
  switch (format) {
    case Format::kPng:
      return make_png_painter(sheet);
    case Format::kPdf:
      return make_pdf_painter(sheet);
    case Format::kSvg:
      break;
  }
  return make_svg_painter(sheet);
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : many);
}

}  // namespace

std::optional<Format> format_of(std::string_view path) {
  constexpr std::pair<std::string_view, Format> kFormats[] = {
      {".svg", Format::kSvg}, {".png", Format::kPng}, {".pdf", Format::kPdf}};
  for (const auto& [extension, format] : kFormats) {
    if (path.size() > extension.size() &&
        equal_no_case(path.substr(path.size() - extension.size()), extension))
      return format;
  }
  return std::nullopt;
}

Result<Picture> make_picture(AcDbDatabase& database, Format format, const Options& options) {
  Drawing& drawing = database.drawing();
  SceneDraw draw(drawing, options.layer_shown);
  EntityDrawer drawer(draw);
  Picture picture;
  for_each_entity(drawing, options.space, [&](AcDbObjectId entity) {
    ++picture.entities;
    drawer.draw(entity);
  });
  picture.gaps = drawer.gaps();
  Scene& scene = draw.scene();
  picture.bad_coordinates = scene.skipped;
  picture.empty_texts = scene.empty_texts;
  const Frame frame = frame_of(scene, options.window, options.size);
  for (const AcDbObjectId entity : options.highlights) {
    scene.highlights.push_back(scene.items.size());
    drawer.draw(entity);
  }

  Sheet sheet;
  sheet.width = frame.view.width;
  sheet.height = frame.view.height;
  sheet.background = options.dark ? kScreen : kPaper;
  sheet.title = options.title;
  sheet.description = "Drawing of " + counted(picture.entities, "entity", "entities") + '.';
  const std::unique_ptr<Painter> painter = painter_for(format, sheet);
  picture.blank = !paint(scene, frame.view, sheet.background, *painter);
  picture.size = {sheet.width, sheet.height};
  picture.far_away = frame.far_away;
  Result<std::string> file = painter->finish();
  if (!file) return file.error();
  picture.file = std::move(*file);
  return picture;
}

}  // namespace cad::picture
