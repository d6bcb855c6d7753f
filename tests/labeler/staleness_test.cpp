// Labels compared with their owners' data, and brought up to date.

#include "tests/labeler/labelling.h"

namespace {

using network::Key;

class StaleLabels : public Labelling {
 protected:
  std::string row(const std::string& owner, const std::string& type, const std::string& rest) {
    return "((\"" + owner + "\" \"" + type + "\" " + rest + "))";
  }
  std::string given_labelled_pipe() {
    const std::string pipe = given_pipe(0, 0, 40, 0);
    label_pipe(pipe);
    return pipe;
  }
};

TEST_F(StaleLabels, ALabelJustDrawnIsNot) {
  given_labelled_pipe();
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, ChangedDataAreToldPieceByPiece) {
  const std::string pipe = given_labelled_pipe();
  set_real(pipe, Key::kDiameter, 400);
  EXPECT_EQ(stale(),
            row(pipe, "xzgj", "\"pipe_dia\" \"DN300\" \"DN400\" \"data changed\" \"stale\" \"\""));
}

TEST_F(StaleLabels, ChangedDataAreWrittenIntoTheSameEntity) {
  const std::string pipe = given_labelled_pipe();
  const std::string text = text_handle(pipe);
  eval("(setq e (entget " + ename(text) + ")) (entmod (append e '((62 . 1))))");
  set_real(pipe, Key::kDiameter, 400);
  EXPECT_EQ(update(), row(pipe, "xzgj",
                          "\"pipe_dia\" \"DN300\" \"DN400\" \"data changed\" \"updated\" \"\""));
  EXPECT_EQ(text_handle(pipe), text);
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN400-L=40.0m-i=2.5‰"});
  EXPECT_EQ(eval("(cdr (assoc 62 (entget " + ename(text) + ")))"), "1");
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, ASecondUpdateChangesNoByte) {
  const std::string pipe = given_labelled_pipe();
  set_real(pipe, Key::kDiameter, 400);
  move_line(pipe, 3, 4);
  update();
  const std::string before = bytes();
  EXPECT_EQ(update(), "nil");
  EXPECT_EQ(bytes(), before);
}

TEST_F(StaleLabels, ADryRunChangesNoByte) {
  const std::string pipe = given_labelled_pipe();
  set_real(pipe, Key::kDiameter, 400);
  const std::string before = bytes();
  EXPECT_EQ(eval("(labelupdate nil nil T)"), stale());
  EXPECT_EQ(bytes(), before);
}

TEST_F(StaleLabels, AMovedPipeGetsItsLabelDrawnAnew) {
  const std::string pipe = given_labelled_pipe();
  move_line(pipe, 0, 10);
  EXPECT_EQ(stale(), row(pipe, "xzgj",
                         "\"\" \"20.000, 0.000\" \"20.000, 10.000\" \"moved\" \"stale\" \"\""));
  update();
  EXPECT_NEAR(place_of(pipe).y, 10.5, 1e-6);
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, ALabelDrawnAnewKeepsClearOfThePipesThere) {
  const std::string pipe = given_labelled_pipe();
  given_pipe(0, 501.5, 40, 501.5);
  move_line(pipe, 0, 500);
  update();
  EXPECT_LT(place_of(pipe).y, 500.0) << "above lies the other pipe";
}

TEST_F(StaleLabels, ALabelDrawnAnewKeepsClearOfTheNodesThere) {
  const std::string pipe = given_labelled_pipe();
  given_well(20, 501.5, "3");
  move_line(pipe, 0, 500);
  update();
  EXPECT_LT(place_of(pipe).y, 500.0) << "above lies the node";
}

TEST_F(StaleLabels, ALabelDrawnAnewKeepsClearOfALongTextThatBeginsFarAway) {
  const std::string pipe = given_labelled_pipe();
  made("(0 . \"TEXT\") (10 -500.0 500.5 0.0) (40 . 1.75) (1 . \"" + std::string(600, 'M') + "\")");
  move_line(pipe, 0, 500);
  update();
  EXPECT_LT(place_of(pipe).y, 500.0) << "above the text goes by";
}

TEST_F(StaleLabels, ALabelMovedByHandKeepsItsPlaceBesideThePipe) {
  const std::string pipe = given_labelled_pipe();
  const std::string text = text_handle(pipe);
  move_line(text, 5, 5);
  EXPECT_EQ(stale(), "nil") << "where somebody has put it is no fault";
  move_line(pipe, 0, 10);
  update();
  EXPECT_EQ(text_handle(pipe), text);
  EXPECT_NEAR(place_of(pipe).x, 25.0, 1e-6);
  EXPECT_NEAR(place_of(pipe).y, 15.5, 1e-6);
  EXPECT_EQ(stale(), "nil");
  move_line(pipe, 0, -10);
  update();
  EXPECT_NEAR(place_of(pipe).y, 5.5, 1e-6) << "and is still known as moved";
}

TEST_F(StaleLabels, ALabelMovedByHandIsWrittenWhereItIs) {
  const std::string pipe = given_labelled_pipe();
  move_line(text_handle(pipe), 5, 5);
  set_real(pipe, Key::kDiameter, 400);
  update();
  EXPECT_NEAR(place_of(pipe).x, 25.0, 1e-6);
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN400-L=40.0m-i=2.5‰"});
}

TEST_F(StaleLabels, AnEditedTextIsToldAndKept) {
  const std::string pipe = given_labelled_pipe();
  set_text(text_handle(pipe), "see detail 5");
  EXPECT_EQ(update(), row(pipe, "xzgj",
                          "\"pipe_dia\" \"see detail 5\" \"DN300-L=40.0m-i=2.5‰\" "
                          "\"edited by hand\" \"kept\" \"\""));
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"see detail 5"});
}

TEST_F(StaleLabels, AnEditedTextIsOverwrittenWhenAskedFor) {
  const std::string pipe = given_labelled_pipe();
  set_text(text_handle(pipe), "see detail 5");
  eval("(labelupdate nil T)");
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN300-L=40.0m-i=2.5‰"});
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, ATextEditedToWhatItShouldBeIsNoEdit) {
  const std::string pipe = given_labelled_pipe();
  set_real(pipe, Key::kDiameter, 400);
  eval(
      "(setq e (entget " + ename(text_handle(pipe)) +
      ")) (entmod (subst (cons 1 (strcat \"DN400\" (substr (cdr (assoc 1 e)) 6))) (assoc 1 e) e))");
  EXPECT_NE(stale().find("data changed"), std::string::npos);
  EXPECT_EQ(stale().find("edited"), std::string::npos);
  update();
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, ALabelErasedByTheUserStaysErased) {
  const std::string pipe = given_labelled_pipe();
  erase(text_handle(pipe));
  set_real(pipe, Key::kDiameter, 400);
  EXPECT_EQ(update(), "nil");
  EXPECT_TRUE(texts_of(pipe).empty());
}

TEST_F(StaleLabels, ALabelOfWhichAPartIsGoneIsDrawnAnew) {
  const std::string pipe = given_pipe(0, 0, 40, 0, real_pair("flow", 3));
  label_pipe(pipe, "\"pcgb\"");
  erase(text_handle(pipe, L"pcgb"));
  EXPECT_NE(stale().find("\"incomplete\""), std::string::npos) << stale();
  update();
  EXPECT_EQ(texts_of(pipe, L"pcgb").size(), 2u);
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, ALabelMovedByHandAndDrawnAnewKeepsItsPlaceBesideThePipe) {
  const std::string pipe = given_pipe(0, 0, 40, 0, real_pair("flow", 3));
  label_pipe(pipe, "\"pcgb\"");
  const labeler::StoredLabel label = label_of(pipe, L"pcgb");
  ASSERT_EQ(label.lines.size(), 2u);
  const AcGePoint3d drawn = place_of(pipe, L"pcgb");
  for (const labeler::StoredLine& line : label.lines) move_line(cad::to_utf8(line.handle), 5, 5);
  erase(cad::to_utf8(label.lines[1].handle));
  EXPECT_NE(update().find("\"redrawn\""), std::string::npos);
  EXPECT_EQ(texts_of(pipe, L"pcgb").size(), 2u);
  EXPECT_NEAR(place_of(pipe, L"pcgb").x, drawn.x + 5, 1e-6);
  EXPECT_NEAR(place_of(pipe, L"pcgb").y, drawn.y + 5, 1e-6);
}

TEST_F(StaleLabels, ACopiedPipeHasNoLabelAndLeavesThatOfTheOriginal) {
  const std::string pipe = given_labelled_pipe();
  const std::string text = text_handle(pipe);
  eval("(command \"_.COPY\" " + ename(pipe) + " \"\" '(0.0 0.0) '(0.0 30.0) \"\")");
  std::string copy = eval("(cdr (assoc 5 (entget (entlast))))");
  copy = copy.substr(1, copy.size() - 2);
  ASSERT_NE(copy, pipe);
  ASSERT_TRUE(has_label(copy)) << "the record was copied with it";
  EXPECT_EQ(update(), "nil");
  EXPECT_EQ(texts_of(pipe).size(), 1u);
  EXPECT_TRUE(texts_of(copy).empty());
  EXPECT_NE(label_pipe(copy).find("(\"drawn\" 1)"), std::string::npos);
  EXPECT_EQ(text_handle(pipe), text);
  EXPECT_EQ(texts_of(pipe).size(), 1u);
  EXPECT_EQ(texts_of(copy).size(), 1u);
  EXPECT_NE(text_handle(copy), text);
  EXPECT_EQ(stale(), "nil");
}

/// The items of the first text name another entity.
void redirect(AcDbObjectId pipe, const std::string& handle) {
  std::vector<StuDim> items = labeler::read_items(pipe, L"pcgb");
  const CString first = items.front().handle;
  dim::ItemTexts redirected;
  for (StuDim& item : items) {
    if (item.handle == first) item.handle = cad::from_utf8(handle);
    redirected.add(item);
  }
  EXPECT_EQ(labeler::file_label(pipe, L"pcgb", redirected), Acad::eOk);
}

TEST_F(StaleLabels, WhatARecordNamesByMistakeIsNeitherWrittenNorErased) {
  const std::string other = given_labelled_pipe();
  const std::string circle = made("(0 . \"CIRCLE\") (10 0.0 90.0 0.0) (40 . 1.0)");
  const std::string well = given_well(0, 50, "7");
  const std::string pipe = given_pipe(0, 60, 40, 60, real_pair("flow", 3));
  label_pipe(pipe, "\"pcgb\"");
  for (const std::string& named : {circle, well, pipe, other, text_handle(other)}) {
    SCOPED_TRACE(named);
    const std::string before = eval("(entget " + ename(named) + ")");
    redirect(id(pipe), named);
    EXPECT_NE(update().find("\"incomplete\" \"redrawn\""), std::string::npos);
    EXPECT_EQ(eval("(entget " + ename(named) + ")"), before);
    EXPECT_EQ(texts_of(pipe, L"pcgb").size(), 2u);
    EXPECT_EQ(stale(), "nil");
  }
}

TEST_F(StaleLabels, ThePiecesOfATextComeTogetherHoweverManyTextsThereAre) {
  const AcDbObjectId pipe = id(given_pipe(0, 0, 40, 0));
  for (const std::size_t texts : {1, 2, 16, 17, 18, 100}) {
    std::vector<CString> names, handles;
    for (std::size_t i = 0; i < texts; ++i) {
      names.push_back(L"n" + std::to_wstring(i));
      handles.push_back(L"F00" + std::to_wstring(i));
    }
    dim::ItemTexts items;
    for (const wchar_t* value : {L"first", L"second"})
      for (std::size_t i = 0; i < texts; ++i)
        items.add_piece(names[i], handles[i], {}, value, {}, {});
    ASSERT_EQ(labeler::file_label(pipe, L"pcgb", items), Acad::eOk);
    const std::optional<labeler::StoredLabel> label = labeler::read_label(pipe, L"pcgb");
    ASSERT_TRUE(label);
    ASSERT_EQ(label->lines.size(), texts);
    for (std::size_t i = 0; i < texts; ++i) {
      EXPECT_EQ(label->lines[i].handle, handles[i]);
      ASSERT_EQ(label->lines[i].line.pieces.size(), 2u);
      EXPECT_EQ(label->lines[i].line.pieces[0].value, L"first");
      EXPECT_EQ(label->lines[i].line.pieces[1].value, L"second");
    }
  }
}

TEST_F(StaleLabels, AValueThatCameToBeKnownIsAdded) {
  const std::string pipe = made("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 40.0 0.0 0.0)" +
                                data(text_pair("kind", "drainage-pipe") +
                                     real_pair("diameter", 300) + real_pair("start_invert", 10.2)));
  label_pipe(pipe);
  set_real(pipe, Key::kEndInvert, 10.1);
  update();
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN300-L=40.0m-i=2.5‰"});
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, AnArrowAgainstTheFlowIsTurnedAboutItsMiddle) {
  const std::string pipe = given_pipe_with_wells(0, 0, 40, 0);
  label_pipe(pipe);
  set_real(pipe, Key::kEndInvert, 10.3);  // the slope has the same size
  EXPECT_EQ(update(),
            row(pipe, "xzgj", "\"jt\" \"0.00\" \"180.00\" \"data changed\" \"updated\" \"\""));
  dim::Opened<AcDbBlockReference> arrow(label_of(pipe).arrow, AcDb::kForRead);
  ASSERT_TRUE(arrow);
  EXPECT_NEAR(arrow->position().x, 20.0 + 3.75, 1e-6);
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, AWellPipeLabelFollowsItsPipesAndKeepsItsPlacement) {
  const std::string well = given_well(0, 0, "1");
  const std::string pipe = given_pipe(0, 0, 40, 0, node_pair("start_node", well));
  eval("(labelwell " + ename(well) + " \"bzjg\")");
  const std::string placement = eval("(jgbzUpInfo " + ename(well) + ")");
  set_real(pipe, Key::kStartInvert, 10.5);
  update();
  EXPECT_EQ(texts_of(well, L"bzjg"), (std::vector<std::wstring>{L"1", L"DN300 10.500"}));
  given_pipe(0, 0, 0, 40, node_pair("start_node", well));
  update();
  EXPECT_EQ(texts_of(well, L"bzjg").size(), 3u);
  EXPECT_EQ(eval("(jgbzUpInfo " + ename(well) + ")"), placement);
  erase(pipe);
  update();
  EXPECT_EQ(texts_of(well, L"bzjg").size(), 2u);
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, StakesFollowTheirRoute) {
  const std::string route = made("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 120.0 0.0 0.0)");
  eval("(labelroute " + ename(route) + " 50)");
  EXPECT_EQ(stale(), "nil");
  eval("(setq e (entget " + ename(route) +
       ")) (entmod (subst '(11 160.0 0.0 0.0) (assoc 11 e) e))");
  update();
  EXPECT_EQ(texts_of(route, labeler::kStakeType).size(), 5u);
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, AnOwnerWithoutDataIsToldAndItsLabelLeft) {
  const std::string pipe = given_labelled_pipe();
  eval("(entmod '((-1 . nil)))");
  eval("(setq e (entget " + ename(pipe) + ")) (entmod (append e '((-3 (\"PIPENOTE\")))))");
  EXPECT_NE(update().find("\"no data\" \"kept\""), std::string::npos);
  EXPECT_EQ(texts_of(pipe).size(), 1u);
}

TEST_F(StaleLabels, ALabelWhoseOwnerIsGoneIsToldAndLeft) {
  const std::string pipe = given_labelled_pipe();
  const std::string text = text_handle(pipe);
  erase(pipe);
  EXPECT_EQ(update(), "((\"" + text + "\" \"\" \"\" \"\" \"its owner " + pipe +
                          " is gone\" \"owner gone\" \"kept\" \"\"))");
}

TEST_F(StaleLabels, ALabelOnALockedLayerIsLeftWholeAndTheOthersAreUpdated) {
  const std::string locked = given_labelled_pipe();
  const std::string free = given_pipe(0, 20, 40, 20);
  label_pipe(free);
  eval(
      "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . "
      "\"AcDbLayerTableRecord\") (2 . \"MINE\") (70 . 0)))");
  eval("(setq e (entget " + ename(text_handle(locked)) +
       ")) (entmod (subst '(8 . \"MINE\") (assoc 8 e) e))");
  lock_layer("MINE");
  for (const std::string& pipe : {locked, free}) set_real(pipe, Key::kDiameter, 400);
  const std::string result = update();
  EXPECT_NE(result.find("\"failed\" \"its layer is locked\""), std::string::npos) << result;
  EXPECT_NE(result.find("\"updated\""), std::string::npos) << result;
  EXPECT_EQ(item(locked, L"pipe_dia").value, L"300") << "the record keeps its items";
  lock_layer("MINE", false);
  update();
  EXPECT_EQ(stale(), "nil");
}

TEST_F(StaleLabels, AnOwnerOnALockedLayerIsToldAndItsLabelLeft) {
  const std::string pipe = given_labelled_pipe();
  eval(
      "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . "
      "\"AcDbLayerTableRecord\") (2 . \"MINE\") (70 . 0)))");
  eval("(setq e (entget " + ename(pipe) + ")) (entmod (subst '(8 . \"MINE\") (assoc 8 e) e))");
  move_line(pipe, 0, 10);
  const std::string text = text_handle(pipe);
  lock_layer("MINE");
  const std::string result = update();
  EXPECT_NE(result.find("\"moved\" \"failed\" \"its layer is locked\""), std::string::npos)
      << result;
  EXPECT_EQ(text_handle(pipe), text) << "the label is still there";
}

TEST_F(StaleLabels, OwnersCanBeNamed) {
  const std::string first = given_labelled_pipe();
  const std::string second = given_pipe(0, 20, 40, 20);
  label_pipe(second);
  for (const std::string& pipe : {first, second}) set_real(pipe, Key::kDiameter, 400);
  eval("(labelupdate (list " + ename(second) + "))");
  const std::string left = stale();
  EXPECT_NE(left.find("\"" + first + "\""), std::string::npos);
  EXPECT_EQ(left.find("\"" + second + "\""), std::string::npos);
}

TEST_F(StaleLabels, WrongExtendedDataIsNoCrash) {
  const std::string pipe = given_labelled_pipe();
  eval("(setq e (entget " + ename(pipe) +
       ")) (entmod (append e '((-3 (\"PIPENOTE\" (1000 . \"kind\") (1000 . \"drainage-pipe\") "
       "(1000 . "
       "\"diameter\") (1000 . \"wide\") (1070 . 3))))))");
  EXPECT_NE(update().find("\"redrawn\""), std::string::npos);
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"L=40.0m"});
  EXPECT_EQ(stale(), "nil");
}

}  // namespace
