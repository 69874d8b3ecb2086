// Addresses of serial devices.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::links {

struct TAVIO_API SerialAddress {
    std::string device;                 // path
    std::optional<std::uint32_t> baud;  // bits per second; none: the device's setting

    bool operator==(const SerialAddress&) const = default;
};

// "DEVICE" or "DEVICE?baud=RATE", with a standard rate from 1200 to 4000000. None for an empty
// device, another rate, or anything else after the "?".
TAVIO_API std::optional<SerialAddress> parseSerialAddress(std::string_view text);

// "/dev/ttyUSB0?baud=9600"
TAVIO_API std::string toText(const SerialAddress& address);

}  // namespace tavio::links
