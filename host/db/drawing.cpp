#include "host/db/drawing.h"

#include <algorithm>
#include <limits>

#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/object_access.h"

namespace cad {

/// Builds the index while the scanner runs over the bytes.
class Drawing::Index : public dxf::RecordSink {
 public:
  explicit Index(Drawing& drawing) : drawing_(drawing) {}

  Status record(const dxf::RecordMark& mark) override {
    if (mark.kind == "SECTION") return begin_section(mark);
    if (mark.kind == "ENDSEC") return end_section(mark);
    if (mark.kind == "EOF") {
      drawing_.eof_ = mark.begin;
      return {};
    }
    switch (mark.section) {
      case dxf::Section::kTables:
        return table_record(mark);
      case dxf::Section::kBlocks:
        return block_record(mark);
      case dxf::Section::kEntities:
      case dxf::Section::kObjects:
        return add(mark);
      default:
        return {};
    }
  }

 private:
  Status begin_section(const dxf::RecordMark& mark) {
    SectionSpan span;
    span.section = mark.section;
    span.begin = mark.begin;
    span.first_stub = drawing_.stubs_.size();
    drawing_.sections_.push_back(span);
    in_section_ = true;
    return {};
  }

  Status end_section(const dxf::RecordMark& mark) {
    if (!in_section_) return fail(place(mark), "ENDSEC stands outside any section");
    if (in_table_) return fail(place(mark), "the last table is not closed by ENDTAB");
    if (in_block_) return fail(place(mark), "the last block is not closed by ENDBLK");
    drawing_.sections_.back().end = mark.begin;
    drawing_.sections_.back().end_stub = drawing_.stubs_.size();
    in_section_ = false;
    return {};
  }

  Status table_record(const dxf::RecordMark& mark) {
    if (mark.kind == "ENDTAB") {
      if (!in_table_) return fail(place(mark), "ENDTAB stands outside any table");
      drawing_.tables_.back().end = mark.begin;
      drawing_.tables_.back().end_stub = drawing_.stubs_.size();
      in_table_ = false;
      return {};
    }
    if (mark.kind == "TABLE") {
      if (in_table_) return fail(place(mark), "a table begins inside another");
      in_table_ = true;
      Table table;
      table.stub = drawing_.stubs_.size();
      table.name = first_name(mark);
      drawing_.tables_.push_back(std::move(table));
    }
    return add(mark);
  }

  Status block_record(const dxf::RecordMark& mark) {
    if (mark.kind == "BLOCK") {
      if (in_block_) return fail(place(mark), "a block begins inside another");
      in_block_ = true;
      Block block;
      block.begin = drawing_.stubs_.size();
      drawing_.blocks_.push_back(std::move(block));
    } else if (mark.kind == "ENDBLK") {
      if (!in_block_) return fail(place(mark), "ENDBLK stands outside any block");
      in_block_ = false;
      drawing_.blocks_.back().end = drawing_.stubs_.size();
      drawing_.blocks_.back().end_offset = mark.begin;
    }
    return add(mark);
  }

  Status add(const dxf::RecordMark& mark) {
    if (mark.end - mark.begin > std::numeric_limits<std::uint32_t>::max()) {
      return fail(place(mark), "a record is larger than 4 GB");
    }
    const std::size_t index = drawing_.stubs_.size();
    if (index >= std::numeric_limits<std::uint32_t>::max() - 1) {
      return fail(place(mark), "the drawing holds too many objects");
    }
    Stub& stub = drawing_.stubs_.add();
    stub.handle = mark.handle;
    stub.owner = mark.owner;
    stub.begin = mark.begin;
    stub.length = static_cast<std::uint32_t>(mark.end - mark.begin);
    stub.section = mark.section;
    stub.kind = cached_kind(mark);
    ++drawing_.kinds_[stub.kind].count;
    if (mark.handle == 0) {
      ++drawing_.facts_.without_handle;
    } else if (!drawing_.handles_.add(mark.handle, index)) {
      stub.flags |= Stub::kStrayTwin;
      ++drawing_.facts_.duplicate_handles;
    } else {
      drawing_.highest_handle_ = std::max(drawing_.highest_handle_, mark.handle);
    }
    return {};
  }

  /// Kinds alternate among a few, so a small table in front of the search pays.
  std::uint16_t cached_kind(const dxf::RecordMark& mark) {
    const std::string_view name = mark.kind;
    const std::size_t slot = name.empty()
                                 ? 0
                                 : (name.size() * 7 + static_cast<unsigned char>(name.front()) * 3 +
                                    static_cast<unsigned char>(name.back())) %
                                       kCached;
    Cached& cached = cache_[slot];
    if (cached.known && cached.section == mark.section && cached.name == name) return cached.kind;
    cached = {name, mark.section, drawing_.kind_of(name, mark.section), true};
    return cached.kind;
  }

  /// Value of the record's first group 2.
  std::string first_name(const dxf::RecordMark& mark) const {
    const auto bytes = drawing_.bytes_.substr(mark.begin, mark.end - mark.begin);
    dxf::TagReader tags(bytes, drawing_.dialect_);
    dxf::Tag tag;
    while (tags.next(tag)) {
      if (tag.code == 2) return std::string(tag.value);
    }
    return {};
  }

  std::string place(const dxf::RecordMark& mark) const {
    return dxf::place(drawing_.bytes_, drawing_.dialect_, drawing_.name_, mark.begin);
  }

  static constexpr std::size_t kCached = 64;
  struct Cached {
    std::string_view name;
    dxf::Section section = dxf::Section::kNone;
    std::uint16_t kind = 0;
    bool known = false;
  };

  Drawing& drawing_;
  Cached cache_[kCached];
  bool in_section_ = false;
  bool in_table_ = false;
  bool in_block_ = false;
};

Drawing::Drawing(AcDbDatabase& database) : database_(database), stubs_(*this) {}

Drawing::~Drawing() {
  for (std::size_t i = 0; i < stubs_.size(); ++i) delete stubs_[i].object;
}

Status Drawing::read(MappedFile file, const std::string& name) {
  file_.emplace(std::move(file));
  bytes_ = file_->bytes();
  name_ = name;
  return index();
}

Status Drawing::read(std::string bytes, const std::string& name) {
  memory_ = std::move(bytes);
  bytes_ = memory_;
  name_ = name;
  return index();
}

Status Drawing::index() {
  Result<dxf::Preamble> preamble = dxf::read_preamble(bytes_, name_);
  if (!preamble) return preamble.error();
  preamble_ = std::move(*preamble);
  dialect_ = preamble_.dialect;
  Index sink(*this);
  if (Status status = dxf::scan_records(bytes_, preamble_, name_, sink); !status) return status;

  if (const auto seed = header_variable("$HANDSEED")) {
    file_seed_ = dxf::handle_value(*seed);
  }
  constexpr std::uint64_t kLastSensible = std::uint64_t{1} << 62;
  const std::uint64_t behind = highest_handle_ < kLastSensible ? highest_handle_ + 1 : 1;
  next_handle_ = std::max({file_seed_ < kLastSensible ? file_seed_ : 1, behind, std::uint64_t{1}});
  build_facts();
  return {};
}

std::uint16_t Drawing::kind_of(std::string_view name, dxf::Section section) {
  const ClassRow* row = &class_of_kind(name, section);
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    if (kinds_[i].name == name && kinds_[i].row == row) return static_cast<std::uint16_t>(i);
  }
  constexpr std::size_t kMostKinds = 4096;  // a hostile file may name every record differently
  if (kinds_.size() >= kMostKinds) return static_cast<std::uint16_t>(kinds_.size() - 1);
  kinds_.push_back({std::string(name), row, 0});
  return static_cast<std::uint16_t>(kinds_.size() - 1);
}

void Drawing::build_facts() {
  facts_.version = preamble_.version;
  facts_.version_name = dxf::release_name(dialect_.release);
  facts_.code_page = preamble_.code_page;
  facts_.binary = dialect_.binary;
  facts_.crlf = dialect_.crlf;
  facts_.bytes = bytes_.size();
  facts_.objects = stubs_.size();
  facts_.handle_seed = next_handle_;
  std::map<std::string_view, std::uint64_t> counts;
  for (const Kind& kind : kinds_) counts[kind.name] += kind.count;
  for (const auto& [name, count] : counts) facts_.kinds.push_back({std::string(name), count});
}

Stub* Drawing::find(std::uint64_t handle) {
  const std::size_t index = handle == 0 ? HandleTable::kNone : handles_.find(handle);
  return index == HandleTable::kNone ? nullptr : &stubs_[index];
}

Stub* Drawing::reference(std::uint64_t handle) {
  if (handle == 0) return nullptr;
  if (Stub* stub = find(handle)) return stub;
  Stub*& missing = missing_[handle];
  if (!missing) {
    missing = &stubs_.add();
    missing->handle = handle;
    missing->kind = kind_of("", dxf::Section::kNone);
    missing->flags = Stub::kErased | Stub::kMissing;
  }
  return missing;
}

const ClassRow& Drawing::class_of(const Stub& stub) const {
  const Kind& kind = kinds_[stub.kind];
  if (kind.row->refine) return kind.row->refine(bytes_of(stub), dialect_);
  if (kind.name != "TABLE" || stub.section != dxf::Section::kTables) return *kind.row;
  const std::size_t index = StubStore::index_of(stub);
  for (const Table& table : tables_) {
    if (table.stub == index) return class_of_table(table.name);
  }
  return *kind.row;
}

AcDbObject& Drawing::object(Stub& stub) {
  if (!stub.object) {
    AcDbObject* made = class_of(stub).make(bytes_.substr(stub.begin, stub.length));
    ObjectAccess::attach(*made, stub);
  }
  return *stub.object;
}

std::string_view Drawing::bytes_of(const Stub& stub) const {
  if (stub.object) return ObjectAccess::content(*stub.object);
  return bytes_.substr(stub.begin, stub.length);
}

Stub* Drawing::root_dictionary() {
  const SectionSpan* span = section(dxf::Section::kObjects);
  if (!span || span->first_stub == span->end_stub)
    return made_root_ && !made_root_->erased() ? made_root_ : nullptr;
  Stub& first = stubs_[span->first_stub];
  return kind_name(first) == "DICTIONARY" ? &first : nullptr;
}

Drawing::SectionSpan* Drawing::section(dxf::Section section) {
  for (SectionSpan& span : sections_) {
    if (span.section == section) return &span;
  }
  return nullptr;
}

bool Drawing::has_locked_layers() {
  if (locked_layers_) return !locked_layers_->empty();
  locked_layers_.emplace();
  constexpr std::int64_t kLocked = 4;
  const Table* layers = table("LAYER");
  if (!layers) return false;
  for (const std::size_t index : table_records(*layers)) {
    dxf::TagReader tags(bytes_of(stubs_[index]), dialect_);
    dxf::Tag tag;
    std::wstring name;
    bool locked = false;
    while (tags.next(tag)) {
      if (tag.code == 2) name = dxf::text_value(tag, dialect_);
      if (tag.code == 70) locked = (dxf::int_value(tag, dialect_) & kLocked) != 0;
    }
    if (locked) locked_layers_->push_back(folded(name));
  }
  return !locked_layers_->empty();
}

bool Drawing::layer_is_locked(std::wstring_view layer) {
  if (!has_locked_layers()) return false;
  const std::wstring wanted = folded(layer);
  return std::find(locked_layers_->begin(), locked_layers_->end(), wanted) != locked_layers_->end();
}

void Drawing::alert_no_dictionaries() {
  if (alerted_) return;
  alerted_ = true;
  const auto& alert = acdbHostApplicationServices()->alert;
  if (!alert) return;
  const std::string release =
      facts_.version_name + (facts_.version.empty() ? "" : " (" + facts_.version + ")");
  alert(from_utf8(name_ + ": a drawing of release " + release +
                  " has no dictionaries, so no records can be stored in it; "
                  "save it as R2000 DXF or newer and run again"));
}

}  // namespace cad
