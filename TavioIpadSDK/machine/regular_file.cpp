#include "TavioIpadSDK/machine/regular_file.h"

#include <cerrno>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

#include "TavioIpadSDK/machine/open_regular_file.h"

namespace tavio::machine {

std::unique_ptr<RegularFile> RegularFile::open(const std::string& path) {
    Descriptor file = openRegularFile(path);
    if (!file.isOpen()) return nullptr;
    return std::unique_ptr<RegularFile>(new RegularFile(std::move(file)));
}

std::uint64_t RegularFile::size() const {
    struct stat status {};
    if (::fstat(file_.get(), &status) != 0 || status.st_size < 0) return 0;
    return static_cast<std::uint64_t>(status.st_size);
}

std::optional<std::size_t> RegularFile::read(std::span<Byte> into, std::uint64_t offset) const {
    constexpr std::uint64_t kMaxOffset = std::numeric_limits<off_t>::max();
    std::size_t used = 0;
    while (used < into.size() && offset <= kMaxOffset - used) {
        const ssize_t got = ::pread(file_.get(), into.data() + used, into.size() - used,
                                    static_cast<off_t>(offset + used));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        used += static_cast<std::size_t>(got);
    }
    return used;
}

}  // namespace tavio::machine
