#include "host/db/dictionary.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/numbers.h"
#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/db/open.h"

PN_RX_DEFINE(AcDbDictionary, AcDbObject, L"DICTIONARY")

namespace {

using cad::Drawing;
using cad::Lens;
using cad::LensWriter;
using cad::ObjectAccess;
using cad::Stub;
using cad::StubStore;

constexpr std::string_view kPart = "AcDbDictionary";
constexpr std::string_view kNewDictionary =
    "  0\nDICTIONARY\n  5\n0\n330\n0\n100\nAcDbDictionary\n281\n     1\n";
constexpr std::wstring_view kForbidden = L"<>/\\\":;?*|,=`";

bool is_key(std::wstring_view name) {
  return !name.empty() && name.find_first_of(kForbidden) == std::wstring_view::npos;
}

/// "*", alone or in front of a key: the dictionary is to find a key of its own, *A1, *A2, ...
bool asks_for_a_key(std::wstring_view name) {
  return name == L"*" || (name.starts_with(L'*') && is_key(name.substr(1)));
}
constexpr std::wstring_view kAnonymous = L"*A";

wchar_t fold_upper(wchar_t c) { return c >= L'a' && c <= L'z' ? c - (L'a' - L'A') : c; }

int compare_keys(std::wstring_view a, std::wstring_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const wchar_t x = fold_upper(a[i]);
    const wchar_t y = fold_upper(b[i]);
    if (x != y) return x < y ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

/// What filing an entry has to know of the tags, from one walk over them.
struct Survey {
  bool hard = false;               ///< entries are owned hard
  std::optional<std::size_t> key;  ///< offset of the wanted key's tag
  std::size_t end = 0;             ///< offset behind the dictionary's last tag
  bool lacks_part = false;         ///< a damaged record without the class marker
};

Survey survey(std::string_view bytes, const cad::dxf::Dialect& dialect, std::wstring_view key) {
  Survey found;
  cad::dxf::TagReader tags(bytes, dialect);
  cad::dxf::Tag tag;
  bool inside = false;
  while (tags.next(tag) && tag.code < 1000) {
    if (tag.code == 100) inside = tag.value == kPart;
    if (!inside) continue;
    found.end = tag.end;
    if (tag.code == 280) found.hard = cad::dxf::int_value(tag, dialect) != 0;
    if (tag.code == 3 && !key.empty() && !found.key && cad::dxf::text_value(tag, dialect) == key) {
      found.key = tag.begin;
    }
  }
  found.lacks_part = found.end == 0;
  if (found.lacks_part) found.end = Lens(bytes, dialect).own_end();
  return found;
}

bool is_entry_reference(int code) { return code == 350 || code == 360 || code == 340; }

/// The tags of one entry.
struct Pair {
  std::size_t begin;        ///< offset of the key's tag
  cad::dxf::Tag reference;  ///< ends the pair
};

/// Finds an entry by key and reference: damaged files hold a key twice.
std::optional<Pair> find_pair(std::string_view bytes, const cad::dxf::Dialect& dialect,
                              std::wstring_view key, std::uint64_t handle) {
  cad::dxf::TagReader tags(bytes, dialect);
  cad::dxf::Tag tag;
  cad::dxf::Tag key_tag;
  bool inside = false;
  bool has_key = false;
  while (tags.next(tag)) {
    if (tag.code == 100) inside = tag.value == kPart;
    if (inside && tag.code == 3) {
      key_tag = tag;
      has_key = true;
    } else if (inside && has_key && is_entry_reference(tag.code)) {
      has_key = false;
      if (cad::dxf::handle_value(tag) != handle) continue;
      if (cad::dxf::text_value(key_tag, dialect) == key) return Pair{key_tag.begin, tag};
    }
  }
  return std::nullopt;
}

}  // namespace

/// The entries in iteration order.
struct AcDbDictionary::Entries {
  struct Entry {
    std::wstring key;
    std::uint64_t handle;
  };
  std::vector<Entry> sorted;

  std::size_t lower_bound(std::wstring_view key) const {
    const auto found = std::lower_bound(sorted.begin(), sorted.end(), key,
                                        [](const Entry& entry, std::wstring_view wanted) {
                                          return compare_keys(entry.key, wanted) < 0;
                                        });
    return static_cast<std::size_t>(found - sorted.begin());
  }
  const Entry* find(std::wstring_view key) const {
    const std::size_t i = lower_bound(key);
    return i < sorted.size() && compare_keys(sorted[i].key, key) == 0 ? &sorted[i] : nullptr;
  }
  /// Behind all such keys, those of erased entries included.
  std::wstring next_anonymous() const {
    std::int64_t last = 0;
    for (std::size_t i = lower_bound(kAnonymous); i < sorted.size(); ++i) {
      const std::wstring_view key = sorted[i].key;
      if (compare_keys(key.substr(0, kAnonymous.size()), kAnonymous) != 0) break;
      last = std::max<std::int64_t>(last, cad::wtoi(key.substr(kAnonymous.size())));
    }
    std::wstring key;
    do {
      key = kAnonymous;
      key += std::to_wstring(++last);
    } while (find(key));
    return key;
  }
};

AcDbDictionary::AcDbDictionary() : AcDbObject(kNewDictionary) {}
AcDbDictionary::AcDbDictionary(std::string_view record) : AcDbObject(record) {}
AcDbDictionary::~AcDbDictionary() = default;

AcDbDictionary::Entries& AcDbDictionary::entries() const {
  if (entries_) return *entries_;
  entries_ = std::make_unique<Entries>();
  cad::dxf::TagReader tags(content(), dialect());
  cad::dxf::Tag tag;
  bool inside = false;
  std::optional<std::wstring> key;
  while (tags.next(tag)) {
    if (tag.code == 100) {
      inside = tag.value == kPart;
    } else if (inside && tag.code == 3) {
      key = cad::dxf::text_value(tag, dialect());
    } else if (inside && key && is_entry_reference(tag.code)) {
      entries_->sorted.push_back({std::move(*key), cad::dxf::handle_value(tag)});
      key.reset();
    }
  }
  // The first of two equal keys wins, as it does for whoever reads the file in order.
  const auto before = [](const auto& a, const auto& b) { return compare_keys(a.key, b.key) < 0; };
  std::vector<Entries::Entry>& sorted = entries_->sorted;
  if (!std::is_sorted(sorted.begin(), sorted.end(), before)) {
    std::stable_sort(sorted.begin(), sorted.end(), before);
  }
  return *entries_;
}

namespace {

/// The live object of an entry, null when it is erased or the handle leads nowhere.
AcDbObjectId live_entry(const AcDbObject& dictionary, std::uint64_t handle) {
  const Stub* own = ObjectAccess::stub(dictionary);
  if (!own) return {};
  Stub* stub = StubStore::drawing_of(*own).find(handle);
  return AcDbObjectId(stub && !stub->erased() ? stub : nullptr);
}

}  // namespace

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* key, AcDbObjectId& entry) const {
  entry.setNull();
  if (!isReadEnabled()) return Acad::eNotOpenForRead;
  if (!key) return Acad::eInvalidInput;
  // Damaged files hold a key twice: the first entry that is there counts, as in a walk over them.
  const auto& sorted = entries().sorted;
  for (std::size_t i = entries().lower_bound(key);
       entry.isNull() && i < sorted.size() && compare_keys(sorted[i].key, key) == 0; ++i) {
    entry = live_entry(*this, sorted[i].handle);
  }
  return entry.isNull() ? Acad::eKeyNotFound : Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* key, AcDbObject*& entry,
                                        AcDb::OpenMode mode) const {
  entry = nullptr;
  AcDbObjectId id;
  const Acad::ErrorStatus status = getAt(key, id);
  return status == Acad::eOk ? acdbOpenAcDbObject(entry, id, mode) : status;
}

bool AcDbDictionary::has(const ACHAR* key) const {
  AcDbObjectId id;
  return getAt(key, id) == Acad::eOk;
}

bool AcDbDictionary::has(AcDbObjectId entry) const {
  std::wstring key;
  return nameAt(entry, key) == Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::nameAt(AcDbObjectId entry, std::wstring& key) const {
  if (!isReadEnabled()) return Acad::eNotOpenForRead;
  if (entry.isNull() || entry.isErased()) return Acad::eKeyNotFound;
  for (const auto& candidate : entries().sorted) {
    if (candidate.handle == entry.handle()) {
      key = candidate.key;
      return Acad::eOk;
    }
  }
  return Acad::eKeyNotFound;
}

int AcDbDictionary::numEntries() const {
  int count = 0;
  for (const auto& entry : entries().sorted) {
    if (!live_entry(*this, entry.handle).isNull()) ++count;
  }
  return count;
}

bool AcDbDictionary::isTreatElementsAsHard() const {
  return Lens(content(), dialect()).integer(kPart, 280, 0) != 0;
}

Acad::ErrorStatus AcDbDictionary::setTreatElementsAsHard(bool hard) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (hard == isTreatElementsAsHard()) return Acad::eOk;
  std::string& tags = writable_content();
  const Lens lens(tags, dialect());
  if (lens.find(kPart, 280)) {
    LensWriter(tags, dialect()).set_integer(kPart, 280, hard ? 1 : 0);
  } else if (const auto cloning = lens.find(kPart, 281)) {
    std::string flag;  // the flag stands in front of the cloning flag
    cad::dxf::TagWriter(flag, dialect()).integer(280, 1);
    LensWriter(tags, dialect()).insert(cloning->begin, flag);
  } else {
    LensWriter(tags, dialect()).set_integer(kPart, 280, 1);
  }
  content_changed();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id) {
  id.setNull();
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  const Stub* own = ObjectAccess::stub(*this);
  if (!own) return Acad::eNotInDatabase;
  if (!object) return Acad::eNullObjectPointer;
  const std::wstring name = key ? key : L"";
  if (!is_key(name) && !asks_for_a_key(name)) return Acad::eInvalidKey;
  Stub* const resident = ObjectAccess::stub(*object);
  if (resident && resident->owner != 0) return Acad::eAlreadyInDb;
  if (resident && &StubStore::drawing_of(*resident) != &StubStore::drawing_of(*own)) {
    return Acad::eWrongDatabase;
  }
  Drawing& drawing = StubStore::drawing_of(*own);
  const auto section = cad::dxf::Section::kObjects;
  if (resident) {
    if (!object->isWriteEnabled()) return Acad::eNotOpenForWrite;
    drawing.undo().before_change(*resident);
    resident->owner = own->handle;
    std::string& tags = ObjectAccess::writable(*object);
    if (const auto owner = Lens(tags, dialect()).owner_tag()) {
      LensWriter(tags, dialect()).set_handle(*owner, own->handle);
      ObjectAccess::changed(*object);
    }
    object->addPersistentReactor(objectId());
  } else {
    drawing.add(*object, own->handle, section, drawing.section_end(section), own->handle);
    drawing.opened();
  }
  id = object->objectId();
  file_entry(asks_for_a_key(name) ? entries().next_anonymous() : name, id.handle());
  return Acad::eOk;
}

std::uint64_t cad::ObjectAccess::entry_of(const AcDbDictionary& dictionary, std::wstring_view key) {
  const auto* found = dictionary.entries().find(key);
  return found ? found->handle : 0;
}

const std::wstring* cad::ObjectAccess::key_of(const AcDbDictionary& dictionary,
                                              std::uint64_t handle) {
  for (const auto& entry : dictionary.entries().sorted)
    if (entry.handle == handle) return &entry.key;
  return nullptr;
}

void cad::ObjectAccess::file_entry(AcDbDictionary& dictionary, std::wstring_view key,
                                   std::uint64_t handle) {
  dictionary.file_entry(key, handle);
}

void AcDbDictionary::file_entry(std::wstring_view key, std::uint64_t handle) {
  Entries& decoded = entries();
  const std::size_t at = decoded.lower_bound(key);
  const bool taken = at < decoded.sorted.size() && compare_keys(decoded.sorted[at].key, key) == 0;
  if (taken) {
    const std::uint64_t before = decoded.sorted[at].handle;
    if (before == handle) return;
    replace_reference(decoded.sorted[at].key, before, handle);
    decoded.sorted[at].handle = handle;
    erase_replaced(before);
    return;
  }
  // In front of the entry that follows in order, where the file keeps its entries in order.
  const bool last = at == decoded.sorted.size();
  const Survey place = survey(content(), dialect(), last ? L"" : decoded.sorted[at].key);
  constexpr std::size_t kAroundKey = 32;
  std::string pair;
  pair.reserve(key.size() + kAroundKey);
  cad::dxf::TagWriter writer(pair, dialect());
  if (place.lacks_part) writer.raw(100, kPart);
  writer.text(3, key);
  writer.handle(place.hard ? 360 : 350, handle);
  writable_content().insert(place.key.value_or(place.end), pair);
  decoded.sorted.insert(decoded.sorted.begin() + static_cast<std::ptrdiff_t>(at),
                        {std::wstring(key), handle});
  content_changed();
}

void AcDbDictionary::replace_reference(std::wstring_view key, std::uint64_t before,
                                       std::uint64_t handle) {
  std::string& tags = writable_content();
  if (const auto pair = find_pair(tags, dialect(), key, before)) {
    LensWriter(tags, dialect()).set_handle(pair->reference, handle);
  }
  content_changed();
}

void AcDbDictionary::erase_replaced(std::uint64_t handle) {
  Drawing& drawing = StubStore::drawing_of(*ObjectAccess::stub(*this));
  Stub* stub = drawing.find(handle);
  if (stub && !stub->erased()) ObjectAccess::turn(drawing, *stub, true);
}

Acad::ErrorStatus AcDbDictionary::take_out(std::size_t position) {
  Entries& decoded = entries();
  const Entries::Entry& entry = decoded.sorted[position];
  if (const auto pair = find_pair(content(), dialect(), entry.key, entry.handle)) {
    LensWriter(writable_content(), dialect()).remove(pair->begin, pair->reference.end);
    content_changed();
  }
  decoded.sorted.erase(decoded.sorted.begin() + static_cast<std::ptrdiff_t>(position));
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::setName(const ACHAR* key, const ACHAR* new_key) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  const std::wstring_view name = new_key ? new_key : L"";
  if (!is_key(name)) return Acad::eInvalidKey;
  const auto* found = key ? entries().find(key) : nullptr;
  if (!found || live_entry(*this, found->handle).isNull()) return Acad::eKeyNotFound;
  const bool same_entry = compare_keys(found->key, name) == 0;
  if (!same_entry && entries().find(name)) return Acad::eDuplicateKey;
  const auto pair = find_pair(content(), dialect(), found->key, found->handle);
  if (!pair) return Acad::eKeyNotFound;
  std::string tag;
  cad::dxf::TagWriter(tag, dialect()).text(3, name);
  cad::dxf::Tag old;
  cad::dxf::TagReader(content(), dialect(), pair->begin).next(old);
  writable_content().replace(old.begin, old.end - old.begin, tag);
  content_changed();
  entries_.reset();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* key) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  const auto* found = key ? entries().find(key) : nullptr;
  if (!found) return Acad::eKeyNotFound;
  return take_out(static_cast<std::size_t>(found - entries().sorted.data()));
}

Acad::ErrorStatus AcDbDictionary::remove(AcDbObjectId entry) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  const auto& sorted = entries().sorted;
  for (std::size_t i = 0; i < sorted.size() && !entry.isErased(); ++i) {
    if (sorted[i].handle == entry.handle()) return take_out(i);
  }
  return Acad::eKeyNotFound;
}

void AcDbDictionary::entry_erased(AcDbObjectId entry) {
  const auto& sorted = entries().sorted;
  for (std::size_t i = sorted.size(); i > 0; --i) {
    if (sorted[i - 1].handle == entry.handle()) take_out(i - 1);
  }
}

void AcDbDictionary::content_restored() { entries_.reset(); }

AcDbDictionaryIterator* AcDbDictionary::newIterator() const {
  return new AcDbDictionaryIterator(*this);
}

AcDbDictionaryIterator::AcDbDictionaryIterator(const AcDbDictionary& dictionary)
    : dictionary_(dictionary) {
  stand_on(0);
}

AcDbDictionaryIterator::~AcDbDictionaryIterator() = default;

void AcDbDictionaryIterator::stand_on(std::size_t from) {
  const auto& sorted = dictionary_.entries().sorted;
  for (std::size_t i = from; i < sorted.size(); ++i) {
    id_ = live_entry(dictionary_, sorted[i].handle);
    if (id_.isNull()) continue;
    key_ = sorted[i].key;
    done_ = false;
    return;
  }
  done_ = true;
  id_.setNull();
}

bool AcDbDictionaryIterator::done() const { return done_; }

bool AcDbDictionaryIterator::next() {
  if (done_) return false;
  const auto& entries = dictionary_.entries();
  std::size_t behind = entries.lower_bound(key_);
  while (behind < entries.sorted.size() && compare_keys(entries.sorted[behind].key, key_) == 0) {
    ++behind;
  }
  stand_on(behind);
  return !done_;
}

const ACHAR* AcDbDictionaryIterator::name() const { return done_ ? nullptr : key_.c_str(); }
AcDbObjectId AcDbDictionaryIterator::objectId() const { return id_; }

Acad::ErrorStatus AcDbDictionaryIterator::getObject(AcDbObject*& object,
                                                    AcDb::OpenMode mode) const {
  object = nullptr;
  if (done_) return Acad::eIteratorDone;
  return acdbOpenAcDbObject(object, id_, mode);
}

std::vector<AcDbObjectId> cad::ObjectAccess::owned_entries(const AcDbDictionary& dictionary) {
  std::vector<AcDbObjectId> owned;
  const Stub* own = stub(dictionary);
  if (!own) return owned;
  Drawing& drawing = StubStore::drawing_of(*own);
  for (const auto& entry : dictionary.entries().sorted) {
    Stub* target = drawing.find(entry.handle);
    if (target && target->owner == own->handle) owned.push_back(AcDbObjectId(target));
  }
  return owned;
}
