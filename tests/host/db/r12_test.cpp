// Drawings of releases without dictionaries: read, edited and saved, but nothing is recorded.

#include <gmock/gmock.h>

#include <fstream>

#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::string_view kR12 = R"(0 SECTION
2 HEADER
9 $ACADVER
1 AC1009
9 $DWGCODEPAGE
3 ANSI_936
9 $CLAYER
8 PIPES
9 $HANDLING
70 1
9 $HANDSEED
5 20
0 ENDSEC
0 SECTION
2 TABLES
0 TABLE
2 LAYER
70 2
0 LAYER
2 0
70 0
62 7
6 CONTINUOUS
0 LAYER
2 PIPES
70 4
62 -3
6 CONTINUOUS
0 ENDTAB
0 ENDSEC
0 SECTION
2 BLOCKS
0 BLOCK
8 0
2 WELL
70 0
10 0.0
20 0.0
3 WELL
0 CIRCLE
5 A
8 0
10 0.0
20 0.0
40 1.0
0 ENDBLK
8 0
0 ENDSEC
0 SECTION
2 ENTITIES
0 TEXT
5 B
8 0
10 1.0
20 2.0
40 2.5
1 DN300
50 45.0
0 LINE
5 C
8 PIPES
10 0.0
20 0.0
11 1.0
21 1.0
0 POLYLINE
5 D
8 0
66 1
0 VERTEX
5 E
8 0
10 0.0
20 0.0
0 SEQEND
5 F
8 0
0 ENDSEC
0 EOF
)";

class R12 : public DrawingTest {
 protected:
  R12() { given(spelled(kR12, Form::kChinese)); }
  ~R12() override { acdbHostApplicationServices()->alert = nullptr; }

  /// Whatever the host tells its user.
  std::vector<std::wstring>& listening() {
    acdbHostApplicationServices()->alert = [this](const std::wstring& line) {
      alerts_.push_back(line);
    };
    return alerts_;
  }

 private:
  std::vector<std::wstring> alerts_;
};

TEST_F(R12, EntitiesAreReadWithoutClassMarkers) {
  EXPECT_FALSE(database().has_dictionaries());
  auto* text = opened<AcDbText>(0xB);
  ACHAR* string = text->textString();
  EXPECT_STREQ(string, L"DN300");
  acutDelString(string);
  EXPECT_EQ(text->position(), AcGePoint3d(1, 2, 0));
  EXPECT_EQ(text->height(), 2.5);
  text->close();
  EXPECT_TRUE(database().namedObjectsDictionaryId().isNull());
}

TEST_F(R12, EntitiesAreEditedAndSaved) {
  auto* text = opened<AcDbText>(0xB, AcDb::kForWrite);
  EXPECT_EQ(text->setTextString(L"管径"), Acad::eOk);
  EXPECT_EQ(text->setRotation(0), Acad::eOk);
  EXPECT_EQ(text->setColorIndex(1), Acad::eOk);
  text->close();
  EXPECT_THAT(
      database().save_bytes(),
      HasSubstr("  1\r\n\xB9\xDC\xBE\xB6\r\n 50\r\n0.0\r\n 62\r\n     1\r\n  0\r\nLINE\r\n"));
  reopened();
  EXPECT_EQ(text_of(0xB), L"管径");
}

TEST_F(R12, LayersAreLocked) {
  EXPECT_EQ(open_status(id(0xC), AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(open_status(id(0xC), AcDb::kForWrite), Acad::eOnLockedLayer);
  AcDbLayerTable* layers = nullptr;
  EXPECT_EQ(database().getSymbolTable(layers, AcDb::kForRead), Acad::eOk);
  AcDbObjectId layer;
  EXPECT_EQ(layers->getAt(L"pipes", layer), Acad::eOk);
  layers->close();
  auto* record = opened<AcDbLayerTableRecord>(layer, AcDb::kForWrite);
  EXPECT_TRUE(record->isLocked());
  EXPECT_TRUE(record->isOff());
  record->setIsLocked(false);
  record->close();
  EXPECT_EQ(open_status(id(0xC), AcDb::kForWrite), Acad::eOk);
}

TEST_F(R12, EntitiesAreErasedWithTheirVertices) {
  erase(0xD);
  const std::string bytes = database().save_bytes();
  EXPECT_EQ(bytes.find("POLYLINE"), std::string::npos);
  EXPECT_EQ(bytes.find("VERTEX"), std::string::npos);
  EXPECT_EQ(bytes.find("SEQEND"), std::string::npos);
  reopened();
  EXPECT_EQ(database().last_entity(), id(0xC));
}

TEST_F(R12, AnExtensionDictionaryIsRefusedAndTheUserIsToldOnce) {
  auto& alerts = listening();
  const std::string before = database().save_bytes();
  AcDbObject* text = opened(0xB, AcDb::kForWrite);
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(text->createExtensionDictionary(), Acad::eNotApplicable);
  }
  EXPECT_TRUE(text->extensionDictionary().isNull());
  text->close();
  EXPECT_THAT(alerts,
              ElementsAre(L"plan.dxf: a drawing of release R12 (AC1009) has no dictionaries, "
                          L"so no records can be stored in it; save it as R2000 DXF or "
                          L"newer and run again"));
  EXPECT_EQ(database().save_bytes(), before);
}

TEST_F(R12, ObjectsAreRefused) {
  const auto record = std::make_unique<AcDbXrecord>();
  AcDbObjectId made;
  EXPECT_EQ(database().addAcDbObject(made, record.get()), Acad::eNotApplicable);
  EXPECT_TRUE(made.isNull());
}

TEST_F(R12, ADrawingWithoutVersionIsOne) {
  auto& alerts = listening();
  given(spelled("0 SECTION\n2 ENTITIES\n0 LINE\n5 1\n8 0\n0 ENDSEC\n0 EOF\n", Form::kUtf8));
  AcDbObject* line = opened(0x1, AcDb::kForWrite);
  EXPECT_EQ(line->createExtensionDictionary(), Acad::eNotApplicable);
  line->close();
  ASSERT_EQ(alerts.size(), 1u);
  EXPECT_THAT(alerts[0], testing::StartsWith(L"plan.dxf: a drawing of release R12 has no"));
}

}  // namespace
