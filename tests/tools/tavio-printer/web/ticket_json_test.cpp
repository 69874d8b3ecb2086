#include "tools/tavio-printer/web/ticket_json.h"

#include <gtest/gtest.h>

#include "tools/tavio-printer/tickets/page_tickets.h"

namespace tavio::virtual_printer {
namespace {

StoredTicket someTicket() {
    StoredTicket ticket;
    ticket.id = 7;
    ticket.time = std::chrono::system_clock::time_point(std::chrono::milliseconds(1'500'000));
    ticket.size = {600, 1650, 300};
    ticket.end = TicketEnd::kEjected;
    ticket.connection = 3;
    ticket.number = 2;
    ticket.blackDots = 11;
    ticket.dotsOff = 5;
    ticket.png = {1};
    ticket.bytes = {'<', 'q', '>'};
    ticket.byteCount = 9;
    ticket.problems.add(1, "a \"bad\" <thing>");
    return ticket;
}

constexpr const char* kSummary =
    R"({"id":7,"time":1500000,"rows":600,"columns":1650,"dpi":300,"orientation":"landscape",)"
    R"("end":"ejected","connection":3,"number":2,"blackDots":11,"dotsOff":5,"byteCount":9,)"
    R"("bytesKept":3,"picture":true,"problems":1)";

TEST(TicketJson, SummaryTellsAllButTheCommands) {
    EXPECT_EQ(summaryJson(someTicket(), 4), std::string(kSummary) + R"(,"oldest":4})");
}

TEST(TicketJson, DetailTellsCommandsAndProblemsToo) {
    EXPECT_EQ(detailJson(someTicket(), 0),
              std::string(kSummary) +
                  R"(,"firstLine":0,"lineCount":1,"commands":[{"offset":0,"command":)"
                  R"("\u003cq\u003e","meaning":"eject without a cut"}],"problemList":[)"
                  R"({"offset":1,"line":0,"text":"a \"bad\" \u003cthing\u003e"}]})");
}

TEST(TicketJson, EveryEndHasAName) {
    StoredTicket ticket = someTicket();
    ticket.end = TicketEnd::kCut;
    EXPECT_NE(summaryJson(ticket, 1).find(R"("end":"cut")"), std::string::npos);
    ticket.end = TicketEnd::kStreamEnded;
    EXPECT_NE(summaryJson(ticket, 1).find(R"("end":"stream ended")"), std::string::npos);
    ticket.orientation = Orientation::kPortrait;
    EXPECT_NE(summaryJson(ticket, 1).find(R"("orientation":"portrait")"), std::string::npos);
}

TEST(TicketJson, StateAndPrinterAreTold) {
    DeviceState state;
    state.connected = true;
    state.waitingBytes = 12;
    EXPECT_EQ(stateJson(state),
              R"({"connected":true,"paperOut":false,"moving":false,"waitingBytes":12,)"
              R"("received":0,"tickets":0,"logoBytes":0})");
    PrinterPanel panel;
    panel.settings.size = {1, 2, 3};
    panel.settings.logoMemory = 4;
    panel.stock = "a \"stock\"";
    panel.printAddress = "tcp://x";
    EXPECT_EQ(printerJson(panel), R"({"address":"tcp://x","stock":"a \"stock\"","rows":1,)"
                                  R"("columns":2,"dpi":3,"logoMemory":4})");
}

}  // namespace
}  // namespace tavio::virtual_printer
