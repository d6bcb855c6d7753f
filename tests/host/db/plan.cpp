#include "tests/host/db/plan.h"

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "tests/host/dxf/written.h"

namespace {

struct FormRow {
  const char* name;
  const char* version;
};

const FormRow& row(Form form) {
  static constexpr FormRow kRows[] = {{"R2013 in UTF-8", "AC1027"},
                                      {"R2000 in ANSI_936", "AC1015"},
                                      {"R2018 binary", "AC1032"},
                                      {"R13 binary", "AC1012"},
                                      {"R12", "AC1009"}};
  return kRows[static_cast<std::size_t>(form)];
}

}  // namespace

std::string_view form_name(Form form) { return row(form).name; }

std::string spelled(std::string_view note, Form form) {
  std::string own(note);
  if (const std::size_t at = own.find("1 @\n"); at != std::string::npos) {
    own.replace(at + 2, 1, row(form).version);
  }
  switch (form) {
    case Form::kBinary:
      return written::binary(own);
    case Form::kOldBinary:
      return written::binary(own, true);
    case Form::kChinese:
      return written::ascii(own, "\r\n");
    case Form::kUtf8:
    case Form::kR12:
      break;
  }
  return written::ascii(own);
}

AcDbDatabase& DrawingTest::given(std::string bytes) {
  close_drawing();
  database_ = std::make_unique<AcDbDatabase>(false);
  const cad::Status status = database_->read_bytes(std::move(bytes), "plan.dxf");
  EXPECT_TRUE(status) << status.error().message();
  return *database_;
}

void DrawingTest::close_drawing() {
  if (!database_) return;
  for (const AcDbObjectId left : database_->open_objects()) {
    ADD_FAILURE() << "left open: " << cad::to_utf8(cad::handle_text(left.handle()));
  }
  database_.reset();
}

AcDbObjectId DrawingTest::id(std::uint64_t handle) const {
  AcDbObjectId found;
  database().getAcDbObjectId(found, false, AcDbHandle(handle));
  return found;
}

Acad::ErrorStatus DrawingTest::open_status(AcDbObjectId object_id, AcDb::OpenMode mode,
                                           bool open_erased) const {
  AcDbObject* object = nullptr;
  const Acad::ErrorStatus status = acdbOpenAcDbObject(object, object_id, mode, open_erased);
  EXPECT_EQ(object != nullptr, status == Acad::eOk);
  if (object) object->close();
  return status;
}

void DrawingTest::erase(std::uint64_t handle) {
  AcDbObject* object = opened(handle, AcDb::kForWrite);
  EXPECT_EQ(object->erase(), Acad::eOk);
  object->close();
}

AcDbObjectId DrawingTest::append(AcDbEntity* entity, std::uint64_t block_record) {
  auto* record = opened<AcDbBlockTableRecord>(block_record, AcDb::kForWrite);
  AcDbObjectId made;
  EXPECT_EQ(record->appendAcDbEntity(made, entity), Acad::eOk);
  record->close();
  entity->close();
  return made;
}

AcDbObjectId DrawingTest::extension(AcDbObjectId owner) {
  AcDbObject* object = opened(owner, AcDb::kForWrite);
  if (object->extensionDictionary().isNull()) {
    EXPECT_EQ(object->createExtensionDictionary(), Acad::eOk);
  }
  const AcDbObjectId made = object->extensionDictionary();
  object->close();
  return made;
}

AcDbObjectId DrawingTest::file_record(AcDbObjectId dictionary_id, const wchar_t* key,
                                      const wchar_t* text) {
  auto* dictionary = opened<AcDbDictionary>(dictionary_id, AcDb::kForWrite);
  auto* record = new AcDbXrecord;
  AcDbObjectId made;
  EXPECT_EQ(dictionary->setAt(key, record, made), Acad::eOk);
  const cad::ResbufChain chain(acutBuildList(1, text, 0));
  EXPECT_EQ(record->setFromRbChain(*chain), Acad::eOk);
  record->close();
  dictionary->close();
  return made;
}

std::wstring DrawingTest::record_text(AcDbObjectId xrecord) const {
  auto* record = opened<AcDbXrecord>(xrecord);
  resbuf* chain = nullptr;
  EXPECT_EQ(record->rbChain(&chain), Acad::eOk);
  record->close();
  const cad::ResbufChain owned(chain);
  return chain && chain->restype == 1 ? chain->resval.rstring : L"";
}

std::vector<std::wstring> DrawingTest::keys(AcDbObjectId dictionary_id) const {
  std::vector<std::wstring> found;
  auto* dictionary = opened<AcDbDictionary>(dictionary_id);
  const std::unique_ptr<AcDbDictionaryIterator> at(dictionary->newIterator());
  for (; !at->done(); at->next()) found.emplace_back(at->name());
  dictionary->close();
  return found;
}

std::wstring DrawingTest::text_of(std::uint64_t handle) const {
  auto* text = opened<AcDbText>(handle);
  ACHAR* string = text->textString();
  std::wstring copy = string;
  acutDelString(string);
  text->close();
  return copy;
}

std::vector<std::uint64_t> DrawingTest::entities(std::uint64_t block_record) const {
  std::vector<std::uint64_t> handles;
  auto* record = opened<AcDbBlockTableRecord>(block_record);
  AcDbBlockTableRecordIterator* made = nullptr;
  EXPECT_EQ(record->newIterator(made), Acad::eOk);
  const std::unique_ptr<AcDbBlockTableRecordIterator> at(made);
  for (; !at->done(); at->step()) {
    AcDbObjectId entity;
    EXPECT_EQ(at->getEntityId(entity), Acad::eOk);
    handles.push_back(entity.handle());
  }
  record->close();
  return handles;
}

std::vector<std::string> shown(const resbuf* chain) {
  std::vector<std::string> all;
  for (; chain; chain = chain->rbnext) {
    std::string text = std::to_string(chain->restype) + " ";
    const ads_u_val& value = chain->resval;
    switch (cad::buffer_value(chain->restype)) {
      case cad::BufferValue::kReal:
        cad::append_real(text, value.rreal);
        break;
      case cad::BufferValue::kPoint:
        for (const double coordinate : value.rpoint) {
          cad::append_real(text, coordinate);
          text += ';';
        }
        break;
      case cad::BufferValue::kInt16:
        text += std::to_string(value.rint);
        break;
      case cad::BufferValue::kInt32:
        text += std::to_string(value.rlong);
        break;
      case cad::BufferValue::kInt64:
        text += std::to_string(value.mnInt64);
        break;
      case cad::BufferValue::kString:
        text += cad::to_utf8(value.rstring);
        break;
      case cad::BufferValue::kName:
        if (cad::name_is_text(chain->restype)) {
          text += cad::to_utf8(value.rstring);
        } else {
          AcDbObjectId target;
          acdbGetObjectId(target, value.rlname);
          cad::append_handle(text, target.handle());
        }
        break;
      case cad::BufferValue::kBinary:
        for (int i = 0; i < value.rbinary.clen; ++i) {
          text += std::to_string(static_cast<unsigned char>(value.rbinary.buf[i])) + ",";
        }
        break;
      case cad::BufferValue::kNone:
        break;
    }
    all.push_back(std::move(text));
  }
  return all;
}
