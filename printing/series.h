// Printing many tickets: each is encoded while those before it are sent. So the first is printed at
// once, and only a few of them are in memory.
//
//   std::vector<Ticket> tickets;
//   for (std::int32_t page = 1; page <= pages; ++page)
//       tickets.push_back(Ticket(settings).page(document, {}, {.page = page}).finish(Finish::kCut));
//   SeriesResult result = printer.printSeries(tickets);
//   if (!result.isGood()) tell(std::to_string(result.sentTickets) + " tickets were printed");
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/printing/job.h"
#include "tavio/printing/print_options.h"
#include "tavio/printing/print_result.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

struct TAVIO_API SeriesProgress {
    std::size_t sent = 0;     // tickets that the operating system took whole, from the first on
    std::size_t encoded = 0;  // tickets
    std::size_t count = 0;    // of all tickets
    std::uint64_t bytes = 0;  // that the operating system took
};

struct TAVIO_API SeriesOptions {
    EncodeOptions encode = {};  // its progress function is not called
    PrintOptions print = {};    // its progress function is not called

    // Tickets that are encoded and not sent yet: at most so many, 1 or more.
    std::size_t ahead = 8;

    // Threads that encode, 1 to 16. With more than one, a ticket is encoded by one thread alone.
    std::size_t threads = 2;

    // Called while bytes are sent, on the calling thread. Its exceptions end its calls, as a remark
    // says. It must not call the printer.
    std::function<void(const SeriesProgress& now)> progress = {};
};

struct TAVIO_API SeriesResult {
    // What became of the bytes that were handed to the link; `elements` as below.
    PrintResult print;

    // Of the tickets that were encoded and offered, in order. Offsets count from the first byte of
    // the series.
    std::vector<EncodedElement> elements;
    std::vector<Warning> warnings;

    // Why a ticket cannot be encoded. The series ended before that ticket: nothing of it or of those
    // after it was sent.
    Problems problems;

    // Tickets that have left as a whole, from the first on. The next one may have left in part if
    // print.outcome is kPartlySent.
    std::size_t sentTickets = 0;
    std::size_t tickets = 0;  // of the series

    // All tickets were sent, and everything that was demanded was confirmed.
    bool isGood() const { return problems.empty() && sentTickets == tickets && print.isGood(); }
};

}  // namespace tavio::printing
