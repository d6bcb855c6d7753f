// Header variables of a drawing, read and written.

#include <algorithm>
#include <tuple>
#include <utility>

#include "host/base/numbers.h"
#include "host/db/drawing.h"
#include "host/db/header_variables.h"
#include "host/dxf/tag_writer.h"

namespace cad {

const std::map<std::string_view, std::pair<dxf::Tag, std::uint64_t>>& Drawing::file_header() const {
  if (header_) return *header_;
  header_.emplace();
  for (const SectionSpan& span : sections_) {
    if (span.section != dxf::Section::kHeader) continue;
    dxf::TagReader tags(bytes_.substr(0, span.end), dialect_, span.begin);
    dxf::Tag tag;
    std::string_view variable;
    auto found = header_->end();
    while (tags.next(tag)) {
      if (tag.code == 9) {
        variable = tag.value;
        found = header_->end();
      } else if (!variable.empty()) {
        bool added = false;
        std::tie(found, added) = header_->try_emplace(variable, tag, tag.end);
        if (!added) found = header_->end();
        variable = {};
      } else if (found != header_->end()) {
        found->second.second = tag.end;
      }
    }
  }
  return *header_;
}

std::string_view Drawing::header_tags(std::string_view name) const {
  const auto edit = header_edits_.find(name);
  return edit == header_edits_.end() ? file_header_tags(name) : edit->second;
}

std::string_view Drawing::file_header_tags(std::string_view name) const {
  const auto& header = file_header();
  const auto found = header.find(name);
  if (found == header.end()) return {};
  const auto& [first, end] = found->second;
  return bytes_.substr(first.begin, end - first.begin);
}

std::optional<dxf::Tag> Drawing::header_variable(std::string_view name) const {
  if (const auto edit = header_edits_.find(name); edit != header_edits_.end()) {
    dxf::Tag tag;
    dxf::TagReader(edit->second, dialect_).next(tag);
    return tag;
  }
  const auto& header = file_header();
  const auto found = header.find(name);
  if (found == header.end()) return std::nullopt;
  return found->second.first;
}

bool Drawing::has_header_variable(std::string_view name) const {
  if (header_variable(name)) return true;
  const HeaderVariable* row = find_header_variable(name);
  return row && dialect_.release >= row->since && dialect_.release <= row->until;
}

std::optional<std::string> Drawing::header_edit(std::string_view name) const {
  const auto edit = header_edits_.find(name);
  return edit == header_edits_.end() ? std::nullopt : std::optional(edit->second);
}

void Drawing::set_header_tags(const std::string& name, std::optional<std::string> tags) {
  undo_.before_header_change(name);
  exchange_header(name, tags);
}

void Drawing::exchange_header(const std::string& name, std::optional<std::string>& tags) {
  ++header_version_, ++version_;
  current_properties_.reset();
  std::optional<std::string> before = header_edit(name);
  if (tags) {
    header_edits_.insert_or_assign(name, std::move(*tags));
  } else {
    header_edits_.erase(name);
  }
  tags = std::move(before);
}

const Drawing::SectionSpan* Drawing::header_section() const {
  const auto header = std::find_if(sections_.begin(), sections_.end(), [](const SectionSpan& span) {
    return span.section == dxf::Section::kHeader;
  });
  return header == sections_.end() ? nullptr : &*header;
}

/// Behind the variable nearest in front of it that the file has.
std::optional<std::uint64_t> Drawing::place_of_variable(std::string_view name) const {
  const SectionSpan* section = header_section();
  if (!section) return std::nullopt;
  const auto& header = file_header();
  std::uint64_t place = section->end;
  for (const HeaderVariable& row : header_variables()) {
    if (row.name == name) break;
    if (const auto found = header.find(row.name); found != header.end())
      place = found->second.second;
  }
  return place;
}

Drawing::Patch Drawing::header_patch(const std::string& name, const std::string& tags,
                                     Storage& storage) const {
  const auto& header = file_header();
  const auto found = header.find(name);
  if (found != header.end()) {
    const auto& [first, end] = found->second;
    return {first.begin, end - first.begin, tags};
  }
  std::string& text = storage.emplace_back();
  dxf::TagWriter(text, dialect_).raw(9, name);
  text += tags;
  return {place_of_variable(name).value_or(preamble_.start), 0, text};
}

void Drawing::header_patches(Storage& storage, std::vector<Patch>& patches) const {
  std::vector<Patch> made;
  for (const HeaderVariable& row : header_variables()) {
    const auto edit = header_edits_.find(row.name);
    if (edit != header_edits_.end())
      made.push_back(header_patch(edit->first, edit->second, storage));
  }
  if (next_handle_ != facts_.handle_seed) made.push_back(handle_seed_patch(storage));
  if (made.empty()) return;
  const auto frame = [&](int code, std::initializer_list<std::string_view> values) {
    std::string& text = storage.emplace_back();
    dxf::TagWriter writer(text, dialect_);
    for (const std::string_view value : values) writer.raw(std::exchange(code, 2), value);
    patches.push_back({preamble_.start, 0, text});
  };
  const bool lacks_section = header_section() == nullptr;
  if (lacks_section) frame(0, {"SECTION", "HEADER"});
  patches.insert(patches.end(), made.begin(), made.end());
  if (lacks_section) frame(0, {"ENDSEC"});
}

Drawing::Patch Drawing::handle_seed_patch(Storage& storage) const {
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
  writer.raw(9, "$HANDSEED");
  writer.handle(5, next_handle_);
  const SectionSpan* header = header_section();
  return {header ? header->end : preamble_.start, 0, text};
}

}  // namespace cad
