// What printers and waiting jobs take of memory.

#include <condition_variable>
#include <future>
#include <malloc.h>

#include <gtest/gtest.h>

#include "printing/test_jobs.h"
#include "tavio/links/local_link.h"

namespace tavio::printing {
namespace {

constexpr std::size_t kCount = 1'000;

// On the heap. Programs under a sanitizer have another one.
std::size_t usedBytes() {
    const struct mallinfo2 heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

std::size_t grownBy(std::size_t before) {
    const std::size_t now = usedBytes();
    return now > before ? now - before : 0;
}

class PrinterMemory : public testing::Test {
  protected:
    void SetUp() override {
        if (TAVIO_SANITIZED) GTEST_SKIP() << "the heap is a sanitizer's";
    }

    void expectAtMost(std::size_t limit, std::size_t bytes, const char* of) {
        std::cout << bytes << " bytes " << of << '\n';
        RecordProperty(of, std::to_string(bytes));
        EXPECT_LE(bytes, limit) << of;
    }
};

// Takes bytes after the promise is kept.
class WaitingLink : public links::LocalLink {
  public:
    explicit WaitingLink(std::shared_future<void> start) : start_(std::move(start)) {}

  protected:
    bool take(std::span<const Byte> /*bytes*/) override {
        start_.wait();
        return true;
    }

  private:
    std::shared_future<void> start_;
};

TEST_F(PrinterMemory, IsSmallForAnIdlePrinter) {
    std::vector<std::unique_ptr<Printer>> printers(kCount);
    const std::size_t before = usedBytes();
    for (auto& printer : printers) printer = std::make_unique<Printer>("tcp://192.168.1.50");
    expectAtMost(2'500, grownBy(before) / kCount, "for each printer");
}

TEST_F(PrinterMemory, IsSmallForAWaitingJobWhateverItsSize) {
    std::promise<void> start;
    const std::shared_future<void> started = start.get_future().share();
    Printer printer([&] { return std::make_shared<WaitingLink>(started); });
    const Job job = test::jobOf({std::string(10'000'000, ' ')});
    std::vector<std::future<PrintResult>> results(kCount);
    const std::size_t before = usedBytes();
    for (auto& result : results) result = printer.submit(job);
    expectAtMost(1'500, grownBy(before) / kCount, "for each waiting job");
    start.set_value();
    for (auto& result : results) EXPECT_TRUE(result.get().isGood());
}

TEST_F(PrinterMemory, DoesNotGrowFromJobToJob) {
    std::promise<void> start;
    start.set_value();
    const std::shared_future<void> started = start.get_future().share();
    Printer printer([&] { return std::make_shared<WaitingLink>(started); });
    const Job job = test::jobOf({"Row B", "<p>"});
    const auto printMany = [&] {
        for (std::size_t i = 0; i < kCount; ++i) {
            EXPECT_TRUE(printer.print(job).isGood());
            EXPECT_TRUE(printer.submit(job).get().isGood());
        }
    };
    printMany();
    const std::size_t before = usedBytes();
    printMany();
    expectAtMost(20'000, grownBy(before), "after a thousand jobs more");
}

}  // namespace
}  // namespace tavio::printing
