#include "labeler/stored_label.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "labeler/back_links.h"
#include "module/manager/dim_manager.h"
#include "module/platform/opened.h"
#include "module/platform/records.h"
#include "module/platform/text.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "module/record/record_factory.h"
#include "module/record/record_table.h"
#include "module/record/stored_items.h"
#include "module/registry/update_service.h"

namespace labeler {
namespace {

CDimupateRegisiter& registry() { return CDimUpdateServ::getInstance().getDimRegServ(); }

ShownText shown_by(AcDbObjectId id, AcDbObjectId owner) {
  ShownText shown;
  if (id.isNull() || id.isErased()) return shown;
  std::optional<CString> text = cad::stored_text(id);
  if (!text) return shown;
  shown.text = *std::move(text);
  shown.there = may_be_label_of(owner, id);
  return shown;
}

using Field = dim::StoredItems::Field;

/// The object of a handle in the working drawing.
AcDbObjectId entity_of(std::wstring_view handle) {
  return dim::object_of_handle(CString(handle).c_str());
}

/// Files the items of a record. Most of their fields are empty or looked at only: they are not read
/// as a whole.
class LabelReader {
 public:
  LabelReader(StoredLabel& label, AcDbObjectId owner) : label_(label), owner_(owner) {}

  void take(const dim::StoredItems& items, std::size_t at) {
    const std::wstring_view handle = items.field(at, Field::posHandle);
    const std::wstring_view name = items.field(at, Field::posName);
    if (!handle.empty() && items.is_text(at)) {
      const auto copy = [&](Field field) { return CString(items.field(at, field)); };
      line_of(handle).line.pieces.push_back({CString(name), copy(Field::posPrefix),
                                             copy(Field::posValue), copy(Field::posSuffix),
                                             copy(Field::posSeparator)});
    } else if (!handle.empty() &&
               !dim::equal_no_case(items.field(at, Field::posKind), dim::kNoEntityKind)) {
      take_entity(name, handle);
    } else if (name == kPlaceNote) {
      label_.place = place_of_text(items.field(at, Field::posValue));
    } else {
      label_.notes.push_back(items.item(at));
    }
  }

 private:
  StoredLine& line_of(std::wstring_view handle) {
    if (StoredLine* known = find(handle)) return *known;
    constexpr std::size_t kUsualPieces = 4;
    if (!places_.empty()) places_.emplace(handle, label_.lines.size());
    StoredLine& line = label_.lines.emplace_back();
    line.line.pieces.reserve(kUsualPieces);
    line.handle = handle;
    const AcDbObjectId entity = entity_of(handle);
    line.shown = shown_by(entity, owner_);
    if (line.shown.there) line.entity = entity;
    return line;
  }

  StoredLine* find(std::wstring_view handle) {
    constexpr std::size_t kFew = 16;  // a route may have thousands of stakes
    std::vector<StoredLine>& lines = label_.lines;
    if (lines.size() <= kFew) {
      const auto found = std::find_if(lines.begin(), lines.end(), [&](const StoredLine& line) {
        return line.handle == handle;
      });
      return found == lines.end() ? nullptr : &*found;
    }
    if (places_.empty())
      for (std::size_t i = 0; i < lines.size(); ++i) places_.emplace(lines[i].handle, i);
    const auto found = places_.find(CString(handle));
    return found == places_.end() ? nullptr : &lines[found->second];
  }

  void take_entity(std::wstring_view name, std::wstring_view handle) {
    const AcDbObjectId id = entity_of(handle);
    if (!may_be_label_of(owner_, id)) {
      ++label_.others_missing;
      return;
    }
    label_.others.push_back(id);
    if (name == L"jt") label_.arrow = id;
  }

  StoredLabel& label_;
  const AcDbObjectId owner_;
  std::unordered_map<CString, std::size_t> places_;  // of lines by handle, when they are many
};

/// The record of the type in an extension dictionary, or null.
AcDbObjectId record_in(CDimRecordTable& table, AcDbObjectId dictionary, const wchar_t* type) {
  AcDbObjectId id;
  if (dictionary.isNull()) return id;
  if (table.open(&registry(), dictionary, AcDb::kForRead, 0) != Acad::eOk) return id;
  if (table.getAt(type, id) != Acad::eOk) id.setNull();
  return id;
}

AcDbObjectId record_of(CDimRecordTable& table, AcDbObjectId owner, const wchar_t* type) {
  const bool there = !owner.isNull() && !owner.isErased();
  return record_in(table, there ? cad::extension_dictionary(owner) : AcDbObjectId(), type);
}

}  // namespace

CString place_text(const DrawnPlace& place) {
  constexpr int kDecimals = 6;  // as draw values have
  constexpr std::size_t kUsualSize = 96;
  CString text;
  text.reserve(kUsualSize);
  text = L"( ";
  const auto add = [&](double value) {
    dim::append_fixed(text, value, kDecimals);
    text += L", ";
  };
  for (const double value : {place.x, place.y, place.angle}) add(value);
  dim::append_fixed(text, place.variant, 0);
  text += L", ";
  for (const double value : {place.text_x, place.text_y}) add(value);
  dim::append_fixed(text, place.reference, kDecimals);
  text += L" )";
  return text;
}

std::optional<DrawnPlace> place_of_text(std::wstring_view text) {
  constexpr std::size_t kMostCharacters = 256;
  constexpr double kFarthest = 1e15;  // beyond, a drawing unit is no difference
  std::array<char, kMostCharacters> characters;
  if (text.size() > kMostCharacters) return std::nullopt;
  std::transform(text.begin(), text.end(), characters.begin(),
                 [](wchar_t c) { return c < 0x80 ? static_cast<char>(c) : '?'; });
  const char* at = characters.data();
  const char* const end = at + text.size();
  double numbers[7];
  for (double& number : numbers) {
    while (at < end && (*at == ' ' || *at == '(' || *at == ',')) ++at;
    const auto [behind, error] = std::from_chars(at, end, number);
    if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
    at = behind;
  }
  const bool is_variant = numbers[3] >= 0.0 && numbers[3] < 100.0;
  if (!is_variant) numbers[3] = 0.0;
  for (const double number : numbers)
    if (std::fabs(number) > kFarthest) return std::nullopt;
  return DrawnPlace{numbers[0], numbers[1], numbers[2], static_cast<int>(numbers[3]),
                    numbers[4], numbers[5], numbers[6]};
}

bool same_angle(double a, double b) {
  return std::fabs(std::remainder(a - b, 2 * std::numbers::pi)) < kSameAngle;
}

bool StoredLabel::anything_there() const {
  return !others.empty() || std::any_of(lines.begin(), lines.end(),
                                        [](const StoredLine& line) { return line.shown.there; });
}

std::optional<StoredLabel> read_record(AcDbObjectId owner, AcDbObjectId record) {
  dim::StoredItems items;
  if (items.read(record) != Acad::eOk || items.size() == 0) return std::nullopt;
  std::optional<StoredLabel> label(std::in_place);
  LabelReader reader(*label, owner);
  for (std::size_t i = 0; i < items.size(); ++i) reader.take(items, i);
  return label;
}

std::optional<StoredLabel> read_label(AcDbObjectId owner, const wchar_t* type) {
  CDimRecordTable table;
  return read_record(owner, record_of(table, owner, type));
}

std::vector<StuDim> read_items(AcDbObjectId owner, const wchar_t* type) {
  CDimRecordTable table;
  dim::StoredItems stored;
  std::vector<StuDim> items;
  if (stored.read(record_of(table, owner, type)) != Acad::eOk) return items;
  for (std::size_t i = 0; i < stored.size(); ++i) items.push_back(stored.item(i));
  return items;
}

AcGePoint3d place_shown(AcDbObjectId id) {
  dim::Opened<AcDbEntity> entity(id, AcDb::kForRead);
  if (!entity) return {};
  if (const AcDbText* text = AcDbText::cast(&*entity))
    return text->isDefaultAlignment() ? text->position() : text->alignmentPoint();
  if (const AcDbMText* lines = AcDbMText::cast(&*entity)) return lines->location();
  return {};
}

void erase_entities(const StoredLabel& label) {
  const auto erase = [](AcDbObjectId id) {
    if (dim::Opened<AcDbEntity> entity{id, AcDb::kForWrite}) entity->erase();
  };
  for (const StoredLine& line : label.lines)
    if (line.shown.there) erase(line.entity);
  for (const AcDbObjectId id : label.others) erase(id);
}

Acad::ErrorStatus file_label(AcDbObjectId owner, const wchar_t* type, const dim::ItemTexts& items) {
  const CDimManager manager(owner);  // makes the extension dictionary
  if (manager.openStatus() != Acad::eOk) return manager.openStatus();
  CDimRecordTable table;
  const AcDbObjectId dictionary = manager.getExtensionDictionaryId();
  if (const AcDbObjectId old = record_in(table, dictionary, type); !old.isNull()) {
    CDimRecord record;
    const Acad::ErrorStatus opened = record.open(old, AcDb::kForWrite, false);
    if (opened != Acad::eOk) return opened;
    if (const Acad::ErrorStatus erased = record.deleteDimInfo(); erased != Acad::eOk) return erased;
  }
  CDimUpdateServ& service = CDimUpdateServ::getInstance();
  const std::unique_ptr<CDimRecord> record(service.getDimFactory().create(items));
  if (!record) return Acad::eOutOfMemory;
  record->setDimTypeName(type);
  return table.add(*record);
}

Acad::ErrorStatus rewrite_label(AcDbObjectId owner, const wchar_t* type,
                                const std::vector<StuDim>& items) {
  CDimRecordTable table;
  const AcDbObjectId id = record_of(table, owner, type);
  if (id.isNull()) return Acad::eKeyNotFound;
  CDimRecord record;
  if (const Acad::ErrorStatus opened = record.open(id, AcDb::kForWrite, false); opened != Acad::eOk)
    return opened;
  CDimRecordIterator cursor;
  if (const Acad::ErrorStatus read = record.newIterator(cursor); read != Acad::eOk) return read;
  for (const StuDim& item : items) {
    cursor.start();
    if (const Acad::ErrorStatus set = cursor.setDim(item); set != Acad::eOk) return set;
  }
  if (const Acad::ErrorStatus stored = cursor.commit(); stored != Acad::eOk) return stored;
  return record.updateDim();
}

Acad::ErrorStatus can_be_recorded(AcDbObjectId owner) {
  if (owner.isNull()) return Acad::eNullObjectId;
  return owner.database()->has_dictionaries() ? can_be_written(owner) : Acad::eNotInitializedYet;
}

Acad::ErrorStatus can_be_written(AcDbObjectId entity) {
  return dim::Opened<AcDbEntity>(entity, AcDb::kForWrite).status();
}

Acad::ErrorStatus can_be_written(const StoredLabel& label) {
  for (const StoredLine& line : label.lines) {
    if (!line.shown.there) continue;
    if (const Acad::ErrorStatus status = can_be_written(line.entity); status != Acad::eOk)
      return status;
  }
  for (const AcDbObjectId entity : label.others)
    if (const Acad::ErrorStatus status = can_be_written(entity); status != Acad::eOk) return status;
  return Acad::eOk;
}

}  // namespace labeler
