#include "host/db/xrecord.h"
#include "host/db/value_texts.h"

#include <gmock/gmock.h>

#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Xrecord : public DrawingTest {
 protected:
  Xrecord() { given_plan(); }

  Acad::ErrorStatus set(std::uint64_t handle, const resbuf* chain) {
    auto* record = opened<AcDbXrecord>(handle, AcDb::kForWrite);
    const Acad::ErrorStatus status = record->setFromRbChain(*chain);
    record->close();
    return status;
  }
  std::vector<std::string> values(std::uint64_t handle) {
    auto* record = opened<AcDbXrecord>(handle);
    resbuf* chain = nullptr;
    EXPECT_EQ(record->rbChain(&chain), Acad::eOk);
    const cad::ResbufChain owned(chain);
    expect_texts(*record, chain);
    record->close();
    return shown(chain);
  }
  /// The texts read without a chain are those of the chain.
  static void expect_texts(const AcDbXrecord& record, const resbuf* chain) {
    cad::ValueTexts texts, unopened;
    EXPECT_EQ(texts.read(record), Acad::eOk);
    EXPECT_EQ(unopened.read(record.objectId()), Acad::eOk);
    ASSERT_EQ(unopened.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(unopened[i], texts[i]);
    std::size_t value = 0;
    for (; chain; chain = chain->rbnext, ++value) {
      ASSERT_LT(value, texts.size());
      const bool is_text = cad::buffer_value(chain->restype) == cad::BufferValue::kString;
      EXPECT_EQ(texts[value], is_text ? std::wstring_view(chain->resval.rstring) : L"");
      EXPECT_EQ(*(texts[value].data() + texts[value].size()), L'\0');
    }
    EXPECT_EQ(texts.size(), value);
  }
};

TEST_F(Xrecord, ValuesBeginBehindTheCloningFlag) {
  EXPECT_THAT(values(0x51), ElementsAre("1 last", "280 5"));
  EXPECT_THAT(values(0x52), ElementsAre("1 first", "102 {not a group", "102 }"));
  EXPECT_THAT(values(0x53), ElementsAre("1 middle", "330 FFF", "330 2F")) << "without a flag too";
}

TEST_F(Xrecord, BeforeR2000ThereIsNoCloningFlag) {
  given_plan(Form::kOldBinary);
  EXPECT_THAT(values(0x52), ElementsAre("280 1", "1 first", "102 {not a group", "102 }"));
  const AcDbObjectId made = file_record(id(0x50), L"new", L"x");
  EXPECT_THAT(values(made.handle()), ElementsAre("1 x"));
  const std::uint64_t handle = made.handle();
  reopened();
  EXPECT_THAT(values(handle), ElementsAre("1 x"));
}

TEST_F(Xrecord, TextsAreStoredAsAChainOfThemWouldBe) {
  const std::wstring_view texts[] = {L"DN300", L"", L"管径 ^ \\U+0041", L"  blanks  ",
                                     std::wstring_view(L"up to\0here", 10)};
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    const cad::ResbufChain chain(acutBuildList(1, L"DN300", 1, L"", 1, L"管径 ^ \\U+0041", 1,
                                               L"  blanks  ", 1, L"up to", 0));
    EXPECT_EQ(set(0x51, chain.get()), Acad::eOk);
    const std::string as_chain = database().save_bytes();
    given_plan(form);
    auto* record = opened<AcDbXrecord>(0x51, AcDb::kForWrite);
    EXPECT_EQ(cad::set_value_texts(*record, 1, texts), Acad::eOk);
    record->close();
    EXPECT_EQ(database().save_bytes(), as_chain);
  }
}

TEST_F(Xrecord, TextsWantAWriterAndTheCodeOfAText) {
  const std::wstring_view text = L"x";
  const std::string before = database().save_bytes();
  auto* record = opened<AcDbXrecord>(0x51);
  EXPECT_EQ(cad::set_value_texts(*record, 1, {&text, 1}), Acad::eNotOpenForWrite);
  record->close();
  record = opened<AcDbXrecord>(0x51, AcDb::kForWrite);
  for (const short code : {short{5}, short{70}, short{40}, short{1000}, short{-1}})
    EXPECT_EQ(cad::set_value_texts(*record, code, {&text, 1}), Acad::eInvalidDxfCode) << code;
  record->close();
  EXPECT_EQ(database().save_bytes(), before);
}

TEST_F(Xrecord, WhatCannotBeReadWithoutOpeningSaysWhy) {
  cad::ValueTexts texts;
  EXPECT_EQ(texts.read(AcDbObjectId()), Acad::eNullObjectId);
  EXPECT_EQ(texts.read(id(0x2F)), Acad::eNotThatKindOfClass);
  auto* record = opened<AcDbXrecord>(0x51, AcDb::kForWrite);
  EXPECT_EQ(texts.read(id(0x51)), Acad::eWasOpenForWrite);
  record->close();
  EXPECT_EQ(texts.read(id(0x51)), Acad::eOk);
  EXPECT_NE(texts.size(), 0u);
  erase(0x51);
  EXPECT_EQ(texts.read(id(0x51)), Acad::eWasErased);
  EXPECT_EQ(texts.size(), 0u);
}

TEST_F(Xrecord, EveryKindOfValueComesBackInEveryForm) {
  const ads_real point[] = {1.5, -2.25, 1e20};
  unsigned char bytes[] = {0, 10, 13, 255};
  const ads_binary chunk = {4, reinterpret_cast<char*>(bytes)};
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    ads_name line;
    acdbGetAdsName(line, id(0x2F));
    const cad::ResbufChain chain(acutBuildList(
        1, L"text", 2, L"two", 9, L"", 102, L"}", 300, L"x", 10, point, 17, point, 38, 0.1, 59,
        -1e-300, 60, -32768, 79, 32767, 90, -2147483647, 99, 2147483647, 140, 2.0, 160,
        std::int64_t{-9007199254740993}, 170, 1, 210, point, 270, 3, 280, -1, 290, 1, 310, &chunk,
        320, L"ABC", 330, line, 340, line, 350, line, 360, line, 369, line, 0));
    const std::vector<std::string> before = shown(chain.get());
    ASSERT_EQ(before.size(), 27u);
    EXPECT_EQ(set(0x51, chain.get()), Acad::eOk);
    EXPECT_EQ(values(0x51), before);
    reopened();
    EXPECT_EQ(values(0x51), before);
  }
}

TEST_F(Xrecord, EveryTextComesBackInEveryForm) {
  const std::wstring texts[] = {L"",
                                L" ",
                                L"  a  ",
                                L"\t",
                                L"a\nb\r\nc",
                                L"管径",
                                L"乗誠",  // second bytes 5C in ANSI_936
                                L"\u20BF",
                                L"\U0001F600 \U00020000",
                                L"^J ^ ^",
                                L"\\U+0041 \\M+5B9DC \\",
                                L"0",
                                L"EOF",
                                L"}",
                                std::wstring(100000, L'x'),
                                std::wstring(3000, L'管')};
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    cad::ChainBuilder chain;
    for (const std::wstring& text : texts) chain.add(cad::new_string_buffer(1, text));
    const std::vector<std::string> before = shown(chain.head());
    EXPECT_EQ(set(0x51, chain.head()), Acad::eOk);
    EXPECT_EQ(values(0x51), before);
    reopened();
    EXPECT_EQ(values(0x51), before);
  }
}

TEST_F(Xrecord, EveryAllowedCodeComesBackAndEveryOtherIsRefused) {
  ads_name line;
  for (const Form form : kFormsWithDictionaries) {
    given_plan(form);
    acdbGetAdsName(line, id(0x2F));
    for (int code = -5; code <= 400; ++code) {
      const cad::ResbufChain buffer(acutNewRb(code));
      const auto value = cad::buffer_value(code);
      if (value == cad::BufferValue::kString || (code > 0 && cad::name_is_text(code))) {
        buffer->resval.rstring = acutNewString(L"A1");
      } else if (value == cad::BufferValue::kName) {
        buffer->resval.rlname[0] = line[0];
      }
      const bool allowed = code >= 1 && code <= 369 && code != 5 && code != 105;
      EXPECT_EQ(set(0x51, buffer.get()), allowed ? Acad::eOk : Acad::eInvalidDxfCode) << code;
      if (allowed) {
        EXPECT_EQ(values(0x51), shown(buffer.get()));
      }
    }
  }
}

TEST_F(Xrecord, ARefusedChainChangesNothing) {
  const std::string before = database().save_bytes();
  const ads_real infinite[] = {1.0, 1.0 / 0.0, 0.0};
  std::vector<cad::ResbufChain> chains;
  chains.emplace_back(acutBuildList(1, L"a", 5, L"2F", 0));
  chains.emplace_back(acutBuildList(1, L"a", RTDXF0, L"LINE", 0));
  chains.emplace_back(acutBuildList(1, L"a", 1000, L"x", 0));
  chains.emplace_back(acutBuildList(1, L"a", RTSTR, L"x", 0));
  chains.emplace_back(acutBuildList(1, L"a", 370, 1, 0));
  for (const auto& chain : chains) {
    EXPECT_EQ(set(0x51, chain.get()), Acad::eInvalidDxfCode) << chain->rbnext->restype;
  }
  chains.clear();
  chains.emplace_back(acutBuildList(1, L"a", 40, 0.0 / 0.0, 0));
  chains.emplace_back(acutBuildList(1, L"a", 10, infinite, 0));
  for (const auto& chain : chains) {
    EXPECT_EQ(set(0x51, chain.get()), Acad::eInvalidResBuf) << chain->rbnext->restype;
  }
  EXPECT_THAT(values(0x51), ElementsAre("1 last", "280 5"));
  EXPECT_EQ(database().save_bytes(), before);
}

TEST_F(Xrecord, AnEmptyChainStoresNothing) {
  for (const Form form : kFormsWithDictionaries) {
    given_plan(form);
    const cad::ResbufChain none(acutNewRb(RTNONE));
    EXPECT_EQ(set(0x51, none.get()), Acad::eOk);
    EXPECT_TRUE(values(0x51).empty());
    reopened();
    EXPECT_TRUE(values(0x51).empty());
    const cad::ResbufChain one(acutBuildList(1, L"again", 0));
    EXPECT_EQ(set(0x51, one.get()), Acad::eOk);
    EXPECT_THAT(values(0x51), ElementsAre("1 again"));
  }
}

TEST_F(Xrecord, AnEmptyRecordGivesANullChain) {
  auto* record = new AcDbXrecord;
  resbuf* chain = reinterpret_cast<resbuf*>(record);
  EXPECT_EQ(record->rbChain(&chain), Acad::eOk);
  EXPECT_EQ(chain, nullptr);
  EXPECT_EQ(record->rbChain(nullptr), Acad::eInvalidInput);
  delete record;
}

TEST_F(Xrecord, TheChainIsACopy) {
  const cad::ResbufChain chain(acutBuildList(1, L"mine", 0));
  EXPECT_EQ(set(0x51, chain.get()), Acad::eOk);
  chain->resval.rstring[0] = L'X';
  EXPECT_THAT(values(0x51), ElementsAre("1 mine"));
}

TEST_F(Xrecord, NeedsAReaderToReadAndAWriterToWrite) {
  auto* record = opened<AcDbXrecord>(0x51);
  const cad::ResbufChain chain(acutBuildList(1, L"x", 0));
  EXPECT_EQ(record->setFromRbChain(*chain), Acad::eNotOpenForWrite);
  record->close();
  resbuf* read = nullptr;
  EXPECT_EQ(record->rbChain(&read), Acad::eNotOpenForRead);
  EXPECT_EQ(read, nullptr);
}

TEST_F(Xrecord, AReferenceToNothingIsWrittenBackAsItWas) {
  auto* record = opened<AcDbXrecord>(0x53, AcDb::kForWrite);
  resbuf* chain = nullptr;
  record->rbChain(&chain);
  AcDbObjectId missing;
  EXPECT_EQ(acdbGetObjectId(missing, chain->rbnext->resval.rlname), Acad::eOk);
  EXPECT_EQ(missing.handle().value(), 0xFFFu);
  EXPECT_EQ(open_status(missing, AcDb::kForRead), Acad::ePermanentlyErased);
  EXPECT_EQ(open_status(missing, AcDb::kForRead, true), Acad::ePermanentlyErased);
  EXPECT_EQ(record->setFromRbChain(*chain), Acad::eOk);
  acutRelRb(chain);
  record->close();
  reopened();
  EXPECT_THAT(values(0x53), ElementsAre("1 middle", "330 FFF", "330 2F"));
}

TEST_F(Xrecord, AReferenceToNothingKeepsItsHandleFromBeingGivenAway) {
  std::string note(plan_note());
  note.replace(note.find("330 FFF\n"), 8, "330 200\n");
  given(spelled(note, Form::kUtf8));
  EXPECT_EQ(values(0x53)[1], "330 200");
  EXPECT_EQ(append(new AcDbLine).handle().value(), 0x201u);
}

TEST_F(Xrecord, APointMayBeFollowedByARealOfItsOwnCodes) {
  const ads_real point[] = {1, 2, 3};
  const cad::ResbufChain chain(acutBuildList(10, point, 20, 4.0, 30, 5.0, 20, 6.0, 10, point, 0));
  EXPECT_EQ(set(0x51, chain.get()), Acad::eOk);
  EXPECT_EQ(values(0x51), shown(chain.get()));
}

TEST_F(Xrecord, ExtendedDataBehindTheValuesStays) {
  AcDbObject* record = opened(0x51, AcDb::kForWrite);
  const cad::ResbufChain data(acutBuildList(1001, L"PN", 1000, L"data", 0));
  EXPECT_EQ(record->setXData(data.get()), Acad::eOk);
  record->close();
  EXPECT_THAT(values(0x51), ElementsAre("1 last", "280 5"));
  const cad::ResbufChain chain(acutBuildList(1, L"new", 0));
  EXPECT_EQ(set(0x51, chain.get()), Acad::eOk);
  reopened();
  EXPECT_THAT(values(0x51), ElementsAre("1 new"));
  record = opened(0x51);
  const cad::ResbufChain read(record->xData(L"PN"));
  EXPECT_THAT(shown(read.get()), ElementsAre("1001 PN", "1000 data"));
  record->close();
}

TEST_F(Xrecord, TextsThatLookLikeTheFrameAreValues) {
  const cad::ResbufChain chain(acutBuildList(1, L"100", 1, L"AcDbXrecord", 280, 7, 1, L"1001", 1,
                                             L"{ACAD_XDICTIONARY", RTNONE));
  ASSERT_EQ(set(0x51, chain.get()), Acad::eOk);
  EXPECT_THAT(values(0x51),
              ElementsAre("1 100", "1 AcDbXrecord", "280 7", "1 1001", "1 {ACAD_XDICTIONARY"));
  auto* record = opened<AcDbXrecord>(0x51);
  EXPECT_TRUE(record->extensionDictionary().isNull());
  record->close();
  reopened();
  EXPECT_THAT(values(0x51),
              ElementsAre("1 100", "1 AcDbXrecord", "280 7", "1 1001", "1 {ACAD_XDICTIONARY"));
}

TEST_F(Xrecord, ChangingOneLeavesItsFrameAsItWas) {
  const cad::ResbufChain chain(acutBuildList(1, L"new", 0));
  const std::string before = database().save_bytes();
  EXPECT_EQ(set(0x51, chain.get()), Acad::eOk);
  std::string wanted = before;
  const std::string old = "280\n1\n  1\nlast\n280\n5\n";
  wanted.replace(wanted.find(old), old.size(), "280\n1\n  1\nnew\n");
  EXPECT_EQ(database().save_bytes(), wanted);
}

}  // namespace
