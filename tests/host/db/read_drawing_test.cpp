#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/base/codepage.h"
#include "tests/host/db/inserting.h"

namespace {

using testing::HasSubstr;

/// Drawing files as programs ask for them.
class ReadDrawingFile : public testing::Test {
 protected:
  ReadDrawingFile() {
    folder_ =
        std::filesystem::temp_directory_path() / ("read_drawing_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder_);
  }
  ~ReadDrawingFile() override { std::filesystem::remove_all(folder_); }
  std::wstring file(const char* name, std::string_view bytes) {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
    return path(name);
  }
  std::wstring path(const char* name) { return cad::from_utf8((folder_ / name).string()); }
  std::filesystem::path folder_;
};

TEST_F(ReadDrawingFile, ContentsDecideHowAFileIsRead) {
  for (const std::string& bytes :
       {drawing_of(kLine), spelled(plan_note(), Form::kBinary), spelled(plan_note(), Form::kR12)}) {
    AcDbDatabase database(false);
    EXPECT_EQ(database.readDwgFile(file("psjt.dwg", bytes).c_str(), 3, false), Acad::eOk);
    EXPECT_FALSE(database.first_entity().isNull());
    EXPECT_EQ(database.readDwgFile(path("psjt.dwg").c_str()), Acad::eInvalidInput);
  }
}

TEST_F(ReadDrawingFile, NamesAreFoundAsProgramsSpellThem) {
  file("PSJT.dxf", drawing_of(kLine));
  std::wstring name = path("psjt.dwg");
  name.replace(name.rfind(L'/'), 1, L"\\");
  AcDbDatabase database(false);
  EXPECT_EQ(database.readDwgFile(name.c_str()), Acad::eOk);
}

TEST_F(ReadDrawingFile, WhatCannotBeReadSaysWhy) {
  AcDbDatabase database(false);
  EXPECT_EQ(database.readDwgFile(path("none.dwg").c_str()), Acad::eFileNotFound);
  EXPECT_THAT(database.read_error().message(), testing::EndsWith("none.dwg: does not exist"));
  EXPECT_EQ(database.readDwgFile(nullptr), Acad::eFileNotFound);
  EXPECT_EQ(database.readDwgFile(path(".").c_str()), Acad::eFileNotFound);
  EXPECT_EQ(database.readDwgFile(file("empty.dwg", "").c_str()), Acad::eBadDxfSequence);
  const std::string whole = drawing_of(kLine);
  EXPECT_EQ(database.readDwgFile(file("cut.dwg", whole.substr(0, whole.size() / 2)).c_str()),
            Acad::eBadDxfSequence);
  // The shell is as good as new.
  EXPECT_EQ(database.readDwgFile(file("whole.dwg", whole).c_str()), Acad::eOk);
  EXPECT_TRUE(database.read_error().message().empty());
}

TEST_F(ReadDrawingFile, ADwgFileIsConverted) {
  const std::string path_before = std::getenv("PATH");
  const auto converter = folder_ / "dwg2dxf";
  file("made.dxf", drawing_of(kLine));
  const auto given_converter = [&](const std::string& line) {
    std::ofstream(converter) << "#!/bin/sh\n" << line << "\n";
    std::filesystem::permissions(converter, std::filesystem::perms::owner_all);
  };
  ::setenv("PATH", folder_.c_str(), 1);
  const std::wstring drawing = file("real.dwg", "AC1018 and what follows");
  AcDbDatabase database(false);
  given_converter("exit 1");
  EXPECT_EQ(database.readDwgFile(drawing.c_str()), Acad::eInvalidDwgVersion);
  EXPECT_THAT(database.read_error().message(), HasSubstr("real.dwg: is a DWG file (R2004), but"));
  given_converter("echo nonsense > \"$3\"");
  EXPECT_EQ(database.readDwgFile(drawing.c_str()), Acad::eInvalidDwgVersion);
  EXPECT_THAT(database.read_error().message(), HasSubstr("made of it cannot be read"));
  given_converter("/bin/cp '" + (folder_ / "made.dxf").string() + "' \"$3\"");
  EXPECT_EQ(database.readDwgFile(drawing.c_str()), Acad::eOk);
  EXPECT_FALSE(database.first_entity().isNull());
  EXPECT_EQ(database.save_bytes(), drawing_of(kLine));
  ::setenv("PATH", path_before.c_str(), 1);
}

}  // namespace
