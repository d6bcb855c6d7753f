#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/base/result.h"
#include "host/db/clone_references.h"
#include "host/db/drawing.h"
#include "host/db/old_polyline.h"
#include "host/db/status.h"

namespace cad {

/// Where copies of entities go: the end of a space or of a block.
struct ClonePlace {
  std::uint64_t owner = 0;  ///< 0 in drawings without block records
  dxf::Section section = dxf::Section::kEntities;
  std::uint64_t anchor = 0;
  const Stub* begin = nullptr;  ///< the block's BLOCK; null for a space
};

/// The place at the end of a block record's, or of a BLOCK's, entities. Nothing when the block is
/// missing.
std::optional<ClonePlace> place_in_block(Drawing& drawing, const Stub& block);

/// Copies entities with their parts and all that they own, in their drawing or into another one.
/// Into another one comes what they need as well: layers, styles, linetypes, applications, blocks
/// with their contents, objects filed in dictionaries. What the drawing has of these names already
/// counts. Anonymous blocks get new names.
///     Cloner cloner(from, to);
///     const std::size_t place = cloner.new_place();
///     cloner.add_entity(line, place);
///     if (Status status = cloner.complete(); !status) return status.error();  // nothing changed
///     cloner.set_place(place, ...);
///     cloner.run();
class Cloner {
 public:
  Cloner(Drawing& from, Drawing& to) : from_(from), to_(to), within_(&from == &to) {}

  /// A place that is set before run().
  std::size_t new_place() {
    places_.emplace_back();
    return places_.size() - 1;
  }
  void set_place(std::size_t place, const ClonePlace& where) { places_[place].where = where; }

  void add_entity(Stub& entity, std::size_t place);
  /// The extension dictionary of `owner` goes to what stands for it.
  void add_extension(const Stub& owner);
  /// References to `source` lead to `copy`.
  void stand_for(const Stub& source, const Stub& copy);
  /// The block that is being made: nothing that comes along may show it.
  void set_block_made(std::wstring_view name) { made_ = name; }

  /// Finds all that has to come along. Fails before anything is changed.
  Status complete();
  /// Why complete() failed.
  Acad::ErrorStatus fault() const { return fault_; }

  /// The copies of the entities that were added, in that order. After it the extension dictionary
  /// of `owner` in add_extension() is extension().
  std::vector<AcDbObjectId> run();
  std::uint64_t extension() const { return references_.handle(extension_); }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  enum class Role : std::uint8_t { kEntity, kPart, kObject, kFiled, kRecord, kOfBlock };
  struct Item {
    Stub* source;
    Role role;
    std::size_t place = kNone;            ///< of an entity or a part
    std::size_t main = kNone;             ///< item of the entity that a part belongs to
    std::uint64_t owner = 0;              ///< of an object: its owner's handle in the source
    std::vector<std::wstring> keys = {};  ///< of a filed object
    OldRecord stand_in = {};              ///< what is copied instead; no kind: the source
    Stub* copy = nullptr;
    std::uint64_t copy_owner = 0;
  };
  /// A block that comes along.
  struct BlockPlan {
    std::wstring name;  ///< in the drawing it comes to
    Stub* record = nullptr;
    const Drawing::Block* source = nullptr;  ///< null: nowhere defined, stays empty
    std::size_t place = kNone;
    std::vector<std::size_t> shows = {};  ///< places of the blocks in it
    Stub* copy_record = nullptr;
    Stub* copy_begin = nullptr;
    Stub* copy_end = nullptr;
  };
  struct Place {
    ClonePlace where;
    std::size_t block = kNone;  ///< of block_plans_
    Drawing::Block* target = nullptr;
  };

  std::string_view kind_of(const Item& item) const {
    return item.stand_in.kind.empty() ? from_.kind_name(*item.source) : item.stand_in.kind;
  }
  std::string_view bytes_of(const Item& item) const {
    return item.stand_in.kind.empty() ? from_.bytes_of(*item.source) : item.stand_in.bytes;
  }

  // Finding.
  bool add_old_polyline(Stub& entity, std::size_t place);
  void refuse(Acad::ErrorStatus status, std::string where, std::string what);
  void scan(std::size_t item);
  void scan_extended(const dxf::Tag& tag);
  void scan_reference(const Item& item, std::string_view kind, const dxf::Tag& tag,
                      bool is_extension);
  bool add_owned(const Item& item, const dxf::Tag& tag, bool is_extension);
  void need_name(std::string_view table, std::wstring_view name, std::string_view kind,
                 std::size_t place);
  Stub* source_record(std::string_view table, std::wstring_view name);
  void need_record(std::string_view table, Stub& record, std::wstring_view name);
  void need_target(Stub& target, bool maps_only);
  void need_object(Stub& object, bool maps_only);
  void need_shape_styles();
  void need_block(std::wstring_view name, std::string_view kind, std::size_t place);
  void plan_block(const std::wstring& key, std::wstring_view name, Stub* record,
                  const Drawing::Block* source);
  void check_kind(const Item& item, bool is_graphic);
  void check_name(std::string_view table, std::wstring_view name);
  const Drawing::Block* source_block(std::wstring_view name, const Stub* record);
  void order_blocks();
  bool shows_made_block(std::wstring_view block);

  // Making.
  void make_records();
  void make_blocks();
  void make_block(BlockPlan& plan);
  void make_stub(Item& item);
  void write(Item& item);
  void write_blocks();
  void put_space(const Item& item, std::string& text) const;
  std::string respelled(const Stub& source, const Stub& copy, std::uint64_t owner);
  void declare_class(const Stub& source, const Stub& copy);
  void file(const Item& item);
  Stub& new_stub(const Stub& source, std::string_view kind, std::uint64_t owner,
                 dxf::Section section, std::uint64_t anchor);

  Drawing& from_;
  Drawing& to_;
  const bool within_;  // one drawing
  std::vector<Item> items_;
  std::vector<Place> places_;
  std::vector<BlockPlan> block_plans_;
  std::vector<std::size_t> block_order_;  // those that are shown first
  std::unordered_map<std::wstring, std::size_t> plan_by_name_;
  std::optional<std::unordered_map<std::wstring, const Drawing::Block*>> source_blocks_;
  std::map<wchar_t, std::uint64_t> next_anonymous_;
  std::unordered_set<std::wstring> known_names_;
  std::unordered_set<std::uint64_t> known_objects_;
  std::vector<std::wstring> fresh_layers_, fresh_applications_;
  std::vector<std::wstring> existing_blocks_;  // of the receiving drawing, that are shown
  std::wstring made_;
  std::uint64_t extension_ = 0;
  CloneReferences references_;
  Status status_;
  Acad::ErrorStatus fault_ = Acad::eOk;
};

}  // namespace cad
