#include "tavio/printing/code_dots.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "TavioIpadSDK/sharp/blacken.h"
#include "TavioIpadSDK/sharp/turned_dots.h"
#include "tavio/printing/bar_reduction.h"
#include "tavio/printing/box.h"
#include "tavio/printing/code_data.h"
#include "tavio/printing/code_drawing.h"
#include "tavio/printing/code_measures.h"
#include "tavio/printing/code_rules.h"
#include "tavio/printing/code_settings.h"
#include "tavio/printing/code_symbol.h"
#include "tavio/printing/code_text.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/read_source.h"
#include "tavio/printing/sharp_warnings.h"

namespace tavio::printing {
namespace {

Expected<Box, Problem> boxFor(const element::Code& code, const Layout& layout) {
    auto box = boxOf(layout, code.place, 0);
    if (box && code.options.box) {
        box->width = code.options.box->width;
        box->height = code.options.box->height;
    }
    return box;
}

Size lyingSize(const CodeMeasures& measures) {
    const Size size = measures.size;
    return measures.quarterTurns % 2 == 0 ? size : Size{size.height, size.width};
}

void drawSymbol(const element::Code& code, const CodeSymbol& symbol, const CodeMeasures& measures,
                const Calibration& calibration, sharp::Dots& dots) {
    const CodeRules rules = rulesOf(code.kind);
    if (!rules.isLinear) return drawModules(symbol, measures, rules.rowModules, dots);
    const bool hasGuards = code.kind == CodeKind::kEan13 && code.options.hasText;
    drawBars(symbol, measures, hasGuards,
             code.options.barReduction.value_or(barReductionFor(calibration)), dots);
}

std::vector<Warning> warningsOf(const PlacedDots& placed, std::int32_t module,
                                const Layout& layout) {
    std::vector<Warning> warnings;
    const auto add = [&warnings](std::optional<Warning> found) {
        if (found) warnings.push_back(std::move(*found));
    };
    add(beyondTicket(placed.rectangle, layout, placed.name));
    add(smallModule(placed.name + " has modules", module));
    return warnings;
}

// The code's dots, not turned and still white, with the rectangle in which they will lie.
Expected<PlacedDots, Problem> whiteCode(const element::Code& code, const CodeMeasures& measures,
                                        const Box& box, const Layout& layout) {
    const std::string name = rulesOf(code.kind).name;
    const Size size = lyingSize(measures);
    if (std::int64_t{size.width} * size.height > sharp::kMaxDots) return tooLarge(name, size);
    const Rectangle rectangle = alignedIn(box, code.options.align, size);
    if (auto problem = problemOfPlace(name, rectangle, layout))
        return tl::unexpected(std::move(*problem));
    PlacedDots placed{
        sharp::whiteDots(measures.size.width, measures.size.height), rectangle, name, {}};
    placed.warnings = warningsOf(placed, measures.module, layout);
    return placed;
}

}  // namespace

Expected<PlacedDots, Problem> codeDots(const element::Code& code, const Layout& layout,
                                       const EncodeOptions& options) {
    if (auto problem = problemOf(code.kind, code.options))
        return tl::unexpected(std::move(*problem));
    const auto box = boxFor(code, layout);
    if (!box) return tl::unexpected(box.error());
    const auto data = codeData(code.kind, code.data);
    if (!data) return tl::unexpected(data.error());
    const auto symbol = codeSymbol(code.kind, *data, code.options.correction);
    if (!symbol) return tl::unexpected(symbol.error());
    const auto measures = codeMeasures(
        {code.kind, symbol->columns, symbol->rows, layout.resolution}, code.options, *box);
    if (!measures) return tl::unexpected(measures.error());
    auto placed = whiteCode(code, *measures, *box, layout);
    if (!placed) return placed;
    drawSymbol(code, *symbol, *measures, options.calibration, placed->dots);
    if (code.options.hasText) {
        auto warnings = drawCodeText(code.kind, *data, *measures, layout, options, placed->dots);
        if (!warnings) return tl::unexpected(std::move(warnings.error()));
        std::ranges::move(*warnings, std::back_inserter(placed->warnings));
    }
    placed->dots = turnedDots(std::move(placed->dots), measures->quarterTurns);
    return placed;
}

}  // namespace tavio::printing
