#include <csignal>
#include <fcntl.h>
#include <future>
#include <linux/sockios.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>

#include <gtest/gtest.h>

#include "links/job_bytes.h"
#include "support/loopback_peer.h"
#include "tavio/links/tcp_link.h"

// TcpLink over the network of this machine. Deadlines that are to be reached are short, all others
// so long that reaching them means that something hangs.

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using test::bytesOf;
using test::Descriptor;
using test::Peer;
using test::Port;
using test::someBytes;

constexpr milliseconds kLong{120'000};
constexpr Deadlines kPatient{kLong, kLong, kLong, milliseconds(50), kLong};

Deadlines givingUpAfter(milliseconds progress) {
    Deadlines deadlines = kPatient;
    deadlines.progress = progress;
    return deadlines;
}

class TcpLoopback : public testing::Test {
  protected:
    TcpLoopback() { port_.listen(); }

    std::string address() const { return port_.address(); }

    Port port_;
};

TEST_F(TcpLoopback, CarriesEveryByte) {
    const std::string job = someBytes(1 << 20);
    std::string received;
    Peer peer(port_, [&](int connection) { received = test::receiveAll(connection); });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address())) << link.failure();
    EXPECT_TRUE(link.write(bytesOf(job)));
    EXPECT_TRUE(link.drain());
    link.close();
    peer.finish();
    EXPECT_EQ(received, job);
    EXPECT_EQ(link.report().failure, "");
    EXPECT_EQ(link.report().remark, "");
    EXPECT_EQ(link.report().acknowledged, job.size());
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

TEST_F(TcpLoopback, CarriesManySmallWrites) {
    std::string received;
    Peer peer(port_, [&](int connection) { received = test::receiveAll(connection); });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    const std::string job = someBytes(20'000);
    for (std::size_t i = 0; i < job.size(); i += 7)
        EXPECT_TRUE(link.write(bytesOf(job.substr(i, 7))));
    link.close();
    peer.finish();
    EXPECT_EQ(received, job);
}

TEST_F(TcpLoopback, ReachesAPrinterByItsName) {
    std::string received;
    Peer peer(port_, [&](int connection) { received = test::receiveAll(connection); });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open("localhost:" + std::to_string(port_.number()))) << link.failure();
    EXPECT_TRUE(link.write(bytesOf("job")));
    link.close();
    peer.finish();
    EXPECT_EQ(received, "job");
}

TEST(TcpLoopbackAddress, MayBeIpv6) {
    Port port(AF_INET6);
    if (!port.isThere()) GTEST_SKIP() << "this machine has no IPv6";
    port.listen();
    std::string received;
    Peer peer(port, [&](int connection) { received = test::receiveAll(connection); });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(port.address())) << link.failure();
    EXPECT_TRUE(link.write(bytesOf("job")));
    link.close();
    peer.finish();
    EXPECT_EQ(received, "job");
}

TEST(TcpLoopbackAddress, MayRefuse) {
    const Port port;
    TcpLink link(kPatient);
    EXPECT_FALSE(link.open(port.address()));
    EXPECT_EQ(link.failure(),
              "the printer at " + port.address() + " cannot be reached: Connection refused");
    EXPECT_FALSE(link.write(bytesOf("job")));
    EXPECT_EQ(describe(link.report()), "nothing sent, safe to repeat");
}

TEST_F(TcpLoopback, CanBeUsedForOneJobAfterAnother) {
    TcpLink link(kPatient);
    for (const std::string job : {"first", "second", "third"}) {
        std::string received;
        Peer peer(port_, [&](int connection) { received = test::receiveAll(connection); });
        ASSERT_TRUE(link.open(address())) << link.failure();
        EXPECT_TRUE(link.write(bytesOf(job)));
        link.close();
        peer.finish();
        EXPECT_EQ(received, job);
        EXPECT_EQ(link.report().acknowledged, job.size());
    }
}

// ---- Replies ------------------------------------------------------------------------------------

TEST_F(TcpLoopback, BringsAnAnswer) {
    Peer peer(port_, [&](int connection) {
        EXPECT_EQ(test::receiveExactly(connection, 3), "job");
        EXPECT_TRUE(test::sendAll(connection, "ready"));
        EXPECT_EQ(test::receiveAll(connection), "");
    });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    EXPECT_TRUE(link.write(bytesOf("job")));
    EXPECT_EQ(link.read(), "ready");
    link.close();
    EXPECT_EQ(link.report().reply, "ready");
    EXPECT_EQ(describe(link.report()), "answered by the printer: 3 bytes sent");
}

TEST_F(TcpLoopback, BringsAnAnswerThatComesWithTheEnd) {
    Peer peer(port_, [&](int connection) {
        EXPECT_EQ(test::receiveAll(connection), "job");
        EXPECT_TRUE(test::sendAll(connection, "printed"));
    });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    EXPECT_TRUE(link.write(bytesOf("job")));
    link.close();
    EXPECT_EQ(link.report().remark, "");
    EXPECT_EQ(link.report().reply, "printed");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kAnswered);
}

TEST_F(TcpLoopback, FinishesWithAPrinterThatTalksMoreThanItReads) {
    const std::string job = someBytes(300'000);
    std::string received;
    Peer peer(port_, [&](int connection) {
        EXPECT_TRUE(test::sendAll(connection, std::string(8 << 20, 'x'))) << "nobody listens";
        received = test::receiveAll(connection);
    });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    EXPECT_TRUE(link.write(bytesOf(job))) << link.failure();
    link.close();
    peer.finish();
    EXPECT_EQ(received, job);
    EXPECT_EQ(link.report().reply, std::string(kMaxReplyBytes, 'x'));
}

TEST_F(TcpLoopback, GivesUpOnAPrinterThatOnlyTalks) {
    port_.setReceiveBuffer(4096);
    Peer peer(port_, [&](int connection) {
        const std::string talk(100'000, 'x');
        while (test::sendAll(connection, talk)) {
        }
    });
    TcpLink link(givingUpAfter(milliseconds(300)));
    ASSERT_TRUE(link.open(address()));
    EXPECT_FALSE(link.write(bytesOf(someBytes(1 << 20))));
    EXPECT_EQ(link.failure(), "the printer at " + address() + " took no byte for 300 ms");
    EXPECT_EQ(link.report().reply->size(), kMaxReplyBytes);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
}

// ---- Printers that let us down ------------------------------------------------------------------

TEST_F(TcpLoopback, GivesUpOnAPrinterThatDoesNotRead) {
    port_.setReceiveBuffer(4096);
    std::promise<void> givenUp;
    std::string received;
    Peer peer(port_, [&](int connection) {
        givenUp.get_future().wait();
        received = test::receiveAll(connection);
    });
    const std::string job = someBytes(1 << 20);
    TcpLink link(givingUpAfter(milliseconds(300)));
    ASSERT_TRUE(link.open(address()));
    EXPECT_FALSE(link.write(bytesOf(job)));
    givenUp.set_value();
    peer.finish();
    const LinkReport report = link.report();
    EXPECT_EQ(report.failure, "the printer at " + address() + " took no byte for 300 ms");
    EXPECT_EQ(outcomeOf(report), Outcome::kPartlySent);
    EXPECT_EQ(received, job.substr(0, received.size()));
    EXPECT_EQ(received.size(), report.acknowledged) << "what was not acknowledged came later";
    EXPECT_LE(report.accepted - *report.acknowledged, 32'768U) << "too much waits unfelt";
}

TEST_F(TcpLoopback, GivesUpDrainingToAPrinterThatDoesNotRead) {
    port_.setReceiveBuffer(2304);
    std::promise<void> givenUp;
    std::string received;
    Peer peer(port_, [&](int connection) {
        givenUp.get_future().wait();
        received = test::receiveAll(connection);
    });
    TcpLink link(givingUpAfter(milliseconds(300)));
    ASSERT_TRUE(link.open(address()));
    const std::string job = someBytes(8'000);
    EXPECT_TRUE(link.write(bytesOf(job)));
    link.close();
    givenUp.set_value();
    peer.finish();
    const LinkReport report = link.report();
    EXPECT_EQ(report.failure, "the printer at " + address() + " acknowledged no byte for 300 ms");
    EXPECT_EQ(report.accepted, job.size());
    EXPECT_EQ(outcomeOf(report), Outcome::kPartlySent);
    EXPECT_EQ(received.size(), report.acknowledged);
}

TEST_F(TcpLoopback, FailsWhenThePrinterCloses) {
    Peer peer(port_, [&](int connection) { test::receiveExactly(connection, 50'000); });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    bool good = true;
    std::uint64_t offered = 0;
    for (; good && offered < (1U << 30U); offered += 100'000) {
        good = link.write(bytesOf(someBytes(100'000)));
    }
    EXPECT_FALSE(good);
    link.close();
    EXPECT_TRUE(
        link.failure().starts_with("the printer at " + address() + " closed the connection: "))
        << link.failure();
    EXPECT_EQ(link.report().offered, offered);
    EXPECT_LT(link.report().accepted, offered);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
}

TEST_F(TcpLoopback, FailsWhenThePrinterResets) {
    Peer peer(port_, [&](int connection) {
        test::receiveExactly(connection, 1);
        test::resetWhenClosed(connection);
    });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    while (link.write(bytesOf(someBytes(100'000)))) ASSERT_LT(link.report().offered, 1U << 30U);
    link.close();
    EXPECT_TRUE(
        link.failure().starts_with("the printer at " + address() + " closed the connection: "))
        << link.failure();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
}

TEST_F(TcpLoopback, RemarksThatThePrinterLeftBytesUnread) {
    Peer peer(port_, [&](int connection) {
        pollfd watched{connection, POLLIN, 0};
        EXPECT_EQ(::poll(&watched, 1, 60'000), 1);
    });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    EXPECT_TRUE(link.write(bytesOf("job")));
    peer.finish();
    EXPECT_TRUE(link.drain()) << link.failure();
    link.close();
    EXPECT_EQ(link.report().failure, "");
    EXPECT_EQ(link.report().remark,
              "the printer at " + address() +
                  " broke the connection off after it had been sent everything: some of it may "
                  "not have been read");
    EXPECT_EQ(describe(link.report()), "sent, unconfirmed: 3 bytes");
}

TEST_F(TcpLoopback, GoesOnWithAPrinterThatHasEndedItsSide) {
    const std::string job = someBytes(200'000);
    std::string received;
    Peer peer(port_, [&](int connection) {
        EXPECT_EQ(::shutdown(connection, SHUT_WR), 0);
        received = test::receiveAll(connection);
    });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    EXPECT_TRUE(link.write(bytesOf(job)));
    EXPECT_EQ(link.read(), std::nullopt);
    EXPECT_TRUE(link.write(bytesOf("end")));
    link.close();
    peer.finish();
    EXPECT_EQ(received, job + "end");
    EXPECT_EQ(link.report().failure, "");
}

TEST_F(TcpLoopback, RemarksThatThePrinterDoesNotEnd) {
    std::promise<void> closed;
    Peer peer(port_, [&](int connection) {
        EXPECT_EQ(test::receiveAll(connection), "job");
        closed.get_future().wait();
    });
    Deadlines deadlines = kPatient;
    deadlines.goodbye = milliseconds(200);
    TcpLink link(deadlines);
    ASSERT_TRUE(link.open(address()));
    EXPECT_TRUE(link.write(bytesOf("job")));
    link.close();
    closed.set_value();
    EXPECT_EQ(link.report().failure, "");
    EXPECT_EQ(link.report().remark, "the printer at " + address() +
                                        " has been sent everything, but did not end the "
                                        "connection within 200 ms");
}

// ---- Cancelling ---------------------------------------------------------------------------------

TEST_F(TcpLoopback, IsCancelledFromAnotherThread) {
    std::promise<void> over;
    std::promise<void> begun;
    Peer peer(port_, [&](int) { over.get_future().wait(); });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    bool told = false;
    link.observeProgress([&](const Progress&) {
        if (!std::exchange(told, true)) begun.set_value();
    });
    std::thread other([&] {
        begun.get_future().wait();
        link.cancel();
    });
    EXPECT_FALSE(link.write(bytesOf(someBytes(64 << 20))));
    other.join();
    over.set_value();
    EXPECT_EQ(link.failure(), "cancelled");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
}

Link* linkToCancel = nullptr;

TEST_F(TcpLoopback, IsCancelledByASignal) {
    Peer peer(port_, [&](int connection) { EXPECT_EQ(test::receiveAll(connection), "job"); });
    TcpLink link(kPatient);
    ASSERT_TRUE(link.open(address()));
    EXPECT_TRUE(link.write(bytesOf("job")));
    EXPECT_TRUE(link.drain());
    linkToCancel = &link;
    struct sigaction before {};
    struct sigaction action {};
    action.sa_handler = [](int) { linkToCancel->cancel(); };
    ASSERT_EQ(::sigaction(SIGUSR1, &action, &before), 0);
    errno = 0;
    std::raise(SIGUSR1);
    EXPECT_EQ(errno, 0);
    ASSERT_EQ(::sigaction(SIGUSR1, &before, nullptr), 0);
    EXPECT_EQ(link.read(), std::nullopt);
    EXPECT_EQ(link.failure(), "cancelled");
}

// A program is ended by that signal.
TEST(SystemCalls, SendWithoutABrokenPipeSignal) {
    std::array<int, 2> ends{-1, -1};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    const Descriptor ours(ends.front());
    Descriptor(ends.back()).reset();
    EXPECT_EQ(systemCalls().send(ours.get(), "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
}

TEST(SystemCalls, MakeSocketsThatDoNotWaitAndAreNotInherited) {
    const Descriptor socket(systemCalls().socket(AF_INET, SOCK_STREAM, 0));
    ASSERT_GE(socket.get(), 0);
    EXPECT_NE(::fcntl(socket.get(), F_GETFL) & O_NONBLOCK, 0);
    EXPECT_NE(::fcntl(socket.get(), F_GETFD) & FD_CLOEXEC, 0);
}

// ---- What the links rely on ---------------------------------------------------------------------

int unacknowledged(int connection) {
    int count = -1;
    EXPECT_EQ(::ioctl(connection, SIOCOUTQ, &count), 0);
    return count;
}

// Waits without a limit of its own: the test's time-out is one.
void awaitEvent(int connection, short events) {
    pollfd watched{connection, events, 0};
    while (::poll(&watched, 1, -1) != 1) {
    }
}

// A connection that is gone must not look as if everything had been acknowledged.
TEST_F(TcpLoopback, KeepsItsCountOfUnacknowledgedBytesWhenItIsReset) {
    port_.setReceiveBuffer(4096);
    const Descriptor ours(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    std::promise<void> full;
    Peer peer(port_, [&](int connection) {
        full.get_future().wait();
        test::resetWhenClosed(connection);
    });
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port_.number());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(::connect(ours.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(unacknowledged(ours.get()), 0);
    const std::string bytes = someBytes(100'000);
    ssize_t sent = 0;
    while (sent < 1'000'000) {
        const ssize_t more = ::send(ours.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (more < 0) break;
        sent += more;
    }
    EXPECT_GT(unacknowledged(ours.get()), 0);
    full.set_value();
    peer.finish();
    awaitEvent(ours.get(), 0);
    EXPECT_GT(unacknowledged(ours.get()), 0);
    char byte = 0;
    EXPECT_EQ(::recv(ours.get(), &byte, 1, 0), -1);
    EXPECT_GT(unacknowledged(ours.get()), 0);
}

}  // namespace
}  // namespace tavio::links
