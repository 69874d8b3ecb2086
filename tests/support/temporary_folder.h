// A folder that lasts as long as one test.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdlib.h>
#include <string>

#include <gtest/gtest.h>

namespace tavio::test {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tavio-XXXXXX").string();
        if (::mkdtemp(name.data()) != nullptr) path_ = name;
        EXPECT_FALSE(path_.empty()) << "no temporary folder";
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }

    std::string path() const { return path_.string(); }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

    // Names of everything in the folder.
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            found.insert(entry.path().filename().string());
        }
        return found;
    }

  private:
    std::filesystem::path path_;
};

inline void writeFile(const std::string& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary);
    file << content;
    ASSERT_TRUE(file.flush()) << path;
}

inline std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace tavio::test
