#include "tavio/printing/plain_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/machine/arithmetic.h"
#include "TavioIpadSDK/platform/utf8.h"
#include "TavioIpadSDK/sharp/dots_place.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

// "<" begins a command; line feeds begin a new line.
bool isPrintable(char letter) {
    return (letter >= ' ' && letter <= '~' && letter != '<') || letter == '\n';
}

bool isControl(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

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

// "U+00E9"
std::string codeText(std::uint32_t code) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "U+%04X", static_cast<unsigned>(code));
    return digits.data();
}

// Where the printer's calibration moves a row or column to, or as near as the printer has one.
std::int32_t moved(std::int32_t position, std::int32_t by) {
    if (by == 0) return position;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(std::int64_t{position} + by, 0, sharp::kMaxPosition));
}

// The sentence about the first letter of `text`, which cannot be printed.
std::string refusal(std::string_view text) {
    const platform::Utf8Character letter = platform::firstCharacter(text);
    const std::string code = codeText(letter.codePoint);
    if (isControl(letter.codePoint)) return "the text has the control character " + code;
    const std::string why = letter.codePoint == '<' ? ", which begins a command"
                                                    : ", which the printer's face does not have";
    if (!isShown(letter.codePoint)) return "the text has " + code + why;
    return "the text has \"" + std::string(text.substr(0, letter.length)) + "\" (" + code + ")" +
           why;
}

}  // namespace

Expected<std::string, Problem> plainText(std::string_view text, const Layout& layout, Place place) {
    if (!platform::isUtf8(text)) return problem(ProblemKind::kNotUtf8, "the text is not UTF-8");
    const auto* const bad = std::ranges::find_if_not(text, isPrintable);
    if (bad != text.end()) {
        const auto at = static_cast<std::size_t>(bad - text.begin());
        return problem(ProblemKind::kUnprintableLetter, refusal(text.substr(at)));
    }
    const std::int32_t row =
        layout.isLandscape ? place.row : machine::wrappingSubtract(layout.portraitEdge, place.row);
    return encoder::openingCommands(layout.path, layout.orientation) +
           encoder::positionCommand(moved(row, layout.movedRows),
                                    moved(place.column, layout.movedColumns)) +
           std::string(text);
}

}  // namespace tavio::printing
