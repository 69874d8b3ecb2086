#include "tools/tavio-printer/doors/listen_address.h"

#include <algorithm>

#include "TavioIpadSDK/machine/port_number.h"

namespace tavio::virtual_printer {
namespace {

bool isInAddresses(char c) {
    return c > ' ' && c != '\x7F' && c != '[' && c != ']';
}

bool isHost(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isInAddresses);
}

}  // namespace

std::optional<ListenAddress> parseListenAddress(std::string_view text, std::uint16_t usualPort) {
    std::string_view host = text;
    std::string_view rest;  // after the host
    if (text.starts_with('[')) {
        const std::size_t close = text.find(']');
        if (close == std::string_view::npos) return std::nullopt;
        host = text.substr(1, close - 1);
        rest = text.substr(close + 1);
    } else if (std::count(text.begin(), text.end(), ':') == 1) {
        host = text.substr(0, text.find(':'));
        rest = text.substr(host.size());
    }
    if (!isHost(host)) return std::nullopt;
    if (rest.empty()) return ListenAddress{std::string(host), usualPort};
    const auto port = machine::parsePort(rest.substr(1));
    if (rest.front() != ':' || !port) return std::nullopt;
    return ListenAddress{std::string(host), *port};
}

std::string toText(const ListenAddress& address) {
    const bool brackets = address.host.find(':') != std::string::npos;
    std::string text = address.host;
    if (brackets) text.insert(0, 1, '[').append(1, ']');
    return text.append(1, ':').append(std::to_string(address.port));
}

}  // namespace tavio::virtual_printer
