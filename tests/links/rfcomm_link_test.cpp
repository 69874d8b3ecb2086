#include "tavio/links/rfcomm_link.h"

#include <atomic>
#include <future>
#include <random>

#include <gtest/gtest.h>

#include "links/job_bytes.h"
#include "links/replaced_radio.h"

namespace tavio::links {
namespace {

using test::bytesOf;
using test::ReplacedRadio;

const std::string kPrinter = "00:1A:7D:DA:71:F3/3";
const std::string kName = "the printer at 00:1A:7D:DA:71:F3/3";

std::string cannotBeReached(const std::string& reason) {
    return std::string(kName).append(" cannot be reached: ").append(reason);
}

std::string randomBytes(std::size_t size, std::mt19937& random) {
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

struct Problem {
    int error;
    std::string sentence;
};

// The connection fails with this sentence, nothing has been sent, nothing stays open.
void expectRefusal(ReplacedRadio& radio, const std::string& sentence) {
    RfcommLink link(kPrinter, Deadlines{}, radio);
    EXPECT_FALSE(link.open("ignored"));
    EXPECT_EQ(link.failure(), sentence);
    EXPECT_EQ(radio.openDescriptors(), 0U);
    EXPECT_FALSE(link.write(bytesOf("x")));
    EXPECT_FALSE(link.drain());
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
    EXPECT_EQ(link.report().failure, sentence);
    EXPECT_EQ(radio.made["send"], 0);
}

TEST(RfcommLink, ConnectsToTheDeviceAndTheChannel) {
    ReplacedRadio radio;
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("ignored")) << link.failure();
    EXPECT_EQ(radio.domain, 31);
    EXPECT_EQ(radio.type & ~(SOCK_NONBLOCK | SOCK_CLOEXEC), SOCK_STREAM);
    EXPECT_EQ(radio.protocol, 3);
    const auto expected = toSocketAddress({{0x00, 0x1A, 0x7D, 0xDA, 0x71, 0xF3}, 3});
    EXPECT_EQ(radio.address,
              std::string(reinterpret_cast<const char*>(&expected), sizeof expected));
}

TEST(RfcommLink, KeepsTheQueueSmall) {
    ReplacedRadio radio;
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open(""));
    EXPECT_EQ(radio.sendBuffer, 16384);
}

TEST(RfcommLink, WorksWithTheQueueAsItIs) {
    ReplacedRadio radio;
    radio.fail("setsockopt", ENOPROTOOPT);
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    EXPECT_TRUE(link.write(bytesOf("<p>")));
    EXPECT_EQ(radio.take(100), "<p>");
}

TEST(RfcommLink, RefusesWhatIsNoAddress) {
    ReplacedRadio radio;
    RfcommLink wrong("printer", Deadlines{}, radio);
    EXPECT_FALSE(wrong.open("00:1A:7D:DA:71:F3"));
    EXPECT_EQ(wrong.failure(), "\"printer\" is no Bluetooth address such as 00:11:22:33:44:55/1");
    RfcommLink none("", Deadlines{}, radio);
    EXPECT_FALSE(none.open("00:1A:7D:DA:71:F3"));
    EXPECT_EQ(none.failure(), "no Bluetooth printer has been named");
    EXPECT_EQ(radio.made["socket"], 0);
}

TEST(RfcommLink, TellsWhyThereIsNoSocket) {
    const std::vector<Problem> table{
        {EAFNOSUPPORT, "this machine has no Bluetooth"},
        {EPROTONOSUPPORT, "this machine's Bluetooth has no serial ports (RFCOMM)"},
        {ESOCKTNOSUPPORT, "this machine's Bluetooth has no serial ports (RFCOMM)"},
        {EMFILE, "no Bluetooth connection can be made: Too many open files"},
        {EACCES, "no Bluetooth connection can be made: Permission denied"},
        {ENOMEM, "no Bluetooth connection can be made: Cannot allocate memory"},
    };
    for (const auto& [error, sentence] : table) {
        SCOPED_TRACE(error);
        ReplacedRadio radio;
        radio.fail("socket", error);
        expectRefusal(radio, sentence);
    }
}

const std::vector<Problem>& refusals() {
    const std::string off = "this machine's Bluetooth is switched off or missing";
    const std::string silent = "it does not answer; is it switched on and near?";
    const std::string unpaired = "it is not paired with this machine";
    const std::string lost = "it broke the connection off at once";
    static const std::vector<Problem> table{
        {EHOSTUNREACH, off},
        {ENETUNREACH, off},
        {ENETDOWN, off},
        {EHOSTDOWN, silent},
        {ETIMEDOUT, silent},
        {ECONNREFUSED, "it refuses; is it in use, or its serial port on another channel?"},
        {EBUSY, "another connection to it is open, or still being ended"},
        {EACCES, unpaired},
        {EPERM, unpaired},
        {EBADE, unpaired},
        {ECONNRESET, lost},
        {ECONNABORTED, lost},
        {ENOTCONN, lost},
        {ENOMEM, "Cannot allocate memory"},
        {EIO, "Input/output error"},
        {EINVAL, "Invalid argument"},
    };
    return table;
}

TEST(RfcommLink, TellsWhyThePrinterIsNotReached) {
    for (const auto& [error, reason] : refusals()) {
        SCOPED_TRACE(error);
        ReplacedRadio radio;
        radio.connectError = error;
        expectRefusal(radio, cannotBeReached(reason));
    }
}

TEST(RfcommLink, TellsWhyThePrinterIsNotReachedAfterAWhile) {
    for (int first : {EINPROGRESS, EINTR}) {
        for (const auto& [error, reason] : refusals()) {
            SCOPED_TRACE(error);
            ReplacedRadio radio;
            radio.connectError = first;
            radio.lateError = error;
            expectRefusal(radio, cannotBeReached(reason));
        }
    }
}

TEST(RfcommLink, ConnectsAfterAWhile) {
    for (int first : {EINPROGRESS, EINTR}) {
        ReplacedRadio radio;
        radio.connectError = first;
        radio.fail("poll", EINTR, 0, 3);
        RfcommLink link(kPrinter, Deadlines{}, radio);
        ASSERT_TRUE(link.open("")) << link.failure();
        ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
        EXPECT_EQ(radio.take(100), "<p>");
    }
}

TEST(RfcommLink, TellsThatAskingForTheResultFailed) {
    ReplacedRadio radio;
    radio.connectError = EINPROGRESS;
    radio.fail("getsockopt", ENOBUFS);
    expectRefusal(radio, kName + " cannot be reached: No buffer space available");
}

TEST(RfcommLink, TellsThatWaitingFailed) {
    ReplacedRadio radio;
    radio.connectError = EINPROGRESS;
    radio.fail("poll", ENOMEM);
    expectRefusal(radio, kName + " cannot be reached: Cannot allocate memory");
}

// No error waits on the socket, but the connection is gone.
TEST(RfcommLink, NoticesAPrinterThatHangsUpWhileConnecting) {
    ReplacedRadio radio;
    radio.connectError = EINPROGRESS;
    radio.onPoll = [&] { radio.hangUp(); };
    expectRefusal(radio, kName + " cannot be reached: it broke the connection off at once");
}

TEST(RfcommLink, GivesUpConnectingInTime) {
    ReplacedRadio radio;
    radio.connectError = EINPROGRESS;
    radio.isStuck = true;
    const auto begin = radio.now();
    RfcommLink link(kPrinter, Deadlines{}, radio);
    EXPECT_FALSE(link.open(""));
    EXPECT_EQ(radio.now() - begin, std::chrono::seconds(5));
    EXPECT_EQ(link.failure(),
              kName + " cannot be reached: it does not answer; is it switched on and near?");
    EXPECT_EQ(radio.openDescriptors(), 0U);
}

TEST(RfcommLink, StopsConnectingWhenItIsCancelled) {
    ReplacedRadio radio;
    radio.connectError = EINPROGRESS;
    radio.isStuck = true;
    RfcommLink link(kPrinter, Deadlines{}, radio);
    radio.onPoll = [&] { link.cancel(); };
    const auto begin = radio.now();
    EXPECT_FALSE(link.open(""));
    EXPECT_EQ(radio.now(), begin);
    EXPECT_NE(link.failure(), "");
    EXPECT_EQ(radio.openDescriptors(), 0U);
}

TEST(RfcommLink, TriesAgainWhileAnEarlierConnectionIsBeingEnded) {
    ReplacedRadio radio;
    radio.firstErrors = {EBUSY, ECONNRESET, ECONNABORTED, ENOTCONN};
    const auto begin = radio.now();
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    EXPECT_EQ(radio.made["socket"], 5);
    EXPECT_GT(radio.now(), begin);
    EXPECT_EQ(link.failure(), "");
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    EXPECT_EQ(radio.take(100), "<p>");
    link.close();
    EXPECT_EQ(radio.openDescriptors(), 0U);
}

TEST(RfcommLink, TriesAFewTimesOnlyAndOnlyWhereItMayHelp) {
    for (const auto& [error, reason] : refusals()) {
        SCOPED_TRACE(error);
        const bool mayHelp = reason.find("connection") != std::string::npos;
        ReplacedRadio radio;
        radio.connectError = error;
        RfcommLink link(kPrinter, Deadlines{}, radio);
        EXPECT_FALSE(link.open(""));
        EXPECT_EQ(radio.made["socket"], mayHelp ? 5 : 1);
    }
}

TEST(RfcommLink, TriesNoLongerThanItMayConnect) {
    ReplacedRadio radio;
    radio.connectError = EBUSY;
    Deadlines deadlines;
    deadlines.connect = std::chrono::milliseconds(300);
    const auto begin = radio.now();
    RfcommLink link(kPrinter, deadlines, radio);
    EXPECT_FALSE(link.open(""));
    EXPECT_LE(radio.now() - begin, deadlines.connect);
    EXPECT_EQ(radio.made["socket"], 2) << "at once and after 200 ms, but not at the deadline";
    EXPECT_NE(link.failure().find("another connection to it is open"), std::string::npos)
        << link.failure();
}

TEST(RfcommLink, StopsTryingWhenItIsCancelled) {
    ReplacedRadio radio;
    radio.connectError = EBUSY;
    RfcommLink link(kPrinter, Deadlines{}, radio);
    radio.onPoll = [&] { link.cancel(); };
    EXPECT_FALSE(link.open(""));
    EXPECT_EQ(link.failure(), "cancelled");
    EXPECT_EQ(radio.made["socket"], 1);
}

// The kernel blocks connect() and close() while another connection is silent.
class BlockingRadio : public ReplacedRadio {
  public:
    std::atomic<bool> blocksConnect{false};
    std::atomic<bool> blocksClose{false};

    void letGo() { gate_.set_value(); }
    int connect(int descriptor, const sockaddr* to, socklen_t size) override {
        if (blocksConnect) opened_.wait();
        return ReplacedRadio::connect(descriptor, to, size);
    }
    int close(int descriptor) override {
        if (blocksClose) opened_.wait();
        return ReplacedRadio::close(descriptor);
    }

  private:
    std::promise<void> gate_;
    std::shared_future<void> opened_ = gate_.get_future().share();
};

TEST(RfcommLink, DoesNotWaitForACloseThatTheKernelBlocks) {
    BlockingRadio radio;
    {
        RfcommLink link(kPrinter, Deadlines{}, radio);
        ASSERT_TRUE(link.open("")) << link.failure();
        ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
        EXPECT_EQ(radio.take(100), "<p>");
        radio.blocksClose = true;
        link.close();
        EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
    }
    radio.letGo();
    EXPECT_EQ(radio.openDescriptors(), 0U);
}

TEST(RfcommLink, GivesUpAConnectThatTheKernelBlocks) {
    BlockingRadio radio;
    radio.blocksConnect = true;
    {
        Deadlines deadlines;
        deadlines.connect = std::chrono::milliseconds(100);
        RfcommLink link(kPrinter, deadlines, radio);
        EXPECT_FALSE(link.open(""));
        EXPECT_EQ(link.failure(),
                  kName +
                      " cannot be reached: "
                      "the kernel is still busy with an earlier connection that fell silent");
    }
    radio.letGo();
    EXPECT_EQ(radio.openDescriptors(), 0U);
}

TEST(RfcommLink, GivesUpABlockedConnectWhenItIsCancelled) {
    BlockingRadio radio;
    radio.blocksConnect = true;
    {
        Deadlines deadlines;
        deadlines.connect = std::chrono::hours(1);
        RfcommLink link(kPrinter, deadlines, radio);
        radio.onPoll = [&] { link.cancel(); };
        EXPECT_FALSE(link.open(""));
        EXPECT_EQ(link.failure(), "cancelled");
    }
    radio.letGo();
    EXPECT_EQ(radio.openDescriptors(), 0U);
}

TEST(RfcommLink, PassesEveryByteOn) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string job = randomBytes(100'000, random);
    ReplacedRadio radio;
    std::string received;
    radio.onPoll = [&] { received += radio.take(1 + random() % 5000); };
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf(job))) << link.failure();
    ASSERT_TRUE(link.drain()) << link.failure();
    link.close();
    while (received.size() < job.size()) {
        const std::string more = radio.take(job.size());
        ASSERT_NE(more, "");
        received += more;
    }
    EXPECT_TRUE(received == job);
    EXPECT_EQ(link.report().accepted, job.size());
    EXPECT_EQ(link.report().acknowledged, std::nullopt);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
    EXPECT_EQ(radio.openDescriptors(), 0U);
}

// Whichever way the kernel counts.
TEST(RfcommLink, DrainsUntilTheQueueIsEmpty) {
    for (bool tellsFreeSpace : {false, true}) {
        SCOPED_TRACE(tellsFreeSpace);
        ReplacedRadio radio;
        radio.tellsFreeSpace = tellsFreeSpace;
        std::string received;
        RfcommLink link(kPrinter, Deadlines{}, radio);
        ASSERT_TRUE(link.open("")) << link.failure();
        const std::string job(3000, 'x');
        for (int i = 0; i < 4; ++i) ASSERT_TRUE(link.write(bytesOf(job))) << link.failure();
        radio.onPoll = [&] { received += radio.take(100); };
        EXPECT_TRUE(link.drain()) << link.failure();
        EXPECT_EQ(received.size(), 4 * job.size());
    }
}

TEST(RfcommLink, GivesUpOnAPrinterThatReadsNothing) {
    for (bool tellsFreeSpace : {false, true}) {
        SCOPED_TRACE(tellsFreeSpace);
        ReplacedRadio radio;
        radio.tellsFreeSpace = tellsFreeSpace;
        RfcommLink link(kPrinter, Deadlines{}, radio);
        ASSERT_TRUE(link.open("")) << link.failure();
        ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
        auto begin = radio.now();
        EXPECT_FALSE(link.drain());
        EXPECT_GE(radio.now() - begin, std::chrono::seconds(30));
        EXPECT_LE(radio.now() - begin, std::chrono::seconds(33));
        begin = radio.now();
        link.close();
        EXPECT_EQ(radio.now(), begin);
        EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
        EXPECT_EQ(link.report().accepted, 3U);
        EXPECT_EQ(radio.openDescriptors(), 0U);
    }
}

TEST(RfcommLink, GivesUpWritingToAPrinterThatReadsNoMore) {
    ReplacedRadio radio;
    std::string received;
    radio.onPoll = [&] {
        if (received.size() < 50'000) received += radio.take(5'000);
    };
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    EXPECT_FALSE(link.write(bytesOf(std::string(1'000'000, 'x'))));
    EXPECT_NE(link.failure().find(kName), std::string::npos) << link.failure();
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
    EXPECT_GE(link.report().accepted, 50'000U);
    EXPECT_LT(link.report().accepted, 1'000'000U);
    EXPECT_EQ(radio.openDescriptors(), 0U);
}

TEST(RfcommLink, NoticesAPrinterThatHangsUp) {
    ReplacedRadio radio;
    std::string received;
    radio.onPoll = [&] {
        received += radio.take(5'000);
        if (received.size() > 50'000) radio.hangUp();
    };
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    const auto begin = radio.now();
    EXPECT_FALSE(link.write(bytesOf(std::string(1'000'000, 'x'))));
    EXPECT_LT(radio.now() - begin, std::chrono::seconds(30)) << "it was noticed, not waited for";
    EXPECT_NE(link.failure().find(kName), std::string::npos) << link.failure();
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
}

TEST(RfcommLink, TellsWhySendingFailed) {
    for (int error : {ECONNRESET, EPIPE, ENOTCONN, ETIMEDOUT, EHOSTDOWN, EIO, ENOBUFS, EBADF}) {
        SCOPED_TRACE(error);
        ReplacedRadio radio;
        radio.fail("send", error, 1);
        RfcommLink link(kPrinter, Deadlines{}, radio);
        ASSERT_TRUE(link.open("")) << link.failure();
        ASSERT_TRUE(link.write(bytesOf("<P1>"))) << link.failure();
        EXPECT_FALSE(link.write(bytesOf("<p>")));
        EXPECT_NE(link.failure().find(kName), std::string::npos) << link.failure();
        EXPECT_FALSE(link.write(bytesOf("<q>")));
        link.close();
        EXPECT_EQ(radio.take(100), "<P1>");
        EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
        EXPECT_EQ(link.report().accepted, 4U);
        EXPECT_EQ(radio.openDescriptors(), 0U);
    }
}

TEST(RfcommLink, SendsAgainWhenItWasInterruptedOrThereWasNoRoom) {
    for (int error : {EINTR, EAGAIN}) {
        SCOPED_TRACE(error);
        ReplacedRadio radio;
        radio.fail("send", error, 0, 3);
        RfcommLink link(kPrinter, Deadlines{}, radio);
        ASSERT_TRUE(link.open("")) << link.failure();
        EXPECT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
        EXPECT_EQ(radio.take(100), "<p>");
    }
}

TEST(RfcommLink, ReadsWhatThePrinterAnswers) {
    ReplacedRadio radio;
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<S1>"))) << link.failure();
    radio.onPoll = [&, said = false]() mutable {
        if (!said && radio.take(100) == "<S1>") {
            radio.say("ready");
            said = true;
        }
    };
    ASSERT_TRUE(link.drain()) << link.failure();
    EXPECT_EQ(link.read(), "ready");
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kAnswered);
}

// Shutting down would end both directions at once, and lingering would block in close().
TEST(RfcommLink, ClosesWithoutShuttingDownOrLingering) {
    ReplacedRadio radio;
    std::string received;
    radio.onPoll = [&] { received += radio.take(1'000); };
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf(std::string(5'000, 'x')))) << link.failure();
    link.close();
    EXPECT_EQ(received.size(), 5'000U) << "closed before the queue was empty";
    EXPECT_EQ(radio.made["shutdown"], 0);
    EXPECT_EQ(radio.options, (std::vector<std::pair<int, int>>{{SOL_SOCKET, SO_SNDBUF}}));
    EXPECT_EQ(link.failure(), "");
}

// There is no half-closing, so the printer's own end cannot be waited for.
TEST(RfcommLink, DoesNotWaitForThePrinterToHangUp) {
    ReplacedRadio radio;
    std::string received;
    radio.onPoll = [&] { received += radio.take(1'000); };
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    const auto begin = radio.now();
    link.close();
    EXPECT_LT(radio.now() - begin, std::chrono::seconds(5));
    EXPECT_EQ(link.failure(), "");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

TEST(RfcommLink, IsSentUnconfirmedWhereTheQueueCannotBeSeen) {
    ReplacedRadio radio;
    radio.fail("unsentBytes", EINVAL);
    RfcommLink link(kPrinter, Deadlines{}, radio);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    link.close();
    EXPECT_EQ(radio.take(100), "<p>");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

TEST(RfcommLink, ConnectsAnewForEachJob) {
    ReplacedRadio radio;
    RfcommLink link(kPrinter, Deadlines{}, radio);
    for (const std::string job : {"<P1>", "<p>"}) {
        ASSERT_TRUE(link.open("")) << link.failure();
        ASSERT_TRUE(link.write(bytesOf(job))) << link.failure();
        EXPECT_EQ(radio.take(100), job);
        link.close();
        EXPECT_EQ(link.report().accepted, job.size());
        EXPECT_EQ(radio.openDescriptors(), 0U);
    }
    EXPECT_EQ(radio.made["socket"], 2);
}

}  // namespace
}  // namespace tavio::links
