#include "tavio/printing/code_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include "TavioIpadSDK/platform/utf8.h"
#include "TavioIpadSDK/sharp/blacken.h"
#include "tavio/printing/letter_name.h"
#include "tavio/printing/words_dots.h"

namespace tavio::printing {
namespace {

constexpr double kPointsPerInch = 72;

// Letters that are set smaller so that they fit between the bars are at least half as large.
constexpr double kMinShare = 0.5;

// The digits of an EAN-13, in modules: six fill a group's 42 modules. They are set in a higher room, of
// which the rows with ink are printed.
constexpr double kEanFaceModules = 10.5;
constexpr std::int32_t kEanRoomModules = 20;
constexpr std::int32_t kEanGapModules = 1;

// One line of letters in its room on the code.
struct Line {
    std::string letters;
    sharp::DotArea room;
    double points = 0;
};

std::vector<Line> eanLines(const std::string& digits, const CodeMeasures& measures,
                           std::int32_t resolution) {
    const std::int32_t module = measures.module;
    const double points = kEanFaceModules * module * kPointsPerInch / resolution;
    const auto line = [&](std::size_t begin, std::size_t count, std::int32_t column,
                          std::int32_t columns) {
        return Line{digits.substr(begin, count),
                    {measures.left + column * module, measures.above + measures.barHeight,
                     columns * module, kEanRoomModules * module},
                    points};
    };
    return {line(0, 1, -10, 8), line(1, 6, 3, 42), line(7, 6, 50, 42)};
}

std::string withoutControls(std::string_view text) {
    std::string letters;
    while (!text.empty()) {
        const auto letter = platform::firstCharacter(text);
        if (isControl(letter.codePoint)) {
            letters += ' ';
        } else {
            letters += text.substr(0, letter.length);
        }
        text.remove_prefix(letter.length);
    }
    return letters;
}

// The whole zone below the bars, less a gap of one module.
Line centredLine(const std::string& data, const CodeMeasures& measures) {
    const std::int32_t bottom = measures.above + measures.barHeight;
    return {withoutControls(data),
            {0, bottom + measures.module, measures.size.width, measures.text - measures.module},
            kTextPoints};
}

Expected<PlacedDots, Problem> lettersOf(const Line& line, const Layout& layout,
                                        const EncodeOptions& options) {
    Layout own = layout;  // of the room alone
    own.isLandscape = true;
    own.ticket = {line.room.width, line.room.height};
    WordsOptions words;
    words.size = line.points;
    words.minSize = line.points * kMinShare;
    words.box = own.ticket;
    words.align = Align::kTop;
    return wordsDots({line.letters, {}, words}, own, options);
}

bool isBlank(const sharp::Dots& dots, std::int32_t row) {
    return std::ranges::all_of(dots.row(row), [](Byte byte) { return byte == 0; });
}

std::int32_t firstInk(const sharp::Dots& dots) {
    std::int32_t row = 0;
    while (row < dots.height && isBlank(dots, row)) ++row;
    return row;
}

// Draws the picture's rows from `skipped` on, the first of them at `top`, as far as they lie inside.
void draw(const sharp::Dots& picture, std::int32_t skipped, std::int32_t left, std::int32_t top,
          sharp::Dots& dots) {
    for (std::int32_t row = skipped; row < picture.height; ++row) {
        for (std::int32_t column = 0; column < picture.width; ++column) {
            const std::int32_t x = left + column;
            const std::int32_t y = top + row - skipped;
            const bool isInside = x >= 0 && x < dots.width && y >= 0 && y < dots.height;
            if (isInside && picture.isBlack(column, row)) blacken(dots, {x, y, 1, 1});
        }
    }
}

void append(std::vector<Warning>& warnings, std::vector<Warning> more) {
    std::ranges::move(more, std::back_inserter(warnings));
}

}  // namespace

Expected<std::vector<Warning>, Problem> drawCodeText(CodeKind kind, const std::string& data,
                                                     const CodeMeasures& measures,
                                                     const Layout& layout,
                                                     const EncodeOptions& options,
                                                     sharp::Dots& dots) {
    const bool isEan = kind == CodeKind::kEan13;
    const auto lines = isEan ? eanLines(data, measures, layout.resolution)
                             : std::vector{centredLine(data, measures)};
    std::vector<Warning> warnings;
    for (const Line& line : lines) {
        if (line.letters.find_first_not_of(' ') == std::string::npos) continue;
        auto letters = lettersOf(line, layout, options);
        if (!letters) return tl::unexpected(std::move(letters.error()));
        const std::int32_t gap = isEan ? kEanGapModules * measures.module : 0;
        draw(letters->dots, isEan ? firstInk(letters->dots) : 0,
             line.room.left + static_cast<std::int32_t>(letters->rectangle.left),
             line.room.top + gap + static_cast<std::int32_t>(letters->rectangle.top), dots);
        if (warnings.empty()) append(warnings, std::move(letters->warnings));
    }
    return warnings;
}

}  // namespace tavio::printing
