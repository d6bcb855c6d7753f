#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/db/object_id.h"
#include "host/db/rx.h"

namespace cad {
struct Stub;
class LensWriter;
class NewTags;
class ObjectAccess;
struct NewLayout;
namespace dxf {
struct Dialect;
}
}  // namespace cad

/// An object of a drawing. A typed object is a lens over the object's DXF tags: reading decodes
/// what is asked for, writing patches the tags concerned and no others.
///
/// Objects of a drawing are reached by opening their id (host/db/open.h) and given back by
/// close(). Many readers or one writer may hold an object. The drawing owns resident objects: a
/// pointer stays valid until the drawing is closed, though its contents may only be touched while
/// open. An object made with `new` counts as open for write and belongs to the caller until it is
/// added to a drawing.
class AcDbObject : public AcRxObject {
  PN_RX_MEMBERS(AcDbObject)
 public:
  AcDbObject(const AcDbObject&) = delete;
  AcDbObject& operator=(const AcDbObject&) = delete;
  ~AcDbObject() override;

  AcDbObjectId objectId() const;
  AcDbObjectId ownerId() const;
  void getAcDbHandle(AcDbHandle& handle) const;
  AcDbDatabase* database() const;

  bool isReadEnabled() const;    ///< open for read or for write
  bool isWriteEnabled() const;   ///< open for write
  bool isNotifyEnabled() const;  ///< open for notify
  bool isNewObject() const;      ///< made in this session and not closed yet
  bool isModified() const;       ///< written to since it was opened
  bool isErased() const;

  /// Gives the object back. eOk; eNotInDatabase for an object that was never added to a drawing
  /// (nothing happens, the caller still owns it); eNotOpenForRead when it is not open.
  Acad::ErrorStatus close();
  /// Reader to writer: eHadMultipleReaders while others read, eWasOpenForWrite when it is one
  /// already, eOnLockedLayer for an entity on a locked layer.
  Acad::ErrorStatus upgradeOpen();
  Acad::ErrorStatus downgradeOpen();
  /// Erases or, with false, brings back. An erased object stays openable with openErased until
  /// the drawing is closed; saving leaves it out. Its extension dictionary goes and comes with it;
  /// an entry of a dictionary leaves the dictionary and does not come back.
  /// eWasErased, eWasNotErased, eNotOpenForWrite; eCannotBeErasedByCaller for the head of a symbol
  /// table and for the BLOCK and ENDBLK of a block.
  Acad::ErrorStatus erase(bool erasing = true);

  /// Id of the extension dictionary, null when there is none.
  AcDbObjectId extensionDictionary() const;
  /// Makes an empty extension dictionary, hard owner of its entries. eAlreadyInDb when there is
  /// one, eNotOpenForWrite, eNotApplicable in a drawing of a release without dictionaries (R12).
  Acad::ErrorStatus createExtensionDictionary();
  /// Erases the extension dictionary when it is empty, else eContainerNotEmpty.
  Acad::ErrorStatus releaseExtensionDictionary();

  /// Extended data of one application, or of all when `application` is null, beginning with its
  /// 1001 buffer; null when there is none. The caller frees the chain.
  resbuf* xData(const ACHAR* application = nullptr) const;
  /// Replaces the extended data of the applications that `chain` names; an application followed by
  /// nothing loses its data. Nothing changes on eNotOpenForWrite, eInvalidResBuf, eRegappIdNotFound
  /// (not in the drawing's APPID table), eStringTooLong (a text over 255 bytes),
  /// eXdataSizeExceeded.
  Acad::ErrorStatus setXData(const resbuf* chain);

  /// Persistent reactors, written as the {ACAD_REACTORS group.
  Acad::ErrorStatus addPersistentReactor(AcDbObjectId reactor);
  Acad::ErrorStatus removePersistentReactor(AcDbObjectId reactor);
  bool hasPersistentReactor(AcDbObjectId reactor) const;

 protected:
  /// A new object whose tags are those of `record`, in the form of memory objects (see
  /// host/db/content.h), or, with a null view, a lens that the drawing is about to fill.
  explicit AcDbObject(std::string_view record);
  /// A new object that holds values until somebody asks for its tags, close() at the latest.
  explicit AcDbObject(const cad::NewLayout& layout);

  /// The tags as they stand.
  std::string_view content() const {
    if (fresh_) const_cast<AcDbObject*>(this)->spell();
    return {data_, size_};
  }
  /// The values of a new object, whose tags are not spelled yet; else null.
  const cad::NewTags* fresh() const { return fresh_.get(); }
  /// The same for setting one of `code`; also null when the object has no place for it there.
  cad::NewTags* fresh_for(int code);
  const cad::dxf::Dialect& dialect() const;
  /// The tags for changing, copied on the first write; call content_changed() afterwards.
  std::string& writable_content();
  void content_changed();
  /// One change of the tags: refused with eNotOpenForWrite unless open for write.
  Acad::ErrorStatus patch(const std::function<void(cad::LensWriter&)>& change);
  /// The object's own layout is to be worked out by closing() once it is closed.
  void lay_out_later() { flags_ |= kLayOut; }
  virtual void closing();
  /// The tags became others by undoing: what was decoded from them is out of date.
  virtual void content_restored();
  /// Called before the owner's link to `entry` is cut because the entry was erased.
  virtual void entry_erased(AcDbObjectId entry);

 private:
  friend class cad::ObjectAccess;

  static constexpr std::uint8_t kLayOut = 32;  // beside the bits of cad::OpenFlag

  void spell();

  cad::Stub* stub_ = nullptr;   // null until added to a drawing
  const char* data_ = nullptr;  // into the mapped file, or into *owned_
  std::unique_ptr<std::string> owned_;
  std::unique_ptr<cad::NewTags> fresh_;  // instead of the tags
  std::uint32_t size_ = 0;
  std::uint16_t readers_ = 0;
  std::uint8_t flags_ = 0;  // of cad::OpenFlag
};
