// Fuzzes the virtual printer with any bytes, cut in two anywhere: no crash, and the same tickets as
// in one piece.

#include <cstdlib>
#include <span>
#include <string>

#include "tavio/virtual-printer/printer.h"

namespace {

using namespace tavio;
using namespace tavio::virtual_printer;

std::string ticketsOf(std::span<const Byte> first, std::span<const Byte> second) {
    std::string seen;
    Printer printer({TicketSize{60, 80, 100}}, [&](const FinishedTicket& finished) {
        if (seen.size() < 100000) seen += finished.ticket.toText() + "----\n";
    });
    printer.feed(first);
    printer.feed(second);
    printer.finish();
    return seen + std::to_string(printer.problems().count());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const Byte> stream(data, size);
    const std::size_t cut = size == 0 ? 0 : data[0] % size;
    if (ticketsOf(stream, {}) != ticketsOf(stream.first(cut), stream.subspan(cut))) std::abort();
    return 0;
}
