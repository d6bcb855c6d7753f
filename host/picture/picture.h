#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/result.h"
#include "host/db/object_id.h"
#include "host/gi/entity_drawer.h"
#include "host/picture/frame.h"

class AcDbDatabase;

/// Pictures of drawings, seen from above.
///
///     cad::picture::Options options;
///     auto picture = cad::picture::make_picture(database, cad::picture::Format::kSvg, options);
///     if (!picture) return picture.error();
///     write(picture->file);
namespace cad::picture {

enum class Format { kSvg, kPng, kPdf };
/// By a file's extension, letter case ignored.
std::optional<Format> format_of(std::string_view path);

struct Options {
  std::optional<PictureSize> size;  ///< pixels; else the longer side has 1600
  std::optional<Box> window;        ///< world coordinates; else all of the drawing
  /// Says by its name whether a layer is drawn that is on and thawed; empty: all are.
  std::function<bool(std::wstring_view)> layer_shown;
  std::vector<AcDbObjectId> highlights;  ///< drawn again at the end, marked
  bool dark = false;                     ///< background black, colour 7 white
  AcDbObjectId space;                    ///< block record of the space to draw; null: model space
  std::string title;                     ///< UTF-8
};

struct Picture {
  std::string file;  ///< its bytes
  PictureSize size;
  std::size_t entities = 0;  ///< of the space, drawn or not
  DrawingGaps gaps;
  std::size_t bad_coordinates = 0;  ///< pieces whose coordinates are no numbers, or absurd
  std::size_t empty_texts = 0;      ///< texts without height
  std::size_t far_away = 0;         ///< pieces too far away to be in the frame
  bool blank = false;               ///< nothing at all is seen
};

/// The error says that the picture is too large to be made. Equal drawings and options give equal
/// bytes.
Result<Picture> make_picture(AcDbDatabase& database, Format format, const Options& options);

}  // namespace cad::picture
