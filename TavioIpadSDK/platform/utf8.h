// UTF-8, one character at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tavio::platform {

struct Utf8Character {
    std::uint32_t codePoint = 0;
    std::size_t length = 0;  // bytes; 0 when the bytes are not well-formed
};

// The first character of a text that is not empty. Well-formed is no overlong form, no surrogate
// and nothing above U+10FFFF.
Utf8Character firstCharacter(std::string_view text);

// True if all of the text is well-formed. Does not copy it.
bool isUtf8(std::string_view text);

}  // namespace tavio::platform
