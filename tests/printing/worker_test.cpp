#include "tavio/printing/worker.h"

#include <future>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

namespace tavio::printing {
namespace {

// Counts the threads that have begun and ended.
struct Threads {
    std::mutex mutex;
    std::condition_variable changed;
    int begun = 0;
    int ended = 0;

    Worker::ThreadStarter starter() {
        return [this](Worker::Work run) {
            const std::lock_guard lock(mutex);
            ++begun;
            return std::thread([this, run = std::move(run)] {
                run();
                const std::lock_guard end(mutex);
                ++ended;
                changed.notify_all();
            });
        };
    }
    void awaitEnds(int count) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return ended == count; });
    }
};

TEST(Worker, HasNoThreadWithoutWork) {
    Threads threads;
    { const Worker worker(threads.starter()); }
    EXPECT_EQ(threads.begun, 0);
}

TEST(Worker, DoesItsWorkInOrderOnOneThread) {
    Threads threads;
    std::vector<int> done;
    std::promise<void> gate;
    {
        Worker worker(threads.starter());
        EXPECT_TRUE(worker.add([&] { gate.get_future().wait(); }));
        for (int i = 0; i < 100; ++i) {
            EXPECT_TRUE(worker.add([&done, i] { done.push_back(i); }));
        }
        EXPECT_TRUE(done.empty());
        gate.set_value();
    }
    ASSERT_EQ(done.size(), 100U) << "it ends when all is done";
    for (int i = 0; i < 100; ++i) EXPECT_EQ(done.at(static_cast<std::size_t>(i)), i);
    EXPECT_EQ(threads.begun, 1);
}

TEST(Worker, EndsItsThreadWhenNothingIsLeftAndStartsAnother) {
    Threads threads;
    Worker worker(threads.starter());
    for (int time = 1; time <= 3; ++time) {
        bool isDone = false;
        EXPECT_TRUE(worker.add([&] { isDone = true; }));
        threads.awaitEnds(time);
        EXPECT_TRUE(isDone);
        EXPECT_EQ(threads.begun, time);
    }
}

TEST(Worker, TakesWorkFromItsOwnWork) {
    std::promise<void> done;
    Worker worker;
    EXPECT_TRUE(worker.add([&] { EXPECT_TRUE(worker.add([&] { done.set_value(); })); }));
    done.get_future().wait();
}

TEST(Worker, RefusesWorkIfNoThreadCanBeStarted) {
    bool isPossible = false;
    int done = 0;
    {
        Worker worker([&](Worker::Work run) {
            if (!isPossible) throw std::system_error(EAGAIN, std::generic_category());
            return std::thread(std::move(run));
        });
        EXPECT_FALSE(worker.add([&] { done += 1; }));
        isPossible = true;
        EXPECT_TRUE(worker.add([&] { done += 10; }));
    }
    EXPECT_EQ(done, 10) << "work that was refused is not done later";
}

}  // namespace
}  // namespace tavio::printing
