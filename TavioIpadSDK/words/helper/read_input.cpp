#include "TavioIpadSDK/words/helper/read_input.h"

#include <cerrno>
#include <cstddef>
#include <sys/stat.h>
#include <unistd.h>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::words_helper {

std::optional<Bytes> readInput(int descriptor) {
    const machine::Descriptor file(descriptor);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || status.st_size < 0) return std::nullopt;
    Bytes bytes(static_cast<std::size_t>(status.st_size));
    std::size_t used = 0;
    while (used < bytes.size()) {
        const ssize_t count =
            ::pread(file.get(), bytes.data() + used, bytes.size() - used, static_cast<off_t>(used));
        if (count == 0 || (count < 0 && errno != EINTR)) return std::nullopt;
        if (count > 0) used += static_cast<std::size_t>(count);
    }
    return bytes;
}

}  // namespace tavio::words_helper
