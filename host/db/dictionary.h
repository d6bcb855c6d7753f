#pragma once

#include <optional>

#include "host/db/object.h"

class AcDbDictionaryIterator;

/// Named entries in a drawing. Keys are compared without regard to the case of ASCII letters and
/// keep the spelling of their first setAt(). Iteration goes by key in upper-case code-unit order,
/// whatever the order in the file; the file's order is kept when the dictionary is written.
class AcDbDictionary : public AcDbObject {
  PN_RX_MEMBERS(AcDbDictionary)
 public:
  AcDbDictionary();
  ~AcDbDictionary() override;

  /// The entry of that key: eKeyNotFound when there is none or it is erased.
  Acad::ErrorStatus getAt(const ACHAR* key, AcDbObjectId& entry) const;
  /// The same, opened. The status of the open when that fails.
  Acad::ErrorStatus getAt(const ACHAR* key, AcDbObject*& entry, AcDb::OpenMode mode) const;
  bool has(const ACHAR* key) const;
  bool has(AcDbObjectId entry) const;
  /// The key of an entry as stored. eKeyNotFound.
  Acad::ErrorStatus nameAt(AcDbObjectId entry, std::wstring& key) const;
  int numEntries() const;

  /// Files `object` under `key` and makes this dictionary its owner and reactor; the object is
  /// added to the drawing when it is new and stays open for write. An entry that had the key is
  /// erased and its place taken. A key that begins with "*" asks for one that nobody has yet: *A1,
  /// *A2, ... eNotOpenForWrite; eInvalidKey for an empty key or one with < > / \ " : ; ? * | , = `
  /// elsewhere; eNullObjectPointer; eAlreadyInDb for an object with another owner.
  Acad::ErrorStatus setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id);
  /// Takes the entry out without erasing it. eKeyNotFound, eNotOpenForWrite.
  Acad::ErrorStatus remove(const ACHAR* key);
  Acad::ErrorStatus remove(AcDbObjectId entry);

  /// Gives the entry of that key another one; its place in the file stays. eKeyNotFound,
  /// eDuplicateKey, eInvalidKey, eNotOpenForWrite.
  Acad::ErrorStatus setName(const ACHAR* key, const ACHAR* new_key);

  /// Hard owners write 280 = 1 and group 360 for new entries.
  bool isTreatElementsAsHard() const;
  Acad::ErrorStatus setTreatElementsAsHard(bool hard);

  /// An iterator standing on the first entry; the caller deletes it before the dictionary closes.
  AcDbDictionaryIterator* newIterator() const;

 protected:
  void entry_erased(AcDbObjectId entry) override;
  void content_restored() override;

 private:
  friend class AcDbDictionaryIterator;
  friend class cad::ObjectAccess;
  struct Entries;
  explicit AcDbDictionary(std::string_view record);
  Entries& entries() const;
  Acad::ErrorStatus take_out(std::size_t position);
  void file_entry(std::wstring_view key, std::uint64_t handle);
  void replace_reference(std::wstring_view key, std::uint64_t before, std::uint64_t handle);
  void erase_replaced(std::uint64_t handle);
  mutable std::unique_ptr<Entries> entries_;  // decoded on first use
};

/// Walks a dictionary by key. Entries erased during the walk, the current one included, are
/// stepped over without skipping a neighbour: the iterator remembers its key.
class AcDbDictionaryIterator {
 public:
  ~AcDbDictionaryIterator();
  bool done() const;
  /// Moves behind the current key; false when that was the last.
  bool next();
  const ACHAR* name() const;  ///< key as stored, null when done; valid until next()
  AcDbObjectId objectId() const;
  Acad::ErrorStatus getObject(AcDbObject*& object, AcDb::OpenMode mode) const;

 private:
  friend class AcDbDictionary;
  explicit AcDbDictionaryIterator(const AcDbDictionary& dictionary);
  void stand_on(std::size_t from);
  const AcDbDictionary& dictionary_;
  std::wstring key_;  // current key as stored
  AcDbObjectId id_;
  bool done_ = true;
};
