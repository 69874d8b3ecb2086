#include "TavioIpadSDK/sharp/find_bars.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>

namespace tavio::sharp {

namespace {

// Bars and spaces: fewer than this are words like "illicit".
constexpr std::size_t kMinRuns = 25;

// Bars are longer than stems of letters: so many modules, and dots.
constexpr double kMinModulesLong = 10;
constexpr std::int32_t kMinDotsLong = 12;

// White on both sides. A space in a code is narrower, and a code's own blank margin is wider, for one of
// these widths.
constexpr std::array<std::int32_t, 10> kQuietWidths{7, 9, 12, 16, 21, 28, 37, 49, 65, 86};

// So many modules of white are there at least.
constexpr double kMinModulesQuiet = 4.6;

// No bar and no space has more modules, with what rounding to dots adds.
constexpr double kMaxModulesWide = 4.5;

// A Code 128 character has 6 bars and spaces in 11 modules, the last one 7 in 13.
constexpr std::size_t kCode128Runs = 6;
constexpr double kCode128Modules = 11;

using Bars =
    std::span<const std::int32_t>;  // the edges from the first bar to the end of the last one

std::int32_t widthOf(Bars bars) {
    return bars.back() - bars.front();
}

// Bars whose spaces are all narrower than the quiet width before have been judged with that one.
std::int32_t widestSpace(Bars bars) {
    std::int32_t widest = 0;
    for (std::size_t i = 1; i + 1 < bars.size(); i += 2)
        widest = std::max(widest, bars[i + 1] - bars[i]);
    return widest;
}

// From bar `first` on, characters of 11 modules follow each other.
bool areCharacters(Bars bars, std::size_t first, double module) {
    for (std::size_t i = first; i + kCode128Runs < bars.size(); i += kCode128Runs) {
        const double width = bars[i + kCode128Runs] - bars[i];
        if (std::abs(width - kCode128Modules * module) > 2) return false;
    }
    return true;
}

// The module if each character is as wide as it must be, in one direction or the other.
std::optional<double> moduleOfCode128(Bars bars) {
    const std::size_t runs = bars.size() - 1;
    if (runs % kCode128Runs != 1) return std::nullopt;
    const std::size_t characters = runs / kCode128Runs;
    const double module = widthOf(bars) / (kCode128Modules * static_cast<double>(characters) + 2);
    if (!areCharacters(bars, 0, module) && !areCharacters(bars, 1, module)) return std::nullopt;
    return module;
}

// The mean of the runs from `first` on, each second one, that have a single module. None if these are
// all: then it is a pattern that says nothing.
std::optional<double> meanOfNarrow(Bars bars, std::size_t first) {
    std::vector<std::int32_t> widths;
    for (std::size_t i = first; i + 1 < bars.size(); i += 2)
        widths.push_back(bars[i + 1] - bars[i]);
    std::ranges::sort(widths);
    const std::size_t quarter = std::max<std::size_t>(1, widths.size() / 4);
    double sum = 0;
    for (std::size_t i = 0; i < quarter; ++i) sum += widths[i];
    const double narrow = sum / static_cast<double>(quarter);
    const double limit = std::max(1.5 * narrow, narrow + 1);  // of 1.5 dots become 1 or 2
    const auto wide = std::ranges::find_if(widths, [&](std::int32_t each) { return each > limit; });
    if (wide == widths.begin() || wide == widths.end()) return std::nullopt;
    sum = 0;
    for (auto each = widths.begin(); each != wide; ++each) sum += *each;
    return sum / static_cast<double>(wide - widths.begin());
}

// Bars may have grown at the cost of spaces, or spaces at that of bars.
std::optional<double> moduleOfAny(Bars bars) {
    const std::optional<double> ofBars = meanOfNarrow(bars, 0);
    const std::optional<double> ofSpaces = meanOfNarrow(bars, 1);
    if (!ofBars || !ofSpaces) return std::nullopt;
    return (*ofBars + *ofSpaces) / 2;
}

bool isNowhereTooWide(Bars bars, double module) {
    const double limit = kMaxModulesWide * module + 1;
    for (std::size_t i = 0; i + 1 < bars.size(); ++i) {
        if (bars[i + 1] - bars[i] > limit) return false;
    }
    return true;
}

bool hasSameBars(const DotsView& view, std::int32_t row, Bars bars) {
    for (std::size_t i = 0; i + 1 < bars.size(); ++i) {
        const bool isBar = i % 2 == 0;
        if (view.isBlack(bars[i], row) != isBar || view.isBlack(bars[i + 1] - 1, row) != isBar) {
            return false;
        }
    }
    return true;
}

bool areLong(const DotsView& view, std::int32_t row, Bars bars, double module) {
    const auto needed =
        std::max(kMinDotsLong, static_cast<std::int32_t>(std::ceil(kMinModulesLong * module)));
    std::int32_t count = 1;
    for (std::int32_t at = row - 1; count < needed && hasSameBars(view, at, bars); --at) ++count;
    for (std::int32_t at = row + 1; count < needed && hasSameBars(view, at, bars); ++at) ++count;
    return count >= needed;
}

// The width of the space before a bar; a row is between endless ones.
std::int32_t spaceBefore(std::span<const std::int32_t> edges, std::size_t bar) {
    if (bar == 0 || bar == edges.size()) return std::numeric_limits<std::int32_t>::max();
    return edges[bar] - edges[bar - 1];
}

// None if it is not below the limit: the code is known, or the white beside it is too narrow.
std::optional<double> moduleOf(const DotsView& view, std::int32_t row, Bars bars, double limit) {
    if (!hasSameBars(view, row - 1, bars) && !hasSameBars(view, row + 1, bars)) return std::nullopt;
    std::optional<double> module = moduleOfCode128(bars);
    if (!module) module = moduleOfAny(bars);
    if (!module || *module >= limit || !isNowhereTooWide(bars, *module)) return std::nullopt;
    if (!areLong(view, row, bars, *module)) return std::nullopt;
    return module;
}

}  // namespace

std::optional<double> moduleOfBars(const DotsView& view, std::int32_t row, const Edges& edges,
                                   double limit) {
    std::optional<double> narrowest;
    if (edges.size() <= kMinRuns) return narrowest;
    std::vector<std::size_t> starts;  // of what follows a wide space
    for (std::size_t i = 0; i <= edges.size(); i += 2) starts.push_back(i);
    std::int32_t quietBefore = 0;
    for (const std::int32_t quiet : kQuietWidths) {
        std::erase_if(starts, [&](std::size_t start) { return spaceBefore(edges, start) < quiet; });
        for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
            const Bars bars = std::span(edges).subspan(starts[i], starts[i + 1] - starts[i]);
            if (bars.size() <= kMinRuns || widestSpace(bars) < quietBefore) continue;
            const std::int32_t space =
                std::min(spaceBefore(edges, starts[i]), spaceBefore(edges, starts[i + 1]));
            const double below = std::min(narrowest.value_or(limit), space / kMinModulesQuiet);
            const std::optional<double> module = moduleOf(view, row, bars, below);
            if (module) narrowest = module;
        }
        quietBefore = quiet;
    }
    return narrowest;
}

}  // namespace tavio::sharp
