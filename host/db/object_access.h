#pragma once

#include "host/db/new_tags.h"
#include "host/db/object.h"
#include "host/db/stub.h"

class AcDbDictionary;

namespace cad {

/// Bits of AcDbObject::flags_.
enum OpenFlag : std::uint8_t {
  kOpenWrite = 1,
  kOpenNotify = 2,
  kNewObject = 4,  // made with new and not closed since
  kModified = 8,
  kRecorded = 16,  // its state before the step being recorded is in the undo log
  // 32 is AcDbObject::kLayOut
};

/// The host's way into the private part of objects. Nothing outside host/db uses it.
class ObjectAccess {
 public:
  template <class T>
  static AcDbObject* make(std::string_view record) {
    return new T(record);
  }

  static Stub* stub(const AcDbObject& object) { return object.stub_; }
  static std::string_view content(const AcDbObject& object) { return object.content(); }
  static const dxf::Dialect& dialect(const AcDbObject& object) { return object.dialect(); }
  static std::string& writable(AcDbObject& object) { return object.writable_content(); }
  static void changed(AcDbObject& object) { object.content_changed(); }

  /// Makes `object` the resident one of `stub`, not open.
  static void attach(AcDbObject& object, Stub& stub) {
    object.stub_ = &stub;
    object.flags_ = 0;
    stub.object = &object;
  }
  /// Makes a new object resident; it stays open for write.
  static void adopt(AcDbObject& object, Stub& stub, std::string content);
  /// The same for one whose tags are not spelled yet.
  static void adopt(AcDbObject& object, Stub& stub);
  static NewTags* fresh(const AcDbObject& object) { return object.fresh_.get(); }
  /// Gives an object other tags as a whole.
  static void replace_content(AcDbObject& object, std::string content);

  // For the undo log.
  static bool has_flag(const AcDbObject& object, OpenFlag flag) {
    return (object.flags_ & flag) != 0;
  }
  static void set_flag(AcDbObject& object, OpenFlag flag, bool on) {
    object.flags_ = static_cast<std::uint8_t>(on ? object.flags_ | flag : object.flags_ & ~flag);
  }
  static const std::string* own_content(const AcDbObject& object) {
    object.content();  // spells it
    return object.owned_.get();
  }
  static std::unique_ptr<std::string> take_content(AcDbObject& object) {
    object.content();
    return std::move(object.owned_);
  }
  /// Puts `content`, or for null the file's, in place of the object's, which comes out in it.
  static void exchange_content(AcDbObject& object, std::unique_ptr<std::string>& content);

  static bool is_open(const AcDbObject& object) {
    return object.readers_ != 0 || (object.flags_ & (kOpenWrite | kOpenNotify)) != 0;
  }
  static void entry_erased(AcDbObject& owner, AcDbObjectId entry) { owner.entry_erased(entry); }
  static Acad::ErrorStatus open(AcDbObject& object, AcDb::OpenMode mode);
  /// An entity whose layer is locked. The object must be resident.
  static bool on_locked_layer(const AcDbObject& object);
  /// Erases or brings back an object and all that depends on it.
  static void turn(Drawing& drawing, Stub& stub, bool erased);
  /// Entries the dictionary owns, erased ones included.
  static std::vector<AcDbObjectId> owned_entries(const AcDbDictionary& dictionary);
  // Dictionaries whether they are open or not.
  /// The handle filed under a key; 0 when there is none.
  static std::uint64_t entry_of(const AcDbDictionary& dictionary, std::wstring_view key);
  /// The key of a handle; null when it is not filed there.
  static const std::wstring* key_of(const AcDbDictionary& dictionary, std::uint64_t handle);
  static void file_entry(AcDbDictionary& dictionary, std::wstring_view key, std::uint64_t handle);
};

}  // namespace cad
