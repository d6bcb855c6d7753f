#include "host/db/entity_fields.h"

#include <numbers>

#include "host/dxf/text.h"

namespace cad {

bool OwnTags::next(dxf::Tag& tag) {
  constexpr int kGroup = 102, kEmbedded = 101, kFirstExtended = 1000;
  while (tags_.next(tag)) {
    if (tag.code == kEmbedded || tag.code >= kFirstExtended) return false;
    if (tag.code == kGroup) {
      in_group_ = !tag.value.empty() && tag.value.front() == '{';
    } else if (!in_group_) {
      return true;
    }
  }
  return false;
}

EntityFields::EntityFields(std::string_view bytes, const dxf::Dialect& dialect)
    : dialect_(dialect) {
  OwnTags tags(bytes, dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    const std::size_t place = tag.code < 0 ? kSlots : slot(tag.code);
    if (place == kSlots || present_[place]) continue;
    present_[place] = true;
    values_[place] = tag.value;
  }
}

double EntityFields::real(int code, double absent) const {
  if (!has(code)) return absent;
  dxf::Tag tag;
  tag.code = code;
  tag.value = values_[slot(code)];
  return dxf::real_value(tag, dialect_);
}

double EntityFields::angle(int code, double absent) const {
  return has(code) ? real(code) * (std::numbers::pi / 180) : absent;
}

int EntityFields::integer(int code, int absent) const {
  if (!has(code)) return absent;
  dxf::Tag tag;
  tag.code = code;
  tag.value = values_[slot(code)];
  return static_cast<int>(dxf::int_value(tag, dialect_));
}

std::wstring EntityFields::text(int code) const {
  std::wstring text;
  dxf::append_decoded(bytes(code), dialect_, text);
  return text;
}

std::string_view EntityFields::bytes(int code) const {
  return has(code) ? values_[slot(code)] : std::string_view();
}

AcGePoint3d EntityFields::point(int code) const {
  return {real(code), real(code + 10), real(code + 20)};
}

}  // namespace cad
