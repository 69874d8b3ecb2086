// System calls under the control of a test: each can be made to fail, time passes only while
// something waits, and the test plays the far end whenever it does.
#pragma once

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tavio/links/system_calls.h"

namespace tavio::links::test {

class ReplacedCalls : public SystemCalls {
  public:
    // Called before each look at the descriptors, which is every 10 ms while something waits.
    std::function<void()> onPoll;

    // How often each call was made.
    std::map<std::string, int> made;

    // Makes the calls of that name fail: all of them after the first `after`, or `times` of them.
    void fail(const std::string& name, int error, int after = 0, int times = -1) {
        failures_[name] = {error, after, times};
    }

    // Also after they were closed on other threads, which it waits for.
    std::size_t openDescriptors() {
        std::unique_lock lock(mutex_);
        closed_.wait_for(lock, std::chrono::seconds(20), [&] { return descriptors_.empty(); });
        return descriptors_.size();
    }

    Time now() override { return time_; }
    void advance(std::chrono::milliseconds time) { time_ += time; }

    int socket(int domain, int type, int protocol) override {
        return fails("socket") ? -1 : opened(makeSocket(domain, type, protocol));
    }
    int open(const char* path) override {
        return fails("open") ? -1 : opened(SystemCalls::open(path));
    }
    int close(int descriptor) override {
        const int result = SystemCalls::close(descriptor);
        const std::lock_guard lock(mutex_);
        EXPECT_EQ(descriptors_.erase(descriptor), 1U) << "closed twice, or never opened";
        closed_.notify_all();
        return result;
    }

    int connect(int descriptor, const sockaddr* address, socklen_t size) override {
        return fails("connect") ? -1 : SystemCalls::connect(descriptor, address, size);
    }
    int setsockopt(int descriptor, int level, int name, const void* value,
                   socklen_t size) override {
        if (fails("setsockopt")) return -1;
        return SystemCalls::setsockopt(descriptor, level, name, value, size);
    }
    int getsockopt(int descriptor, int level, int name, void* value, socklen_t* size) override {
        if (fails("getsockopt")) return -1;
        return SystemCalls::getsockopt(descriptor, level, name, value, size);
    }
    ssize_t send(int descriptor, const void* bytes, std::size_t size) override {
        return fails("send") ? -1 : SystemCalls::send(descriptor, bytes, size);
    }
    ssize_t recv(int descriptor, void* bytes, std::size_t size) override {
        return fails("recv") ? -1 : SystemCalls::recv(descriptor, bytes, size);
    }
    int shutdown(int descriptor, int how) override {
        return fails("shutdown") ? -1 : SystemCalls::shutdown(descriptor, how);
    }
    int unsentBytes(int descriptor, int* count) override {
        return fails("unsentBytes") ? -1 : SystemCalls::unsentBytes(descriptor, count);
    }
    ssize_t write(int descriptor, const void* bytes, std::size_t size) override {
        return fails("write") ? -1 : SystemCalls::write(descriptor, bytes, size);
    }
    ssize_t read(int descriptor, void* bytes, std::size_t size) override {
        return fails("read") ? -1 : SystemCalls::read(descriptor, bytes, size);
    }
    int tcgetattr(int descriptor, termios* attributes) override {
        return fails("tcgetattr") ? -1 : SystemCalls::tcgetattr(descriptor, attributes);
    }
    int tcsetattr(int descriptor, int when, const termios* attributes) override {
        return fails("tcsetattr") ? -1 : SystemCalls::tcsetattr(descriptor, when, attributes);
    }
    int tcflush(int descriptor, int queue) override {
        return fails("tcflush") ? -1 : SystemCalls::tcflush(descriptor, queue);
    }

    int poll(pollfd* descriptors, nfds_t count, int milliseconds) override {
        if (fails("poll")) return -1;
        EXPECT_GE(milliseconds, 0) << "waits for good";
        const Time end = time_ + std::chrono::milliseconds(milliseconds);
        for (;;) {
            if (onPoll) onPoll();
            const int ready = SystemCalls::poll(descriptors, count, 0);
            if (ready != 0 || time_ >= end) return ready;
            time_ = std::min<Time>(end, time_ + std::chrono::milliseconds(10));
        }
    }

  protected:
    virtual int makeSocket(int domain, int type, int protocol) {
        return SystemCalls::socket(domain, type, protocol);
    }

    bool fails(const std::string& name) {
        ++made[name];
        auto found = failures_.find(name);
        if (found == failures_.end()) return false;
        Failure& failure = found->second;
        if (failure.after > 0) {
            --failure.after;
            return false;
        }
        if (failure.times == 0) return false;
        if (failure.times > 0) --failure.times;
        errno = failure.error;
        return true;
    }

  private:
    struct Failure {
        int error = 0;
        int after = 0;
        int times = -1;
    };

    int opened(int descriptor) {
        const std::lock_guard lock(mutex_);
        if (descriptor >= 0) descriptors_.insert(descriptor);
        return descriptor;
    }

    Time time_ = Time(std::chrono::hours(1));
    std::map<std::string, Failure> failures_;
    std::mutex mutex_;
    std::condition_variable closed_;
    std::set<int> descriptors_;
};

}  // namespace tavio::links::test
