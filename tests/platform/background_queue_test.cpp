#include "TavioIpadSDK/platform/background_queue.h"

#include <atomic>
#include <future>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace tavio::platform {
namespace {

// Comes back when everything handed to the queue before has run.
void waitForQueue() {
    std::promise<void> reached;
    runInBackground([&reached] { reached.set_value(); });
    reached.get_future().wait();
}

TEST(BackgroundQueue, RunsTasksInTheOrderOfTheirArrival) {
    std::vector<int> order;
    for (int i = 0; i < 1000; ++i) runInBackground([&order, i] { order.push_back(i); });
    waitForQueue();
    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(BackgroundQueue, ReturnsBeforeTheTaskHasRun) {
    std::promise<void> go;
    std::atomic<bool> ran = false;
    runInBackground([&] {
        go.get_future().wait();
        ran = true;
    });
    EXPECT_FALSE(ran);  // it waits for what only this thread can give
    go.set_value();
    waitForQueue();
    EXPECT_TRUE(ran);
}

TEST(BackgroundQueue, RunsAllTasksOnOneThreadThatIsNotTheCallers) {
    std::thread::id first;
    std::thread::id second;
    runInBackground([&first] { first = std::this_thread::get_id(); });
    runInBackground([&second] { second = std::this_thread::get_id(); });
    waitForQueue();
    EXPECT_EQ(first, second);
    EXPECT_NE(first, std::this_thread::get_id());
}

TEST(BackgroundQueue, DropsWhatATaskThrowsAndGoesOn) {
    bool ran = false;
    runInBackground([] { throw std::runtime_error("nobody takes it"); });
    runInBackground([] { throw 7; });
    runInBackground([&ran] { ran = true; });
    waitForQueue();
    EXPECT_TRUE(ran);
}

TEST(BackgroundQueue, DropsATaskThatIsNone) {
    runInBackground({});
    waitForQueue();
}

TEST(BackgroundQueue, TakesTasksFromATask) {
    std::promise<int> inner;
    runInBackground([&inner] { runInBackground([&inner] { inner.set_value(7); }); });
    EXPECT_EQ(inner.get_future().get(), 7);
}

// A task's captures are destroyed without the queue's lock: their destructors may use the queue.
TEST(BackgroundQueue, TakesTasksFromTheEndOfWhatATaskHeld) {
    struct QueuesAtItsEnd {
        std::promise<int>& promise;
        explicit QueuesAtItsEnd(std::promise<int>& p) : promise(p) {}
        QueuesAtItsEnd(const QueuesAtItsEnd&) = delete;
        QueuesAtItsEnd& operator=(const QueuesAtItsEnd&) = delete;
        ~QueuesAtItsEnd() {
            runInBackground([&p = promise] { p.set_value(7); });
        }
    };
    std::promise<int> atTheEnd;
    auto held = std::make_shared<QueuesAtItsEnd>(atTheEnd);
    runInBackground([held = std::move(held)] {});
    EXPECT_EQ(atTheEnd.get_future().get(), 7);
}

TEST(BackgroundQueue, LetsGoOfWhatATaskHeldBeforeTheNextRuns) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    runInBackground([held = std::move(held)] {});
    waitForQueue();
    EXPECT_TRUE(watched.expired());
}

TEST(BackgroundQueue, TakesTasksFromSeveralThreadsAtOnceAndKeepsEachOnesOrder) {
    constexpr int kEach = 500;
    std::vector<int> order[4];
    std::vector<std::thread> threads;
    for (auto& own : order) {
        threads.emplace_back([&own] {
            for (int i = 0; i < kEach; ++i) runInBackground([&own, i] { own.push_back(i); });
        });
    }
    for (std::thread& thread : threads) thread.join();
    waitForQueue();
    std::vector<int> expected(kEach);
    std::iota(expected.begin(), expected.end(), 0);
    for (const auto& own : order) EXPECT_EQ(own, expected);
}

}  // namespace
}  // namespace tavio::platform
