// Opening a serial device, its settings, and what can go wrong, on a clock of the test's own.

#include "tavio/links/serial_link.h"

#include <deque>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "links/job_bytes.h"
#include "links/replaced_calls.h"
#include "support/pseudo_terminal.h"
#include "support/temporary_folder.h"

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using test::bytesOf;
using test::PseudoTerminal;

// Records the calls on the device except reads and writes.
class WatchedDevice : public test::ReplacedCalls {
  public:
    std::vector<std::string> done;
    std::deque<int> waiting;         // what the queue holds at each look; the last one stays
    std::optional<speed_t> speed;    // of the device, whatever it is set to
    std::optional<tcflag_t> output;  // c_oflag, likewise

    int tcflush(int descriptor, int queue) override {
        done.push_back(queue == TCIFLUSH    ? "drop input"
                       : queue == TCIOFLUSH ? "drop both"
                                            : "drop output");
        return ReplacedCalls::tcflush(descriptor, queue);
    }
    int tcsetattr(int descriptor, int when, const termios* settings) override {
        done.push_back(when == TCSANOW ? "set" : "set later");
        return ReplacedCalls::tcsetattr(descriptor, when, settings);
    }
    int tcgetattr(int descriptor, termios* settings) override {
        const int result = ReplacedCalls::tcgetattr(descriptor, settings);
        if (result == 0 && speed) ::cfsetospeed(settings, *speed);
        if (result == 0 && output) settings->c_oflag = *output;
        return result;
    }
    int unsentBytes(int descriptor, int* count) override {
        const int result = ReplacedCalls::unsentBytes(descriptor, count);
        if (result != 0 || waiting.empty()) return result;
        *count = waiting.front();
        if (waiting.size() > 1) waiting.pop_front();
        return 0;
    }
    int close(int descriptor) override {
        done.emplace_back("close");
        return ReplacedCalls::close(descriptor);
    }
};

class SerialLinkOnDevice : public testing::Test {
  protected:
    void SetUp() override {
        if (!terminal.exists()) GTEST_SKIP() << "no pseudo-terminals here";
    }

    PseudoTerminal terminal;
    WatchedDevice calls;
};

void expectRefusal(WatchedDevice& calls, const std::string& device, const std::string& sentence) {
    SerialLink link(device, Deadlines{}, calls);
    EXPECT_FALSE(link.open("ignored"));
    EXPECT_EQ(link.failure(), sentence);
    EXPECT_EQ(calls.openDescriptors(), 0U);
    EXPECT_FALSE(link.write(bytesOf("x")));
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
    EXPECT_EQ(calls.made["write"], 0);
}

void expectSame(const termios& one, const termios& other) {
    EXPECT_EQ(one.c_iflag, other.c_iflag);
    EXPECT_EQ(one.c_oflag, other.c_oflag);
    EXPECT_EQ(one.c_cflag, other.c_cflag);
    EXPECT_EQ(one.c_lflag, other.c_lflag);
    EXPECT_TRUE(std::equal(std::begin(one.c_cc), std::end(one.c_cc), std::begin(other.c_cc)));
    EXPECT_EQ(::cfgetospeed(&one), ::cfgetospeed(&other));
    EXPECT_EQ(::cfgetispeed(&one), ::cfgetispeed(&other));
}

TEST(SerialLink, RefusesWhatIsNoAddress) {
    WatchedDevice calls;
    expectRefusal(calls, "", "no serial device has been named");
    expectRefusal(calls, "/dev/ttyUSB0?baud=9601",
                  "\"/dev/ttyUSB0?baud=9601\" is no serial device such as "
                  "/dev/ttyUSB0?baud=9600");
    EXPECT_EQ(calls.made["open"], 0);
}

TEST(SerialLink, TellsWhyTheDeviceCannotBeOpened) {
    for (int error : {ENOENT, EACCES, EPERM, EBUSY, ENXIO, ENODEV, EIO, EISDIR, EMFILE, ENOMEM}) {
        WatchedDevice calls;
        calls.fail("open", error);
        expectRefusal(calls, "/dev/ttyUSB0?baud=9600",
                      "/dev/ttyUSB0 cannot be opened: " + std::generic_category().message(error));
    }
    WatchedDevice calls;
    expectRefusal(calls, "/nowhere/tty",
                  "/nowhere/tty cannot be opened: No such file or directory");
}

TEST(SerialLink, RefusesWhatIsNoSerialDevice) {
    tavio::test::TemporaryFolder folder;
    tavio::test::writeFile(folder / "file", "old");
    WatchedDevice calls;
    expectRefusal(calls, folder / "file", (folder / "file") + " is no serial device");
    EXPECT_EQ(tavio::test::readFile(folder / "file"), "old");
    expectRefusal(calls, "/dev/null", "/dev/null is no serial device");
    expectRefusal(calls, folder.path(), folder.path() + " cannot be opened: Is a directory");
}

TEST(SerialLink, GivesUpOpeningThatIsInterruptedForEver) {
    WatchedDevice calls;
    calls.fail("open", EINTR);
    const auto begin = calls.now();
    expectRefusal(calls, "/dev/null", "/dev/null cannot be opened: Interrupted system call");
    EXPECT_GE(calls.now() - begin, seconds(5));
    EXPECT_LE(calls.now() - begin, seconds(6));
}

TEST(SerialLink, StopsOpeningWhenItIsCancelled) {
    WatchedDevice calls;
    calls.fail("open", EINTR);
    SerialLink link("/dev/null", Deadlines{}, calls);
    calls.onPoll = [&] { link.cancel(); };
    EXPECT_FALSE(link.open(""));
    EXPECT_EQ(link.failure(), "cancelled");
    EXPECT_EQ(calls.made["open"], 1);
}

TEST_F(SerialLinkOnDevice, OpensAgainWhenItWasInterrupted) {
    calls.fail("open", EINTR, 0, 3);
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    EXPECT_EQ(terminal.takeAll(3), "<p>");
}

TEST_F(SerialLinkOnDevice, TellsWhyTheSettingsCannotBeRead) {
    calls.fail("tcgetattr", EIO);
    expectRefusal(calls, terminal.path(),
                  terminal.path() + " cannot be opened: Input/output error");
    EXPECT_EQ(calls.done, (std::vector<std::string>{"close"}));
}

TEST_F(SerialLinkOnDevice, TellsWhyTheSettingsCannotBeMade) {
    calls.fail("tcsetattr", EINVAL, 0, 1);
    expectRefusal(calls, terminal.path(), terminal.path() + " cannot be set up: Invalid argument");
    WatchedDevice others;
    others.fail("tcgetattr", EIO, 1);
    expectRefusal(others, terminal.path(),
                  terminal.path() + " cannot be set up: Input/output error");
}

TEST_F(SerialLinkOnDevice, LeavesADeviceThatItRefusesAsItWas) {
    const termios before = terminal.settings();
    calls.fail("tcgetattr", EIO, 1);
    SerialLink link(terminal.path() + "?baud=9600", Deadlines{}, calls);
    EXPECT_FALSE(link.open(""));
    expectSame(terminal.settings(), before);
    EXPECT_EQ(calls.done, (std::vector<std::string>{"set", "set", "close"}));
}

TEST_F(SerialLinkOnDevice, RefusesADeviceThatDoesNotTakeTheSpeed) {
    calls.speed = B38400;
    expectRefusal(calls, terminal.path() + "?baud=4000000",
                  terminal.path() + " has no speed of 4000000 bits per second");
}

TEST_F(SerialLinkOnDevice, RefusesADeviceThatChangesBytes) {
    calls.output = OPOST | ONLCR;
    expectRefusal(calls, terminal.path(),
                  terminal.path() + " does not pass every byte on as it is");
}

TEST_F(SerialLinkOnDevice, SetsTheSpeedOnlyWhereOneIsGiven) {
    termios settings = terminal.settings();
    ::cfsetispeed(&settings, B19200);
    ::cfsetospeed(&settings, B19200);
    terminal.set(settings);
    SerialLink asItIs(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(asItIs.open("")) << asItIs.failure();
    settings = terminal.settings();
    EXPECT_EQ(::cfgetospeed(&settings), B19200);
    asItIs.close();
    SerialLink given(terminal.path() + "?baud=1200", Deadlines{}, calls);
    ASSERT_TRUE(given.open("")) << given.failure();
    settings = terminal.settings();
    EXPECT_EQ(::cfgetospeed(&settings), B1200);
    EXPECT_EQ(::cfgetispeed(&settings), B1200);
}

TEST_F(SerialLinkOnDevice, IsRawWhileItIsOpen) {
    termios settings = terminal.settings();
    settings.c_iflag |= IXON | IXOFF | ICRNL | INLCR | ISTRIP;
    settings.c_cflag &= ~static_cast<tcflag_t>(CLOCAL);
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 9;
    terminal.set(settings);
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    settings = terminal.settings();
    EXPECT_EQ(settings.c_iflag & (IXON | IXOFF | ICRNL | INLCR | IGNCR | ISTRIP | BRKINT), 0U);
    EXPECT_EQ(settings.c_oflag & OPOST, 0U);
    EXPECT_EQ(settings.c_lflag & (ECHO | ECHONL | ICANON | ISIG | IEXTEN), 0U);
    EXPECT_EQ(settings.c_cflag & (CSIZE | PARENB), static_cast<tcflag_t>(CS8));
    EXPECT_EQ(settings.c_cflag & (CLOCAL | CREAD), static_cast<tcflag_t>(CLOCAL | CREAD));
    EXPECT_EQ(settings.c_cc[VMIN], 1);
    EXPECT_EQ(settings.c_cc[VTIME], 0);
}

// The machine's administrator sets them for the device.
TEST_F(SerialLinkOnDevice, LeavesFlowControlAndTheWiresAtHangUpAlone) {
    for (tcflag_t flags : {tcflag_t{0}, tcflag_t{CRTSCTS}, tcflag_t{HUPCL}}) {
        termios settings = terminal.settings();
        settings.c_cflag = (settings.c_cflag & ~tcflag_t{CRTSCTS | HUPCL}) | flags;
        terminal.set(settings);
        SerialLink link(terminal.path(), Deadlines{}, calls);
        ASSERT_TRUE(link.open("")) << link.failure();
        EXPECT_EQ(terminal.settings().c_cflag & (CRTSCTS | HUPCL), flags);
    }
}

TEST_F(SerialLinkOnDevice, PutsTheOldSettingsBack) {
    const termios before = terminal.settings();
    SerialLink link(terminal.path() + "?baud=1200", Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    EXPECT_NE(terminal.settings().c_lflag, before.c_lflag);
    link.close();
    expectSame(terminal.settings(), before);
    EXPECT_EQ(calls.done, (std::vector<std::string>{"set", "drop input", "set", "close"}));
    EXPECT_EQ(terminal.takeAll(3), "<p>");
}

TEST_F(SerialLinkOnDevice, DropsWhatCameBefore) {
    ASSERT_EQ(terminal.say("of yesterday\n"), 13U);
    ASSERT_TRUE(terminal.awaitInput());
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    EXPECT_EQ(link.read(), std::nullopt);
}

TEST_F(SerialLinkOnDevice, WorksWhereNothingCanBeDropped) {
    calls.fail("tcflush", EINVAL);
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    EXPECT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    EXPECT_EQ(terminal.takeAll(3), "<p>");
}

TEST_F(SerialLinkOnDevice, DrainsUntilTheQueueIsEmpty) {
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    calls.waiting = {3, 3, 2, 2, 1, 1, 0};
    EXPECT_TRUE(link.drain()) << link.failure();
    EXPECT_EQ(calls.waiting.size(), 1U) << "it has looked until the queue was empty";
    EXPECT_EQ(link.report().acknowledged, std::nullopt);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

// 9600 bits per second and a slow printer: every byte that leaves renews the deadline.
TEST_F(SerialLinkOnDevice, DrainsForAsLongAsTheQueueShrinks) {
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    const auto begin = calls.now();
    calls.waiting = {4095};
    auto last = begin;
    calls.onPoll = [&] {
        if (calls.now() - last < seconds(20)) return;
        last = calls.now();
        calls.waiting.front() -= 1000;
        if (calls.waiting.front() < 0) calls.waiting.front() = 0;
    };
    EXPECT_TRUE(link.drain()) << link.failure();
    EXPECT_GE(calls.now() - begin, seconds(100));
}

TEST_F(SerialLinkOnDevice, DropsTheQueueOfAPrinterThatTakesNoMore) {
    const termios before = terminal.settings();
    SerialLink link(terminal.path() + "?baud=1200", Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    calls.waiting = {2};
    const auto begin = calls.now();
    link.close();
    EXPECT_GE(calls.now() - begin, seconds(30));
    EXPECT_LE(calls.now() - begin, seconds(33));
    EXPECT_EQ(calls.done,
              (std::vector<std::string>{"set", "drop input", "drop both", "set", "close"}));
    expectSame(terminal.settings(), before);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
}

TEST_F(SerialLinkOnDevice, GivesUpWritingToAPrinterThatReadsNothing) {
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    EXPECT_FALSE(link.write(bytesOf(std::string(1'000'000, 'x'))));
    EXPECT_NE(link.failure().find("the printer on " + terminal.path()), std::string::npos)
        << link.failure();
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
    EXPECT_LT(link.report().accepted, 1'000'000U);
    EXPECT_EQ(calls.openDescriptors(), 0U);
    EXPECT_EQ(calls.done,
              (std::vector<std::string>{"set", "drop input", "drop both", "set", "close"}));
}

// Another speed would garble the bytes still in the chip: 256 bytes of 11 bits at 9600 bits per
// second take 0.29 s.
TEST_F(SerialLinkOnDevice, LeavesTheChipItsTimeBeforeTheSpeedChanges) {
    SerialLink link(terminal.path() + "?baud=9600", Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>")) && link.drain()) << link.failure();
    calls.fail("poll", EINTR, 0, 1);
    const auto begin = calls.now();
    link.close();
    EXPECT_GE(calls.now() - begin, milliseconds(290));
    EXPECT_LE(calls.now() - begin, milliseconds(500));
}

TEST_F(SerialLinkOnDevice, ClosesWhereItCannotWaitForTheChip) {
    const termios before = terminal.settings();
    SerialLink link(terminal.path() + "?baud=9600", Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    calls.fail("poll", ENOMEM);
    link.close();
    expectSame(terminal.settings(), before);
    EXPECT_EQ(calls.openDescriptors(), 0U);
}

TEST_F(SerialLinkOnDevice, DoesNotWaitForTheChipWhereTheSpeedStays) {
    SerialLink link(terminal.path() + "?baud=38400", Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>")) && link.drain()) << link.failure();
    const auto begin = calls.now();
    link.close();
    EXPECT_EQ(calls.now(), begin);
}

TEST_F(SerialLinkOnDevice, NoticesADeviceThatWasUnplugged) {
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<P1>"))) << link.failure();
    terminal.hangUp();
    const auto begin = calls.now();
    EXPECT_FALSE(link.write(bytesOf("<p>")));
    EXPECT_EQ(calls.now(), begin);
    EXPECT_NE(link.failure().find("the printer on " + terminal.path()), std::string::npos)
        << link.failure();
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
    EXPECT_EQ(link.report().accepted, 4U);
    EXPECT_EQ(calls.openDescriptors(), 0U);
}

TEST_F(SerialLinkOnDevice, NoticesADeviceThatIsUnpluggedWhileItWaits) {
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    int looks = 0;
    calls.onPoll = [&] {
        if (++looks == 3) terminal.hangUp();
    };
    const auto begin = calls.now();
    EXPECT_FALSE(link.write(bytesOf(std::string(1'000'000, 'x'))));
    EXPECT_LT(calls.now() - begin, seconds(31));
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
    EXPECT_EQ(calls.openDescriptors(), 0U);
}

TEST_F(SerialLinkOnDevice, TellsWhyWritingFailed) {
    for (int error : {EIO, ENXIO, ENODEV, EBADF, EPIPE, ENOSPC}) {
        SCOPED_TRACE(error);
        WatchedDevice device;
        device.fail("write", error, 1);
        SerialLink link(terminal.path(), Deadlines{}, device);
        ASSERT_TRUE(link.open("")) << link.failure();
        ASSERT_TRUE(link.write(bytesOf("<P1>"))) << link.failure();
        EXPECT_FALSE(link.write(bytesOf("<p>")));
        EXPECT_NE(link.failure().find("the printer on " + terminal.path()), std::string::npos)
            << link.failure();
        EXPECT_FALSE(link.write(bytesOf("<q>")));
        link.close();
        EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
        EXPECT_EQ(link.report().accepted, 4U);
        EXPECT_EQ(device.openDescriptors(), 0U);
    }
}

TEST_F(SerialLinkOnDevice, TellsWhyReadingFailed) {
    for (int error : {EIO, ENXIO, ENODEV, EBADF}) {
        SCOPED_TRACE(error);
        WatchedDevice device;
        device.fail("read", error);
        SerialLink link(terminal.path(), Deadlines{}, device);
        ASSERT_TRUE(link.open("")) << link.failure();
        EXPECT_EQ(link.read(), std::nullopt);
        EXPECT_NE(link.failure(), "");
        link.close();
        EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
        EXPECT_EQ(device.openDescriptors(), 0U);
    }
}

TEST_F(SerialLinkOnDevice, GoesOnWhenItWasInterruptedOrThereWasNoRoom) {
    for (int error : {EINTR, EAGAIN}) {
        SCOPED_TRACE(error);
        WatchedDevice device;
        device.fail("write", error, 0, 3);
        device.fail("read", error, 0, 3);
        SerialLink link(terminal.path(), Deadlines{}, device);
        ASSERT_TRUE(link.open("")) << link.failure();
        EXPECT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
        EXPECT_EQ(terminal.takeAll(3), "<p>");
    }
}

TEST_F(SerialLinkOnDevice, IsSentUnconfirmedWhereTheQueueCannotBeSeen) {
    calls.fail("unsentBytes", ENOTTY);
    SerialLink link(terminal.path(), Deadlines{}, calls);
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<p>"))) << link.failure();
    link.close();
    EXPECT_EQ(terminal.takeAll(3), "<p>");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

}  // namespace
}  // namespace tavio::links
