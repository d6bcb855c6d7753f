// Extended data of objects: the part of a record behind its first group 1001.

#include "host/db/extended_data.h"

#include <vector>

#include "host/base/fold.h"
#include "host/db/buffer_tags.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object.h"
#include "host/db/object_access.h"

namespace {

constexpr int kApplication = 1001;

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
  std::string added;
  cad::dxf::TagWriter writer(added, dialect());
  std::vector<std::wstring> named;
  for (const resbuf* buffer = chain; buffer; buffer = buffer->rbnext) {
    if (!is_extended_code(buffer->restype)) return Acad::eInvalidResBuf;
    if (buffer->restype == kApplication) {
      named.emplace_back(buffer->resval.rstring ? buffer->resval.rstring : L"");
      if (named.back().empty()) return Acad::eInvalidResBuf;
      const bool removes = !buffer->rbnext || buffer->rbnext->restype == kApplication;
      if (removes) continue;
    }
    if (!cad::write_buffer(*buffer, writer)) return Acad::eInvalidResBuf;
  }
  std::string& tags = writable_content();
  const std::vector<Run> runs = runs_of(tags, dialect());
  for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
    for (const std::wstring& name : named) {
      if (!cad::equal_no_case(run->application, name)) continue;
      tags.erase(run->begin, run->end - run->begin);
      break;
    }
  }
  tags += added;
  content_changed();
  return Acad::eOk;
}

namespace cad {

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
  ObjectAccess::writable(object).replace(begin, end - begin, tags);
  ObjectAccess::changed(object);
  return Acad::eOk;
}

}  // namespace cad
