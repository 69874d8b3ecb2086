#include "TavioIpadSDK/platform/text.h"

#include <cstddef>
#include <cstdint>

namespace tavio::platform {
namespace {

struct Character {
    std::uint32_t codePoint = 0;
    std::size_t length = 0;  // bytes; 0 when the bytes are not well-formed
};

// The smallest code point that needs a sequence of this many bytes.
constexpr std::uint32_t kMinCodePoint[] = {0, 0, 0x80, 0x800, 0x10000};

std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

Character decodeFirst(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = sequenceLength(lead);
    if (length == 1) return {lead, 1};
    if (length == 0 || length > text.size()) return {};

    std::uint32_t codePoint = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80U) return {};
        codePoint = (codePoint << 6) | (next & 0x3FU);
    }
    const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < kMinCodePoint[length] || codePoint > 0x10FFFF || isSurrogate) return {};
    return {codePoint, length};
}

}  // namespace

Text decodeUtf8(std::span<const Byte> bytes) {
    std::string text(bytes.begin(), bytes.end());
    std::string_view rest = text;
    while (!rest.empty()) {
        const Character character = decodeFirst(rest);
        if (character.length == 0) return std::nullopt;
        rest.remove_prefix(character.length);
    }
    return text;
}

Bytes lowBytesOfUtf16(std::string_view text) {
    Bytes units;
    units.reserve(text.size());
    while (!text.empty()) {
        const Character character = decodeFirst(text);
        if (character.length == 0) {
            units.push_back(static_cast<Byte>(text[0]));
            text.remove_prefix(1);
            continue;
        }
        if (character.codePoint > 0xFFFF) {  // a high surrogate goes before the low one
            units.push_back(static_cast<Byte>((0xD800 + ((character.codePoint - 0x10000) >> 10))));
            units.push_back(static_cast<Byte>(0xDC00 + ((character.codePoint - 0x10000) & 0x3FF)));
        } else {
            units.push_back(static_cast<Byte>(character.codePoint));
        }
        text.remove_prefix(character.length);
    }
    return units;
}

}  // namespace tavio::platform
