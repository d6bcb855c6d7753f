#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/app/host.h"
#include "module/platform/lisp.h"
#include "module/platform/opened.h"
#include "module/platform/pipe_library.h"
#include "module/record/item_chain.h"
#include "tests/module/plan.h"

/// The module loaded into a host with a drawing open, driven from LISP. What is printed is kept.
/// In the drawing, LISP finds (e "2F") for the entity of a handle.
class LispHost : public ::testing::Test {
 protected:
  void SetUp() override {
    if (cad::host_settings().install_dir.empty())
      cad::host_settings().install_dir = network::default_install_dir();
    const cad::Status loaded = host.load_module("pipenote.arx");
    ASSERT_TRUE(loaded) << loaded.error().message();
    given(Plan::bytes());
  }
  void TearDown() override {
    for (AcApDocument* open : acDocManagerPtr()->documents()) {
      EXPECT_TRUE(open->database()->open_objects().empty());
    }
    cad::host_settings().install_dir.clear();
  }

  void given(std::string bytes) {
    auto opened = host.open_bytes(std::move(bytes), "plan");
    ASSERT_TRUE(opened) << opened.error().message();
    work_on(*opened);
  }
  /// With all tables that entities of LISP programs refer to.
  void given_empty_drawing() { work_on(host.new_drawing()); }
  /// What saving writes, opened in place of the drawing.
  void reopen() {
    const std::string saved = document->database()->save_bytes();
    host.close(document);
    given(saved);
  }

  /// The value as prin1 writes it, or "error".
  std::string eval(const std::string& program) {
    const auto value = host.eval_string(document, program);
    return value ? cad::Host::printed(*value) : "error";
  }
  /// What a call printed that must fail, without the host's own report of the LISP error.
  std::string failure(const std::string& program) {
    printed.take();
    EXPECT_EQ(eval(program), "error") << program;
    std::string said = printed.take();
    const std::size_t report = said.find("; error: ");
    EXPECT_NE(report, std::string::npos) << program << " printed " << said;
    said.resize(std::min(report, said.size()));
    if (said.ends_with('\n')) said.pop_back();
    return said;
  }
  /// The same for a call that must succeed; its value goes into `value`.
  std::string said(const std::string& program, std::string& value) {
    printed.take();
    value = eval(program);
    EXPECT_NE(value, "error") << program << " printed " << printed.text();
    return printed.take();
  }

  AcDbObjectId id(const wchar_t* handle) {
    AcDbObjectId found;
    document->database()->getAcDbObjectId(found, false, AcDbHandle(handle));
    return found;
  }
  AcDbObjectId extension_dictionary(const wchar_t* owner) {
    const dim::Opened<AcDbEntity> entity(id(owner), AcDb::kForRead, true);
    return entity ? entity->extensionDictionary() : AcDbObjectId();
  }
  /// The items of that type on the entity; none when it has no such record.
  Items items(const wchar_t* type = L"pcgb", const wchar_t* owner = L"2F") {
    Items found;
    AcDbObjectId record;
    const dim::Opened<AcDbDictionary> dictionary(extension_dictionary(owner), AcDb::kForRead);
    if (!dictionary || dictionary->getAt(type, record) != Acad::eOk) return found;
    const dim::Opened<AcDbXrecord> xrecord(record, AcDb::kForRead);
    resbuf* chain = nullptr;
    xrecord->rbChain(&chain);
    const dim::ResbufChain owned(chain);
    StuDim item;
    for (resbuf* at = chain; dim::read_item(at, item); at = dim::link_to(at, 8)) {
      found.push_back(item);
    }
    return found;
  }
  /// The text of the TEXT or MTEXT of that handle.
  std::string text(const std::string& handle) {
    return eval("(cdr (assoc 1 (entget (e \"" + handle + "\"))))");
  }

  cad::Host host;
  Printed printed;
  AcApDocument* document = nullptr;

 private:
  void work_on(AcApDocument* opened) {
    document = opened;
    eval("(defun e (h) (handent h))");
  }
};
