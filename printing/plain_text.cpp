#include "tavio/printing/plain_text.h"

#include <algorithm>
#include <cstdint>

#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/machine/arithmetic.h"
#include "TavioIpadSDK/platform/utf8.h"
#include "TavioIpadSDK/sharp/dots_place.h"
#include "tavio/printing/letter_name.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

// "<" begins a command; line feeds begin a new line.
bool isPrintable(char letter) {
    return (letter >= ' ' && letter <= '~' && letter != '<') || letter == '\n';
}

// Where the printer's calibration moves a row or column to, or as near as the printer has one.
std::int32_t moved(std::int32_t position, std::int32_t by) {
    if (by == 0) return position;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(std::int64_t{position} + by, 0, sharp::kMaxPosition));
}

// The sentence about the first letter of `text`, which cannot be printed.
std::string refusal(std::string_view text) {
    const std::uint32_t letter = platform::firstCharacter(text).codePoint;
    if (isControl(letter)) return "the text has the control character " + codeText(letter);
    return "the text has " + letterName(text) +
           (letter == '<' ? ", which begins a command"
                          : ", which the printer's face does not have");
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
