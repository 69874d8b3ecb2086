#include "scenarios/sample_jobs.h"

#include <algorithm>

namespace tavio::scenarios {

using virtual_printer::FinishedTicket;
using virtual_printer::Printer;
using virtual_printer::PrinterSettings;
using virtual_printer::Ticket;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

void append(Bytes& to, std::string_view text) {
    to.insert(to.end(), text.begin(), text.end());
}

void append(Bytes& to, std::span<const Byte> bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

Bytes graphics(int row, int column, std::size_t count, unsigned which) {
    Bytes stream;
    append(stream, "<RC");
    append(stream, std::to_string(row));
    append(stream, ",");
    append(stream, std::to_string(column));
    append(stream, "><G");
    append(stream, std::to_string(count));
    append(stream, ">");
    for (std::size_t i = 0; i < count; ++i) {
        stream.push_back(static_cast<Byte>((std::size_t{which} * 37 + i * i * 11 + i) % 255 + 1));
    }
    return stream;
}

namespace {

constexpr std::size_t kRun = 200;  // the ticket's columns

Bytes ticketOf(std::size_t size, unsigned which) {
    Bytes ticket;
    const std::size_t tail = std::string_view("<p>").size();
    int row = 0;
    while (size - ticket.size() > 2 * kRun) {
        append(ticket, graphics(row, 0, kRun, which));
        row = (row + 8) % (kTicketSize.rows - 8);
    }
    for (std::size_t count = size - ticket.size(); count > 0; --count) {
        const Bytes last = graphics(row, 0, count, which + 1);
        if (ticket.size() + last.size() + tail > size) continue;
        append(ticket, last);
        break;
    }
    // A number may have taken one digit less than fits.
    while (ticket.size() + tail < size) append(ticket, " ");
    append(ticket, "<p>");
    return ticket;
}

}  // namespace

Bytes ticketJob(std::size_t tickets, std::size_t bytesEach) {
    Bytes job;
    for (std::size_t i = 0; i < tickets; ++i) {
        append(job, ticketOf(bytesEach, static_cast<unsigned>(i) + 1));
    }
    return job;
}

Bytes logoJob(int number, std::size_t count) {
    Bytes job = bytesOf("<");
    append(job, std::to_string(number));
    append(job, ">\x1b");
    append(job, graphics(0, 0, count, static_cast<unsigned>(number)));
    append(job, "\x1b");
    return job;
}

Dots dotsOf(const Ticket& ticket) {
    Dots dots;
    for (std::int32_t row = 0; row < ticket.size().rows; ++row) {
        const auto bits = ticket.row(row);
        dots.insert(dots.end(), bits.begin(), bits.end());
    }
    return dots;
}

std::vector<Dots> printedAlone(std::span<const Byte> job, const PrinterSettings& settings) {
    std::vector<Dots> tickets;
    Printer printer(settings, [&](const FinishedTicket& finished) {
        tickets.push_back(dotsOf(finished.ticket));
    });
    printer.feed(job);
    printer.finish();
    return tickets;
}

}  // namespace tavio::scenarios
