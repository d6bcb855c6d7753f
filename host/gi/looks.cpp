#include "host/gi/looks.h"

#include <cmath>
#include <cstdlib>

#include "host/base/fold.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

constexpr int kByBlock = 0, kByLayer = 256, kMostColor = 255;

std::wstring decoded(std::string_view stored, const dxf::Dialect& dialect) {
  std::wstring text;
  dxf::append_decoded(stored, dialect, text);
  return text;
}

/// What an entity says of its look.
struct StoredLook {
  std::string_view layer = "0";
  std::string_view linetype;
  int color = kByLayer;
  std::optional<std::uint32_t> true_color;
  double linetype_scale = 1.0;
  int weight = AcDb::kLnWtByLayer;
  bool visible = true;
};

StoredLook stored_look(std::string_view record, const dxf::Dialect& dialect) {
  constexpr int kMarker = 100;
  StoredLook look;
  int markers = 0;
  OwnTags tags(record, dialect);
  dxf::Tag tag;
  const auto integer = [&] { return static_cast<int>(dxf::int_value(tag, dialect)); };
  while (tags.next(tag)) {
    switch (tag.code) {
      case kMarker:  // what all entities have in common ends where the part of the class begins
        if (++markers == 2) return look;
        break;
      case 6:
        look.linetype = tag.value;
        break;
      case 8:
        look.layer = tag.value;
        break;
      case 48:
        look.linetype_scale = dxf::real_value(tag, dialect);
        break;
      case 60:
        look.visible = (integer() & 1) == 0;
        break;
      case 62:
        look.color = integer();
        break;
      case 370:
        look.weight = integer();
        break;
      case 420:
        look.true_color = static_cast<std::uint32_t>(integer()) & 0xFFFFFFU;
        break;
      default:
        break;
    }
  }
  return look;
}

}  // namespace

void Look::apply_to(AcGiSubEntityTraits& traits) const {
  traits.setLayer(layer ? layer->id : AcDbObjectId());
  if (pen.true_color)
    traits.setTrueColor(*pen.true_color);
  else
    traits.setColor(pen.color);
  traits.setLineType(pen.linetype);
  traits.setLineTypeScale(pen.linetype_scale);
  traits.setLineWeight(pen.weight);
}

AcDbObjectId Looks::linetype(std::string_view stored_name) {
  const auto found = linetypes_.find(stored_name);
  if (found != linetypes_.end()) return found->second;
  AcDbObjectId id;
  if (!equal_no_case(stored_name, "CONTINUOUS"))
    id = AcDbObjectId(drawing_.table_record("LTYPE", decoded(stored_name, drawing_.dialect())));
  return linetypes_.emplace(stored_name, id).first->second;
}

LayerLook Looks::read_layer(std::string_view stored_name) {
  constexpr int kFrozen = 1;
  LayerLook layer;
  layer.plotted = !equal_no_case(stored_name, "DEFPOINTS");
  layer.id = AcDbObjectId(drawing_.table_record("LAYER", decoded(stored_name, drawing_.dialect())));
  if (layer.id.isNull()) return layer;
  OwnTags tags(drawing_.bytes_of(*layer.id.stub()), drawing_.dialect());
  dxf::Tag tag;
  const auto integer = [&] { return static_cast<int>(dxf::int_value(tag, drawing_.dialect())); };
  while (tags.next(tag)) {
    switch (tag.code) {
      case 6:
        layer.pen.linetype = linetype(tag.value);
        break;
      case 62:
        layer.off = integer() < 0;
        if (const int color = std::abs(integer()); color >= 1 && color <= kMostColor)
          layer.pen.color = static_cast<std::uint16_t>(color);
        break;
      case 70:
        layer.frozen = (integer() & kFrozen) != 0;
        break;
      case 290:
        layer.plotted = layer.plotted && integer() != 0;
        break;
      case 370:
        if (integer() >= 0) layer.pen.weight = static_cast<AcDb::LineWeight>(integer());
        break;
      case 420:
        layer.pen.true_color = static_cast<std::uint32_t>(integer()) & 0xFFFFFFU;
        break;
      default:
        break;
    }
  }
  return layer;
}

const LayerLook& Looks::layer(std::string_view stored_name) {
  const auto found = layers_.find(stored_name);
  if (found != layers_.end()) return found->second;
  return layers_.emplace(stored_name, read_layer(stored_name)).first->second;
}

Look Looks::look_of(std::string_view record, const dxf::Dialect& dialect, const Look* reference) {
  const StoredLook stored = stored_look(record, dialect);
  Look look;
  look.layer = reference && reference->layer && stored.layer == "0" ? reference->layer
                                                                    : &layer(stored.layer);
  look.visible = stored.visible;
  const Pen& by_layer = look.layer->pen;
  const Pen by_block = reference ? reference->pen : Pen();
  if (stored.true_color) {
    look.pen.true_color = stored.true_color;
  } else if (stored.color > kByBlock && stored.color <= kMostColor) {
    look.pen.color = static_cast<std::uint16_t>(stored.color);
  } else {
    const Pen& source = stored.color == kByBlock ? by_block : by_layer;
    look.pen.color = source.color;
    look.pen.true_color = source.true_color;
  }
  if (equal_no_case(stored.linetype, "BYBLOCK"))
    look.pen.linetype = by_block.linetype;
  else if (stored.linetype.empty() || equal_no_case(stored.linetype, "BYLAYER"))
    look.pen.linetype = by_layer.linetype;
  else
    look.pen.linetype = linetype(stored.linetype);
  if (std::isfinite(stored.linetype_scale) && stored.linetype_scale > 0.0)
    look.pen.linetype_scale = stored.linetype_scale;
  look.pen.weight = stored.weight == AcDb::kLnWtByLayer ? by_layer.weight
                    : stored.weight == AcDb::kLnWtByBlock
                        ? by_block.weight
                        : static_cast<AcDb::LineWeight>(stored.weight);
  return look;
}

}  // namespace cad
