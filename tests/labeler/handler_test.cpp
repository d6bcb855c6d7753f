// The handlers registered with the annotation manager.

#include "module/registry/update_service.h"
#include "tests/labeler/labelling.h"

namespace {

using network::Key;

class Handlers : public Labelling {
 protected:
  static CDimupateRegisiter& registry() { return CDimUpdateServ::getInstance().getDimRegServ(); }
};

TEST_F(Handlers, AreThereForEveryTypeThatIsDrawn) {
  for (const wchar_t* type : {L"xzgj", L"xdgj", L"xdbg_st", L"xdbg_ed", L"bjbh", L"bzjg", L"pcgb",
                              L"pcjdb", L"Zh_Xd_Dim"})
    EXPECT_TRUE(registry().getAt(type));
}

TEST_F(Handlers, AreTakenOutWhenTheModuleIsUnloaded) {
  ASSERT_TRUE(host.unload_module("labeler.arx"));
  EXPECT_FALSE(registry().getAt(L"xzgj"));
  EXPECT_FALSE(registry().isRegisted(L"Zh_Xd_Dim"));
  ASSERT_TRUE(host.load_module("labeler.arx"));
  EXPECT_TRUE(registry().getAt(L"xzgj"));
}

TEST_F(Handlers, RedrawATypeThroughTheManager) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  const std::string text = text_handle(pipe);
  set_real(pipe, Key::kDiameter, 500);
  eval("(updatedim \"xzgj\" " + ename(pipe) + ")");
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN500-L=40.0m-i=2.5‰"});
  EXPECT_EQ(text_handle(pipe), text);
}

TEST_F(Handlers, RedrawAllOfAPipeOrWell) {
  const std::string well = given_well(0, 0, "1");
  eval("(labelwell " + ename(well) + ")");
  EXPECT_EQ(network::write_text(id(well), Key::kNumber, L"2"), Acad::eOk);
  eval("(updateWellInfo " + ename(well) + ")");
  EXPECT_EQ(texts_of(well, L"bjbh"), std::vector<std::wstring>{L"2"});
}

TEST_F(Handlers, KeepWhatWasEditedUnlessTheFlagIsSet) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  set_text(text_handle(pipe), "mine");
  DimUpdateRequest request;
  request.dimTypeName = L"xzgj";
  request.entityIds.append(id(pipe));
  EXPECT_TRUE(registry().getAt(L"xzgj")->update(request));
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"mine"});
  request.flag = 1;
  EXPECT_TRUE(registry().getAt(L"xzgj")->update(request));
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN300-L=40.0m-i=2.5‰"});
}

TEST_F(Handlers, AnswerZeroForWhatIsNoOwner) {
  const std::string text = made("(0 . \"TEXT\") (10 0.0 0.0 0.0) (40 . 2.0) (1 . \"x\")");
  DimUpdateRequest request;
  request.dimTypeName = L"xzgj";
  request.entityIds.append(id(text));
  EXPECT_FALSE(registry().getAt(L"xzgj")->update(request));
}

TEST_F(Handlers, ALispFunctionIsCalledWithTypeEntitiesAndFlag) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  EXPECT_EQ(eval("(dimhandler \"xzgj\" \"redraw\")"), "T");
  eval(
      "(defun redraw (type owners flag) (setq heard (list type (cdr (assoc 5 (entget (car "
      "owners)))) flag)))");
  eval("(updatedim \"xzgj\" " + ename(pipe) + ")");
  EXPECT_EQ(eval("heard"), "(\"xzgj\" \"" + pipe + "\" 0)");
}

TEST_F(Handlers, ALispFunctionMakesItsTypeKnown) {
  EXPECT_FALSE(registry().isRegisted(L"cover"));
  eval("(dimhandler \"cover\" \"redraw\")");
  EXPECT_TRUE(registry().isRegisted(L"cover"));
  eval("(dimhandler \"cover\" nil)");
  EXPECT_FALSE(registry().isRegisted(L"cover"));
}

TEST_F(Handlers, TheModulesOwnHandlerComesBackBehindALispFunction) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  eval("(dimhandler \"xzgj\" \"nobody\")");
  set_real(pipe, Key::kDiameter, 500);
  eval("(updatedim \"xzgj\" " + ename(pipe) + ")");
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN300-L=40.0m-i=2.5‰"});
  eval("(dimhandler \"xzgj\" nil)");
  eval("(updatedim \"xzgj\" " + ename(pipe) + ")");
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN500-L=40.0m-i=2.5‰"});
}

TEST_F(Handlers, ThoseOfOtherModulesStay) {
  class Other : public CDimFacade {
   public:
    int update(DimUpdateRequest&) override { return 1; }
  };
  auto* const other = new Other;
  ASSERT_TRUE(registry().regist(L"theirs", other));
  EXPECT_NE(eval("(dimhandler \"theirs\" \"redraw\")"), "T");
  EXPECT_EQ(registry().getAt(L"theirs"), other);
  registry().logout(L"theirs");
}

}  // namespace
