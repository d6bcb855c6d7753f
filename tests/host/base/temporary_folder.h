#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/// A folder of its own for every test, removed at the end.
class TemporaryFolder : public testing::Test {
 protected:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "pipenoteXXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    chmod(folder_.c_str(), 0755);
  }
  ~TemporaryFolder() override { std::filesystem::remove_all(folder_); }

  std::string path(std::string_view name) const { return folder_ + "/" + std::string(name); }
  const std::string& folder() const { return folder_; }

  std::string given_file(std::string_view name, std::string_view content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

  std::string content(std::string_view name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// Names of everything in the folder, in order.
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      found.push_back(entry.path().filename().string());
    }
    std::sort(found.begin(), found.end());
    return found;
  }

  unsigned mode(std::string_view name) const {
    struct stat info {};
    EXPECT_EQ(stat(path(name).c_str(), &info), 0);
    return info.st_mode & 07777;
  }

 private:
  std::string folder_;
};

/// Root may do everything; while this lives, it acts as the user nobody.
class AsOrdinaryUser {
 public:
  AsOrdinaryUser() : root_(geteuid() == 0) {
    if (root_ && seteuid(kNobody) != 0) ADD_FAILURE() << "cannot give up the rights of root";
  }
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;
  ~AsOrdinaryUser() {
    if (root_ && seteuid(0) != 0) ADD_FAILURE() << "cannot become root again";
  }

 private:
  static constexpr uid_t kNobody = 65534;
  bool root_;
};
