#include "module/registry/registry.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "module/registry/dim_iterator.h"
#include "module/registry/vocabulary.h"
#include "tests/module/plan.h"

namespace {

class Handler : public CDimFacade {
 public:
  ~Handler() { ++destroyed; }
  int update(DimUpdateRequest& request) override {
    request.flag = 7;
    return 1;
  }
  static inline int destroyed = 0;
  double room[4] = {};  // larger than its base: the registry must not assume a size
};

TEST(Registry, AnItemNameIsNoTypeAndATypeNoItemName) {
  const CDimupateRegisiter registry;
  EXPECT_EQ(registry.isRegisted(L"pcgb"), 1);
  EXPECT_EQ(registry.isRegisted(L"pipe_flow"), 0);
  EXPECT_EQ(registry.isDimName(L"pipe_flow"), 1);
  EXPECT_EQ(registry.isDimName(L"pcgb"), 0);
}

TEST(Registry, NamesAreComparedWithTheirLetterCase) {
  const CDimupateRegisiter registry;
  EXPECT_EQ(registry.isRegisted(L"PCGB"), 0);
  EXPECT_EQ(registry.isDimName(L"Pipe_flow"), 0);
}

TEST(Registry, TheMisspeltTypeIsTheOneThatIsKnown) {
  const CDimupateRegisiter registry;
  EXPECT_EQ(registry.isRegisted(L"xdgj_uper"), 1);
  EXPECT_EQ(registry.isRegisted(L"xdgj_upper"), 0);
}

TEST(Registry, AnItemNameCountsBehindAnyPrefixAndAt) {
  const CDimupateRegisiter registry;
  EXPECT_EQ(registry.isDimName(L"北侧@pipe_len"), 1);
  EXPECT_EQ(registry.isDimName(L"@pipe_len"), 1);
  EXPECT_EQ(registry.isDimName(L"pipe_flow@1"), 0);
  EXPECT_EQ(registry.isDimName(L"a@b@pipe_len"), 0);
  EXPECT_EQ(registry.isDimName(L"@"), 0);
  EXPECT_EQ(registry.isDimName(L""), 0);
}

TEST(Registry, ANullNameIsNotKnown) {
  const CDimupateRegisiter registry;
  EXPECT_EQ(registry.isRegisted(nullptr), 0);
  EXPECT_EQ(registry.isDimName(nullptr), 0);
}

TEST(Registry, RefreshingAnswersYesAndKeepsWhatIsThere) {
  CDimupateRegisiter registry;
  EXPECT_EQ(registry.Initialize(L"ignored.txt"), 1);
  EXPECT_EQ(registry.refresh(), 1);
  EXPECT_EQ(registry.isRegisted(L"bzjg"), 1);
}

TEST(Registry, AFreshOneHasNoHandlers) {
  const CDimupateRegisiter registry;
  for (const dim::VocabularyRow& row : dim::kDimTypeNames) {
    EXPECT_EQ(registry.getAt(row.name), nullptr);
  }
}

TEST(Registry, ABuiltInTypeMayGetAHandler) {
  CDimupateRegisiter registry;
  auto* handler = new Handler;
  EXPECT_EQ(registry.regist(L"pcgb", handler), 1);
  EXPECT_EQ(registry.getAt(L"pcgb"), handler);
  EXPECT_EQ(registry.getAt(L"PCGB"), nullptr);
  registry.logout(L"pcgb");
  EXPECT_EQ(registry.getAt(L"pcgb"), nullptr);
  EXPECT_EQ(registry.isRegisted(L"pcgb"), 1);
}

TEST(Registry, ATypeIsRegisteredWhileItHasAHandler) {
  CDimupateRegisiter registry;
  EXPECT_EQ(registry.isRegisted(L"GroupDim"), 0);
  EXPECT_EQ(registry.regist(L"GroupDim", new Handler), 1);
  EXPECT_EQ(registry.isRegisted(L"GroupDim"), 1);
  registry.logout(L"GroupDim");
  EXPECT_EQ(registry.isRegisted(L"GroupDim"), 0);
}

TEST(Registry, ANullHandlerIsRefused) {
  CDimupateRegisiter registry;
  EXPECT_EQ(registry.regist(L"GroupDim", nullptr), 0);
  EXPECT_EQ(registry.isRegisted(L"GroupDim"), 0);
}

TEST(Registry, ASecondHandlerOfANameIsRefusedAndStaysTheCallers) {
  CDimupateRegisiter registry;
  auto* first = new Handler;
  const auto second = std::make_unique<Handler>();
  EXPECT_EQ(registry.regist(L"pcgb", first), 1);
  const TraceLines trace;
  EXPECT_EQ(registry.regist(L"pcgb", second.get()), 0);
  EXPECT_EQ(trace.lines(), Texts{L"The dimTypeName: pcgb has in the registery already!"});
  EXPECT_EQ(registry.getAt(L"pcgb"), first);
  registry.logout(L"pcgb");
}

TEST(Registry, LoggingOutFreesTheHandlerWithoutADestructor) {
  CDimupateRegisiter registry;
  registry.regist(L"pcgb", new Handler);
  const int before = Handler::destroyed;
  registry.logout(L"pcgb");
  EXPECT_EQ(Handler::destroyed, before);
}

TEST(Registry, LoggingOutANameWithoutHandlerIsHarmless) {
  CDimupateRegisiter registry;
  registry.logout(L"pcgb");
  registry.logout(L"nobody");
  EXPECT_EQ(registry.isRegisted(L"pcgb"), 1);
}

TEST(Registry, ItsEndLeavesRegisteredHandlersAlone) {
  const auto handler = std::make_unique<Handler>();
  {
    CDimupateRegisiter registry;
    registry.regist(L"pcgb", handler.get());
  }
  DimUpdateRequest request;
  EXPECT_EQ(handler->update(request), 1);
  EXPECT_EQ(request.flag, 7);
}

TEST(Registry, ACopySharesTheHandlers) {
  CDimupateRegisiter registry;
  auto* handler = new Handler;
  registry.regist(L"pcgb", handler);
  CDimupateRegisiter copy(registry);
  EXPECT_EQ(copy.getAt(L"pcgb"), handler);
  CDimupateRegisiter assigned;
  assigned = registry;
  EXPECT_EQ(assigned.getAt(L"pcgb"), handler);
  registry.logout(L"pcgb");
  EXPECT_EQ(registry.isRegisted(L"pcgb"), 1);
  EXPECT_NE(copy.getAt(L"pcgb"), nullptr);  // dangling by now, as documented: not to be called
}

TEST(NameIterators, VisitNothing) {
  CDimNameIterator names;
  CDimTypeNameIterator types;
  int visits = 0;
  for (names.start(); !names.done(); names.step()) ++visits;
  for (types.start(); !types.done(); types.step()) ++visits;
  EXPECT_EQ(visits, 0);
  EXPECT_EQ(names.done(), 1);
  EXPECT_EQ(types.done(), 1);
  EXPECT_EQ(names.getDimName(), nullptr);
  EXPECT_EQ(types.GetDimTypeName(), nullptr);
}

struct NameCursor : CDimNameIterator {
  bool is_null() const { return !cursor_ && !end_; }
};

TEST(NameIterators, OfItemNamesHasTwoCursorsThatStartNull) {
  EXPECT_TRUE(NameCursor().is_null());
  EXPECT_EQ(sizeof(CDimNameIterator), sizeof(CDimIterator) + 2 * sizeof(void*));
  EXPECT_EQ(sizeof(CDimTypeNameIterator), sizeof(CDimIterator));
}

TEST(VirtualSlots, ACursorHasDoneThenStepThenStart) {
  const std::size_t first = virtual_slot(&CDimIterator::done);
  EXPECT_EQ(virtual_slot(&CDimIterator::step), first + 1);
  EXPECT_EQ(virtual_slot(&CDimIterator::start), first + 2);
}

TEST(VirtualSlots, AHandlerUpdatesInItsSecond) {
  EXPECT_EQ(virtual_slot(&CDimFacade::reserved), 0u);
  EXPECT_EQ(virtual_slot(&CDimFacade::update), 1u);
}

TEST(UpdateRequest, StartsEmptyWithTheFlagDown) {
  const DimUpdateRequest request;
  EXPECT_TRUE(request.dimTypeName.empty());
  EXPECT_TRUE(request.entityIds.isEmpty());
  EXPECT_EQ(request.entityIds.growLength(), 8);
  EXPECT_EQ(request.flag, 0);
}

}  // namespace
