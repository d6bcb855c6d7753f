#include "host/db/lens.h"

#include <utility>
#include <vector>

#include "host/dxf/extended_begin.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

constexpr int kMarker = 100;
constexpr int kEmbeddedObject = 101;  // from here on the tags belong to another object
constexpr int kGroup = 102;
constexpr int kFirstExtendedCode = 1000;

/// Extended data and the tags of an embedded object end the object's own.
bool ends_own_tags(int code) { return code >= kFirstExtendedCode || code == kEmbeddedObject; }

/// Walks the tags of a record and says to which class part each belongs.
class PartWalker {
 public:
  PartWalker(std::string_view bytes, const dxf::Dialect& dialect, std::string_view part)
      : tags_(bytes, dialect), part_(part), markers_(has_markers(bytes, dialect)) {}

  /// The next tag of the part; false at its end.
  bool next(dxf::Tag& tag) {
    while (tags_.next(tag)) {
      if (ends_own_tags(tag.code)) return false;
      if (tag.code == kMarker) {
        if (inside_ && first_end_ == 0) first_end_ = last_end_;
        inside_ = tag.value == part_;
        in_group_ = false;
        if (inside_) last_end_ = tag.end;
        continue;
      }
      if (tag.code == kGroup) {
        in_group_ = !tag.value.empty() && tag.value.front() == '{';
        continue;
      }
      if (in_group_ || !(inside_ || !markers_)) continue;
      last_end_ = tag.end;
      return true;
    }
    return false;
  }

  /// Behind the part's last tag, or, of a part with the marker twice, of its first stretch; 0 when
  /// there is no such part.
  std::size_t end() const { return first_end_ ? first_end_ : last_end_; }
  bool markers() const { return markers_; }

 private:
  static bool has_markers(std::string_view bytes, const dxf::Dialect& dialect) {
    dxf::TagReader tags(bytes, dialect);
    dxf::Tag tag;
    while (tags.next(tag)) {
      if (tag.code == kMarker) return true;
    }
    return false;
  }

  dxf::TagReader tags_;
  std::string_view part_;
  bool markers_;
  bool inside_ = false;
  bool in_group_ = false;
  std::size_t last_end_ = 0;
  std::size_t first_end_ = 0;
};

}  // namespace

std::optional<dxf::Tag> Lens::find(std::string_view part, int code) const {
  PartWalker walker(bytes_, dialect_, part);
  dxf::Tag tag;
  while (walker.next(tag)) {
    if (tag.code == code) return tag;
  }
  return std::nullopt;
}

std::optional<std::size_t> Lens::part_end(std::string_view part) const {
  PartWalker walker(bytes_, dialect_, part);
  dxf::Tag tag;
  while (walker.next(tag)) {
  }
  if (walker.end() != 0) return walker.end();
  if (walker.markers()) return std::nullopt;
  return own_end();
}

std::optional<dxf::Tag> Lens::handle_tag() const {
  dxf::TagReader tags(bytes_, dialect_);
  dxf::Tag tag;
  bool dimension_style = false;
  while (tags.next(tag) && tag.code != kMarker && tag.code < kFirstExtendedCode) {
    if (tag.code == 0) dimension_style = tag.value == "DIMSTYLE";
    if (tag.code == (dimension_style ? 105 : 5)) return tag;
  }
  return std::nullopt;
}

std::size_t Lens::behind_handle() const {
  if (const auto handle = handle_tag()) return handle->end;
  dxf::TagReader tags(bytes_, dialect_);
  dxf::Tag kind;
  return tags.next(kind) ? kind.end : 0;
}

std::optional<dxf::Tag> Lens::owner_tag() const {
  dxf::TagReader tags(bytes_, dialect_);
  dxf::Tag tag;
  bool in_group = false;
  while (tags.next(tag) && tag.code != kMarker && tag.code < kFirstExtendedCode) {
    if (tag.code == kGroup) in_group = !tag.value.empty() && tag.value.front() == '{';
    if (tag.code == 330 && !in_group) return tag;
  }
  return std::nullopt;
}

std::optional<Lens::Group> Lens::group(std::string_view name) const {
  if (bytes_.find(name) == bytes_.npos) return std::nullopt;  // most records have none
  dxf::TagReader tags(bytes_, dialect_);
  dxf::Tag tag;
  std::optional<Group> found;
  while (tags.next(tag) && tag.code != kMarker && tag.code < kFirstExtendedCode) {
    if (tag.code != kGroup) continue;
    if (found) {
      found->closing = tag.begin;
      found->end = tag.end;
      return found;
    }
    if (tag.value == name) found = Group{tag.begin, tag.end, tag.end, tag.end};
  }
  return std::nullopt;
}

std::size_t Lens::extended_data() const {
  if (!dialect_.binary)
    if (const auto begin = dxf::extended_data_begin(bytes_)) return *begin;
  dxf::TagReader tags(bytes_, dialect_);
  dxf::Tag tag;
  std::size_t end = 0;
  while (tags.next(tag)) {
    if (tag.code == 1001) return tag.begin;
    end = tag.end;
  }
  return end;
}

std::size_t Lens::own_end() const {
  dxf::TagReader tags(bytes_, dialect_);
  dxf::Tag tag;
  std::size_t end = 0;
  while (tags.next(tag) && !ends_own_tags(tag.code)) end = tag.end;
  return end;
}

std::int64_t Lens::integer(std::string_view part, int code, std::int64_t absent) const {
  const auto tag = find(part, code);
  return tag ? dxf::int_value(*tag, dialect_) : absent;
}

double Lens::real(std::string_view part, int code, double absent) const {
  const auto tag = find(part, code);
  return tag ? dxf::real_value(*tag, dialect_) : absent;
}

std::wstring Lens::text(std::string_view part, int code) const {
  const auto tag = find(part, code);
  return tag ? dxf::text_value(*tag, dialect_) : std::wstring();
}

AcGePoint3d Lens::point(std::string_view part, int code) const {
  return {real(part, code, 0.0), real(part, code + 10, 0.0), real(part, code + 20, 0.0)};
}

std::wstring Lens::chunked_text(std::string_view part) const {
  std::string pieces;  // joined before decoding: a chunk may end inside an escape
  PartWalker walker(bytes_, dialect_, part);
  dxf::Tag tag;
  while (walker.next(tag)) {
    if (tag.code == 3 || tag.code == 1) pieces += tag.value;
  }
  std::wstring text;
  dxf::append_decoded(pieces, dialect_, text);
  return text;
}

void LensWriter::replace_value(const dxf::Tag& old, std::string_view tag) {
  dxf::TagReader reader(tag, dialect_);
  dxf::Tag fresh;
  if (!reader.next(fresh)) return;
  const auto offset = static_cast<std::size_t>(old.value.data() - bytes_.data());
  bytes_.replace(offset, old.value.size(), fresh.value);
}

void LensWriter::put(std::string_view part, int code, std::string_view tag) {
  const Lens lens(bytes_, dialect_);
  if (const auto old = lens.find(part, code)) return replace_value(*old, tag);
  append(part, tag);
}

void LensWriter::append(std::string_view part, std::string_view tags) {
  const Lens lens(bytes_, dialect_);
  if (const auto end = lens.part_end(part)) return insert(*end, tags);
  std::string with_marker;  // a damaged record: without its marker the part would not be found
  dxf::TagWriter(with_marker, dialect_).raw(kMarker, part);
  insert(lens.own_end(), with_marker.append(tags));
}

void LensWriter::set_text(std::string_view part, int code, std::wstring_view value) {
  std::string tag;
  dxf::TagWriter(tag, dialect_).text(code, value);
  put(part, code, tag);
}

void LensWriter::set_integer(std::string_view part, int code, std::int64_t value) {
  std::string tag;
  dxf::TagWriter(tag, dialect_).integer(code, value);
  put(part, code, tag);
}

void LensWriter::set_real(std::string_view part, int code, double value) {
  std::string tag;
  dxf::TagWriter(tag, dialect_).real(code, value);
  put(part, code, tag);
}

void LensWriter::set_point(std::string_view part, int code, const AcGePoint3d& value) {
  set_real(part, code, value.x);
  set_real(part, code + 10, value.y);
  set_real(part, code + 20, value.z);
}

void LensWriter::set_chunked_text(std::string_view part, std::wstring_view value) {
  constexpr std::size_t kPiece = 250;
  std::string pieces;
  dxf::TagWriter writer(pieces, dialect_);
  while (value.size() > kPiece) {
    std::size_t end = kPiece;
    for (std::size_t at = kPiece - 1; at > kPiece - dxf::kLongestEscape; --at) {
      if (dxf::looks_escaped(value, at)) end = at;
    }
    writer.text(3, value.substr(0, end));
    value.remove_prefix(end);
  }
  writer.text(1, value);

  std::vector<std::pair<std::size_t, std::size_t>> old;
  PartWalker walker(bytes_, dialect_, part);
  dxf::Tag tag;
  while (walker.next(tag)) {
    if (tag.code == 3 || tag.code == 1) old.emplace_back(tag.begin, tag.end);
  }
  if (old.empty()) return append(part, pieces);
  const std::size_t place = old.front().first;
  for (auto piece = old.rbegin(); piece != old.rend(); ++piece) remove(piece->first, piece->second);
  insert(place, pieces);
}

void LensWriter::set_handle(const dxf::Tag& old, std::uint64_t value) {
  std::string tag;
  dxf::TagWriter(tag, dialect_).handle(old.code, value);
  replace_value(old, tag);
}

}  // namespace cad
