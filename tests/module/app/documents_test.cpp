#include "module/app/documents.h"

#include <gtest/gtest.h>

#include <memory>

#include "host/app/host.h"
#include "tests/module/plan.h"

namespace {

AcApDocument* open_plan(cad::Host& host) {
  auto document = host.open_bytes(Plan::bytes(), "plan");
  EXPECT_TRUE(document) << (document ? "" : document.error().message());
  return document ? *document : nullptr;
}

TEST(DocumentData, ADocumentThatGoesTakesItsEntryAlong) {
  cad::Host host;
  AsdkDataManager<int> store;
  AcApDocument* first = open_plan(host);
  AcApDocument* second = open_plan(host);
  store.of(first) = 1;
  store.of(second) = 2;
  host.close(first);
  EXPECT_EQ(store.size(), 1u);
  EXPECT_EQ(store.of(second), 2);
}

TEST(DocumentData, ADocumentWithoutEntryChangesNothing) {
  cad::Host host;
  AsdkDataManager<int> store;
  AcApDocument* first = open_plan(host);
  AcApDocument* second = open_plan(host);
  store.of(second) = 2;
  host.close(first);
  EXPECT_EQ(store.size(), 1u);
}

TEST(DocumentData, ItsEndWithDocumentsOpenStopsListening) {
  cad::Host host;
  AcApDocument* document = open_plan(host);
  auto store = std::make_unique<AsdkDataManager<int>>();
  store->of(document) = 1;
  store.reset();
  host.close(document);
}

TEST(DocumentData, ListensAsADocumentManagerReactor) {
  const AsdkDataManager<CDocData> store;
  EXPECT_STREQ(store.isA()->name(), L"AcApDocManagerReactor");
  EXPECT_EQ(store.isA(), acrxClassDictionary()->at(L"AcApDocManagerReactor"));
}

}  // namespace
