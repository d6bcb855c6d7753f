#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host/app/prompt/user_input.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

/// An empty drawing, and a user whose answers are lines of a text.
class WithCommands : public WithHost {
 protected:
  WithCommands() { drawing = host.new_drawing(); }

  void given_answers(const std::string& lines) {
    cad::user_input() = cad::scripted_input(lines, "answers.txt");
  }
  /// Whether the command line printed the text since the last question of this kind.
  bool told(const std::string& text) {
    const bool found = printed.find(text) != std::string::npos;
    printed.clear();
    return found;
  }
  /// The groups of the last entity whose codes are in the list: "(10 11)".
  std::string last(const std::string& codes) {
    return eval("(apply 'append (mapcar '(lambda (g) (if (member (car g) '" + codes +
                ") (list (cdr g)))) (entget (entlast))))");
  }
  std::string entities() {
    return eval(
        "(progn (setq e (entnext) n '()) (while e (setq n (cons (cdr (assoc 0 (entget e)))"
        " n) e (entnext e))) (reverse n))");
  }
  /// Writes the drawing and opens what was written; it becomes the current one.
  void reopened() {
    const std::string bytes = drawing->database()->save_bytes();
    drawing = given_drawing(bytes, "reopened.dxf");
  }

  AcApDocument* drawing = nullptr;
};
