#include "host/db/object.h"

#include <utility>

#include "host/db/content.h"
#include "host/db/database.h"
#include "host/db/dictionary.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/db/record.h"

PN_RX_DEFINE(AcDbObject, AcRxObject, L"")

namespace {

using cad::Drawing;
using cad::Lens;
using cad::LensWriter;
using cad::ObjectAccess;
using cad::Stub;
using cad::StubStore;

constexpr std::string_view kExtensionGroup = "{ACAD_XDICTIONARY";
constexpr std::string_view kReactorGroup = "{ACAD_REACTORS";

/// The reference inside an extension-dictionary group; 0 when it holds none.
std::uint64_t reference_in(std::string_view bytes, const cad::dxf::Dialect& dialect,
                           const Lens::Group& group) {
  cad::dxf::TagReader tags(bytes.substr(0, group.closing), dialect, group.inside);
  cad::dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 360 || tag.code == 350) return cad::dxf::handle_value(tag);
  }
  return 0;
}

/// The extension dictionary an object's tags name, null when there is none or it leads nowhere.
Stub* extension_of(Drawing& drawing, const Stub& stub) {
  const std::string_view bytes = drawing.bytes_of(stub);
  const Lens lens(bytes, drawing.dialect());
  const auto group = lens.group(kExtensionGroup);
  if (!group) return nullptr;
  Stub* found = drawing.find(reference_in(bytes, drawing.dialect(), *group));
  const bool dictionary =
      found && drawing.class_of(*found).describe()->isDerivedFrom(AcDbDictionary::desc());
  return dictionary && found != &stub ? found : nullptr;
}

/// Appends what goes and comes with an object: its sub-entities, its extension dictionary, and the
/// entries of a dictionary that owns them.
void append_dependants(Drawing& drawing, Stub& stub, std::vector<Stub*>& out) {
  for (Stub* part : drawing.sub_entities(stub)) out.push_back(part);
  if (Stub* extension = extension_of(drawing, stub)) out.push_back(extension);
  if (const auto* dictionary = AcDbDictionary::cast(&drawing.object(stub))) {
    for (const AcDbObjectId entry : ObjectAccess::owned_entries(*dictionary)) {
      out.push_back(entry.stub());
    }
  }
}

/// A copy that a group of the frame or a little extended data can be added to where it stands.
std::unique_ptr<std::string> with_room(std::string_view tags) {
  constexpr std::size_t kRoom = 48;
  auto copy = std::make_unique<std::string>();
  copy->reserve(tags.size() + kRoom);
  copy->append(tags);
  return copy;
}

/// An empty dictionary, hard owner of its entries.
std::string hard_dictionary(const cad::dxf::Dialect& dialect, std::uint64_t handle,
                            std::uint64_t owner) {
  constexpr std::size_t kWithAnEntry = 128;
  std::string tags;
  tags.reserve(kWithAnEntry);
  cad::dxf::TagWriter writer(tags, dialect);
  writer.raw(0, "DICTIONARY");
  writer.handle(5, handle);
  writer.handle(330, owner);
  writer.raw(100, "AcDbDictionary");
  writer.integer(280, 1);
  if (dialect.has_cloning_flags()) writer.integer(281, 1);
  return tags;
}

}  // namespace

/// Erases or brings back `first` and all that depends on it. A worklist, because drawings may nest
/// deeper than the stack; cycles end because every object turns only once.
void ObjectAccess::turn(Drawing& drawing, Stub& first, bool erased) {
  std::vector<Stub*> work;  // takes no memory for the usual object, on which nothing depends
  const auto next = [&work] {
    if (work.empty()) return static_cast<Stub*>(nullptr);
    Stub* const last = work.back();
    work.pop_back();
    return last;
  };
  for (Stub* stub = &first; stub; stub = next()) {
    if (stub->erased() == erased || stub->has(Stub::kMissing) || drawing.is_frame(*stub)) continue;
    append_dependants(drawing, *stub, work);
    drawing.undo().before_change(*stub);
    stub->flags = static_cast<std::uint8_t>(erased ? stub->flags | Stub::kErased
                                                   : stub->flags & ~Stub::kErased);
    drawing.note_edit(*stub);
    if (stub->section == cad::dxf::Section::kTables) drawing.record_turned(*stub);
  }
}

AcDbObject::AcDbObject(std::string_view record)
    : data_(record.data()),
      size_(static_cast<std::uint32_t>(record.size())),
      flags_(cad::kOpenWrite | cad::kNewObject) {}

AcDbObject::AcDbObject(const cad::NewLayout& layout)
    : fresh_(std::make_unique<cad::NewTags>(layout)), flags_(cad::kOpenWrite | cad::kNewObject) {}

AcDbObject::~AcDbObject() = default;

AcDbObjectId AcDbObject::objectId() const { return AcDbObjectId(stub_); }

AcDbObjectId AcDbObject::ownerId() const {
  return stub_ ? AcDbObjectId(StubStore::drawing_of(*stub_).find(stub_->owner)) : AcDbObjectId();
}

void AcDbObject::getAcDbHandle(AcDbHandle& handle) const { handle = objectId().handle(); }

AcDbDatabase* AcDbObject::database() const { return objectId().database(); }

bool AcDbObject::isReadEnabled() const { return readers_ != 0 || isWriteEnabled(); }
bool AcDbObject::isWriteEnabled() const { return (flags_ & cad::kOpenWrite) != 0; }
bool AcDbObject::isNotifyEnabled() const { return (flags_ & cad::kOpenNotify) != 0; }
bool AcDbObject::isNewObject() const { return (flags_ & cad::kNewObject) != 0; }
bool AcDbObject::isModified() const { return (flags_ & cad::kModified) != 0; }
bool AcDbObject::isErased() const { return stub_ && stub_->erased(); }

Acad::ErrorStatus AcDbObject::close() {
  if (!stub_) return Acad::eNotInDatabase;
  if (!ObjectAccess::is_open(*this)) return Acad::eNotOpenForRead;
  if (isWriteEnabled()) {
    if (flags_ & kLayOut) closing();
    if (fresh_) {
      spell();
      StubStore::drawing_of(*stub_).note_edit(*stub_);
    }
    flags_ = static_cast<std::uint8_t>(flags_ & ~(cad::kOpenWrite | cad::kModified | kLayOut));
  } else if (readers_ != 0) {
    --readers_;
  } else {
    flags_ = static_cast<std::uint8_t>(flags_ & ~cad::kOpenNotify);
  }
  flags_ = static_cast<std::uint8_t>(flags_ & ~cad::kNewObject);
  if (!ObjectAccess::is_open(*this)) StubStore::drawing_of(*stub_).closed();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
  if (isWriteEnabled()) return Acad::eWasOpenForWrite;
  if (readers_ == 0) return Acad::eNotOpenForRead;
  if (readers_ > 1) return Acad::eHadMultipleReaders;
  if (stub_ && ObjectAccess::on_locked_layer(*this)) return Acad::eOnLockedLayer;
  readers_ = 0;
  flags_ |= cad::kOpenWrite;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
  if (!isWriteEnabled() || !stub_) return Acad::eNotOpenForWrite;
  if (flags_ & kLayOut) closing();
  content();
  flags_ = static_cast<std::uint8_t>(flags_ & ~(cad::kOpenWrite | cad::kModified | kLayOut));
  readers_ = 1;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
  if (!stub_) return Acad::eNotInDatabase;
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (isErased() == erasing) return erasing ? Acad::eWasErased : Acad::eWasNotErased;
  Drawing& drawing = StubStore::drawing_of(*stub_);
  if (drawing.is_frame(*stub_)) return Acad::eCannotBeErasedByCaller;
  ObjectAccess::turn(drawing, *stub_, erasing);
  if (erasing && stub_->owner != 0 && !stub_->has(Stub::kStrayTwin)) {
    Stub* owner = drawing.find(stub_->owner);
    if (owner && !owner->erased()) ObjectAccess::entry_erased(drawing.object(*owner), objectId());
  }
  return Acad::eOk;
}

AcDbObjectId AcDbObject::extensionDictionary() const {
  return stub_ ? AcDbObjectId(extension_of(StubStore::drawing_of(*stub_), *stub_)) : AcDbObjectId();
}

AcDbObjectId cad::extension_dictionary(AcDbObjectId id) {
  if (id.isNull()) return id;
  return AcDbObjectId(extension_of(StubStore::drawing_of(*id.stub()), *id.stub()));
}

Acad::ErrorStatus AcDbObject::createExtensionDictionary() {
  if (!stub_) return Acad::eNotInDatabase;
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  Drawing& drawing = StubStore::drawing_of(*stub_);
  if (!drawing.dialect().has_dictionaries()) {
    drawing.alert_no_dictionaries();
    return Acad::eNotApplicable;
  }
  if (stub_->handle == 0 || stub_->has(Stub::kStrayTwin)) return Acad::eBrokenHandle;
  if (extension_of(drawing, *stub_)) return Acad::eAlreadyInDb;

  const auto objects = cad::dxf::Section::kObjects;
  const auto spell = [&](std::uint64_t handle) {
    return hard_dictionary(drawing.dialect(), handle, stub_->handle);
  };
  const Stub& made =
      drawing.add_record("DICTIONARY", stub_->handle, objects, drawing.section_end(objects), spell);

  std::string& tags = writable_content();
  const Lens lens(tags, dialect());
  LensWriter writer(tags, dialect());
  if (const auto stale = lens.group(kExtensionGroup)) writer.remove(stale->begin, stale->end);
  const std::size_t place = Lens(tags, dialect()).behind_handle();
  constexpr std::size_t kGroupSize = 64;
  std::string group;
  group.reserve(kGroupSize);
  cad::dxf::TagWriter text(group, dialect());
  text.raw(102, kExtensionGroup);
  text.handle(360, made.handle);
  text.raw(102, "}");
  writer.insert(place, group);
  content_changed();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::releaseExtensionDictionary() {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  const AcDbObjectId id = extensionDictionary();
  if (id.isNull()) return Acad::eKeyNotFound;
  Drawing& drawing = StubStore::drawing_of(*stub_);
  auto* dictionary = AcDbDictionary::cast(&drawing.object(*id.stub()));
  if (!id.isErased() && dictionary->numEntries() != 0) return Acad::eContainerNotEmpty;
  ObjectAccess::turn(drawing, *id.stub(), true);
  std::string& tags = writable_content();
  if (const auto group = Lens(tags, dialect()).group(kExtensionGroup)) {
    LensWriter(tags, dialect()).remove(group->begin, group->end);
  }
  content_changed();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::addPersistentReactor(AcDbObjectId reactor) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (reactor.isNull()) return Acad::eNullObjectId;
  if (hasPersistentReactor(reactor)) return Acad::eOk;
  std::string& tags = writable_content();
  const Lens lens(tags, dialect());
  std::string text;
  cad::dxf::TagWriter writer(text, dialect());
  if (const auto group = lens.group(kReactorGroup)) {
    writer.handle(330, reactor.handle());
    LensWriter(tags, dialect()).insert(group->closing, text);
  } else {
    writer.raw(102, kReactorGroup);
    writer.handle(330, reactor.handle());
    writer.raw(102, "}");
    const auto extension = lens.group(kExtensionGroup);
    LensWriter(tags, dialect()).insert(extension ? extension->end : lens.behind_handle(), text);
  }
  content_changed();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::removePersistentReactor(AcDbObjectId reactor) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  const auto group = Lens(content(), dialect()).group(kReactorGroup);
  if (!group) return Acad::eKeyNotFound;
  cad::dxf::TagReader tags(content().substr(0, group->closing), dialect(), group->inside);
  cad::dxf::Tag tag;
  int others = 0;
  std::optional<std::pair<std::size_t, std::size_t>> span;
  while (tags.next(tag)) {
    if (cad::dxf::handle_value(tag) == reactor.handle()) {
      span.emplace(tag.begin, tag.end);
    } else {
      ++others;
    }
  }
  if (!span) return Acad::eKeyNotFound;
  if (others == 0) span.emplace(group->begin, group->end);
  LensWriter(writable_content(), dialect()).remove(span->first, span->second);
  content_changed();
  return Acad::eOk;
}

bool AcDbObject::hasPersistentReactor(AcDbObjectId reactor) const {
  const auto group = Lens(content(), dialect()).group(kReactorGroup);
  if (!group || reactor.isNull()) return false;
  cad::dxf::TagReader tags(content().substr(0, group->closing), dialect(), group->inside);
  cad::dxf::Tag tag;
  while (tags.next(tag)) {
    if (cad::dxf::handle_value(tag) == reactor.handle()) return true;
  }
  return false;
}

const cad::dxf::Dialect& AcDbObject::dialect() const {
  return stub_ ? StubStore::drawing_of(*stub_).dialect() : cad::memory_dialect();
}

void AcDbObject::spell() {
  // Room for a short text with the extended data that most of them get; what needs much less is
  // kept in what it takes, for a drawing holds millions.
  constexpr std::size_t kUsualSize = 360;
  constexpr std::size_t kMostRoom = 160;
  auto tags = std::make_unique<std::string>();
  tags->reserve(kUsualSize);
  const std::unique_ptr<cad::NewTags> fresh = std::move(fresh_);
  fresh->spell(*tags, dialect(), stub_ ? stub_->handle : 0, stub_ ? stub_->owner : 0);
  const bool fits = tags->capacity() - tags->size() <= kMostRoom;
  owned_ = fits ? std::move(tags) : with_room(*tags);
  data_ = owned_->data();
  size_ = static_cast<std::uint32_t>(owned_->size());
}

cad::NewTags* AcDbObject::fresh_for(int code) {
  if (!fresh_ || !fresh_->has(code)) return nullptr;
  // Once another step of the undo log has begun, what this one finds must be on record.
  if (stub_ && (flags_ & cad::kRecorded) == 0 &&
      StubStore::drawing_of(*stub_).undo().is_recording())
    return nullptr;
  flags_ |= cad::kModified;
  return fresh_.get();
}

std::string& AcDbObject::writable_content() {
  if (fresh_) spell();
  if (stub_ && (flags_ & cad::kRecorded) == 0)
    StubStore::drawing_of(*stub_).undo().before_change(*stub_);
  if (!owned_) owned_ = with_room(content());
  return *owned_;
}

void AcDbObject::content_changed() {
  data_ = owned_->data();
  size_ = static_cast<std::uint32_t>(owned_->size());
  flags_ |= cad::kModified;
  if (stub_) StubStore::drawing_of(*stub_).note_edit(*stub_);
}

Acad::ErrorStatus AcDbObject::patch(const std::function<void(LensWriter&)>& change) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  LensWriter writer(writable_content(), dialect());
  change(writer);
  content_changed();
  return Acad::eOk;
}

void AcDbObject::entry_erased(AcDbObjectId) {}
void AcDbObject::content_restored() {}
void AcDbObject::closing() {}

void ObjectAccess::adopt(AcDbObject& object, Stub& stub, std::string content) {
  object.fresh_.reset();
  object.owned_ = std::make_unique<std::string>(std::move(content));
  object.data_ = object.owned_->data();
  object.size_ = static_cast<std::uint32_t>(object.owned_->size());
  adopt(object, stub);
}

void ObjectAccess::adopt(AcDbObject& object, Stub& stub) {
  object.stub_ = &stub;
  stub.object = &object;
  object.flags_ |= kModified;
  StubStore::drawing_of(stub).note_edit(stub);
  // The log has the stub as new; what it holds at first need not be taken back.
  if (StubStore::drawing_of(stub).undo().is_recording()) object.flags_ |= kRecorded;
}

void ObjectAccess::replace_content(AcDbObject& object, std::string content) {
  object.content();
  if (object.stub_ && (object.flags_ & kRecorded) == 0) {
    StubStore::drawing_of(*object.stub_).undo().before_replacing(object);
  }
  object.owned_ = std::make_unique<std::string>(std::move(content));
  object.content_changed();
}

void ObjectAccess::exchange_content(AcDbObject& object, std::unique_ptr<std::string>& content) {
  std::swap(object.owned_, content);
  const Stub& stub = *object.stub_;
  const std::string_view now = object.owned_ ? std::string_view(*object.owned_)
                                             : StubStore::drawing_of(stub).file_bytes(stub);
  object.data_ = now.data();
  object.size_ = static_cast<std::uint32_t>(now.size());
  object.content_restored();
}
