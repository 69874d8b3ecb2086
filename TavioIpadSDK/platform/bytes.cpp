#include "TavioIpadSDK/platform/bytes.h"

#include <cstddef>
#include <exception>
#include <span>
#include <sys/stat.h>

#include "TavioIpadSDK/machine/regular_file.h"

namespace tavio::platform {
namespace {

// Reads to the end of the file. Its size at the beginning is only a guess: files grow.
std::optional<Bytes> readToEnd(const machine::RegularFile& file) {
    constexpr std::size_t kStep = std::size_t{1} << 16;
    Bytes bytes(static_cast<std::size_t>(file.size()) + 1);
    std::size_t used = 0;
    for (;;) {
        const auto got = file.read(std::span(bytes).subspan(used), used);
        if (!got) return std::nullopt;
        used += *got;
        if (used < bytes.size()) break;
        bytes.resize(bytes.size() + bytes.size() / 2 + kStep);
    }
    bytes.resize(used);
    return bytes;
}

}  // namespace

bool fileExists(const std::string& path) {
    struct stat status {};
    // C calls end a path at its first NUL byte, so it would name another file.
    return path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0;
}

std::optional<Bytes> readWholeFile(const std::string& path) noexcept {
    try {
        const auto file = machine::RegularFile::open(path);
        return file ? readToEnd(*file) : std::nullopt;
    } catch (const std::exception&) {  // no memory for it
        return std::nullopt;
    }
}

}  // namespace tavio::platform
