#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "tests/module/plan.h"

/// A plan on disk for the commands to read. Fill `plan`, then save().
class SavedPlan : public ::testing::Test {
 protected:
  ~SavedPlan() override { std::remove(path.c_str()); }

  void save() { write(plan->database().save_bytes()); }
  void write(const std::string& bytes) {
    plan.reset();
    std::ofstream(path, std::ios::binary) << bytes;
  }
  /// What a command prints, with its exit status in `status`.
  template <class Command>
  std::string output_of(Command command) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    status = command();
    complaint = testing::internal::GetCapturedStderr();
    return testing::internal::GetCapturedStdout();
  }

  std::unique_ptr<Plan> plan = std::make_unique<Plan>();
  std::string path = testing::TempDir() + "saved_plan_" +
                     testing::UnitTest::GetInstance()->current_test_info()->name() + ".dxf";
  int status = -1;
  std::string complaint;
};

/// The text with the first `from` replaced.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}
