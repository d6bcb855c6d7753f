#include "host/dxf/record_builder.h"

#include <array>
#include <utility>

namespace cad::dxf {
namespace {

constexpr std::array<std::pair<std::string_view, Section>, 6> kSections{{
    {"HEADER", Section::kHeader},
    {"CLASSES", Section::kClasses},
    {"TABLES", Section::kTables},
    {"BLOCKS", Section::kBlocks},
    {"ENTITIES", Section::kEntities},
    {"OBJECTS", Section::kObjects},
}};

bool holds_objects(Section section) {
  return section == Section::kTables || section == Section::kBlocks ||
         section == Section::kEntities || section == Section::kObjects;
}

}  // namespace

Status RecordBuilder::deliver(std::uint64_t end) {
  if (!has_record_) return {};
  mark_.end = end;
  return sink_.record(mark_);
}

Status RecordBuilder::start_record(std::string_view kind, std::uint64_t begin) {
  if (Status status = deliver(begin); !status) return status;
  has_record_ = true;
  in_group_ = false;
  wants_ = kFrame;
  mark_ = RecordMark{};
  mark_.kind = kind;
  mark_.begin = begin;
  if (kind == "SECTION") {
    if (in_section_) {
      return fail(place(bytes_, dialect_, name_, begin), "a section begins inside section " +
                                                             std::string(section_text_) +
                                                             ", whose ENDSEC is missing");
    }
    in_section_ = true;
    section_ = Section::kOther;
    section_text_ = "without a name";
    wants_ |= kName;
  } else if (kind == "ENDSEC") {
    mark_.section = std::exchange(section_, Section::kNone);
    in_section_ = false;
    return {};
  } else if (kind == "EOF") {
    if (in_section_) {
      return fail(place(bytes_, dialect_, name_, begin), "the drawing ends inside section " +
                                                             std::string(section_text_) +
                                                             ", whose ENDSEC is missing");
    }
    ended_ = true;
    return deliver(bytes_.size());
  } else if (holds_objects(section_)) {
    is_dimension_style_ = section_ == Section::kTables && kind == "DIMSTYLE";
    wants_ |= kHandle | kOwner;
  }
  mark_.section = section_;
  return {};
}

void RecordBuilder::section_name(std::string_view value) {
  wants_ &= static_cast<std::uint8_t>(~kName);
  section_text_ = value;
  for (const auto& [text, section] : kSections) {
    if (text == value) section_ = mark_.section = section;
  }
}

Status RecordBuilder::finish() const {
  if (ended_) return {};
  return fail(place(bytes_, dialect_, name_, bytes_.size()),
              "the drawing is cut off: it ends without EOF");
}

}  // namespace cad::dxf
