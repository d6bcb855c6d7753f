#include "host/lisp/tables.h"

#include <set>

#include "host/lisp/units.h"
#include "host/lisp/wildcard.h"
#include "session.h"

namespace cad::lisp {
namespace {

template <class Row>
void expect_complete(std::span<const Row> table, std::set<std::string>& names) {
  for (const Row& row : table) {
    const std::string name = row.name;
    EXPECT_TRUE(names.insert(name).second) << name << " stands twice";
    EXPECT_TRUE(row.max_args == kMany || row.min_args <= row.max_args) << name;
    EXPECT_TRUE(std::string_view(row.usage).starts_with("(" + name)) << row.usage;
    EXPECT_EQ(std::string_view(row.usage).back(), ')') << name;
    EXPECT_FALSE(std::string_view(row.help).empty()) << name;
  }
}

TEST(LispTables, EveryRowHasUsageAndHelpAndANameOfItsOwn) {
  std::set<std::string> names;
  expect_complete(special_forms(), names);
  for (const auto table :
       {control_functions, list_functions, list_search_functions, number_functions,
        compare_functions, predicate_functions, string_functions, string_search_functions,
        convert_functions, geometry_functions, print_functions, file_functions, path_functions,
        symbol_functions}) {
    expect_complete(table(), names);
  }
  EXPECT_GT(names.size(), 190u);
}

using LispHelp = Session;

TEST_F(LispHelp, PrintsUsageAndPurpose) {
  value_of("(help 'nth)");
  EXPECT_EQ(taken_output(), "(nth n list)\n  element n, from 0; nil past the end\n");
  value_of("(help \"while\")");
  EXPECT_EQ(taken_output(),
            "(while test form ...)\n  repeats the forms until test is nil; the last value\n");
  value_of("(defun mine ()) (help 'mine) (help 'nosuch)");
  EXPECT_EQ(taken_output(), "MINE: a function defined in LISP\nNOSUCH: no such function\n");
}

using LispBuiltins = Session;

// Whatever a builtin is given, it answers or raises: no argument crashes.
TEST_F(LispBuiltins, TakeArgumentsOfAnyType) {
  interp.set_limits({.steps = 100000, .memory_bytes = 16 << 20});
  interp.set_variable(L"SOME-ENAME", interp.ename(1));
  interp.set_variable(L"SOME-SET", interp.pickset());
  value_of(
      "(defun *error* (m))"
      "(setq kinds (list nil T 0 -1 2147483647 1.5 -1e300 \"\" \"text\" 'sym '(1 2 3) '(a . b)"
      " '((1 . 2) (3 4)) car (lambda (x) x) some-ename some-set (vl-catch-all-apply 'exit nil)"
      " (princ)))"
      "(setq names (vl-remove-if '(lambda (n) (wcmatch n "
      "\"*FILE*,EXIT,QUIT,OPEN,LOAD,VL-MKDIR,WHILE\"))"
      " (atoms-family 1)))");
  const Value names = interp.variable(L"NAMES");
  const Value kinds = interp.variable(L"KINDS");
  std::size_t calls = 0;
  for (const Value& name : List(names)) {
    const Value function = interp.variable(name.text());
    if (!function.is(Kind::kSubr) && !function.is(Kind::kSpecialForm)) continue;
    for (const Value& first : List(kinds)) {
      for (const Value& second : List(kinds)) {
        const Value args[] = {first, second, first, second};
        for (std::size_t count = 0; count <= 4; ++count) {
          (void)interp.try_apply(function, std::span(args, count));
          ++calls;
        }
      }
    }
  }
  EXPECT_GT(calls, 300000u);
}

struct Match {
  std::wstring_view text;
  std::wstring_view pattern;
  bool matches;
};

TEST(LispWildcard, FollowsThePatternsOfTheHost) {
  constexpr Match kCases[] = {
      {L"NAME", L"N*", true},
      {L"NAME", L"???,~*m*,N*", true},
      {L"NAME", L"n*", false},
      {L"NAME", L"*A?E", true},
      {L"", L"", true},
      {L"", L"*", true},
      {L"", L"?", false},
      {L"a1", L"@#", true},
      {L"1a", L"@#", false},
      {L"a-b", L"@.@", true},
      {L"aab", L"*ab", true},
      {L"abc", L"[a-c][~x]c", true},
      {L"axc", L"[a-c][~x]c", false},
      {L"abc", L"~abc", false},
      {L"abd", L"~abc", true},
      {L"a,b", L"a`,b", true},
      {L"a*b", L"a`*b", true},
      {L"axb", L"a`*b", false},
      {L"LINE", L"LINE,ARC", true},
      {L"ARC", L"LINE,ARC", true},
      {L"CIRCLE", L"LINE,ARC", false},
      {L"管线-1", L"管*", true},
      {L"a-c", L"a[-]c", true},
      {L"a]c", L"a[]]c", true},
      {L"a[c", L"a[c", true},
      {L"b", L"[a,b]", true},
      {L"管", L"@", true},
      {L"x", L",", false},
  };
  for (const Match& c : kCases) {
    EXPECT_EQ(matches_wildcard(c.text, c.pattern), c.matches)
        << to_utf8(c.text) << " against " << to_utf8(c.pattern);
  }
}

TEST(LispWildcard, ManyStarsTakeNoExponentialTime) {
  std::wstring pattern;
  for (int i = 0; i < 200; ++i) pattern += L"*a";
  EXPECT_FALSE(matches_wildcard(std::wstring(5000, L'a'), pattern + L"b"));
}

struct Length {
  double value;
  int mode;
  int precision;
  int zeros;
  std::wstring_view text;
};

TEST(LispUnits, LengthsAreSpelledInFiveWays) {
  constexpr Length kCases[] = {
      {17.5, 1, 4, 0, L"1.7500E+01"},
      {17.5, 2, 2, 0, L"17.50"},
      {17.5, 3, 2, 0, L"1'-5.50\""},
      {17.5, 4, 2, 0, L"1'-5 1/2\""},
      {17.5, 5, 2, 0, L"17 1/2"},
      {-0.23, 2, 3, 0, L"-0.230"},
      {-0.23, 2, 3, 12, L"-.23"},
      {12.25, 2, 1, 0, L"12.3"},
      {2.5, 2, 0, 0, L"3"},
      {100.0, 2, 3, 8, L"100"},
      {100.0, 2, 0, 8, L"100"},
      {0.0, 2, 2, 12, L"0"},
      {0.0, 2, 2, 4, L".00"},
      {-0.001, 2, 2, 0, L"0.00"},
      {24.0, 4, 4, 0, L"2'"},
      {24.0, 4, 4, 1, L"2'-0\""},
      {3.0, 4, 4, 0, L"3\""},
      {3.0, 4, 4, 2, L"0'-3\""},
      {0.5, 4, 1, 0, L"1/2\""},
      {0.0, 4, 1, 0, L"0\""},
      {11.999, 3, 2, 0, L"1'"},
      {11.999, 4, 2, 0, L"1'"},
      {-17.5, 4, 2, 0, L"-1'-5 1/2\""},
      {1e300, 4, 2, 8, L"1"},
      {2.5, 2, 99, 8, L"2.5"},
      {0.75, 5, 8, 0, L"3/4"},
  };
  for (const Length& c : kCases) {
    std::wstring text =
        length_text(c.value, static_cast<LengthUnits>(c.mode), c.precision, c.zeros);
    if (c.value == 1e300) text.resize(1);
    EXPECT_EQ(to_utf8(text), to_utf8(c.text)) << c.value << " mode " << c.mode;
  }
}

TEST(LispUnits, LengthsAreReadBack) {
  const auto read = [](std::wstring_view text) {
    return parse_length(text, LengthUnits::kArchitectural).value_or(-1);
  };
  EXPECT_EQ(read(L"1'-5 1/2\""), 17.5);
  EXPECT_EQ(read(L"1'5.5\""), 17.5);
  EXPECT_EQ(read(L"17 1/2"), 17.5);
  EXPECT_EQ(read(L"2'"), 24);
  EXPECT_EQ(read(L"-1'-5-1/2\""), -17.5);
  EXPECT_EQ(read(L"12.5"), 12.5);
  for (const std::wstring_view bad : {L"", L"x", L"1'x", L"1/0", L"1/", L"管"}) {
    EXPECT_FALSE(parse_length(bad, LengthUnits::kArchitectural));
  }
  EXPECT_FALSE(parse_length(L"1'", LengthUnits::kDecimal));
}

TEST(LispUnits, AnglesAreSpelledInFiveWays) {
  constexpr double kPi = 3.14159265358979323846;
  const auto angle = [](double radians, int mode, int precision) {
    return to_utf8(angle_text(radians, static_cast<AngleUnits>(mode), precision));
  };
  EXPECT_EQ(angle(kPi / 4, 0, 2), "45.00");
  EXPECT_EQ(angle(kPi / 4, 1, 0), "45d");
  EXPECT_EQ(angle(kPi / 4, 1, 2), "45d0'");
  EXPECT_EQ(angle(kPi / 4 + kPi / 360, 1, 4), "45d30'0\"");
  EXPECT_EQ(angle(kPi / 4, 1, 6), "45d0'0.00\"");
  EXPECT_EQ(angle(kPi / 4, 2, 1), "50.0g");
  EXPECT_EQ(angle(kPi / 4, 3, 3), "0.785r");
  EXPECT_EQ(angle(kPi / 6, 4, 2), "N 60d0' E");
  EXPECT_EQ(angle(kPi * 5 / 4, 4, 0), "S 45d W");
  EXPECT_EQ(angle(kPi / 2, 4, 4), "N");
  EXPECT_EQ(angle(0, 4, 4), "E");
  EXPECT_EQ(angle(2 * kPi - 1e-9, 0, 2), "0.00");
  EXPECT_EQ(angle(2 * kPi - 1e-9, 1, 4), "0d0'0\"");
  EXPECT_EQ(angle(kPi / 180 - 1e-9, 1, 4), "1d0'0\"");
}

TEST(LispUnits, AnglesAreReadBack) {
  constexpr double kPi = 3.14159265358979323846;
  const auto read = [](std::wstring_view text, int mode = 0) {
    return parse_angle(text, static_cast<AngleUnits>(mode)).value_or(-1);
  };
  EXPECT_DOUBLE_EQ(read(L"45"), kPi / 4);
  EXPECT_DOUBLE_EQ(read(L"45d30'"), kPi * 45.5 / 180);
  EXPECT_DOUBLE_EQ(read(L"45d30'36\""), kPi * 45.51 / 180);
  EXPECT_DOUBLE_EQ(read(L"50g"), kPi / 4);
  EXPECT_DOUBLE_EQ(read(L"50", 2), kPi / 4);
  EXPECT_DOUBLE_EQ(read(L"0.5r"), 0.5);
  EXPECT_DOUBLE_EQ(read(L"0.5", 3), 0.5);
  EXPECT_DOUBLE_EQ(read(L"N 45d0'0\" E", 4), kPi / 4);
  EXPECT_DOUBLE_EQ(read(L"N 45 W", 4), kPi * 3 / 4);
  EXPECT_DOUBLE_EQ(read(L"S 45 W", 4), kPi * 5 / 4);
  EXPECT_DOUBLE_EQ(read(L"N", 4), kPi / 2);
  for (const std::wstring_view bad : {L"", L"x", L"45x", L"N 45", L"45d3"}) {
    EXPECT_FALSE(parse_angle(bad, AngleUnits::kDegrees));
  }
}

}  // namespace
}  // namespace cad::lisp
