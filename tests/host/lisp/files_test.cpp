#include <filesystem>
#include <fstream>

#include "session.h"

namespace cad::lisp {
namespace {

class LispFiles : public Session {
 protected:
  void SetUp() override {
    folder =
        std::filesystem::path(::testing::TempDir()) /
        (std::string("lisp_") + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    interp.set_variable(L"DIR", interp.string(from_utf8(folder.string() + "/")));
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  std::string write(const std::string& name, std::string_view bytes) {
    const std::string path = (folder / name).string();
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  std::string bytes_of(const std::string& name) {
    std::ifstream in(folder / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  std::filesystem::path folder;
};

TEST_F(LispFiles, SourceFilesAreUtf8OrTheChineseCodePage) {
  // 0xB5 0x5C is one character whose second byte looks like a backslash.
  (void)interp.load_file(
      write("gbk.lsp", "(setq a \"\xB5\x5C\" b \"\xB9\xDC\xBE\xB6\") ;\xB5\x5C\n(setq c 1)"));
  EXPECT_EQ(value_of("(list a b c (strlen a))"), "(\"礬\" \"管径\" 1 1)") << output;
  (void)interp.load_file(write("utf8.lsp", "(setq a \"管径\")"));
  EXPECT_EQ(value_of("a"), "\"管径\"");
  (void)interp.load_file(write("marked.lsp", "\xEF\xBB\xBF(setq a \"标\")"));
  EXPECT_EQ(value_of("a"), "\"标\"");
  (void)interp.load_file(write("dos.lsp", "(setq a 5)\r\n(setq b\r\n6)\r\n\x1A"));
  EXPECT_EQ(value_of("(list a b)"), "(5 6)");
}

TEST_F(LispFiles, CharactersMayEndInABarOrABackslash) {
  // 0x8A 0x7C is one character, and so is 0x81 0x5C.
  (void)interp.load_file(write("bar.lsp",
                               "(setq a \"\x8A\x7C\") ;| \x8A\x7C; still a comment |;\n"
                               "(setq b \"\x81\x5C\" c 1)"));
  EXPECT_EQ(value_of("(list (strlen a) (strlen b) c)"), "(1 1 1)") << output;
}

TEST_F(LispFiles, LinesMayEndInCarriageReturns) {
  const Result<Value> result = interp.load_file(
      write("mac.lsp", "(setq a \"one\rtwo\") ; comment\r(setq b 1)\r\r(car b)\r"));
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().where, (folder / "mac.lsp").string() + ":5");
  EXPECT_EQ(value_of("(list a b)"), "(\"one\\ntwo\" 1)");
  (void)interp.load_file(write("dos.lsp", "(setq a \"one\r\ntwo\")"));
  EXPECT_EQ(value_of("a"), "\"one\\ntwo\"");
}

TEST_F(LispFiles, UnbalancedParenthesesNameTheirLine) {
  const auto where = [&](const std::string& name, const std::string& text) {
    const Result<Value> result = interp.load_file(write(name, text));
    return result ? "read" : result.error().message();
  };
  EXPECT_EQ(where("open.lsp", "(setq a 1)\n\n(defun f (x)\n  (if x 1)\n"),
            (folder / "open.lsp").string() + ":3: malformed list on input");
  EXPECT_EQ(where("extra.lsp", "(setq a 1)\n(setq b 2))\n"),
            (folder / "extra.lsp").string() + ":2: extra right paren on input");
  EXPECT_EQ(where("text.lsp", "\n(princ \"never ended)\n"),
            (folder / "text.lsp").string() + ":2: malformed string on input");
}

TEST_F(LispFiles, LoadGivesTheLastValueAndNamesTheLineOfAnError) {
  write("good.lsp", "(setq a 1)\n(+ a 1)");
  write("bad.lsp", "(setq a 1)\n\n(car a)");
  write("outer.lsp", "\n(load (strcat dir \"bad\"))");
  EXPECT_EQ(value_of("(load (strcat dir \"good\"))"), "2");
  EXPECT_EQ(value_of("(load (strcat dir \"good.lsp\"))"), "2");
  const Result<Value> result = interp.load_file((folder / "outer.lsp").string());
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().where, (folder / "bad.lsp").string() + ":3");
}

TEST_F(LispFiles, AMissingFileHasASubstitute) {
  EXPECT_EQ(value_of("(load \"nosuch\" \"failed\")"), "\"failed\"");
  EXPECT_EQ(value_of("(load \"nosuch\" '(lambda () 1))"), "(LAMBDA nil 1)");
  EXPECT_EQ(value_of("(defun instead () 7) (load \"nosuch\" 'instead)"), "7");
  EXPECT_EQ(value_of("(load \"nosuch\" nil)"), "nil");
  EXPECT_FALSE(interp.load_file("nosuch.lsp"));
}

TEST_F(LispFiles, AFileThatLoadsItselfIsAnError) {
  const std::string path = write("self.lsp", "(load (strcat dir \"self\"))");
  EXPECT_EQ(value_of("(load (strcat dir \"self\"))"), "!internal stack limit reached (simulated)");
}

TEST_F(LispFiles, LinesAreReadWithoutTheirEnds) {
  write("lines.txt", "one\r\ntwo\n\nfour\rlast");
  EXPECT_EQ(value_of("(setq f (open (strcat dir \"lines.txt\") \"r\"))"
                     "(while (setq line (read-line f)) (setq all (cons line all)))"
                     "(close f) (reverse all)"),
            "(\"one\" \"two\" \"\" \"four\" \"last\")");
}

TEST_F(LispFiles, CharactersAreReadOneByOne) {
  write("chars.txt", "a\r\n管");
  EXPECT_EQ(value_of("(setq f (open (strcat dir \"chars.txt\") \"r\"))"
                     "(list (read-char f) (read-char f) (read-char f) (read-char f))"),
            "(97 10 31649 nil)");
}

TEST_F(LispFiles, WhatIsWrittenStandsInTheFile) {
  value_of(
      "(setq f (open (strcat dir \"out.txt\") \"w\"))"
      "(write-line \"管\" f) (princ \"a\" f) (prin1 \"b\" f) (print 1.5 f) (write-char 65 f)"
      "(close f) (setq f (open (strcat dir \"out.txt\") \"a\")) (write-line \"more\" f) (close f)");
  EXPECT_EQ(bytes_of("out.txt"), "管\na\"b\"\n1.5 Amore\n");
  EXPECT_EQ(taken_output(), "");
}

TEST_F(LispFiles, MisusedFilesAreErrors) {
  EXPECT_EQ(value_of("(open (strcat dir \"nosuch\") \"r\")"), "nil");
  EXPECT_EQ(value_of("(open (strcat dir \"no/such\") \"w\")"), "nil");
  EXPECT_EQ(value_of("(open dir \"w\")"), "nil");
  EXPECT_EQ(value_of("(open dir \"r\")"), "nil");
  EXPECT_EQ(value_of("(open \"x\" \"z\")"), "!bad argument value: file mode: \"z\"");
  value_of("(setq f (open (strcat dir \"a.txt\") \"w\"))");
  EXPECT_EQ(value_of("(type f)"), "FILE");
  EXPECT_EQ(value_of("(read-line f)").substr(0, 50),
            "!bad argument value: file not open for reading: #<");
  value_of("(close f)");
  EXPECT_EQ(value_of("(write-line \"x\" f)").substr(0, 50),
            "!bad argument value: file not open for writing: #<");
  EXPECT_EQ(value_of("(close f)").substr(0, 42), "!bad argument value: file already closed: ");
  EXPECT_EQ(value_of("(princ 1 2)"), "!bad argument type: streamp: 2");
}

TEST_F(LispFiles, AFullDiskIsReportedWhenTheFileIsClosed) {
  EXPECT_EQ(value_of("(setq f (open \"/dev/full\" \"w\")) (write-line \"x\" f) (close f)"),
            "!cannot write to file: /dev/full");
}

TEST_F(LispFiles, NamesAreTakenApart) {
  EXPECT_EQ(value_of(R"((mapcar 'vl-filename-base '("c:\\a\\b.c.lsp" "b" "a/.x" "c:z.t")))"),
            R"(("b.c" "b" "" "z"))");
  EXPECT_EQ(value_of(R"((mapcar 'vl-filename-directory '("c:\\a\\b.lsp" "b" "/x" "a.b/c")))"),
            R"(("c:\\a" "" "/" "a.b"))");
  EXPECT_EQ(value_of(R"((mapcar 'vl-filename-extension '("a.lsp" "a" "a.b/c")))"),
            R"((".lsp" nil nil))");
  EXPECT_EQ(value_of(R"((fnsplitl "c:\\a\\b.lsp"))"), R"(("c:\\a\\" "b" ".lsp"))");
}

TEST_F(LispFiles, FilesAreManaged) {
  write("a.txt", "12345");
  write("b.dat", "");
  EXPECT_EQ(value_of("(vl-file-size (strcat dir \"a.txt\"))"), "5");
  EXPECT_EQ(value_of("(vl-file-size (strcat dir \"nosuch\"))"), "nil");
  EXPECT_EQ(value_of("(vl-file-copy (strcat dir \"a.txt\") (strcat dir \"c.txt\"))"), "5");
  EXPECT_EQ(value_of("(vl-file-copy (strcat dir \"a.txt\") (strcat dir \"c.txt\"))"), "nil");
  EXPECT_EQ(value_of("(vl-file-copy (strcat dir \"a.txt\") (strcat dir \"c.txt\") T)"), "5");
  EXPECT_EQ(bytes_of("c.txt"), "1234512345");
  EXPECT_EQ(value_of("(vl-file-copy (strcat dir \"b.dat\") (strcat dir \"c.txt\") T)"), "0");
  EXPECT_EQ(value_of("(vl-file-rename (strcat dir \"c.txt\") (strcat dir \"b.dat\"))"), "nil");
  EXPECT_EQ(value_of("(vl-file-rename (strcat dir \"c.txt\") (strcat dir \"D.TXT\"))"), "T");
  EXPECT_EQ(value_of("(vl-mkdir (strcat dir \"sub\"))"), "T");
  EXPECT_EQ(value_of("(vl-mkdir (strcat dir \"sub\"))"), "nil");
  EXPECT_EQ(value_of("(list (vl-file-directory-p (strcat dir \"sub\")) (vl-file-directory-p "
                     "(strcat dir \"a.txt\")))"),
            "(T nil)");
  EXPECT_EQ(value_of("(vl-directory-files dir \"*.txt\" 1)"), R"(("D.TXT" "a.txt"))");
  EXPECT_EQ(value_of("(vl-directory-files dir nil -1)"), R"(("." ".." "sub"))");
  EXPECT_EQ(value_of("(vl-directory-files (strcat dir \"nosuch\"))"), "nil");
  EXPECT_EQ(value_of("(vl-file-delete (strcat dir \"sub\"))"), "nil");
  EXPECT_EQ(
      value_of("(list (vl-file-delete (strcat dir \"a.txt\")) (findfile (strcat dir \"a.txt\")))"),
      "(T nil)");
}

TEST_F(LispFiles, TemporaryNamesAreFree) {
  write("t1.x", "");
  EXPECT_EQ(value_of("(vl-filename-mktemp \"t.x\" dir)"), "\"" + folder.string() + "/t2.x\"");
}

TEST_F(LispFiles, TheApplicationFindsAndPlacesFiles) {
  const std::string path = write("real.lsp", "42");
  Services services = collecting(output);
  services.find_file = [&](std::wstring_view name) -> std::optional<std::string> {
    if (name != L"anywhere.lsp") return std::nullopt;
    return path;
  };
  services.place_file = [&](std::wstring_view name) { return (folder / to_utf8(name)).string(); };
  services.read_line = [] { return std::wstring(L"typed"); };
  Interpreter host(services);
  const Result<Value> result = host.eval_string(
      "(setq f (open \"new.txt\" \"w\")) (princ 1 f) (close f)"
      "(list (load \"anywhere\") (findfile \"anywhere.lsp\") (read-line) (read-char))");
  ASSERT_TRUE(result);
  EXPECT_EQ(shown(*result), "(42 \"" + path + "\" \"typed\" 116)");
  EXPECT_EQ(bytes_of("new.txt"), "1");
}

}  // namespace
}  // namespace cad::lisp
