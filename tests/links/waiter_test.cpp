#include <array>
#include <cerrno>
#include <sys/eventfd.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/descriptor.h"
#include "links/virtual_tcp.h"
#include "tavio/links/stream_link.h"

namespace tavio::links {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using test::VirtualTcp;

class WaiterTest : public testing::Test {
  protected:
    Waiter waiterFor(std::chrono::nanoseconds time) {
        return {calls_, cancelled_, wakeUp_.get(), calls_.now() + time};
    }
    void cancel() {
        cancelled_ = true;
        EXPECT_EQ(::eventfd_write(wakeUp_.get(), 1), 0);
    }

    VirtualTcp calls_;
    std::atomic<bool> cancelled_{false};
    machine::Descriptor wakeUp_{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    int socket_ = calls_.socket(AF_INET, SOCK_STREAM, 0);
    short events_ = -1;
};

TEST_F(WaiterTest, TellsWhatHappened) {
    Waiter waiter = waiterFor(milliseconds(100));
    EXPECT_EQ(waiter.wait(socket_, POLLOUT | POLLIN, events_), Waiter::Result::kReady);
    EXPECT_EQ(events_, POLLOUT);
    calls_.after(milliseconds(40), [&] { calls_.say("x"); });
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kReady);
    EXPECT_EQ(events_, POLLIN);
    EXPECT_EQ(calls_.elapsed(), milliseconds(40));
}

TEST_F(WaiterTest, EndsWithAnErrorOrHangUpThatNobodyAskedFor) {
    Waiter waiter = waiterFor(milliseconds(100));
    for (const short event : std::array<short, 3>{POLLERR, POLLHUP, POLLNVAL}) {
        calls_.falseAlarms = {event};
        EXPECT_EQ(waiter.wait(socket_, 0, events_), Waiter::Result::kReady);
        EXPECT_EQ(events_, event);
    }
}

TEST_F(WaiterTest, StopsExactlyAtItsDeadline) {
    Waiter waiter = waiterFor(milliseconds(100));
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kTimeOut);
    EXPECT_EQ(events_, 0);
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
    EXPECT_EQ(calls_.waits, std::vector<int>{100});
}

TEST_F(WaiterTest, LooksOnceWhenItsDeadlineHasPassed) {
    Waiter waiter = waiterFor(-milliseconds(100));
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kTimeOut);
    EXPECT_EQ(waiter.wait(socket_, POLLOUT, events_), Waiter::Result::kReady);
    EXPECT_EQ(calls_.waits, (std::vector<int>{0, 0}));
}

TEST_F(WaiterTest, RoundsUpSoThatItDoesNotSpin) {
    Waiter waiter = waiterFor(microseconds(1));
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kTimeOut);
    EXPECT_EQ(calls_.waits, std::vector<int>{1});
}

TEST_F(WaiterTest, WaitsNoLongerThanToldTo) {
    Waiter waiter = waiterFor(milliseconds(100));
    EXPECT_EQ(waiter.wait(-1, 0, events_, milliseconds(70)), Waiter::Result::kTimeOut);
    EXPECT_EQ(calls_.elapsed(), milliseconds(70));
    EXPECT_EQ(waiter.wait(-1, 0, events_, milliseconds(70)), Waiter::Result::kTimeOut);
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
}

TEST_F(WaiterTest, GoesOnForTheTimeLeftAfterAnInterruption) {
    calls_.fail("poll", EINTR, 0, 3);
    calls_.onCall = [&](const std::string&) {
        if (calls_.made["poll"] < 3) calls_.advance(milliseconds(20));
    };
    Waiter waiter = waiterFor(milliseconds(100));
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kTimeOut);
    EXPECT_EQ(calls_.waits, (std::vector<int>{100, 80, 60, 40}));
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
}

TEST_F(WaiterTest, StopsAtItsDeadlineHoweverOftenItIsInterrupted) {
    calls_.fail("poll", EAGAIN);
    calls_.onCall = [&](const std::string&) { calls_.advance(milliseconds(1)); };
    Waiter waiter = waiterFor(milliseconds(100));
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kTimeOut);
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
}

TEST_F(WaiterTest, GoesOnAfterAFalseAlarm) {
    Waiter waiter = waiterFor(milliseconds(100));
    calls_.falseAlarms = {0, 0, 0};
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kTimeOut);
    EXPECT_EQ(calls_.waits.size(), 4U);
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
}

TEST_F(WaiterTest, PassesOnEveryOtherErrorOfPoll) {
    for (const int error : {EFAULT, EINVAL, ENOMEM}) {
        calls_.fail("poll", error);
        Waiter waiter = waiterFor(milliseconds(100));
        EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kFailed);
        EXPECT_EQ(errno, error);
        EXPECT_EQ(calls_.elapsed(), milliseconds(0));
    }
}

TEST_F(WaiterTest, IsWokenUpByACancel) {
    Waiter waiter = waiterFor(milliseconds(100));
    calls_.after(milliseconds(30), [&] { cancel(); });
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kCancelled);
    EXPECT_EQ(calls_.elapsed(), milliseconds(30));
    EXPECT_EQ(waiter.wait(socket_, POLLOUT, events_), Waiter::Result::kCancelled);
    EXPECT_EQ(calls_.waits.size(), 1U) << "waited after the cancel";
}

TEST_F(WaiterTest, TakesADeadlineFarAwayForADay) {
    Waiter waiter = waiterFor(std::chrono::hours(24 * 365));
    calls_.after(milliseconds(30), [&] { calls_.say("x"); });
    EXPECT_EQ(waiter.wait(socket_, POLLIN, events_), Waiter::Result::kReady);
    EXPECT_EQ(calls_.waits, std::vector<int>{86'400'000});
}

}  // namespace
}  // namespace tavio::links
