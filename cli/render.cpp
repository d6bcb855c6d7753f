#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "cli/add_commands.h"
#include "cli/files.h"
#include "cli/progress.h"
#include "cli/tool.h"
#include "host/base/codepage.h"
#include "host/base/file.h"
#include "host/base/fold.h"
#include "host/db/entity.h"
#include "host/db/layouts.h"
#include "host/font/face.h"
#include "host/lisp/wildcard.h"
#include "host/picture/picture.h"

namespace cli {
namespace {

constexpr char kFooter[] =
    R"(Drawn is what would be plotted of the model: layers that are off, frozen or not
plotted are left out. What cannot be drawn is counted on standard error.

Examples:
  pipenote render plan.dxf -o plan.svg
  pipenote render plan.dxf -o plan.png --size 2400x1600 --dark
  pipenote render plan.dxf -o wells.pdf --layer "W-*,PIPE" --layer 0
  pipenote render plan.dxf -o detail.svg --window 1200,800,1300,860 --highlight 2F3

Exit status: 0; 2 wrong usage; 3 the drawing could not be read, 4 the picture not written.)";

constexpr int kMostPixels = 20000;            // of a side
constexpr double kMostOfAll = 200'000'000.0;  // of a PNG

struct RenderOptions {
  std::string drawing;
  std::string output;
  std::string size;
  std::string window;
  std::string layout;
  std::vector<std::string> layers;
  std::vector<std::string> highlights;
  bool dark = false;
};

/// Whole numbers or decimal fractions, parted by `separator`; nothing when that is not what it is.
std::vector<double> numbers(std::string_view text, char separator) {
  std::vector<double> found;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (;;) {
    double number = 0.0;
    const auto [next, error] = std::from_chars(at, end, number);
    if (error != std::errc() || !std::isfinite(number)) return {};
    found.push_back(number);
    if (next == end) return found;
    if (*next != separator) return {};
    at = next + 1;
  }
}

bool read_size(const std::string& text, cad::picture::Format format,
               cad::picture::Options& options) {
  if (text.empty()) return true;
  const std::vector<double> sides = numbers(text, 'x');
  const bool sound = sides.size() == 2 && sides[0] >= 1 && sides[1] >= 1 &&
                     sides[0] <= kMostPixels && sides[1] <= kMostPixels &&
                     sides[0] == std::floor(sides[0]) && sides[1] == std::floor(sides[1]) &&
                     (format != cad::picture::Format::kPng || sides[0] * sides[1] <= kMostOfAll);
  if (sound)
    options.size = {static_cast<int>(sides[0]), static_cast<int>(sides[1])};
  else
    complain("--size " + text + ": wanted is WIDTHxHEIGHT in pixels, such as 1600x1200, up to " +
             std::to_string(kMostPixels) + " each and 200 million in a PNG");
  return sound;
}

bool read_window(const std::string& text, cad::picture::Options& options) {
  if (text.empty()) return true;
  const std::vector<double> v = numbers(text, ',');
  const bool sound = v.size() == 4 && v[0] != v[2] && v[1] != v[3];
  if (sound) {
    options.window.emplace();
    options.window->add(cad::picture::Point{v[0], v[1]});
    options.window->add(cad::picture::Point{v[2], v[3]});
  } else {
    complain("--window " + text +
             ": wanted are two opposite corners in drawing units: X1,Y1,X2,Y2");
  }
  return sound;
}

/// Letter case is ignored, as everywhere in names.
std::function<bool(std::wstring_view)> layer_filter(const std::vector<std::string>& patterns) {
  if (patterns.empty()) return {};
  std::vector<std::wstring> wanted;
  for (const std::string& pattern : patterns)
    wanted.push_back(cad::folded(cad::from_utf8(pattern)));
  return [wanted](std::wstring_view name) {
    const std::wstring own = cad::folded(name);
    return std::any_of(wanted.begin(), wanted.end(), [&](const std::wstring& pattern) {
      return cad::lisp::matches_wildcard(own, pattern);
    });
  };
}

bool read_highlights(const RenderOptions& options, AcDbDatabase& database,
                     cad::picture::Options& picture) {
  for (const std::string& text : options.highlights) {
    const AcDbHandle handle(cad::from_utf8(text).c_str());
    AcDbObjectId id;
    if (handle.isNull()) {
      complain("--highlight " + text + " is no handle");
      return false;
    }
    const bool found = database.getAcDbObjectId(id, false, handle) == Acad::eOk && !id.isErased() &&
                       id.objectClass()->isDerivedFrom(AcDbEntity::desc());
    if (!found) {
      complain(options.drawing + ": no entity has the handle " + text);
      return false;
    }
    picture.highlights.push_back(id);
  }
  return true;
}

bool find_layout(const RenderOptions& options, AcDbDatabase& database,
                 cad::picture::Options& picture) {
  if (options.layout.empty()) return true;
  picture.space = cad::layout_space(database, cad::from_utf8(options.layout));
  if (!picture.space.isNull()) return true;
  std::string names;
  for (const cad::Layout& layout : cad::layouts_of(database))
    names += (names.empty() ? "" : ", ") + cad::to_utf8(layout.name);
  complain(options.drawing + ": no layout is named " + options.layout +
           (names.empty() ? "" : "; there are: " + names));
  return false;
}

std::string counted(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

void tell_gaps(const RenderOptions& options, const cad::picture::Picture& picture) {
  const auto tell = [&](const std::string& what) { complain(options.drawing + ": " + what); };
  for (const auto& [kind, count] : picture.gaps.kinds)
    tell(std::to_string(count) + ' ' + kind + " not drawn");
  if (const std::size_t n = picture.gaps.missing_blocks)
    tell(counted(n, "block reference", "block references") +
         " not drawn: the drawing lacks the block");
  if (const std::size_t n = picture.gaps.cycles)
    tell(counted(n, "block reference", "block references") +
         " not drawn: a block would contain itself");
  if (const std::size_t n = picture.gaps.too_many)
    tell(counted(n, "block reference", "block references") +
         " drawn in part: blocks in blocks multiply beyond measure");
  if (const std::size_t n = picture.bad_coordinates)
    tell(counted(n, "piece", "pieces") + " not drawn: coordinates that are no places");
  if (const std::size_t n = picture.empty_texts)
    tell(counted(n, "text", "texts") + " not drawn: without height");
  if (const std::size_t n = picture.far_away)
    tell(counted(n, "piece is", "pieces are") +
         " far away from all else and not in the picture; see --window");
  if (picture.blank) tell("nothing is seen in the picture");
  for (const cad::font::Replacement& font : cad::font::replacements())
    tell("the font " + cad::to_utf8(font.wanted) + " is not installed; texts are drawn in " +
         font.used);
}

ExitStatus write(const std::string& path, const std::string& bytes) {
  cad::Result<cad::AtomicFile> file = cad::AtomicFile::create(path);
  cad::Status status = file ? file->append(bytes) : cad::Status(file.error());
  if (status) status = file->commit(/*keep_backup=*/false);
  if (status) return kSuccess;
  complain(status.error().message());
  return kNotWritten;
}

ExitStatus render(const RenderOptions& options) {
  cad::picture::Options picture_options;
  const std::optional<cad::picture::Format> format = cad::picture::format_of(options.output);
  if (!format) {
    complain(options.output + ": the name of a picture ends in .svg, .png or .pdf");
    return kWrongUsage;
  }
  if (!may_be_output(options.output, options.drawing)) return kWrongUsage;
  if (!read_size(options.size, *format, picture_options) ||
      !read_window(options.window, picture_options))
    return kWrongUsage;

  Progress progress(1);
  progress.next(options.drawing);
  progress.show("reading");
  cad::Host host;
  const cad::Result<AcApDocument*> drawing = host.open_drawing(options.drawing);
  if (!drawing) {
    complain(drawing.error().message());
    return kNotRead;
  }
  AcDbDatabase& database = *(*drawing)->database();
  picture_options.layer_shown = layer_filter(options.layers);
  picture_options.dark = options.dark;
  picture_options.title = std::filesystem::path(options.drawing).filename().string();
  if (!read_highlights(options, database, picture_options) ||
      !find_layout(options, database, picture_options))
    return kWrongUsage;

  progress.show("drawing");
  const cad::Result<cad::picture::Picture> picture =
      cad::picture::make_picture(database, *format, picture_options);
  if (!picture) {
    complain(options.output + ": " + picture.error().message());
    return kNotWritten;
  }
  progress.show("writing");
  const ExitStatus status = write(options.output, picture->file);
  progress.hide();
  if (status != kSuccess) return status;
  tell_gaps(options, *picture);
  std::printf("%s: %s, %d x %d pixels\n", options.output.c_str(),
              counted(picture->entities, "entity", "entities").c_str(), picture->size.width,
              picture->size.height);
  return kSuccess;
}

}  // namespace

void add_render_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<RenderOptions>();
  CLI::App* const command =
      program.add_subcommand("render", "draw a picture of a drawing: SVG, PNG or PDF");
  command->footer(kFooter);
  add_drawing(*command, options->drawing);
  add_output(*command, options->output, "FILE", "the picture; its ending says the format")
      ->required();
  command->add_option("--size", options->size, "pixels (default: 1600 for the longer side)")
      ->type_name("WxH");
  command
      ->add_option("--window", options->window,
                   "the part between two corners, in drawing units (default: all)")
      ->type_name("X1,Y1,X2,Y2");
  command
      ->add_option("--layer", options->layers,
                   "draw these layers only; wildcards as in wcmatch; may be repeated")
      ->type_name("PATTERN");
  command->add_option("--highlight", options->highlights, "mark this entity; may be repeated")
      ->type_name("HANDLE");
  command->add_option("--layout", options->layout, "draw this layout instead of the model")
      ->type_name("NAME");
  command->add_flag("--dark", options->dark, "dark background");
  command->callback([=, &status] { status = render(*options); });
}

}  // namespace cli
