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

#include "TavioIpadSDK/machine/write_all.h"
#include "tavio/links/current_umask.h"

namespace tavio::links {

namespace {

// The number of the open descriptor that the path names. Opening such a path again would write a
// redirected file from its first byte on, and fails on a socket.
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

// With its slash, so that a name can be appended.
std::string folderOf(const std::string& path) {
    std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

// The target of a symbolic link to a file that does not exist. There are no loops here: opening
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
    if (real == nullptr) return path;  // a link of /proc to something without a path, e.g. a pipe
    std::string result = real;
    std::free(real);  // NOLINT(cppcoreguidelines-no-malloc): realpath's own
    return result;
}

constexpr mode_t kOwnerOnly = 0600;
constexpr mode_t kUsual = 0666;  // less what the process's umask takes
constexpr mode_t kAllPermissions = 0777;

// The permissions of a file that replaces one with this status, or that is new; none if the umask
// cannot be read, so that only the system can apply it.
std::optional<mode_t> permissionsFor(const std::optional<struct stat>& replaced) {
    if (replaced) return replaced->st_mode & kAllPermissions;
    const std::optional<mode_t> mask = currentUmask();
    if (!mask) return std::nullopt;
    return kUsual & ~*mask;
}

constexpr const char* kDescriptors = "/proc/self/fd/";

// Not derived from the target's name: that may be as long as the file system allows.
constexpr const char* kTemporaryName = ".tavio-";

// A file in the folder without a name, which vanishes with its descriptor, however the program
// ends. -1 if the file system has no such files, or cannot name one later.
int openNameless(const std::string& folder) {
    if (::access(kDescriptors, X_OK) != 0) return -1;
    return ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kOwnerOnly);
}

// The first name in the folder with which `make` succeeds; "", with errno set, if there is none.
template <typename Make>
std::string makeTemporary(const std::string& folder, Make make) {
    const std::string stem = folder + kTemporaryName + std::to_string(::getpid()) + "-";
    constexpr int kMaxAttempts = 100;
    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
        std::string name = stem + std::to_string(attempt);
        if (make(name.c_str())) return name;
        if (errno != EEXIST) break;
    }
    return "";
}

}  // namespace

OutputFile::OutputFile(OutputFile&& other) noexcept
    : path_(std::move(other.path_)),
      target_(std::move(other.target_)),
      temporary_(std::exchange(other.temporary_, "")),
      failure_(std::move(other.failure_)),
      isNameless_(other.isNameless_),
      file_(std::move(other.file_)) {}

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
    file_.reset(descriptor);
    return true;
}

// Opening must not wait for the reader of a pipe; writing may.
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
    std::optional<struct stat> replaced(std::in_place);
    if (::stat(target_.c_str(), &*replaced) != 0) replaced.reset();
    const std::optional<mode_t> permissions = permissionsFor(replaced);
    if (permissions) file_.reset(openNameless(folderOf(target_)));
    isNameless_ = file_.isOpen();
    if (!isNameless_ && !openNamed(permissions ? kOwnerOnly : kUsual)) return false;
    return !permissions || ::fchmod(file_.get(), *permissions) == 0 || fail(errno);
}

bool OutputFile::openNamed(mode_t permissions) {
    temporary_ = makeTemporary(folderOf(target_), [&](const char* name) {
        file_.reset(::open(name, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, permissions));
        return file_.isOpen();
    });
    return !temporary_.empty() || fail(errno);
}

// Only a file with a name can be moved over another.
bool OutputFile::giveName() {
    const std::string itself = kDescriptors + std::to_string(file_.get());
    temporary_ = makeTemporary(folderOf(target_), [&](const char* name) {
        return ::linkat(AT_FDCWD, itself.c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0;
    });
    return !temporary_.empty() || fail(errno);
}

bool OutputFile::write(std::span<const Byte> bytes) {
    if (!failure_.empty()) return false;
    if (!file_.isOpen()) return fail(EBADF);
    const int error = machine::writeAll(file_.get(), std::as_bytes(bytes));
    return error == 0 || fail(error);
}

bool OutputFile::commit() {
    if (!failure_.empty()) return false;
    if (!file_.isOpen()) return fail(EBADF);
    if (isNameless_ && !giveName()) return false;
    if (const int error = file_.close(); error != 0) return fail(error);
    if (temporary_.empty()) return true;
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) return fail(errno);
    temporary_.clear();
    return true;
}

void OutputFile::discard() noexcept {
    file_.reset();
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
    temporary_.clear();
}

}  // namespace tavio::links
