// Addresses to listen on.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavio::virtual_printer {

struct ListenAddress {
    std::string host;        // a name, or a numeric address without brackets
    std::uint16_t port = 0;  // 0 chooses a free one

    bool operator==(const ListenAddress&) const = default;
};

// "HOST", "HOST:PORT", "[IPV6]", "[IPV6]:PORT"; an IPv6 address without brackets is a host. Ports
// are 0 to 65535. None for anything else: an empty host, blanks, control characters, a port out of
// range, brackets that do not close.
std::optional<ListenAddress> parseListenAddress(std::string_view text, std::uint16_t usualPort);

// In its written form: "127.0.0.1:9100", "[::1]:9100".
std::string toText(const ListenAddress& address);

}  // namespace tavio::virtual_printer
