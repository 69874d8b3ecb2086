#include "tools/tavio-printer/web/ticket_json.h"

#include <vector>

#include "tools/common/json.h"
#include "tools/tavio-printer/web/command_page.h"

namespace tavio::virtual_printer {
namespace {

using command_line::jsonArray;
using command_line::JsonObject;

const char* nameOf(Orientation orientation) {
    return orientation == Orientation::kPortrait ? "portrait" : "landscape";
}

const char* nameOf(TicketEnd end) {
    switch (end) {
        case TicketEnd::kCut:
            return "cut";
        case TicketEnd::kEjected:
            return "ejected";
        case TicketEnd::kStreamEnded:
            break;
    }
    return "stream ended";
}

JsonObject summary(const StoredTicket& ticket) {
    using std::chrono::duration_cast, std::chrono::milliseconds;
    JsonObject json;
    json.number("id", ticket.id)
        .number("time", duration_cast<milliseconds>(ticket.time.time_since_epoch()).count())
        .number("rows", ticket.size.rows)
        .number("columns", ticket.size.columns)
        .number("dpi", ticket.size.dpi)
        .text("orientation", nameOf(ticket.orientation))
        .text("end", nameOf(ticket.end))
        .number("connection", ticket.connection)
        .number("number", ticket.number)
        .number("blackDots", ticket.blackDots)
        .number("dotsOff", ticket.dotsOff)
        .number("byteCount", ticket.byteCount)
        .number("bytesKept", ticket.bytes.size())
        .flag("picture", !ticket.png.empty())
        .number("problems", ticket.problems.count());
    return json;
}

std::string commandsJson(const CommandPage& page) {
    std::vector<std::string> lines;
    lines.reserve(page.lines.size());
    for (const CommandLine& line : page.lines) {
        JsonObject json;
        json.number("offset", line.offset)
            .text("command", line.command)
            .text("meaning", line.meaning);
        lines.push_back(json.str());
    }
    return jsonArray(lines);
}

std::string problemsJson(const ProblemList& problems, const CommandPage& page) {
    std::vector<std::string> list;
    list.reserve(problems.kept().size());
    for (std::size_t index = 0; index < problems.kept().size(); ++index) {
        const Problem& problem = problems.kept()[index];
        JsonObject json;
        json.number("offset", problem.offset)
            .number("line", page.problemLines.at(index))
            .text("text", problem.text);
        list.push_back(json.str());
    }
    return jsonArray(list);
}

}  // namespace

std::string summaryJson(const StoredTicket& ticket, std::uint64_t oldest) {
    return summary(ticket).number("oldest", oldest).str();
}

std::string detailJson(const StoredTicket& ticket, std::uint64_t firstLine,
                       const std::function<bool()>& shouldContinue) {
    const CommandPage page = commandPage(ticket.bytes, ticket.problems, firstLine, shouldContinue);
    return summary(ticket)
        .number("firstLine", firstLine)
        .number("lineCount", page.count)
        .json("commands", commandsJson(page))
        .json("problemList", problemsJson(ticket.problems, page))
        .str();
}

std::string stateJson(const DeviceState& state) {
    return JsonObject()
        .flag("connected", state.connected)
        .flag("paperOut", state.paperOut)
        .flag("moving", state.moving)
        .number("waitingBytes", state.waitingBytes)
        .number("received", state.received)
        .number("tickets", state.tickets)
        .number("logoBytes", state.logoBytes)
        .str();
}

std::string printerJson(const PrinterPanel& panel) {
    return JsonObject()
        .text("address", panel.printAddress)
        .text("stock", panel.stock)
        .number("rows", panel.settings.size.rows)
        .number("columns", panel.settings.size.columns)
        .number("dpi", panel.settings.size.dpi)
        .number("logoMemory", panel.settings.logoMemory)
        .str();
}

}  // namespace tavio::virtual_printer
