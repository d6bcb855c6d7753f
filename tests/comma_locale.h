#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

/// The process in a locale that writes "1,5", as long as this object lives. The locale is made for
/// the test: machines rarely have one installed.
///     const CommaLocale locale;
///     if (!locale) GTEST_SKIP() << "localedef cannot make a locale";
class CommaLocale {
 public:
  CommaLocale() {
    std::string name = (std::filesystem::temp_directory_path() / "locale.XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
    const std::string definition = (folder_ / "definition").string();
    std::ofstream(definition) << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\n"
                                 "grouping 3;3\nEND LC_NUMERIC\n";
    const std::string command = "localedef -c -f ANSI_X3.4-1968 -i '" + definition + "' '" +
                                (folder_ / kName).string() + "' >/dev/null 2>&1";
    // Its status tells of mere warnings, too: what counts is whether the locale can be set.
    [[maybe_unused]] const int status = std::system(command.c_str());
    ::setenv("LOCPATH", folder_.c_str(), 1);
    const bool set = std::setlocale(LC_ALL, kName) != nullptr;
    char text[8];
    std::snprintf(text, sizeof text, "%.1f", 1.5);
    set_ = set && std::string_view(text) == "1,5";
  }
  ~CommaLocale() {
    std::setlocale(LC_ALL, "C");
    ::unsetenv("LOCPATH");
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

  explicit operator bool() const { return set_; }

 private:
  static constexpr const char* kName = "comma";
  std::filesystem::path folder_;
  bool set_ = false;
};
