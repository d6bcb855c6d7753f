#include "host/db/clone_spelling.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/class_parts.h"
#include "host/db/lens.h"
#include "host/db/name_groups.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

using dxf::Release;

constexpr std::string_view kExtensionGroup = "{ACAD_XDICTIONARY";
constexpr std::string_view kReactorGroup = "{ACAD_REACTORS";
constexpr std::string_view kUsesGroup = "{BLKREFS";  // of a block record: its references
constexpr std::string_view kEntityPart = "AcDbEntity";
constexpr int kFirstExtendedCode = 1000;

/// A group that came with a release; earlier ones do not have it. `code` 0 is every group.
struct NewerGroup {
  std::string_view part;
  int code;
  Release since;
};

constexpr NewerGroup kNewerGroups[] = {
    {kEntityPart, 48, Release::kR13},
    {kEntityPart, 60, Release::kR13},
    {kEntityPart, 92, Release::kR13},
    {kEntityPart, 160, Release::kR13},
    {kEntityPart, 310, Release::kR13},
    {kEntityPart, 370, Release::kR2000},
    {kEntityPart, 390, Release::kR2000},
    {kEntityPart, 410, Release::kR2000},
    {kEntityPart, 420, Release::kR2004},
    {kEntityPart, 430, Release::kR2004},
    {kEntityPart, 440, Release::kR2004},
    {kEntityPart, 284, Release::kR2007},
    {kEntityPart, 347, Release::kR2007},
    {kEntityPart, 348, Release::kR2007},
    {"AcDbLayerTableRecord", 290, Release::kR2000},
    {"AcDbLayerTableRecord", 370, Release::kR2000},
    {"AcDbLayerTableRecord", 390, Release::kR2000},
    {"AcDbLayerTableRecord", 420, Release::kR2004},
    {"AcDbLayerTableRecord", 430, Release::kR2004},
    {"AcDbLayerTableRecord", 347, Release::kR2007},
    {"AcDbLayerTableRecord", 348, Release::kR2007},
    {"AcDbBlockTableRecord", 340, Release::kR2000},
    {"AcDbBlockTableRecord", 310, Release::kR2000},
    {"AcDbBlockTableRecord", 70, Release::kR2007},
    {"AcDbBlockTableRecord", 280, Release::kR2007},
    {"AcDbBlockTableRecord", 281, Release::kR2007},
    {"AcDbLinetypeTableRecord", 74, Release::kR13},
    {"AcDbLinetypeTableRecord", 75, Release::kR13},
    {"AcDbLinetypeTableRecord", 340, Release::kR13},
    {"AcDbLinetypeTableRecord", 46, Release::kR13},
    {"AcDbLinetypeTableRecord", 50, Release::kR13},
    {"AcDbLinetypeTableRecord", 44, Release::kR13},
    {"AcDbLinetypeTableRecord", 45, Release::kR13},
    {"AcDbLinetypeTableRecord", 9, Release::kR13},
    {"AcDbAttribute", 280, Release::kR2007},
    {"AcDbAttributeDefinition", 280, Release::kR2007},
    {"AcDbDimension", 280, Release::kR2010},
    {"AcDbDimension", 71, Release::kR2000},
    {"AcDbDimension", 72, Release::kR2000},
    {"AcDbDimension", 41, Release::kR2000},
    {"AcDbDimension", 42, Release::kR2000},
};

/// Groups of a dimension style that R12 has.
constexpr std::pair<int, int> kOldDimensionStyle[] = {
    {2, 7}, {40, 48}, {70, 78}, {140, 147}, {170, 178}};

/// Blocks of a dimension style's arrows: named before R2000, referred to since.
constexpr std::pair<int, int> kArrowGroups[] = {{5, 342}, {6, 343}, {7, 344}};

/// What a thing may be drawn with, but need not: without a counterpart it is left out.
bool is_optional_style(std::string_view kind, int code) {
  return code == 390 || code == 348 || (code == 347 && kind != "DIMSTYLE");
}

bool is_space_of_layout(std::string_view part, int code) {
  return part == kEntityPart && (code == 67 || code == 410);
}

/// One copy in another drawing.
class Respelling {
 public:
  Respelling(Drawing& from, const CloneSource& source, Drawing& to, const Stub& copy,
             const CloneReferences& references)
      : from_(from),
        source_(source),
        to_(to),
        copy_(copy),
        references_(references),
        old_(from.dialect()),
        now_(to.dialect()),
        kind_(source.kind),
        same_texts_(old_.binary == now_.binary && old_.code_page == now_.code_page),
        same_numbers_(!old_.binary && !now_.binary),
        writer_(out_, now_) {}

  std::string spell(std::uint64_t owner, std::uint64_t reactor) {
    out_.reserve(source_.bytes.size() + 64);
    writer_.raw(0, kind_now(kind_));
    writer_.handle(kind_ == "DIMSTYLE" ? 105 : 5, copy_.handle);
    read(reactor);
    if (now_.has_dictionaries()) writer_.handle(330, owner);
    for (at_ = 0; at_ < body_.size(); ++at_) body_tag(body_[at_]);
    finish_part();
    for (const dxf::Tag& tag : extended_) extended_tag(tag);
    return std::move(out_);
  }

 private:
  /// Parts the tags: groups of the frame are written, body and extended data kept.
  void read(std::uint64_t reactor) {
    bool in_frame = true;
    bool has_handle = false, has_owner = false, has_markers = false;
    dxf::Tag tag;
    dxf::TagReader tags(source_.bytes, old_);
    tags.next(tag);  // the kind
    while (tags.next(tag)) {
      if (tag.code >= kFirstExtendedCode) {
        extended_.push_back(tag);
        continue;
      }
      if (tag.code == 100) in_frame = false, has_markers = true;
      if (in_frame && tag.code == 102 && tag.value.starts_with('{')) {
        frame_group(tag, tags, reactor);
        continue;
      }
      const int handle_code = kind_ == "DIMSTYLE" ? 105 : 5;
      if (in_frame && tag.code == handle_code && !std::exchange(has_handle, true)) continue;
      if (in_frame && tag.code == 330 && !std::exchange(has_owner, true)) continue;
      body_.push_back(tag);
    }
    if (reactor != 0 && !wrote_reactors_) reactors(reactor, {});
    if (!has_markers && now_.has_dictionaries())
      body_ = with_class_parts(kind_now(kind_), std::move(body_), old_);
  }

  /// Of a group in braces, the references to what comes along; without any, nothing.
  void frame_group(const dxf::Tag& opening, dxf::TagReader& tags, std::uint64_t reactor) {
    std::vector<dxf::Tag> inside;
    dxf::Tag tag;
    while (tags.next(tag) && tag.code != 102) inside.push_back(tag);
    if (!now_.has_dictionaries() || opening.value == kUsesGroup) return;
    if (opening.value == kReactorGroup) return reactors(reactor, inside);
    std::string text;
    dxf::TagWriter writer(text, now_);
    writer.copy(opening, old_);
    const std::size_t empty = text.size();
    for (const dxf::Tag& one : inside) {
      if (!is_translated(one.code)) {
        writer.copy(one, old_);
      } else if (const std::uint64_t handle = references_.handle(dxf::handle_value(one))) {
        writer.handle(one.code, handle);
      }
    }
    if (text.size() == empty) return;
    writer.raw(102, "}");
    out_ += text;
  }

  void reactors(std::uint64_t own, const std::vector<dxf::Tag>& others) {
    std::vector<std::uint64_t> handles;
    if (own != 0) handles.push_back(own);
    for (const dxf::Tag& tag : others) {
      const std::uint64_t handle = references_.handle(dxf::handle_value(tag));
      if (handle != 0 && std::find(handles.begin(), handles.end(), handle) == handles.end())
        handles.push_back(handle);
    }
    if (handles.empty()) return;
    wrote_reactors_ = true;
    writer_.raw(102, kReactorGroup);
    for (const std::uint64_t handle : handles) writer_.handle(330, handle);
    writer_.raw(102, "}");
  }

  void body_tag(const dxf::Tag& tag) {
    if (tag.code == 100) {
      finish_part();
      part_ = tag.value;
      embedded_ = false;
      behind_marker_ = true;
      if (now_.has_dictionaries()) copy(tag);
      return;
    }
    const bool first = std::exchange(behind_marker_, false);
    if (tag.code == 101) embedded_ = true;
    if (embedded_ && now_.release < Release::kR2018) return;
    if (kind_ == "XRECORD") return xrecord_tag(tag, first);
    if (kind_ == "DICTIONARY" || kind_ == "ACDBDICTIONARYWDFLT") return dictionary_tag(tag);
    if (kind_ == "DIMSTYLE" && dimension_style_tag(tag)) return;
    if (is_newer(tag.code) || is_space_of_layout(part_, tag.code)) return;
    if (part_ == kEntityPart && (tag.code == 92 || tag.code == 160))
      return writer_.integer(now_.release >= Release::kR2010 ? 160 : 92, dxf::int_value(tag, old_));
    if (!part_.empty() && part_.starts_with("AcDbProxy") && tag.code == 91 &&
        !std::exchange(numbered_, true))
      return class_number(tag);
    if (part_ == "AcDbSortentsTable" && tag.code == 5) return sort_handle(tag);
    plain_tag(tag);
  }

  void xrecord_tag(const dxf::Tag& tag, bool behind_marker) {
    // The first group may say what becomes of a copy: only since R2000.
    if (behind_marker && tag.code == 280 && old_.has_cloning_flags() && !now_.has_cloning_flags())
      return;
    if (behind_marker && !old_.has_cloning_flags() && now_.has_cloning_flags())
      writer_.integer(280, 1);
    reference_or_copy(tag);
  }

  /// An entry that leads nowhere is left out with its key.
  void dictionary_tag(const dxf::Tag& tag) {
    if (tag.code == 281 && !now_.has_cloning_flags()) return;
    if (tag.code != 3) return reference_or_copy(tag);
    const bool has_entry = at_ + 1 < body_.size() && is_translated(body_[at_ + 1].code);
    if (has_entry && references_.handle(dxf::handle_value(body_[at_ + 1])) == 0) {
      ++at_;
      return;
    }
    copy(tag);
  }

  /// True when the tag is done with.
  bool dimension_style_tag(const dxf::Tag& tag) {
    const bool was_named = old_.release < Release::kR2000;
    const bool is_named = now_.release < Release::kR2000;
    for (const auto& [name, handle] : kArrowGroups) {
      if (was_named && tag.code == name) {
        arrow(dxf::text_value(tag, old_), is_named ? name : handle);
        return true;
      }
      if (!was_named && is_named && tag.code == handle) {
        const Stub* record = from_.find(dxf::handle_value(tag));
        if (record)
          arrow(Lens(from_.bytes_of(*record), old_).text("AcDbBlockTableRecord", 2), name);
        return true;
      }
    }
    if (is_named && tag.code >= 330 && tag.code < 370) return true;
    if (now_.has_dictionaries()) return false;
    return std::none_of(
        std::begin(kOldDimensionStyle), std::end(kOldDimensionStyle),
        [&](const auto& range) { return tag.code >= range.first && tag.code <= range.second; });
  }

  void arrow(const std::wstring& name, int code) {
    const auto block = references_.blocks.find(folded(name));
    if (block == references_.blocks.end()) return;
    if (now_.release < Release::kR2000) return writer_.text(code, block->second.name);
    if (block->second.record != 0) writer_.handle(code, block->second.record);
  }

  bool is_newer(int code) const {
    return std::any_of(std::begin(kNewerGroups), std::end(kNewerGroups),
                       [&](const NewerGroup& row) {
                         return row.part == part_ && row.code == code && now_.release < row.since;
                       });
  }

  void class_number(const dxf::Tag& tag) {
    constexpr std::int64_t kFirstClass = 500;
    const std::int64_t number = dxf::int_value(tag, old_);
    const auto found = number < kFirstClass
                           ? references_.classes.end()
                           : references_.classes.find(static_cast<std::size_t>(number - 500));
    const bool known = found != references_.classes.end();
    writer_.integer(91, known ? static_cast<std::int64_t>(found->second) + kFirstClass : number);
  }

  /// The place of an entity in drawing order, said by the handle of the one that has it.
  void sort_handle(const dxf::Tag& tag) {
    const std::uint64_t own = dxf::handle_value(tag);
    const std::uint64_t handle = references_.handle(own);
    writer_.handle(5, handle != 0 ? handle : own);
  }

  void plain_tag(const dxf::Tag& tag) {
    const std::string_view table =
        dxf::value_type(tag.code) == dxf::ValueType::kText ? named_table(kind_, tag.code) : "";
    if (table.empty()) return reference_or_copy(tag);
    const std::wstring name = dxf::text_value(tag, old_);
    if (references_.missing.contains(missing_key(table, name))) return;
    if (table == "BLOCK_RECORD") {
      const auto block = references_.blocks.find(folded(name));
      if (block != references_.blocks.end()) return writer_.text(tag.code, block->second.name);
    }
    copy(tag);
  }

  /// What does not change keeps its spelling where the other drawing has the same.
  void copy(const dxf::Tag& tag) {
    const bool is_text = dxf::value_type(tag.code) == dxf::ValueType::kText;
    if (is_text ? same_texts_ : same_numbers_) return writer_.raw(tag.code, tag.value);
    writer_.copy(tag, old_);
  }

  void reference_or_copy(const dxf::Tag& tag) {
    if (!is_translated(tag.code)) return copy(tag);
    const std::uint64_t handle = references_.handle(dxf::handle_value(tag));
    const bool optional = kind_ != "XRECORD" && is_optional_style(kind_, tag.code);
    if (handle == 0 && optional) return;
    if (tag.code == 390) has_plot_style_ = true;
    writer_.handle(tag.code, handle);
  }

  /// Where layers have a plot style, a new one takes that of layer 0.
  void finish_part() {
    if (part_ != "AcDbLayerTableRecord" || has_plot_style_ || references_.plot_style == 0) return;
    has_plot_style_ = true;
    writer_.handle(390, references_.plot_style);
  }

  void extended_tag(const dxf::Tag& tag) {
    if (tag.code == 1001)
      left_out_ = references_.missing.contains(missing_key("APPID", dxf::text_value(tag, old_)));
    if (left_out_) return;
    if (tag.code == 1005) return writer_.handle(1005, references_.handle(dxf::handle_value(tag)));
    copy(tag);
  }

  Drawing& from_;
  const CloneSource source_;
  Drawing& to_;
  const Stub& copy_;
  const CloneReferences& references_;
  const dxf::Dialect& old_;
  const dxf::Dialect& now_;
  const std::string_view kind_;
  const bool same_texts_;    // whether both drawings spell texts the same way
  const bool same_numbers_;  // and numbers
  std::string out_;
  dxf::TagWriter writer_;
  std::vector<dxf::Tag> body_, extended_;
  std::size_t at_ = 0;     // in body_
  std::string_view part_;  // the class part being written
  bool behind_marker_ = false;
  bool embedded_ = false;  // tags of an object inside
  bool numbered_ = false;  // the proxy's class was written
  bool wrote_reactors_ = false;
  bool has_plot_style_ = false;
  bool left_out_ = false;  // extended data of an application that cannot come along
};

}  // namespace

std::wstring missing_key(std::string_view table, std::wstring_view name) {
  std::wstring key(table.begin(), table.end());
  key += L' ';
  return key += folded(name);
}

bool is_translated(int code) {
  return dxf::value_type(code) == dxf::ValueType::kHandle && code != 5 && code != 105 &&
         (code < 320 || code > 329);
}

std::string_view kind_now(std::string_view kind) { return kind == "3DLINE" ? "LINE" : kind; }

std::string respell_copy(Drawing& from, const CloneSource& source, Drawing& to, const Stub& copy,
                         std::uint64_t owner, std::uint64_t reactor,
                         const CloneReferences& references) {
  return Respelling(from, source, to, copy, references).spell(owner, reactor);
}

std::string spell_copy(Drawing& drawing, const Stub& source, const Stub& copy, std::uint64_t owner,
                       const CloneReferences& references) {
  const std::string_view bytes = drawing.bytes_of(source);
  const dxf::Dialect& dialect = drawing.dialect();
  std::string out;
  out.reserve(bytes.size() + 16);
  dxf::TagWriter writer(out, dialect);
  dxf::TagReader tags(bytes, dialect);
  dxf::Tag tag;
  bool in_frame = true;
  bool has_handle = false, has_owner = false;
  // Of a group in braces, the references to what is copied; without any, nothing.
  const auto copy_group = [&](const dxf::Tag& opening) {
    std::string group(bytes.substr(opening.begin, opening.end - opening.begin));
    dxf::TagWriter group_writer(group, dialect);
    bool any = false;
    while (tags.next(tag) && tag.code != 102) {
      const std::uint64_t handle = references.handle(dxf::handle_value(tag));
      if (handle == 0) continue;
      any = true;
      group_writer.handle(tag.code, handle);
    }
    if (any) out.append(group).append(bytes.substr(tag.begin, tag.end - tag.begin));
  };
  while (tags.next(tag)) {
    if (tag.code == 100 || tag.code >= kFirstExtendedCode) in_frame = false;
    if (in_frame && tag.code == 102 &&
        (tag.value == kExtensionGroup || tag.value == kReactorGroup)) {
      copy_group(dxf::Tag(tag));
    } else if (in_frame && tag.code == 5 && !std::exchange(has_handle, true)) {
      writer.handle(5, copy.handle);
    } else if (in_frame && tag.code == 330 && !std::exchange(has_owner, true)) {
      writer.handle(330, owner);
    } else if (is_translated(tag.code) && references.has(dxf::handle_value(tag))) {
      writer.handle(tag.code, references.handle(dxf::handle_value(tag)));
    } else {
      out += bytes.substr(tag.begin, tag.end - tag.begin);
    }
  }
  return out;
}

}  // namespace cad
