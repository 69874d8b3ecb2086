// The network in memory behaves as real ones do, and the same way every time.

#include "scenarios/virtual_network.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <functional>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

#include "scenarios/sample_jobs.h"
#include "tavio/links/system_calls.h"

namespace tavio::scenarios {
namespace {

using links::SystemCalls;

// Both ends of a connection, of the system's or of ours; the far end's program is the test.
class Ends {
  public:
    virtual ~Ends() = default;

    virtual SystemCalls& calls() = 0;
    virtual int here() const = 0;
    virtual void sendThere(const std::string& text) = 0;
    virtual void closeThere() = 0;
    virtual void endSendingThere() = 0;
    virtual void letArrive() = 0;  // what is under way in either direction
};

// Waits until the descriptor is as asked for; errors and hang-ups count as well.
void awaitEvents(int descriptor, short events) {
    pollfd one{descriptor, events, 0};
    EXPECT_EQ(::poll(&one, 1, 30'000), 1);
}

class NotingCalls : public SystemCalls {
  public:
    ssize_t send(int descriptor, const void* bytes, std::size_t size) override {
        hasSent_ = true;
        return SystemCalls::send(descriptor, bytes, size);
    }
    bool hasSent() const { return hasSent_; }

  private:
    bool hasSent_ = false;
};

class SystemEnds : public Ends {
  public:
    SystemEnds() {
        const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(listener, generic, size), 0);
        EXPECT_EQ(::listen(listener, 1), 0);
        EXPECT_EQ(::getsockname(listener, generic, &size), 0);
        here_ = calls_.socket(AF_INET, SOCK_STREAM, 0);
        calls_.connect(here_, generic, size);
        there_ = ::accept(listener, nullptr, nullptr);
        ::close(listener);
        EXPECT_GE(there_, 0);
    }
    ~SystemEnds() override {
        ::close(here_);
        if (there_ >= 0) ::close(there_);
    }

    SystemCalls& calls() override { return calls_; }
    int here() const override { return here_; }
    void sendThere(const std::string& text) override {
        EXPECT_EQ(::send(there_, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
        hasActed_ = true;
    }
    void closeThere() override {
        ::close(std::exchange(there_, -1));
        hasActed_ = true;
    }
    void endSendingThere() override {
        ::shutdown(there_, SHUT_WR);
        hasActed_ = true;
    }

    // Bytes sent to a closed end are answered with a reset.
    void letArrive() override {
        const bool isClosed = there_ < 0;
        if (!isClosed && calls_.hasSent()) awaitEvents(there_, POLLIN);
        if (isClosed && calls_.hasSent()) awaitEvents(here_, 0);
        if (std::exchange(hasActed_, false)) awaitEvents(here_, POLLIN);
    }

  private:
    NotingCalls calls_;
    bool hasActed_ = false;
    int here_ = -1;
    int there_ = -1;
};

NetworkPlan unreadPlan() {
    NetworkPlan plan;
    plan.device.printer.size = kTicketSize;
    plan.device.faults.neverRead = true;
    return plan;
}

class VirtualEnds : public Ends {
  public:
    VirtualEnds() : network_(unreadPlan()) {
        here_ = network_.socket(AF_INET, SOCK_STREAM, 0);
        network_.connect(here_, nullptr, 0);
        network_.settle(std::chrono::seconds(1));
    }

    SystemCalls& calls() override { return network_; }
    int here() const override { return here_; }
    void sendThere(const std::string& text) override { connection().sendThere(text); }
    void closeThere() override { connection().closeThere(); }
    void endSendingThere() override { connection().endSendingThere(); }
    void letArrive() override { network_.settle(std::chrono::seconds(1)); }

  private:
    VirtualConnection& connection() { return network_.farEnd(0); }

    VirtualNetwork network_;
    int here_ = -1;
};

// The results of the system's calls, step by step.
class Witness {
  public:
    explicit Witness(Ends& ends) : ends_(ends) {}

    void send(std::size_t size) {
        const std::string bytes(size, 'x');
        note("send", ends_.calls().send(ends_.here(), bytes.data(), bytes.size()));
        ends_.letArrive();
    }
    void receive() {
        std::array<char, 100> buffer{};
        note("recv", ends_.calls().recv(ends_.here(), buffer.data(), buffer.size()));
    }
    void poll() {
        pollfd one{ends_.here(), POLLIN | POLLOUT, 0};
        ends_.calls().poll(&one, 1, 0);
        account_.append("poll ").append(std::to_string(one.revents)).append("\n");
    }
    void endSending() {
        note("shutdown", ends_.calls().shutdown(ends_.here(), SHUT_WR));
        ends_.letArrive();
    }
    void pendingError() {
        int error = 0;
        socklen_t size = sizeof error;
        ends_.calls().getsockopt(ends_.here(), SOL_SOCKET, SO_ERROR, &error, &size);
        account_.append("error ").append(std::strerror(error)).append("\n");
    }

    const std::string& account() const { return account_; }

  private:
    void note(const char* what, ssize_t result) {
        const int error = errno;
        account_.append(what).append(" ");
        account_.append(result < 0 ? std::strerror(error) : std::to_string(result)).append("\n");
    }

    Ends& ends_;
    std::string account_;
};

using Course = std::function<void(Ends&, Witness&)>;

void expectAgreement(const Course& course) {
    SystemEnds system;
    VirtualEnds virtuals;
    Witness ofSystem(system);
    Witness ofVirtual(virtuals);
    course(system, ofSystem);
    course(virtuals, ofVirtual);
    EXPECT_EQ(ofVirtual.account(), ofSystem.account());
}

TEST(VirtualNetwork, AgreesWithTheSystemWhileAllIsWell) {
    expectAgreement([](Ends& ends, Witness& witness) {
        witness.poll();
        witness.send(100);
        witness.receive();
        ends.sendThere("ready");
        ends.letArrive();
        witness.poll();
        witness.receive();
        witness.receive();
        witness.endSending();
        witness.poll();
        witness.send(1);
    });
}

TEST(VirtualNetwork, AgreesWithTheSystemWhenThePrinterClosesWithBytesUnread) {
    expectAgreement([](Ends& ends, Witness& witness) {
        witness.send(100);
        ends.closeThere();
        ends.letArrive();
        witness.poll();
        witness.send(1);
        witness.send(1);
        witness.receive();
        witness.poll();
    });
}

TEST(VirtualNetwork, AgreesWithTheSystemThatWhatWasReceivedComesBeforeAReset) {
    expectAgreement([](Ends& ends, Witness& witness) {
        witness.send(100);
        ends.sendThere("ready");
        ends.letArrive();
        ends.closeThere();
        ends.letArrive();
        witness.poll();
        witness.receive();
        witness.receive();
        witness.receive();
    });
}

TEST(VirtualNetwork, AgreesWithTheSystemWhenThePrinterClosesFirst) {
    expectAgreement([](Ends& ends, Witness& witness) {
        ends.closeThere();
        ends.letArrive();
        witness.poll();
        witness.receive();
        witness.send(100);
        witness.poll();
        witness.pendingError();
        witness.send(1);
        witness.receive();
    });
}

TEST(VirtualNetwork, AgreesWithTheSystemWhenThePrinterEndsItsSide) {
    expectAgreement([](Ends& ends, Witness& witness) {
        ends.sendThere("bye");
        ends.endSendingThere();
        ends.letArrive();
        witness.poll();
        witness.receive();
        witness.receive();
        witness.send(100);
        witness.poll();
        witness.endSending();
        witness.poll();
    });
}

TEST(VirtualNetwork, CountsTheEndAsOneUnsentByteUntilItIsAcknowledged) {
    NetworkPlan plan = unreadPlan();
    plan.path.latency = milliseconds(100);
    VirtualNetwork network(plan);
    const int here = network.socket(AF_INET, SOCK_STREAM, 0);
    network.connect(here, nullptr, 0);
    network.settle(std::chrono::seconds(1));
    const auto unsent = [&] {
        int count = -1;
        network.unsentBytes(here, &count);
        return count;
    };
    EXPECT_EQ(network.send(here, "12345", 5), 5);
    EXPECT_EQ(unsent(), 5);
    network.poll(nullptr, 0, 199);
    EXPECT_EQ(unsent(), 5);
    network.poll(nullptr, 0, 1);
    EXPECT_EQ(unsent(), 0);
    network.shutdown(here, SHUT_WR);
    EXPECT_EQ(unsent(), 1);
    network.poll(nullptr, 0, 200);
    EXPECT_EQ(unsent(), 0);
}

TEST(VirtualWire, BringsWhatVanishedOnceItIsBackInOrder) {
    EventQueue events;
    VirtualWire wire(events, milliseconds(10), 0);
    std::string arrived;
    const auto send = [&](char name) { wire.send(0, [&, name] { arrived += name; }); };
    const auto runUntil = [&](int time) {
        for (int i = 0; i < time; ++i) {
            events.advanceTo(events.now() + milliseconds(1));
            while (events.runOne()) {
            }
        }
    };
    send('a');
    runUntil(5);
    wire.lose();
    runUntil(10);
    send('b');
    runUntil(5);
    wire.restore();
    send('c');
    runUntil(100);
    EXPECT_EQ(arrived, "");
    runUntil(200);
    EXPECT_EQ(arrived, "abc");
}

TEST(VirtualWire, BringsNothingMoreOfASenderThatIsGone) {
    EventQueue events;
    VirtualWire wire(events, milliseconds(10), 0);
    int arrived = 0;
    wire.lose();
    wire.send(0, [&] { ++arrived; });
    events.advanceTo(events.now() + milliseconds(20));
    events.runOne();
    wire.abandon();
    wire.restore();
    events.advanceTo(events.now() + std::chrono::seconds(100));
    while (events.runOne()) {
    }
    EXPECT_EQ(arrived, 0);
}

}  // namespace
}  // namespace tavio::scenarios
