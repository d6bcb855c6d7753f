// The section CLASSES: read when somebody asks, extended by what comes from other drawings.

#include <algorithm>
#include <utility>

#include "host/db/drawing.h"
#include "host/dxf/tag_writer.h"

namespace cad {

const std::vector<Drawing::CustomClass>& Drawing::classes() {
  if (classes_) return *classes_;
  classes_.emplace();
  const SectionSpan* span = section(dxf::Section::kClasses);
  if (!span) return *classes_;
  dxf::Tag tag;
  bool in_class = false;
  for (dxf::TagReader tags(bytes_.substr(0, span->end), dialect_, span->begin); tags.next(tag);) {
    if (tag.code == 0) {
      in_class = tag.value == "CLASS";
      if (in_class) classes_->emplace_back();
    }
    if (!in_class) continue;
    CustomClass& last = classes_->back();
    if (tag.code == 1 && last.kind.empty()) last.kind = tag.value;
    if (tag.code == 2 && last.class_name.empty()) last.class_name = tag.value;
    last.record += bytes_.substr(tag.begin, tag.end - tag.begin);
  }
  return *classes_;
}

std::size_t Drawing::declare_class(const CustomClass& wanted, const dxf::Dialect& from,
                                   const Stub& user) {
  const auto is_wanted = [&](const CustomClass& known) {
    return known.kind == wanted.kind && known.class_name == wanted.class_name;
  };
  const std::vector<CustomClass>& own = classes();
  const auto in_file = std::find_if(own.begin(), own.end(), is_wanted);
  if (in_file != own.end()) return static_cast<std::size_t>(in_file - own.begin());
  auto declared =
      std::find_if(declared_classes_.begin(), declared_classes_.end(),
                   [&](const DeclaredClass& candidate) { return is_wanted(candidate.text); });
  if (declared == declared_classes_.end()) {
    constexpr int kInstances = 91;
    CustomClass copy{wanted.kind, wanted.class_name, {}};
    dxf::TagWriter writer(copy.record, dialect_);
    dxf::Tag tag;
    for (dxf::TagReader tags(wanted.record, from); tags.next(tag);)
      if (tag.code != kInstances || dialect_.release >= dxf::Release::kR2004)
        writer.copy(tag, from);
    declared = declared_classes_.insert(declared_classes_.end(), {std::move(copy), {}});
  }
  declared->users.push_back(&user);
  return own.size() + static_cast<std::size_t>(declared - declared_classes_.begin());
}

void Drawing::class_patches(Storage& storage, std::vector<Patch>& patches) const {
  // Those in front of one that is needed stay: proxies count them.
  std::size_t needed = 0;
  for (std::size_t i = 0; i < declared_classes_.size(); ++i) {
    const auto& users = declared_classes_[i].users;
    if (std::any_of(users.begin(), users.end(), [](const Stub* user) { return !user->erased(); }))
      needed = i + 1;
  }
  if (needed == 0) return;
  std::string& text = storage.emplace_back();
  dxf::TagWriter writer(text, dialect_);
  const SectionSpan* classes = nullptr;
  const SectionSpan* behind_header = nullptr;
  for (const SectionSpan& span : sections_) {
    if (span.section == dxf::Section::kClasses) classes = &span;
    if (span.section != dxf::Section::kHeader && !span.made && !behind_header)
      behind_header = &span;
  }
  if (!classes) {
    writer.raw(0, "SECTION");
    writer.raw(2, "CLASSES");
  }
  for (std::size_t i = 0; i < needed; ++i) text += declared_classes_[i].text.record;
  if (!classes) writer.raw(0, "ENDSEC");
  const std::uint64_t place = classes ? classes->end : behind_header ? behind_header->begin : eof_;
  patches.push_back({place, 0, text});
}

}  // namespace cad
