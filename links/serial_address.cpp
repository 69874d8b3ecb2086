#include "tavio/links/serial_address.h"

#include <charconv>
#include <system_error>

#include "tavio/links/serial_speed.h"

namespace tavio::links {

namespace {

std::optional<std::uint32_t> baudIn(std::string_view text) {
    constexpr std::string_view kName = "baud=";
    if (!text.starts_with(kName)) return std::nullopt;
    std::uint32_t baud = 0;
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data() + kName.size(), end, baud);
    if (error != std::errc() || stop != end || !speedOf(baud)) return std::nullopt;
    return baud;
}

}  // namespace

std::optional<SerialAddress> parseSerialAddress(std::string_view text) {
    const std::size_t mark = text.find('?');
    SerialAddress address{std::string(text.substr(0, mark)), std::nullopt};
    // C calls end a path at its first NUL byte, so it would name another device.
    if (address.device.empty() || address.device.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    if (mark == std::string_view::npos) return address;
    address.baud = baudIn(text.substr(mark + 1));
    if (!address.baud) return std::nullopt;
    return address;
}

std::string toText(const SerialAddress& address) {
    std::string text = address.device;
    if (address.baud) text.append("?baud=").append(std::to_string(*address.baud));
    return text;
}

}  // namespace tavio::links
