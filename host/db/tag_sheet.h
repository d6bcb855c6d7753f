#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/tag_reader.h"
#include "host/geometry/ge.h"

namespace cad {

/// The tags of one record laid out for exchanging numbers. What is not changed keeps its bytes; a
/// number that is set to what it is counts as not changed.
///     TagSheet sheet(record.bytes, *record.dialect);
///     for (std::size_t i = 0; i < sheet.size(); ++i) if (sheet.code(i) == 40) sheet.set_real(...);
///     if (sheet.changed()) object_bytes = sheet.text();
class TagSheet {
 public:
  /// Where in a record a tag stands.
  enum class Zone : std::uint8_t {
    kFrame,     ///< kind, handle, {...} groups, owner, class markers
    kOwn,       ///< the class parts
    kEmbedded,  ///< of an object within the object
    kExtended,  ///< extended data
  };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// The bytes must outlive the sheet.
  TagSheet(std::string_view bytes, const dxf::Dialect& dialect);

  std::size_t size() const { return entries_.size(); }
  bool has_parts() const { return markers_; }
  int code(std::size_t i) const { return entries_[i].tag.code; }
  Zone zone(std::size_t i) const { return entries_[i].zone; }
  /// Whether the tag belongs to that class part, with an empty name to any of them. Records of R12
  /// have no parts: every tag belongs to each.
  bool in_part(std::size_t i, std::string_view part) const;
  /// The first tag of the class part with that code, or kNone.
  std::size_t find(std::string_view part, int code) const;
  /// The marker of a class part, in R12 the tag in front of the first of the object's own; kNone
  /// when the record lacks the part.
  std::size_t marker(std::string_view part) const;
  /// The last tag of the class part, of a part with the marker twice of its first stretch.
  std::size_t last_of(std::string_view part) const;

  /// Values as they stand, changes included.
  double real(std::size_t i) const;
  std::int64_t integer(std::size_t i) const;
  std::wstring text_value(std::size_t i) const {
    return dxf::text_value(entries_[i].tag, dialect_);
  }
  double real(std::string_view part, int code, double absent) const;
  std::int64_t integer(std::string_view part, int code, std::int64_t absent) const;
  /// The point whose x is tag i; y and z are 0 where they do not follow.
  AcGePoint3d point(std::size_t i) const;
  /// Group 210, or Z.
  AcGeVector3d normal() const;
  bool has_z(std::size_t i) const { return coordinates(i) == 3; }
  /// How many tags the point is made of.
  std::size_t coordinates(std::size_t i) const;

  void set_real(std::size_t i, double value);
  void set_integer(std::size_t i, std::int64_t value);
  /// A z that the file leaves out is added when it is not 0, unless the point is flat.
  void set_point(std::size_t i, const AcGePoint3d& value, bool flat = false);
  /// Sets a number of the object's own, or adds it when the file leaves it out and it is no longer
  /// `absent`: behind the last tag with one of the codes `behind`, else behind the class marker.
  void put_real(int code, double value, double absent, std::initializer_list<int> behind);
  void put_integer(int code, std::int64_t value, std::int64_t absent,
                   std::initializer_list<int> behind);
  /// New tags behind tag i, in the order of the calls.
  void add_real(std::size_t i, int code, double value);
  void add_integer(std::size_t i, int code, std::int64_t value);

  bool changed() const { return changed_; }
  /// Whether every number that was set is finite. Those that are not were left as they were.
  bool finite() const { return finite_; }
  std::string text() const;

 private:
  std::size_t place_behind(std::initializer_list<int> codes) const;

  struct Entry {
    dxf::Tag tag;
    std::string_view part;
    Zone zone;
    std::string fresh;   // the whole tag as it is to be; empty while unchanged
    std::string behind;  // tags added behind it
    double number = 0;   // of a fresh real
  };

  std::string_view bytes_;
  const dxf::Dialect& dialect_;
  std::vector<Entry> entries_;
  bool markers_ = false;
  bool changed_ = false;
  bool finite_ = true;
};

}  // namespace cad
