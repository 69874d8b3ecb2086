#include "links/output_file.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tavio::links {

namespace {

// The number of an already open descriptor that the path stands for. Opening such a path anew would
// begin a redirected file from its first byte again, and fails on a socket.
std::optional<int> descriptorNamedBy(const std::string& path) {
    if (path == "/dev/stdout") return STDOUT_FILENO;
    if (path == "/dev/stderr") return STDERR_FILENO;
    const std::string folder = "/dev/fd/";
    if (!path.starts_with(folder)) return std::nullopt;
    int number = 0;
    const char* end = path.data() + path.size();
    auto [stop, error] = std::from_chars(path.data() + folder.size(), end, number);
    if (error != std::errc() || stop != end || number < 0) return std::nullopt;
    return number;
}

// The path with its symbolic links followed, or the path itself where nothing exists there.
std::string followed(const std::string& path) {
    char* real = ::realpath(path.c_str(), nullptr);
    if (real == nullptr) return path;
    std::string result = real;
    std::free(real);  // NOLINT(cppcoreguidelines-no-malloc): realpath's own
    return result;
}

// The permissions that a file made by open(path, O_CREAT, 0666) would get.
mode_t defaultPermissions() {
    mode_t mask = ::umask(0);
    ::umask(mask);
    return static_cast<mode_t>(0666) & ~mask;
}

const std::string kDescriptors = "/proc/self/fd/";

// A file in the folder that has no name yet and vanishes with its descriptor, whatever ends the
// program; -1 where the file system has no such files, or no way to name one later.
int openNameless(const std::string& folder) {
    if (::access(kDescriptors.c_str(), X_OK) != 0) return -1;
    return ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
}

std::string folderOf(const std::string& path) {
    std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

bool writeAll(int descriptor, std::span<const Byte> bytes) {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    while (!bytes.empty()) {
        std::size_t wanted = bytes.size() < kMostAtOnce ? bytes.size() : kMostAtOnce;
        ssize_t written = ::write(descriptor, bytes.data(), wanted);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

OutputFile::OutputFile(OutputFile&& other) noexcept
    : path_(std::move(other.path_)),
      target_(std::move(other.target_)),
      temporary_(std::exchange(other.temporary_, "")),
      failure_(std::move(other.failure_)),
      nameless_(other.nameless_),
      descriptor_(std::exchange(other.descriptor_, -1)) {}

bool OutputFile::fail(int errorNumber) {
    if (failure_.empty()) {
        failure_ = path_ + " cannot be written: " + std::generic_category().message(errorNumber);
    }
    return false;
}

bool OutputFile::open() {
    if (!failure_.empty()) return false;
    discard();
    if (path_.empty() || path_.find('\0') != std::string::npos) return fail(ENOENT);
    if (auto number = descriptorNamedBy(path_)) {
        return openInPlace(::fcntl(*number, F_DUPFD_CLOEXEC, 0));
    }
    target_ = followed(path_);
    struct stat status {};
    bool exists = ::stat(target_.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) return fail(EISDIR);
    if (exists && !S_ISREG(status.st_mode)) {
        return openInPlace(::open(target_.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
    }
    if (!exists && target_.back() == '/') return fail(EISDIR);
    if (exists && ::access(target_.c_str(), W_OK) != 0) return fail(errno);
    return openTemporary();
}

bool OutputFile::openInPlace(int descriptor) {
    if (descriptor < 0) return fail(errno);
    descriptor_ = descriptor;
    return true;
}

bool OutputFile::openTemporary() {
    descriptor_ = openNameless(folderOf(target_));
    nameless_ = descriptor_ >= 0;
    if (!nameless_) {
        std::string name = target_ + ".XXXXXX";
        descriptor_ = ::mkostemp(name.data(), O_CLOEXEC);
        if (descriptor_ < 0) return fail(errno);
        temporary_ = name;
    }
    struct stat status {};
    bool exists = ::stat(target_.c_str(), &status) == 0;
    mode_t mode = exists ? status.st_mode & static_cast<mode_t>(0777) : defaultPermissions();
    return ::fchmod(descriptor_, mode) == 0 || fail(errno);
}

// Only a file with a name can be moved over another.
bool OutputFile::giveName() {
    const std::string itself = kDescriptors + std::to_string(descriptor_);
    const std::string stem = target_ + "." + std::to_string(::getpid()) + "-";
    constexpr int kMostAttempts = 100;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        std::string name = stem + std::to_string(attempt);
        if (::linkat(AT_FDCWD, itself.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            temporary_ = name;
            return true;
        }
        if (errno != EEXIST) break;
    }
    return fail(errno);
}

bool OutputFile::write(std::span<const Byte> bytes) {
    if (!failure_.empty()) return false;
    if (descriptor_ < 0) return fail(EBADF);
    return writeAll(descriptor_, bytes) || fail(errno);
}

bool OutputFile::commit() {
    if (!failure_.empty()) return false;
    if (descriptor_ < 0) return fail(EBADF);
    if (nameless_ && !giveName()) return false;
    if (::close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR) return fail(errno);
    if (temporary_.empty()) return true;
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) return fail(errno);
    temporary_.clear();
    return true;
}

void OutputFile::discard() noexcept {
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
    temporary_.clear();
}

}  // namespace tavio::links
