#include "host/db/xrecord.h"

#include <optional>

#include "host/db/buffer_tags.h"
#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/object_access.h"
#include "host/db/record.h"
#include "host/db/value_texts.h"
#include "host/dxf/text.h"

PN_RX_DEFINE(AcDbXrecord, AcDbObject, L"XRECORD")

namespace {

constexpr std::string_view kPart = "AcDbXrecord";
constexpr std::string_view kNewXrecord =
    "  0\nXRECORD\n  5\n0\n330\n0\n100\nAcDbXrecord\n280\n     1\n";
constexpr int kCloningFlag = 280;
constexpr int kExtendedData = 1001;

/// Offset behind the class marker, found by its text: in ASCII a line of letters is a value, and
/// the line in front of it its code. Nothing for records that are spelled otherwise.
std::optional<std::size_t> behind_plain_marker(std::string_view bytes,
                                               const cad::dxf::Dialect& dialect) {
  constexpr std::string_view kMarker = "100\nAcDbXrecord\n";
  if (dialect.binary || dialect.crlf) return std::nullopt;
  const std::size_t at = bytes.find(kMarker);
  const bool whole_line = at != bytes.npos && at != 0 && bytes[at - 1] == '\n';
  return whole_line ? std::optional(at + kMarker.size()) : std::nullopt;
}

std::size_t behind_marker(std::string_view bytes, const cad::dxf::Dialect& dialect) {
  if (const auto behind = behind_plain_marker(bytes, dialect)) return *behind;
  cad::dxf::TagReader tags(bytes, dialect);
  cad::dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 100 && tag.value == kPart) return tag.end;
  }
  return bytes.size();
}

/// Where the values begin: behind the class marker and the cloning flag. Values run to the end of
/// the record or to extended data.
std::size_t values_begin(std::string_view bytes, const cad::dxf::Dialect& dialect) {
  const std::size_t begin = behind_marker(bytes, dialect);
  if (!dialect.has_cloning_flags()) return begin;
  cad::dxf::TagReader tags(bytes, dialect, begin);
  cad::dxf::Tag tag;
  return tags.next(tag) && tag.code == kCloningFlag ? tag.end : begin;
}

std::size_t values_end(std::string_view bytes, const cad::dxf::Dialect& dialect,
                       std::size_t begin) {
  if (!dialect.binary && bytes.find("1001", begin) == bytes.npos) return bytes.size();
  cad::dxf::TagReader tags(bytes, dialect, begin);
  cad::dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == kExtendedData) return tag.begin;
  }
  return bytes.size();
}

bool is_value_code(int code) { return code >= 1 && code <= 369 && code != 5 && code != 105; }

}  // namespace

AcDbXrecord::AcDbXrecord() : AcDbObject(kNewXrecord) {}
AcDbXrecord::AcDbXrecord(std::string_view record) : AcDbObject(record) {}

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf** chain, AcDbDatabase* database) const {
  if (!chain) return Acad::eInvalidInput;
  *chain = nullptr;
  if (!isReadEnabled()) return Acad::eNotOpenForRead;
  cad::Stub* own = cad::ObjectAccess::stub(*this);
  cad::Drawing* drawing = database ? &database->drawing()
                          : own    ? &cad::StubStore::drawing_of(*own)
                                   : nullptr;
  const std::size_t begin = values_begin(content(), dialect());
  *chain = cad::chain_of_tags(content(), dialect(), begin, content().size(), drawing, kExtendedData)
               .release();
  return Acad::eOk;
}

void cad::ValueTexts::clear() {
  text_.clear();
  begins_.clear();
}

Acad::ErrorStatus cad::ValueTexts::read(const AcDbXrecord& record) {
  clear();
  if (!record.isReadEnabled()) return Acad::eNotOpenForRead;
  read(ObjectAccess::content(record), ObjectAccess::dialect(record));
  return Acad::eOk;
}

Acad::ErrorStatus cad::ValueTexts::read(AcDbObjectId record) {
  clear();
  if (record.isNull()) return Acad::eNullObjectId;
  if (record.isErased()) return Acad::eWasErased;
  if (record_kind(record) != "XRECORD") return Acad::eNotThatKindOfClass;
  const AcDbObject* const object = record.stub()->object;
  if (object && object->isWriteEnabled()) return Acad::eWasOpenForWrite;
  const RecordTags tags = record_tags(record);
  read(tags.bytes, *tags.dialect);
  return Acad::eOk;
}

void cad::ValueTexts::read(std::string_view bytes, const dxf::Dialect& dialect) {
  const std::size_t begin = values_begin(bytes, dialect);
  constexpr std::size_t kUsualValues = 64;
  text_.reserve(bytes.size() - begin);
  begins_.reserve(kUsualValues);
  dxf::TagReader tags(bytes, dialect, begin);
  dxf::Tag tag;
  int next_coordinate = -1;  // the code that belongs to the point before it
  int coordinates = 0;
  while (tags.next(tag) && tag.code != kExtendedData) {
    if (tag.code == next_coordinate) {
      next_coordinate = ++coordinates < 3 ? next_coordinate + 10 : -1;
      continue;
    }
    const BufferValue value = buffer_value(tag.code);
    next_coordinate = value == BufferValue::kPoint ? tag.code + 10 : -1;
    coordinates = 1;
    const std::size_t text = text_.size();
    begins_.push_back(static_cast<std::uint32_t>(text));
    if (value == BufferValue::kString) dxf::append_decoded(tag.value, dialect, text_);
    // A text ends at its first null.
    if (const std::size_t end = text_.find(L'\0', text); end != text_.npos) text_.resize(end);
    text_ += L'\0';
  }
}

namespace {

/// Puts what `write` writes in the place of the values, which takes about `size` bytes.
template <class Write>
Acad::ErrorStatus replace_values(AcDbXrecord& record, std::size_t size, Write write) {
  if (!record.isWriteEnabled()) return Acad::eNotOpenForWrite;
  const std::string_view before = cad::ObjectAccess::content(record);
  const cad::dxf::Dialect& dialect = cad::ObjectAccess::dialect(record);
  const std::size_t begin = values_begin(before, dialect);
  const std::size_t end = values_end(before, dialect, begin);
  std::string after;
  after.reserve(before.size() + size);
  after.append(before.substr(0, begin));
  cad::dxf::TagWriter writer(after, dialect);
  if (const Acad::ErrorStatus written = write(writer); written != Acad::eOk) return written;
  after.append(before.substr(end));
  cad::ObjectAccess::replace_content(record, std::move(after));
  return Acad::eOk;
}

}  // namespace

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf& chain, AcDbDatabase*) {
  constexpr std::size_t kUsualSize = 256;
  return replace_values(*this, kUsualSize, [&](cad::dxf::TagWriter& writer) {
    for (const resbuf* value = &chain; value && value->restype != RTNONE; value = value->rbnext) {
      if (!is_value_code(value->restype)) return Acad::eInvalidDxfCode;
      if (!cad::write_buffer(*value, writer)) return Acad::eInvalidResBuf;
    }
    return Acad::eOk;
  });
}

Acad::ErrorStatus cad::set_value_texts(AcDbXrecord& record, short code,
                                       std::span<const std::wstring_view> texts) {
  if (!is_value_code(code) || buffer_value(code) != BufferValue::kString)
    return Acad::eInvalidDxfCode;
  constexpr std::size_t kAroundText = 6;
  std::size_t size = 0;
  for (const std::wstring_view text : texts) size += text.size() + kAroundText;
  return replace_values(record, size, [&](dxf::TagWriter& writer) {
    for (const std::wstring_view text : texts) writer.text(code, text.substr(0, text.find(L'\0')));
    return Acad::eOk;
  });
}
