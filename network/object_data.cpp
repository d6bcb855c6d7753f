#include "network/object_data.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/base/quoted.h"
#include "host/db/record.h"
#include "host/dxf/tag_reader.h"
#include "network/data_pairs.h"

namespace network {
namespace {

using cad::dxf::Tag;

constexpr std::string_view kKindNames[] = {
    "",           "water-pipe", "drainage-pipe", "storm-pipe",
    "water-node", "hydrant",    "drainage-well", "storm-well",
};
static_assert(std::size(kKindNames) == kKindCount);

// In the order of Key.
constexpr KeyRow kKeys[] = {
    {"kind", kTextGroup},         {"start_node", kHandleGroup}, {"end_node", kHandleGroup},
    {"diameter", kRealGroup},     {"material", kIntegerGroup},  {"width", kRealGroup},
    {"height", kRealGroup},       {"ratio", kRealGroup},        {"parallel", kIntegerGroup},
    {"code", kTextGroup},         {"length", kRealGroup},       {"flow", kRealGroup},
    {"speed", kRealGroup},        {"head_loss", kRealGroup},    {"start_invert", kRealGroup},
    {"end_invert", kRealGroup},   {"head_case", kIntegerGroup}, {"start_head_1", kRealGroup},
    {"start_head_2", kRealGroup}, {"start_head_3", kRealGroup}, {"start_head_4", kRealGroup},
    {"start_head_5", kRealGroup}, {"start_head_6", kRealGroup}, {"end_head_1", kRealGroup},
    {"end_head_2", kRealGroup},   {"end_head_3", kRealGroup},   {"end_head_4", kRealGroup},
    {"end_head_5", kRealGroup},   {"end_head_6", kRealGroup},   {"number", kTextGroup},
    {"prefix", kTextGroup},       {"ground", kRealGroup},       {"natural", kRealGroup},
    {"bottom", kRealGroup},       {"head", kRealGroup},
};
static_assert(std::size(kKeys) == kKeyCount);

/// Rows of kKeys by their names: a hash table made by the compiler.
constexpr std::size_t kKeySlots = 128;
constexpr std::uint8_t kNoKey = 0xFF;
constexpr std::size_t slot_of(std::string_view name) {
  const auto letter = [&](std::size_t at) { return static_cast<unsigned char>(name[at]); };
  return (name.size() * 31 + letter(0) * 7u + letter(name.size() / 2) * 3u +
          letter(name.size() - 1)) %
         kKeySlots;
}
constexpr std::array<std::uint8_t, kKeySlots> kKeyAt = [] {
  std::array<std::uint8_t, kKeySlots> rows{};
  rows.fill(kNoKey);
  for (std::uint8_t row = 0; row < kKeyCount; ++row) {
    std::size_t slot = slot_of(kKeys[row].name);
    while (rows[slot] != kNoKey) slot = (slot + 1) % kKeySlots;
    rows[slot] = row;
  }
  return rows;
}();

constexpr std::size_t index_of(Key key) { return static_cast<std::size_t>(key); }

/// The key that differs from the name in letter case only.
const KeyRow* key_meant(std::string_view name) {
  const auto found = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const KeyRow& row) {
    return cad::equal_no_case(row.name, name);
  });
  return found == std::end(kKeys) ? nullptr : found;
}

/// Of the bytes of a real number: what real_value() reads as 0, infinities and what is no number.
bool is_infinite(std::string_view bytes) {
  return bytes.size() == sizeof(double) && (bytes[7] & 0x7F) == 0x7F && (bytes[6] & 0xF0) == 0xF0;
}

std::optional<double> number_in(const Tag& tag, const cad::dxf::Dialect& dialect) {
  if (dialect.binary) {
    if (tag.code == kRealGroup && is_infinite(tag.value)) return std::nullopt;
    return cad::dxf::real_value(tag, dialect);
  }
  if (tag.code == kRealGroup) return cad::parse_real(tag.value);
  const std::optional<std::int64_t> whole = cad::parse_int(tag.value);
  if (!whole || *whole < INT32_MIN || *whole > INT32_MAX) return std::nullopt;
  return static_cast<double>(*whole);
}

}  // namespace

std::string_view kind_name(Kind kind) { return kKindNames[static_cast<std::size_t>(kind)]; }

namespace {

/// The kind whose word is spelled plainly; kNone for any other bytes, which may be that word too.
Kind kind_spelled(std::string_view bytes) {
  const auto found = std::find(std::begin(kKindNames) + 1, std::end(kKindNames), bytes);
  return found == std::end(kKindNames) ? Kind::kNone
                                       : static_cast<Kind>(found - std::begin(kKindNames));
}

}  // namespace

Kind kind_named(std::wstring_view name) {
  if (name.empty()) return Kind::kNone;
  for (std::size_t i = 1; i < std::size(kKindNames); ++i) {
    if (std::equal(name.begin(), name.end(), kKindNames[i].begin(), kKindNames[i].end(),
                   [](wchar_t a, char b) { return a == static_cast<wchar_t>(b); }))
      return static_cast<Kind>(i);
  }
  return Kind::kNone;
}

const KeyRow& row_of(Key key) { return kKeys[index_of(key)]; }

const KeyRow* find_key(std::string_view name) {
  if (name.empty()) return nullptr;
  for (std::size_t slot = slot_of(name); kKeyAt[slot] != kNoKey; slot = (slot + 1) % kKeySlots)
    if (kKeys[kKeyAt[slot]].name == name) return &kKeys[kKeyAt[slot]];
  return nullptr;
}

std::string DataFault::message() const {
  switch (what) {
    case What::kWrongGroup:
      return key + " has a value of group " + std::to_string(group) + " instead of " +
             std::to_string(find_key(key)->group);
    case What::kNoNumber:
      return key + " is no number: " + cad::quoted(value);
    case What::kNoHandle:
      return key + " is no handle: " + cad::quoted(value);
    case What::kNoValue:
      return cad::excerpt(key) + " has no value";
    case What::kTwice:
      return key + " is there more than once, the first counts";
    case What::kStrayGroup:
      return "group " + std::to_string(group) + " (" + cad::excerpt(value) +
             ") stands where a key is wanted";
    case What::kOpenBrace:
      return "braces (group 1002) do not match";
    case What::kMisspeltKey:
      return "key " + cad::quoted(key) + " is unknown, " + cad::quoted(value) +
             " is not: letter case counts";
  }
  return {};
}

/// Files the pairs of a record.
class ObjectData::Reader {
 public:
  Reader(ObjectData& data, const cad::dxf::Dialect& dialect) : data_(data), dialect_(dialect) {}

  void take(const DataPair& pair) {
    const Tag& value = pair.value;
    switch (pair.what) {
      case DataPair::What::kPair:
        return pair.key ? take_value(*pair.key, value) : take_unknown(pair.name);
      case DataPair::What::kNoValue:
        return fault(DataFault::What::kNoValue, spelled(pair.name));
      case DataPair::What::kStray:
        return fault(DataFault::What::kStrayGroup, {}, value.code, shown(value));
      case DataPair::What::kBrace:
        return fault(DataFault::What::kOpenBrace, {});
    }
  }

 private:
  void take_value(const KeyRow& row, const Tag& tag) {
    const auto place = static_cast<std::size_t>(&row - kKeys);
    const auto key = static_cast<Key>(place);
    const auto name = [&] { return std::string(row.name); };
    if (seen_[place]) return fault(DataFault::What::kTwice, name());
    seen_[place] = true;
    if (tag.code != row.group)
      return fault(DataFault::What::kWrongGroup, name(), tag.code, shown(tag));
    if (row.group == kTextGroup) {
      if (key == Key::kKind && data_.put_kind(kind_spelled(tag.value))) return;
      data_.put_text(key, cad::dxf::text_value(tag, dialect_));
    } else if (row.group == kHandleGroup) {
      const std::optional<std::uint64_t> handle = cad::parse_handle(tag.value);
      if (!handle) return fault(DataFault::What::kNoHandle, name(), 0, shown(tag));
      if (*handle != 0) data_.put_handle(key, *handle);
    } else if (const std::optional<double> number = number_in(tag, dialect_)) {
      data_.put_number(key, *number);
    } else {
      fault(DataFault::What::kNoNumber, name(), 0, shown(tag));
    }
  }

  void take_unknown(std::string_view name) {
    if (const KeyRow* meant = key_meant(name))
      fault(DataFault::What::kMisspeltKey, spelled(name), 0, std::string(meant->name));
  }

  std::string shown(const Tag& tag) const {
    return cad::to_utf8(cad::dxf::text_value(tag, dialect_));
  }
  std::string spelled(std::string_view bytes) const {
    Tag tag;
    tag.code = kTextGroup;
    tag.value = bytes;
    return shown(tag);
  }
  void fault(DataFault::What what, std::string key, int group = 0, std::string value = {}) {
    data_.faults_.push_back({what, std::move(key), group, std::move(value)});
  }

  ObjectData& data_;
  const cad::dxf::Dialect& dialect_;
  std::bitset<kKeyCount> seen_;
};

std::optional<ObjectData> ObjectData::read(AcDbObjectId id) {
  if (id.isNull()) return std::nullopt;
  const cad::RecordTags record = cad::record_tags(id);
  return record.bytes.empty() ? std::nullopt : read(record.bytes, *record.dialect);
}

std::optional<ObjectData> ObjectData::read(std::string_view record,
                                           const cad::dxf::Dialect& dialect) {
  std::optional<ObjectData> data(std::in_place);
  Reader reader(*data, dialect);
  DataPairs pairs(record, dialect);
  for (DataPair pair; pairs.next(pair);) reader.take(pair);
  if (!pairs.found()) data.reset();
  return data;
}

std::optional<Kind> kind_of(AcDbObjectId id) {
  const cad::RecordTags record = cad::record_tags(id);
  DataPairs pairs(record.bytes, *record.dialect);
  for (DataPair pair; pairs.next(pair);) {
    if (pair.what != DataPair::What::kPair || pair.key != &kKeys[index_of(Key::kKind)]) continue;
    if (pair.value.code != kTextGroup) return Kind::kNone;
    const Kind plain = kind_spelled(pair.value.value);
    return plain != Kind::kNone ? plain
                                : kind_named(cad::dxf::text_value(pair.value, *record.dialect));
  }
  return pairs.found() ? std::optional(Kind::kNone) : std::nullopt;
}

std::optional<double> ObjectData::real(Key key) const {
  return has(key) && row_of(key).group == kRealGroup ? std::optional(numbers_[index_of(key)])
                                                     : std::nullopt;
}

std::optional<int> ObjectData::integer(Key key) const {
  return has(key) && row_of(key).group == kIntegerGroup
             ? std::optional(static_cast<int>(numbers_[index_of(key)]))
             : std::nullopt;
}

CString ObjectData::text(Key key) const {
  if (!has(key)) return {};
  if (key == Key::kKind && kind_ != Kind::kNone) {
    const std::string_view word = kind_name(kind_);
    return {word.begin(), word.end()};
  }
  for (const auto& [of, text] : texts_)
    if (of == key) return text;
  return {};
}

std::uint64_t ObjectData::handle(Key key) const {
  return has(key) && row_of(key).group == kHandleGroup ? nodes_[key == Key::kEndNode ? 1 : 0] : 0;
}

void ObjectData::put_number(Key key, double value) {
  present_[index_of(key)] = true;
  numbers_[index_of(key)] = value;
}

void ObjectData::put_handle(Key key, std::uint64_t value) {
  present_[index_of(key)] = true;
  nodes_[key == Key::kEndNode ? 1 : 0] = value;
}

void ObjectData::put_text(Key key, CString value) {
  if (key == Key::kKind && put_kind(kind_named(value))) return;
  present_[index_of(key)] = true;
  std::erase_if(texts_, [&](const auto& held) { return held.first == key; });
  texts_.emplace_back(key, std::move(value));
}

bool ObjectData::put_kind(Kind kind) {
  kind_ = kind;
  if (kind == Kind::kNone) return false;
  present_[index_of(Key::kKind)] = true;
  return true;
}

}  // namespace network
