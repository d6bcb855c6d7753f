#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "host/app/host.h"
#include "host/base/codepage.h"
#include "network/pipe_materials.h"
#include "network/strings.h"

/// An installation and a project folder of its own, both empty at the start.
class WithSettingsFolders : public testing::Test {
 protected:
  WithSettingsFolders() {
    std::string name = (std::filesystem::temp_directory_path() / "settings.XXXXXX").string();
    folder = ::mkdtemp(name.data());
    std::filesystem::create_directories(folder / "install");
    std::filesystem::create_directories(folder / "project");
    cad::host_settings().install_dir = (folder / "install").string();
    cad::host_settings().project_dir = (folder / "project").string();
    network::forget_pipe_materials();
  }
  ~WithSettingsFolders() override {
    cad::host_settings() = before;
    network::forget_pipe_materials();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  /// A file below the test's folder, with its folders.
  std::filesystem::path given_file(const std::string& path, const std::string& bytes) const {
    const std::filesystem::path file = folder / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
  }
  std::string content(const std::string& path) const {
    std::ifstream file(folder / path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  CString wide(const std::filesystem::path& path) const { return cad::from_utf8(path.string()); }
  CString path(const std::string& below) const { return wide(folder / below); }

  std::filesystem::path folder;

 private:
  const cad::HostSettings before = cad::host_settings();
};
