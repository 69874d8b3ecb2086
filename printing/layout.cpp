#include "tavio/printing/layout.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>

#include "TavioIpadSDK/platform/utf8.h"
#include "TavioIpadSDK/settings/orientation.h"
#include "TavioIpadSDK/settings/portrait_dots.h"
#include "TavioIpadSDK/settings/stock_table.h"
#include "TavioIpadSDK/sharp/dots_place.h"
#include "TavioIpadSDK/sharp/options.h"

namespace tavio::printing {
namespace {

using settings::StockSize;

tl::unexpected<Problem> badSetting(std::string sentence) {
    return tl::unexpected(Problem{ProblemKind::kBadSetting, 0, {}, std::move(sentence)});
}

bool isStock(const Stock& stock) {
    if (!stock.isCustom()) return stock.index() >= 0 && stock.index() < settings::kStockCount;
    const auto isSide = [](double inches) { return inches > 0 && inches <= Stock::kMaxInches; };
    return isSide(stock.inches().width) && isSide(stock.inches().height);
}

StockSize inchesOf(const Stock& stock, bool isLandscape) {
    if (!stock.isCustom()) {
        return settings::sizeOf(settings::kStocks[static_cast<std::size_t>(stock.index())],
                                isLandscape);
    }
    const StockSize size = stock.inches();
    return isLandscape ? size : StockSize{size.height, size.width};
}

std::int32_t toDots(double inches, std::int32_t resolution) {
    return static_cast<std::int32_t>(std::lround(inches * resolution));
}

// A stock of the table has fewer dots in portrait than its paper is wide.
std::int32_t portraitWidthOf(const Stock& stock, const StockSize& size, std::int32_t resolution) {
    if (stock.isCustom()) return toDots(size.width, resolution);
    return settings::portraitDotsOf(stock.index(), resolution).value_or(0);
}

// size: as the stock lies in the orientation.
Size ticketDotsOf(const Stock& stock, const StockSize& size, std::int32_t resolution,
                  bool isLandscape) {
    return {isLandscape ? toDots(size.width, resolution) : portraitWidthOf(stock, size, resolution),
            toDots(size.height, resolution)};
}

// The last row of a paper of 100 rows is row 99. Of a stock of the table there is paper beside what
// can be printed, and its rows are counted back from the first one there.
std::int32_t portraitEdgeOf(const Stock& stock, Size ticket) {
    return stock.isCustom() ? ticket.width - 1 : ticket.width;
}

// Why there can be no such calibration, "" if there can.
std::string refusal(const Calibration& calibration) {
    if (calibration.tone < 0 || calibration.tone > sharp::kMaxDotGain) {
        return "the printer's tone is " + std::to_string(calibration.tone) +
               ": give a number from 0 to " + std::to_string(sharp::kMaxDotGain);
    }
    const auto isOffset = [](std::int64_t dots) { return std::abs(dots) <= sharp::kMaxPosition; };
    if (!isOffset(calibration.right) || !isOffset(calibration.down)) {
        return "the printer's offset is " + std::to_string(calibration.right) + "," +
               std::to_string(calibration.down) + ": give at most " +
               std::to_string(sharp::kMaxPosition) + " dots";
    }
    if (calibration.size && (calibration.size->width < 1 || calibration.size->height < 1)) {
        return "the printer's size is " + std::to_string(calibration.size->width) + " x " +
               std::to_string(calibration.size->height) + " dots: give 1 dot or more for each side";
    }
    return "";
}

// In portrait the printer counts its rows from the upright ticket's right edge, so that the rows that it
// lacks are those at the left.
void apply(const Calibration& calibration, Layout& layout) {
    layout.movedRows = calibration.down;
    layout.movedColumns = calibration.right;
    if (!calibration.size) return;
    const auto [width, height] = *calibration.size;
    layout.ticket.width = std::min(layout.ticket.width, layout.isLandscape ? width : height);
    layout.ticket.height = std::min(layout.ticket.height, layout.isLandscape ? height : width);
    if (!layout.isLandscape) layout.movedRows -= std::max(layout.portraitEdge - (height - 1), 0);
}

}  // namespace

Expected<Layout, Problem> layoutOf(const TicketSettings& ticket, const Calibration& calibration) {
    if (!isStock(ticket.stock)) {
        return badSetting(
            "there is no ticket of this stock: give a row of the table of stocks, or two sides of "
            "more than 0 and at most 27 inches");
    }
    if (ticket.resolution != 200 && ticket.resolution != 300 && ticket.resolution != 600) {
        return badSetting(std::to_string(ticket.resolution) +
                          " is none of the resolutions 200, 300 and 600");
    }
    if (!platform::isUtf8(ticket.path)) {
        return badSetting(R"(the path command is not UTF-8: give one such as "<P1>")");
    }

    if (std::string why = refusal(calibration); !why.empty()) return badSetting(std::move(why));

    Layout layout;
    layout.path = ticket.path;
    layout.isLandscape = ticket.orientation == Orientation::kLandscape;
    layout.orientation = layout.isLandscape ? settings::kLandscape : settings::kPortrait;
    layout.resolution = ticket.resolution;
    layout.stock = inchesOf(ticket.stock, layout.isLandscape);
    layout.ticket = ticketDotsOf(ticket.stock, layout.stock, ticket.resolution, layout.isLandscape);
    if (layout.ticket.width <= 0 || layout.ticket.height <= 0)
        return badSetting("the ticket's stock comes to 0 dots: give two larger sides");
    if (!layout.isLandscape) layout.portraitEdge = portraitEdgeOf(ticket.stock, layout.ticket);
    apply(calibration, layout);
    return layout;
}

encoder::Placement placementAt(const Layout& layout, Place place) {
    return {layout.isLandscape, place.row, place.column, layout.portraitEdge};
}

intake::SizeRules sizeRules(const Layout& layout, bool isScaled) {
    return {layout.resolution, layout.stock, isScaled, layout.isLandscape};
}

Rectangle rectangleAt(const Layout& layout, Place place, Size size) {
    if (layout.isLandscape) return {place.column, place.row, size};
    return {place.row, place.column, size};
}

std::optional<Size> ticketSize(const TicketSettings& settings) noexcept {
    try {
        const auto layout = layoutOf(settings);
        if (layout) return layout->ticket;
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): no memory, no size
    }
    return std::nullopt;
}

}  // namespace tavio::printing
