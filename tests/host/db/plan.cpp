#include "tests/host/db/plan.h"

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "tests/host/dxf/written.h"

namespace {

constexpr std::string_view kPlan = R"(0 SECTION
2 HEADER
9 $ACADVER
1 @
9 $DWGCODEPAGE
3 ANSI_936
9 $INSBASE
10 1.5
20 2.5
30 0.0
9 $CLAYER
8 0
9 $LTSCALE
40 2.5
9 $TILEMODE
70 1
9 $USERI1
70 -3
9 $FINGERPRINTGUID
2 {A^ B}
9 $HANDSEED
5 200
0 ENDSEC
0 SECTION
2 CLASSES
0 CLASS
1 GX_PIPE
2 CGxPipe
3 Gx
90 1
280 0
281 1
0 ENDSEC
0 SECTION
2 TABLES
0 TABLE
2 LAYER
5 2
330 0
100 AcDbSymbolTable
70 4
0 LAYER
5 10
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 0
70 0
62 7
6 Continuous
0 LAYER
5 11
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 LOCKED
70 4
62 1
6 Continuous
0 LAYER
5 12
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 FROZEN
70 1
62 2
6 Continuous
0 LAYER
5 13
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 OFF
70 0
62 -5
6 Continuous
0 ENDTAB
0 TABLE
2 STYLE
5 3
330 0
100 AcDbSymbolTable
70 1
0 STYLE
5 14
330 3
100 AcDbSymbolTableRecord
100 AcDbTextStyleTableRecord
2 Standard
70 0
40 0.0
3 txt
0 ENDTAB
0 TABLE
2 APPID
5 9
330 0
100 AcDbSymbolTable
70 2
0 APPID
5 15
330 9
100 AcDbSymbolTableRecord
100 AcDbRegAppTableRecord
2 ACAD
70 0
0 APPID
5 16
330 9
100 AcDbSymbolTableRecord
100 AcDbRegAppTableRecord
2 PN
70 0
0 ENDTAB
0 TABLE
2 DIMSTYLE
5 A
330 0
100 AcDbSymbolTable
70 1
0 DIMSTYLE
105 17
330 A
100 AcDbSymbolTableRecord
100 AcDbDimStyleTableRecord
2 Standard
70 0
0 ENDTAB
0 TABLE
2 BLOCK_RECORD
5 1
330 0
100 AcDbSymbolTable
70 3
0 BLOCK_RECORD
5 18
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 *Model_Space
0 BLOCK_RECORD
5 19
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 *Paper_Space
0 BLOCK_RECORD
5 1A
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 WELL
0 ENDTAB
0 ENDSEC
0 SECTION
2 BLOCKS
0 BLOCK
5 1B
330 18
100 AcDbEntity
8 0
100 AcDbBlockBegin
2 *Model_Space
70 0
0 ENDBLK
5 1C
330 18
100 AcDbEntity
8 0
100 AcDbBlockEnd
0 BLOCK
5 1D
330 19
100 AcDbEntity
67 1
8 0
100 AcDbBlockBegin
2 *Paper_Space
70 0
0 ENDBLK
5 1E
330 19
100 AcDbEntity
67 1
8 0
100 AcDbBlockEnd
0 BLOCK
5 1F
330 1A
100 AcDbEntity
8 0
100 AcDbBlockBegin
2 WELL
70 0
0 CIRCLE
5 20
330 1A
100 AcDbEntity
8 0
100 AcDbCircle
10 0.0
20 0.0
30 0.0
40 0.5
0 LINE
5 21
330 1A
100 AcDbEntity
8 0
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 1.0
21 0.0
31 0.0
0 ENDBLK
5 22
330 1A
100 AcDbEntity
8 0
100 AcDbBlockEnd
0 ENDSEC
0 SECTION
2 ENTITIES
0 LINE
5 2F
330 18
100 AcDbEntity
8 0
62 3
370 25
100 AcDbLine
10 1.0
20 2.0
30 0.0
11 4.0
21 6.0
31 0.5
0 TEXT
5 30
102 {ACAD_REACTORS
330 C
102 }
330 18
100 AcDbEntity
8 0
100 AcDbText
10 10.0
20 20.0
30 0.0
40 2.5
1 DN300
50 90.0
41 0.8
7 Standard
72 1
11 11.0
21 20.0
31 0.0
100 AcDbText
73 2
0 LINE
5 31
330 18
100 AcDbEntity
8 locked
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 1.0
21 1.0
31 0.0
0 MTEXT
5 32
330 18
100 AcDbEntity
8 0
100 AcDbMText
10 5.0
20 5.0
30 0.0
40 3.5
41 0.0
71 1
1 L=36.5\P{\H2;m}
7 Standard
0 POLYLINE
5 33
330 18
100 AcDbEntity
8 0
100 AcDb2dPolyline
66 1
10 0.0
20 0.0
30 0.0
0 VERTEX
5 34
330 33
100 AcDbEntity
8 0
100 AcDbVertex
10 0.0
20 0.0
30 0.0
0 VERTEX
5 35
330 33
100 AcDbEntity
8 0
100 AcDbVertex
10 9.0
20 0.0
30 0.0
0 SEQEND
5 36
330 33
100 AcDbEntity
8 0
0 INSERT
5 37
330 18
100 AcDbEntity
8 0
100 AcDbBlockReference
66 1
2 WELL
10 3.0
20 3.0
30 0.0
0 ATTRIB
5 38
330 37
100 AcDbEntity
8 0
100 AcDbText
10 3.0
20 3.0
30 0.0
40 1.0
1 W1
100 AcDbAttribute
2 NO
70 0
0 SEQEND
5 39
330 37
100 AcDbEntity
8 0
0 CIRCLE
5 3A
330 18
100 AcDbEntity
8 0
100 AcDbCircle
10 7.0
20 8.0
30 0.0
40 0.5
1001 ACAD
1000 other
1001 PN
1002 {
1000 well
1070 7
1071 70000
1040 36.5
1005 2F
1010 1.0
1020 2.0
1030 3.0
1004 00FF
1002 }
0 ACAD_PROXY_ENTITY
5 3B
330 18
100 AcDbEntity
8 0
100 AcDbProxyEntity
90 498
91 500
92 8
310 0102030405060708
93 16
310 AABBCCDD
94 0
0 TEXT
5 3C
330 19
100 AcDbEntity
67 1
8 0
100 AcDbText
10 0.0
20 0.0
30 0.0
40 2.5
1 A1
100 AcDbText
0 LINE
5 3D
330 18
100 AcDbEntity
8 0
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 1.0
21 1.0
31 0.0
0 ENDSEC
0 SECTION
2 OBJECTS
0 DICTIONARY
5 C
330 0
100 AcDbDictionary
281 1
3 ACAD_GROUP
350 D
3 PN
350 50
0 DICTIONARY
5 D
330 C
100 AcDbDictionary
281 1
0 DICTIONARY
5 50
330 C
100 AcDbDictionary
281 1
3 zeta
350 51
3 Alpha
350 52
3 beta
350 53
0 XRECORD
5 51
102 {ACAD_REACTORS
330 50
102 }
330 50
100 AcDbXrecord
280 1
1 last
280 5
0 XRECORD
5 52
330 50
100 AcDbXrecord
280 1
1 first
102 {not a group
102 }
0 XRECORD
5 53
330 50
100 AcDbXrecord
1 middle
330 FFF
330 2F
0 GX_NETWORK
5 54
330 C
100 CGxNetwork
90 3
1 a^Jb
40 1.50
0 ENDSEC
0 EOF
)";

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
std::string_view plan_note() { return kPlan; }

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
