// Parsing port numbers.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace tavio::machine {

// The port, if the whole text is a decimal number from 0 to 65535 without sign or spaces. Port 0
// lets the system choose a free one, so it makes sense only for listening.
inline std::optional<std::uint16_t> parsePort(std::string_view text) {
    std::uint16_t port = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, port);
    if (error != std::errc() || stop != end) return std::nullopt;
    return port;
}

}  // namespace tavio::machine
