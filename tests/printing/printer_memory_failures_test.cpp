// Every allocation of a printer fails once: no exception, and a result that claims no less than was
// sent.

#include <gtest/gtest.h>

#include "printing/failing_memory.h"
#include "printing/test_jobs.h"
#include "tavio/links/local_link.h"

namespace tavio::printing {
namespace {

using tavio::test::FailingMemory;
using tavio::test::Failure;

// Counts what it takes, without memory.
class CountingLink : public links::LocalLink {
  public:
    explicit CountingLink(std::size_t& taken) : taken_(taken) {}

  protected:
    bool take(std::span<const Byte> bytes) override {
        taken_ += bytes.size();
        return true;
    }
    Text answer() override { return "the printer is ready and has paper"; }

  private:
    std::size_t& taken_;
};

// Calls print() with each of its allocations failing, until none does; it is given how many bytes
// the link has taken.
void withEachFailure(const std::function<PrintResult(std::size_t& taken, bool& isTold)>& print) {
    for (const Failure failure : {Failure::kOnce, Failure::kFromThenOn}) {
        bool hasFailed = true;
        for (std::int64_t number = 0; hasFailed; ++number) {
            SCOPED_TRACE(number);
            std::size_t taken = 0;
            bool isTold = true;
            PrintResult result;
            {
                const FailingMemory memory(number, failure);
                result = print(taken, isTold);
            }
            hasFailed = FailingMemory::hasFailed();
            ASSERT_LT(number, 10'000);
            if (!isTold) {
                EXPECT_EQ(taken, 0U);
                continue;
            }
            EXPECT_EQ(result.total, 8U);
            EXPECT_LE(taken, result.accepted);
            EXPECT_EQ(result.outcome == links::Outcome::kNothingSent, result.accepted == 0);
            EXPECT_TRUE(!result.isSent() || taken == 8);
            EXPECT_TRUE(hasFailed || result.isGood());
        }
    }
}

TEST(PrinterMemoryFailures, AreToldByPrint) {
    const Job job = test::jobOf({"Row B", "<p>"});
    withEachFailure([&](std::size_t& taken, bool&) {
        Printer printer([&taken] { return std::make_shared<CountingLink>(taken); });
        const PrintOptions options{.readyBefore = true,
                                   .readyAfter = true,
                                   .progress = [](std::uint64_t, std::uint64_t) {}};
        return printer.print(job, options);
    });
}

TEST(PrinterMemoryFailures, AreToldBySubmit) {
    const Job job = test::jobOf({"Row B", "<p>"});
    withEachFailure([&](std::size_t& taken, bool& isTold) {
        Printer printer([&taken] { return std::make_shared<CountingLink>(taken); });
        std::future<PrintResult> result = printer.submit(job);
        isTold = result.valid();
        return isTold ? result.get() : PrintResult();
    });
}

TEST(PrinterMemoryFailures, AreToldByASeries) {
    const std::vector<Ticket> tickets(3, Ticket().printerText("Row B"));
    for (const Failure failure : {Failure::kOnce, Failure::kFromThenOn}) {
        bool hasFailed = true;
        for (std::int64_t number = 0; hasFailed; ++number) {
            SCOPED_TRACE(number);
            ASSERT_LT(number, 10'000);
            std::size_t taken = 0;
            SeriesResult result;
            {
                const FailingMemory memory(number, failure);
                Printer printer([&taken] { return std::make_shared<CountingLink>(taken); });
                result = printer.printSeries(tickets);
            }
            hasFailed = FailingMemory::hasFailed();
            EXPECT_LE(taken, result.print.accepted);
            EXPECT_LE(result.sentTickets * 5, taken);
            EXPECT_TRUE(!result.isGood() || taken == 15);
            EXPECT_TRUE(hasFailed || result.isGood());
        }
    }
}

TEST(PrinterMemoryFailures, AreToldWithTheStatusAndTheAddress) {
    const Job job = test::jobOf({"<p>"});
    for (std::int64_t number = 0; number < 200; ++number) {
        std::size_t taken = 0;
        const FailingMemory memory(number, Failure::kFromThenOn);
        Printer printer([&taken] { return std::make_shared<CountingLink>(taken); });
        const StatusResult status = printer.status();
        EXPECT_TRUE(status.reply || status.state == PrinterState::kUnknown);
        Printer nowhere("192.168.1.50");
        EXPECT_EQ(nowhere.print(job).outcome, links::Outcome::kNothingSent);
    }
}

}  // namespace
}  // namespace tavio::printing
