#include "TavioIpadSDK/platform/url.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace tavio::platform {
namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool hasDigits = text[i] == '%' && i + 2 < text.size();
        const int high = hasDigits ? hexDigit(text[i + 1]) : -1;
        const int low = hasDigits ? hexDigit(text[i + 2]) : -1;
        if (high < 0 || low < 0) {
            decoded += text[i];
        } else {
            decoded += static_cast<char>(high * 16 + low);
            i += 2;
        }
    }
    return decoded;
}

bool isAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool mayStandInPath(char c) {
    return isAlphanumeric(c) ||
           std::string_view("-._~!$&'()*+,;=:@/").find(c) != std::string_view::npos;
}

// The length of "scheme:" at the front of the text, 0 when there is none.
std::size_t schemeLength(std::string_view text) {
    const std::size_t colon = text.find_first_of(":/?#");
    if (colon == std::string_view::npos || text[colon] != ':' || colon == 0) return 0;
    if (!isAlphanumeric(text[0]) || (text[0] >= '0' && text[0] <= '9')) return 0;
    for (const char c : text.substr(0, colon))
        if (!isAlphanumeric(c) && c != '+' && c != '-' && c != '.') return 0;
    return colon + 1;
}

// The path as written in the URL: after scheme and authority, before query and fragment.
std::string_view encodedPath(std::string_view text) {
    text.remove_prefix(schemeLength(text));
    if (text.substr(0, 2) == "//") {
        text.remove_prefix(2);
        text.remove_prefix(std::min(text.find_first_of("/?#"), text.size()));
    }
    return text.substr(0, text.find_first_of("?#"));
}

}  // namespace

Url Url::fromText(std::string_view text) {
    return Url(std::string(text));
}

Url Url::fromPath(std::string_view path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    const std::string whole = error ? std::string(path) : absolute.string();

    constexpr char kHex[] = "0123456789ABCDEF";
    std::string text = "file://";
    for (const char c : whole) {
        const auto byte = static_cast<unsigned char>(c);
        if (mayStandInPath(c)) {
            text += c;
        } else {
            text += {'%', kHex[byte >> 4], kHex[byte & 15U]};
        }
    }
    return Url(std::move(text));
}

std::string Url::pathExtension() const {
    std::string path = fileSystemPath();
    while (!path.empty() && path.back() == '/') path.pop_back();
    const std::size_t slash = path.rfind('/');
    const std::string last = slash == std::string::npos ? path : path.substr(slash + 1);
    const std::size_t dot = last.rfind('.');
    return dot == std::string::npos ? std::string() : last.substr(dot + 1);
}

std::string Url::fileSystemPath() const {
    return percentDecoded(encodedPath(text_));
}

}  // namespace tavio::platform
