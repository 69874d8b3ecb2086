// Addresses of printers on a network.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::links {

inline constexpr std::uint16_t kPrinterPort = 9100;

struct TAVIO_API TcpAddress {
    std::string host;  // a name, or a numeric address without brackets
    std::uint16_t port = kPrinterPort;

    bool operator==(const TcpAddress&) const = default;
};

// "HOST", "HOST:PORT", "[IPV6]", "[IPV6]:PORT"; an IPv6 address without brackets is taken as a
// host. Ports are 1 to 65535. None for anything else: an empty host, blanks, control characters, a
// port out of range, brackets that do not close.
TAVIO_API std::optional<TcpAddress> parseTcpAddress(std::string_view text);

// In its written form: "printer:9100", "[fe80::1]:9100".
TAVIO_API std::string toText(const TcpAddress& address);

}  // namespace tavio::links
