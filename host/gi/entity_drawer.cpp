#include "host/gi/entity_drawer.h"

#include <algorithm>
#include <utility>

#include "host/db/entity_fields.h"
#include "host/gi/kinds.h"

namespace cad {
namespace {

constexpr std::size_t kDeepest = 100;

int integer_variable(const Drawing& drawing, std::string_view name, int absent) {
  const std::optional<dxf::Tag> tag = drawing.header_variable(name);
  return tag ? static_cast<int>(dxf::int_value(*tag, drawing.dialect())) : absent;
}

double real_variable(const Drawing& drawing, std::string_view name) {
  const std::optional<dxf::Tag> tag = drawing.header_variable(name);
  return tag ? dxf::real_value(*tag, drawing.dialect()) : 0.0;
}

/// Puts a value back when it leaves scope.
template <class T>
class Restored {
 public:
  Restored(T& place, T value) : place_(place), old_(std::exchange(place, value)) {}
  ~Restored() { place_ = old_; }
  Restored(const Restored&) = delete;
  Restored& operator=(const Restored&) = delete;

 private:
  T& place_;
  T old_;
};

}  // namespace

/// The traits that a caller has set.
class EntityDrawer::CallersTraits {
 public:
  explicit CallersTraits(AcGiSubEntityTraits& traits)
      : traits_(traits),
        layer_(traits.layerId()),
        color_(traits.color()),
        linetype_(traits.lineTypeId()),
        linetype_scale_(traits.lineTypeScale()),
        weight_(traits.lineWeight()) {}

  Adesk::UInt16 color() const { return color_; }
  void restore_color() const { traits_.setColor(color_); }
  void restore() const {
    traits_.setLayer(layer_);
    restore_color();
    traits_.setLineType(linetype_);
    traits_.setLineTypeScale(linetype_scale_);
    traits_.setLineWeight(weight_);
  }

 private:
  AcGiSubEntityTraits& traits_;
  const AcDbObjectId layer_;
  const Adesk::UInt16 color_;
  const AcDbObjectId linetype_;
  const double linetype_scale_;
  const AcDb::LineWeight weight_;
};

EntityDrawer::Kept::Kept(Drawing* drawing) : styles(drawing) {
  if (!drawing) return;
  looks.emplace(*drawing);
  variables.point_mode = integer_variable(*drawing, "$PDMODE", 0);
  variables.point_size = real_variable(*drawing, "$PDSIZE");
  variables.fill = integer_variable(*drawing, "$FILLMODE", 1) != 0;
  variables.attributes = integer_variable(*drawing, "$ATTMODE", 1);
}

EntityDrawer::Kept& EntityDrawer::kept(Drawing* drawing) {
  std::unique_ptr<Kept>& kept = kept_[drawing];
  if (!kept) kept = std::make_unique<Kept>(drawing);
  return *kept;
}

TextStyles& EntityDrawer::styles_of(Drawing* drawing) { return kept(drawing).styles; }

const EntityDrawer::Variables& EntityDrawer::variables_of(Drawing* drawing) {
  return kept(drawing).variables;
}

void EntityDrawer::set_color(int index) {
  constexpr int kByBlock = 0, kByLayer = 256;
  AcGiSubEntityTraits& traits = canvas_.traits();
  const Pen* source = nullptr;
  static const Pen kNoBlock;
  if (index == kByBlock) source = reference_ ? &reference_->pen : &kNoBlock;
  if (index == kByLayer && look_) source = &look_->layer->pen;
  if (source && source->true_color)
    traits.setTrueColor(*source->true_color);
  else
    traits.setColor(source ? source->color : static_cast<Adesk::UInt16>(std::clamp(index, 1, 256)));
}

void EntityDrawer::restore_color() {
  if (look_)
    look_->apply_to(canvas_.traits());
  else if (caller_)
    caller_->restore_color();
}

bool EntityDrawer::draw_under_traits(const EntityTags& entity) {
  const CallersTraits caller(canvas_.traits());
  const Restored<const CallersTraits*> own(caller_, &caller);
  const bool drawn = draw_shape(entity);
  if (shows_block(entity.kind)) caller.restore();
  return drawn;
}

void EntityDrawer::draw(AcDbObjectId entity) { draw_in(entity, nullptr); }

/// `reference`: see Looks::look_of().
void EntityDrawer::draw_in(AcDbObjectId id, const Look* reference) {
  const EntityTags entity = EntityTags::of(id);
  const Look look = kept(entity.drawing).looks->look_of(entity.bytes, entity.dialect, reference);
  // What is off hides the entity; what is frozen hides all that a reference shows as well.
  const bool is_reference = shows_block(entity.kind);
  if (!look.visible || look.layer->frozen || (!is_reference && !look.layer->shown())) return;
  look.apply_to(canvas_.traits());
  const Restored<const Look*> own(look_, &look), around(reference_, reference);
  draw_shape(entity);
}

bool EntityDrawer::draw_shape(const EntityTags& entity) {
  if (shows_block(entity.kind)) return draw_reference(entity);
  const DrawKind shape = draw_kind(entity.kind);
  if (shape)
    shape(entity, *this);
  else
    ++gaps_.kinds[std::string(entity.kind)];
  return shape != nullptr;
}

bool EntityDrawer::draw_reference(const EntityTags& entity) {
  if (!entity.drawing) return false;
  // Contents under traits of the caller: ByBlock and layer 0 mean those of the reference itself,
  // but for a colour that the caller chose.
  Look look;
  if (!look_) look = kept(entity.drawing).looks->look_of(entity.bytes, entity.dialect, nullptr);
  if (const Adesk::UInt16 color = caller_ ? caller_->color() : 0;
      !look_ && color > 0 && color < 256) {
    look.pen.color = color;
    look.pen.true_color.reset();
  }
  const Look& reference = look_ ? *look_ : look;
  const auto placement =
      block_placement(entity.kind, entity.bytes, entity.dialect, *entity.drawing);
  if (placement)
    draw_block(*entity.drawing, *placement, reference);
  else
    ++gaps_.missing_blocks;
  draw_attributes(entity);
  return true;
}

EntityDrawer::Contents& EntityDrawer::contents_of(Drawing& drawing, AcDbObjectId block) {
  const auto [place, is_new] = kept(&drawing).blocks.try_emplace(block.stub());
  Contents& contents = place->second;
  const Drawing::Block* const span = is_new ? drawing.block_at(*block.stub()) : nullptr;
  if (!span) return contents;
  constexpr int kConstant = 2;
  const auto add = [&](std::size_t index) {
    Stub& stub = drawing.stub_at(index);
    if (stub.erased() || drawing.is_sub_entity(stub)) return;
    // References show attributes of their own instead of definitions.
    if (drawing.kind_name(stub) == "ATTDEF" &&
        !(EntityFields(drawing.bytes_of(stub), drawing.dialect()).integer(70) & kConstant))
      return;
    contents.entities.emplace_back(&stub);
  };
  for (std::size_t i = span->begin + 1; i < span->end; ++i) add(i);
  for (const std::size_t i : span->added) add(i);
  return contents;
}

void EntityDrawer::draw_block(Drawing& drawing, const BlockPlacement& placement,
                              const Look& reference) {
  Contents& contents = contents_of(drawing, placement.block);
  if (contents.entered || depth_ == kDeepest) {
    ++gaps_.cycles;
    return;
  }
  const Restored<bool> entered(contents.entered, true);
  const Restored<std::size_t> depth(depth_, depth_ + 1);
  for (int row = 0; row < placement.rows; ++row)
    for (int column = 0; column < placement.columns; ++column) {
      if (left_ <= contents.entities.size()) {
        ++gaps_.too_many;
        return;
      }
      left_ -= contents.entities.size() + 1;
      canvas_.geometry().pushModelTransform(placement.map_of(column, row));
      for (const AcDbObjectId id : contents.entities) draw_in(id, &reference);
      canvas_.geometry().popModelTransform();
    }
}

void EntityDrawer::draw_attributes(const EntityTags& insert) {
  enum { kNone, kNormal, kAll };
  const int mode = variables_of(insert.drawing).attributes;
  if (!insert.stub || mode == kNone) return;
  constexpr int kHidden = 1;
  for (Stub* part : insert.drawing->sub_entities(*insert.stub)) {
    if (part->erased() || insert.drawing->kind_name(*part) != "ATTRIB") continue;
    const EntityFields fields(insert.drawing->bytes_of(*part), insert.dialect);
    if (mode == kAll || !(fields.integer(70) & kHidden)) draw_in(AcDbObjectId(part), look_);
  }
}

}  // namespace cad
