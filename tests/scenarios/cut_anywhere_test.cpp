// A connection that is dropped in the middle of a job, at any byte, leaves no trace in the printer
// that the next job on a new connection could suffer from: it prints dot by dot the same.
// TAVIO_SEED=SEED chooses other places of long jobs.

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>

#include <gtest/gtest.h>

#include "scenarios/real_jobs.h"
#include "scenarios/sample_jobs.h"
#include "scenarios/virtual_network.h"
#include "support/random_picture.h"
#include "tavio/links/tcp_link.h"

namespace tavio::scenarios {
namespace {

using virtual_printer::Device;
using virtual_printer::DeviceSettings;
using virtual_printer::DeviceTicket;
using virtual_printer::Ticket;

constexpr std::size_t kEachAtTheEnds = 2'000;
constexpr std::size_t kOverTheNetwork = 100;

constexpr std::size_t kRandomPlaces = TAVIO_SANITIZED ? 100 : 2'000;
constexpr std::size_t kStep = TAVIO_SANITIZED ? 20 : 1;  // of the places at the ends

std::uint64_t seedOfPlaces() {
    static const std::uint64_t seed = [] {
        const char* value = std::getenv("TAVIO_SEED");
        return value == nullptr ? std::random_device()() : std::strtoull(value, nullptr, 10);
    }();
    return seed;
}

// Bytes after which the connection is dropped: 0 to all of them.
std::vector<std::size_t> placesIn(const Bytes& job) {
    std::vector<std::size_t> places;
    const bool isLong = job.size() > 2 * kEachAtTheEnds + 2'000;
    for (std::size_t place = 0; place <= job.size(); place += kStep) {
        const bool isAtAnEnd = place < kEachAtTheEnds || place > job.size() - kEachAtTheEnds;
        if (!isLong || isAtAnEnd) places.push_back(place);
    }
    if (!isLong) return places;
    std::cout << "seed " << seedOfPlaces() << "\n";
    test::Random random(seedOfPlaces());
    for (std::size_t i = 0; i < kRandomPlaces; ++i) {
        places.push_back(
            static_cast<std::size_t>(test::between(random, static_cast<int>(kEachAtTheEnds),
                                                   static_cast<int>(job.size() - kEachAtTheEnds))));
    }
    return places;
}

bool hasSameDots(const Ticket& one, const Ticket& other) {
    for (std::int32_t row = 0; row < one.size().rows; ++row) {
        if (!std::ranges::equal(one.row(row), other.row(row))) return false;
    }
    return one.size() == other.size();
}

// A device with a clock that stands still: nothing about it takes time here.
class Printer {
  public:
    explicit Printer(const RealJob& job)
        : device_(DeviceSettings{.printer = job.settings, .physics = {}, .faults = {}, .reply = {}},
                  [this](DeviceTicket ticket) { tickets_.push_back(std::move(ticket)); }) {}

    void print(std::span<const Byte> job) {
        begin(job);
        device_.endOfStream(kNow);
        device_.disconnect(kNow);
    }

    void printUntilDropped(std::span<const Byte> beginning) {
        begin(beginning);
        device_.disconnect(kNow);
    }

    std::vector<DeviceTicket>& tickets() { return tickets_; }
    std::size_t logoBytes() const { return device_.state().logoBytes; }

  private:
    static constexpr Time kNow{std::chrono::hours(1)};

    void begin(std::span<const Byte> bytes) {
        ASSERT_TRUE(device_.isFree());
        device_.connect(kNow);
        while (!bytes.empty()) {
            const std::size_t count = std::min(bytes.size(), device_.room(kNow));
            ASSERT_GT(count, 0U);
            device_.receive(bytes.first(count), kNow);
            bytes = bytes.subspan(count);
        }
    }

    std::vector<DeviceTicket> tickets_;
    Device device_;
};

// The jobs that the printer got before this one.
Bytes storedBefore(const RealJob& job) {
    return job.name == "logo" ? storeLogo() : Bytes();
}

// The tickets of the job on a printer that has never seen another one.
std::vector<DeviceTicket> reference(const RealJob& job) {
    Printer printer(job);
    printer.print(storedBefore(job));
    printer.tickets().clear();
    printer.print(job.bytes);
    return printer.tickets();
}

void expectAfterTheCut(const std::vector<DeviceTicket>& tickets,
                       const std::vector<DeviceTicket>& expected) {
    ASSERT_EQ(tickets.size(), expected.size());
    for (std::size_t i = 0; i < tickets.size(); ++i) {
        ASSERT_TRUE(hasSameDots(tickets.at(i).ticket, expected.at(i).ticket)) << "ticket " << i;
        ASSERT_TRUE(tickets.at(i).problems.empty());
        ASSERT_EQ(tickets.at(i).bytes, expected.at(i).bytes);
    }
}

void cutEverywhere(const RealJob& job) {
    const std::vector<DeviceTicket> expected = reference(job);
    const Bytes stored = storedBefore(job);
    ASSERT_EQ(expected.size(), 1U);
    ASSERT_GT(expected.front().ticket.blackCount(), 1'000U);
    for (const std::size_t place : placesIn(job.bytes)) {
        SCOPED_TRACE(testing::Message()
                     << job.name << " cut after " << place << " bytes of " << job.bytes.size());
        Printer printer(job);
        printer.print(stored);
        printer.printUntilDropped(std::span(job.bytes).first(place));
        printer.tickets().clear();
        printer.print(job.bytes);
        ASSERT_NO_FATAL_FAILURE(expectAfterTheCut(printer.tickets(), expected));
    }
}

TEST(CutAnywhere, APhotoPrintsTheSameOnTheNextConnection) {
    cutEverywhere(photoJob());
}

TEST(CutAnywhere, APagePrintsTheSameOnTheNextConnection) {
    cutEverywhere(pageJob());
}

TEST(CutAnywhere, ALogoPrintsTheSameOnTheNextConnection) {
    cutEverywhere(storedLogoJob());
}

TEST(CutAnywhere, OfALogoEitherAllIsStoredOrNothing) {
    const RealJob job = storedLogoJob();
    Printer whole(job);
    whole.print(job.bytes);
    const std::size_t wholeLogo = whole.logoBytes();
    ASSERT_GT(wholeLogo, 1'000U);
    // The first ESC begins the logo; no byte of the picture is one.
    const auto isEscape = [](Byte byte) { return byte == 0x1B; };
    const auto end = std::find_if(job.bytes.rbegin(), job.bytes.rend(), isEscape);
    const auto size = static_cast<std::size_t>(job.bytes.rend() - end);
    for (std::size_t place = 0; place <= job.bytes.size(); place += kStep) {
        Printer printer(job);
        printer.printUntilDropped(std::span(job.bytes).first(place));
        ASSERT_EQ(printer.logoBytes(), place < size ? 0 : wholeLogo) << place;
    }
}

// The same with everything in between: links, the network, and the printer's server.
void cutOverTheNetwork(const RealJob& job) {
    const std::vector<DeviceTicket> expected = reference(job);
    for (std::size_t i = 0; i <= kOverTheNetwork; ++i) {
        const std::size_t place = job.bytes.size() * i / kOverTheNetwork;
        SCOPED_TRACE(testing::Message() << job.name << " cut after " << place);
        VirtualNetwork network({.path = {},
                                .firstAnswers = {},
                                .names = {},
                                .device = {job.settings, {}, {}, {}},
                                .server = {}});
        links::TcpLink stored(links::Deadlines{}, network);
        EXPECT_TRUE(stored.open("192.0.2.1") && stored.write(storedBefore(job)));
        stored.close();
        links::TcpLink cut(links::Deadlines{}, network);
        EXPECT_TRUE(cut.open("192.0.2.1") && cut.write(std::span(job.bytes).first(place)));
        if (i % 2 == 0) cut.drain();
        cut.cancel();
        cut.close();
        links::TcpLink again(links::Deadlines{}, network);
        EXPECT_TRUE(again.open("192.0.2.1") && again.write(job.bytes));
        again.close();
        EXPECT_EQ(links::outcomeOf(again.report()), links::Outcome::kSentUnconfirmed);
        std::vector<DeviceTicket> tickets;
        for (const DeviceTicket& ticket : network.server().tickets()) {
            if (ticket.connection == 3) tickets.push_back(ticket);
        }
        ASSERT_NO_FATAL_FAILURE(expectAfterTheCut(tickets, expected));
    }
}

TEST(CutAnywhere, OverTheNetworkJobsPrintTheSameOnTheNextConnection) {
    cutOverTheNetwork(photoJob());
    cutOverTheNetwork(pageJob());
    cutOverTheNetwork(storedLogoJob());
}

}  // namespace
}  // namespace tavio::scenarios
