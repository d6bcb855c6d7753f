#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/base/numbers.h"
#include "host/dxf/scan.h"

namespace cad::dxf {

/// Turns the tags of a scan into records. Tags that cannot matter are not passed in: wants() says
/// which kinds do, so that the scanners' inner loops test one byte per tag.
class RecordBuilder {
 public:
  RecordBuilder(std::string_view bytes, const Dialect& dialect, const std::string& name,
                RecordSink& sink)
      : bytes_(bytes), dialect_(dialect), name_(name), sink_(sink) {}

  /// Why a tag matters: it begins a record, holds its handle, bears on its owner (330, and 100 and
  /// 102, which end and bracket the search), or names a section.
  enum Interest : std::uint8_t { kNever = 0, kFrame = 1, kHandle = 2, kOwner = 4, kName = 8 };

  /// The interests of the record being read.
  std::uint8_t wants() const { return wants_; }
  bool ended() const { return ended_; }

  /// A tag of interest: `begin` is the offset of its group code.
  Status tag(int code, std::string_view value, std::uint64_t begin) {
    switch (code) {
      case 0:
        return start_record(value, begin);
      case 2:
        section_name(value);
        return {};
      case 5:
      case 105:
        if ((code == 105) == is_dimension_style_) read_handle(value);
        return {};
      default:
        read_owner(code, value);
        return {};
    }
  }

  /// Call at the end of the bytes.
  Status finish() const;

 private:
  Status start_record(std::string_view kind, std::uint64_t begin);
  Status deliver(std::uint64_t end);
  void section_name(std::string_view value);
  void read_handle(std::string_view value) {
    mark_.handle = parse_handle(value).value_or(0);
    wants_ &= static_cast<std::uint8_t>(~kHandle);
  }
  void read_owner(int code, std::string_view value) {
    if (code == 102) {
      in_group_ = !value.empty() && value.front() == '{';
    } else if (code == 100) {
      wants_ &= static_cast<std::uint8_t>(~kOwner);
    } else if (!in_group_) {
      mark_.owner = parse_handle(value).value_or(0);
      wants_ &= static_cast<std::uint8_t>(~kOwner);
    }
  }

  std::string_view bytes_;
  const Dialect& dialect_;
  const std::string& name_;
  RecordSink& sink_;
  RecordMark mark_;
  std::string_view section_text_;
  Section section_ = Section::kNone;
  std::uint8_t wants_ = kFrame;
  bool has_record_ = false;
  bool in_section_ = false;
  bool in_group_ = false;
  bool is_dimension_style_ = false;
  bool ended_ = false;
};

}  // namespace cad::dxf
