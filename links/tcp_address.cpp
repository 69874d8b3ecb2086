#include "tavio/links/tcp_address.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>

#include "TavioIpadSDK/machine/port_number.h"

namespace tavio::links {

namespace {

constexpr std::size_t kMaxHostSize = 255;

// Letters, digits and other characters of names; internationalised names have bytes above 127.
bool isNameCharacter(char character) {
    const auto code = static_cast<unsigned char>(character);
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') ||
           (code >= '0' && code <= '9') || code == '-' || code == '.' || code == '_' ||
           code >= 0x80;
}

bool isName(std::string_view text) {
    return !text.empty() && text.size() <= kMaxHostSize &&
           std::all_of(text.begin(), text.end(), isNameCharacter);
}

// Also with the name of an interface: fe80::1%wlan0.
bool isIpv6(std::string_view text) {
    const std::size_t percent = text.find('%');
    if (percent != std::string_view::npos && !isName(text.substr(percent + 1))) return false;
    std::array<std::uint8_t, 16> ignored{};
    const std::string address(text.substr(0, percent));
    return address.find('\0') == std::string::npos &&
           ::inet_pton(AF_INET6, address.c_str(), ignored.data()) == 1;
}

// `port` is "" or begins with a colon.
std::optional<TcpAddress> withPort(std::string_view host, std::string_view port) {
    TcpAddress address{std::string(host)};
    if (port.empty()) return address;
    if (port.front() != ':') return std::nullopt;
    const auto number = machine::parsePort(port.substr(1));
    if (!number || *number == 0) return std::nullopt;
    address.port = *number;
    return address;
}

}  // namespace

std::optional<TcpAddress> parseTcpAddress(std::string_view text) {
    if (text.starts_with('[')) {
        const std::size_t end = text.find(']');
        if (end == std::string_view::npos) return std::nullopt;
        const std::string_view host = text.substr(1, end - 1);
        return isIpv6(host) ? withPort(host, text.substr(end + 1)) : std::nullopt;
    }
    if (isIpv6(text)) return withPort(text, "");
    const std::size_t colon = std::min(text.find(':'), text.size());
    const std::string_view host = text.substr(0, colon);
    return isName(host) ? withPort(host, text.substr(colon)) : std::nullopt;
}

std::string toText(const TcpAddress& address) {
    const bool bracketed = address.host.find(':') != std::string::npos;
    std::string text = bracketed ? std::string("[") : std::string();
    text.append(address.host);
    if (bracketed) text.append("]");
    return text.append(":").append(std::to_string(address.port));
}

}  // namespace tavio::links
