#include "TavioIpadSDK/helper/find_helper.h"

#include <array>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace tavio::helper {

namespace {

bool isProgram(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::string findHelper(const std::string& name) {
    std::error_code error;
    const std::filesystem::path running = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::array<std::filesystem::path, 4> folders = {
        running.parent_path(), running.parent_path() / TAVIO_HELPERS_FROM_PROGRAM,
        TAVIO_HELPERS_INSTALLED, TAVIO_HELPERS_BUILT};
    for (const std::filesystem::path& folder : folders) {
        if (!folder.is_absolute()) continue;
        if (isProgram(folder / name)) return folder / name;
    }
    return "";
}

}  // namespace tavio::helper
