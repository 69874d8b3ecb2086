#include "tavio/printing/sharp_warnings.h"

#include <cmath>
#include <utility>

#include "TavioIpadSDK/sharp/find_codes.h"
#include "tavio/printing/fit_warnings.h"

namespace tavio::printing {
namespace {

constexpr double kPointsPerInch = 72;

// Larger pictures are not searched for codes: they are no tickets, and it would take longer than
// printing them.
constexpr std::int64_t kMaxSearchedDots = std::int64_t{1} << 23;

// What was made for paper of 10 inches is hard to read on 7.
constexpr double kMinScale = 0.7;

Warning warning(WarningKind kind, std::int64_t count, std::string sentence) {
    return {kind, 0, 0, count, std::move(sentence)};
}

std::optional<Warning> smallestModule(const std::string& name, const sharp::Dots& dots) {
    if (std::int64_t{dots.width} * dots.height > kMaxSearchedDots) return std::nullopt;
    const auto module = sharp::narrowestModule(dots);
    if (!module) return std::nullopt;
    return smallModule(name + " has a code with modules", *module);
}

std::optional<Warning> shrunkPage(const SharpDrawing& drawing) {
    if (!drawing.page || drawing.fitted.scale >= kMinScale) return std::nullopt;
    const auto percent = static_cast<std::int64_t>(std::floor(drawing.fitted.scale * 100));
    return warning(WarningKind::kShrunkPage, percent,
                   drawing.name + " is printed at " + std::to_string(percent) +
                       " % of its size: choose a larger stock, or a part of the page");
}

}  // namespace

std::optional<Warning> smallModule(const std::string& subject, double dots) {
    if (dots >= kMinModuleDots) return std::nullopt;
    return warning(WarningKind::kSmallModule, static_cast<std::int64_t>(std::floor(dots * 10)),
                   subject + " of " + decimalText(dots) +
                       " dots, which may not scan: make it larger, 3 dots or more");
}

std::optional<Warning> smallText(const std::string& name, double dots) {
    if (dots <= 0 || dots >= kMinFaceDots) return std::nullopt;
    return warning(WarningKind::kSmallText, static_cast<std::int64_t>(std::floor(dots)),
                   name + " has text of " + decimalText(dots) +
                       " dots in height, which is hard to read: make it larger, 14 dots or more");
}

std::vector<Warning> sharpWarnings(const SharpGraphics& graphics, const Layout& layout) {
    const SharpDrawing& drawing = graphics.drawing;
    std::vector<Warning> warnings;
    const auto add = [&warnings](std::optional<Warning> found) {
        if (found) warnings.push_back(std::move(*found));
    };
    add(beyondTicket(graphics.rectangle, layout));
    add(smallestModule(drawing.name, graphics.dots));
    add(smallText(drawing.name, drawing.smallestTextPoints / kPointsPerInch * layout.resolution));
    add(shrunkPage(drawing));
    return warnings;
}

}  // namespace tavio::printing
