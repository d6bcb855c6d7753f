#include "host/db/merge_groups.h"

#include <algorithm>
#include <utility>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/lens.h"
#include "host/db/record.h"
#include "host/dxf/tag_writer.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

constexpr int kMarker = 100;
constexpr int kBraces = 102;
constexpr int kEmbeddedObject = 101;
constexpr int kFirstExtendedCode = 1000;
constexpr int kApplication = 1001;
constexpr int kCloningFlag = 280;
constexpr std::size_t kLongestPiece = 250;  // of a MTEXT

bool ends_own_tags(int code) { return code >= kFirstExtendedCode || code == kEmbeddedObject; }

/// Groups that entget makes up where the record lacks them.
bool is_space_group(int code) { return code == 67 || code == 410; }

bool opens_braces(const GroupView& group) {
  return group.code == kBraces && group.text.starts_with(L'{');
}

bool is_frame_code(int code) { return code == 0 || code == 5 || code == 105 || code == 330; }

/// Reads the frame away; `span` is then the first group behind it.
bool skip_frame(TagSpanReader& reader, TagSpan& span) {
  bool in_braces = false;
  while (reader.next(span)) {
    if (in_braces) {
      in_braces = span.first.code != kBraces;
    } else if (span.first.code == kBraces && span.first.value.starts_with('{')) {
      in_braces = true;
    } else if (!is_frame_code(span.first.code)) {
      return true;
    }
  }
  return false;
}

template <class Range, class CodeOf>
std::size_t count_code(const Range& range, int code, CodeOf code_of) {
  return static_cast<std::size_t>(std::count_if(
      range.begin(), range.end(), [&](const auto& item) { return code_of(item) == code; }));
}

int code_of_tags(const TagSpan& span) { return span.first.code; }
int code_of_group(const GroupView* group) { return group->code; }

}  // namespace

/// Walks the groups of a list that are the object's own: its frame, which stays as it is, groups in
/// braces, an embedded object and extended data are passed over.
class GroupMerge::OwnGroups {
 public:
  explicit OwnGroups(const GroupMerge& merge)
      : groups_(merge.groups_), is_xrecord_(merge.kind_ == "XRECORD") {}

  const GroupView* next() {
    while (at_ < groups_.size()) {
      const GroupView& group = groups_[at_++];
      if (in_braces_) {
        in_braces_ = group.code != kBraces;
      } else if (ends_own_tags(group.code)) {
        at_ = groups_.size();
      } else if (group.code == kMarker) {
        in_class_ = true;
        return &group;
      } else if (opens_braces(group) && (!is_xrecord_ || !in_class_)) {
        in_braces_ = true;
      } else if (group.code > 0 && group.code != 5 && group.code != 105) {
        if (in_class_ || group.code != 330) return &group;
      }
    }
    return nullptr;
  }

 private:
  const std::span<const GroupView> groups_;
  const bool is_xrecord_;
  std::size_t at_ = 0;
  bool in_braces_ = false;
  bool in_class_ = false;
};

GroupMerge::GroupMerge(AcDbObjectId id, std::span<const GroupView> groups)
    : id_(id),
      kind_(record_kind(id)),
      is_entity_(is_entity(id)),
      bytes_(record_tags(id).bytes),
      dialect_(*record_tags(id).dialect),
      groups_(groups) {}

void GroupMerge::sort_out_frame() {
  body_.reserve(groups_.size());
  OwnGroups own(*this);
  while (const GroupView* group = own.next()) body_.push_back(*group);
}

void GroupMerge::take_extended_data() {
  for (const GroupView& group : groups_) {
    if (group.code == kApplication) extended_data_.push_back({group.text, {}});
    if (group.code >= kFirstExtendedCode && !extended_data_.empty())
      extended_data_.back().groups.push_back(group);
  }
}

Status GroupMerge::run() {
  if (!walk_side_by_side()) {
    pieces_.clear();
    sort_out_frame();
    if (Status status = sort_and_merge(); !status) return status;
  }
  take_extended_data();
  merge_extended_data();
  return {};
}

bool GroupMerge::same(const TagSpan& tags, const GroupView& group) const {
  if (same_value(tags, group, kind_, dialect_)) return true;
  // A reference that leads nowhere reads as null and stays as it is.
  const bool null = group.type == GroupView::Type::kObject && group.object.isNull();
  return null && referenced(id_, dxf::handle_value(tags.first)).isNull();
}

void GroupMerge::replace(const TagSpan& tags, const GroupView& group, bool flat) {
  if (same(tags, group)) return;
  Piece piece;
  piece.begin = tags.first.begin;
  piece.end = tags.end;
  piece.group = &group;
  piece.tags = tags;
  piece.flat = flat || tags.tags == 2;
  pieces_.push_back(piece);
}

/// False when the groups do not stand as the record has them, or want more than other values.
bool GroupMerge::walk_side_by_side() {
  TagSpanReader reader(bytes_, dialect_);
  TagSpan span;
  bool more = skip_frame(reader, span);
  OwnGroups own(*this);
  while (const GroupView* group = own.next()) {
    const int code = group->code;
    const bool here = more && span.first.code == code && !ends_own_tags(code);
    if (!here && is_entity_ && is_space_group(code)) continue;
    if (!here || (code == 1 && group->text.size() > kLongestPiece)) return false;
    if (code == kMarker && !same(span, *group)) return false;
    replace(span, *group, false);
    more = reader.next(span);
  }
  return !more || ends_own_tags(span.first.code);
}

Status GroupMerge::sort_and_merge() {
  read_parts();
  split_long_text();
  if (Status status = sort_groups(); !status) return status;
  add_counts();
  if (kind_ == "XRECORD") merge_cloning_flag();
  for (Part& part : parts_)
    if (Status status = merge_part(part); !status) return status;
  std::stable_sort(pieces_.begin(), pieces_.end(),
                   [](const Piece& a, const Piece& b) { return a.begin < b.begin; });
  return {};
}

void GroupMerge::read_parts() {
  std::int64_t flags = 0;
  const Lens lens(bytes_, dialect_);
  own_end_ = lens.own_end();
  TagSpanReader reader(bytes_, dialect_);
  TagSpan span;
  bool in_braces = false;
  for (bool more = skip_frame(reader, span); more && !ends_own_tags(span.first.code);
       more = reader.next(span)) {
    if (in_braces) {
      in_braces = span.first.code != kBraces;
      continue;
    }
    if (span.first.code == kMarker) {
      parts_.push_back({span.first.value, span.end, span.end, false, nullptr, {}, {}});
      continue;
    }
    if (parts_.empty())
      parts_.push_back({{}, span.first.begin, span.first.begin, false, nullptr, {}, {}});
    parts_.back().end = span.end;
    in_braces =
        span.first.code == kBraces && span.first.value.starts_with('{') && kind_ != "XRECORD";
    if (in_braces) continue;
    if (span.first.code == 70) flags |= dxf::int_value(span.first, dialect_);
    parts_.back().tags.push_back(span);
  }
  const KindRow* row = kind_row(kind_, flags);
  if (!row) return;
  if (parts_.empty() || parts_.front().marker.empty()) {  // R12 knows no class parts
    PartRow& merged = merged_rows_.emplace_back();
    for (const PartRow& part : row->parts)
      for (GroupRow group : part.groups) {
        group.rank += static_cast<int>(merged.groups.size());
        if (!merged.find(group.code)) merged.groups.push_back(group);
      }
    if (parts_.empty()) parts_.push_back({{}, own_end_, own_end_, false, nullptr, {}, {}});
    parts_.front().row = &merged_rows_.back();
    return;
  }
  std::size_t at = 0;
  for (const PartRow& part : row->parts) {
    std::size_t found = at;
    while (found < parts_.size() && parts_[found].marker != part.marker) ++found;
    if (found < parts_.size()) {
      parts_[found].row = &part;
      at = found + 1;
    } else if (!part.groups.empty()) {
      // A part the record lacks: its groups would come last.
      parts_.push_back({part.marker, own_end_, own_end_, true, &part, {}, {}});
    }
  }
}

GroupMerge::Part* GroupMerge::part_named(std::wstring_view marker, const Part* behind) {
  const std::string name = to_utf8(marker);
  const auto named = [&](const Part& part) { return part.marker == name; };
  const auto from = behind ? parts_.begin() + (behind - parts_.data()) + 1 : parts_.begin();
  auto found = std::find_if(from, parts_.end(), named);
  if (found == parts_.end()) found = std::find_if(parts_.begin(), parts_.end(), named);
  return found == parts_.end() ? nullptr : &*found;
}

GroupMerge::Part* GroupMerge::part_for(const GroupView& group, Part* named) {
  const auto holds = [&](const Part& part) {
    return count_code(part.tags, group.code, code_of_tags) != 0;
  };
  const auto knows = [&](const Part& part) { return part.row && part.row->find(group.code); };
  if (kind_ == "XRECORD") return parts_.empty() ? nullptr : &parts_.back();
  if (named && (holds(*named) || knows(*named))) return named;
  for (Part& part : parts_)
    if (holds(part)) return &part;
  for (Part& part : parts_)
    if (knows(part)) return &part;
  return named && !named->row ? named : nullptr;
}

Status GroupMerge::sort_groups() {
  Part* named = nullptr;
  for (const GroupView& group : body_) {
    if (group.code == kMarker) {
      named = part_named(group.text, named);
      continue;
    }
    Part* part = part_for(group, named);
    if (part) {
      part->groups.push_back(&group);
    } else if (!is_space_group(group.code) && group.code != 330) {
      return fail(
          "", "group " + std::to_string(group.code) + " does not belong to this kind of object");
    }
  }
  return {};
}

/// The 280 behind the marker of an xrecord is no data.
void GroupMerge::merge_cloning_flag() {
  if (parts_.empty()) return;
  Part& data = parts_.back();
  const bool there = dialect_.has_cloning_flags() && !data.tags.empty() &&
                     data.tags.front().first.code == kCloningFlag;
  const bool given = !data.groups.empty() && data.groups.front()->code == kCloningFlag;
  if (there && given) replace(data.tags.front(), *data.groups.front(), false);
  if (there) data.tags.erase(data.tags.begin());
  if (given) data.groups.erase(data.groups.begin());
}

Status GroupMerge::merge_part(Part& part) {
  if (part.groups.empty()) return {};
  const bool is_data = kind_ == "XRECORD";
  const auto in_sequence = [&](int code) {
    if (is_data) return true;
    const GroupRow* row = part.row ? part.row->find(code) : nullptr;
    if (part.row) return part.row->as_listed || (row && row->repeated);
    return count_code(part.tags, code, code_of_tags) > 1 ||
           count_code(part.groups, code, code_of_group) > 1;
  };
  std::vector<int> single, sequence;
  const auto note = [&](int code) {
    std::vector<int>& codes = in_sequence(code) ? sequence : single;
    if (std::find(codes.begin(), codes.end(), code) == codes.end()) codes.push_back(code);
  };
  for (const GroupView* group : part.groups) note(group->code);
  for (const int code : single) merge_single(part, code);
  if (sequence.empty()) return {};
  for (const TagSpan& span : part.tags)
    if (in_sequence(span.first.code)) note(span.first.code);
  return merge_sequence(part, sequence);
}

void GroupMerge::merge_single(Part& part, int code) {
  std::vector<const GroupView*> groups;
  for (const GroupView* group : part.groups)
    if (group->code == code) groups.push_back(group);
  std::size_t next = 0;
  const GroupRow* row = part.row ? part.row->find(code) : nullptr;
  const std::size_t there = count_code(part.tags, code, code_of_tags);
  for (const TagSpan& span : part.tags) {
    if (span.first.code != code || next == groups.size()) continue;
    // Given once more often than it is there: the last one counts.
    const GroupView* group = there == 1 ? groups.back() : groups[next++];
    replace(span, *group, row && row->flat);
  }
  if (there == 0) insert(part, *groups.back());
}

/// Behind the last tag that comes before it in the table.
void GroupMerge::insert(Part& part, const GroupView& group) {
  const GroupRow* row = part.row ? part.row->find(group.code) : nullptr;
  std::size_t place = row ? part.begin : part.end;
  for (const TagSpan& span : part.tags) {
    const GroupRow* other = row ? part.row->find(span.first.code) : nullptr;
    if (other && other->rank <= row->rank) place = span.end;
  }
  Piece piece;
  piece.begin = piece.end = place;
  piece.group = &group;
  piece.flat = row ? row->flat : group.dimensions == 2;
  if (std::exchange(part.missing, false)) piece.marker = part.marker;
  pieces_.push_back(piece);
}

/// Groups that mean something by their order: pairwise where codes follow each other as before,
/// else all are replaced, but for those equal at both ends.
Status GroupMerge::merge_sequence(Part& part, const std::vector<int>& codes) {
  const auto among = [&](int code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
  };
  std::vector<const TagSpan*> old;
  std::vector<const GroupView*> fresh;
  for (const TagSpan& span : part.tags)
    if (among(span.first.code)) old.push_back(&span);
  for (const GroupView* group : part.groups)
    if (among(group->code)) fresh.push_back(group);
  const auto flat = [&](const GroupView& group) {
    const GroupRow* row = part.row ? part.row->find(group.code) : nullptr;
    return row ? row->flat : group.dimensions == 2;
  };
  const auto named = [&](int code) { return count_code(fresh, code, code_of_group) != 0; };

  std::vector<const TagSpan*> matching;
  for (const TagSpan* span : old)
    if (named(span->first.code)) matching.push_back(span);
  // Data, and the pieces of a text, are one thing: what is not among them goes.
  const bool is_one = kind_ == "XRECORD" || kind_ == "MTEXT";
  const bool pairwise = (!is_one || matching.size() == old.size()) &&
                        std::equal(matching.begin(), matching.end(), fresh.begin(), fresh.end(),
                                   [](const TagSpan* span, const GroupView* group) {
                                     return span->first.code == group->code;
                                   });
  if (pairwise) {
    for (std::size_t i = 0; i < fresh.size(); ++i)
      replace(*matching[i], *fresh[i], flat(*fresh[i]));
    return {};
  }
  if (part.row && part.row->as_listed && kind_ != "XRECORD" && matching.size() != old.size())
    return fail("", "group " + std::to_string(fresh.front()->code) +
                        " cannot be placed: give all groups of " + std::string(part.marker));

  std::size_t front = 0, back = 0;
  const std::size_t least = std::min(old.size(), fresh.size());
  while (front < least && same(*old[front], *fresh[front])) ++front;
  while (back < least - front && same(*old[old.size() - 1 - back], *fresh[fresh.size() - 1 - back]))
    ++back;
  for (std::size_t i = front; i + back < old.size(); ++i)
    pieces_.push_back({old[i]->first.begin, old[i]->end, nullptr, {}, {}, false});
  std::size_t place = part.end;
  if (front > 0) place = old[front - 1]->end;
  if (front == 0 && !old.empty()) place = old.front()->first.begin;
  for (std::size_t i = front; i + back < fresh.size(); ++i) {
    pieces_.push_back({place, place, fresh[i], {}, {}, flat(*fresh[i])});
    if (std::exchange(part.missing, false)) pieces_.back().marker = part.marker;
  }
  return {};
}

void GroupMerge::set_count(int counter, int counted) {
  for (Part& part : parts_) {
    const std::size_t count = count_code(part.groups, counted, code_of_group);
    if (count == 0) continue;
    GroupView& group = own_.emplace_back();
    group.code = counter;
    group.type = GroupView::Type::kInteger;
    group.integer = static_cast<std::int64_t>(count);
    std::erase_if(part.groups, [&](const GroupView* other) { return other->code == counter; });
    part.groups.push_back(&group);
  }
}

/// Counts that stand in front of what they count follow it.
void GroupMerge::add_counts() {
  own_.reserve(own_.size() + 4 * (parts_.size() + 1));
  if (kind_ == "LWPOLYLINE") set_count(90, 10);
  if (kind_ == "LEADER") set_count(76, 10);
  if (kind_ == "LTYPE") set_count(73, 49);
  if (kind_ == "SPLINE") {
    set_count(72, 40);
    set_count(73, 10);
    set_count(74, 11);
  }
}

void GroupMerge::split_long_text() {
  if (kind_ != "MTEXT") return;
  for (std::size_t i = 0; i < body_.size(); ++i) {
    if (body_[i].code != 1 || body_[i].text.size() <= kLongestPiece) continue;
    std::vector<GroupView> pieces;
    std::wstring_view rest = body_[i].text;
    while (rest.size() > kLongestPiece) {
      const std::size_t end = text_piece_end(rest, kLongestPiece);
      GroupView& piece = pieces.emplace_back();
      piece.code = 3;
      piece.text = rest.substr(0, end);
      rest.remove_prefix(end);
    }
    body_[i].text = rest;
    body_.insert(body_.begin() + static_cast<std::ptrdiff_t>(i), pieces.begin(), pieces.end());
    return;
  }
}

void GroupMerge::merge_extended_data() {
  if (extended_data_.empty()) return;
  struct Run {
    std::wstring application;
    std::size_t begin, end;
    std::vector<TagSpan> tags;
  };
  std::vector<Run> there;
  TagSpanReader reader(bytes_, dialect_, Lens(bytes_, dialect_).extended_data());
  TagSpan span;
  while (reader.next(span)) {
    if (span.first.code == kApplication)
      there.push_back({dxf::text_value(span.first, dialect_), span.first.begin, span.end, {}});
    if (there.empty()) continue;
    there.back().end = span.end;
    there.back().tags.push_back(span);
  }
  for (const ExtendedRun& run : extended_data_) {
    const bool removes = run.groups.size() == 1;
    const auto old = std::find_if(there.begin(), there.end(), [&](const Run& other) {
      return equal_no_case(other.application, run.application);
    });
    if (old != there.end()) {
      // The name keeps its spelling, letter case may differ.
      const bool unchanged =
          !removes &&
          std::equal(
              old->tags.begin() + 1, old->tags.end(), run.groups.begin() + 1, run.groups.end(),
              [&](const TagSpan& tags, const GroupView& group) { return same(tags, group); });
      if (unchanged) continue;
      extended_.push_back({old->begin, old->end, nullptr, {}, {}, false});
    }
    if (removes) continue;
    const std::size_t place = old != there.end() ? old->begin : bytes_.size();
    for (const GroupView& group : run.groups)
      extended_.push_back({place, place, &group, {}, {}, false});
  }
  std::stable_sort(extended_.begin(), extended_.end(),
                   [](const Piece& a, const Piece& b) { return a.begin < b.begin; });
}

std::vector<GroupView> GroupMerge::fresh() const {
  std::vector<GroupView> groups;
  for (const Piece& piece : pieces_)
    if (piece.group) groups.push_back(*piece.group);
  return groups;
}

std::vector<GroupView> GroupMerge::fresh_extended_data() const {
  std::vector<GroupView> groups;
  for (const Piece& piece : extended_)
    if (piece.group) groups.push_back(*piece.group);
  return groups;
}

void GroupMerge::write(const Piece& piece, std::string& out) const {
  dxf::TagWriter writer(out, dialect_);
  if (!piece.marker.empty()) writer.raw(kMarker, piece.marker);
  if (!piece.group) return;
  const bool in_place = piece.end != piece.begin && !dialect_.binary;
  if (!in_place) {
    GroupView whole = *piece.group;
    if (whole.dimensions == 2 && piece.tags.tags == 3) whole.numbers[2] = piece.tags.numbers[2];
    return write_group(whole, kind_, piece.flat, writer);
  }
  // The group's tags keep the spelling of their codes and of the coordinates that stay.
  std::string spelled;
  dxf::TagWriter fresh_writer(spelled, dialect_);
  write_group(*piece.group, kind_, piece.tags.tags == 2, fresh_writer);
  dxf::TagReader old_tags(bytes_.substr(0, piece.end), dialect_, piece.begin);
  dxf::TagReader fresh_tags(spelled, dialect_);
  dxf::Tag old, fresh;
  int axis = 0;
  std::size_t from = piece.begin;
  while (old_tags.next(old) && fresh_tags.next(fresh)) {
    const bool point = piece.group->type == GroupView::Type::kPoint;
    const bool given = !point || axis < piece.group->dimensions;
    const bool stays = !given || (point && piece.tags.tags > 1 &&
                                  piece.tags.numbers[axis] == piece.group->numbers[axis]);
    ++axis;
    if (stays) continue;
    const auto value = static_cast<std::size_t>(old.value.data() - bytes_.data());
    out += bytes_.substr(from, value - from);
    out += fresh.value;
    from = value + old.value.size();
  }
  out += bytes_.substr(from, piece.end - from);
  while (fresh_tags.next(fresh))
    out += std::string_view(spelled).substr(fresh.begin, fresh.end - fresh.begin);
}

std::string GroupMerge::result() const {
  std::string out;
  out.reserve(bytes_.size() + 64);
  std::size_t position = 0;
  for (const std::vector<Piece>* pieces : {&pieces_, &extended_}) {
    for (const Piece& piece : *pieces) {
      if (piece.begin > position) out += bytes_.substr(position, piece.begin - position);
      write(piece, out);
      position = std::max(position, piece.end);
    }
  }
  out += bytes_.substr(position);
  return out;
}

}  // namespace cad
