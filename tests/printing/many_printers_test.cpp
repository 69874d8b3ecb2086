// A server with a hundred printers, a fifth of them with a fault.

#include <deque>
#include <future>
#include <mutex>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "printing/far_ends.h"
#include "printing/test_jobs.h"
#include "support/random_picture.h"
#include "tavio/printing/preview.h"
#include "tavio/virtual-printer/printer.h"

namespace tavio::printing {
namespace {

using links::Outcome;
using tavio::test::between;
using tavio::test::chance;
using tavio::test::Random;
using test::FarEnds;
using test::Fault;

constexpr std::size_t kPrinters = 100;
constexpr std::size_t kThreads = 16;

// Programs under a sanitizer print fewer, and emulated ones still fewer.
constexpr std::size_t kTickets = TAVIO_SERVER_TICKETS;

// Of each so many tickets one is drawn.
constexpr std::size_t kSample = 25;

const TicketSettings kPaper{.stock = Stock::ofInches(1, 0.5), .resolution = 200};
constexpr virtual_printer::TicketSize kPaperSize{.rows = 100, .columns = 200, .dpi = 200};
const ReplyTable kReplies{{PrinterState::kReady, Match::kExact, "OK"},
                          {PrinterState::kOutOfPaper, Match::kContains, "PAPER"}};

// ---- Tickets ------------------------------------------------------------------------------------

// `label` is on it, so no two are alike. `extraBytes`: spaces that are printed first.
Job randomJob(const std::string& label, std::size_t extraBytes, Random& random) {
    auto picture =
        std::make_shared<const platform::Picture>(tavio::test::randomPicture(random, 60));
    Ticket ticket(kPaper);
    ticket.printerText("<RC0,0>" + label + std::string(extraBytes, ' '));
    ticket.picture(std::move(picture),
                   {.row = between(random, 20, 59), .column = between(random, 0, 140)});
    if (chance(random, 50)) ticket.text("Row B, seat 12", {.row = 80, .column = 2});
    ticket.finish(chance(random, 50) ? Finish::kCut : Finish::kEject);
    auto job = encode(ticket, {.mayUseThreads = false});
    EXPECT_TRUE(job) << job.error().front().sentence;
    return *job;
}

// The tickets that the bytes print are those of the preview, dot for dot.
void expectDots(const std::string& received, const Job& job) {
    const auto shown = preview(job, {.withPngs = false});
    ASSERT_TRUE(shown);
    std::size_t count = 0;
    virtual_printer::PrinterSettings settings;
    settings.size = kPaperSize;
    virtual_printer::Printer printer(settings, [&](const virtual_printer::FinishedTicket& one) {
        ASSERT_LT(count, shown->tickets.size());
        EXPECT_GT(one.ticket.blackCount(), 0U);
        const platform::Picture& picture = shown->tickets.at(count++).picture;
        std::size_t index = 0;
        for (std::int32_t row = 0; row < kPaperSize.rows; ++row) {
            for (std::int32_t column = 0; column < kPaperSize.columns; ++column) {
                const bool isBlack = picture.pixels.at(index++) == 0xFF000000;
                ASSERT_EQ(one.ticket.isBlack(row, column), isBlack);
            }
        }
    });
    printer.feed({reinterpret_cast<const Byte*>(received.data()), received.size()});
    printer.finish();
    EXPECT_EQ(count, 1U);
}

// ---- Printers -----------------------------------------------------------------------------------

std::vector<Fault> someFaults() {
    std::vector<Fault> faults(kPrinters, Fault::kNone);
    for (std::size_t i = 0; i < kPrinters; i += 5) {
        constexpr std::array kKinds{Fault::kRefuses, Fault::kBreaksOff, Fault::kStopsReading,
                                    Fault::kSlow, Fault::kOutOfPaper};
        faults.at(i) = kKinds.at(i / 5 % kKinds.size());
    }
    return faults;
}

// A job, and the result that it will have.
struct Sent {
    Job job;
    std::future<PrintResult> future;
    PrintResult result;
};

// A printer of the server with its jobs in the order of their arrival.
class Lane {
  public:
    Lane(const LinkMaker& links, Fault fault)
        : fault_(fault), printer_(links, {.replies = kReplies}) {}

    Fault fault() const { return fault_; }
    Printer& printer() { return printer_; }
    std::deque<Sent>& jobs() { return jobs_; }
    bool asksBefore() const { return asksBefore_; }
    void awaitFirstBytes() { firstBytes_.get_future().wait(); }
    void askBefore() { asksBefore_ = true; }

    // Under the lock, so that the order is known.
    void submit(Job job, bool withCallback) {
        const bool asks = fault_ == Fault::kOutOfPaper;
        PrintOptions options{.readyBefore = asks && asksBefore_,
                             .readyAfter = asks && !asksBefore_};
        const std::lock_guard lock(mutex_);
        if (jobs_.empty()) {
            options.progress = [this](std::uint64_t, std::uint64_t) {
                if (!std::exchange(hasFirstBytes_, true)) firstBytes_.set_value();
            };
        }
        Sent& sent = jobs_.emplace_back(Sent{std::move(job), {}, {}});
        if (!withCallback) {
            sent.future = printer_.submit(sent.job, options);
            return;
        }
        auto promise = std::make_shared<std::promise<PrintResult>>();
        sent.future = promise->get_future();
        printer_.submit(sent.job, options,
                        [promise](const PrintResult& result) { promise->set_value(result); });
    }

    void awaitResults() {
        for (Sent& sent : jobs_) sent.result = sent.future.get();
    }

  private:
    Fault fault_;
    bool asksBefore_ = false;
    bool hasFirstBytes_ = false;
    std::promise<void> firstBytes_;
    Printer printer_;
    std::mutex mutex_;
    std::deque<Sent> jobs_;
};

// ---- What has to be true of every job -----------------------------------------------------------

// `got`: what the far end has of it.
void expectHonest(const Sent& sent, const std::string& got, bool isExact) {
    const PrintResult& result = sent.result;
    const std::string bytes = test::textOf(sent.job.bytes());
    EXPECT_EQ(result.total, bytes.size());
    EXPECT_EQ(got, bytes.substr(0, got.size())) << "other bytes than those of the job";
    EXPECT_LE(got.size(), result.accepted);
    EXPECT_LE(result.accepted, result.total);
    EXPECT_LE(result.acknowledged.value_or(0), isExact ? got.size() : result.accepted);
    EXPECT_EQ(result.outcome == Outcome::kNothingSent, result.accepted == 0);
    EXPECT_TRUE(got == bytes || !result.isSent() || result.has(RemarkKind::kEndedEarly));
    EXPECT_TRUE(result.isGood() || !result.remarks.empty());
    const auto& elements = sent.job.elements();
    ASSERT_EQ(result.elements.size(), elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const EncodedElement& element = elements.at(i);
        const std::size_t end = element.offset + element.count;
        const ElementFate fate = result.elements.at(i);
        EXPECT_TRUE(fate != ElementFate::kNotSent || element.offset >= got.size());
        EXPECT_TRUE(fate != ElementFate::kArrived ||
                    end <= (isExact ? got.size() : result.acknowledged.value_or(0)));
    }
}

void expectResultOf(const Lane& lane, const PrintResult& result) {
    switch (lane.fault()) {
        case Fault::kNone:
        case Fault::kSlow:
            EXPECT_TRUE(result.isGood()) << result.describe();
            EXPECT_TRUE(result.remarks.empty());
            break;
        case Fault::kRefuses:
            EXPECT_EQ(result.outcome, Outcome::kNothingSent);
            EXPECT_TRUE(result.has(RemarkKind::kNotReached));
            break;
        case Fault::kBreaksOff:
            EXPECT_TRUE(result.remarks.empty() || result.has(RemarkKind::kBrokenOff) ||
                        result.has(RemarkKind::kEndedEarly));
            break;
        case Fault::kStopsReading:
            EXPECT_TRUE(result.has(RemarkKind::kCancelled));
            break;
        case Fault::kOutOfPaper:
            EXPECT_EQ(result.state, PrinterState::kOutOfPaper);
            EXPECT_EQ(result.isSent(), !lane.asksBefore());
            EXPECT_TRUE(
                result.has(lane.asksBefore() ? RemarkKind::kNotReady : RemarkKind::kNotConfirmed));
            break;
    }
}

// True if the job has had a connection: each has one of its own, in the order of the jobs.
bool hasConnected(const PrintResult& result) {
    return !result.has(RemarkKind::kNotReached) &&
           !(result.has(RemarkKind::kCancelled) && result.accepted == 0);
}

void expectAllOf(Lane& lane, const std::vector<std::string>& received, bool isExact) {
    std::size_t connection = 0;
    for (const Sent& sent : lane.jobs()) {
        const bool isConnected = hasConnected(sent.result);
        const std::string got = isConnected ? received.at(connection++) : std::string();
        expectResultOf(lane, sent.result);
        expectHonest(sent, got, isExact);
        if (sent.result.isSent() && got.size() == sent.result.total && connection % kSample == 0) {
            expectDots(got, sent.job);
        }
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_TRUE(lane.fault() == Fault::kRefuses || connection == received.size());
}

// ---- The server ---------------------------------------------------------------------------------

class ManyPrinters : public testing::Test {
  protected:
    // Prints the tickets, and judges every result by what the far ends got.
    void printOver(FarEnds& ends) {
        const std::vector<Fault> faults = someFaults();
        for (std::size_t i = 0; i < kPrinters; ++i) {
            lanes_.push_back(std::make_unique<Lane>(ends.linksTo(i), faults.at(i)));
            if (i % 2 == 0) lanes_.back()->askBefore();
        }
        submitFromAllThreads();
        awaitAll(ends);
        for (std::size_t i = 0; i < kPrinters; ++i) {
            SCOPED_TRACE(testing::Message() << "printer " << i << ", " << nameOf(faults.at(i)));
            EXPECT_EQ(lanes_.at(i)->printer().pending(), 0U);
            expectAllOf(*lanes_.at(i), ends.received(i), ends.isExact());
            if (HasFailure()) return;
        }
        expectAllKindsOfOutcomes();
    }

    unsigned seed() {
        const unsigned seed = std::random_device()();
        RecordProperty("seed", std::to_string(seed));
        std::cout << "seed " << seed << '\n';
        seed_ = seed;
        return seed;
    }

  private:
    void submitFromAllThreads() {
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([this, thread] {
                Random random(seed_ + thread);
                for (std::size_t i = thread; i < kTickets; i += kThreads) {
                    Lane& lane = *lanes_.at(random() % kPrinters);
                    // More than the system keeps of a connection.
                    const bool isLong = lane.fault() == Fault::kStopsReading ||
                                        (lane.fault() == Fault::kBreaksOff && chance(random, 50));
                    lane.submit(randomJob("#" + std::to_string(i), isLong ? 60'000 : 0, random),
                                chance(random, 50));
                }
            });
        }
        for (std::thread& thread : threads) thread.join();
    }

    // While some printers take nothing, all others finish: none waits for another's fault.
    void awaitAll(FarEnds& ends) {
        for (const auto& lane : lanes_) {
            if (lane->fault() != Fault::kStopsReading) lane->awaitResults();
        }
        for (const auto& lane : lanes_) {
            if (lane->fault() != Fault::kStopsReading) continue;
            lane->awaitFirstBytes();
            EXPECT_EQ(lane->printer().pending(), lane->jobs().size()) << "its first does not end";
            lane->printer().cancel();
        }
        ends.release();
        for (const auto& lane : lanes_) {
            if (lane->fault() == Fault::kStopsReading) lane->awaitResults();
        }
    }

    // Else nothing would have been tested.
    void expectAllKindsOfOutcomes() {
        std::set<std::string> outcomes;
        std::size_t count = 0;
        for (const auto& lane : lanes_) {
            count += lane->jobs().size();
            for (const Sent& sent : lane->jobs()) {
                outcomes.insert(nameOf(lane->fault()) + std::string(": ") +
                                nameOf(sent.result.outcome));
            }
        }
        EXPECT_EQ(count, kTickets);
        for (const char* outcome :
             {"none: sent-unconfirmed", "refuses: nothing-sent", "breaks off: partly-sent",
              "stops reading: partly-sent", "stops reading: nothing-sent", "slow: sent-unconfirmed",
              "out of paper: nothing-sent"}) {
            EXPECT_TRUE(outcomes.contains(outcome)) << outcome;
        }
    }

    unsigned seed_ = 0;
    std::vector<std::unique_ptr<Lane>> lanes_;
};

TEST_F(ManyPrinters, PrintEveryTicketOnItsPrinterInMemory) {
    const auto ends = test::farEndsInMemory(someFaults(), seed());
    printOver(*ends);
}

TEST_F(ManyPrinters, PrintEveryTicketOnItsPrinterOverLoopback) {
    const auto ends = test::farEndsOverLoopback(someFaults(), seed());
    printOver(*ends);
}

}  // namespace
}  // namespace tavio::printing
