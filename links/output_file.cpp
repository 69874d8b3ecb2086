#include "tavio/links/output_file.h"

#include <array>
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

#include <climits>

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

// With its slash, so that a name can be put behind it.
std::string folderOf(const std::string& path) {
    std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

// Where a symbolic link that points at nothing wants a file. There are no loops here: opening
// refuses them first.
std::string pointedAt(std::string path) {
    constexpr int kMaxLinks = 40;
    for (int count = 0; count < kMaxLinks; ++count) {
        std::array<char, PATH_MAX> text{};
        ssize_t size = ::readlink(path.c_str(), text.data(), text.size());
        if (size < 0) break;
        std::string next(text.data(), static_cast<std::size_t>(size));
        if (!next.starts_with('/')) next.insert(0, folderOf(path));
        path = std::move(next);
    }
    return path;
}

// The path of an existing file with its symbolic links followed.
std::string followed(const std::string& path) {
    char* real = ::realpath(path.c_str(), nullptr);
    if (real == nullptr) return path;  // a link of /proc to what has no path, as a pipe
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

constexpr const char* kDescriptors = "/proc/self/fd/";

// Not made of the target's name: that may be as long as the file system allows.
constexpr const char* kTemporaryName = ".tavio-";

// A file in the folder that has no name yet and vanishes with its descriptor, whatever ends the
// program; -1 where the file system has no such files, or no way to name one later.
int openNameless(const std::string& folder) {
    if (::access(kDescriptors, X_OK) != 0) return -1;
    return ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
}

bool writeAll(int descriptor, std::span<const Byte> bytes) {
    constexpr std::size_t kMaxAtOnce = std::size_t{1} << 30;
    while (!bytes.empty()) {
        std::size_t wanted = bytes.size() < kMaxAtOnce ? bytes.size() : kMaxAtOnce;
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
    return fail(" cannot be written: " + std::generic_category().message(errorNumber));
}

bool OutputFile::fail(const std::string& why) {
    if (failure_.empty()) failure_ = path_ + why;
    return false;
}

bool OutputFile::open() {
    if (!failure_.empty()) return false;
    discard();
    if (path_.empty() || path_.find('\0') != std::string::npos) return fail(ENOENT);
    if (auto number = descriptorNamedBy(path_)) {
        return openInPlace(::fcntl(*number, F_DUPFD_CLOEXEC, 0));
    }
    struct stat status {};
    bool exists = ::stat(path_.c_str(), &status) == 0;
    if (!exists && errno != ENOENT) return fail(errno);
    target_ = exists ? followed(path_) : pointedAt(path_);
    if (exists && S_ISDIR(status.st_mode)) return fail(EISDIR);
    if (exists && !S_ISREG(status.st_mode)) return openSpecial();
    if (!exists && target_.back() == '/') return fail(EISDIR);
    if (exists && ::access(target_.c_str(), W_OK) != 0) return fail(errno);
    return openTemporary();
}

bool OutputFile::openInPlace(int descriptor) {
    if (descriptor < 0) return fail(errno);
    descriptor_ = descriptor;
    return true;
}

// Opening must not wait, as it would for the reader of a pipe; writing may.
bool OutputFile::openSpecial() {
    int descriptor = ::open(target_.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0 && errno == ENXIO) {
        struct stat status {};
        bool pipe = ::stat(target_.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
        return pipe ? fail(" is a pipe that nobody reads") : fail(ENXIO);
    }
    if (!openInPlace(descriptor)) return false;
    const int flags = ::fcntl(descriptor, F_GETFL);
    return (flags >= 0 && ::fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK) == 0) || fail(errno);
}

bool OutputFile::openTemporary() {
    descriptor_ = openNameless(folderOf(target_));
    nameless_ = descriptor_ >= 0;
    if (!nameless_) {
        std::string name = folderOf(target_) + kTemporaryName + "XXXXXX";
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
    const std::string stem = folderOf(target_) + kTemporaryName + std::to_string(::getpid()) + "-";
    constexpr int kMaxAttempts = 100;
    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
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
