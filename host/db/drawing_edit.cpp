// New objects of a drawing, and writing it back.

#include <algorithm>
#include <tuple>
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
  return section == dxf::Section::kObjects ? "OBJECTS" : "ENTITIES";
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
  out.reserve(content.size() + content.size() / 4 + 96);
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
  if (on_change) on_change(stub);
  if (kinds_[stub.kind].name == "LAYER") locked_layers_.reset();
  if (stub.has(Stub::kEdited)) return;
  stub.flags |= Stub::kEdited;
  edits_.push_back(&stub);
}

Stub& Drawing::new_stub(std::string_view kind, std::uint64_t owner, dxf::Section section,
                        std::uint64_t anchor) {
  const std::uint64_t handle = allocate_handle();
  const std::size_t index = stubs_.size();
  Stub& stub = stubs_.add();
  stub.handle = handle;
  stub.owner = owner;
  stub.begin = anchor;
  stub.kind = kind_of(kind, section);
  stub.section = section;
  stub.flags = Stub::kNew;
  handles_.add(handle, index);
  note_edit(stub);
  return stub;
}

std::uint64_t Drawing::section_end(dxf::Section wanted) {
  SectionSpan* span = section(wanted);
  if (!span) {
    SectionSpan made;
    made.section = wanted;
    made.begin = made.end = eof_;
    made.made = true;
    span = &sections_.emplace_back(made);
  }
  const std::uint64_t end = span->end;
  const bool empty = span->first_stub == span->end_stub;
  if (wanted == dxf::Section::kObjects && empty && !made_root_) make_root(end);
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
  dxf::TagReader tags(ObjectAccess::content(object), ObjectAccess::dialect(object));
  dxf::Tag kind;
  tags.next(kind);
  Stub& stub = new_stub(kind.value, owner, section, anchor);
  std::string content = respell(object, dialect_, stub.handle, owner, reactor);
  ObjectAccess::adopt(object, stub, std::move(content));
  return stub;
}

std::vector<Drawing::Patch> Drawing::patches(std::vector<std::string>& storage) const {
  std::vector<Patch> patches;
  if (edits_.empty()) return patches;
  std::vector<const Stub*> edits(edits_.begin(), edits_.end());
  // New records go in front of the record at whose offset they are anchored.
  const auto order = [](const Stub* stub) {
    return std::tuple(stub->begin, stub->has(Stub::kNew) ? 0 : 1,
                      stub->has(Stub::kNew) ? static_cast<int>(stub->section) : 0,
                      StubStore::index_of(*stub));
  };
  std::sort(edits.begin(), edits.end(),
            [&](const Stub* a, const Stub* b) { return order(a) < order(b); });

  storage.reserve(2 * sections_.size() + 2);  // views into it must stay valid
  const auto store = [&](auto&& write) -> std::string_view {
    write(dxf::TagWriter(storage.emplace_back(), dialect_));
    return storage.back();
  };
  if (next_handle_ != facts_.handle_seed) patches.push_back(handle_seed_patch(storage));
  const SectionSpan* open = nullptr;  // a section the file lacks, being written
  const auto close_section = [&] {
    if (!open) return;
    patches.push_back({eof_, 0, store([](dxf::TagWriter w) { w.raw(0, "ENDSEC"); })});
    open = nullptr;
  };
  for (const Stub* stub : edits) {
    if (!stub->has(Stub::kNew)) {
      patches.push_back(
          {stub->begin, stub->length, stub->erased() ? std::string_view() : bytes_of(*stub)});
      continue;
    }
    if (stub->erased()) continue;
    const SectionSpan* made = nullptr;
    for (const SectionSpan& span : sections_) {
      if (span.made && span.section == stub->section && stub->begin == eof_) made = &span;
    }
    if (made != open) {
      close_section();
      open = made;
      if (open) {
        patches.push_back({eof_, 0, store([&](dxf::TagWriter w) {
                             w.raw(0, "SECTION");
                             w.raw(2, section_name(open->section));
                           })});
      }
    }
    patches.push_back({stub->begin, 0, bytes_of(*stub)});
  }
  close_section();
  // A header normally stands first; in a file where it does not, its patch moves to its place.
  std::stable_sort(patches.begin(), patches.end(),
                   [](const Patch& a, const Patch& b) { return a.begin < b.begin; });
  return patches;
}

Drawing::Patch Drawing::handle_seed_patch(std::vector<std::string>& storage) const {
  std::string& text = storage.emplace_back();
  dxf::TagWriter writer(text, dialect_);
  if (const auto seed = header_variable("$HANDSEED")) {
    if (seed->code != 5) {  // damaged: a binary value of another type has no room for a handle
      writer.handle(5, next_handle_);
      return {seed->begin, seed->end - seed->begin, text};
    }
    append_handle(text, next_handle_);
    return {static_cast<std::uint64_t>(seed->value.data() - bytes_.data()), seed->value.size(),
            text};
  }
  const auto header = std::find_if(sections_.begin(), sections_.end(), [](const SectionSpan& span) {
    return span.section == dxf::Section::kHeader;
  });
  const bool has_header = header != sections_.end();
  if (!has_header) {
    writer.raw(0, "SECTION");
    writer.raw(2, "HEADER");
  }
  writer.raw(9, "$HANDSEED");
  writer.handle(5, next_handle_);
  if (!has_header) writer.raw(0, "ENDSEC");
  return {has_header ? header->end : preamble_.start, 0, text};
}

std::string Drawing::save_bytes() const {
  std::vector<std::string> storage;
  std::string out;
  out.reserve(bytes_.size());
  std::uint64_t position = 0;
  for (const Patch& patch : patches(storage)) {
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
    constexpr std::uint64_t kWorthAKernelCopy = std::uint64_t{1} << 20;
    if (file_ && to - from >= kWorthAKernelCopy) return out->copy_range(*file_, from, to - from);
    return out->append(bytes_.substr(from, to - from));
  };
  std::vector<std::string> storage;
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
