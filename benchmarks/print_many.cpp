// print_many [ROUNDS]: how many tickets a second a server encodes and prints, with one thread and
// with one for each core in turn, and what its printers take of memory. Prints one JSON object.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <memory>
#include <thread>
#include <unistd.h>
#include <vector>

#include "benchmarks/bench_inputs.h"
#include "tavio/links/local_link.h"
#include "tavio/printing.h"

namespace {

using namespace tavio;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kPrinters = 100;
constexpr std::size_t kManyPrinters = 10'000;
constexpr std::chrono::milliseconds kRound{700};

class DiscardingLink : public links::LocalLink {
  protected:
    bool take(std::span<const Byte> /*bytes*/) override { return true; }
};

std::shared_ptr<links::Link> discardingLink() {
    return std::make_shared<DiscardingLink>();
}

// A photo with a line of text on the stock "concert" at 300 dots per inch.
printing::Ticket ticketWith(const std::shared_ptr<const platform::Picture>& photo) {
    printing::Ticket ticket;
    ticket.picture(photo, {.row = 20, .column = 20})
        .text("Row F, seat 12", {.row = 540, .column = 20})
        .finish(printing::Finish::kCut);
    return ticket;
}

// One server: its printers, and the ticket that all of them print.
class Server {
  public:
    Server() : photo_(std::make_shared<platform::Picture>(benchmarks::photoLike(800, 500))) {
        for (std::size_t i = 0; i < kPrinters; ++i) {
            printers_.push_back(std::make_unique<printing::Printer>(discardingLink));
        }
    }

    // Tickets a second.
    double throughput(unsigned threadCount) {
        std::atomic<std::uint64_t> printed = 0;
        const auto begin = Clock::now();
        std::vector<std::thread> threads;
        for (unsigned thread = 0; thread < threadCount; ++thread) {
            threads.emplace_back([&, thread] { printed += printUntil(begin + kRound, thread); });
        }
        for (std::thread& thread : threads) thread.join();
        const std::chrono::duration<double> time = Clock::now() - begin;
        return static_cast<double>(printed) / time.count();
    }

  private:
    std::uint64_t printUntil(Clock::time_point end, std::size_t printer) {
        std::uint64_t count = 0;
        for (; Clock::now() < end; ++count) {
            const auto job = printing::encode(ticketWith(photo_), {.mayUseThreads = false});
            printer = (printer + 1) % kPrinters;
            if (!job || !printers_.at(printer)->print(*job).isGood()) std::abort();
        }
        return count;
    }

    std::shared_ptr<const platform::Picture> photo_;
    std::vector<std::unique_ptr<printing::Printer>> printers_;
};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Of this process.
long residentBytes() {
    long pages = 0;
    std::ifstream statistics("/proc/self/statm");
    statistics >> pages >> pages;
    return pages * ::sysconf(_SC_PAGESIZE);
}

// What each of so many takes of memory.
class Growth {
  public:
    double perOne(std::size_t count) const {
        return static_cast<double>(residentBytes() - before_) / static_cast<double>(count);
    }

  private:
    long before_ = residentBytes();
};

// Holds jobs until they may go on.
struct Gate {
    std::promise<void> open;
    std::shared_future<void> isOpen = open.get_future().share();
    std::atomic<std::size_t> waiting = 0;
};

class GatedLink : public links::LocalLink {
  public:
    explicit GatedLink(Gate& gate) : gate_(gate) {}

  protected:
    bool take(std::span<const Byte> /*bytes*/) override {
        ++gate_.waiting;
        gate_.isOpen.wait();
        return true;
    }

  private:
    Gate& gate_;
};

struct MemoryUse {
    double printer = 0;     // that has printed a job
    double running = 0;     // that is printing a job on a thread of its own, beyond that
    double waitingJob = 0;  // of any size
};

MemoryUse memoryUse() {
    Gate gate;
    const printing::LinkMaker links = [&] { return std::make_shared<GatedLink>(gate); };
    const auto job = printing::encode(printing::Ticket().finish(printing::Finish::kCut));
    MemoryUse use;
    std::vector<std::unique_ptr<printing::Printer>> idle(kManyPrinters);
    const Growth idlePrinters;
    for (auto& printer : idle) {
        printer = std::make_unique<printing::Printer>(discardingLink);
        if (!printer->print(*job).isGood()) std::abort();
    }
    use.printer = idlePrinters.perOne(kManyPrinters);
    std::vector<std::unique_ptr<printing::Printer>> running;
    for (std::size_t i = 0; i < kPrinters; ++i) {
        running.push_back(std::make_unique<printing::Printer>(links));
    }
    std::vector<std::future<printing::PrintResult>> results;
    results.reserve(kPrinters + kManyPrinters);
    const Growth runningPrinters;
    for (auto& printer : running) results.push_back(printer->submit(*job));
    while (gate.waiting < kPrinters) std::this_thread::yield();
    use.running = runningPrinters.perOne(kPrinters);
    const Growth waitingJobs;
    for (std::size_t i = 0; i < kManyPrinters; ++i) {
        results.push_back(running.front()->submit(*job));
    }
    use.waitingJob = waitingJobs.perOne(kManyPrinters);
    gate.open.set_value();
    for (auto& result : results) result.wait();
    return use;
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 9;
    const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
    const MemoryUse memory = memoryUse();
    Server server;
    server.throughput(threads);  // the first use of memory
    std::vector<double> one;
    std::vector<double> all;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        one.push_back(server.throughput(1));
        all.push_back(server.throughput(threads));
        ratios.push_back(all.back() / one.back());
    }
    std::printf(
        "{\"threads\": %u, \"one\": %.1f, \"all\": %.1f, \"ratio\": %.3f, "
        "\"printer\": %.0f, \"running\": %.0f, \"waiting job\": %.0f}\n",
        threads, median(one), median(all), median(ratios), memory.printer, memory.running,
        memory.waitingJob);
    return 0;
}
