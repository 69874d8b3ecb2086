// encode_pages DOCUMENT THREADS SECONDS [HELPER]: how many tickets a second, each the first page of the
// document, become bytes. HELPER, a path, is started for each page; else it is kept. Prints the number.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tavio/printing.h"

namespace {

using namespace tavio;
using Clock = std::chrono::steady_clock;

// Tickets in that time; none if one cannot be encoded.
std::optional<int> encodedFor(const printing::Ticket& ticket,
                              const printing::EncodeOptions& options, unsigned threadCount,
                              std::chrono::duration<double> time) {
    std::atomic<int> encoded = 0;
    std::atomic<bool> isGood = true;
    const auto end = Clock::now() + time;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < threadCount; ++i) {
        threads.emplace_back([&] {
            while (isGood && Clock::now() < end) {
                if (printing::encode(ticket, options)) {
                    ++encoded;
                } else {
                    isGood = false;
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    return isGood ? std::optional(encoded.load()) : std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4 || argc > 5) {
        std::fputs("usage: encode_pages DOCUMENT THREADS SECONDS [HELPER]\n", stderr);
        return 2;
    }
    printing::Ticket ticket;
    ticket.page(printing::Source::file(argv[1]));
    printing::EncodeOptions options;
    options.mayUseThreads = false;
    if (argc == 5) options.helper = argv[4];
    const unsigned threads = static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10));
    const std::chrono::duration<double> time(std::strtod(argv[3], nullptr));

    encodedFor(ticket, options, threads, std::chrono::milliseconds(200));
    const auto begin = Clock::now();
    const std::optional<int> encoded = encodedFor(ticket, options, threads, time);
    const std::chrono::duration<double> taken = Clock::now() - begin;
    if (!encoded) return 1;
    std::printf("%.2f\n", *encoded / taken.count());
    return 0;
}
