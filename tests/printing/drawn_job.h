// What the virtual printer draws of a job.
#pragma once

#include <string>
#include <vector>

#include "tavio/printing/job.h"
#include "tavio/virtual-printer/printer.h"

namespace tavio::test {

struct DrawnJob {
    std::vector<virtual_printer::Ticket> tickets;  // upright
    std::vector<std::string> problems;
};

// The paper on which a rectangle of the job (printing/job.h) lies where it says. In portrait what can
// be printed of a stock of the table begins one row before the paper's edge.
inline virtual_printer::TicketSize paperOf(const printing::TicketSettings& settings) {
    const printing::Size size = printing::ticketSize(settings).value_or(printing::Size{1, 1});
    if (settings.orientation == printing::Orientation::kLandscape)
        return {size.height, size.width, settings.resolution};
    return {size.width + (settings.stock.isCustom() ? 0 : 1), size.height, settings.resolution};
}

inline DrawnJob drawn(const printing::Job& job) {
    const bool isLandscape = job.settings().orientation == printing::Orientation::kLandscape;
    DrawnJob result;
    virtual_printer::Printer printer(
        {.size = paperOf(job.settings())}, [&](const virtual_printer::FinishedTicket& finished) {
            result.tickets.push_back(isLandscape ? finished.ticket
                                                 : finished.ticket.turnedUpright());
        });
    printer.feed(job.bytes());
    printer.finish();
    for (const auto& problem : printer.problems().kept()) result.problems.push_back(problem.text);
    return result;
}

}  // namespace tavio::test
