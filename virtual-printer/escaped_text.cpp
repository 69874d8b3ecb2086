#include "tavio/virtual-printer/escaped_text.h"

namespace tavio::virtual_printer {
namespace {

void appendHex(std::string& text, unsigned char byte) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    text += "\\x";
    text += kDigits[byte / 16U];
    text += kDigits[byte % 16U];
}

void appendEscaped(std::string& text, char byte) {
    switch (byte) {
        case '\r':
            text += "\\r";
            return;
        case '\n':
            text += "\\n";
            return;
        case '\t':
            text += "\\t";
            return;
        case '\\':
            text += "\\\\";
            return;
        case '"':
            text += "\\\"";
            return;
        default:
            break;
    }
    if (byte >= ' ' && byte <= '~') {
        text += byte;
    } else {
        appendHex(text, static_cast<unsigned char>(byte));
    }
}

}  // namespace

std::string escaped(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) appendEscaped(text, byte);
    return text;
}

std::string quoted(std::string_view bytes) {
    return '"' + escaped(bytes) + '"';
}

}  // namespace tavio::virtual_printer
