#include "tavio/links/rfcomm_address.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace tavio::links {

namespace {

constexpr std::uint8_t kLastChannel = 30;
constexpr std::size_t kDeviceLength = 17;  // of AA:BB:CC:DD:EE:FF

// The number, if the whole text is one; else none.
std::optional<std::uint8_t> numberIn(std::string_view text, int base) {
    std::uint8_t number = 0;
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, number, base);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

bool isNoDevice(const std::array<std::uint8_t, 6>& device) {
    auto isAll = [&](std::uint8_t value) {
        return std::all_of(device.begin(), device.end(), [=](auto byte) { return byte == value; });
    };
    return isAll(0x00) || isAll(0xFF);
}

std::optional<std::array<std::uint8_t, 6>> deviceIn(std::string_view text) {
    if (text.size() != kDeviceLength) return std::nullopt;
    std::array<std::uint8_t, 6> device{};
    for (std::size_t i = 0; i < device.size(); ++i) {
        auto byte = numberIn(text.substr(3 * i, 2), 16);
        if (!byte || (i > 0 && text.at(3 * i - 1) != ':')) return std::nullopt;
        device.at(i) = *byte;
    }
    if (isNoDevice(device)) return std::nullopt;
    return device;
}

}  // namespace

std::optional<RfcommAddress> parseRfcommAddress(std::string_view text) {
    auto device = deviceIn(text.substr(0, kDeviceLength));
    if (!device) return std::nullopt;
    RfcommAddress address{*device, 1};
    std::string_view rest = text.substr(kDeviceLength);
    if (rest.empty()) return address;
    if (rest.front() != '/') return std::nullopt;
    auto channel = numberIn(rest.substr(1), 10);
    if (!channel || *channel < 1 || *channel > kLastChannel) return std::nullopt;
    address.channel = *channel;
    return address;
}

std::string toText(const RfcommAddress& address) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (std::uint8_t byte : address.device) {
        if (!text.empty()) text += ':';
        text += kDigits.at(byte >> 4U);
        text += kDigits.at(byte & 0xFU);
    }
    return text.append("/").append(std::to_string(address.channel));
}

}  // namespace tavio::links
