#include "tavio/printing/code_dots.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "tavio/printing/bar_reduction.h"
#include "tavio/printing/box.h"
#include "tavio/printing/code_data.h"
#include "tavio/printing/code_drawing.h"
#include "tavio/printing/code_measures.h"
#include "tavio/printing/code_rules.h"
#include "tavio/printing/code_settings.h"
#include "tavio/printing/code_symbol.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/read_source.h"
#include "tavio/printing/sharp_warnings.h"
#include "tavio/printing/turned_canvas.h"

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

sharp::Dots drawn(const element::Code& code, const CodeSymbol& symbol, const CodeMeasures& measures,
                  const EncodeOptions& options) {
    const CodeRules rules = rulesOf(code.kind);
    TurnedCanvas canvas(measures.size, measures.quarterTurns);
    if (!rules.isLinear) {
        drawModules(symbol, measures, rules.rowModules, canvas);
    } else {
        const bool hasGuards = code.kind == CodeKind::kEan13 && code.options.hasText;
        const double reduction =
            code.options.barReduction.value_or(barReductionFor(options.calibration));
        drawBars(symbol, measures, hasGuards, reduction, canvas);
    }
    return std::move(canvas).take();
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

}  // namespace

Expected<PlacedDots, Problem> codeDots(const element::Code& code, const Layout& layout,
                                       const EncodeOptions& options) {
    if (auto problem = problemOf(code.kind, code.options))
        return tl::unexpected(std::move(*problem));
    if (code.options.hasText)
        return problem(ProblemKind::kBadSetting, "the text below a code is not drawn yet");
    const auto box = boxFor(code, layout);
    if (!box) return tl::unexpected(box.error());
    const auto data = codeData(code.kind, code.data);
    if (!data) return tl::unexpected(data.error());
    const auto symbol = codeSymbol(code.kind, *data, code.options.correction);
    if (!symbol) return tl::unexpected(symbol.error());
    const auto measures = codeMeasures(
        {code.kind, symbol->columns, symbol->rows, layout.resolution}, code.options, *box);
    if (!measures) return tl::unexpected(measures.error());
    const std::string name = rulesOf(code.kind).name;
    const Size size = lyingSize(*measures);
    if (std::int64_t{size.width} * size.height > sharp::kMaxDots) return tooLarge(name, size);
    const Rectangle rectangle = alignedIn(*box, code.options.align, size);
    if (auto problem = problemOfPlace(name, rectangle, layout))
        return tl::unexpected(std::move(*problem));
    PlacedDots placed{drawn(code, *symbol, *measures, options), rectangle, name, {}};
    placed.warnings = warningsOf(placed, measures->module, layout);
    return placed;
}

}  // namespace tavio::printing
