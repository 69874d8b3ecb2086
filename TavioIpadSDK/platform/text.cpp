#include "TavioIpadSDK/platform/text.h"

#include "TavioIpadSDK/platform/utf8.h"

namespace tavio::platform {

Text decodeUtf8(std::span<const Byte> bytes) {
    std::string text(bytes.begin(), bytes.end());
    if (!isUtf8(text)) return std::nullopt;
    return text;
}

Bytes lowBytesOfUtf16(std::string_view text) {
    Bytes units;
    units.reserve(text.size());
    while (!text.empty()) {
        const Utf8Character character = firstCharacter(text);
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
