#include "tools/tavio-printer/tickets/page_tickets.h"

#include <optional>

#include <png.h>

#include "tavio/virtual-printer/printer.h"

namespace tavio::test {

using namespace virtual_printer;

DeviceTicket printed(std::string_view stream, TicketSize size) {
    const auto* begin = reinterpret_cast<const Byte*>(stream.data());
    std::optional<DeviceTicket> first;
    PrinterSettings settings;
    settings.size = size;
    Printer printer(settings, [&](const FinishedTicket& finished) {
        if (first) return;
        first = DeviceTicket{finished.ticket,
                             finished.orientation,
                             finished.end,
                             finished.marked,
                             1,
                             finished.number,
                             finished.beginOffset,
                             {begin + finished.beginOffset, begin + finished.endOffset},
                             finished.endOffset - finished.beginOffset,
                             {}};
    });
    printer.feed({begin, stream.size()});
    printer.finish();
    first->problems = printer.problems();
    return *first;
}

std::string dotsOf(const std::vector<Byte>& png) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, png.data(), png.size()) == 0) return "";
    image.format = PNG_FORMAT_GRAY;
    std::vector<Byte> grey(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, grey.data(), 0, nullptr) == 0) return "";
    std::string text;
    for (std::size_t index = 0; index < grey.size(); ++index) {
        text += grey.at(index) == 0 ? 'X' : ' ';
        if ((index + 1) % image.width == 0) text += '\n';
    }
    return text;
}

}  // namespace tavio::test
