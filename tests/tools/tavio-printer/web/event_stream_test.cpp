#include "tools/tavio-printer/web/event_stream.h"

#include <gtest/gtest.h>

#include "tools/tavio-printer/tickets/page_tickets.h"
#include "tools/tavio-printer/web/raw_http.h"

namespace tavio::virtual_printer {
namespace {

using test::countOf;
using test::printed;

class EventStreams : public testing::Test {
  protected:
    void print(int tickets) {
        for (int count = 0; count < tickets; ++count) store.add(printed("<p>"));
    }

    static StoreLimits limits() {
        StoreLimits limits;
        limits.tickets = 300;
        return limits;
    }

    TicketStore store{limits()};
    PrinterPanel panel;
    EventSource source{store, panel, "run1"};
};

bool has(const std::string& text, std::string_view part) {
    return countOf(part, text) > 0;
}

TEST_F(EventStreams, ANewPageGetsThePrinterAndAllTickets) {
    print(2);
    panel.stock = "concert";
    EventStream stream(source, "");
    const std::string text = stream.next();
    EXPECT_TRUE(text.starts_with("event: printer\ndata: {")) << text;
    EXPECT_TRUE(has(text, R"("stock":"concert")"));
    EXPECT_FALSE(has(text, "event: reset"));
    EXPECT_LT(text.find("id: run1-1\nevent: ticket\ndata: {\"id\":1,"),
              text.find("id: run1-2\nevent: ticket\ndata: {\"id\":2,"));
    EXPECT_TRUE(text.ends_with("}\n\n"));
    EXPECT_EQ(stream.next(), "");
}

TEST_F(EventStreams, GoesOnWhereThePageWas) {
    print(3);
    for (const char* last : {"run1-2", "2"}) {
        EventStream stream(source, last);
        const std::string text = stream.next();
        EXPECT_FALSE(has(text, "event: reset")) << text;
        EXPECT_EQ(countOf("event: ticket", text), 1U);
        EXPECT_TRUE(has(text, "id: run1-3"));
    }
    EventStream upToDate(source, "run1-3");
    EXPECT_FALSE(has(upToDate.next(), "event: ticket"));
}

TEST_F(EventStreams, TellsThePageToStartAfreshWhereItsTicketsAreOthers) {
    print(3);
    for (const char* last : {"run1-4", "4", "run2-2", "run1-", "x", "-1", "run1-2x",
                             "99999999999999999999", "run1-run1-2"}) {
        EventStream stream(source, last);
        const std::string text = stream.next();
        EXPECT_EQ(countOf("event: reset", text), 1U) << last;
        EXPECT_EQ(countOf("event: ticket", text), 3U) << last;
        EXPECT_LT(text.find("event: reset"), text.find("event: ticket")) << last;
    }
}

TEST_F(EventStreams, TellsThePageToStartAfreshWhereItMissedTickets) {
    print(305);  // 6 is the oldest left
    EventStream missed(source, "run1-4");
    EXPECT_TRUE(has(missed.next(), "event: reset"));
    EventStream justInTime(source, "run1-5");
    const std::string text = justInTime.next();
    EXPECT_FALSE(has(text, "event: reset"));
    EXPECT_TRUE(has(text, "id: run1-6\n"));
    EXPECT_TRUE(has(text, R"("oldest":6})"));
}

TEST_F(EventStreams, APageThatIsTooSlowStartsAfreshToo) {
    print(1);
    EventStream stream(source, "");
    stream.next();
    print(302);
    const std::string text = stream.next();
    EXPECT_TRUE(has(text, "event: reset"));
    EXPECT_TRUE(has(text, "id: run1-4\n"));
}

TEST_F(EventStreams, ManyTicketsComeInPieces) {
    print(250);
    EventStream stream(source, "");
    std::string all;
    std::size_t pieces = 0;
    for (std::string text = stream.next(); !text.empty(); text = stream.next()) {
        all += text;
        ++pieces;
    }
    EXPECT_EQ(pieces, 3U);
    EXPECT_EQ(countOf("event: ticket", all), 250U);
    EXPECT_EQ(countOf("event: reset", all), 0U);
}

TEST_F(EventStreams, TheStateIsToldWhenItChanges) {
    DeviceState state;
    panel.state = [&] { return state; };
    EventStream stream(source, "");
    EXPECT_TRUE(has(stream.next(), "event: state\ndata: {\"connected\":false"));
    EXPECT_EQ(stream.next(), "");
    state.paperOut = true;
    EXPECT_TRUE(has(stream.next(), R"("paperOut":true)"));
    EXPECT_EQ(stream.next(), "");
}

TEST_F(EventStreams, AStoppedStoreEndsThem) {
    EventStream stream(source, "");
    EXPECT_FALSE(stream.isOver());
    store.stop();
    EXPECT_TRUE(stream.isOver());
}

}  // namespace
}  // namespace tavio::virtual_printer
