#include "virtual-printer/test_streams.h"

#include <sstream>

#include "tavio/virtual-printer/escaped_text.h"

namespace tavio::virtual_printer::testing {
namespace {

const char* nameOf(CommandKind kind) {
    switch (kind) {
        case CommandKind::kPath:
            return "path";
        case CommandKind::kLandscape:
            return "landscape";
        case CommandKind::kPortrait:
            return "portrait";
        case CommandKind::kRe:
            return "re";
        case CommandKind::kDi:
            return "di";
        case CommandKind::kPosition:
            return "position";
        case CommandKind::kGraphics:
            return "graphics";
        case CommandKind::kLogoPlace:
            return "logo place";
        case CommandKind::kPrintLogo:
            return "print logo";
        case CommandKind::kBeginLogo:
            return "begin logo";
        case CommandKind::kEndLogo:
            return "end logo";
        case CommandKind::kClearMemory:
            return "clear memory";
        case CommandKind::kCut:
            return "cut";
        case CommandKind::kEject:
            return "eject";
        case CommandKind::kUnknown:
            return "unknown";
    }
    return "?";
}

std::string_view textOf(std::span<const Byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

void appendTo(Stream& to, std::string_view text) {
    to.insert(to.end(), text.begin(), text.end());
}

void appendTo(Stream& to, const Stream& bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

void RecordingSink::command(const Command& command) {
    std::ostringstream line;
    line << command.offset << ' ' << nameOf(command.kind) << ' ' << command.arguments[0] << ' '
         << command.arguments[1] << ' ' << quoted(command.text);
    lines.push_back(line.str());
    graphics_.clear();
}

void RecordingSink::graphicsBytes(std::span<const Byte> bytes) {
    graphics_.insert(graphics_.end(), bytes.begin(), bytes.end());
}

void RecordingSink::graphicsEnd() {
    lines.push_back("bytes " + quoted(textOf(graphics_)));
}

void RecordingSink::text(std::uint64_t offset, std::span<const Byte> bytes) {
    lines.push_back(std::to_string(offset) + " text " + quoted(textOf(bytes)));
}

void RecordingSink::problem(std::uint64_t offset, std::string_view text) {
    problems.push_back(std::to_string(offset) + ": " + std::string(text));
}

RecordingSink readAll(const Stream& bytes) {
    RecordingSink sink;
    CommandReader reader(sink);
    reader.feed(bytes);
    reader.finish();
    return sink;
}

std::vector<std::string> TestPrinter::problems() const {
    std::vector<std::string> all;
    for (const Problem& problem : printer_.problems().kept()) {
        all.push_back(std::to_string(problem.offset) + ": " + problem.text);
    }
    return all;
}

void TestPrinter::keep(const FinishedTicket& finished) {
    const Ticket& ticket = finished.ticket;
    tickets_.push_back({ticket.toText(), finished.number, finished.end, finished.orientation,
                        finished.marked, ticket.blackCount(), ticket.dotsOff(),
                        finished.beginOffset, finished.endOffset});
}

std::string printOne(TicketSize size, const Stream& bytes) {
    TestPrinter printer(size);
    printer.print(bytes);
    return printer.tickets().size() == 1 ? printer.tickets()[0].dots
                                         : std::to_string(printer.tickets().size()) + " tickets";
}

}  // namespace tavio::virtual_printer::testing
