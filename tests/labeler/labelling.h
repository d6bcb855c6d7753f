#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "host/app/host.h"
#include "host/base/codepage.h"
#include "labeler/label_types.h"
#include "labeler/stored_label.h"
#include "module/manager/dim_manager.h"
#include "module/platform/opened.h"
#include "module/style/style.h"
#include "tests/host/app/host_test.h"

/// Both modules loaded, with the settings the program is installed with, and an empty drawing of
/// scale 1:500 to lay pipes in.
class Labelling : public WithHost {
 protected:
  void SetUp() override {
    cad::host_settings().install_dir = PN_INSTALLATION "/";
    cad::host_settings().module_folders = {PN_MODULES};
    document = host.new_drawing();
    ASSERT_TRUE(host.load_module("pipenote.arx"));
    const cad::Status loaded = host.load_module("labeler.arx");
    ASSERT_TRUE(loaded) << loaded.error().message();
    eval("(regapp \"PIPENOTE\")");
    printed.clear();
  }

  /// Makes the entity; its handle.
  std::string made(const std::string& groups) {
    return unquoted(eval("(entmake '(" + groups + ")) (cdr (assoc 5 (entget (entlast))))"));
  }
  std::string data(const std::string& pairs) { return " (-3 (\"PIPENOTE\" " + pairs + "))"; }
  std::string text_pair(const std::string& key, const std::string& value) {
    return "(1000 . \"" + key + "\") (1000 . \"" + value + "\") ";
  }
  std::string real_pair(const std::string& key, double value) {
    return "(1000 . \"" + key + "\") (1040 . " + std::to_string(value) + ") ";
  }
  std::string node_pair(const std::string& key, const std::string& handle) {
    return "(1000 . \"" + key + "\") (1005 . \"" + handle + "\") ";
  }

  std::string given_well(double x, double y, const std::string& number,
                         const std::string& more = {}) {
    return made("(0 . \"CIRCLE\") (10 " + point(x, y) + ") (40 . 0.5)" +
                data(text_pair("kind", "drainage-well") +
                     (number.empty() ? "" : text_pair("number", number)) + more));
  }
  /// Of drainage, DN300, with inverts that make it flow from the first point to the second.
  std::string given_pipe(double x1, double y1, double x2, double y2, const std::string& more = {}) {
    return made("(0 . \"LINE\") (10 " + point(x1, y1) + ") (11 " + point(x2, y2) + ")" +
                data(text_pair("kind", "drainage-pipe") + real_pair("diameter", 300) +
                     real_pair("start_invert", 10.2) + real_pair("end_invert", 10.1) + more));
  }
  /// The same between two wells of their own.
  std::string given_pipe_with_wells(double x1, double y1, double x2, double y2) {
    const std::string start = given_well(x1, y1, "1"), end = given_well(x2, y2, "2");
    return given_pipe(x1, y1, x2, y2, node_pair("start_node", start) + node_pair("end_node", end));
  }

  AcDbObjectId id(const std::string& handle) const {
    AcDbObjectId found;
    document->database()->getAcDbObjectId(found, false, AcDbHandle(cad::from_utf8(handle).c_str()));
    return found;
  }
  static std::string ename(const std::string& handle) { return "(handent \"" + handle + "\")"; }
  std::string label_pipe(const std::string& handle, const std::string& more = {}) {
    return eval("(labelpipe " + ename(handle) + " " + more + ")");
  }

  labeler::StoredLabel label_of(const std::string& owner, const wchar_t* type = L"xzgj") const {
    return labeler::read_label(id(owner), type).value_or(labeler::StoredLabel());
  }
  bool has_label(const std::string& owner, const wchar_t* type = L"xzgj") const {
    return labeler::read_label(id(owner), type).has_value();
  }
  /// The texts shown, one a line.
  std::vector<std::wstring> texts_of(const std::string& owner,
                                     const wchar_t* type = L"xzgj") const {
    std::vector<std::wstring> texts;
    const labeler::StoredLabel label = label_of(owner, type);
    for (const labeler::StoredLine& line : label.lines)
      if (line.shown.there) texts.push_back(line.shown.text);
    return texts;
  }
  /// Handle of the first text.
  std::string text_handle(const std::string& owner, const wchar_t* type = L"xzgj") const {
    const labeler::StoredLabel label = label_of(owner, type);
    return label.lines.empty() ? std::string() : cad::to_utf8(label.lines.front().handle);
  }
  /// An item of the record; all fields empty when there is none.
  StuDim item(const std::string& owner, const wchar_t* name, const wchar_t* type = L"xzgj") const {
    for (const StuDim& one : labeler::read_items(id(owner), type))
      if (one.name == name) return one;
    return {};
  }
  AcGePoint3d place_of(const std::string& owner, const wchar_t* type = L"xzgj") const {
    return labeler::place_shown(id(text_handle(owner, type)));
  }
  double rotation_of(const std::string& owner) const {
    dim::Opened<AcDbText> text(id(text_handle(owner)), AcDb::kForRead);
    return text ? text->rotation() : NAN;
  }

  void set_real(const std::string& handle, network::Key key, double value) {
    EXPECT_EQ(network::write_real(id(handle), key, value), Acad::eOk);
  }
  void set_text(const std::string& handle, const std::string& text) {
    eval("(setq e (entget " + ename(handle) + ")) (entmod (subst (cons 1 \"" + text +
         "\") (assoc 1 e) e))");
  }
  /// Moves a line's ends.
  void move_line(const std::string& handle, double dx, double dy) {
    const AcGeMatrix3d map = AcGeMatrix3d::translation(AcGeVector3d(dx, dy, 0.0));
    dim::Opened<AcDbEntity> entity(id(handle), AcDb::kForWrite);
    ASSERT_TRUE(entity);
    EXPECT_EQ(entity->transformBy(map), Acad::eOk);
  }
  void lock_layer(const std::string& name, bool lock = true) {
    eval("(setq e (entget (tblobjname \"LAYER\" \"" + name + "\"))) (entmod (subst (cons 70 " +
         (lock ? "4" : "0") + ") (assoc 70 e) e))");
  }
  void erase(const std::string& handle) { eval("(entdel " + ename(handle) + ")"); }
  std::string stale() { return eval("(labelstale)"); }
  std::string update() { return eval("(labelupdate)"); }
  std::string bytes() const { return document->database()->save_bytes(); }

  AcApDocument* document = nullptr;

 private:
  static std::string point(double x, double y) {
    return std::to_string(x) + " " + std::to_string(y) + " 0.0";
  }
  static std::string unquoted(const std::string& text) {
    return text.size() < 2 ? text : text.substr(1, text.size() - 2);
  }
};
