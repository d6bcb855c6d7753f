// CDimManager::updateDim of a type: the handler another module registered draws.

#include <stdexcept>

#include "module/manager/dim_manager.h"
#include "module/platform/opened.h"
#include "module/registry/update_service.h"
#include "tests/module/handlers.h"
#include "tests/module/plan.h"

namespace {

class UpdateType : public PlanTest {
 protected:
  CDimManager pipe() { return CDimManager(plan.id(L"2F")); }
  void given(const wchar_t* type, const Items& items) { plan.store_items(L"2F", type, items); }
  Handlers handlers;
};

TEST_F(UpdateType, TheHandlerIsAskedForTheEntity) {
  handlers.regist(L"pcgb");
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  const TraceLines trace;
  EXPECT_EQ(pipe().updateDim(L"pcgb"), Acad::eOk);
  EXPECT_EQ(handlers.calls(), Names{L"pcgb"});
  EXPECT_EQ(handlers.last().entityIds.length(), 1);
  EXPECT_EQ(handlers.last().entityIds[0], plan.id(L"2F"));
  EXPECT_EQ(handlers.last().flag, 0);
  EXPECT_EQ(trace.lines(), Texts{});
}

TEST_F(UpdateType, AHandlerThatFailsFails) {
  handlers.regist(L"pcgb", 0);
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  EXPECT_EQ(pipe().updateDim(L"pcgb"), 1);
  EXPECT_EQ(handlers.calls(), Names{L"pcgb"});
}

TEST_F(UpdateType, AHandlerThatThrowsFailsAndTheRestAreStillAsked) {
  for (const wchar_t* type : {L"xzgj", L"xdgj"}) {
    handlers.regist(type);
    given(type, {item_of(L"gdh", L"1", L"40")});
  }
  handlers.when_called([](DimUpdateRequest& request) {
    if (request.dimTypeName == L"xzgj") throw std::runtime_error("no room");
    throw 1;
  });
  const TraceLines trace;
  EXPECT_EQ(pipe().updateDim(L"xzgj"), 1);
  EXPECT_EQ(pipe().updateDim(L"xdgj"), 1);
  EXPECT_EQ(trace.lines(), Texts{L"no room"});
  handlers.take_calls();
  EXPECT_EQ(pipe().updatePipeDim(0), Acad::eOk);
  EXPECT_EQ(handlers.calls(), (Names{L"xzgj", L"xdgj"}));
}

TEST_F(UpdateType, ATypeWithoutHandlerIsNotFound) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  const TraceLines trace;
  EXPECT_EQ(pipe().updateDim(L"pcgb"), 22);
  EXPECT_EQ(pipe().updateDim(nullptr), 22);
  EXPECT_EQ(trace.lines().at(0), L"标注类型名: pcgb 还没有注册到标注自动更新!");
}

TEST_F(UpdateType, AnEntityWithoutSuchARecordFails) {
  handlers.regist(L"pcgb");
  const TraceLines trace;
  EXPECT_EQ(pipe().updateDim(L"pcgb"), 1);
  EXPECT_EQ(trace.lines().back(), L"分析标注是否存在失败，标注自动更新取消!");
  EXPECT_EQ(handlers.calls(), Names{});
}

TEST_F(UpdateType, ATypeWhoseEveryEntityWasErasedIsLeftAlone) {
  handlers.regist(L"pcgb");
  given(L"pcgb", {item_of(L"gdh", L"1", L"40"), item_of(L"41", L"", L"41")});
  plan.erase(L"40");
  plan.erase(L"41");
  const TraceLines trace;
  EXPECT_EQ(pipe().updateDim(L"pcgb"), Acad::eOk);
  EXPECT_EQ(handlers.calls(), Names{});
  EXPECT_EQ(trace.lines(), Texts{L"用户删除了整个标注，这样的标注无需在更新!"});
}

TEST_F(UpdateType, InformationAloneIsNothingToRedraw) {
  handlers.regist(L"pcgb");
  given(L"pcgb", {item_of(L"gdh", L"1")});
  EXPECT_EQ(pipe().updateDim(L"pcgb"), Acad::eOk);
  EXPECT_EQ(handlers.calls(), Names{});
}

TEST_F(UpdateType, ATypeOfWhichSomeEntitiesWereErasedIsRedrawn) {
  handlers.regist(L"pcgb");
  given(L"pcgb", {item_of(L"gdh", L"1", L"40"), item_of(L"41", L"", L"41")});
  plan.erase(L"40");
  const TraceLines trace;
  EXPECT_EQ(pipe().updateDim(L"pcgb"), Acad::eOk);
  EXPECT_EQ(handlers.calls(), Names{L"pcgb"});
  EXPECT_EQ(trace.lines(), Texts{L"发现残缺标注，程序被设置为强制更新!"});
}

TEST_F(UpdateType, HandlersMayRecordAndDeleteWhileTheyRedraw) {
  handlers.regist(L"pcgb");
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  handlers.when_called([](DimUpdateRequest& request) {
    CDimManager manager(request.entityIds[0]);
    EXPECT_EQ(manager.deleteDim(request.dimTypeName.c_str()), Acad::eOk);
    EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"gdh", L"2", L"41")), Acad::eOk);
  });
  EXPECT_EQ(pipe().updateDim(L"pcgb"), Acad::eOk);
  EXPECT_TRUE(plan.is_erased(L"40"));
  EXPECT_EQ(plan.items(plan.entry(L"2F", L"pcgb")), Items{item_of(L"gdh", L"2", L"41")});
}

TEST_F(UpdateType, PipesHaveTheirNineTypesRedrawnInOrder) {
  const Names types = {L"xzgj",      L"xdgj",         L"xdbg_st", L"xdbg_ed",       L"GroupDim",
                       L"Zh_Xd_Dim", L"Ymg_NoJd_Dim", L"JCDim",   L"OnLine_PipeDim"};
  for (const std::wstring& type : types) {
    handlers.regist(type);
    given(type.c_str(), {item_of(L"gdh", L"1", L"40")});
  }
  EXPECT_EQ(pipe().updatePipeDim(0), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), types);
  EXPECT_EQ(pipe().updatePipeDim(0xFFFFFFFF), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), types);
}

TEST_F(UpdateType, WellsHaveTheirTwoTypesRedrawnInOrder) {
  for (const wchar_t* type : {L"bzjg", L"bjbh", L"xzgj"}) {
    handlers.regist(type);
    given(type, {item_of(L"gdh", L"1", L"40")});
  }
  EXPECT_EQ(pipe().updateWellDim(0), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), (Names{L"bjbh", L"bzjg"}));
  EXPECT_EQ(pipe().updateWellDim(0xFFFFFFFF), Acad::eOk);
  EXPECT_EQ(handlers.take_calls(), (Names{L"bjbh", L"bzjg"}));
}

TEST_F(UpdateType, PipesAndWellsAreFineWithoutHandlers) {
  EXPECT_EQ(pipe().updatePipeDim(0), Acad::eOk);
  EXPECT_EQ(pipe().updatePipeDim(0xFFFFFFFF), Acad::eOk);
  EXPECT_EQ(pipe().updateWellDim(0), Acad::eOk);
}

TEST_F(UpdateType, OneTypeThatFailsKeepsNoOtherFromBeingRedrawn) {
  handlers.regist(L"xzgj", 0);
  handlers.regist(L"xdgj");
  given(L"xzgj", {item_of(L"gdh", L"1", L"40")});
  given(L"xdgj", {item_of(L"gdh", L"1", L"40")});
  EXPECT_EQ(pipe().updatePipeDim(0), Acad::eOk);
  EXPECT_EQ(handlers.calls(), (Names{L"xzgj", L"xdgj"}));
}

TEST_F(UpdateType, ArrowsOfAPipeWithoutAnyAreTurned) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  EXPECT_EQ(pipe().updateJtDirection(), Acad::eOk);
}

TEST_F(UpdateType, AnArrowThatIsNoBlockReferenceFailsTheTurning) {
  given(L"pcgb", {item_of(L"jt", L"1", L"40")});
  EXPECT_EQ(pipe().updateJtDirection(), 1);
  given(L"pcgb", {item_of(L"jt", L"1", L"FFF")});
  EXPECT_EQ(pipe().updateJtDirection(), 1);
  EXPECT_EQ(CDimManager(AcDbObjectId()).updateJtDirection(), 1);
}

TEST_F(UpdateType, AManagerThatCouldNotOpenAnswersOneAndCallsNobody) {
  handlers.regist(L"bjbh");
  CDimManager manager((AcDbObjectId()));
  EXPECT_EQ(manager.updateDim(L"bjbh"), 1);
  EXPECT_EQ(manager.updateDim(L"pcgb"), 1);
  EXPECT_EQ(manager.updateWellDim(0), Acad::eOk);
  EXPECT_EQ(handlers.calls(), Names{});
}

TEST_F(UpdateType, AnOwnerErasedBetweenTheCallsFails) {
  handlers.regist(L"pcgb");
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  CDimManager manager = pipe();
  plan.erase(L"2F");
  EXPECT_EQ(manager.updateDim(L"pcgb"), 1);
  EXPECT_EQ(handlers.calls(), Names{});
}

}  // namespace
