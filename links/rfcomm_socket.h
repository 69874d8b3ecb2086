// Our own declarations for RFCOMM sockets of Linux: two numbers and a structure of ten bytes. The C
// library does not have them, and the Bluetooth library is not needed for that.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <sys/socket.h>

#include "tavio/links/rfcomm_address.h"

namespace tavio::links {

inline constexpr int kBluetoothFamily = 31;
inline constexpr int kRfcommProtocol = 3;

// The socket's address, as the kernel reads it.
struct RfcommSocketAddress {
    std::uint16_t family = kBluetoothFamily;
    std::array<std::uint8_t, 6> device{};  // in reverse of the written order
    std::uint8_t channel = 0;
    std::uint8_t padding = 0;  // unnamed in the kernel's structure
};
static_assert(sizeof(RfcommSocketAddress) == 10 && alignof(RfcommSocketAddress) == 2);
static_assert(sizeof(RfcommSocketAddress) <= sizeof(sockaddr));
static_assert(offsetof(RfcommSocketAddress, device) == 2);
static_assert(offsetof(RfcommSocketAddress, channel) == 8);

constexpr RfcommSocketAddress toSocketAddress(const RfcommAddress& address) {
    RfcommSocketAddress result;
    for (std::size_t i = 0; i < address.device.size(); ++i) {
        result.device.at(i) = address.device.at(address.device.size() - 1 - i);
    }
    result.channel = address.channel;
    return result;
}

}  // namespace tavio::links
