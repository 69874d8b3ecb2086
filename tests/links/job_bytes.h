// Bytes for a link to send.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::links::test {

// The bytes of `text`, which has to outlive them.
inline std::span<const Byte> bytesOf(std::string_view text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

// `size` bytes without a pattern, always the same.
inline std::string someBytes(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t noise = 1;
    for (char& byte : bytes) {
        noise = noise * 1664525U + 1013904223U;
        byte = static_cast<char>(noise >> 24U);
    }
    return bytes;
}

}  // namespace tavio::links::test
