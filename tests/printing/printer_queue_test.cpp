// Many jobs: their order, the printer's own thread, cancelling.

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <pthread.h>
#include <thread>

#include <gtest/gtest.h>

#include "printing/test_jobs.h"
#include "tavio/links/local_link.h"

namespace tavio::printing {
namespace {

using links::Outcome;
using test::jobOf;
using test::kindsOf;
using Kinds = std::vector<RemarkKind>;

// Takes no byte until the test opens the gate or cancels the job. All links of a test share it.
class GatedPaper {
  public:
    LinkMaker links() {
        return [this] { return std::make_shared<GatedLink>(*this); };
    }

    // Waits until a job stands at the gate.
    void awaitJob() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return waiting_ > 0; });
    }
    void open() {
        const std::lock_guard lock(mutex_);
        isOpen_ = true;
        changed_.notify_all();
    }

    // One character for each job that was printed.
    std::string printed() const {
        const std::lock_guard lock(mutex_);
        return printed_;
    }

  private:
    class GatedLink : public links::LocalLink {
      public:
        explicit GatedLink(GatedPaper& paper) : paper_(paper) {}
        void cancel() noexcept override {
            LocalLink::cancel();
            const std::lock_guard lock(paper_.mutex_);
            isCancelled_ = true;
            paper_.changed_.notify_all();
        }

      protected:
        bool take(std::span<const Byte> bytes) override {
            std::unique_lock lock(paper_.mutex_);
            ++paper_.waiting_;
            paper_.changed_.notify_all();
            paper_.changed_.wait(lock, [this] { return paper_.isOpen_ || isCancelled_; });
            --paper_.waiting_;
            if (isCancelled_) return false;
            paper_.printed_ += test::textOf(bytes);
            return true;
        }

      private:
        GatedPaper& paper_;
        bool isCancelled_ = false;
    };

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    int waiting_ = 0;
    bool isOpen_ = false;
    std::string printed_;
};

void awaitPending(const Printer& printer, std::size_t count) {
    while (printer.pending() != count) std::this_thread::yield();
}

// Prints on a thread of its own.
std::future<PrintResult> printAside(Printer& printer, const std::string& text) {
    return std::async(std::launch::async,
                      [&printer, text] { return printer.print(jobOf({text})); });
}

// ---- Order --------------------------------------------------------------------------------------

TEST(PrinterQueue, PrintsInTheOrderOfArrivalWhicheverWayTheJobsCome) {
    GatedPaper paper;
    Printer printer(paper.links());
    std::vector<std::future<PrintResult>> results;
    for (const char letter : std::string("abcdefghijklmnop")) {
        const std::string text(1, letter);
        const bool isSubmitted = letter % 3 == 0;
        results.push_back(isSubmitted ? printer.submit(jobOf({text})) : printAside(printer, text));
        awaitPending(printer, results.size());
    }
    EXPECT_EQ(paper.printed(), "");
    paper.open();
    for (auto& result : results) EXPECT_TRUE(result.get().isGood());
    EXPECT_EQ(paper.printed(), "abcdefghijklmnop");
    EXPECT_EQ(printer.pending(), 0U);
}

TEST(PrinterQueue, NeverPrintsTwoJobsAtOnce) {
    std::atomic<int> running = 0;
    class Exclusive : public links::LocalLink {
      public:
        explicit Exclusive(std::atomic<int>& running) : running_(running) {}

      protected:
        bool begin(const std::string& /*address*/) override { return ++running_ == 1; }
        bool take(std::span<const Byte> /*bytes*/) override { return running_ == 1; }
        void end() override { --running_; }

      private:
        std::atomic<int>& running_;
    };
    Printer printer([&] { return std::make_shared<Exclusive>(running); });
    std::vector<std::thread> threads;
    std::atomic<int> good = 0;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int job = 0; job < 25; ++job) {
                auto submitted = printer.submit(jobOf({"x"}));
                if (printer.print(jobOf({"y"})).isGood()) ++good;
                if (submitted.get().isGood()) ++good;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(good, 400);
    EXPECT_EQ(printer.pending(), 0U);
}

TEST(PrinterQueue, AsksForTheStatusInItsTurn) {
    GatedPaper paper;
    Printer printer(paper.links());
    auto first = printer.submit(jobOf({"a"}));
    paper.awaitJob();
    auto status = std::async(std::launch::async, [&] { return printer.status(); });
    awaitPending(printer, 2);
    EXPECT_EQ(status.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    paper.open();
    EXPECT_TRUE(status.get().remarks.empty());
    EXPECT_TRUE(first.get().isGood());
}

// ---- The printer's own thread -------------------------------------------------------------------

TEST(PrinterQueue, CallsBackInOrderOnItsOwnThread) {
    GatedPaper paper;
    paper.open();
    std::string told;
    std::set<std::thread::id> threads;
    {
        Printer printer(paper.links());
        for (const char letter : std::string("abcdef")) {
            printer.submit(jobOf({std::string(1, letter)}), {},
                           [&, letter](const PrintResult& result) {
                               EXPECT_TRUE(result.isGood());
                               threads.insert(std::this_thread::get_id());
                               told += letter;
                           });
        }
    }
    EXPECT_EQ(told, "abcdef") << "the destructor waits";
    EXPECT_EQ(paper.printed(), "abcdef");
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST(PrinterQueue, GoesOnAfterACallbackThatThrowsAndOneThatIsEmpty) {
    GatedPaper paper;
    paper.open();
    Printer printer(paper.links());
    printer.submit(jobOf({"a"}), {}, [](const PrintResult&) { throw std::runtime_error("no"); });
    printer.submit(jobOf({"b"}), {}, [](const PrintResult&) { throw 7; });
    printer.submit(jobOf({"c"}), {}, {});
    EXPECT_TRUE(printer.submit(jobOf({"d"})).get().isGood());
    EXPECT_EQ(paper.printed(), "abcd");
}

TEST(PrinterQueue, TakesJobsFromACallback) {
    GatedPaper paper;
    paper.open();
    std::promise<void> done;
    Printer printer(paper.links());
    printer.submit(jobOf({"a"}), {}, [&](const PrintResult&) {
        printer.submit(jobOf({"b"}), {}, [&](const PrintResult&) { done.set_value(); });
    });
    done.get_future().wait();
    EXPECT_EQ(paper.printed(), "ab");
}

TEST(PrinterQueue, KeepsAResultLongerThanThePrinter) {
    GatedPaper paper;
    paper.open();
    std::future<PrintResult> result;
    {
        Printer printer(paper.links());
        result = printer.submit(jobOf({"a"}));
    }
    EXPECT_TRUE(result.get().isGood());
}

TEST(PrinterQueue, LetsManyPrintersBeDrivenByOneThread) {
    constexpr std::size_t kPrinters = 20;
    std::vector<GatedPaper> papers(kPrinters);
    std::vector<std::unique_ptr<Printer>> printers;
    std::vector<std::future<PrintResult>> results;
    for (GatedPaper& paper : papers) {
        printers.push_back(std::make_unique<Printer>(paper.links()));
        results.push_back(printers.back()->submit(jobOf({"x"})));
    }
    // Each stands at its own gate: none waits for another.
    for (GatedPaper& paper : papers) paper.awaitJob();
    for (GatedPaper& paper : papers) paper.open();
    for (auto& result : results) EXPECT_TRUE(result.get().isGood());
}

// While it exists, no thread can be started: none has room for such a stack.
class NoThreads {
  public:
    NoThreads() {
        pthread_attr_init(&before_);
        EXPECT_EQ(pthread_getattr_default_np(&before_), 0);
        pthread_attr_t huge;
        pthread_attr_init(&huge);
        EXPECT_EQ(pthread_attr_setstacksize(&huge, std::size_t{1} << 60U), 0);
        EXPECT_EQ(pthread_setattr_default_np(&huge), 0);
        pthread_attr_destroy(&huge);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;
    ~NoThreads() {
        EXPECT_EQ(pthread_setattr_default_np(&before_), 0);
        pthread_attr_destroy(&before_);
    }

  private:
    pthread_attr_t before_{};
};

TEST(PrinterQueue, SendsNothingIfThereIsNoThread) {
    GatedPaper paper;
    paper.open();
    Printer printer(paper.links());
    {
        const NoThreads none;
        const PrintResult result = printer.submit(jobOf({"a"})).get();
        EXPECT_EQ(result.outcome, Outcome::kNothingSent);
        EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kNoThread});
        EXPECT_EQ(result.elements, std::vector{ElementFate::kNotSent});
        std::thread::id told;
        printer.submit(jobOf({"b"}), {},
                       [&](const PrintResult&) { told = std::this_thread::get_id(); });
        EXPECT_EQ(told, std::this_thread::get_id());
        EXPECT_EQ(printer.pending(), 0U);
        EXPECT_TRUE(printer.print(jobOf({"c"})).isGood()) << "it needs no thread";
    }
    EXPECT_TRUE(printer.submit(jobOf({"d"})).get().isGood());
    EXPECT_EQ(paper.printed(), "cd");
}

// ---- Cancelling ---------------------------------------------------------------------------------

TEST(PrinterQueue, CancelsTheRunningJobAndAllThatWait) {
    GatedPaper paper;
    Printer printer(paper.links());
    std::vector<std::future<PrintResult>> results;
    results.push_back(printer.submit(jobOf({"a"})));
    paper.awaitJob();
    results.push_back(printer.submit(jobOf({"b"})));
    results.push_back(printAside(printer, "c"));
    awaitPending(printer, 3);
    printer.cancel();
    for (auto& each : results) {
        const PrintResult result = each.get();
        EXPECT_EQ(result.outcome, Outcome::kNothingSent);
        EXPECT_EQ(result.total, 1U);
        EXPECT_EQ(result.elements, std::vector{ElementFate::kNotSent});
        EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kCancelled});
    }
    paper.open();
    EXPECT_TRUE(printer.print(jobOf({"d"})).isGood()) << "later jobs are printed";
    EXPECT_EQ(paper.printed(), "d");
}

TEST(PrinterQueue, CancelsAStatus) {
    GatedPaper paper;
    Printer printer(paper.links());
    auto job = printer.submit(jobOf({"a"}));
    paper.awaitJob();
    auto status = std::async(std::launch::async, [&] { return printer.status(); });
    awaitPending(printer, 2);
    printer.cancel();
    EXPECT_EQ(kindsOf(status.get().remarks), Kinds{RemarkKind::kCancelled});
    EXPECT_TRUE(job.get().has(RemarkKind::kCancelled));
}

TEST(PrinterQueue, EndsAtOnceWhatWaitsForAJobThatCannotBeCancelled) {
    std::promise<void> gate;
    std::promise<void> reached;
    class Stubborn : public links::LocalLink {
      public:
        Stubborn(std::promise<void>& gate, std::promise<void>& reached)
            : gate_(gate), reached_(reached) {}
        void cancel() noexcept override {}

      protected:
        bool take(std::span<const Byte> /*bytes*/) override {
            reached_.set_value();
            gate_.get_future().wait();
            return true;
        }

      private:
        std::promise<void>& gate_;
        std::promise<void>& reached_;
    };
    Printer printer([&] { return std::make_shared<Stubborn>(gate, reached); });
    auto running = printer.submit(jobOf({"a"}));
    reached.get_future().wait();
    auto waiting = printAside(printer, "b");
    awaitPending(printer, 2);
    printer.cancel();
    EXPECT_TRUE(waiting.get().has(RemarkKind::kCancelled));
    gate.set_value();
    EXPECT_TRUE(running.get().isGood()) << "all of it was sent nevertheless";
}

TEST(PrinterQueue, CancelsAJobWhoseLinkIsBeingMade) {
    GatedPaper paper;
    Printer* self = nullptr;
    Printer printer([&] {
        self->cancel();
        return paper.links()();
    });
    self = &printer;
    const PrintResult result = printer.print(jobOf({"a"}));
    EXPECT_EQ(result.outcome, Outcome::kNothingSent);
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kCancelled});
}

TEST(PrinterQueue, CancelsATcpJobInTheMiddle) {
    links::test::VirtualTcp calls;
    calls.takes = false;
    Printer printer(test::linkTo(calls));
    calls.after(std::chrono::milliseconds(100), [&] {
        calls.acknowledge(3);
        printer.cancel();
    });
    const PrintResult result = printer.print(jobOf({"012", "345"}));
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kCancelled});
    EXPECT_EQ(result.outcome, Outcome::kPartlySent);
    EXPECT_EQ(result.acknowledged, 3U);
    EXPECT_EQ(result.elements, (std::vector{ElementFate::kArrived, ElementFate::kPartlySent}));
}

TEST(PrinterQueue, HasNothingToCancelWhenItIsIdle) {
    GatedPaper paper;
    paper.open();
    Printer printer(paper.links());
    printer.cancel();
    EXPECT_TRUE(printer.print(jobOf({"a"})).isGood());
}

}  // namespace
}  // namespace tavio::printing
