#include "host/db/draft.h"

#include <algorithm>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/extended_data.h"
#include "host/db/group_tags.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

using Type = GroupView::Type;

constexpr int kApplication = 1001;
constexpr std::size_t kLongestPiece = 250;  // of a MTEXT

std::string upper(std::wstring_view text) {
  std::string out = to_utf8(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

GroupView text_group(int code, std::wstring_view text) {
  GroupView group;
  group.code = code;
  group.text = text;
  return group;
}

GroupView integer_group(int code, std::int64_t value) {
  GroupView group;
  group.code = code;
  group.type = Type::kInteger;
  group.integer = value;
  return group;
}

/// "1.5,2,0" or one number, by the code's type.
GroupView number_group(int code, std::string_view text) {
  GroupView group;
  group.code = code;
  if (dxf::value_type(code) != dxf::ValueType::kReal)
    return integer_group(code, parse_int(text).value_or(0));
  group.type = dxf::is_point_code(code) ? Type::kPoint : Type::kReal;
  while (!text.empty() && group.dimensions < 3) {
    const std::size_t comma = text.find(',');
    group.numbers[group.dimensions++] = parse_real(text.substr(0, comma)).value_or(0);
    text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  }
  return group;
}

bool has_control_character(std::wstring_view text) {
  return std::any_of(text.begin(), text.end(), [](wchar_t c) { return c >= 0 && c < L' '; });
}

bool is_open_brace(const GroupView& group) {
  return group.code == 102 && group.type == Type::kText && group.text.starts_with(L'{');
}

}  // namespace

Error Draft::wrong(int code, const std::string& what) const {
  return fail(kind_, "group " + std::to_string(code) + " " + what);
}

Result<Draft> Draft::of(AcDbDatabase& database, std::span<const GroupView> groups,
                        std::wstring_view layer, std::int64_t flags) {
  Draft draft;
  const auto kind = std::find_if(groups.begin(), groups.end(),
                                 [](const GroupView& group) { return group.code == 0; });
  if (kind == groups.end() || kind->type != Type::kText || kind->text.empty())
    return fail("", "group 0, the kind of object, is missing");
  // Kinds and markers stand in a drawing as they are: a line break would tear its tags apart.
  for (const GroupView& group : groups)
    if ((group.code == 0 || group.code == 100) && has_control_character(group.text))
      return fail("group " + std::to_string(group.code), "holds a control character");
  draft.kind_ = upper(kind->text);
  std::int64_t own_flags = flags;
  for (const GroupView& group : groups)
    if (group.code == 70 && group.type == Type::kInteger) own_flags |= group.integer;
  draft.row_ = kind_row(draft.kind_, own_flags);
  const dxf::Dialect& dialect = database.drawing().dialect();
  const dxf::Release since = draft.row_ ? draft.row_->since : dxf::Release::kR13;
  if (dialect.release < since)
    return fail(draft.kind_, "needs a drawing of release " + std::string(dxf::release_name(since)) +
                                 " or newer; this one is " +
                                 std::string(dxf::release_name(dialect.release)));
  if (draft.row_)
    for (const PartRow& part : draft.row_->parts) draft.parts_.push_back({part.marker, &part, {}});
  if (Status status = draft.sort_groups(groups); !status) return status.error();
  if (Status status = draft.complete(database, layer, flags); !status) return status.error();
  if (Status status = draft.check_references(database); !status) return status.error();
  if (Status status = check_extended_data(database.drawing(), draft.extended_); !status)
    return fail(draft.kind_, status.error().message());
  return draft;
}

bool Draft::is_entity() const {
  if (row_) return row_->place == KindPlace::kEntity || row_->place == KindPlace::kSubEntity;
  return std::any_of(parts_.begin(), parts_.end(),
                     [](const Part& part) { return part.marker == "AcDbEntity"; });
}

/// The part of that marker: of two the first behind `behind`.
Draft::Part* Draft::part_named(std::wstring_view marker, const Part* behind) {
  const std::string name = to_utf8(marker);
  const auto from = behind ? parts_.begin() + (behind - parts_.data()) + 1 : parts_.begin();
  const auto named = [&](const Part& part) { return part.marker == name; };
  auto found = std::find_if(from, parts_.end(), named);
  if (found == parts_.end()) found = std::find_if(parts_.begin(), parts_.end(), named);
  if (found != parts_.end()) return &*found;
  if (row_) return nullptr;  // another class than this kind has: its groups go where they belong
  parts_.push_back({own_markers_.emplace_back(name), nullptr, {}});
  return &parts_.back();
}

Status Draft::sort_groups(std::span<const GroupView> groups) {
  const bool has_markers = std::any_of(groups.begin(), groups.end(),
                                       [](const GroupView& group) { return group.code == 100; });
  if (!row_ && !has_markers)
    return fail(kind_, "is a kind the host does not know: its class markers (100) are missing");
  Part* named = nullptr;
  bool in_class = !has_markers;
  bool in_braces = false;
  for (const GroupView& group : groups) {
    if (in_braces) {
      in_braces = group.code != 102;
      continue;
    }
    const bool is_data = row_ && row_->kind == "XRECORD" && in_class;
    if (group.code <= 0 || group.code == 5 || group.code == 105) continue;
    if (is_open_brace(group) && !is_data) {
      in_braces = true;
      continue;
    }
    if (const std::string fault = group_fault(group); !fault.empty())
      return wrong(group.code, fault);
    if (group.code >= 1000) {
      extended_.push_back(group);
    } else if (group.code == 100) {
      named = part_named(group.text, named);
      in_class = true;
    } else if (group.code == 410) {
      layout_ = group.text;
    } else if (group.code == 67) {
      wants_paper_ = group.integer != 0;
    } else if (group.code != 330 || in_class) {
      if (Status status = place(group, named); !status) return status;
    }
  }
  return {};
}

Status Draft::place(const GroupView& group, Part* named) {
  if (row_ && row_->kind == "XRECORD") {
    Part& data = parts_.back();
    const bool is_flag = group.code == 280 && data.items.empty();
    data.items.push_back({group, is_flag ? data.row->find(280) : nullptr});
    return {};
  }
  Part* target = nullptr;
  if (named && (!named->row || named->row->find(group.code))) target = named;
  // The kind's own parts before the one that all entities have.
  for (std::size_t i = 1; i < parts_.size() && !target; ++i)
    if (parts_[i].row && parts_[i].row->find(group.code)) target = &parts_[i];
  if (!target && !parts_.empty() && parts_[0].row && parts_[0].row->find(group.code))
    target = parts_.data();
  if (!target) target = named;
  if (!target) return wrong(group.code, "does not belong to this kind of object");
  const GroupRow* row = target->row ? target->row->find(group.code) : nullptr;
  if (row && !row->repeated && !target->row->as_listed) {
    for (Item& item : target->items) {
      if (item.group.code != group.code) continue;
      item.group = group;  // the last of several counts
      return {};
    }
  }
  target->items.push_back({group, row});
  return {};
}

std::wstring_view Draft::keep(std::wstring text) { return kept_.emplace_back(std::move(text)); }

void Draft::add_item(Part& part, const GroupView& group) {
  const GroupRow* row = part.row ? part.row->find(group.code) : nullptr;
  // Of a part whose order counts, what was left out goes in front, where the table has it.
  if (row && part.row->as_listed) {
    auto at = part.items.begin();
    while (at != part.items.end() && at->row && at->row->rank < row->rank) ++at;
    part.items.insert(at, {group, row});
  } else {
    part.items.push_back({group, row});
  }
}

void Draft::add_text(Part& part, int code, std::wstring_view text) {
  add_item(part, text_group(code, keep(std::wstring(text))));
}

const Draft::Item* Draft::find(int code) const {
  for (const Part& part : parts_)
    for (const Item& item : part.items)
      if (item.group.code == code) return &item;
  return nullptr;
}

std::size_t Draft::count(int code) const {
  std::size_t found = 0;
  for (const Part& part : parts_)
    for (const Item& item : part.items) found += item.group.code == code ? 1 : 0;
  return found;
}

std::wstring_view Draft::text(int code) const {
  const Item* item = find(code);
  return item ? item->group.text : std::wstring_view();
}

std::int64_t Draft::integer(int code, std::int64_t absent) const {
  const Item* item = find(code);
  return item ? item->group.integer : absent;
}

void Draft::set_integer(int code, std::int64_t value) {
  for (Part& part : parts_) {
    for (Item& item : part.items) {
      if (item.group.code != code) continue;
      item.group.integer = value;
      return;
    }
  }
  for (Part& part : parts_) {
    if (!part.row || !part.row->find(code)) continue;
    add_item(part, integer_group(code, value));
    return;
  }
}

Status Draft::complete(AcDbDatabase& database, std::wstring_view layer, std::int64_t flags) {
  if (is_entity()) add_current(database, layer);
  if (flags != 0) set_integer(70, integer(70, 0) | flags);
  for (Part& part : parts_)
    if (Status status = complete_part(database, part); !status) return status;
  count_repeated();
  if (kind_ == "MTEXT") split_long_text();
  for (Part& part : parts_) {
    if (!part.row || part.row->as_listed) continue;
    std::stable_sort(part.items.begin(), part.items.end(), [](const Item& a, const Item& b) {
      constexpr int kLast = 1 << 20;
      return (a.row ? a.row->rank : kLast) < (b.row ? b.row->rank : kLast);
    });
  }
  return {};
}

Status Draft::complete_part(AcDbDatabase& database, Part& part) {
  if (!part.row) return {};
  for (const GroupRow& row : part.row->groups) {
    if (!row.required && !row.has_initial) continue;
    const bool there = std::any_of(part.items.begin(), part.items.end(),
                                   [&](const Item& item) { return item.group.code == row.code; });
    if (there) continue;
    if (row.required) return wrong(row.code, "is missing");
    const bool is_cloning_flag = (kind_ == "XRECORD" && row.code == 280) || row.code == 281;
    if (is_cloning_flag && part.marker != "AcDbRasterImage" &&
        !database.drawing().dialect().has_cloning_flags())
      continue;
    if (Status status = add_initial(database, part, row); !status) return status;
  }
  return {};
}

Status Draft::add_initial(AcDbDatabase& database, Part& part, const GroupRow& row) {
  if (row.initial.starts_with('@')) {
    const auto source = parse_int(row.initial.substr(1));
    for (const Item& item : part.items) {
      if (item.group.code != source) continue;
      GroupView copy = item.group;
      copy.code = row.code;
      add_item(part, copy);
      return {};
    }
    return wrong(row.code, "is missing");
  }
  std::string initial(row.initial);
  if (row.initial.starts_with('$')) initial = to_utf8(database.header_value(row.initial));
  if (dxf::value_type(row.code) == dxf::ValueType::kText) {
    if (row.initial.starts_with('$') && initial.empty()) initial = "Standard";
    add_text(part, row.code, from_utf8(initial));
  } else {
    constexpr std::string_view kTextHeight = "2.5";
    add_item(part, number_group(row.code, initial.empty() ? kTextHeight : initial));
  }
  return {};
}

/// What the drawing gives to new entities: layer, colour, linetype, style, ...
void Draft::add_current(AcDbDatabase& database, std::wstring_view layer) {
  const auto of_entity = std::find_if(parts_.begin(), parts_.end(),
                                      [](const Part& part) { return part.marker == "AcDbEntity"; });
  if (of_entity == parts_.end()) return;
  Part& part = *of_entity;
  const auto has = [&](int code) {
    return std::any_of(part.items.begin(), part.items.end(),
                       [&](const Item& item) { return item.group.code == code; });
  };
  if (!has(8)) {
    std::wstring current(layer);
    if (current.empty()) current = database.header_value("$CLAYER");
    add_text(part, 8, current.empty() ? L"0" : current);
  }
  constexpr std::int64_t kByLayer = 256;
  const auto header = [&](std::string_view name) { return to_utf8(database.header_value(name)); };
  const std::wstring linetype = database.header_value("$CELTYPE");
  if (!has(6) && !linetype.empty() && !equal_no_case(linetype, L"ByLayer"))
    add_text(part, 6, linetype);
  const std::int64_t color = parse_int(header("$CECOLOR")).value_or(kByLayer);
  const std::optional<std::int32_t> rgb = database.current_true_color();
  if (!has(62) && !has(420) && rgb) add_item(part, integer_group(420, *rgb));
  if (!has(62) && !has(420) && !rgb && color != kByLayer) add_item(part, integer_group(62, color));
  const double scale = parse_real(header("$CELTSCALE")).value_or(1);
  if (!has(48) && scale != 1 && scale > 0) {
    GroupView group = integer_group(48, 0);
    group.type = Type::kReal;
    group.numbers[0] = scale;
    add_item(part, group);
  }
  const std::int64_t weight = parse_int(header("$CELWEIGHT")).value_or(-1);
  if (!has(370) && weight != -1) add_item(part, integer_group(370, weight));
  const bool is_text =
      kind_ == "TEXT" || kind_ == "MTEXT" || kind_ == "ATTDEF" || kind_ == "ATTRIB";
  const std::wstring style = database.header_value("$TEXTSTYLE");
  if (is_text && !find(7) && !style.empty() && row_) add_text(parts_[1], 7, style);
}

/// Counts that stand in front of what they count.
void Draft::count_repeated() {
  const auto set_count = [&](int counter, int counted) {
    set_integer(counter, static_cast<std::int64_t>(count(counted)));
  };
  if (kind_ == "LWPOLYLINE") set_count(90, 10);
  if (kind_ == "LEADER") set_count(76, 10);
  if (kind_ == "LTYPE") set_count(73, 49);
  if (kind_ == "SPLINE") {
    set_count(72, 40);
    set_count(73, 10);
    set_count(74, 11);
  }
}

/// A text of more than 250 characters goes into groups 3, closed by the group 1.
void Draft::split_long_text() {
  std::vector<Item>& items = parts_.back().items;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (items[i].group.code != 1 || items[i].group.text.size() <= kLongestPiece) continue;
    std::wstring_view rest = items[i].group.text;
    std::vector<Item> pieces;
    while (rest.size() > kLongestPiece) {
      const std::size_t end = text_piece_end(rest, kLongestPiece);
      pieces.push_back({text_group(3, rest.substr(0, end)), parts_.back().row->find(3)});
      rest.remove_prefix(end);
    }
    items[i].group.text = rest;
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(i), pieces.begin(), pieces.end());
    return;
  }
}

Status Draft::check_references(AcDbDatabase& database) const {
  for (const Part& part : parts_)
    for (const Item& item : part.items)
      if (Status status = check_reference(database.drawing(), kind_, item.group); !status)
        return status;
  return {};
}

std::string Draft::spell(const dxf::Dialect& dialect, std::uint64_t handle, std::uint64_t owner,
                         bool in_paper) const {
  std::string out;
  out.reserve(512);
  dxf::TagWriter writer(out, dialect);
  writer.raw(0, kind_);
  writer.handle(kind_ == "DIMSTYLE" ? 105 : 5, handle);
  const bool classes = dialect.has_dictionaries();
  if (classes) writer.handle(330, owner);
  for (const Part& part : parts_) {
    if (classes) writer.raw(100, part.marker);
    if (in_paper && part.marker == "AcDbEntity") writer.integer(67, 1);
    for (const Item& item : part.items)
      write_group(item.group, kind_, item.row ? item.row->flat : item.group.dimensions == 2,
                  writer);
  }
  for (const GroupView& group : extended_) write_group(group, kind_, false, writer);
  return out;
}

Status check_extended_data(Drawing& drawing, std::span<const GroupView> groups) {
  if (groups.empty()) return {};
  std::string spelled;
  dxf::TagWriter writer(spelled, drawing.dialect());
  int depth = 0;
  for (const GroupView& group : groups) {
    if (const std::string fault = group_fault(group); !fault.empty())
      return fail("group " + std::to_string(group.code), fault);
    if (group.code == kApplication && !drawing.table_record("APPID", group.text))
      return fail("", "the application " + to_utf8(group.text) + " is not registered");
    if (group.code == 1000 && !extended_text_fits(group.text))
      return fail("group 1000", "holds at most 255 bytes");
    if (group.code == 1002) {
      if (group.text != L"{" && group.text != L"}") return fail("group 1002", "wants { or }");
      depth += group.text == L"{" ? 1 : -1;
    }
    if (depth < 0 || (depth != 0 && group.code == kApplication))
      return fail("group 1002", "braces do not match");
    write_group(group, "", false, writer);
  }
  if (depth != 0) return fail("group 1002", "braces do not match");
  const bool fits = extended_size(spelled, drawing.dialect()) <= kMostExtendedData;
  return fits ? Status() : fail("", "more than 16383 bytes of extended data");
}

Status check_reference(Drawing& drawing, std::string_view kind, const GroupView& group) {
  struct Row {
    int code;
    const char* table;
    std::wstring_view always;  // names that mean something without a record
    const char* what;
    std::string_view kinds;
  };
  constexpr Row kRows[] = {
      {6, "LTYPE", L",bylayer,byblock,continuous,", "linetype", ""},
      {7, "STYLE", L",standard,", "text style", ",TEXT,MTEXT,ATTDEF,ATTRIB,"},
      {3, "DIMSTYLE", L",standard,", "dimension style", ",DIMENSION,LEADER,"},
  };
  const auto missing = [&](const char* what) {
    return fail(std::string(kind), "the drawing has no " + std::string(what) + " " +
                                       to_utf8(group.text) + " (group " +
                                       std::to_string(group.code) + ")");
  };
  if (group.type != Type::kText) return {};
  for (const Row& row : kRows) {
    if (row.code != group.code) continue;
    if (!row.kinds.empty() && row.kinds.find("," + std::string(kind) + ",") == std::string::npos)
      continue;
    const bool always =
        row.always.find(L"," + folded(group.text) + L",") != std::wstring_view::npos;
    if (!always && !drawing.table_record(row.table, group.text)) return missing(row.what);
  }
  if (group.code == 2 && kind == "INSERT" && !drawing.block_named(group.text))
    return missing("block");
  return {};
}

}  // namespace cad
