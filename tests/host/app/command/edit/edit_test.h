#pragma once

#include <gmock/gmock.h>

#include <string>

#include "tests/host/app/command/command_test.h"

/// Commands that change what is drawn. Every command that is run is also taken back and done again,
/// which must give the same bytes as before and behind it.
class WithEdits : public WithCommands {
 protected:
  WithEdits() {
    eval("(setvar \"CMDECHO\" 0)");
    eval("(setvar \"OSMODE\" 0)");
    // (shapes codes): of every entity the values of these groups.
    eval(
        "(defun shapes (codes / e l r g)"
        "  (setq e (entnext))"
        "  (while e"
        "    (setq l nil)"
        "    (foreach g (entget e) (if (member (car g) codes) (setq l (cons (cdr g) l))))"
        "    (setq r (cons (reverse l) r) e (entnext e)))"
        "  (reverse r))");
    // (nth-entity n): from 1.
    eval("(defun en (n / e) (setq e (entnext)) (repeat (1- n) (setq e (entnext e))) e)");
    eval("(defun pick (n p) (list (en n) p))");
  }

  /// Draws by entmake, from lists in the manner of (0 . "LINE").
  void draw(const std::string& groups) {
    EXPECT_NE(eval("(entmake '(" + groups + "))"), "nil") << groups;
  }
  void draw_line(const std::string& from, const std::string& to, const std::string& more = "") {
    draw("(0 . \"LINE\") " + more + " (10 " + from + ") (11 " + to + ")");
  }
  void draw_arc(const std::string& center, double radius, const std::string& from,
                const std::string& to) {
    eval("(entmake (list '(0 . \"ARC\") '(10 " + center + ") '(40 . " + std::to_string(radius) +
         ") (cons 50 " + from + ") (cons 51 " + to + ")))");
  }
  void draw_polyline(const std::string& vertices, bool closed = false,
                     const std::string& more = "") {
    draw("(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 9) (70 . " +
         std::string(closed ? "1" : "0") + ") " + more + " " + vertices);
  }

  std::string bytes() const { return drawing->database()->save_bytes(); }

  /// Runs (command ...) with these arguments; what was printed.
  std::string run(const std::string& arguments) {
    const std::string before = bytes();
    printed.clear();
    eval("(command " + arguments + ")");
    const std::string said = printed;
    EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0") << arguments << said;
    eval("(command)");
    const std::string after = bytes();
    if (after == before) return said;
    eval("(command \"_.U\")");
    EXPECT_TRUE(bytes() == before) << "not taken back: " << arguments;
    eval("(command \"_.REDO\")");
    EXPECT_TRUE(bytes() == after) << "not done again: " << arguments;
    return said;
  }

  /// The values of these groups of all entities, now and in the drawing as it is saved.
  void expect_shapes(const std::string& codes, const std::string& wanted) {
    EXPECT_EQ(eval("(shapes '(" + codes + "))"), wanted);
    AcApDocument* const edited = drawing;
    const std::string saved = bytes();
    AcApDocument* const again = given_drawing(saved, "saved.dxf");
    eval(again,
         "(defun shapes (codes / e l r g) (setq e (entnext)) (while e (setq l nil)"
         "(foreach g (entget e) (if (member (car g) codes) (setq l (cons (cdr g) l))))"
         "(setq r (cons (reverse l) r) e (entnext e))) (reverse r))");
    EXPECT_EQ(eval(again, "(shapes '(" + codes + "))"), wanted) << "saved and opened";
    host.close(again);
    drawing = edited;
  }
};
