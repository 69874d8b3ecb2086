#include "tavio/printing/plain_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/machine/arithmetic.h"
#include "TavioIpadSDK/platform/utf8.h"
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

// "U+00E9"
std::string codeText(std::uint32_t code) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "U+%04X", static_cast<unsigned>(code));
    return digits.data();
}

// The sentence about the first letter of `text`, which cannot be printed.
std::string refusal(std::string_view text) {
    const platform::Utf8Character letter = platform::firstCharacter(text);
    const std::string code = codeText(letter.codePoint);
    if (isControl(letter.codePoint)) return "the text has the control character " + code;
    const std::string why = letter.codePoint == '<' ? ", which begins a command"
                                                    : ", which the printer's face does not have";
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
        layout.isLandscape ? place.row : machine::wrappingSubtract(layout.portraitDots, place.row);
    return encoder::openingCommands(layout.path, layout.orientation) +
           encoder::positionCommand(row, place.column) + std::string(text);
}

}  // namespace tavio::printing
