#include "tools/tavio-printer/tickets/ticket_store.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "tools/tavio-printer/tickets/page_tickets.h"

namespace tavio::virtual_printer {
namespace {

using std::chrono::milliseconds;
using test::printed;

constexpr milliseconds kLong{120'000};

std::vector<std::uint64_t> idsOf(const std::vector<TicketStore::TicketPointer>& tickets) {
    std::vector<std::uint64_t> ids;
    for (const auto& ticket : tickets) ids.push_back(ticket->id);
    return ids;
}

StoreLimits limits(std::size_t tickets, std::size_t bytes = std::size_t{64} << 20U) {
    StoreLimits limits;
    limits.tickets = tickets;
    limits.bytes = bytes;
    return limits;
}

TEST(TicketStore, KeepsATicketAsItCameOut) {
    TicketStore store(limits(5));
    const DeviceTicket ticket = printed("<RC2,3><G2>\xFF\x01<RC60,199><G2>\xFF\xFF<q>");
    EXPECT_EQ(store.add(ticket), "");
    const auto kept = store.find(1);
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->id, 1U);
    EXPECT_EQ(kept->size, (TicketSize{64, 200, 100}));
    EXPECT_EQ(kept->end, TicketEnd::kEjected);
    EXPECT_EQ(kept->blackDots, ticket.ticket.blackCount());
    EXPECT_EQ(kept->dotsOff, 12U);
    EXPECT_EQ(kept->bytes, ticket.bytes);
    EXPECT_EQ(kept->byteCount, ticket.bytes.size());
    EXPECT_EQ(kept->problems.count(), 1U);
    EXPECT_EQ(test::dotsOf(kept->png), ticket.ticket.toText());
}

TEST(TicketStore, TurnsPortraitTicketsUpright) {
    TicketStore store(limits(5));
    const DeviceTicket ticket = printed("<PM><RC63,0><G3>\xFF\x01\x0F<p>");
    store.add(ticket);
    const auto kept = store.find(1);
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->orientation, Orientation::kPortrait);
    EXPECT_EQ(kept->size, (TicketSize{200, 64, 100}));
    EXPECT_EQ(test::dotsOf(kept->png), ticket.ticket.turnedUpright().toText());
}

TEST(TicketStore, HasNoIdsWhileItIsEmpty) {
    const TicketStore store(limits(5));
    EXPECT_EQ(store.oldest(), 0U);
    EXPECT_EQ(store.newest(), 0U);
    EXPECT_EQ(store.find(0), nullptr);
    EXPECT_EQ(store.find(1), nullptr);
    EXPECT_TRUE(store.since(0).empty());
}

TEST(TicketStore, ForgetsTheOldestBeyondItsNumber) {
    TicketStore store(limits(3));
    for (int count = 0; count < 5; ++count) store.add(printed("<p>"));
    EXPECT_EQ(store.oldest(), 3U);
    EXPECT_EQ(store.newest(), 5U);
    EXPECT_EQ(store.find(2), nullptr);
    EXPECT_EQ(store.find(3)->id, 3U);
    EXPECT_EQ(store.find(6), nullptr);
    EXPECT_EQ(idsOf(store.since(0)), (std::vector<std::uint64_t>{3, 4, 5}));
    EXPECT_EQ(idsOf(store.since(3)), (std::vector<std::uint64_t>{4, 5}));
    EXPECT_EQ(idsOf(store.since(0, 2)), (std::vector<std::uint64_t>{3, 4}));
    EXPECT_EQ(idsOf(store.since(4, 2)), (std::vector<std::uint64_t>{5}));
    EXPECT_TRUE(store.since(5).empty());
    EXPECT_TRUE(store.since(UINT64_MAX).empty());
}

TEST(TicketStore, KeepsOneTicketAtLeast) {
    TicketStore store(limits(0));
    store.add(printed("<p>"));
    store.add(printed("<p>"));
    EXPECT_EQ(store.oldest(), 2U);
    EXPECT_EQ(store.newest(), 2U);
}

TEST(TicketStore, ForgetsTheOldestBeyondItsBytes) {
    TicketStore probe(limits(1));
    const DeviceTicket ticket = printed(std::string(3000, 'x') + "<p>");
    probe.add(ticket);
    const std::size_t each = probe.find(1)->png.size() + probe.find(1)->bytes.size();

    TicketStore store(limits(100, 2 * each));
    for (int count = 0; count < 3; ++count) store.add(ticket);
    EXPECT_EQ(store.oldest(), 2U);
    TicketStore tighter(limits(100, 2 * each - 1));
    for (int count = 0; count < 3; ++count) tighter.add(ticket);
    EXPECT_EQ(tighter.oldest(), 3U);
}

TEST(TicketStore, ATicketTooLargeForItIsKeptWithoutItsBytes) {
    TicketStore store(limits(100, 1500));
    const DeviceTicket small = printed("<p>");
    const DeviceTicket large = printed(std::string(3000, 'x') + "<p>");
    store.add(small);
    store.add(large);
    const auto kept = store.find(2);
    ASSERT_NE(kept, nullptr);
    EXPECT_TRUE(kept->bytes.empty());
    EXPECT_EQ(kept->byteCount, large.bytes.size());
    EXPECT_EQ(test::dotsOf(kept->png), large.ticket.toText());

    store.add(small);
    EXPECT_EQ(store.find(3)->bytes, small.bytes);
}

TEST(TicketStore, TicketsOutliveTheStoreForThoseWhoHoldThem) {
    TicketStore store(limits(1));
    store.add(printed("<P1><p>"));
    const auto held = store.find(1);
    store.add(printed("<p>"));
    EXPECT_EQ(store.find(1), nullptr);
    EXPECT_EQ(held->bytes.size(), 7U);
}

TEST(TicketStore, WaitingEndsWithTheNextTicket) {
    TicketStore store(limits(5));
    EXPECT_FALSE(store.waitForMore(0, milliseconds(1)));
    std::thread printer([&] { store.add(printed("<p>")); });
    EXPECT_TRUE(store.waitForMore(0, kLong));
    printer.join();
    EXPECT_TRUE(store.waitForMore(0, milliseconds(0)));
    EXPECT_FALSE(store.waitForMore(1, milliseconds(1)));
}

TEST(TicketStore, StoppingEndsAllWaitingForGood) {
    TicketStore store(limits(5));
    EXPECT_FALSE(store.isStopped());
    std::vector<std::thread> pages;
    std::atomic<int> ended{0};
    for (int page = 0; page < 4; ++page) {
        pages.emplace_back([&] {
            if (!store.waitForMore(0, kLong)) ++ended;
        });
    }
    store.stop();
    for (std::thread& page : pages) page.join();
    EXPECT_EQ(ended, 4);
    EXPECT_TRUE(store.isStopped());
    EXPECT_FALSE(store.waitForMore(0, kLong));
}

TEST(TicketStore, ReadersSeeEveryTicketOnceAndInOrderWhileManyPrint) {
    constexpr std::uint64_t kEach = 40;
    constexpr int kPrinters = 3;
    constexpr std::uint64_t kAll = kEach * kPrinters;
    TicketStore store(limits(kAll));
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int reader = 0; reader < 3; ++reader) {
        threads.emplace_back([&] {
            std::uint64_t last = 0;
            while (last < kAll && store.waitForMore(last, kLong)) {
                for (const auto& ticket : store.since(last)) {
                    if (ticket->id != ++last) ++wrong;
                }
            }
            if (last != kAll) ++wrong;
        });
    }
    for (int printer = 0; printer < kPrinters; ++printer) {
        threads.emplace_back([&] {
            for (std::uint64_t count = 0; count < kEach; ++count) store.add(printed("<P1><p>"));
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(store.newest(), kAll);
}

}  // namespace
}  // namespace tavio::virtual_printer
