#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/host/app/command/command_test.h"

namespace {

class Block : public WithCommands {
 protected:
  void given_well() {
    eval(R"((command "CIRCLE" "10,10" 1) (setq c (entlast)))");
    eval(R"((command "ATTDEF" "" "NUMBER" "Well number" "W0" "10,12" 2 0) (setq a (entlast)))");
    eval(R"((command "BLOCK" "WELL" "10,10" c a ""))");
  }
};

TEST_F(Block, ObjectsBecomeABlock) {
  given_well();
  EXPECT_EQ(entities(), "nil");
  EXPECT_NE(eval("(tblsearch \"BLOCK\" \"WELL\")"), "nil");
  eval(R"((command "OOPS"))");
  EXPECT_EQ(entities(), "(\"CIRCLE\" \"ATTDEF\")");
}

TEST_F(Block, AnInsertTakesItsValues) {
  given_well();
  eval(R"((command "-INSERT" "WELL" "100,50" 2 "" 90 "W7"))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(entities(), "(\"INSERT\" \"ATTRIB\" \"SEQEND\")");
  EXPECT_EQ(last("(2 10 41 42 50)"), "(\"WELL\" (100.0 50.0 0.0) 2.0 2.0 1.5708)");
  EXPECT_EQ(eval("(mapcar '(lambda (c) (cdr (assoc c (entget (entnext (entlast))))))"
                 " '(1 2 10 40 50))"),
            "(\"W7\" \"NUMBER\" (96.0 50.0 0.0) 4.0 1.5708)");
  reopened();
  EXPECT_EQ(entities(), "(\"INSERT\" \"ATTRIB\" \"SEQEND\")");
}

TEST_F(Block, WithoutAttreqTheDefaultsAreTaken) {
  given_well();
  eval(R"((setvar "ATTREQ" 0) (command "INSERT" "WELL" "0,0" 1 1 0))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(eval("(cdr (assoc 1 (entget (entnext (entlast)))))"), "\"W0\"");
}

TEST_F(Block, PresetScaleAndRotationAreNotAskedAgain) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "DOT" "0,0" "L" ""))");
  eval(R"((command "INSERT" "DOT" "S" 3 "R" 45 "5,5"))");
  EXPECT_EQ(last("(10 41 42 43 50)"), "((5.0 5.0 0.0) 3.0 3.0 3.0 0.785398)");
}

TEST_F(Block, AStarInsertsThePieces) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "DOT" "0,0" "L" ""))");
  eval(R"((command "INSERT" "*DOT" "5,5" 2 0))");
  EXPECT_EQ(entities(), "(\"CIRCLE\")");
  EXPECT_EQ(last("(10 40)"), "((5.0 5.0 0.0) 2.0)");
}

TEST_F(Block, AnUnknownBlockIsRefused) {
  eval(R"((command "INSERT" "NONE" "0,0" 1 1 0))");
  EXPECT_TRUE(told("the drawing has no block \"NONE\", and there is no drawing file of that name"));
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(entities(), "nil");
}

TEST_F(Block, ABlockMayNotShowItself) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "A" "0,0" "L" ""))");
  eval(R"((command "INSERT" "A" "0,0" 1 1 0) (command "BLOCK" "B" "0,0" "L" ""))");
  eval(R"((command "INSERT" "B" "0,0" 1 1 0) (command "BLOCK" "A" "Y" "0,0" "L" ""))");
  EXPECT_TRUE(told("Block references itself"));
}

TEST_F(Block, AnArrayOfABlock) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "DOT" "0,0" "L" ""))");
  eval(R"((command "MINSERT" "DOT" "0,0" 1 1 0 2 3 10 20))");
  EXPECT_EQ(last("(70 71 44 45)"), "(3 2 20.0 10.0)");
}

/// A folder with drawings, which is the project's.
class BlockFile : public Block {
 protected:
  BlockFile() {
    folder_ = std::filesystem::temp_directory_path() / ("block_file_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder_ / "Symbols");
    cad::host_settings().project_dir = folder_.string();
    save("Symbols/Pump.dxf", R"((command "CIRCLE" "0,0" 1) (command "LAYER" "M" "GAS" ""))"
                             R"((command "LINE" "0,0" "5,0" "") (command "BASE" "1,1"))");
  }
  ~BlockFile() override { std::filesystem::remove_all(folder_); }

  /// Draws into a side drawing and saves it there.
  void save(const char* name, std::string_view program) {
    AcApDocument* const before = acDocManager->curDocument();
    AcApDocument* const side = host.new_drawing();
    EXPECT_TRUE(host.eval_string(side, program));
    EXPECT_TRUE(host.save(side, (folder_ / name).string()));
    host.close(side);
    acDocManager->setCurDocument(before);
  }
  std::string path(const char* name) { return (folder_ / name).string(); }

  std::filesystem::path folder_;
};

TEST_F(BlockFile, ADrawingFileIsInsertedAsABlock) {
  eval(R"((command "-INSERT" "symbols\\PUMP" "10,10" 1 1 0))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(last("(0 2 10)"), "(\"INSERT\" \"PUMP\" (10.0 10.0 0.0))");
  EXPECT_NE(eval("(tblsearch \"LAYER\" \"GAS\")"), "nil");
  EXPECT_EQ(eval("(cdr (assoc 10 (tblsearch \"BLOCK\" \"pump\")))"), "(1.0 1.0 0.0)");
  reopened();
  EXPECT_EQ(last("(0 2)"), "(\"INSERT\" \"PUMP\")");
}

TEST_F(BlockFile, TheNameInFrontOfTheEqualsSignIsTheBlocks) {
  eval(R"((command "_.INSERT" "P1=Symbols/Pump.dwg" "0,0" 1 1 0))");
  EXPECT_EQ(last("(2)"), "(\"P1\")");
  EXPECT_EQ(eval("(tblsearch \"BLOCK\" \"Pump\")"), "nil");
  // Without a point the block is there all the same.
  eval(R"((command "_.INSERT" "P2=Symbols/Pump" nil))");
  EXPECT_NE(eval("(tblsearch \"BLOCK\" \"P2\")"), "nil");
}

TEST_F(BlockFile, ABlockThereIsIsRedefinedOnRequest) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "PUMP" "0,0" "L" ""))");
  const char* const first =
      "(cdr (assoc 0 (entget (entnext (cdr (assoc -2 (tblsearch \"BLOCK\""
      " \"PUMP\")))))))";
  eval(R"((command "INSERT" "PUMP=Symbols/Pump" "N" "0,0" 1 1 0))");
  EXPECT_NE(eval(first), "\"LINE\"");
  eval(R"((command "INSERT" "PUMP=Symbols/Pump" "Y" "0,0" 1 1 0))");
  EXPECT_EQ(eval(first), "\"LINE\"");
  eval(R"((setvar "EXPERT" 2) (command "INSERT" "PUMP=Symbols/Pump" "0,0" 1 1 0))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  // A plain name is the block's, though there is a file.
  EXPECT_EQ(last("(0 2)"), "(\"INSERT\" \"PUMP\")");
}

TEST_F(BlockFile, AStarInsertsThePiecesOfAFile) {
  eval(R"((command "INSERT" "*Symbols/Pump" "1,1" 1 0))");
  EXPECT_EQ(entities(), "(\"CIRCLE\" \"LINE\")");
}

TEST_F(BlockFile, UndoTakesTheBlockAway) {
  eval(R"((command "INSERT" "Symbols/Pump" "0,0" 1 1 0) (command "UNDO" 1))");
  EXPECT_EQ(entities(), "nil");
  EXPECT_EQ(eval("(tblsearch \"BLOCK\" \"PUMP\")"), "nil");
  EXPECT_EQ(eval("(tblsearch \"LAYER\" \"GAS\")"), "nil");
}

TEST_F(BlockFile, WhatCannotBeInsertedIsRefused) {
  eval(R"((command "INSERT" "P=nowhere/none" "0,0" 1 1 0))");
  EXPECT_TRUE(told("there is no drawing file for the block \"P\""));
  std::ofstream(folder_ / "damaged.dxf") << "  0\nSECTION\n  2\nENTITIES\n";
  eval(R"((command "INSERT" "damaged" "0,0" 1 1 0))");
  EXPECT_TRUE(told("damaged.dxf"));
  save("ring.dxf", R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "RING" "0,0" "L" ""))");
  eval(R"((command "INSERT" "ring" "0,0" 1 1 0))");
  EXPECT_TRUE(told("contains a block of that name itself"));
  EXPECT_EQ(entities(), "nil");
  EXPECT_EQ(eval("(tblsearch \"BLOCK\" \"RING\")"), "nil");
}

}  // namespace
