#include "TavioIpadSDK/platform/bytes.h"

#include <cerrno>
#include <cstddef>
#include <exception>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavio::platform {
namespace {

// A path that C calls would cut short at a NUL byte would name another file.
bool isUsablePath(const std::string& path) {
    return path.find('\0') == std::string::npos;
}

class FileDescriptor {
  public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    ~FileDescriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return fd_; }

  private:
    int fd_;
};

// Reads to the end of the file. The size it had at first is only a first guess: files grow.
std::optional<Bytes> readToEnd(int fd, std::size_t expectedSize) {
    constexpr std::size_t kStep = std::size_t{1} << 16;
    Bytes bytes(expectedSize + 1);
    std::size_t used = 0;
    for (;;) {
        if (used == bytes.size()) bytes.resize(bytes.size() + bytes.size() / 2 + kStep);
        const ssize_t got = ::read(fd, bytes.data() + used, bytes.size() - used);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        used += static_cast<std::size_t>(got);
    }
    bytes.resize(used);
    return bytes;
}

}  // namespace

bool fileExists(const std::string& path) {
    struct stat status {};
    return isUsablePath(path) && ::stat(path.c_str(), &status) == 0;
}

std::optional<Bytes> readWholeFile(const std::string& path) noexcept {
    try {
        if (!isUsablePath(path)) return std::nullopt;
        // Without O_NONBLOCK, opening a pipe that nobody writes to would never come back.
        const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        struct stat status {};
        if (file.get() < 0 || ::fstat(file.get(), &status) != 0) return std::nullopt;
        if (!S_ISREG(status.st_mode)) return std::nullopt;
        return readToEnd(file.get(), static_cast<std::size_t>(status.st_size));
    } catch (const std::exception&) {  // no memory for it
        return std::nullopt;
    }
}

}  // namespace tavio::platform
