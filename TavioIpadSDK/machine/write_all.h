// Writing all bytes to a file descriptor.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <span>
#include <unistd.h>

namespace tavio::machine {

// Writes all bytes, in as many calls as needed. Returns 0 or the errno of the first error, before
// which some bytes may have been written. Blocks if the descriptor does.
inline int writeAll(int descriptor, std::span<const std::byte> bytes) {
    constexpr std::size_t kMaxAtOnce = std::size_t{1} << 30;  // some systems refuse 2^31
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), kMaxAtOnce));
        const ssize_t count = ::write(descriptor, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        if (count == 0) return EIO;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return 0;
}

}  // namespace tavio::machine
