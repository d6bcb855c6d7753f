#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/db/object_id.h"
#include "host/dxf/dialect.h"
#include "host/gi/world_draw.h"

namespace cad {

class Drawing;

/// Colour, line type and weight, once ByLayer and ByBlock are followed up.
struct Pen {
  std::uint16_t color = 7;                  ///< 1 to 255
  std::optional<std::uint32_t> true_color;  ///< 0xRRGGBB; rules over the index
  AcDbObjectId linetype;                    ///< null: continuous
  double linetype_scale = 1.0;
  AcDb::LineWeight weight = AcDb::kLnWtByLwDefault;  ///< hundredths of a millimetre, or the default
};

struct LayerLook {
  AcDbObjectId id;  ///< null for a name that the drawing lacks
  Pen pen;
  bool off = false;
  bool frozen = false;
  bool plotted = true;  ///< neither excluded from plotting nor the layer of definition points
  bool shown() const { return !off && !frozen && plotted; }
};

/// With what an entity is drawn.
struct Look {
  Pen pen;
  const LayerLook* layer = nullptr;  ///< never null in looks that Looks hands out
  bool visible = true;               ///< the entity itself, whatever its layer

  void apply_to(AcGiSubEntityTraits& traits) const;
};

/// Looks of a drawing's entities. Layers and linetypes are looked up once and kept: make a new one
/// when they may have changed.
class Looks {
 public:
  explicit Looks(Drawing& drawing) : drawing_(drawing) {}

  /// By the name as the drawing has it stored. A missing layer is shown in colour 7. Stays where it
  /// is as long as this object.
  const LayerLook& layer(std::string_view stored_name);

  /// `reference`: the look of the reference to the block that the entity is in, null outside of
  /// blocks: ByBlock means that look, and layer 0 its layer.
  Look look_of(std::string_view record, const dxf::Dialect& dialect, const Look* reference);

 private:
  AcDbObjectId linetype(std::string_view stored_name);
  LayerLook read_layer(std::string_view stored_name);

  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };
  template <class T>
  using ByName = std::unordered_map<std::string, T, Hash, std::equal_to<>>;

  Drawing& drawing_;
  ByName<LayerLook> layers_;
  ByName<AcDbObjectId> linetypes_;
};

}  // namespace cad
