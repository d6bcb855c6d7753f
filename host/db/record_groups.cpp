#include "host/db/record_groups.h"

#include <algorithm>
#include <numbers>

#include "host/db/drawing.h"
#include "host/db/record.h"
#include "host/db/stub.h"
#include "host/dxf/group_codes.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

using Type = Group::Type;

constexpr int kApplication = 1001;  // begins extended data

bool is_angle(int code) { return code >= 50 && code <= 58; }

/// Handles that stay text: an object's own, and those that name objects of any kind loosely.
bool is_text_handle(int code) {
  return code == 5 || code == 105 || code == 1005 || (code >= 320 && code <= 329);
}

Group text_group(int code, std::string_view bytes) {
  Group group;
  group.code = code;
  group.bytes = bytes;
  return group;
}

Group integer_group(int code, std::int64_t value) {
  Group group;
  group.code = code;
  group.type = Type::kInteger;
  group.integer = value;
  return group;
}

/// Name of the layout whose space holds the entity; empty for one in a block.
std::string_view layout_name(AcDbObjectId id, bool in_paper) {
  constexpr std::string_view kModel = "Model";
  const std::uint64_t owner = id.stub()->owner;
  if (owner == 0) return in_paper ? std::string_view() : kModel;  // R12 and before
  if (owner == id.database()->drawing().model_space()) return kModel;
  dxf::Tag tag;
  AcDbObjectId layout;
  const RecordTags block = record_tags(referenced(id, owner));
  for (dxf::TagReader tags(block.bytes, *record_tags(id).dialect); tags.next(tag);)
    if (tag.code == 340) layout = referenced(id, dxf::handle_value(tag));
  if (record_kind(layout) != "LAYOUT") return {};
  // The group 1 before the marker names the page set-up.
  bool in_class = false;
  const RecordTags record = record_tags(layout);
  for (dxf::TagReader tags(record.bytes, *record.dialect); tags.next(tag);) {
    if (tag.code == 100) in_class = tag.value == "AcDbLayout";
    if (tag.code == 1 && in_class) return tag.value;
  }
  return {};
}

}  // namespace

/// Turns the tags of one record into groups.
class RecordGroups::Reader {
 public:
  Reader(RecordGroups& out, AcDbObjectId id, const RecordTags& record)
      : out_(out),
        id_(id),
        dialect_(*record.dialect),
        tags_(record.bytes, dialect_),
        kind_(record_kind(id)) {}

  void read() {
    for (bool more = tags_.next(tag_); more;) {
      if (tag_.code == kApplication && out_.extended_ == kNone) {
        leave_head();
        out_.extended_ = out_.groups_.size();
      }
      more = dxf::is_point_code(tag_.code) ? read_point() : read_plain();
    }
    leave_head();
    if (out_.extended_ == kNone) out_.extended_ = out_.groups_.size();
  }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

 private:
  bool read_plain() {
    add(group_of(tag_));
    return tags_.next(tag_);
  }

  /// x, and y and z when they follow at once.
  bool read_point() {
    Group point = group_of(tag_);
    bool more = tags_.next(tag_);
    for (int axis = 1; axis < 3 && more && tag_.code == point.code + 10 * axis; ++axis) {
      point.type = Type::kPoint;
      point.dimensions = static_cast<std::uint8_t>(axis + 1);
      point.numbers[axis] = dxf::real_value(tag_, dialect_);
      more = tags_.next(tag_);
    }
    add(point);
    return more;
  }

  Group group_of(const dxf::Tag& tag) {
    Group group;
    group.code = tag.code;
    group.bytes = tag.value;
    switch (dxf::value_type(tag.code)) {
      case dxf::ValueType::kReal:
        group.type = Type::kReal;
        group.numbers[0] = dxf::real_value(tag, dialect_);
        if (is_angle(tag.code) && kind_ != "XRECORD") group.numbers[0] *= std::numbers::pi / 180;
        break;
      case dxf::ValueType::kInt16:
      case dxf::ValueType::kInt32:
      case dxf::ValueType::kInt64:
      case dxf::ValueType::kBool:
        group.type = Type::kInteger;
        group.integer = dxf::int_value(tag, dialect_);
        break;
      case dxf::ValueType::kHandle:
        group.type = is_text_handle(tag.code) ? Type::kHandle : Type::kObject;
        if (group.type == Type::kObject) group.object = referenced(id_, dxf::handle_value(tag));
        break;
      case dxf::ValueType::kChunk:
        group.type = Type::kChunk;
        break;
      case dxf::ValueType::kText:
        break;
    }
    return group;
  }

  /// The frame before the first class marker is put in entget's order; all else goes as it comes.
  void add(const Group& group) {
    if (out_.groups_.empty()) {
      out_.groups_.push_back(group);
      return;
    }
    if (in_head_ && add_to_head(group)) return;
    leave_head();
    out_.groups_.push_back(group);
  }

  bool add_to_head(const Group& group) {
    const int handle_code = kind_ == "DIMSTYLE" ? 105 : 5;
    if (in_braces_ || group.code == 102) {
      out_.head_.push_back(group);
      if (group.code == 102) in_braces_ = !group.bytes.empty() && group.bytes.front() == '{';
    } else if (group.code == handle_code && handle_.code == 0) {
      handle_ = group;
    } else if (group.code == 330 && owner_.code == 0) {
      owner_ = group;
    } else {
      return false;
    }
    return true;
  }

  void leave_head() {
    if (!in_head_) return;
    in_head_ = false;
    out_.groups_.insert(out_.groups_.end(), out_.head_.begin(), out_.head_.end());
    out_.head_.clear();
    if (owner_.code != 0) out_.groups_.push_back(owner_);
    if (handle_.code != 0) out_.groups_.push_back(handle_);
  }

  RecordGroups& out_;
  const AcDbObjectId id_;
  const dxf::Dialect& dialect_;
  dxf::TagReader tags_;
  dxf::Tag tag_;
  const std::string_view kind_;
  Group handle_, owner_;
  bool in_head_ = true;
  bool in_braces_ = false;
};

bool RecordGroups::read(AcDbObjectId id) {
  groups_.clear();
  head_.clear();
  extended_ = Reader::kNone;
  if (id.isNull()) {
    extended_ = 0;
    return false;
  }
  const RecordTags record = record_tags(id);
  dialect_ = record.dialect;
  Reader(*this, id, record).read();
  if (!is_entity(id)) return true;

  // The space an entity is in, behind the marker of the class that says so.
  const auto body = groups_.begin() + static_cast<std::ptrdiff_t>(extended_);
  const auto marker = std::find_if(groups_.begin(), body, [](const Group& group) {
    return group.code == 100 && group.bytes == "AcDbEntity";
  });
  auto place = marker == body ? std::find_if(groups_.begin(), body,
                                             [](const Group& group) { return group.code == 8; })
                              : marker + 1;
  const Group* const space = find(67);
  const bool lacks_space = space == nullptr;
  const std::string_view layout =
      find(410) ? std::string_view() : layout_name(id, space && space->integer != 0);
  if (!layout.empty()) {
    place = groups_.insert(place, text_group(410, layout));
    ++extended_;
  }
  if (lacks_space) {
    groups_.insert(place, integer_group(67, 0));
    ++extended_;
  }
  return true;
}

const Group* RecordGroups::find(int code) const {
  for (const Group& group : groups())
    if (group.code == code) return &group;
  return nullptr;
}

std::wstring RecordGroups::text(const Group& group) const {
  std::wstring text;
  append_text(group, text);
  return text;
}

void RecordGroups::append_text(const Group& group, std::wstring& text) const {
  if (group.type == Type::kChunk) {
    dxf::Tag tag;
    tag.code = group.code;
    tag.value = group.bytes;
    for (const unsigned char byte : dxf::chunk_value(tag, *dialect_)) {
      text += L"0123456789ABCDEF"[byte >> 4];
      text += L"0123456789ABCDEF"[byte & 15];
    }
  } else {
    dxf::append_decoded(group.bytes, *dialect_, text);
  }
}

bool is_sub_entity(AcDbObjectId id) {
  const std::string_view kind = record_kind(id);
  return kind == "VERTEX" || kind == "ATTRIB" || kind == "SEQEND";
}

}  // namespace cad
