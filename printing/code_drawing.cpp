#include "tavio/printing/code_drawing.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "TavioIpadSDK/sharp/blacken.h"

namespace tavio::printing {
namespace {

// The guard bars of an EAN-13: at its beginning, in its middle, at its end. They reach as many modules
// into the text's zone.
struct Columns {
    std::int32_t begin;
    std::int32_t end;
};
constexpr auto kGuards = std::to_array<Columns>({{0, 3}, {45, 50}, {92, 95}});
constexpr std::int32_t kGuardModules = 5;

bool isGuard(std::int32_t column) {
    for (const Columns& guard : kGuards)
        if (column >= guard.begin && column < guard.end) return true;
    return false;
}

// Calls draw(first column, number of columns) for each run of black modules in the row.
template <typename Draw>
void forEachRun(const CodeSymbol& symbol, std::int32_t row, Draw draw) {
    std::int32_t column = 0;
    while (column < symbol.columns) {
        const std::int32_t begin = column;
        while (column < symbol.columns && symbol.isBlack(row, column)) ++column;
        if (column > begin) draw(begin, column - begin);
        ++column;
    }
}

// True in `reduction` of all rows, spread evenly.
bool isReducedRow(std::int32_t row, double reduction) {
    return std::floor((row + 1) * reduction) > std::floor(row * reduction);
}

void drawBar(const sharp::DotArea& bar, double reduction, sharp::Dots& dots) {
    blacken(dots, {bar.left, bar.top, bar.width - 1, bar.height});
    for (std::int32_t row = 0; row < bar.height; ++row) {
        if (!isReducedRow(row, reduction))
            blacken(dots, {bar.left + bar.width - 1, bar.top + row, 1, 1});
    }
}

}  // namespace

void drawModules(const CodeSymbol& symbol, const CodeMeasures& measures, std::int32_t rowModules,
                 sharp::Dots& dots) {
    const std::int32_t module = measures.module;
    const std::int32_t height = rowModules * module;
    for (std::int32_t row = 0; row < symbol.rows; ++row) {
        forEachRun(symbol, row, [&](std::int32_t begin, std::int32_t count) {
            blacken(dots, {measures.left + begin * module, measures.above + row * height,
                           count * module, height});
        });
    }
}

void drawBars(const CodeSymbol& symbol, const CodeMeasures& measures, bool hasGuards,
              double reduction, sharp::Dots& dots) {
    const std::int32_t module = measures.module;
    const double narrower = module > 1 ? reduction : 0;
    forEachRun(symbol, 0, [&](std::int32_t begin, std::int32_t count) {
        const std::int32_t guard = hasGuards && isGuard(begin) ? kGuardModules * module : 0;
        drawBar({measures.left + begin * module, measures.above, count * module,
                 measures.barHeight + guard},
                narrower, dots);
    });
}

}  // namespace tavio::printing
