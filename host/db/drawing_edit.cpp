// New objects of a drawing, and writing it back.

#include <algorithm>
#include <array>
#include <utility>

#include "host/base/numbers.h"
#include "host/db/dictionary.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

std::string_view section_name(dxf::Section section) {
  switch (section) {
    case dxf::Section::kObjects:
      return "OBJECTS";
    case dxf::Section::kBlocks:
      return "BLOCKS";
    default:
      return "ENTITIES";
  }
}

/// Whether tags of memory objects stand in a drawing of that dialect as they are, line ends apart.
bool spells_like_memory(const dxf::Dialect& dialect) {
  return !dialect.binary && dialect.code_page == CodePage::kUtf8 && dialect.has_dictionaries();
}

void append_with_line_ends(std::string_view lines, const dxf::Dialect& dialect, std::string& out) {
  if (!dialect.crlf) {
    out += lines;
    return;
  }
  const auto ends = static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
  const std::size_t before = out.size();
  out.resize(before + lines.size() + ends);
  char* to = out.data() + before;
  for (const char c : lines) {
    if (c == '\n') *to++ = '\r';
    *to++ = c;
  }
}

/// Memory objects carry the flag that says what becomes of a copy.
bool is_cloning_flag(std::string_view kind, const dxf::Tag& tag, bool behind_marker) {
  return (kind == "XRECORD" && tag.code == 280 && behind_marker) ||
         (kind == "DICTIONARY" && tag.code == 281);
}

/// The tags of a new object, respelled for a drawing, with its handle, reactor and owner in place
/// of the placeholders that memory objects carry.
std::string respell(const AcDbObject& object, const dxf::Dialect& dialect, std::uint64_t handle,
                    std::uint64_t owner, std::uint64_t reactor) {
  std::string out;
  const std::string_view content = ObjectAccess::content(object);
  // Handles and the reactor group come in; line ends may take twice the room.
  out.reserve(content.size() + (dialect.crlf ? content.size() / 4 : 0) + 64);
  dxf::TagWriter writer(out, dialect);
  const dxf::Dialect& from = ObjectAccess::dialect(object);
  dxf::TagReader tags(content, from);
  dxf::Tag tag;
  bool handle_written = false;
  bool owner_written = false;
  bool behind_marker = false;
  std::string_view kind;
  while (tags.next(tag)) {
    if (tag.code == 0) kind = tag.value;
    const bool flag = is_cloning_flag(kind, tag, std::exchange(behind_marker, tag.code == 100));
    if (flag && !dialect.has_cloning_flags()) continue;
    if (!handle_written && (tag.code == 5 || tag.code == 105)) {
      handle_written = true;
      writer.handle(tag.code, handle);
      if (reactor != 0) {
        writer.raw(102, "{ACAD_REACTORS");
        writer.handle(330, reactor);
        writer.raw(102, "}");
      }
    } else if (!owner_written && tag.code == 330) {
      owner_written = true;
      if (dialect.has_dictionaries()) writer.handle(330, owner);
      if (handle_written && spells_like_memory(dialect)) {
        append_with_line_ends(content.substr(tag.end), dialect, out);
        return out;
      }
    } else if (tag.code == 100 && !dialect.has_dictionaries()) {
      continue;  // R12 knows no class parts
    } else {
      writer.copy(tag, from);
    }
  }
  return out;
}

}  // namespace

std::uint64_t Drawing::allocate_handle() {
  while (handles_.find(next_handle_) != HandleTable::kNone || missing_.contains(next_handle_)) {
    ++next_handle_;
  }
  return next_handle_++;
}

void Drawing::note_edit(Stub& stub) {
  ++version_;
  tell_listeners(stub);
  if (kinds_[stub.kind].name == "LAYER") locked_layers_.reset();
  if (stub.has(Stub::kEdited)) return;
  if (!stub.has(Stub::kListed)) edits_.push_back(&stub);
  stub.flags |= Stub::kEdited | Stub::kListed;
  ++edited_;
}

void Drawing::restored(Stub& stub) {
  if (stub.section == dxf::Section::kTables) record_turned(stub);
  if (kinds_[stub.kind].name == "LAYER") locked_layers_.reset();
  const bool has_own = stub.object && ObjectAccess::own_content(*stub.object);
  const bool as_in_file = stub.has(Stub::kNew) ? stub.erased() : !stub.erased() && !has_own;
  if (!as_in_file) return note_edit(stub);
  ++version_;
  tell_listeners(stub);
  if (!stub.has(Stub::kEdited)) return;
  stub.flags = static_cast<std::uint8_t>(stub.flags & ~Stub::kEdited);
  --edited_;
}

Stub& Drawing::new_stub(std::string_view kind, std::uint64_t owner, dxf::Section section,
                        std::uint64_t anchor) {
  undo_.before_making();
  const std::uint64_t handle = allocate_handle();
  const std::size_t index = stubs_.size();
  Stub& stub = stubs_.add();
  stub.handle = handle;
  stub.owner = owner;
  stub.begin = anchor;
  stub.kind = kind_of(kind, section);
  stub.section = section;
  stub.flags = Stub::kNew;
  undo_.made(stub);
  handles_.add(handle, index);
  note_edit(stub);
  return stub;
}

Stub& Drawing::add_record(std::string_view kind, std::uint64_t owner, dxf::Section section,
                          std::uint64_t anchor,
                          const std::function<std::string(std::uint64_t)>& spell) {
  Stub& stub = new_stub(kind, owner, section, anchor);
  AcDbObject* object = class_of(stub).make({});
  ObjectAccess::attach(*object, stub);
  ObjectAccess::adopt(*object, stub, spell(stub.handle));
  return stub;
}

std::uint64_t Drawing::section_end(dxf::Section wanted) {
  SectionSpan* span = section(wanted);
  if (!span) {
    SectionSpan made;
    made.section = wanted;
    made.begin = made.end = eof_;
    // Blocks stand in front of the entities that refer to them.
    const SectionSpan* entities = section(dxf::Section::kEntities);
    if (wanted == dxf::Section::kBlocks && entities) made.begin = made.end = entities->begin;
    made.made = true;
    span = &sections_.emplace_back(made);
  }
  const std::uint64_t end = span->end;
  const bool empty = span->first_stub == span->end_stub;
  const bool has_root = made_root_ && !made_root_->erased();
  if (wanted == dxf::Section::kObjects && empty && !has_root) make_root(end);
  return end;
}

void Drawing::make_root(std::uint64_t anchor) {
  // Readers take the first object for the root, and ask it for the groups.
  auto* root = new AcDbDictionary;
  made_root_ = &add(*root, 0, dxf::Section::kObjects, anchor, 0);
  opened();
  auto* groups = new AcDbDictionary;
  AcDbObjectId id;
  root->setAt(L"ACAD_GROUP", groups, id);
  groups->close();
  root->close();
}

Stub& Drawing::add(AcDbObject& object, std::uint64_t owner, dxf::Section section,
                   std::uint64_t anchor, std::uint64_t reactor) {
  if (const NewTags* fresh = ObjectAccess::fresh(object); fresh && reactor == 0) {
    Stub& stub = new_stub(fresh->layout().kind, owner, section, anchor);
    ObjectAccess::adopt(object, stub);
    return stub;
  }
  dxf::TagReader tags(ObjectAccess::content(object), ObjectAccess::dialect(object));
  dxf::Tag kind;
  tags.next(kind);
  Stub& stub = new_stub(kind.value, owner, section, anchor);
  std::string content = respell(object, dialect_, stub.handle, owner, reactor);
  ObjectAccess::adopt(object, stub, std::move(content));
  return stub;
}

/// Collects what is written for objects, in file order, with the frames of sections that the file
/// lacks around it.
class Drawing::RecordPatches {
 public:
  RecordPatches(const Drawing& drawing, Storage& storage, std::vector<Patch>& patches)
      : drawing_(drawing), storage_(storage), patches_(patches) {}

  void collect() {
    const std::vector<Edit> edits = edits_in_file_order();
    patches_.reserve(patches_.size() + edits.size());
    add_new_blocks();
    for (const Edit& edit : edits) {
      const Stub& stub = *edit.stub;
      if (!stub.has(Stub::kNew)) {
        const auto now = stub.erased() ? std::string_view() : drawing_.bytes_of(stub);
        patches_.push_back({stub.begin, stub.length, now});
      } else if (!stub.erased()) {
        add_new(stub);
      }
    }
    close_section();
  }

 private:
  struct Edit {
    std::uint64_t begin;
    std::uint64_t rank;  ///< among those of one offset
    const Stub* stub;

    bool operator<(const Edit& other) const {
      return begin != other.begin ? begin < other.begin : rank < other.rank;
    }
  };

  static Edit edit_of(const Stub& stub) {
    // New records go in front of the record at whose offset they are anchored.
    constexpr std::uint64_t kBehindNew = std::uint64_t{1} << 63;
    constexpr int kSection = 48;  // an index takes less
    const auto section = static_cast<std::uint64_t>(stub.section) << kSection;
    const std::uint64_t place = stub.has(Stub::kNew) ? section : kBehindNew;
    return {stub.begin, place | StubStore::index_of(stub), &stub};
  }

  /// New entities, new objects and changed records each come in order already: only these runs are
  /// merged. What fits into none of the first few is sorted.
  std::vector<Edit> edits_in_file_order() const {
    std::array<std::vector<Edit>, 8> runs;
    for (const Stub* stub : drawing_.edits_) {
      if (!stub->has(Stub::kEdited) || is_of_new_block(*stub)) continue;
      const Edit edit = edit_of(*stub);
      const auto fits = [&](const auto& run) { return run.empty() || run.back() < edit; };
      const auto run = std::find_if(runs.begin(), runs.end() - 1, fits);
      run->push_back(edit);
    }
    std::sort(runs.back().begin(), runs.back().end());
    std::vector<Edit> all = std::move(runs.front());
    for (auto run = runs.begin() + 1; run != runs.end() && !run->empty(); ++run) {
      const auto middle = static_cast<std::ptrdiff_t>(all.size());
      all.insert(all.end(), run->begin(), run->end());
      std::inplace_merge(all.begin(), all.begin() + middle, all.end());
      *run = {};
    }
    return all;
  }

  /// Entities of new blocks may be younger than the ENDBLK: they are written block by block.
  bool is_of_new_block(const Stub& stub) const {
    if (stub.section != dxf::Section::kBlocks || !stub.has(Stub::kNew)) return false;
    for (const SectionSpan& span : drawing_.sections_)
      if (span.section == dxf::Section::kBlocks && span.end == stub.begin) return true;
    return false;
  }

  void add_new_blocks() {
    Drawing& drawing = const_cast<Drawing&>(drawing_);
    for (const Block& block : drawing_.blocks_) {
      const Stub& begin = drawing.stubs_[block.begin];
      if (!begin.has(Stub::kNew) || begin.erased()) continue;
      add_new(begin);
      for (const std::size_t index : block.added)
        if (!drawing.stubs_[index].erased()) add_new(drawing.stubs_[index]);
      add_new(drawing.stubs_[block.end]);
    }
    close_section();
  }

  void add_new(const Stub& stub) {
    const SectionSpan* made = nullptr;
    for (const SectionSpan& span : drawing_.sections_) {
      if (span.made && span.section == stub.section && stub.begin == span.end) made = &span;
    }
    if (made != open_) {
      close_section();
      open_ = made;
      if (open_)
        frame([&](dxf::TagWriter w) {
          w.raw(0, "SECTION");
          w.raw(2, section_name(open_->section));
        });
    }
    patches_.push_back({stub.begin, 0, drawing_.bytes_of(stub)});
  }

  void close_section() {
    if (open_) frame([](dxf::TagWriter w) { w.raw(0, "ENDSEC"); });
    open_ = nullptr;
  }

  template <class Write>
  void frame(Write&& write) {
    write(dxf::TagWriter(storage_.emplace_back(), drawing_.dialect_));
    patches_.push_back({open_->end, 0, storage_.back()});
  }

  const Drawing& drawing_;
  Storage& storage_;
  std::vector<Patch>& patches_;
  const SectionSpan* open_ = nullptr;  // a section the file lacks, being written
};

std::vector<Drawing::Patch> Drawing::patches(Storage& storage) const {
  std::vector<Patch> patches;
  if (!is_modified()) return patches;
  header_patches(storage, patches);
  class_patches(storage, patches);
  RecordPatches(*this, storage, patches).collect();
  // A header normally stands first; in a file where it does not, its patch moves to its place.
  const auto before = [](const Patch& a, const Patch& b) { return a.begin < b.begin; };
  if (!std::is_sorted(patches.begin(), patches.end(), before))
    std::stable_sort(patches.begin(), patches.end(), before);
  return patches;
}

std::string Drawing::save_bytes() const {
  Storage storage;
  const std::vector<Patch> all = patches(storage);
  std::size_t added = 0;
  for (const Patch& patch : all) added += patch.bytes.size();
  std::string out;
  out.reserve(bytes_.size() + added);
  std::uint64_t position = 0;
  for (const Patch& patch : all) {
    out += bytes_.substr(position, patch.begin - position);
    out += patch.bytes;
    position = patch.begin + patch.length;
  }
  out += bytes_.substr(position);
  return out;
}

Status Drawing::save(const std::string& path, bool keep_backup, FileLock* lock) const {
  Result<AtomicFile> out = AtomicFile::create(path);
  if (!out) return out.error();
  const auto copy = [&](std::uint64_t from, std::uint64_t to) -> Status {
    if (from == to) return {};
    constexpr std::uint64_t kWorthAKernelCopy = std::uint64_t{1} << 20;
    if (file_ && to - from >= kWorthAKernelCopy) return out->copy_range(*file_, from, to - from);
    return out->append(bytes_.substr(from, to - from));
  };
  Storage storage;
  std::uint64_t position = 0;
  for (const Patch& patch : patches(storage)) {
    if (Status status = copy(position, patch.begin); !status) return status;
    if (Status status = out->append(patch.bytes); !status) return status;
    position = patch.begin + patch.length;
  }
  if (Status status = copy(position, bytes_.size()); !status) return status;
  return out->commit(keep_backup, lock);
}

}  // namespace cad
