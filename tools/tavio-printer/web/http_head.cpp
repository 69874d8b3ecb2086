#include "tools/tavio-printer/web/http_head.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace tavio::virtual_printer {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHeadEnd = "\r\n\r\n";

bool equalInAnyCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](unsigned char left, unsigned char right) {
        return std::tolower(left) == std::tolower(right);
    });
}

bool isCostly(std::string_view line) {
    const std::string_view name = line.substr(0, std::min(line.find(':'), line.size()));
    constexpr std::array<std::string_view, 3> kCostly = {"range", "if-range", "accept-encoding"};
    return std::ranges::any_of(kCostly, [&](auto other) { return equalInAnyCase(name, other); });
}

// "[::1]:9180" -> "::1", "localhost" -> "localhost"
std::string_view nameIn(std::string_view host) {
    if (host.starts_with('[')) {
        const std::size_t end = host.find(']');
        return end == std::string_view::npos ? std::string_view() : host.substr(1, end - 1);
    }
    return host.substr(0, std::min(host.find(':'), host.size()));
}

bool isLoopback(std::string_view name) {
    if (equalInAnyCase(name, "localhost") || name == "::1") return true;
    // 127.0.0.0/8, but not a name such as "127.example"
    return name.starts_with("127.") && name.find_first_not_of("0123456789.") == name.npos;
}

}  // namespace

std::size_t headEnd(std::string_view bytes) {
    const std::size_t found = bytes.find(kHeadEnd);
    return found == std::string_view::npos ? found : found + kHeadEnd.size();
}

std::string withoutCostlyHeaders(std::string_view head) {
    std::string kept;
    kept.reserve(head.size());
    bool first = true;
    while (!head.empty()) {
        const std::size_t end = head.find(kLineEnd);
        const std::size_t length =
            end == std::string_view::npos ? head.size() : end + kLineEnd.size();
        const std::string_view line = head.substr(0, length);
        if (first || !isCostly(line)) kept += line;
        first = false;
        head.remove_prefix(length);
    }
    return kept;
}

bool isHostAllowed(std::string_view host, std::string_view boundAddress) {
    if (host.empty()) return false;
    return !isLoopback(boundAddress) || isLoopback(nameIn(host));
}

bool isOriginAllowed(std::string_view origin, std::string_view site, std::string_view host) {
    constexpr std::string_view kScheme = "http://";
    if (!origin.empty()) {
        return origin.starts_with(kScheme) && equalInAnyCase(origin.substr(kScheme.size()), host);
    }
    return site.empty() || site == "same-origin" || site == "none";
}

}  // namespace tavio::virtual_printer
