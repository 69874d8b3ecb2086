// Series of tickets: encoded while they are sent, in order, as one job would be.

#include "tavio/printing/series.h"

#include <algorithm>
#include <atomic>
#include <random>
#include <stdexcept>
#include <stop_token>

#include <gtest/gtest.h>

#include "links/job_bytes.h"
#include "printing/random_tickets.h"
#include "printing/test_jobs.h"
#include "support/loopback_peer.h"
#include "tavio/links/recording_link.h"
#include "tavio/printing/printer.h"

namespace tavio::printing {
namespace {

using links::Outcome;
using links::test::Peer;
using links::test::Port;
using test::kindsOf;
using Kinds = std::vector<RemarkKind>;

Ticket numbered(std::size_t number) {
    return std::move(
        Ticket().text("ticket " + std::to_string(number), {.row = 20}).finish(Finish::kCut));
}

std::vector<Ticket> numberedTickets(std::size_t count) {
    std::vector<Ticket> tickets;
    for (std::size_t number = 0; number < count; ++number) tickets.push_back(numbered(number));
    return tickets;
}

Ticket wrong() {
    return std::move(Ticket().text("<", {}));
}

std::string jobText(std::span<const Ticket> tickets) {
    const auto job = encode(tickets);
    return job ? test::textOf(job->bytes()) : "";
}

// Prints over a link that keeps the bytes.
struct Printed {
    SeriesResult result;
    std::string bytes;
};
Printed printed(const std::vector<Ticket>& tickets, const SeriesOptions& options = {}) {
    const auto link = std::make_shared<links::RecordingLink>();
    Printer printer([&] { return link; });
    SeriesResult result = printer.printSeries(tickets, options);
    return {std::move(result), test::textOf(link->bytes())};
}

// ---- The same as one job ------------------------------------------------------------------------

TEST(Series, SendsTheTicketsInOrderOverOneConnection) {
    const auto tickets = numberedTickets(200);
    Port port;
    port.listen();
    std::string received;
    {
        Peer peer(port, [&](int connection) { received = links::test::receiveAll(connection); });
        Printer printer("tcp://" + port.address());
        const SeriesResult result = printer.printSeries(tickets);
        EXPECT_TRUE(result.isGood());
        EXPECT_EQ(result.sentTickets, 200U);
        EXPECT_EQ(result.tickets, 200U);
        EXPECT_EQ(result.print.outcome, Outcome::kSentUnconfirmed);
        EXPECT_EQ(result.print.elements, std::vector(400, ElementFate::kArrived));
    }
    EXPECT_EQ(received, jobText(tickets));
}

TEST(Series, HasTheBytesAndElementsOfOneJobWithAnyNumberOfThreads) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    tavio::test::Random random(seed);
    std::vector<Ticket> tickets;
    while (tickets.size() < 40) {
        const auto ticket = tavio::test::randomTicket(random);
        const auto isPage = [](const auto& element) {
            return element.kind == tavio::test::RandomElement::Kind::kPage ||
                   element.kind == tavio::test::RandomElement::Kind::kStorePage;
        };
        if (std::ranges::any_of(ticket.elements, isPage))
            continue;  // each has an engine of its own
        tickets.push_back(tavio::test::composed(ticket, random));
    }
    const auto job = encode(tickets);
    ASSERT_TRUE(job);
    for (const std::size_t threads : {1U, 2U, 5U}) {
        const Printed series = printed(tickets, {.ahead = 3, .threads = threads});
        EXPECT_TRUE(series.result.isGood());
        EXPECT_EQ(series.bytes, test::textOf(job->bytes()));
        ASSERT_EQ(series.result.elements.size(), job->elements().size());
        for (std::size_t index = 0; index < job->elements().size(); ++index) {
            const EncodedElement& element = series.result.elements[index];
            const EncodedElement& expected = job->elements()[index];
            EXPECT_EQ(element.ticket, expected.ticket);
            EXPECT_EQ(element.element, expected.element);
            EXPECT_EQ(element.offset, expected.offset);
            EXPECT_EQ(element.count, expected.count);
        }
        EXPECT_EQ(series.result.warnings.size(), job->warnings().size());
    }
}

TEST(Series, TakesAnyNumberOfThreadsAndTicketsAhead) {
    const auto tickets = numberedTickets(5);
    for (const std::size_t count : {0U, 1U, 16U, 1'000U}) {
        const Printed series = printed(tickets, {.ahead = count, .threads = count});
        EXPECT_TRUE(series.result.isGood());
        EXPECT_EQ(series.bytes, jobText(tickets));
    }
}

TEST(Series, WithoutATicketIsEmpty) {
    const Printed series = printed({});
    EXPECT_FALSE(series.result.isGood());
    EXPECT_EQ(kindsOf(series.result.print.remarks), Kinds{RemarkKind::kEmptyJob});
}

TEST(Series, LeavesOutTicketsWithoutBytes) {
    const std::vector<Ticket> tickets{Ticket(), numbered(1), Ticket(), numbered(3), Ticket()};
    const Printed series = printed(tickets);
    EXPECT_TRUE(series.result.isGood());
    EXPECT_EQ(series.result.sentTickets, 5U);
    EXPECT_EQ(series.bytes, jobText(tickets));
}

// ---- Encoding ahead -----------------------------------------------------------------------------

// Notes how far the encoding is.
class CountedTickets {
  public:
    explicit CountedTickets(std::size_t count) {
        for (std::size_t number = 0; number < count; ++number) {
            tickets_.push_back(std::move(Ticket().page(
                Source::bytes(Bytes{0}, std::to_string(number)), {.row = 0, .column = 0})));
        }
        options_.encode.pageEngine = [this](const Source& /*document*/, std::int32_t /*page*/) {
            ++drawn_;
            DrawnPage page{{platform::PdfOutcome::kDrawn, platform::PdfPage{}}, 1};
            page.result.page->width = 8;
            page.result.page->height = 8;
            page.result.page->picture = {8, 8, std::vector<std::uint32_t>(64, 0xFF000000U), 1};
            return page;
        };
    }

    const std::vector<Ticket>& tickets() const { return tickets_; }
    SeriesOptions& options() { return options_; }
    std::size_t drawn() const { return drawn_; }

  private:
    std::vector<Ticket> tickets_;
    SeriesOptions options_;
    std::atomic<std::size_t> drawn_ = 0;
};

// A link that looks on before each write.
class WatchedLink : public links::RecordingLink {
  public:
    explicit WatchedLink(std::function<void()> look) : look_(std::move(look)) {}
    bool write(std::span<const Byte> bytes) override {
        look_();
        return RecordingLink::write(bytes);
    }

  private:
    std::function<void()> look_;
};

TEST(Series, EncodesNoFurtherAheadThanAllowed) {
    CountedTickets counted(60);
    counted.options().ahead = 4;
    std::size_t sent = 0;
    const auto look = [&] {
        EXPECT_LE(counted.drawn(), sent + 1 + 4);
        ++sent;
    };
    Printer printer([&] { return std::make_shared<WatchedLink>(look); });
    EXPECT_TRUE(printer.printSeries(counted.tickets(), counted.options()).isGood());
    EXPECT_EQ(sent, 60U);
}

TEST(Series, TellsItsProgress) {
    std::vector<SeriesProgress> told;
    SeriesOptions options;
    options.progress = [&](const SeriesProgress& now) { told.push_back(now); };
    const auto tickets = numberedTickets(30);
    Port port;
    port.listen();
    Peer peer(port, [](int connection) { links::test::receiveAll(connection); });
    Printer printer("tcp://" + port.address());
    const SeriesResult result = printer.printSeries(tickets, options);
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.back().sent, 30U);
    EXPECT_EQ(told.back().count, 30U);
    EXPECT_EQ(told.back().bytes, result.print.total);
    for (std::size_t index = 1; index < told.size(); ++index)
        EXPECT_GE(told[index].sent, told[index - 1].sent);
}

TEST(Series, GoesOnWhenTheProgressFunctionThrows) {
    SeriesOptions options;
    options.progress = [](const SeriesProgress&) { throw std::runtime_error("no screen"); };
    Port port;
    port.listen();
    Peer peer(port, [](int connection) { links::test::receiveAll(connection); });
    Printer printer("tcp://" + port.address());
    const SeriesResult result = printer.printSeries(numberedTickets(3), options);
    EXPECT_TRUE(result.isGood());
    EXPECT_EQ(kindsOf(result.print.remarks), Kinds{RemarkKind::kCallbackFailed});
}

// ---- Problems -----------------------------------------------------------------------------------

TEST(Series, EndsBeforeATicketThatCannotBeEncoded) {
    auto tickets = numberedTickets(40);
    tickets[25] = wrong();
    const Printed series = printed(tickets);
    EXPECT_FALSE(series.result.isGood());
    ASSERT_EQ(series.result.problems.size(), 1U);
    EXPECT_EQ(series.result.problems.front().ticket, 25U);
    EXPECT_EQ(series.result.problems.front().kind, ProblemKind::kUnprintableLetter);
    EXPECT_EQ(series.result.sentTickets, 25U);
    EXPECT_EQ(series.bytes, jobText(std::span(tickets).first(25)));
}

TEST(Series, OpensNoConnectionIfItsFirstTicketCannotBeEncoded) {
    auto tickets = numberedTickets(3);
    tickets[0] = wrong();
    bool isMade = false;
    Printer printer([&] {
        isMade = true;
        return std::make_shared<links::RecordingLink>();
    });
    const SeriesResult result = printer.printSeries(tickets);
    EXPECT_FALSE(isMade);
    EXPECT_EQ(result.print.outcome, Outcome::kNothingSent);
    EXPECT_EQ(result.problems.size(), 1U);
    EXPECT_TRUE(result.print.remarks.empty());
    EXPECT_EQ(result.sentTickets, 0U);
}

TEST(Series, TellsWhichTicketsLeftBeforeTheConnectionBroke) {
    const auto tickets = numberedTickets(50);
    const std::string all = jobText(tickets);
    const std::size_t taken = all.size() / 2;
    class BreakingLink : public links::RecordingLink {
      public:
        explicit BreakingLink(std::size_t room) : room_(room) {}
        bool write(std::span<const Byte> bytes) override {
            if (bytes.size() > room_) return false;
            room_ -= bytes.size();
            return RecordingLink::write(bytes);
        }
        links::LinkReport report() const override {
            links::LinkReport report = RecordingLink::report();
            report.failure = "broken off";
            report.failureKind = links::FailureKind::kBrokenOff;
            return report;
        }

      private:
        std::size_t room_;
    };
    const auto link = std::make_shared<BreakingLink>(taken);
    Printer printer([&] { return link; });
    const SeriesResult result = printer.printSeries(tickets);
    EXPECT_FALSE(result.isGood());
    EXPECT_EQ(result.print.outcome, Outcome::kPartlySent);
    const std::string arrived = test::textOf(link->bytes());
    EXPECT_EQ(arrived, jobText(std::span(tickets).first(result.sentTickets)));
    EXPECT_LE(arrived.size(), taken);
    EXPECT_GT(result.sentTickets, 20U);
}

TEST(Series, WithoutAnAddressSendsNothing) {
    const SeriesResult result = Printer("").printSeries(numberedTickets(3));
    EXPECT_FALSE(result.isGood());
    EXPECT_EQ(kindsOf(result.print.remarks), Kinds{RemarkKind::kBadAddress});
    EXPECT_EQ(result.sentTickets, 0U);
}

TEST(Series, EndsOnRequestBeforeTheNextTicket) {
    std::stop_source stop;
    CountedTickets counted(200);
    counted.options().encode.stop = stop.get_token();
    std::size_t sent = 0;
    const auto look = [&] {
        if (++sent == 10) stop.request_stop();
    };
    Printer printer([&] { return std::make_shared<WatchedLink>(look); });
    const SeriesResult result = printer.printSeries(counted.tickets(), counted.options());
    EXPECT_FALSE(result.isGood());
    ASSERT_EQ(result.problems.size(), 1U);
    EXPECT_EQ(result.problems.front().kind, ProblemKind::kCancelled);
    EXPECT_EQ(result.sentTickets, sent);
    EXPECT_LT(sent, 30U);
}

TEST(Series, EndsWhenThePrinterIsCancelled) {
    CountedTickets counted(200);
    std::unique_ptr<Printer> printer;
    std::size_t sent = 0;
    Port port;
    port.listen();
    Peer peer(port, [](int connection) { links::test::receiveAll(connection); });
    printer = std::make_unique<Printer>("tcp://" + port.address());
    counted.options().progress = [&](const SeriesProgress&) {
        if (++sent == 3) printer->cancel();
    };
    const SeriesResult result = printer->printSeries(counted.tickets(), counted.options());
    EXPECT_FALSE(result.isGood());
    EXPECT_EQ(kindsOf(result.print.remarks), Kinds{RemarkKind::kCancelled});
    EXPECT_LT(result.sentTickets, 200U);
}

// ---- Conversation -------------------------------------------------------------------------------

TEST(Series, SendsNothingToAPrinterThatIsNotReady) {
    const ReplyTable table{{PrinterState::kReady, Match::kExact, "OK"}};
    Port port;
    port.listen();
    Peer peer(port, [](int connection) {
        links::test::sendAll(connection, "PAPER");
        EXPECT_EQ(links::test::receiveAll(connection), "");
    });
    Printer printer("tcp://" + port.address(), {.replies = table});
    SeriesOptions options;
    options.print.readyBefore = true;
    const SeriesResult result = printer.printSeries(numberedTickets(3), options);
    EXPECT_EQ(kindsOf(result.print.remarks), Kinds{RemarkKind::kNotReady});
    EXPECT_EQ(result.sentTickets, 0U);
}

TEST(Series, ConfirmsItsEnd) {
    Port port;
    port.listen();
    Peer peer(port, [](int connection) {
        links::test::receiveAll(connection);
        links::test::sendAll(connection, "OK");
    });
    Printer printer("tcp://" + port.address());
    SeriesOptions options;
    options.print.readyAfter = false;
    const SeriesResult result = printer.printSeries(numberedTickets(3), options);
    EXPECT_EQ(result.print.outcome, Outcome::kAnswered);
    EXPECT_EQ(result.print.reply, "OK");
}

TEST(Series, TakeTheirTurnAmongJobs) {
    const auto link = [] { return std::make_shared<links::RecordingLink>(); };
    Printer printer(link);
    std::vector<std::future<PrintResult>> jobs;
    for (int number = 0; number < 5; ++number) jobs.push_back(printer.submit(test::jobOf({"<p>"})));
    EXPECT_TRUE(printer.printSeries(numberedTickets(10)).isGood());
    for (auto& job : jobs) EXPECT_TRUE(job.get().isGood());
}

}  // namespace
}  // namespace tavio::printing
