#include <array>
#include <cerrno>
#include <future>
#include <netdb.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <system_error>

#include <gtest/gtest.h>

#include "links/virtual_tcp.h"
#include "tavio/links/tcp_link.h"

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using test::someAddress;
using test::VirtualTcp;

const std::string kPrinter = "192.0.2.7";
const std::string kUnreachable = "the printer at 192.0.2.7:9100 cannot be reached: ";

std::string messageOf(int error) {
    return std::generic_category().message(error);
}

// Fails with this sentence, and leaves nothing open.
void expectRefusal(VirtualTcp& calls, const std::string& address, const std::string& sentence) {
    TcpLink link(Deadlines{}, calls);
    EXPECT_FALSE(link.open(address));
    EXPECT_EQ(link.failure(), sentence);
    EXPECT_EQ(calls.openDescriptors(), 0U);
    const std::array<Byte, 3> bytes{1, 2, 3};
    EXPECT_FALSE(link.write(bytes));
    EXPECT_FALSE(link.drain());
    EXPECT_EQ(link.read(), std::nullopt);
    link.close();
    EXPECT_EQ(link.report().offered, 3U);
    EXPECT_EQ(link.report().accepted, 0U);
    EXPECT_EQ(link.report().failure, sentence);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
    EXPECT_EQ(calls.made["send"], 0);
}

// The errors named by socket(7), tcp(7), ip(7) and connect(2), except those that are no failure.
constexpr std::array kConnectErrors{
    EACCES,     EPERM,       EADDRINUSE,   EADDRNOTAVAIL, EAFNOSUPPORT, EAGAIN,   EALREADY,
    EBADF,      EFAULT,      EISCONN,      ECONNREFUSED,  ENETUNREACH,  ENOTSOCK, EPROTOTYPE,
    ETIMEDOUT,  EINVAL,      EHOSTUNREACH, ENETDOWN,      EHOSTDOWN,    ENOBUFS,  ENOMEM,
    ECONNRESET, ENOPROTOOPT, ENOTCONN,     EOPNOTSUPP,    EPIPE};

TEST(TcpLink, TellsWhyItCannotConnect) {
    for (const int error : kConnectErrors) {
        SCOPED_TRACE(error);
        VirtualTcp calls;
        calls.connects = {error};
        expectRefusal(calls, kPrinter, kUnreachable + messageOf(error));
    }
}

TEST(TcpLink, TellsWhyAConnectionInProgressCameToNothing) {
    for (const int error : kConnectErrors) {
        SCOPED_TRACE(error);
        VirtualTcp calls;
        calls.connects = {EINPROGRESS};
        calls.after(milliseconds(800), [&] { calls.connected(error); });
        expectRefusal(calls, kPrinter, kUnreachable + messageOf(error));
        EXPECT_EQ(calls.elapsed(), milliseconds(800));
    }
}

TEST(TcpLink, TellsWhyItHasNoSocket) {
    for (const int error :
         {EACCES, EAFNOSUPPORT, EINVAL, EMFILE, ENFILE, ENOBUFS, ENOMEM, EPROTONOSUPPORT}) {
        VirtualTcp calls;
        calls.fail("socket", error);
        expectRefusal(calls, kPrinter, kUnreachable + messageOf(error));
    }
}

TEST(TcpLink, TellsWhyItCannotWaitForTheConnection) {
    for (const int error : {EFAULT, EINVAL, ENOMEM}) {
        VirtualTcp calls;
        calls.connects = {EINPROGRESS};
        calls.fail("poll", error);
        expectRefusal(calls, kPrinter, kUnreachable + messageOf(error));
    }
}

TEST(TcpLink, TellsWhyItDoesNotKnowWhetherItIsConnected) {
    for (const int error : {EBADF, EFAULT, EINVAL, ENOPROTOOPT, ENOTSOCK}) {
        VirtualTcp calls;
        calls.connects = {EINPROGRESS};
        calls.after(milliseconds(10), [&] { calls.connected(0); });
        calls.fail("getsockopt", error);
        expectRefusal(calls, kPrinter, kUnreachable + messageOf(error));
    }
}

TEST(TcpLink, TakesAHangUpWithoutAReasonForNoConnection) {
    for (const short event : std::array<short, 3>{POLLERR, POLLHUP, POLLNVAL}) {
        VirtualTcp calls;
        calls.connects = {EINPROGRESS};
        calls.falseAlarms = {event};
        expectRefusal(calls, kPrinter, kUnreachable + messageOf(ECONNABORTED));
    }
}

TEST(TcpLink, WaitsForAConnectionInProgress) {
    for (const bool interrupted : {false, true}) {
        VirtualTcp calls;
        if (interrupted) {
            calls.fail("connect", EINTR, 0, 1);
        } else {
            calls.connects = {EINPROGRESS};
        }
        calls.after(milliseconds(4999), [&] { calls.connected(0); });
        TcpLink link(Deadlines{}, calls);
        EXPECT_TRUE(link.open(kPrinter)) << link.failure();
        EXPECT_EQ(calls.elapsed(), milliseconds(4999));
        EXPECT_EQ(calls.made["connect"], 1) << "an interrupted connect is not to be repeated";
    }
}

TEST(TcpLink, GivesUpConnectingExactlyAtItsDeadline) {
    VirtualTcp calls;
    calls.connects = {EINPROGRESS};
    calls.falseAlarms = {0, 0};
    calls.fail("poll", EINTR, 1, 2);
    expectRefusal(calls, kPrinter, kUnreachable + messageOf(ETIMEDOUT));
    EXPECT_EQ(calls.elapsed(), milliseconds(5000));
}

TEST(TcpLink, TakesDeadlinesOutOfRangeForTheNearestInRange) {
    for (const auto& [given, taken] : {std::pair{milliseconds(0), milliseconds(1)},
                                       {milliseconds(-5), milliseconds(1)},
                                       {milliseconds::min(), milliseconds(1)},
                                       {milliseconds::max(), milliseconds(86'400'000)}}) {
        VirtualTcp calls;
        calls.connects = {EINPROGRESS};
        TcpLink link({.connect = given}, calls);
        EXPECT_FALSE(link.open(kPrinter));
        EXPECT_EQ(calls.elapsed(), taken);
    }
}

// The link then notices a full printer, and the end of a job does not wait for an acknowledgement.
TEST(TcpLink, HasASmallSendBufferAndSendsWhatItHasAtOnce) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    ASSERT_TRUE(link.open(kPrinter));
    EXPECT_EQ((calls.options[{SOL_SOCKET, SO_SNDBUF}]), 8 * 1024) << "the system doubles it";
    EXPECT_EQ((calls.options[{IPPROTO_TCP, TCP_NODELAY}]), 1);
}

TEST(TcpLink, ConnectsAlsoWhereNoOptionCanBeSet) {
    VirtualTcp calls;
    calls.fail("setsockopt", ENOPROTOOPT);
    TcpLink link(Deadlines{}, calls);
    EXPECT_TRUE(link.open(kPrinter));
    link.close();
    EXPECT_EQ(calls.openDescriptors(), 0U);
}

TEST(TcpLink, RefusesWhatIsNoAddress) {
    VirtualTcp calls;
    expectRefusal(calls, "", "no address of a printer was given");
    expectRefusal(calls, "a b", "\"a b\" is no network address such as 192.168.1.50:9100");
    expectRefusal(calls, "printer:0",
                  "\"printer:0\" is no network address such as 192.168.1.50:9100");
    EXPECT_EQ(calls.made["socket"], 0);
}

TEST(TcpLink, ConnectsOverIpv6) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    EXPECT_TRUE(link.open("[2001:db8::7]:515")) << link.failure();
    EXPECT_EQ(calls.families, std::vector<int>{AF_INET6});
}

TEST(TcpLink, TellsThatTooManyFilesAreOpen) {
    VirtualTcp calls;
    // Checkers of undefined behaviour look at each kind of object once, and need files for that.
    EXPECT_FALSE(TcpLink(Deadlines{}, calls).write({}));
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = 0;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    TcpLink link(Deadlines{}, calls);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_FALSE(link.open(kPrinter));
    EXPECT_EQ(link.failure(), "no connection can be made: too many files are open");
    link.cancel();
    EXPECT_FALSE(link.open(kPrinter));
    EXPECT_EQ(calls.made["socket"], 0);
}

// ---- Names --------------------------------------------------------------------------------------

std::function<int(std::vector<SocketAddress>&)> addresses(std::uint8_t count) {
    return [count](std::vector<SocketAddress>& found) {
        for (std::uint8_t i = 0; i < count; ++i) found.push_back(someAddress(i));
        return 0;
    };
}

TEST(TcpLink, TriesTheAddressesOfANameInOrder) {
    VirtualTcp calls;
    calls.onLookUp = addresses(3);
    calls.connects = {ECONNREFUSED, EHOSTUNREACH, 0};
    TcpLink link(Deadlines{}, calls);
    EXPECT_TRUE(link.open("printer.example")) << link.failure();
    EXPECT_EQ(calls.made["connect"], 3);
    EXPECT_EQ(calls.openDescriptors(), 1U);
}

TEST(TcpLink, TellsOfTheLastAddressWhereNoneAnswers) {
    VirtualTcp calls;
    calls.onLookUp = addresses(2);
    calls.connects = {EHOSTUNREACH, ECONNREFUSED};
    expectRefusal(calls, "printer.example:9101",
                  "the printer at printer.example:9101 cannot be reached: Connection refused");
}

TEST(TcpLink, SharesItsTimeAmongTheAddresses) {
    VirtualTcp calls;
    calls.onLookUp = addresses(5);
    calls.connects = {EINPROGRESS, EINPROGRESS, ECONNREFUSED, EINPROGRESS, EINPROGRESS};
    std::vector<milliseconds> begun;
    calls.onCall = [&](const std::string& name) {
        if (name == "connect") begun.push_back(calls.elapsed());
    };
    expectRefusal(calls, "printer.example",
                  "the printer at printer.example:9100 cannot be reached: Connection timed out");
    EXPECT_EQ(begun, (std::vector{milliseconds(0), milliseconds(1000), milliseconds(2000),
                                  milliseconds(2000), milliseconds(3500)}));
    EXPECT_EQ(calls.elapsed(), milliseconds(5000));
}

TEST(TcpLink, TriesABoundedNumberOfAddresses) {
    VirtualTcp calls;
    calls.onLookUp = addresses(200);
    calls.connects = std::vector<int>(200, ECONNREFUSED);
    TcpLink link(Deadlines{}, calls);
    EXPECT_FALSE(link.open("printer.example"));
    EXPECT_EQ(calls.made["connect"], 16);
}

TEST(TcpLink, TellsWhyANameIsNotFound) {
    for (const int error : {EAI_NONAME, EAI_AGAIN, EAI_FAIL, EAI_FAMILY, EAI_MEMORY}) {
        VirtualTcp calls;
        calls.onLookUp = [error](std::vector<SocketAddress>&) { return error; };
        expectRefusal(calls, "printer.example",
                      std::string("the printer at printer.example:9100 cannot be found: ") +
                          ::gai_strerror(error));
    }
    VirtualTcp calls;
    calls.onLookUp = [](std::vector<SocketAddress>&) {
        errno = ENFILE;
        return EAI_SYSTEM;
    };
    expectRefusal(calls, "printer.example",
                  "the printer at printer.example:9100 cannot be found: " + messageOf(ENFILE));
    calls.onLookUp = [](std::vector<SocketAddress>&) { return 0; };
    expectRefusal(calls, "printer.example",
                  "the printer at printer.example:9100 cannot be found: it has no address");
    calls.onLookUp = [](std::vector<SocketAddress>&) -> int { throw std::bad_alloc(); };
    expectRefusal(calls, "printer.example",
                  std::string("the printer at printer.example:9100 cannot be found: ") +
                      ::gai_strerror(EAI_MEMORY));
}

// A name server that does not answer until the test is over.
class SilentNameServer {
  public:
    explicit SilentNameServer(VirtualTcp& calls) {
        calls.waitsForLookUp = false;
        calls.onLookUp = [this](std::vector<SocketAddress>&) {
            asked_.set_value();
            released_.get_future().wait();
            left_.set_value();
            return 0;
        };
    }
    SilentNameServer(const SilentNameServer&) = delete;
    SilentNameServer& operator=(const SilentNameServer&) = delete;
    ~SilentNameServer() {
        asked_.get_future().wait();
        released_.set_value();
        left_.get_future().wait();
    }

  private:
    std::promise<void> asked_;
    std::promise<void> released_;
    std::promise<void> left_;
};

TEST(TcpLink, GivesUpLookingUpExactlyAtItsDeadline) {
    VirtualTcp calls;
    const SilentNameServer server(calls);
    expectRefusal(calls, "printer.example",
                  "the printer at printer.example:9100 cannot be found in time");
    EXPECT_EQ(calls.elapsed(), milliseconds(5000));
    EXPECT_EQ(calls.made["socket"], 0);
}

TEST(TcpLink, IsCancelledWhileItLooksUp) {
    VirtualTcp calls;
    const SilentNameServer server(calls);
    TcpLink link(Deadlines{}, calls);
    calls.after(milliseconds(100), [&] { link.cancel(); });
    EXPECT_FALSE(link.open("printer.example"));
    EXPECT_EQ(link.failure(), "cancelled");
    EXPECT_EQ(calls.elapsed(), milliseconds(100));
}

// ---- Cancelling, and opening again --------------------------------------------------------------

TEST(TcpLink, IsCancelledWhileItConnects) {
    VirtualTcp calls;
    calls.onLookUp = addresses(2);
    calls.connects = {EINPROGRESS, EINPROGRESS};
    TcpLink link(Deadlines{}, calls);
    calls.after(milliseconds(100), [&] { link.cancel(); });
    EXPECT_FALSE(link.open("printer.example"));
    EXPECT_EQ(link.failure(), "cancelled");
    EXPECT_EQ(calls.elapsed(), milliseconds(100));
    EXPECT_EQ(calls.made["connect"], 1);
    EXPECT_EQ(calls.openDescriptors(), 0U);
}

TEST(TcpLink, StaysCancelled) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    link.cancel();
    for (int time = 0; time < 2; ++time) {
        EXPECT_FALSE(link.open(kPrinter));
        EXPECT_EQ(link.failure(), "cancelled");
        link.close();
    }
    EXPECT_EQ(calls.made["socket"], 0);
}

TEST(TcpLink, KeepsNoConnectionThatWasCancelledAsItCameAbout) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    calls.onCall = [&](const std::string& name) {
        if (name == "connect") link.cancel();
    };
    EXPECT_FALSE(link.open(kPrinter));
    EXPECT_EQ(link.failure(), "cancelled");
    EXPECT_EQ(calls.openDescriptors(), 0U);
}

TEST(TcpLink, ForgetsAFailureWhenItIsOpenedAgain) {
    VirtualTcp calls;
    calls.connects = {ECONNREFUSED, 0};
    TcpLink link(Deadlines{}, calls);
    EXPECT_FALSE(link.open(kPrinter));
    const std::array<Byte, 3> bytes{1, 2, 3};
    EXPECT_FALSE(link.write(bytes));
    EXPECT_TRUE(link.open(kPrinter));
    EXPECT_EQ(link.failure(), "");
    EXPECT_EQ(link.report().offered, 0U);
    EXPECT_TRUE(link.write(bytes));
    EXPECT_TRUE(link.drain());
    EXPECT_EQ(calls.arrived, "\1\2\3");
}

TEST(TcpLink, ClosesTheConnectionItHasBeforeItOpensAnother) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    ASSERT_TRUE(link.open(kPrinter));
    calls.onCall = [&](const std::string& name) {
        if (name == "socket") {
            EXPECT_EQ(calls.openDescriptors(), 0U);
        }
    };
    EXPECT_TRUE(link.open(kPrinter));
    EXPECT_EQ(calls.made["shutdown"], 1);
    EXPECT_EQ(calls.openDescriptors(), 1U);
}

TEST(TcpLink, ClosesWhenItIsDropped) {
    VirtualTcp calls;
    {
        TcpLink link(Deadlines{}, calls);
        ASSERT_TRUE(link.open(kPrinter));
        const std::array<Byte, 3> bytes{1, 2, 3};
        EXPECT_TRUE(link.write(bytes));
    }
    EXPECT_EQ(calls.arrived, "\1\2\3");
    EXPECT_EQ(calls.made["shutdown"], 1);
    EXPECT_FALSE(calls.wasReset);
    EXPECT_EQ(calls.openDescriptors(), 0U);
}

}  // namespace
}  // namespace tavio::links
