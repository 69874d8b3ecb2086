#include "TavioIpadSDK/machine/regular_file.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace tavio::machine {

std::unique_ptr<RegularFile> RegularFile::open(const std::string& path) {
    // C calls end a path at its first NUL byte, so it would name another file.
    if (path.find('\0') != std::string::npos) return nullptr;
    std::unique_ptr<RegularFile> file(new RegularFile(-1));
    // Without O_NONBLOCK, opening a pipe without a writer never returns.
    file->descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status {};
    if (file->descriptor_ < 0 || ::fstat(file->descriptor_, &status) != 0) return nullptr;
    if (!S_ISREG(status.st_mode)) return nullptr;
    return file;
}

RegularFile::~RegularFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

std::uint64_t RegularFile::size() const {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || status.st_size < 0) return 0;
    return static_cast<std::uint64_t>(status.st_size);
}

std::optional<std::size_t> RegularFile::read(std::span<Byte> into, std::uint64_t offset) const {
    constexpr std::uint64_t kMaxOffset = std::numeric_limits<off_t>::max();
    std::size_t used = 0;
    while (used < into.size() && offset <= kMaxOffset - used) {
        const ssize_t got = ::pread(descriptor_, into.data() + used, into.size() - used,
                                    static_cast<off_t>(offset + used));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        used += static_cast<std::size_t>(got);
    }
    return used;
}

}  // namespace tavio::machine
