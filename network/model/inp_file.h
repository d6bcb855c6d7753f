#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/result.h"

namespace network {

/// A model file of EPANET or SWMM: sections "[NAME]" of rows of fields. ";" begins a comment,
/// blanks, tabs and commas separate fields, quotes hold fields with blanks. Lines
/// end in LF or CR LF, or in CR throughout the file.
class InpFile {
 public:
  struct Section {
    std::string name;       ///< as the file spells it, without brackets
    int line = 0;           ///< of its heading, from 1
    std::string_view body;  ///< what stands between this heading and the next
  };
  struct Row {
    int line = 0;
    std::span<const std::string_view> fields;  ///< valid during the visit; at least one
    /// Field `index`, empty when the row is shorter.
    std::string_view field(std::size_t index) const {
      return index < fields.size() ? fields[index] : std::string_view();
    }
  };

  /// UTF-8, with or without mark, UTF-16 with one, or code page 936; the error names the file.
  static cad::Result<std::unique_ptr<InpFile>> read(const std::string& path);
  /// `text` is UTF-8; `name` stands in messages.
  InpFile(std::string text, std::string name);
  InpFile(const InpFile&) = delete;  // the sections point into the text
  InpFile& operator=(const InpFile&) = delete;

  const std::string& name() const { return name_; }
  std::span<const Section> sections() const { return sections_; }
  /// Whether a section's name is `known`: letter case does not count, and either may be cut short
  /// behind four letters, as the calculation programs take it.
  static bool is_named(const Section& section, std::string_view known);
  bool has(std::string_view known) const;

  static void for_each_row(const Section& section, const std::function<void(const Row&)>& visit);
  static std::size_t count_rows(const Section& section);

 private:
  std::string text_;
  std::string name_;
  std::vector<Section> sections_;
};

}  // namespace network
