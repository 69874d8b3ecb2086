#include "tools/common/json.h"

#include <array>
#include <cstddef>

namespace tavio::command_line {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

struct Lead {
    std::size_t length;    // of the whole character
    unsigned char lowest;  // its second byte
    unsigned char highest;
};

// By the first byte of a character of several bytes; length 0 if no character begins with it.
Lead leadOf(unsigned char first) {
    if (first >= 0xC2 && first <= 0xDF) return {2, 0x80, 0xBF};
    if (first == 0xE0) return {3, 0xA0, 0xBF};
    if (first == 0xED) return {3, 0x80, 0x9F};
    if (first >= 0xE1 && first <= 0xEF) return {3, 0x80, 0xBF};
    if (first == 0xF0) return {4, 0x90, 0xBF};
    if (first >= 0xF1 && first <= 0xF3) return {4, 0x80, 0xBF};
    if (first == 0xF4) return {4, 0x80, 0x8F};
    return {0, 0, 0};
}

// The length of the text's first character; 0 if it is not UTF-8.
std::size_t characterLength(std::string_view text) {
    const auto at = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    if (at(0) < 0x80) return 1;
    const Lead lead = leadOf(at(0));
    if (lead.length == 0 || text.size() < lead.length) return 0;
    if (at(1) < lead.lowest || at(1) > lead.highest) return 0;
    for (std::size_t index = 2; index < lead.length; ++index) {
        if ((at(index) & 0xC0U) != 0x80) return 0;
    }
    return lead.length;
}

void appendEscaped(std::string& json, char character) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(character);
    const bool asNumber =
        value < 0x20 || value == 0x7F || character == '<' || character == '>' || character == '&';
    if (asNumber) {
        json += "\\u00";
        json += kDigits[value >> 4U];
        json += kDigits[value & 0xFU];
        return;
    }
    if (character == '"' || character == '\\') json += '\\';
    json += character;
}

}  // namespace

std::string jsonText(std::string_view text) {
    std::string json = "\"";
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 1) {
            appendEscaped(json, text[0]);
        } else {
            json += length == 0 ? kReplacement : text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return json += '"';
}

std::string jsonArray(std::span<const std::string> values) {
    std::string json = "[";
    for (const std::string& value : values) {
        if (json.size() > 1) json += ',';
        json += value;
    }
    return json += ']';
}

JsonObject& JsonObject::json(std::string_view name, std::string_view value) {
    if (members_.size() > 1) members_ += ',';
    members_ += '"';
    members_ += name;
    members_ += "\":";
    members_ += value;
    return *this;
}

}  // namespace tavio::command_line
