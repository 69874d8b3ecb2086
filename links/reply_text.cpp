#include "tavio/links/reply_text.h"

#include <algorithm>

#include "TavioIpadSDK/platform/text.h"

namespace tavio::links {

std::string replyText(std::span<const Byte> bytes) {
    if (auto text = platform::decodeUtf8(bytes)) return *std::move(text);
    std::string text;
    for (const Byte byte : bytes) {
        if (byte < 0x80U) {
            text.push_back(static_cast<char>(byte));
        } else {
            text.push_back(static_cast<char>(0xC0U | (byte >> 6U)));
            text.push_back(static_cast<char>(0x80U | (byte & 0x3FU)));
        }
    }
    return text;
}

void appendUpTo(std::size_t limit, Bytes& kept, std::span<const Byte> bytes) {
    const std::size_t room = limit - std::min(limit, kept.size());
    const auto taken = bytes.first(std::min(room, bytes.size()));
    kept.insert(kept.end(), taken.begin(), taken.end());
}

}  // namespace tavio::links
