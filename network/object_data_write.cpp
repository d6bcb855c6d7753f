#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>

#include "host/db/entity.h"
#include "host/db/extended_data.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/dxf/tag_writer.h"
#include "network/data_pairs.h"
#include "network/object_data.h"

namespace network {
namespace {

using WriteValue = std::function<void(cad::dxf::TagWriter&)>;

/// Where a further pair can go without becoming a part of what stands there: behind whole pairs, in
/// front of a key that lacks its value or of a list that may lack its closing brace.
std::optional<std::size_t> place_behind(const DataPair& pair, std::optional<std::size_t> before) {
  constexpr int kBraceGroup = 1002;
  switch (pair.what) {
    case DataPair::What::kPair:
    case DataPair::What::kStray:
      return pair.value.code == kBraceGroup ? before.value_or(pair.begin) : pair.end;
    case DataPair::What::kNoValue:
      return before.value_or(pair.begin);
    case DataPair::What::kBrace:
      break;
  }
  return before;
}

/// Of several pairs of the key the first, as in reading. Without a value the pair goes.
Acad::ErrorStatus replace(AcDbEntity& entity, Key key, const WriteValue* value) {
  const cad::RecordTags record = cad::record_tags(entity.objectId());
  const KeyRow& row = row_of(key);
  DataPairs pairs(record.bytes, *record.dialect);
  std::optional<DataPair> found;
  std::optional<std::size_t> end;
  for (DataPair pair; pairs.next(pair);) {
    if (pair.key == &row && !found) found = pair;
    end = place_behind(pair, end);
  }
  if (!pairs.found()) return Acad::eKeyNotFound;
  if (!value) {
    if (!found) return Acad::eOk;
    const auto status = cad::replace_extended_tags(entity, found->begin, found->end, {});
    return status == Acad::eOk ? replace(entity, key, value)
                               : status;  // the key may be there twice
  }
  std::string tags;
  cad::dxf::TagWriter writer(tags, *record.dialect);
  if (!found) writer.raw(kTextGroup, row.name);
  (*value)(writer);
  return found ? cad::replace_extended_tags(entity, found->key_end, found->end, tags)
               : cad::replace_extended_tags(entity, end.value_or(pairs.end()),
                                            end.value_or(pairs.end()), tags);
}

Acad::ErrorStatus write(AcDbObjectId id, Key key, const WriteValue* value) {
  AcDbEntity* entity = nullptr;
  if (const auto status = acdbOpenAcDbEntity(entity, id, AcDb::kForWrite); status != Acad::eOk)
    return status;
  const Acad::ErrorStatus status = replace(*entity, key, value);
  entity->close();
  return status;
}

Acad::ErrorStatus write(AcDbObjectId id, Key key, int group, const WriteValue& value) {
  if (row_of(key).group != group) return Acad::eInvalidInput;
  return write(id, key, &value);
}

}  // namespace

Acad::ErrorStatus write_real(AcDbObjectId id, Key key, double value) {
  if (!std::isfinite(value)) return Acad::eInvalidInput;
  return write(id, key, kRealGroup, [&](auto& tags) { tags.real(kRealGroup, value); });
}

Acad::ErrorStatus write_integer(AcDbObjectId id, Key key, int value) {
  using Limits = std::numeric_limits<std::int16_t>;
  if (value < Limits::min() || value > Limits::max()) return Acad::eInvalidInput;
  return write(id, key, kIntegerGroup, [&](auto& tags) { tags.integer(kIntegerGroup, value); });
}

Acad::ErrorStatus write_text(AcDbObjectId id, Key key, std::wstring_view value) {
  if (!cad::extended_text_fits(value)) return Acad::eStringTooLong;
  return write(id, key, kTextGroup, [&](auto& tags) { tags.text(kTextGroup, value); });
}

Acad::ErrorStatus write_handle(AcDbObjectId id, Key key, std::uint64_t value) {
  return write(id, key, kHandleGroup, [&](auto& tags) { tags.handle(kHandleGroup, value); });
}

Acad::ErrorStatus remove_value(AcDbObjectId id, Key key) { return write(id, key, nullptr); }

}  // namespace network
