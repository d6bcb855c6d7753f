// Extended data of objects: the part of a record behind its first group 1001.

#include "host/db/extended_data.h"

#include <vector>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/buffer_tags.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object.h"
#include "host/db/object_access.h"

namespace {

constexpr int kText = 1000, kApplication = 1001, kBrace = 1002;

/// The bytes of one application's data, its 1001 included.
struct Run {
  std::wstring application;
  std::size_t begin;
  std::size_t end;
};

std::vector<Run> runs_of(std::string_view bytes, const cad::dxf::Dialect& dialect) {
  std::vector<Run> runs;
  cad::dxf::TagReader tags(bytes, dialect, cad::Lens(bytes, dialect).extended_data());
  cad::dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == kApplication) {
      runs.push_back({cad::dxf::text_value(tag, dialect), tag.begin, tag.end});
    } else if (!runs.empty()) {
      runs.back().end = tag.end;
    }
  }
  return runs;
}

bool names(const cad::dxf::Tag& tag, const cad::dxf::Dialect& dialect,
           std::wstring_view application) {
  // Nearly always plain letters: these are compared without making a text.
  if (tag.value.size() == application.size()) {
    std::size_t same = 0;
    while (same < application.size() &&
           static_cast<wchar_t>(static_cast<unsigned char>(tag.value[same])) == application[same])
      ++same;
    if (same == application.size()) return true;
  }
  return cad::equal_no_case(cad::dxf::text_value(tag, dialect), application);
}

bool is_extended_code(int code) { return code >= 1000 && code <= 1071; }

/// Whether objects of the drawing may carry data of that application. Old drawings lack the table;
/// objects that are in no drawing yet are not asked.
bool may_carry(cad::Drawing* drawing, std::wstring_view application) {
  return !drawing || !drawing->table("APPID") || drawing->table_record("APPID", application);
}

/// No tag is spelled so short that a smaller record could hold too much.
constexpr std::size_t kSurelyFits = cad::kMostExtendedData / 3;

/// Whether a record with these bytes would hold more extended data than may be.
bool exceeds(std::string_view record, const cad::dxf::Dialect& dialect) {
  if (record.size() < kSurelyFits) return false;
  const std::size_t begin = cad::Lens(record, dialect).extended_data();
  return cad::extended_size(record.substr(begin), dialect) > cad::kMostExtendedData;
}

}  // namespace

resbuf* AcDbObject::xData(const ACHAR* application) const {
  cad::ChainBuilder chain;
  cad::Drawing* drawing = stub_ ? &cad::StubStore::drawing_of(*stub_) : nullptr;
  for (const Run& run : runs_of(content(), dialect())) {
    if (application && !cad::equal_no_case(run.application, application)) continue;
    chain.add(cad::chain_of_tags(content(), dialect(), run.begin, run.end, drawing).release());
  }
  return chain.release();
}

Acad::ErrorStatus AcDbObject::setXData(const resbuf* chain) {
  if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
  if (!chain || chain->restype != kApplication) return Acad::eInvalidResBuf;
  cad::Drawing* const drawing = stub_ ? &cad::StubStore::drawing_of(*stub_) : nullptr;
  int depth = 0;
  constexpr std::size_t kUsualSize = 64;
  std::string added;
  added.reserve(kUsualSize);
  cad::dxf::TagWriter writer(added, dialect());
  std::vector<std::wstring_view> named;
  for (const resbuf* buffer = chain; buffer; buffer = buffer->rbnext) {
    if (!is_extended_code(buffer->restype)) return Acad::eInvalidResBuf;
    const bool is_text = cad::dxf::value_type(buffer->restype) == cad::dxf::ValueType::kText;
    const std::wstring_view text = is_text && buffer->resval.rstring ? buffer->resval.rstring : L"";
    if (buffer->restype == kApplication) {
      if (depth != 0 || text.empty()) return Acad::eInvalidResBuf;
      named.push_back(text);
      const bool removes = !buffer->rbnext || buffer->rbnext->restype == kApplication;
      if (removes) continue;
      if (!may_carry(drawing, text)) return Acad::eRegappIdNotFound;
    }
    if (buffer->restype == kText && !cad::extended_text_fits(text)) return Acad::eStringTooLong;
    if (buffer->restype == kBrace) {
      if (text != L"{" && text != L"}") return Acad::eInvalidResBuf;
      depth += text == L"{" ? 1 : -1;
      if (depth < 0) return Acad::eInvalidResBuf;
    }
    if (!cad::write_buffer(*buffer, writer)) return Acad::eInvalidResBuf;
  }
  if (depth != 0) return Acad::eInvalidResBuf;
  const std::vector<Run> runs = runs_of(content(), dialect());
  if (runs.empty() && content().size() + added.size() < kSurelyFits) {
    if (added.empty()) return Acad::eOk;
    writable_content() += added;
    content_changed();
    return Acad::eOk;
  }
  std::string tags(content());
  for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
    for (const std::wstring_view name : named) {
      if (!cad::equal_no_case(run->application, name)) continue;
      tags.erase(run->begin, run->end - run->begin);
      break;
    }
  }
  tags += added;
  if (!added.empty() && exceeds(tags, dialect())) return Acad::eXdataSizeExceeded;
  if (tags == content()) return Acad::eOk;
  writable_content() = std::move(tags);
  content_changed();
  return Acad::eOk;
}

namespace cad {

std::size_t extended_size(std::string_view tags, const dxf::Dialect& dialect) {
  std::size_t size = 0;
  dxf::TagReader reader(tags, dialect);
  for (dxf::Tag tag; reader.next(tag);) {
    switch (dxf::value_type(tag.code)) {  // a byte for the code, lengths in front of texts
      case dxf::ValueType::kText:
        size += tag.code == kBrace ? 2 : tag.code == kApplication ? 9 : 3 + tag.value.size();
        break;
      case dxf::ValueType::kChunk:
        size += 2 + (dialect.binary ? tag.value.size() : tag.value.size() / 2);
        break;
      case dxf::ValueType::kInt16:
        size += 3;
        break;
      case dxf::ValueType::kInt32:
        size += 5;
        break;
      default:
        size += tag.code >= 1020 && tag.code < 1040 ? 8 : 9;  // y and z have no code
    }
  }
  return size;
}

bool extended_text_fits(std::wstring_view text) {
  return text.size() <= kLongestExtendedText && to_utf8(text).size() <= kLongestExtendedText;
}

ExtendedTags::ExtendedTags(std::string_view record, const dxf::Dialect& dialect,
                           std::wstring_view application)
    : tags_(record, dialect, Lens(record, dialect).extended_data()),
      dialect_(dialect),
      application_(application) {}

bool ExtendedTags::next(dxf::Tag& tag) {
  while (tags_.next(tag)) {
    if (tag.code == kApplication) {
      inside_ = names(tag, dialect_, application_);
      found_ = found_ || inside_;
      if (inside_) end_ = tag.end;
    } else if (inside_) {
      end_ = tag.end;
      return true;
    }
  }
  return false;
}

Acad::ErrorStatus replace_extended_tags(AcDbObject& object, std::size_t begin, std::size_t end,
                                        std::string_view tags) {
  if (!object.isWriteEnabled()) return Acad::eNotOpenForWrite;
  const std::string_view record = ObjectAccess::content(object);
  if (begin > end || end > record.size() ||
      begin < Lens(record, ObjectAccess::dialect(object)).extended_data()) {
    return Acad::eInvalidInput;
  }
  if (tags.size() > end - begin) {
    std::string after(record);
    after.replace(begin, end - begin, tags);
    if (exceeds(after, ObjectAccess::dialect(object))) return Acad::eXdataSizeExceeded;
  }
  ObjectAccess::writable(object).replace(begin, end - begin, tags);
  ObjectAccess::changed(object);
  return Acad::eOk;
}

}  // namespace cad
