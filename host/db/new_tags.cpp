#include "host/db/new_tags.h"

#include "host/db/drawing.h"
#include "host/dxf/tag_writer.h"
#include "host/dxf/text.h"

namespace cad {
namespace {
constexpr int kVertices = 10;
}

bool NewTags::is_left_out(int code, double value) {
  const std::size_t i = slot(code);
  if (i == kMost || value != layout_.tags[i].absent) return false;
  values_[i].type = Type::kLeftOut;
  return true;
}

void NewTags::set_real(int code, double value) {
  if (is_left_out(code, value)) return;
  Value& held = at(code);
  held.type = Type::kReal;
  held.numbers[0] = value;
}

void NewTags::set_integer(int code, std::int64_t value) {
  if (is_left_out(code, static_cast<double>(value))) return;
  Value& held = at(code);
  held.type = Type::kInteger;
  held.integer = value;
}

void NewTags::set_point(int code, const AcGePoint3d& value) {
  Value& held = at(code);
  held.type = Type::kPoint;
  held.numbers[0] = value.x, held.numbers[1] = value.y, held.numbers[2] = value.z;
}

void NewTags::set_text(int code, std::wstring_view value) {
  Value& held = at(code);
  held.type = Type::kText;
  held.text.begin = static_cast<std::uint32_t>(texts_.size());
  held.text.size = static_cast<std::uint32_t>(value.size());
  texts_ += value;
}

void NewTags::set_record(int code, const Stub& record) {
  Value& held = at(code);
  held.type = Type::kRecord;
  held.record = &record;
}

double NewTags::real(int code, double absent) const {
  const Value& held = at(code);
  return held.type == Type::kReal ? held.numbers[0] : absent;
}

std::int64_t NewTags::integer(int code, std::int64_t absent) const {
  const Value& held = at(code);
  return held.type == Type::kInteger ? held.integer : absent;
}

AcGePoint3d NewTags::point(int code) const {
  const Value& held = at(code);
  if (held.type != Type::kPoint) return {};
  return {held.numbers[0], held.numbers[1], held.numbers[2]};
}

std::wstring NewTags::text(int code) const {
  const Value& held = at(code);
  if (held.type == Type::kText) return texts_.substr(held.text.begin, held.text.size);
  std::wstring name;
  if (held.type == Type::kRecord)
    dxf::append_decoded(symbol_name_bytes(*held.record),
                        StubStore::drawing_of(*held.record).dialect(), name);
  return name;
}

const Stub* NewTags::record(int code) const {
  const Value& held = at(code);
  return held.type == Type::kRecord ? held.record : nullptr;
}

void NewTags::spell(std::string& out, const dxf::Dialect& dialect, std::uint64_t handle,
                    std::uint64_t owner) const {
  dxf::TagWriter tags(out, dialect);
  tags.raw(0, layout_.kind);
  tags.handle(5, handle);
  const bool has_parts = dialect.has_dictionaries();  // R12 knows neither owners nor parts
  if (has_parts) tags.handle(330, owner);
  std::size_t parts = 0;
  const auto begin_parts = [&](std::size_t wanted) {
    for (; parts < wanted; ++parts)
      if (has_parts) tags.raw(100, layout_.parts[parts]);
  };
  for (std::size_t i = 0; i < layout_.tags.size(); ++i) {
    const Value& value = values_[i];
    const int code = layout_.tags[i].code;
    begin_parts(layout_.tags[i].part + 1u);
    switch (value.type) {
      case Type::kUnset:
        if (code == kVertices)
          for (const PolylineVertex& vertex : vertices_) write_vertex(tags, vertex);
        break;
      case Type::kLeftOut:
        break;
      case Type::kReal:
        tags.real(code, value.numbers[0]);
        break;
      case Type::kInteger:
        tags.integer(code, value.integer);
        break;
      case Type::kPoint:
        tags.point(code, value.numbers[0], value.numbers[1], value.numbers[2]);
        break;
      case Type::kText:
        tags.text(code, std::wstring_view(texts_).substr(value.text.begin, value.text.size));
        break;
      case Type::kRecord:
        if (&StubStore::drawing_of(*value.record).dialect() == &dialect) {
          tags.raw(code, symbol_name_bytes(*value.record));
        } else {
          tags.text(code, text(code));
        }
        break;
    }
  }
  begin_parts(layout_.parts.size());
}

std::string_view symbol_name_bytes(const Stub& record) {
  const Drawing& drawing = StubStore::drawing_of(record);
  dxf::TagReader tags(drawing.bytes_of(record), drawing.dialect());
  dxf::Tag tag;
  while (tags.next(tag))
    if (tag.code == 2) return tag.value;
  return {};
}

}  // namespace cad
