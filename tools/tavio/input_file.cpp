#include "tools/tavio/input_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "tools/tavio/failure.h"

namespace tavio::tool {

namespace {

constexpr std::size_t kMaxAtOnce = std::size_t{1} << 20;

// More memory than this is taken only for bytes that have come.
constexpr std::uint64_t kMaxForeseen = std::uint64_t{1} << 30;

std::string nameOf(const std::string& path) {
    return path.empty() ? "\"\"" : path;
}

[[noreturn]] void refuse(const std::string& path, int errorNumber) {
    if (errorNumber == ENOENT || errorNumber == ENOTDIR) {
        throw Failure(nameOf(path) + " does not exist");
    }
    throw Failure(nameOf(path) +
                  " cannot be read: " + std::generic_category().message(errorNumber));
}

// Looked at before the file is opened: opening a pipe would wait for its other end.
void refuseIrregular(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) refuse(path, errno);
    if (S_ISDIR(status.st_mode)) throw Failure(path + " is a folder, not a file");
    if (!S_ISREG(status.st_mode)) throw Failure(path + " is not a regular file");
}

}  // namespace

InputFile::InputFile(std::string path) : path_(std::move(path)) {
    refuseIrregular(path_);
    descriptor_ = ::open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ < 0) refuse(path_, errno);
}

InputFile::~InputFile() {
    ::close(descriptor_);
}

std::uint64_t InputFile::size() const {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || status.st_size < 0) return 0;
    return static_cast<std::uint64_t>(status.st_size);
}

std::span<const Byte> InputFile::next() {
    buffer_.resize(kMaxAtOnce);
    ssize_t count = 0;
    do {
        count = ::read(descriptor_, buffer_.data(), buffer_.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) refuse(path_, errno);
    return std::span(buffer_).first(static_cast<std::size_t>(count));
}

Bytes InputFile::rest() {
    Bytes all;
    all.reserve(static_cast<std::size_t>(std::min(size(), kMaxForeseen)));
    for (auto piece = next(); !piece.empty(); piece = next()) {
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

bool InputFile::isAt(const std::string& path) const {
    struct stat mine {};
    struct stat other {};
    return ::fstat(descriptor_, &mine) == 0 && ::stat(path.c_str(), &other) == 0 &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

}  // namespace tavio::tool
