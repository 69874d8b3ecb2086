// Ports of the network, as text.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace tavio::machine {

// The whole text is a decimal number from 0 to 65535, without sign or blanks. Port 0 stands for
// any that is free: only who listens can mean it.
inline std::optional<std::uint16_t> parsePort(std::string_view text) {
    std::uint16_t port = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, port);
    if (error != std::errc() || stop != end) return std::nullopt;
    return port;
}

}  // namespace tavio::machine
