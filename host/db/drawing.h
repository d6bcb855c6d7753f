#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <typeindex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/base/file.h"
#include "host/base/fold.h"
#include "host/base/result.h"
#include "host/db/class_table.h"
#include "host/db/database.h"
#include "host/db/stub.h"
#include "host/db/undo.h"
#include "host/dxf/dialect.h"
#include "host/dxf/scan.h"
#include "host/dxf/tag_reader.h"

namespace cad {

/// Told of every object that was made, changed, erased or brought back, each time it is: for those
/// who keep something they computed from objects.
class DrawingListener {
 public:
  virtual ~DrawingListener() = default;
  virtual void object_changed(const Stub& stub) = 0;
};

/// The document behind an AcDbDatabase: the bytes that were read, the index of their objects, and
/// what has been changed since. Untouched bytes are never copied or decoded.
class Drawing {
 public:
  explicit Drawing(AcDbDatabase& database);
  ~Drawing();
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;

  Status read(MappedFile file, const std::string& name);
  Status read(std::string bytes, const std::string& name);

  AcDbDatabase& database() { return database_; }
  const dxf::Dialect& dialect() const { return dialect_; }
  const std::string& name() const { return name_; }

  // Objects.
  Stub* find(std::uint64_t handle);
  /// The stub of `handle`, or a placeholder that never opens and is never written, so that a
  /// reference to nothing is written back as it was. Null for handle 0.
  Stub* reference(std::uint64_t handle);
  AcDbObject& object(Stub& stub);  ///< made on first use
  const ClassRow& class_of(const Stub& stub) const;
  std::string_view kind_name(const Stub& stub) const { return kinds_[stub.kind].name; }
  std::string_view bytes_of(const Stub& stub) const;  ///< tags as they stand
  /// Tags as the file has them; empty for new objects.
  std::string_view file_bytes(const Stub& stub) const {
    return bytes_.substr(stub.begin, stub.length);
  }
  Stub& stub_at(std::size_t index) { return stubs_[index]; }
  std::size_t stub_count() const { return stubs_.size(); }

  // New objects.
  std::uint64_t allocate_handle();
  std::uint64_t next_handle() const { return next_handle_; }
  /// A stub for a new object of a section's end (OBJECTS, ENTITIES), of a table or of a block.
  Stub& new_stub(std::string_view kind, std::uint64_t owner, dxf::Section section,
                 std::uint64_t anchor);
  /// Where new records of a section go; the section is made on saving when the file lacks it.
  std::uint64_t section_end(dxf::Section section);
  /// Gives `object`, new so far, handle, owner and place, respelled for this drawing. `reactor` is
  /// written as its persistent reactor unless 0.
  Stub& add(AcDbObject& object, std::uint64_t owner, dxf::Section section, std::uint64_t anchor,
            std::uint64_t reactor);
  /// An object whose tags are spelled for this drawing already: `spell` writes them once the handle
  /// is known. It is not open.
  Stub& add_record(std::string_view kind, std::uint64_t owner, dxf::Section section,
                   std::uint64_t anchor, const std::function<std::string(std::uint64_t)>& spell);
  void note_edit(Stub& stub);
  void add_listener(DrawingListener& listener) { listeners_.push_back(&listener); }
  void remove_listener(DrawingListener& listener) { std::erase(listeners_, &listener); }
  /// A listener that belongs to the drawing: one of each type, made by the first call with the
  /// drawing for its constructor, gone with the drawing.
  template <class T>
  T& companion() {
    for (const auto& [type, held] : companions_)
      if (type == typeid(T)) return static_cast<T&>(*held);
    auto made = std::make_unique<T>(*this);
    T& companion = *made;
    companions_.emplace_back(typeid(T), std::move(made));
    add_listener(companion);
    return companion;
  }

  // Header variables.
  /// The tag of a variable's first value. Its offsets count from the start of the file, unless the
  /// variable was set since.
  std::optional<dxf::Tag> header_variable(std::string_view name) const;
  /// All its value tags as they stand; empty when the drawing lacks the variable.
  std::string_view header_tags(std::string_view name) const;
  /// The same of the file.
  std::string_view file_header_tags(std::string_view name) const;
  /// Whether the drawing has the variable, or its release a place for it.
  bool has_header_variable(std::string_view name) const;
  /// Counts changes of header variables.
  std::uint64_t header_version() const { return header_version_; }
  /// Replaces a variable's value tags; none puts the file's back.
  void set_header_tags(const std::string& name, std::optional<std::string> tags);

  // Taking back. The log calls what follows.
  UndoLog& undo() { return undo_; }
  /// What a variable was set to; none while it is as in the file.
  std::optional<std::string> header_edit(std::string_view name) const;
  void exchange_header(const std::string& name, std::optional<std::string>& tags);
  void exchange_next_handle(std::uint64_t& handle) { std::swap(handle, next_handle_); }
  /// An object got another content or erased flag by the log: caches and edits follow.
  void restored(Stub& stub);

  /// What new entities take that are given nothing else.
  struct CurrentProperties {
    Stub* layer = nullptr;     ///< null when the drawing has no such layer
    Stub* style = nullptr;     ///< of texts; null for Standard, which goes without saying
    Stub* standard = nullptr;  ///< the style of texts that name none; null when there is none
    Stub* linetype = nullptr;  ///< null for ByLayer
    std::int64_t color = 256;
    bool tile_mode = true;
  };
  const CurrentProperties& current_properties();

  // Tables, blocks, spaces.
  struct Table {
    std::string name;
    std::size_t stub = 0;      ///< the TABLE record
    std::size_t end_stub = 0;  ///< index behind its last record
    std::uint64_t end = 0;     ///< offset of ENDTAB
    std::vector<std::size_t> added;
  };
  struct Block {
    std::size_t begin = 0;  ///< stub of BLOCK
    std::size_t end = 0;    ///< stub of ENDBLK
    std::uint64_t end_offset = 0;
    std::vector<std::size_t> added;
  };
  Table* table(std::string_view name);
  Table* table_of(const Stub& stub);
  /// A live record by name, letter case ignored.
  Stub* table_record(std::string_view table, std::wstring_view name);
  /// An erased record of that name that is still in memory.
  Stub* erased_record(const Table& table, std::wstring_view name);
  /// Files a new record of that name.
  void add_to_table(Table& table, const Stub& record, std::wstring_view name);
  /// Must be called when records are renamed or erased.
  void table_changed(std::string_view table);
  std::vector<std::size_t> table_records(const Table& table);
  /// Where new entities of a block record go; null for a record whose block is missing.
  Block* block_of(std::uint64_t block_record);
  /// The block that a stub of its begins (BLOCK).
  Block* block_at(const Stub& begin);
  /// The live block of that name, in drawings without block records too.
  Block* block_named(std::wstring_view name);
  const std::vector<Block>& blocks() const { return blocks_; }
  /// First of the block's entities, or null.
  Stub* first_in(const Block& block);
  /// Files a new block by its BLOCK and ENDBLK, which stand in the stubs one behind the other.
  void add_block(const Stub& begin, const Stub& end);
  std::uint64_t model_space();  ///< handle of its block record; 0 in drawings that have none
  bool is_space(std::uint64_t block_record);  ///< whether its entities stand in ENTITIES
  void add_to_space(std::size_t index) { added_entities_.push_back(index); }
  Stub* first_entity();
  Stub* last_entity();
  Stub* entity_behind(const Stub& stub);
  Stub* first_in_block(std::uint64_t block_record);
  Stub* next_in_block(std::uint64_t block_record, const Stub& stub);
  /// Vertices, attributes and the end mark that belong to a polyline or block reference.
  std::vector<Stub*> sub_entities(const Stub& main);
  bool is_sub_entity(const Stub& stub) const;
  bool has_locked_layers();
  bool layer_is_locked(std::wstring_view layer);
  /// A table record was erased or brought back.
  void record_turned(const Stub& stub);
  /// Whether the record brackets others in the file: TABLE, BLOCK, ENDBLK.
  bool is_frame(const Stub& stub) const;
  /// Whether names may have 255 characters of nearly any kind.
  bool has_long_names() const { return dialect_.release >= dxf::Release::kR2000; }
  /// Tells the user, once, that records cannot be stored in this release.
  void alert_no_dictionaries();

  // Classes of kinds that the format itself lacks.
  struct CustomClass {
    std::string kind;        ///< group 0 of its objects
    std::string class_name;  ///< group 2
    std::string record;      ///< the CLASS as it stands in this drawing
  };
  /// As the file has them. Proxies name a class by its place here, counted from 500.
  const std::vector<CustomClass>& classes();
  /// The place of a class of another drawing, which is declared here unless it is already, and
  /// written as long as `user` is there.
  std::size_t declare_class(const CustomClass& wanted, const dxf::Dialect& from, const Stub& user);

  // Open objects.
  void opened() { ++open_count_; }
  void closed() { --open_count_; }
  std::size_t open_count() const { return open_count_; }

  /// The first object of OBJECTS, when it is a dictionary: the root of all others. A file without
  /// objects gets one with its first new object.
  Stub* root_dictionary();

  const DrawingFacts& facts() const { return facts_; }
  /// Counts all changes: objects made, changed, erased, brought back, header variables.
  std::uint64_t version() const { return version_; }
  bool is_modified() const { return edited_ != 0 || !header_edits_.empty(); }
  Status save(const std::string& path, bool keep_backup, FileLock* lock) const;
  std::string save_bytes() const;

 private:
  class Index;
  struct Kind {
    std::string name;
    const ClassRow* row;
    std::uint64_t count = 0;
  };
  struct SectionSpan {
    dxf::Section section = dxf::Section::kNone;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;  ///< offset of ENDSEC
    std::size_t first_stub = 0;
    std::size_t end_stub = 0;
    bool made = false;  ///< not in the file
  };
  /// A stretch of the file and what is written in its place.
  struct Patch {
    std::uint64_t begin;
    std::uint64_t length;
    std::string_view bytes;
  };

  void tell_listeners(const Stub& stub) {
    for (DrawingListener* listener : listeners_) listener->object_changed(stub);
  }
  Status index();
  std::uint16_t kind_of(std::string_view name, dxf::Section section);
  SectionSpan* section(dxf::Section section);
  void build_facts();
  /// Texts written for patches; at addresses that do not change.
  using Storage = std::deque<std::string>;
  std::vector<Patch> patches(Storage& storage) const;
  class RecordPatches;
  void header_patches(Storage& storage, std::vector<Patch>& patches) const;
  void class_patches(Storage& storage, std::vector<Patch>& patches) const;
  Patch header_patch(const std::string& name, const std::string& tags, Storage& storage) const;
  Patch handle_seed_patch(Storage& storage) const;
  std::optional<std::uint64_t> place_of_variable(std::string_view name) const;
  const SectionSpan* header_section() const;
  const std::map<std::string_view, std::pair<dxf::Tag, std::uint64_t>>& file_header() const;
  void make_root(std::uint64_t anchor);
  Stub* skip_to_entity(std::size_t index, std::size_t end);
  Stub* added_behind(const std::vector<std::size_t>& added, std::size_t index);
  std::uint64_t space_of(const Stub& stub) const;

  AcDbDatabase& database_;
  std::string name_;
  std::optional<MappedFile> file_;
  std::string memory_;
  std::string_view bytes_;
  dxf::Dialect dialect_;
  dxf::Preamble preamble_;
  StubStore stubs_;
  HandleTable handles_;
  std::vector<Kind> kinds_;
  std::vector<SectionSpan> sections_;
  std::vector<Table> tables_;
  std::vector<Block> blocks_;
  std::unordered_map<std::uint64_t, std::size_t> block_by_record_;
  bool blocks_by_record_known_ = false;
  std::optional<std::uint64_t> model_space_;
  std::vector<std::size_t> added_entities_;
  Stub* made_root_ = nullptr;  // the root dictionary of a file without objects
  using TableNames = std::unordered_map<std::wstring, std::size_t, HashNoCase, EqualNoCase>;
  std::map<std::string, TableNames, std::less<>> table_names_;
  std::optional<std::vector<std::wstring>> locked_layers_;  // folded names
  std::optional<std::vector<CustomClass>> classes_;
  struct DeclaredClass {
    CustomClass text;
    std::vector<const Stub*> users;
  };
  std::vector<DeclaredClass> declared_classes_;  // behind those of the file
  std::optional<CurrentProperties> current_properties_;
  bool alerted_ = false;
  /// Of each variable in the file: its first value tag, and the offset behind its last.
  mutable std::optional<std::map<std::string_view, std::pair<dxf::Tag, std::uint64_t>>> header_;
  std::map<std::string, std::string, std::less<>> header_edits_;  // value tags by name
  std::unordered_map<std::uint64_t, Stub*> missing_;
  std::vector<Stub*> edits_;
  std::uint64_t version_ = 1;
  std::uint64_t header_version_ = 1;
  std::size_t edited_ = 0;  // of them, those that differ from the file
  std::uint64_t eof_ = 0;   ///< offset of the EOF record
  std::uint64_t file_seed_ = 0;
  std::uint64_t highest_handle_ = 0;
  std::uint64_t next_handle_ = 1;
  std::size_t open_count_ = 0;
  DrawingFacts facts_;
  UndoLog undo_{*this};
  std::vector<DrawingListener*> listeners_;
  std::vector<std::pair<std::type_index, std::unique_ptr<DrawingListener>>> companions_;
};

}  // namespace cad
