// TCP under the control of a test: a far end that a script plays, any call failing when it is told
// to, and a clock that only waiting moves.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tavio/links/system_calls.h"

namespace tavio::links::test {

inline constexpr int kFirstVirtualDescriptor = 1'000'000;

class VirtualTcp : public SystemCalls {
  public:
    using Milliseconds = std::chrono::milliseconds;

    // ---- The far end. By default it connects at once, takes all, and says nothing. --------------

    std::string arrived;               // acknowledged
    std::string queued;                // accepted, not acknowledged
    std::size_t room = 16'384;         // of the queue
    std::size_t maxPerSend = 1 << 20;  // a send takes no more at once
    bool takes = true;                 // whether what is sent arrives, at the next wait
    bool endsWhenWeEnd = true;

    void say(const std::string& bytes) { incoming_ += bytes; }
    void end() { ended_ = true; }
    void breakOff(int error) { broken_ = error; }
    void acknowledge(std::size_t count);

    // The results of the attempts to connect, one after the other: 0, an error, or EINPROGRESS,
    // which becomes the error of `connected` when that is called.
    std::vector<int> connects;
    void connected(int error);
    std::vector<int> families;  // of the sockets made

    std::function<int(std::vector<SocketAddress>&)> onLookUp;
    bool waitsForLookUp = true;  // in real time; otherwise its time passes in no time

    // ---- Before the test ------------------------------------------------------------------------

    // Schedules `action` at this time from now.
    void after(Milliseconds time, std::function<void()> action);

    // The same, and again and again after each further `period`.
    void every(Milliseconds time, Milliseconds period, std::function<void()> action);

    // Makes calls of that name fail: `times` of them (all: -1) after the first `skip`.
    void fail(const std::string& name, int error, int skip = 0, int times = -1);

    // The next polls return at once, saying so, whatever is the case.
    std::vector<short> falseAlarms;

    // Called at the beginning of each call, with its name.
    std::function<void(const std::string&)> onCall;

    // ---- After the test -------------------------------------------------------------------------

    std::map<std::string, int> made;
    std::map<std::pair<int, int>, int> options;  // set, by level and name
    std::vector<int> waits;                      // the time-outs given to poll()
    bool wasReset = false;                       // closed in the way that drops what is queued
    bool hasEnded = false;                       // our end of stream has gone out
    std::size_t openDescriptors() const { return open_.size(); }
    Milliseconds elapsed() const;
    void advance(Milliseconds time) { time_ += time; }

    // ---- The calls ------------------------------------------------------------------------------

    Time now() override { return time_; }
    int socket(int domain, int type, int protocol) override;
    int connect(int descriptor, const sockaddr* address, socklen_t size) override;
    int setsockopt(int descriptor, int level, int name, const void* value, socklen_t size) override;
    int getsockopt(int descriptor, int level, int name, void* value, socklen_t* size) override;
    ssize_t send(int descriptor, const void* bytes, std::size_t size) override;
    ssize_t recv(int descriptor, void* bytes, std::size_t size) override;
    int shutdown(int descriptor, int how) override;
    int unsentBytes(int descriptor, int* count) override;
    int lookUp(const std::string& host, std::uint16_t port,
               std::vector<SocketAddress>& addresses) override;
    int poll(pollfd* descriptors, nfds_t count, int milliseconds) override;
    int close(int descriptor) override;

  private:
    struct Event {
        std::function<void()> action;
        Milliseconds period{0};  // 0: once
    };
    struct Failure {
        int error = 0;
        int skip = 0;
        int times = 0;
    };

    bool fails(const std::string& name);
    int look(pollfd* descriptors, nfds_t count);
    short stateOf(int descriptor, short events) const;
    bool passTime(Time until);
    bool isConnected() const { return connecting_ == 0; }

    Time time_ = Time(std::chrono::hours(1));
    Time start_ = time_;
    std::multimap<Time, Event> events_;
    std::map<std::string, Failure> failures_;
    std::set<int> open_;
    int nextDescriptor_ = kFirstVirtualDescriptor;
    std::string incoming_;
    bool ended_ = false;
    int broken_ = 0;
    int connecting_ = 0;  // EINPROGRESS, or what became of it
    std::size_t attempts_ = 0;
};

// An IPv4 address of the documentation's network.
SocketAddress someAddress(std::uint8_t last);

}  // namespace tavio::links::test
