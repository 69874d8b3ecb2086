#include "tools/tavio/input_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/machine/open_regular_file.h"
#include "tools/tavio/failure.h"

namespace tavio::tool {

namespace {

constexpr std::size_t kMaxAtOnce = std::size_t{1} << 20U;

// More memory than this is taken only for bytes that have come.
constexpr std::uint64_t kMaxForeseen = std::uint64_t{1} << 28U;

std::string nameOf(const std::string& path) {
    if (isStandardInput(path)) return "standard input";
    return path.empty() ? "\"\"" : path;
}

[[noreturn]] void refuse(const std::string& name, int error) {
    if (error == ENOENT || error == ENOTDIR) throw Failure(name + " does not exist");
    if (error == EISDIR) throw Failure(name + " is a folder, not a file");
    if (error == ESPIPE) throw Failure(name + " is not a regular file");
    throw Failure(name + " cannot be read: " + std::generic_category().message(error));
}

// Opening a named pipe waits for its writer.
machine::Descriptor openInput(const std::string& path) {
    if (isStandardInput(path)) {
        return machine::Descriptor(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
    }
    if (isStream(path)) return machine::Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return machine::openRegularFile(path);
}

// A signal that ends the program does so while it waits here. In read() ThreadSanitizer would hold the
// handler back until bytes come.
void waitForBytes(int descriptor) {
    pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
    while (::poll(&waiting, 1, -1) < 0 && errno == EINTR) {
    }
}

std::string sizeLimit(std::uint64_t limit) {
    constexpr std::uint64_t kMebibyte = std::uint64_t{1} << 20U;
    if (limit % kMebibyte != 0) return std::to_string(limit) + " bytes";
    return std::to_string(limit / kMebibyte) + " MiB";
}

}  // namespace

bool isStandardInput(const std::string& path) {
    return path == "-" || path == "/dev/stdin" || path == "/dev/fd/0";
}

bool isStream(const std::string& path) {
    if (isStandardInput(path)) return true;
    struct stat status {};
    return path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0 &&
           S_ISFIFO(status.st_mode);
}

InputFile::InputFile(const std::string& path) : name_(nameOf(path)), file_(openInput(path)) {
    if (!file_.isOpen()) refuse(name_, errno);
}

std::uint64_t InputFile::size() const {
    struct stat status {};
    if (::fstat(file_.get(), &status) != 0 || status.st_size < 0) return 0;
    return static_cast<std::uint64_t>(status.st_size);
}

std::span<const Byte> InputFile::next() {
    buffer_.resize(kMaxAtOnce);
    ssize_t count = 0;
    do {
        waitForBytes(file_.get());
        count = ::read(file_.get(), buffer_.data(), buffer_.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) refuse(name_, errno);
    return std::span(buffer_).first(static_cast<std::size_t>(count));
}

Bytes InputFile::rest(std::uint64_t limit) {
    Bytes all;
    all.reserve(static_cast<std::size_t>(std::min({size(), kMaxForeseen, limit})));
    for (auto piece = next(); !piece.empty(); piece = next()) {
        if (all.size() + piece.size() > limit) {
            throw Failure(name_ + " has more than " + sizeLimit(limit) + ", the limit");
        }
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

bool areSameFile(const std::string& input, const std::string& output) {
    struct stat one {};
    struct stat other {};
    return ::stat(input.c_str(), &one) == 0 && ::stat(output.c_str(), &other) == 0 &&
           S_ISREG(one.st_mode) && one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace tavio::tool
