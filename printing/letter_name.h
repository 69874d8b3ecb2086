// The names of letters in sentences.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavio::printing {

// True for the characters that stand for no letter: U+0000 to U+001F and U+007F to U+009F.
bool isControl(std::uint32_t codePoint);

// The first character of a text of UTF-8 that is not empty: "é" (U+00E9), or U+0301 if it does not
// show by itself.
std::string letterName(std::string_view text);

// "U+00E9"
std::string codeText(std::uint32_t codePoint);

}  // namespace tavio::printing
