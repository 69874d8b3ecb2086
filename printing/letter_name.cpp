#include "tavio/printing/letter_name.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "TavioIpadSDK/platform/utf8.h"

namespace tavio::printing {
namespace {

struct CodeRange {
    std::uint32_t first;
    std::uint32_t last;
};

// Characters that join the one before them, turn the text around or do not show, so that a person
// could not find them in a sentence.
constexpr auto kUnshown = std::to_array<CodeRange>({
    {0x00A0, 0x00A0},    // no-break space
    {0x00AD, 0x00AD},    // soft hyphen
    {0x0300, 0x036F},    // combining marks
    {0x061C, 0x061C},    // Arabic letter mark
    {0x1AB0, 0x1AFF},    // combining marks
    {0x1DC0, 0x1DFF},    // combining marks
    {0x2000, 0x200F},    // spaces, joiners, direction marks
    {0x2028, 0x202F},    // line ends, direction
    {0x205F, 0x206F},    // spaces, direction
    {0x20D0, 0x20FF},    // combining marks
    {0x3000, 0x3000},    // wide space
    {0xE000, 0xF8FF},    // private use
    {0xFE00, 0xFE0F},    // variation selectors
    {0xFE20, 0xFE2F},    // combining marks
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xE0000, 0x10FFFF}  // tags, variation selectors, private use
});

bool isShown(std::uint32_t code) {
    return std::ranges::none_of(kUnshown, [code](const CodeRange& range) {
        return code >= range.first && code <= range.last;
    });
}

}  // namespace

bool isControl(std::uint32_t codePoint) {
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
}

std::string codeText(std::uint32_t codePoint) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "U+%04X", static_cast<unsigned>(codePoint));
    return digits.data();
}

std::string letterName(std::string_view text) {
    const platform::Utf8Character letter = platform::firstCharacter(text);
    std::string code = codeText(letter.codePoint);
    if (!isShown(letter.codePoint)) return code;
    return std::string("\"").append(text.substr(0, letter.length)) + "\" (" + code + ")";
}

}  // namespace tavio::printing
