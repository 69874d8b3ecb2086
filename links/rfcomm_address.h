// Addresses of Bluetooth printers.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::links {

struct TAVIO_API RfcommAddress {
    std::array<std::uint8_t, 6> device{};  // in written order
    std::uint8_t channel = 1;              // 1 to 30

    bool operator==(const RfcommAddress&) const = default;
};

// "AA:BB:CC:DD:EE:FF" or "AA:BB:CC:DD:EE:FF/CHANNEL", capital or small letters. None for anything
// else, for a channel out of range, and for the addresses of all zeros and all ones, which no
// device has.
TAVIO_API std::optional<RfcommAddress> parseRfcommAddress(std::string_view text);

// "AA:BB:CC:DD:EE:FF/1"
TAVIO_API std::string toText(const RfcommAddress& address);

}  // namespace tavio::links
