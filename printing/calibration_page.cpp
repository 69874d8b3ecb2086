#include "tavio/printing/calibration_page.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "tavio/printing/calibration_blocks.h"
#include "tavio/printing/calibration_rulers.h"
#include "tavio/printing/layout.h"

namespace tavio::printing {
namespace {

// The dots of the upright ticket that can be printed where the calibration moves them to.
SheetArea printableArea(const Layout& layout) {
    SheetArea area{0, 0, layout.ticket.width, layout.ticket.height};
    if (layout.isLandscape) {
        area.left = std::max(0, -layout.movedColumns);
        area.top = std::max(0, -layout.movedRows);
    } else {
        area.top = std::max(0, -layout.movedColumns);
        area.right = std::min(area.right, layout.portraitEdge + layout.movedRows + 1);
    }
    return area;
}

}  // namespace

Expected<Ticket, Problem> calibrationPage(const TicketSettings& settings,
                                          const Calibration& calibration) noexcept try {
    const auto layout = layoutOf(settings, calibration);
    if (!layout) return tl::unexpected(layout.error());
    CalibrationSheet sheet(settings);
    drawBlocks(drawRulers(printableArea(*layout), sheet), sheet);
    Ticket page = std::move(sheet).take();
    if (page.isIncomplete()) throw std::bad_alloc();
    return page;
} catch (const std::exception&) {
    return tl::unexpected(Problem{ProblemKind::kOverMemory, 0, {}, {}});
}

}  // namespace tavio::printing
