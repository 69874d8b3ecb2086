// Encoding on many threads at once, and with no thread to be had.

#include <pthread.h>
#include <thread>

#include <gtest/gtest.h>

#include "pictures/sample_pictures.h"
#include "printing/random_tickets.h"
#include "printing/told.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::told;

constexpr unsigned kThreads = 8;

// A picture that is decoded, resampled and dithered by several threads.
Source largePicture() {
    pictures::samples::PngPlan plan;
    plan.width = 1024;
    plan.height = 400;
    plan.colourType = 0;
    for (std::uint32_t pixel = 0; pixel < plan.width * plan.height; ++pixel)
        plan.samples.push_back(static_cast<Byte>(pixel * 7 / 1000));
    return Source::bytes(pictures::samples::pngFile(plan), "large.png");
}

Ticket largeTicket() {
    Ticket ticket({.stock = Stock::ofInches(3, 1)});
    ticket.picture(largePicture(), {}, {.fit = Fit::kStretch})
        .text("Row F", {})
        .finish(Finish::kCut);
    return ticket;
}

Bytes bytesOf(const Expected<Job, Problems>& job) {
    return job ? Bytes(job->bytes().begin(), job->bytes().end()) : Bytes();
}

// Runs the task on all threads at once.
template <typename Task>
void onThreads(Task task) {
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < kThreads; ++thread) threads.emplace_back(task, thread);
    for (std::thread& thread : threads) thread.join();
}

TEST(ManyThreads, EncodeOneTicketToTheSameBytes) {
    const Ticket ticket = largeTicket();
    const Bytes alone = bytesOf(encode(ticket));
    ASSERT_FALSE(alone.empty());
    std::vector<Bytes> encoded(kThreads);
    onThreads([&](unsigned thread) {
        EncodeOptions options;
        options.mayUseThreads = thread % 2 == 0;
        encoded[thread] = bytesOf(encode(ticket, options));
    });
    for (const Bytes& bytes : encoded) EXPECT_TRUE(bytes == alone);
}

TEST(ManyThreads, EncodeDifferentTicketsToTheirBytes) {
    constexpr unsigned kTickets = 12;  // for each thread
    const auto encodedFor = [](unsigned seed) {
        test::Random random(seed);
        const test::RandomTicket plan = test::randomTicket(random);
        EncodeOptions options;
        options.pageEngine = test::pageEngineOf(plan);
        return bytesOf(encode(test::composed(plan, random), options));
    };
    std::vector<Bytes> encoded(std::size_t{kThreads} * kTickets);
    onThreads([&](unsigned thread) {
        for (unsigned seed = thread; seed < encoded.size(); seed += kThreads)
            encoded[seed] = encodedFor(seed);
    });
    for (unsigned seed = 0; seed < encoded.size(); ++seed)
        EXPECT_TRUE(encoded[seed] == encodedFor(seed)) << "seed " << seed;
}

// New threads would get a stack that is larger than any address space.
class WithoutThreads {
  public:
    WithoutThreads() {
        ::pthread_getattr_default_np(&before_);
        pthread_attr_t huge{};
        ::pthread_attr_init(&huge);
        ::pthread_attr_setstacksize(&huge, std::size_t{1} << 60U);
        ::pthread_setattr_default_np(&huge);
        ::pthread_attr_destroy(&huge);
    }
    WithoutThreads(const WithoutThreads&) = delete;
    WithoutThreads& operator=(const WithoutThreads&) = delete;
    ~WithoutThreads() {
        ::pthread_setattr_default_np(&before_);
        ::pthread_attr_destroy(&before_);
    }

  private:
    pthread_attr_t before_{};
};

bool canStartThread() {
    try {
        std::thread([] {}).join();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

TEST(NoThread, LeavesNoElementOut) {
    const Bytes withThreads = bytesOf(encode(largeTicket()));
    const WithoutThreads without;
    if (canStartThread()) GTEST_SKIP() << "threads have stacks of another size here";
    const auto job = encode(largeTicket());
    EXPECT_EQ(told(job), test::Lines());
    EXPECT_EQ(job->elements().size(), 3U);
    EXPECT_TRUE(bytesOf(job) == withThreads);
}

}  // namespace
}  // namespace tavio::printing
