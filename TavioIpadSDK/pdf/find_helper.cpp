#include "TavioIpadSDK/pdf/find_helper.h"

#include <array>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace tavio::pdf {

namespace {

constexpr const char* kHelperName = "tavio-pdf-page";

bool isProgram(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::string findHelper() {
    std::error_code error;
    const std::filesystem::path running = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::array<std::filesystem::path, 4> folders = {
        running.parent_path(), running.parent_path() / TAVIO_PDF_HELPER_FROM_PROGRAM,
        TAVIO_PDF_HELPER_INSTALLED, TAVIO_PDF_HELPER_BUILT};
    for (const std::filesystem::path& folder : folders) {
        if (!folder.is_absolute()) continue;
        if (isProgram(folder / kHelperName)) return folder / kHelperName;
    }
    return "";
}

}  // namespace tavio::pdf
