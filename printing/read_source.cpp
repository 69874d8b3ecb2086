#include "tavio/printing/read_source.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <optional>
#include <span>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/machine/open_regular_file.h"

namespace tavio::printing {
namespace {

constexpr std::size_t kMaxPiece = std::size_t{1} << 20U;

tl::unexpected<Problem> unreadable(const Source& source, int error) {
    const std::string name = shownName(source);
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return problem(ProblemKind::kNotFound, name + " does not exist");
        case EISDIR:
            return problem(ProblemKind::kNotReadable, name + " is a folder, not a file");
        case ESPIPE:
            return problem(ProblemKind::kNotReadable, name + " is not a regular file");
        default:
            return problem(ProblemKind::kNotReadable,
                           name + " cannot be read: " + std::generic_category().message(error));
    }
}

tl::unexpected<Problem> tooLarge(const Source& source, std::uint64_t maxBytes) {
    return problem(ProblemKind::kTooLarge, shownName(source) + " is larger than " +
                                               std::to_string(maxBytes) +
                                               " bytes, the limit for one document");
}

std::uint64_t statedSize(const machine::Descriptor& file) {
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || status.st_size < 0) return 0;
    return static_cast<std::uint64_t>(status.st_size);
}

// Appends the next piece; returns the number of bytes, none on an error.
std::optional<std::size_t> appendPiece(const machine::Descriptor& file, Bytes& bytes) {
    const std::size_t before = bytes.size();
    bytes.resize(before + kMaxPiece);
    ssize_t count = 0;
    do {
        count = ::read(file.get(), bytes.data() + before, kMaxPiece);
    } while (count < 0 && errno == EINTR);
    const std::size_t taken = count > 0 ? static_cast<std::size_t>(count) : 0;
    bytes.resize(before + taken);
    if (count < 0) return std::nullopt;
    return taken;
}

}  // namespace

std::string shownName(const Source& source) {
    if (!source.name().empty()) return source.name();
    return source.content() ? "the document" : "\"\"";
}

tl::unexpected<Problem> problem(ProblemKind kind, std::string sentence) {
    return tl::unexpected(Problem{kind, 0, {}, std::move(sentence)});
}

tl::unexpected<Problems> outOfMemory() noexcept {
    try {
        return tl::unexpected(
            Problems{{ProblemKind::kOverMemory, 0, {}, "there is not enough memory for this"}});
    } catch (const std::bad_alloc&) {
        return tl::unexpected(Problems());
    }
}

Expected<std::shared_ptr<const Bytes>, Problem> readSource(const Source& source,
                                                           std::uint64_t maxBytes) {
    if (source.isIncomplete())
        return problem(ProblemKind::kOverMemory, "the document did not fit in memory");
    if (source.content()) {
        if (source.content()->size() > maxBytes) return tooLarge(source, maxBytes);
        return source.content();
    }
    const machine::Descriptor file = machine::openRegularFile(source.name());
    if (!file.isOpen()) return unreadable(source, errno);
    const std::uint64_t size = statedSize(file);
    if (size > maxBytes) return tooLarge(source, maxBytes);
    Bytes bytes;
    bytes.reserve(static_cast<std::size_t>(size) + kMaxPiece);
    while (true) {
        const std::optional<std::size_t> count = appendPiece(file, bytes);
        if (!count) return unreadable(source, errno);
        if (bytes.size() > maxBytes) return tooLarge(source, maxBytes);
        if (*count == 0) return std::make_shared<const Bytes>(std::move(bytes));
    }
}

}  // namespace tavio::printing
