#include "tavio/printing/code_measures.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "tavio/printing/code_rules.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/read_source.h"
#include "tavio/printing/sharp_warnings.h"

namespace tavio::printing {
namespace {

constexpr double kMillimetresPerInch = 25.4;

// The usual height of bars: a share of the symbol's width, and at least as many millimetres; of EAN-13 as
// many modules, 22.85 mm at a module of 0.33 mm.
constexpr double kBarShare = 0.15;
constexpr double kUsualBarMillimetres = 6.5;
constexpr double kEanBarModules = 69.24;

// A reader's ray still crosses bars of this height.
constexpr double kMinBarMillimetres = 3;

// The height of the text's zone. EAN-13 has 9 modules, into which its guard bars reach.
constexpr std::int32_t kEanTextModules = 9;
constexpr double kPointsPerInch = 72;
constexpr double kLineHeight = 1.25;  // of the face's size

// Lengths that were given in millimetres come to whole dots in spite of the arithmetic's last digits.
constexpr double kTolerance = 1e-6;

std::int32_t dotsUp(double dots) {
    return static_cast<std::int32_t>(std::ceil(dots - kTolerance));
}

struct Room {
    std::int64_t width = 0;
    std::int64_t height = 0;

    bool holds(const Room& other) const { return other.width <= width && other.height <= height; }
};

Room turned(const Room& room) {
    return {room.height, room.width};
}

// The code's sizes in dots by its module.
class Sizes {
  public:
    Sizes(const CodeExtent& extent, const CodeOptions& options)
        : extent_(extent), options_(options), rules_(rulesOf(extent.kind)) {
        if (!options.hasQuietZone) rules_.quiet = {};
    }

    double dots(double millimetres) const {
        return millimetres / kMillimetresPerInch * extent_.resolution;
    }

    std::int64_t width(std::int64_t module) const {
        return (rules_.quiet.left + extent_.columns + rules_.quiet.right) * module;
    }

    // Without bars: what they do not have of the height.
    std::int64_t height(std::int64_t module) const {
        if (rules_.isLinear) return text(module);
        return (extent_.rows * rules_.rowModules + 2 * rules_.quiet.above) * module;
    }

    std::int32_t text(std::int64_t module) const {
        if (!options_.hasText) return 0;
        if (extent_.kind == CodeKind::kEan13)
            return static_cast<std::int32_t>(kEanTextModules * module);
        const double line = kTextPoints * kLineHeight / kPointsPerInch * extent_.resolution;
        return static_cast<std::int32_t>(dotsUp(line) + module);
    }

    std::int32_t usualBars(std::int64_t module) const {
        if (!rules_.isLinear || options_.barHeight > 0) return options_.barHeight;
        const auto side = static_cast<double>(module);
        if (extent_.kind == CodeKind::kEan13) return dotsUp(kEanBarModules * side);
        return std::max(dotsUp(kBarShare * extent_.columns * side),
                        dotsUp(dots(kUsualBarMillimetres)));
    }

    std::int32_t minBars(std::int64_t module) const {
        if (!rules_.isLinear || options_.barHeight > 0) return options_.barHeight;
        return std::min(usualBars(module), dotsUp(dots(kMinBarMillimetres)));
    }

    Room least(std::int64_t module) const {
        return {width(module), height(module) + minBars(module)};
    }

    // Of a module of 1 dot or more.
    CodeMeasures measures(std::int32_t module, std::int64_t boxHeight) const {
        CodeMeasures measures;
        measures.module = module;
        measures.text = text(module);
        const std::int64_t rest = boxHeight - height(module);
        measures.barHeight = static_cast<std::int32_t>(
            std::min(std::int64_t{usualBars(module)}, std::max(rest, std::int64_t{0})));
        measures.left = rules_.quiet.left * module;
        measures.above = rules_.quiet.above * module;
        measures.size = {static_cast<std::int32_t>(width(module)),
                         static_cast<std::int32_t>(height(module)) + measures.barHeight};
        return measures;
    }

    // 0 if not even a module of 1 dot fits.
    std::int32_t largestModule(const Room& room) const {
        std::int64_t fits = 0;
        std::int64_t tooLarge = room.width / width(1) + 1;
        while (tooLarge - fits > 1) {
            const std::int64_t middle = fits + (tooLarge - fits) / 2;
            (room.holds(least(middle)) ? fits : tooLarge) = middle;
        }
        return static_cast<std::int32_t>(fits);
    }

    // Of a size that does not depend on the box.
    std::optional<std::int32_t> fixedModule() const {
        if (const auto* module = std::get_if<ModuleDots>(&options_.size)) return module->dots;
        if (const auto* module = std::get_if<ModuleMillimetres>(&options_.size))
            return std::max(dotsUp(dots(module->millimetres)), 1);
        if (const auto* total = std::get_if<WidthMillimetres>(&options_.size))
            return std::max(dotsUp(dots(total->millimetres) / extent_.columns), 1);
        return std::nullopt;
    }

  private:
    CodeExtent extent_;
    const CodeOptions& options_;
    CodeRules rules_;
};

std::optional<CodeMeasures> fitted(const Sizes& sizes, Room room, int quarterTurns) {
    if (quarterTurns % 2 != 0) room = turned(room);
    const std::int32_t module = sizes.fixedModule().value_or(sizes.largestModule(room));
    if (module < 1 || !room.holds(sizes.least(module))) return std::nullopt;
    auto measures = sizes.measures(module, room.height);
    measures.quarterTurns = quarterTurns;
    return measures;
}

// Of the ways in which it may lie, the one with the largest modules, then with the tallest bars.
std::optional<CodeMeasures> bestFit(const Sizes& sizes, const Room& room, Turn turn) {
    if (turn != Turn::kAuto)
        return fitted(sizes, room, static_cast<int>(turn) - static_cast<int>(Turn::k0));
    const auto upright = fitted(sizes, room, 0);
    const auto sideways = fitted(sizes, room, 1);
    if (!upright || !sideways) return upright ? upright : sideways;
    const auto rank = [](const CodeMeasures& measures) {
        return std::pair(measures.module, measures.barHeight);
    };
    return rank(*sideways) > rank(*upright) ? sideways : upright;
}

// "87 x 87 dots", as the code lies.
std::string neededText(const Sizes& sizes, std::int32_t module, Turn turn) {
    const Room needed = sizes.least(module);
    const Room lying = turn == Turn::k90 || turn == Turn::k270 ? turned(needed) : needed;
    return std::to_string(lying.width) + " x " + std::to_string(lying.height) + " dots";
}

std::int32_t largestModule(const Sizes& sizes, const Room& room, Turn turn) {
    const std::int32_t upright = sizes.largestModule(room);
    const std::int32_t sideways = sizes.largestModule(turned(room));
    if (turn == Turn::kAuto) return std::max(upright, sideways);
    return turn == Turn::k90 || turn == Turn::k270 ? sideways : upright;
}

std::string modulesText(std::int32_t module) {
    return "modules of " + std::to_string(module) + (module == 1 ? " dot" : " dots");
}

// That the code does not fit, with what would do.
std::string smallBoxText(const CodeExtent& extent, const CodeOptions& options, const Sizes& sizes,
                         const Box& box) {
    const std::string name = rulesOf(extent.kind).name;
    const std::string refusal =
        " does not fit into " + dotsText({box.width, box.height}) + ": give it ";
    const auto module = sizes.fixedModule();
    if (!module) {
        return name + refusal + neededText(sizes, 1, options.turn) + " or more, better " +
               neededText(sizes, kMinModuleDots, options.turn) + ", which scan";
    }
    const std::string needed =
        name + " with " + modulesText(*module) + refusal + neededText(sizes, *module, options.turn);
    const std::int32_t largest = largestModule(sizes, {box.width, box.height}, options.turn);
    return largest > 0 ? needed + ", or " + modulesText(largest) : needed;
}

}  // namespace

Expected<CodeMeasures, Problem> codeMeasures(const CodeExtent& extent, const CodeOptions& options,
                                             const Box& box) {
    const Sizes sizes(extent, options);
    const auto best = bestFit(sizes, {box.width, box.height}, options.turn);
    if (!best) return problem(ProblemKind::kSmallBox, smallBoxText(extent, options, sizes, box));
    return *best;
}

}  // namespace tavio::printing
