#include "host/db/tag_sheet.h"

#include <cmath>

#include "host/dxf/tag_writer.h"

namespace cad {

TagSheet::TagSheet(std::string_view bytes, const dxf::Dialect& dialect)
    : bytes_(bytes), dialect_(dialect) {
  dxf::TagReader tags(bytes, dialect);
  Entry entry;
  entry.zone = Zone::kFrame;
  bool in_group = false;
  while (tags.next(entry.tag)) {
    const int code = entry.tag.code;
    Zone zone = entry.zone;
    if (code == 1001) zone = Zone::kExtended;
    if (code == 101 && zone != Zone::kExtended) zone = Zone::kEmbedded;
    entry.zone = zone;
    bool frame = false;
    if (zone == Zone::kFrame || zone == Zone::kOwn) {
      if (code == 100) {
        markers_ = true;
        entry.zone = Zone::kOwn;
        entry.part = entry.tag.value;
        frame = true;
      } else if (code == 102) {
        in_group = !entry.tag.value.empty() && entry.tag.value.front() == '{';
        frame = true;
      } else {
        frame = in_group || code == 0;
      }
    }
    const Zone kept = entry.zone;
    if (frame) entry.zone = Zone::kFrame;
    entries_.push_back(entry);
    entry.zone = kept;
  }
  if (markers_) return;
  for (Entry& plain : entries_) {  // R12: all but the head of the record is the object's own
    const int code = plain.tag.code;
    if (plain.zone == Zone::kFrame && code != 0 && code != 5 && code != 102)
      plain.zone = Zone::kOwn;
  }
}

bool TagSheet::in_part(std::size_t i, std::string_view part) const {
  return entries_[i].zone == Zone::kOwn && (!markers_ || part.empty() || entries_[i].part == part);
}

std::size_t TagSheet::find(std::string_view part, int code) const {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].tag.code == code && in_part(i, part)) return i;
  }
  return kNone;
}

std::size_t TagSheet::marker(std::string_view part) const {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (markers_) {
      if (entries_[i].tag.code == 100 && entries_[i].part == part) return i;
    } else if (entries_[i].zone == Zone::kOwn && i > 0) {
      return i - 1;
    }
  }
  return kNone;
}

std::size_t TagSheet::last_of(std::string_view part) const {
  std::size_t last = marker(part);
  if (last == kNone) return kNone;
  for (std::size_t i = last + 1; i < entries_.size() && in_part(i, part); ++i) last = i;
  return last;
}

double TagSheet::real(std::size_t i) const {
  const Entry& entry = entries_[i];
  return entry.fresh.empty() ? dxf::real_value(entry.tag, dialect_) : entry.number;
}

std::int64_t TagSheet::integer(std::size_t i) const {
  const Entry& entry = entries_[i];
  return entry.fresh.empty() ? dxf::int_value(entry.tag, dialect_)
                             : static_cast<std::int64_t>(entry.number);
}

double TagSheet::real(std::string_view part, int code, double absent) const {
  const std::size_t i = find(part, code);
  return i == kNone ? absent : real(i);
}

std::int64_t TagSheet::integer(std::string_view part, int code, std::int64_t absent) const {
  const std::size_t i = find(part, code);
  return i == kNone ? absent : integer(i);
}

std::size_t TagSheet::coordinates(std::size_t i) const {
  std::size_t count = 1;
  while (count < 3 && i + count < entries_.size() &&
         code(i + count) == code(i) + 10 * static_cast<int>(count)) {
    ++count;
  }
  return count;
}

AcGePoint3d TagSheet::point(std::size_t i) const {
  AcGePoint3d point;
  const std::size_t count = coordinates(i);
  for (unsigned axis = 0; axis < count; ++axis) point[axis] = real(i + axis);
  return point;
}

AcGeVector3d TagSheet::normal() const {
  const std::size_t i = find({}, 210);
  return i == kNone ? AcGeVector3d::kZAxis : point(i).asVector();
}

void TagSheet::set_real(std::size_t i, double value) {
  if (!std::isfinite(value)) {
    finite_ = false;
    return;
  }
  if (real(i) == value) return;
  Entry& entry = entries_[i];
  entry.fresh.clear();
  dxf::TagWriter(entry.fresh, dialect_).real(entry.tag.code, value);
  entry.number = value;
  changed_ = true;
}

void TagSheet::set_integer(std::size_t i, std::int64_t value) {
  if (integer(i) == value) return;
  Entry& entry = entries_[i];
  entry.fresh.clear();
  dxf::TagWriter(entry.fresh, dialect_).integer(entry.tag.code, value);
  entry.number = static_cast<double>(value);
  changed_ = true;
}

void TagSheet::set_point(std::size_t i, const AcGePoint3d& value, bool flat) {
  const std::size_t count = coordinates(i);
  for (unsigned axis = 0; axis < count; ++axis) set_real(i + axis, value[axis]);
  if (count == 2 && !flat && value.z != 0) add_real(i + 1, code(i) + 20, value.z);
}

std::size_t TagSheet::place_behind(std::initializer_list<int> codes) const {
  std::size_t place = kNone;
  std::size_t any = 0;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].zone == Zone::kEmbedded || entries_[i].zone == Zone::kExtended) break;
    if (entries_[i].tag.code == 100) any = i;
    if (entries_[i].zone != Zone::kOwn) continue;
    if (!markers_) any = i;
    for (const int code : codes) {
      if (entries_[i].tag.code == code) {
        place = i;
        if (dxf::is_point_code(code)) place += coordinates(i) - 1;
      }
    }
  }
  return place == kNone ? any : place;
}

void TagSheet::put_real(int code, double value, double absent, std::initializer_list<int> behind) {
  const std::size_t i = find({}, code);
  if (i != kNone) return set_real(i, value);
  if (value != absent) add_real(place_behind(behind), code, value);
}

void TagSheet::put_integer(int code, std::int64_t value, std::int64_t absent,
                           std::initializer_list<int> behind) {
  const std::size_t i = find({}, code);
  if (i != kNone) return set_integer(i, value);
  if (value != absent) add_integer(place_behind(behind), code, value);
}

void TagSheet::add_real(std::size_t i, int code, double value) {
  if (!std::isfinite(value)) {
    finite_ = false;
    return;
  }
  dxf::TagWriter(entries_[i].behind, dialect_).real(code, value);
  changed_ = true;
}

void TagSheet::add_integer(std::size_t i, int code, std::int64_t value) {
  dxf::TagWriter(entries_[i].behind, dialect_).integer(code, value);
  changed_ = true;
}

std::string TagSheet::text() const {
  std::string out;
  out.reserve(bytes_.size() + 64);
  for (const Entry& entry : entries_) {
    if (entry.fresh.empty()) {
      out += bytes_.substr(entry.tag.begin, entry.tag.end - entry.tag.begin);
    } else {
      // Only the value is exchanged: the spelling of code and line ends stays.
      dxf::TagReader fresh(entry.fresh, dialect_);
      dxf::Tag tag;
      fresh.next(tag);
      const auto value = static_cast<std::size_t>(entry.tag.value.data() - bytes_.data());
      out += bytes_.substr(entry.tag.begin, value - entry.tag.begin);
      out += tag.value;
      out += bytes_.substr(value + entry.tag.value.size(),
                           entry.tag.end - value - entry.tag.value.size());
    }
    out += entry.behind;
  }
  return out;
}

}  // namespace cad
