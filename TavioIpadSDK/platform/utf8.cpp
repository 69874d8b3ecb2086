#include "TavioIpadSDK/platform/utf8.h"

namespace tavio::platform {
namespace {

// The smallest code point that needs a sequence of this many bytes.
constexpr std::uint32_t kMinCodePoint[] = {0, 0, 0x80, 0x800, 0x10000};

std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

}  // namespace

Utf8Character firstCharacter(std::string_view text) {
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

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const Utf8Character character = firstCharacter(text);
        if (character.length == 0) return false;
        text.remove_prefix(character.length);
    }
    return true;
}

}  // namespace tavio::platform
