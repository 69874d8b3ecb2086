#include "tools/tavio/input_file.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/machine/open_regular_file.h"
#include "tools/tavio/failure.h"

namespace tavio::tool {

namespace {

constexpr std::size_t kMaxAtOnce = std::size_t{1} << 20;

// More memory than this is taken only for bytes that have come.
constexpr std::uint64_t kMaxForeseen = std::uint64_t{1} << 30;

std::string nameOf(const std::string& path) {
    return path.empty() ? "\"\"" : path;
}

[[noreturn]] void refuse(const std::string& path, int error) {
    if (error == ENOENT || error == ENOTDIR) throw Failure(nameOf(path) + " does not exist");
    if (error == EISDIR) throw Failure(path + " is a folder, not a file");
    if (error == ESPIPE) throw Failure(path + " is not a regular file");
    throw Failure(nameOf(path) + " cannot be read: " + std::generic_category().message(error));
}

}  // namespace

InputFile::InputFile(std::string path)
    : path_(std::move(path)), file_(machine::openRegularFile(path_)) {
    if (!file_.isOpen()) refuse(path_, errno);
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
        count = ::read(file_.get(), buffer_.data(), buffer_.size());
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
    return ::fstat(file_.get(), &mine) == 0 && ::stat(path.c_str(), &other) == 0 &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

}  // namespace tavio::tool
