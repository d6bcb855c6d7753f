#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/db/polyline_tags.h"
#include "host/dxf/dialect.h"
#include "host/geometry/ge.h"

namespace cad {

struct Stub;

/// One tag that a new object may have.
struct NewTag {
  std::uint8_t part;    ///< position in NewLayout::parts
  std::int16_t code;    ///< of a point that of its x
  double absent = NAN;  ///< a number that is left out when it has this value
};

/// The tags of a kind of object, in the order in which they are written. No code stands twice.
struct NewLayout {
  static constexpr std::size_t kMost = 20;  ///< tags, and what slot() answers for other codes

  constexpr NewLayout(std::string_view kind_name, std::span<const std::string_view> part_markers,
                      std::span<const NewTag> its_tags)
      : kind(kind_name), parts(part_markers), tags(its_tags) {
    slots.fill(kMost);
    for (std::size_t i = 0; i < tags.size(); ++i)
      slots.at(static_cast<std::size_t>(tags[i].code)) = static_cast<std::uint8_t>(i);
  }
  /// Where the tag of that code stands in `tags`.
  std::size_t slot(int code) const {
    const auto at = static_cast<std::size_t>(code);
    return at < slots.size() ? slots[at] : kMost;
  }

  std::string_view kind;
  std::span<const std::string_view> parts;  ///< markers of the class parts
  std::span<const NewTag> tags;

 private:
  std::array<std::uint8_t, 256> slots{};
};

/// What a new object holds before its tags are spelled: values by code. A label is made by a dozen
/// calls that each set a value; spelled one by one in a record of tags they would cost ten times
/// as much.
class NewTags {
 public:
  static constexpr std::size_t kMost = NewLayout::kMost;

  explicit NewTags(const NewLayout& layout) : layout_(layout) {}

  const NewLayout& layout() const { return layout_; }
  /// Whether values of that code can be held here. What follows wants such a code.
  bool has(int code) const { return slot(code) != kMost; }

  void set_real(int code, double value);
  void set_integer(int code, std::int64_t value);
  void set_point(int code, const AcGePoint3d& value);
  void set_text(int code, std::wstring_view value);
  /// The name of a record of a symbol table.
  void set_record(int code, const Stub& record);

  bool is_set(int code) const { return at(code).type != Type::kUnset; }
  double real(int code, double absent) const;
  std::int64_t integer(int code, std::int64_t absent) const;
  AcGePoint3d point(int code) const;
  std::wstring text(int code) const;
  const Stub* record(int code) const;  ///< null when the value is no record

  /// Vertices of a LWPOLYLINE, where its layout has the code 10.
  std::vector<PolylineVertex>& vertices() { return vertices_; }
  const std::vector<PolylineVertex>& vertices() const { return vertices_; }

  /// The whole record, appended.
  void spell(std::string& out, const dxf::Dialect& dialect, std::uint64_t handle,
             std::uint64_t owner) const;

 private:
  enum class Type : std::uint8_t { kUnset, kLeftOut, kReal, kInteger, kPoint, kText, kRecord };
  struct Value {
    Type type = Type::kUnset;
    union {
      double numbers[3];
      std::int64_t integer;
      struct {
        std::uint32_t begin, size;  // in texts_
      } text;
      const Stub* record;
    };
    Value() : integer(0) {}
  };

  std::size_t slot(int code) const { return layout_.slot(code); }
  Value& at(int code) { return values_[slot(code)]; }
  const Value& at(int code) const { return values_[slot(code)]; }
  bool is_left_out(int code, double value);

  const NewLayout& layout_;
  std::array<Value, kMost + 1> values_;  // the last one stands for codes that are none
  std::wstring texts_;
  std::vector<PolylineVertex> vertices_;
};

/// The bytes of a record's symbol name as its drawing spells them.
std::string_view symbol_name_bytes(const Stub& record);

}  // namespace cad
