// Prints any dots at any place with the virtual printer, and compares the ticket with them.

#include <algorithm>
#include <cstdlib>

#include "TavioIpadSDK/sharp/encode_dots.h"
#include "support/random_dots.h"
#include "tavio/virtual-printer/printer.h"

namespace {

using namespace tavio;
using virtual_printer::Ticket;
using virtual_printer::TicketSize;

constexpr TicketSize kSize{300, 300, 300};

// The input's bits row by row, each byte as often as its neighbour says, so that short inputs have
// blank runs.
sharp::Dots dotsOf(const std::uint8_t* data, std::size_t size, std::int32_t width) {
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        bytes.insert(bytes.end(), std::size_t{1} + data[i + 1] % 16, data[i]);
    const auto bits = static_cast<std::int32_t>(8 * bytes.size());
    return test::dotsWhere(width, std::min(bits / width, 150), [&](auto x, auto y) {
        const std::int32_t bit = y * width + x;
        return (bytes[static_cast<std::size_t>(bit / 8)] >> (bit % 8) & 1) != 0;
    });
}

void comparePrinted(const sharp::Dots& dots, const sharp::DotsPlace& place) {
    Bytes bytes;
    sharp::appendPicture(dots, place, place.isLandscape ? "<LM>" : "<PM>", bytes);
    Ticket expected(kSize);
    for (std::int32_t y = 0; y < dots.height; ++y) {
        for (std::int32_t x = 0; x < dots.width; ++x) {
            if (!dots.isBlack(x, y)) continue;
            const sharp::PrinterPosition at = sharp::positionOf(place, x, y);
            expected.setDot(at.row, at.column);
        }
    }
    virtual_printer::Printer printer({.size = kSize}, [&](const auto& finished) {
        for (std::int32_t row = 0; row < kSize.rows; ++row)
            if (!std::ranges::equal(finished.ticket.row(row), expected.row(row))) std::abort();
    });
    printer.feed(bytes);
    printer.finish();
    if (printer.problems().count() != 0) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 6 || size > 2000) return 0;
    const bool isLandscape = (data[0] & 1U) != 0;
    const std::int32_t width = 1 + data[1] % 150;
    const std::int32_t row = data[2] % 150;
    comparePrinted(dotsOf(data + 4, size - 4, width),
                   {isLandscape, isLandscape ? row : row + width - 1, data[3] % 150});
    return 0;
}
