#include "tavio/printing/words_dots.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "TavioIpadSDK/sharp/turned_dots.h"
#include "TavioIpadSDK/words/draw_words.h"
#include "tavio/printing/box.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/read_source.h"
#include "tavio/printing/words_problem.h"

namespace tavio::printing {
namespace {

using words::DrawnWords;
using words::Setting;
using words::Side;

constexpr double kPointsPerInch = 72;
constexpr const char* kName = "the words";

int quarterTurns(Turn turn) {
    return turn == Turn::kAuto ? 0 : static_cast<int>(turn) - static_cast<int>(Turn::k0);
}

bool isOnItsSide(const WordsOptions& options) {
    return quarterTurns(options.turn) % 2 != 0;
}

double faceDots(double points, std::int32_t resolution) {
    return points / kPointsPerInch * resolution;
}

// White letters keep a distance from the edges of the black around them: a quarter of their size.
std::int32_t insetOf(const WordsOptions& options, std::int32_t resolution) {
    if (!options.isWhiteOnBlack) return 0;
    return static_cast<std::int32_t>(std::lround(faceDots(options.size, resolution) / 4));
}

// The words' box on the upright ticket.
Expected<Box, Problem> roomOf(const element::Words& words, const Layout& layout) {
    if (!words.options.box) return boxOf(layout, words.place, 0);
    const Rectangle room = rectangleAt(layout, words.place, *words.options.box);
    return Box{static_cast<std::int32_t>(room.left), static_cast<std::int32_t>(room.top),
               room.size.width, room.size.height};
}

// The words lie in the room as they are read, before they are turned.
Setting settingOf(const WordsOptions& options, Box room, std::int32_t resolution) {
    if (isOnItsSide(options)) std::swap(room.width, room.height);
    Setting setting;
    setting.resolution = resolution;
    setting.size = options.size;
    setting.minSize = options.minSize > 0 ? options.minSize : options.size;
    setting.isBold = options.isBold;
    setting.isItalic = options.isItalic;
    setting.width = room.width;
    setting.height = room.height;
    setting.inset = insetOf(options, resolution);
    setting.across = static_cast<Side>(columnOf(options.align));
    setting.down = static_cast<Side>(rowOf(options.align));
    setting.fillsBox = options.box.has_value();
    return setting;
}

// The bytes of the font file; null if there is none.
Expected<std::shared_ptr<const Bytes>, Problem> fontOf(const WordsOptions& options,
                                                       std::uint64_t maxFileBytes) {
    if (!options.font) return nullptr;
    auto font = readSource(*options.font, maxFileBytes);
    if (font && (*font)->empty())
        return problem(ProblemKind::kNoFace, shownName(*options.font) + " is empty, not a font");
    return font;
}

sharp::Dots dotsOf(DrawnWords drawn, const WordsOptions& options) {
    sharp::Dots dots{drawn.width, drawn.height, std::move(drawn.bits)};
    if (options.isWhiteOnBlack) invert(dots);
    return turnedDots(std::move(dots), quarterTurns(options.turn));
}

std::optional<Warning> smallWords(double dots) {
    if (dots >= kMinFaceDots) return std::nullopt;
    return Warning{WarningKind::kSmallText, 0, 0, static_cast<std::int64_t>(std::floor(dots)),
                   "the words are " + decimalText(dots) +
                       " dots in height, which is hard to read: make them larger, 14 dots or "
                       "more"};
}

std::vector<Warning> warningsOf(const Rectangle& rectangle, double dots, const Layout& layout) {
    std::vector<Warning> warnings;
    if (auto beyond = beyondTicket(rectangle, layout, kName))
        warnings.push_back(*std::move(beyond));
    if (auto small = smallWords(dots)) warnings.push_back(*std::move(small));
    return warnings;
}

}  // namespace

Expected<PlacedDots, Problem> wordsDots(const element::Words& words, const Layout& layout,
                                        const EncodeOptions& options) {
    if (auto problem = problemOf(words)) return tl::unexpected(std::move(*problem));
    const auto room = roomOf(words, layout);
    if (!room) return tl::unexpected(room.error());
    const auto font = fontOf(words.options, options.maxFileBytes);
    if (!font) return tl::unexpected(font.error());

    const Setting setting = settingOf(words.options, *room, layout.resolution);
    const platform::PdfLimits& limits = options.pageLimits;
    DrawnWords drawn =
        words::drawWords({words.text, words.options.face,
                          *font ? std::span(**font) : std::span<const Byte>(), setting},
                         {limits.cpu, limits.wall, limits.memoryBytes}, options.wordsHelper);
    if (drawn.outcome != words::Outcome::kDrawn)
        return wordsProblem(drawn, words, isOnItsSide(words.options));
    const double height = faceDots(drawn.size, layout.resolution);
    sharp::Dots dots = dotsOf(std::move(drawn), words.options);
    const Rectangle rectangle = alignedIn(*room, words.options.align, {dots.width, dots.height});
    return PlacedDots{std::move(dots), rectangle, kName, warningsOf(rectangle, height, layout)};
}

}  // namespace tavio::printing
