#include "tavio/printing/preview.h"

#include <cmath>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>

#include "tavio/virtual-printer/printer.h"
#include "tavio/virtual-printer/ticket_png.h"

namespace tavio::printing {
namespace {

using virtual_printer::FinishedTicket;
using virtual_printer::TicketEnd;
using virtual_printer::TicketSize;

// 0 outside the range of a ticket's sides, and for what is no number.
std::int32_t dotsOf(double inches, std::int32_t resolution) {
    const double dots = std::round(inches * resolution);
    const bool isSide = dots >= 1 && dots <= virtual_printer::kMaxTicketDots;
    return isSide ? static_cast<std::int32_t>(dots) : 0;
}

// The paper as it lies in the printer. None if there is no such stock or resolution.
std::optional<TicketSize> paperOf(const TicketSettings& settings) {
    const Stock& stock = settings.stock;
    if (!stock.isCustom()) return virtual_printer::ticketSize(stock.index(), settings.resolution);
    return TicketSize{dotsOf(stock.inches().height, settings.resolution),
                      dotsOf(stock.inches().width, settings.resolution), settings.resolution};
}

bool isPrintable(const TicketSize& paper) {
    return paper.rows > 0 && paper.columns > 0 && paper.dpi > 0 &&
           paper.dpi <= virtual_printer::kMaxDpi;
}

PaperEnd endOf(TicketEnd end) {
    switch (end) {
        case TicketEnd::kCut:
            return PaperEnd::kCut;
        case TicketEnd::kEjected:
            return PaperEnd::kEjected;
        case TicketEnd::kStreamEnded:
            break;
    }
    return PaperEnd::kJobEnded;
}

platform::Picture pictureOf(const virtual_printer::Ticket& ticket) {
    constexpr UInt32 kBlack = platform::premultipliedPixel(0, 0, 0, 255);
    constexpr UInt32 kWhite = platform::premultipliedPixel(255, 255, 255, 255);
    const TicketSize& size = ticket.size();
    platform::Picture picture;
    picture.width = size.columns;
    picture.height = size.rows;
    picture.pixels.reserve(static_cast<std::size_t>(size.columns) *
                           static_cast<std::size_t>(size.rows));
    for (std::int32_t row = 0; row < size.rows; ++row) {
        for (std::int32_t column = 0; column < size.columns; ++column) {
            picture.pixels.push_back(ticket.isBlack(row, column) ? kBlack : kWhite);
        }
    }
    return picture;
}

// Draws tickets into a preview.
class Drawing {
  public:
    Drawing(Preview& preview, const PreviewOptions& options)
        : preview_(preview), options_(options) {}

    void operator()(const FinishedTicket& finished) {
        ++preview_.ticketCount;
        if (preview_.tickets.size() >= options_.maxTickets) return;
        const bool isPortrait = finished.orientation == virtual_printer::Orientation::kPortrait;
        preview_.tickets.push_back(isPortrait ? drawn(finished.ticket.turnedUpright())
                                              : drawn(finished.ticket));
        preview_.tickets.back().end = endOf(finished.end);
    }

  private:
    TicketPicture drawn(const virtual_printer::Ticket& upright) const {
        TicketPicture result;
        if (options_.withPictures) result.picture = pictureOf(upright);
        std::string reason;
        if (options_.withPngs &&
            !virtual_printer::encodeTicketPng(upright, {}, result.png, reason)) {
            throw std::runtime_error(reason);
        }
        return result;
    }

    Preview& preview_;
    const PreviewOptions& options_;
};

void addProblems(Preview& preview, const virtual_printer::ProblemList& problems) {
    preview.problemCount = problems.count();
    for (const virtual_printer::Problem& problem : problems.kept()) {
        preview.problems.push_back({static_cast<std::size_t>(problem.offset), problem.text});
    }
}

Preview draw(const Job& job, const TicketSize& paper, const PreviewOptions& options) {
    Preview preview;
    virtual_printer::PrinterSettings settings;
    settings.size = paper;
    if (job.settings().orientation == Orientation::kPortrait) {
        settings.orientation = virtual_printer::Orientation::kPortrait;
    }
    virtual_printer::Printer printer(settings, Drawing(preview, options));
    printer.feed(job.bytes());
    printer.finish();
    addProblems(preview, printer.problems());
    return preview;
}

Problem problem(ProblemKind kind, std::string sentence) {
    return {kind, 0, {}, std::move(sentence)};
}

}  // namespace

Expected<Preview, Problem> preview(const Job& job, const PreviewOptions& options) noexcept try {
    const auto paper = paperOf(job.settings());
    if (!paper || !isPrintable(*paper)) {
        return tl::unexpected(
            problem(ProblemKind::kTooLarge, "a ticket of this size cannot be drawn: it has 1 to " +
                                                std::to_string(virtual_printer::kMaxTicketDots) +
                                                " dots a side"));
    }
    return draw(job, *paper, options);
} catch (const std::exception&) {
    return tl::unexpected(problem(ProblemKind::kOverMemory, "out of memory"));
}

}  // namespace tavio::printing
