#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/codepage.h"
#include "host/base/result.h"
#include "host/db/group_list.h"
#include "host/db/object.h"

class AcDbBlockTable;
class AcDbDictionary;
class AcDbEntity;
class AcDbLayerTable;
class AcDbRegAppTable;
class AcDbTextStyleTable;

namespace cad {
class Drawing;
class FileLock;

/// Counts of what a drawing's file holds, as found when it was read.
struct DrawingFacts {
  std::string version;       ///< "AC1027"
  std::string version_name;  ///< "R2013"
  std::string code_page;     ///< as the header names it, "ANSI_936"; empty when absent
  bool binary = false;
  bool crlf = false;
  std::uint64_t bytes = 0;
  std::uint64_t objects = 0;  ///< objects and entities with or without handle
  std::uint64_t without_handle = 0;
  std::uint64_t duplicate_handles = 0;  ///< handles given to a second object; the first keeps it
  std::uint64_t handle_seed = 0;        ///< next handle a new object takes
  struct Kind {
    std::string name;
    std::uint64_t count = 0;
  };
  std::vector<Kind> kinds;  ///< by name
};
}  // namespace cad

/// A drawing. Several may be open; one of them is the working database of
/// acdbHostApplicationServices().
class AcDbDatabase : public AcRxObject {
  PN_RX_MEMBERS(AcDbDatabase)
 public:
  /// With true an empty drawing (R2013) with the usual tables; with false a shell to read into.
  explicit AcDbDatabase(bool buildDefaultDrawing = true);
  ~AcDbDatabase() override;
  AcDbDatabase(const AcDbDatabase&) = delete;
  AcDbDatabase& operator=(const AcDbDatabase&) = delete;

  /// Reads a DXF file, ASCII or binary, into an empty shell. The file is mapped and must not be
  /// changed in place while the drawing is open. The error names line or byte offset.
  cad::Status read_file(const std::string& path);
  /// The same from memory; `name` stands in error messages.
  cad::Status read_bytes(std::string bytes, const std::string& name);
  /// Reads a drawing file into an empty shell, as programs ask for it: "\\" is "/" and letter case
  /// is ignored in names that do not exist as given, and x.dwg stands for x.dxf and the other way
  /// round. Contents decide how a file is read, not its name. Share mode and code page conversion
  /// are of no consequence: files are read without locking anybody out, texts by their code page.
  /// eFileNotFound; eInvalidInput when something was read before; eInvalidDwgVersion for a DWG that
  /// cannot be read, eBadDxfSequence for everything else. The reason is traced and kept for
  /// read_error().
  Acad::ErrorStatus readDwgFile(const ACHAR* file, int shareMode = 3,
                                bool allowCodePageConversion = false);
  const cad::Error& read_error() const { return read_error_; }
  /// Makes the model space of `from` the block of that name: a new one, or the one there is, which
  /// loses its own contents. $INSBASE of `from` is its base point. What the entities need comes
  /// along (layers, styles, linetypes, applications, blocks, what they own, objects filed in
  /// dictionaries); of names both have, this drawing's definitions count. Handles are new and
  /// references follow, texts that spell handles do not. "*U" asks for an anonymous block. `from`
  /// stays as it is whatever `preserveSource` says.
  ///
  /// All or nothing. eInvalidBlockName; eSelfReference when the block would contain itself, or
  /// `from` has a block of that name; eNotApplicable for entities and names that a drawing of this
  /// release cannot hold; eNullObjectPointer. The reason is traced.
  Acad::ErrorStatus insert(AcDbObjectId& block, const ACHAR* name, AcDbDatabase* from,
                           bool preserveSource = true);
  /// Writes the drawing: what nobody touched byte for byte. Atomic: the file at `path` is the old
  /// or the new one, whole. With `keep_backup` the replaced file stays as path + ".bak".
  /// Objects still open for write are written as they stand.
  /// A lock held on the old file goes over to the new one.
  cad::Status save_file(const std::string& path, bool keep_backup = false,
                        cad::FileLock* lock = nullptr) const;
  /// What save_file() would write.
  std::string save_bytes() const;
  bool is_modified() const;  ///< whether saving would write anything but the bytes read

  /// eUnknownHandle, eNullHandle. An erased object's handle resolves until the drawing is closed.
  Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound,
                                    const AcDbHandle& handle);
  AcDbObjectId namedObjectsDictionaryId() const;
  AcDbObjectId blockTableId() const;
  AcDbObjectId layerTableId() const;
  AcDbObjectId textStyleTableId() const;
  AcDbObjectId linetypeTableId() const;
  AcDbObjectId regAppTableId() const;
  AcDbObjectId currentSpaceId() const;  ///< model space when TILEMODE is 1, else the paper space
  AcDbObjectId modelSpaceId() const;
  bool tile_mode() const;  ///< whether model space is current
  /// The layout space that is current while model space is not. Null: the drawing's active one.
  void set_current_paper(AcDbObjectId space) { current_paper_ = space; }
  /// Colour of new entities as 0xRRGGBB, where it is no number of the palette. Not saved: the
  /// header has no place for it.
  std::optional<std::int32_t> current_true_color() const { return current_true_color_; }
  void set_current_true_color(std::optional<std::int32_t> color) { current_true_color_ = color; }
  AcDbObjectId clayer() const;  ///< current layer; null when the drawing has no such layer
  AcDbHandle handseed() const;

  Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& dictionary, AcDb::OpenMode mode);
  Acad::ErrorStatus getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode);
  Acad::ErrorStatus getSymbolTable(AcDbLayerTable*& table, AcDb::OpenMode mode);
  Acad::ErrorStatus getSymbolTable(AcDbRegAppTable*& table, AcDb::OpenMode mode);
  Acad::ErrorStatus getSymbolTable(AcDbTextStyleTable*& table, AcDb::OpenMode mode);

  /// Gives a new object a handle without owner; it stays open for write.
  Acad::ErrorStatus addAcDbObject(AcDbObjectId& id, AcDbObject* object);

  /// A header variable's first value as text ("$CLAYER"); empty when the header lacks it.
  std::wstring header_value(std::string_view name) const;
  /// A header variable that is a point; the origin when the header lacks it.
  AcGePoint3d header_point(std::string_view name) const;
  /// Sets a header variable, which is saved with the drawing: in its place, or where the section
  /// has it when the file lacks it. Angles are radians. The error says what the variable wants, or
  /// that the drawing's release has none of that name.
  cad::Status set_header_variable(std::string_view name, const cad::GroupValue::Value& value);

  const cad::DrawingFacts& facts() const;
  bool has_dictionaries() const;  ///< false for R12 and before: nothing can be recorded
  /// The objects that are open now; empty when every open was closed.
  std::vector<AcDbObjectId> open_objects() const;

  /// Entities of the drawing in drawing order: model and active paper space. Null at the end.
  AcDbObjectId first_entity() const;
  AcDbObjectId last_entity() const;
  /// The entity behind `id`, sub-entities (vertices, attributes) included; erased ones skipped.
  AcDbObjectId next_entity(AcDbObjectId id) const;
  /// Every object and entity with its own record in the file or made since, erased ones left out.
  void for_each_object(const std::function<void(AcDbObjectId)>& visit) const;

  cad::Drawing& drawing() const { return *drawing_; }  ///< for the host's own use

 private:
  std::unique_ptr<cad::Drawing> drawing_;
  cad::Error read_error_;
  AcDbObjectId current_paper_;
  std::optional<std::int32_t> current_true_color_;
};

/// Services every drawing shares.
class AcDbHostApplicationServices {
 public:
  AcDbDatabase* workingDatabase() const { return working_; }
  void setWorkingDatabase(AcDbDatabase* database) { working_ = database; }
  /// One line the host has to tell its user, for instance that R12 holds no dictionaries.
  /// Discarded until somebody listens.
  std::function<void(const std::wstring&)> alert;

 private:
  AcDbDatabase* working_ = nullptr;
};
AcDbHostApplicationServices* acdbHostApplicationServices();
