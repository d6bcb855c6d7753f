// MULTILEADER: arrows with landings, and a text or a block.

#include <algorithm>
#include <string>
#include <vector>

#include "host/db/entity_fields.h"
#include "host/dxf/text.h"
#include "host/gi/kinds.h"
#include "host/gi/paragraph.h"

namespace cad {
namespace {

/// What the entity says of how it is to be drawn at present (its context data).
struct Context {
  struct Leader {
    AcGePoint3d end;
    AcGeVector3d landing;  ///< with its length
    std::vector<std::vector<AcGePoint3d>> lines;
  };
  std::vector<Leader> leaders;
  double arrow_size = 0.0;
  bool has_text = false;
  std::string contents;
  std::uint64_t style = 0;  ///< handle of the text style
  AcGeVector3d normal = AcGeVector3d::kZAxis;
  AcGePoint3d place;
  AcGeVector3d along = AcGeVector3d::kXAxis;
  double height = 0.0, width = 0.0, spacing = 1.0;
  int alignment = 1;  ///< 1 left, 2 centred, 3 right
  std::uint32_t color = 0;
  bool leaders_shown = true;
  bool has_landing = true;
  bool has_frame = false;
  double gap = 0.0;  ///< between text and frame
};

/// Its data stand in nested sections: the context, in it leaders, in these their lines.
class ContextReader {
 public:
  explicit ContextReader(const EntityTags& entity)
      : tags_(entity.bytes, entity.dialect), dialect_(entity.dialect) {}

  Context read() {
    constexpr int kContext = 300;
    while (tags_.next(tag_) && tag_.code != kContext) {
    }
    enum { kContextEnd = 301, kLeader = 302 };
    while (tags_.next(tag_) && tag_.code != kContextEnd) {
      if (tag_.code == kLeader)
        read_leader();
      else
        read_value();
    }
    while (tags_.next(tag_)) {  // codes have other meanings here
      if (tag_.code == 170) context_.leaders_shown = integer() != 0;
      if (tag_.code == 291) context_.has_landing = integer() != 0;
      if (tag_.code == 292) context_.has_frame = integer() != 0;
    }
    return std::move(context_);
  }

 private:
  double real() const { return dxf::real_value(tag_, dialect_); }
  int integer() const { return static_cast<int>(dxf::int_value(tag_, dialect_)); }
  template <class P>
  void coordinate(P& p, int axis) {
    (axis == 0 ? p.x : axis == 1 ? p.y : p.z) = real();
  }

  void read_value() {
    switch (tag_.code) {
      case 140:
        context_.arrow_size = real();
        break;
      case 145:
        context_.gap = real();
        break;
      case 290:
        context_.has_text = integer() != 0;
        break;
      case 304:
        context_.contents = tag_.value;
        break;
      case 340:
        context_.style = dxf::handle_value(tag_);
        break;
      case 41:
        context_.height = real();
        break;
      case 43:
        context_.width = real();
        break;
      case 45:
        context_.spacing = real();
        break;
      case 90:
        context_.color = static_cast<std::uint32_t>(dxf::int_value(tag_, dialect_));
        break;
      case 171:
        context_.alignment = integer();
        break;
      default:
        if (tag_.code % 10 == 1 && tag_.code >= 11 && tag_.code <= 31)
          coordinate(context_.normal, tag_.code / 10 - 1);
        if (tag_.code % 10 == 2 && tag_.code >= 12 && tag_.code <= 32)
          coordinate(context_.place, tag_.code / 10 - 1);
        if (tag_.code % 10 == 3 && tag_.code >= 13 && tag_.code <= 33)
          coordinate(context_.along, tag_.code / 10 - 1);
        break;
    }
  }

  void read_leader() {
    enum { kLeaderEnd = 303, kLine = 304 };
    Context::Leader& leader = context_.leaders.emplace_back();
    double length = 0.0;
    while (tags_.next(tag_) && tag_.code != kLeaderEnd) {
      if (tag_.code == kLine) read_line(leader);
      if (tag_.code == 40) length = real();
      if (tag_.code == 10 || tag_.code == 20 || tag_.code == 30)
        coordinate(leader.end, tag_.code / 10 - 1);
      if (tag_.code == 11 || tag_.code == 21 || tag_.code == 31)
        coordinate(leader.landing, tag_.code / 10 - 1);
    }
    leader.landing *= length;
  }

  void read_line(Context::Leader& leader) {
    constexpr int kLineEnd = 305;
    std::vector<AcGePoint3d>& line = leader.lines.emplace_back();
    while (tags_.next(tag_) && tag_.code != kLineEnd) {
      if (tag_.code == 10) line.push_back({});
      if (line.empty()) continue;
      if (tag_.code == 10 || tag_.code == 20 || tag_.code == 30)
        coordinate(line.back(), tag_.code / 10 - 1);
    }
  }

  OwnTags tags_;
  const dxf::Dialect& dialect_;
  dxf::Tag tag_;
  Context context_;
};

void draw_leader(const Context::Leader& leader, double arrow, const AcGeVector3d& normal,
                 bool has_landing, EntityDrawer& drawer) {
  for (std::vector<AcGePoint3d> line : leader.lines) {
    if (line.empty()) continue;
    line.push_back(leader.end);
    const AcGeVector3d first = line[1] - line[0];
    if (has_landing) line.push_back(leader.end + leader.landing);
    drawer.canvas().outline(line, false);
    if (!(arrow > 0.0) || !(first.length() > arrow)) continue;
    const AcGeVector3d along = first.normal() * arrow;
    const AcGeVector3d aside = normal.crossProduct(along) / 6.0;
    const AcGePoint3d corners[] = {line[0], line[0] + along + aside, line[0] + along - aside};
    drawer.canvas().fill(corners);
  }
}

/// A colour as such data hold it: its sort in the first byte.
void set_color(std::uint32_t color, EntityDrawer& drawer) {
  enum : std::uint32_t { kByBlock = 0xC1, kTrue = 0xC2, kIndex = 0xC3 };
  const std::uint32_t value = color & 0xFFFFFFU;
  if (color >> 24 == kTrue) drawer.canvas().traits().setTrueColor(value);
  if (color >> 24 == kIndex) drawer.set_color(static_cast<int>(value));
}

}  // namespace

/// Leaders that are splines are drawn straight, arrows filled whatever their block; of a block
/// instead of a text nothing.
void draw_mleader(const EntityTags& entity, EntityDrawer& drawer) {
  const Context context = ContextReader(entity).read();
  if (context.leaders_shown)
    for (const Context::Leader& leader : context.leaders)
      draw_leader(leader, context.arrow_size, context.normal, context.has_landing, drawer);
  if (!context.has_text || context.contents.empty()) return;

  Paragraph paragraph;
  paragraph.origin = context.place;
  paragraph.x = context.along.normal();
  paragraph.y = context.normal.crossProduct(context.along).normal();
  dxf::append_decoded(context.contents, entity.dialect, paragraph.contents);
  paragraph.shape.height = context.height;
  paragraph.shape.reference_width = context.width;
  paragraph.shape.line_spacing = context.spacing;
  paragraph.shape.attachment = std::clamp(context.alignment, 1, 3);
  if (context.has_frame && context.height > 0.0) {
    constexpr int kFramed = 16;
    paragraph.background.flags = kFramed;
    paragraph.background.scale = 1.0 + context.gap / context.height;
  }
  std::string_view style;
  if (const Stub* const record = entity.drawing ? entity.drawing->find(context.style) : nullptr)
    style = EntityFields(entity.drawing->bytes_of(*record), entity.dialect).bytes(2);
  set_color(context.color, drawer);
  draw_paragraph(paragraph, drawer.styles_of(entity.drawing).style(style), drawer);
  drawer.restore_color();
}

}  // namespace cad
